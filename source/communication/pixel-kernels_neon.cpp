// Sixteen pixels as four registers, one for each component.
#include "communication/pixel-kernels.h"

#if defined(__ARM_NEON) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
#include <arm_neon.h>

#include "communication/pixel-tiles.h"

namespace vaultpad::communication {

namespace {

// Each packed byte is the low bits of one component followed by the high bits of the next, which is what shifting
// right and inserting does.
void storePacked(uint8x16_t blue, uint8x16_t green, uint8x16_t red, uint8x16_t alpha, std::uint8_t* destination) {
    uint8x16x3_t packed;
    packed.val[0] = vsriq_n_u8(alpha, red, 6);
    packed.val[1] = vsriq_n_u8(vshlq_n_u8(red, 2), green, 4);
    packed.val[2] = vsriq_n_u8(vshlq_n_u8(green, 4), blue, 2);
    vst3q_u8(destination, packed);
}

// Sixteen pixels in four registers; the components are taken apart by two rounds of taking every second byte.
void packSixteen(const uint8x16_t (&pixels)[4], std::uint8_t* destination) {
    const uint8x16x2_t first = vuzpq_u8(pixels[0], pixels[1]);
    const uint8x16x2_t second = vuzpq_u8(pixels[2], pixels[3]);
    const uint8x16x2_t blueRed = vuzpq_u8(first.val[0], second.val[0]);
    const uint8x16x2_t greenAlpha = vuzpq_u8(first.val[1], second.val[1]);
    storePacked(blueRed.val[0], greenAlpha.val[0], blueRed.val[1], greenAlpha.val[1], destination);
}

uint8x16_t joined(uint32x2_t low, uint32x2_t high) {
    return vreinterpretq_u8_u32(vcombine_u32(low, high));
}

struct Neon {
    static constexpr std::ptrdiff_t kBlock = 16;
    static constexpr std::ptrdiff_t kRows = 16;
    static constexpr std::ptrdiff_t kColumns = 4;

    static void pack(const std::uint32_t* source, std::uint8_t* destination) {
        const uint8x16x4_t pixels = vld4q_u8(reinterpret_cast<const std::uint8_t*>(source));
        storePacked(pixels.val[0], pixels.val[1], pixels.val[2], pixels.val[3], destination);
    }

    template <Room>
    static void packTile(const std::uint32_t* source, std::ptrdiff_t sourceStep, std::uint8_t* destination,
                         std::ptrdiff_t destinationStep) {
        uint8x16_t columns[kColumns][4];
        for (std::ptrdiff_t i = 0; i < 4; ++i) {
            const std::uint32_t* rows = source + 4 * i * sourceStep;
            // Elements 0 and 2, then elements 1 and 3, of both rows.
            const uint32x4x2_t first = vtrnq_u32(vld1q_u32(rows), vld1q_u32(rows + sourceStep));
            const uint32x4x2_t second = vtrnq_u32(vld1q_u32(rows + 2 * sourceStep), vld1q_u32(rows + 3 * sourceStep));
            columns[0][i] = joined(vget_low_u32(first.val[0]), vget_low_u32(second.val[0]));
            columns[1][i] = joined(vget_low_u32(first.val[1]), vget_low_u32(second.val[1]));
            columns[2][i] = joined(vget_high_u32(first.val[0]), vget_high_u32(second.val[0]));
            columns[3][i] = joined(vget_high_u32(first.val[1]), vget_high_u32(second.val[1]));
        }
        for (std::ptrdiff_t column = 0; column < kColumns; ++column) {
            packSixteen(columns[column], destination + column * destinationStep);
        }
    }
};

constexpr PixelKernels kKernels{"neon", packRowInBlocks<Neon>, packTransposedInTiles<Neon>};

}  // namespace

const PixelKernels* const neonKernels = &kKernels;

}  // namespace vaultpad::communication

#else

const vaultpad::communication::PixelKernels* const vaultpad::communication::neonKernels = nullptr;

#endif
