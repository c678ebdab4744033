// Four pixels in a register of 16 bytes.
#include "communication/pixel-kernels.h"

#if defined(__SSSE3__)
#include <tmmintrin.h>

#include "communication/pixel-tiles.h"

namespace vaultpad::communication {

namespace {

__m128i load(const std::uint32_t* source) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
}

void store(std::uint8_t* destination, __m128i value) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(destination), value);
}

// The 12 packed bytes of four pixels, and four zeros after them.
__m128i packFour(__m128i pixels) {
    // Two multiply-adds put the four fields of a pixel side by side: green * 64 + blue and alpha * 64 + red, then
    // the second of these * 4096 + the first. The shuffle turns each word round and drops its empty byte.
    const __m128i fields = _mm_and_si128(_mm_srli_epi32(pixels, 2), _mm_set1_epi8(0x3F));
    const __m128i pairs = _mm_maddubs_epi16(fields, _mm_set1_epi16(64 << 8 | 1));
    const __m128i words = _mm_madd_epi16(pairs, _mm_set1_epi32(4096 << 16 | 1));
    return _mm_shuffle_epi8(words, _mm_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
}

// The 24 packed bytes of eight pixels.
template <Room kRoom>
void packEight(__m128i first, __m128i second, std::uint8_t* destination) {
    const __m128i left = packFour(first);
    const __m128i right = packFour(second);
    // Zeros go beyond the end of each store, and what is stored next replaces them.
    if constexpr (kRoom == Room::Beside) {
        store(destination, left);
        store(destination + 12, right);
        return;
    }
    store(destination, _mm_or_si128(left, _mm_slli_si128(right, 12)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(destination + 16), _mm_srli_si128(right, 4));
}

// Four rows of four words become columns.
void transpose(__m128i (&rows)[4]) {
    const __m128i low01 = _mm_unpacklo_epi32(rows[0], rows[1]);
    const __m128i low23 = _mm_unpacklo_epi32(rows[2], rows[3]);
    const __m128i high01 = _mm_unpackhi_epi32(rows[0], rows[1]);
    const __m128i high23 = _mm_unpackhi_epi32(rows[2], rows[3]);
    rows[0] = _mm_unpacklo_epi64(low01, low23);
    rows[1] = _mm_unpackhi_epi64(low01, low23);
    rows[2] = _mm_unpacklo_epi64(high01, high23);
    rows[3] = _mm_unpackhi_epi64(high01, high23);
}

struct Ssse3 {
    static constexpr std::ptrdiff_t kBlock = 16;
    static constexpr std::ptrdiff_t kRows = 8;
    static constexpr std::ptrdiff_t kColumns = 16;

    static void pack(const std::uint32_t* source, std::uint8_t* destination) {
        const __m128i a = packFour(load(source));
        const __m128i b = packFour(load(source + 4));
        const __m128i c = packFour(load(source + 8));
        const __m128i d = packFour(load(source + 12));
        store(destination, _mm_or_si128(a, _mm_slli_si128(b, 12)));
        store(destination + 16, _mm_or_si128(_mm_srli_si128(b, 4), _mm_slli_si128(c, 8)));
        store(destination + 32, _mm_or_si128(_mm_srli_si128(c, 8), _mm_slli_si128(d, 4)));
    }

    template <Room kRoom>
    static void packTile(const std::uint32_t* source, std::ptrdiff_t sourceStep, std::uint8_t* destination,
                         std::ptrdiff_t destinationStep) {
        for (std::ptrdiff_t column = 0; column < kColumns; column += 4) {
            __m128i left[4];
            __m128i right[4];
            for (std::ptrdiff_t row = 0; row < 4; ++row) {
                left[row] = load(source + row * sourceStep + column);
                right[row] = load(source + (row + 4) * sourceStep + column);
            }
            transpose(left);
            transpose(right);
            for (std::ptrdiff_t i = 0; i < 4; ++i) {
                packEight<kRoom>(left[i], right[i], destination + (column + i) * destinationStep);
            }
        }
    }
};

constexpr PixelKernels kKernels{"ssse3", packRowInBlocks<Ssse3>, packTransposedInTiles<Ssse3>};

}  // namespace

const PixelKernels* const ssse3Kernels = &kKernels;

}  // namespace vaultpad::communication

#else

const vaultpad::communication::PixelKernels* const vaultpad::communication::ssse3Kernels = nullptr;

#endif
