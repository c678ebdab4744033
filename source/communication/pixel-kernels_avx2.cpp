// Eight pixels in a register of 32 bytes, which works as two halves of 16.
#include "communication/pixel-kernels.h"

#if defined(__AVX2__)
#include <immintrin.h>

#include "communication/pixel-tiles.h"

namespace vaultpad::communication {

namespace {

__m256i load(const std::uint32_t* source) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
}

// Four words each from two places.
__m256i loadHalves(const std::uint32_t* low, const std::uint32_t* high) {
    return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_loadu_si128(reinterpret_cast<const __m128i*>(low))),
                                   _mm_loadu_si128(reinterpret_cast<const __m128i*>(high)), 1);
}

void store(std::uint8_t* destination, __m256i value) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(destination), value);
}

// In each half the 12 packed bytes of four pixels, and four zeros after them.
__m256i packHalves(__m256i pixels) {
    // Two multiply-adds put the four fields of a pixel side by side: green * 64 + blue and alpha * 64 + red, then
    // the second of these * 4096 + the first. The shuffle turns each word round and drops its empty byte.
    const __m256i fields = _mm256_and_si256(_mm256_srli_epi32(pixels, 2), _mm256_set1_epi8(0x3F));
    const __m256i pairs = _mm256_maddubs_epi16(fields, _mm256_set1_epi16(64 << 8 | 1));
    const __m256i words = _mm256_madd_epi16(pairs, _mm256_set1_epi32(4096 << 16 | 1));
    return _mm256_shuffle_epi8(words, _mm256_setr_epi8(2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1,  //
                                                       2, 1, 0, 6, 5, 4, 10, 9, 8, 14, 13, 12, -1, -1, -1, -1));
}

// The 24 packed bytes of eight pixels.
template <Room kRoom>
void packEight(__m256i pixels, std::uint8_t* destination) {
    const __m256i packed = packHalves(pixels);
    auto* const start = reinterpret_cast<__m128i*>(destination);
    // Zeros go beyond the end of each store, and what is stored next replaces them.
    if constexpr (kRoom == Room::Beside) {
        _mm_storeu_si128(start, _mm256_castsi256_si128(packed));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(destination + 12), _mm256_extracti128_si256(packed, 1));
        return;
    }
    const __m256i joined = _mm256_permutevar8x32_epi32(packed, _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
    _mm_storeu_si128(start, _mm256_castsi256_si128(joined));
    _mm_storel_epi64(start + 1, _mm256_extracti128_si256(joined, 1));
}

struct Avx2 {
    static constexpr std::ptrdiff_t kBlock = 32;
    static constexpr std::ptrdiff_t kRows = 8;
    static constexpr std::ptrdiff_t kColumns = 16;

    static void pack(const std::uint32_t* source, std::uint8_t* destination) {
        // Word 3 and word 7 of packHalves() are zeros. Each register's other six words go where they belong in three
        // stores of eight: 6 + 2, 4 + 4, 2 + 6.
        const __m256i a =
            _mm256_permutevar8x32_epi32(packHalves(load(source)), _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7));
        const __m256i b =
            _mm256_permutevar8x32_epi32(packHalves(load(source + 8)), _mm256_setr_epi32(2, 4, 5, 6, 7, 7, 0, 1));
        const __m256i c =
            _mm256_permutevar8x32_epi32(packHalves(load(source + 16)), _mm256_setr_epi32(5, 6, 7, 7, 0, 1, 2, 4));
        const __m256i d =
            _mm256_permutevar8x32_epi32(packHalves(load(source + 24)), _mm256_setr_epi32(7, 7, 0, 1, 2, 4, 5, 6));
        store(destination, _mm256_blend_epi32(a, b, 0xC0));
        store(destination + 32, _mm256_blend_epi32(b, c, 0xF0));
        store(destination + 64, _mm256_blend_epi32(c, d, 0xFC));
    }

    // Rows 0 to 3 become columns in the low halves while rows 4 to 7 do in the high ones.
    template <Room kRoom>
    static void packTile(const std::uint32_t* source, std::ptrdiff_t sourceStep, std::uint8_t* destination,
                         std::ptrdiff_t destinationStep) {
        for (std::ptrdiff_t column = 0; column < kColumns; column += 4) {
            __m256i rows[4];
            for (std::ptrdiff_t row = 0; row < 4; ++row) {
                rows[row] = loadHalves(source + row * sourceStep + column, source + (row + 4) * sourceStep + column);
            }
            const __m256i low01 = _mm256_unpacklo_epi32(rows[0], rows[1]);
            const __m256i low23 = _mm256_unpacklo_epi32(rows[2], rows[3]);
            const __m256i high01 = _mm256_unpackhi_epi32(rows[0], rows[1]);
            const __m256i high23 = _mm256_unpackhi_epi32(rows[2], rows[3]);
            std::uint8_t* packed = destination + column * destinationStep;
            packEight<kRoom>(_mm256_unpacklo_epi64(low01, low23), packed);
            packEight<kRoom>(_mm256_unpackhi_epi64(low01, low23), packed + destinationStep);
            packEight<kRoom>(_mm256_unpacklo_epi64(high01, high23), packed + 2 * destinationStep);
            packEight<kRoom>(_mm256_unpackhi_epi64(high01, high23), packed + 3 * destinationStep);
        }
    }
};

constexpr PixelKernels kKernels{"avx2", packRowInBlocks<Avx2>, packTransposedInTiles<Avx2>};

}  // namespace

const PixelKernels* const avx2Kernels = &kKernels;

}  // namespace vaultpad::communication

#else

const vaultpad::communication::PixelKernels* const vaultpad::communication::avx2Kernels = nullptr;

#endif
