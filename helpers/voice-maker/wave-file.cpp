#include "voice-maker/wave-file.h"

#include <algorithm>
#include <array>

namespace vaultpad::helpers {

namespace {

constexpr std::size_t kHeaderSize = 44;
constexpr std::size_t kRiffSizeOffset = 4;
constexpr std::size_t kDataSizeOffset = 40;
// What the first eight bytes leave of the header.
constexpr std::size_t kRiffHeaderRest = kHeaderSize - 8;
constexpr std::size_t kSampleSize = 2;

// The header with both sizes zero.
constexpr std::array<std::uint8_t, kHeaderSize> kHeader = {
    'R',  'I',  'F', 'F', 0,    0,    0, 0, 'W', 'A', 'V', 'E',  //
    'f',  'm',  't', ' ', 16,   0,    0, 0, 1,   0,   1,   0,    // PCM, one channel
    0x22, 0x56, 0,   0,   0x44, 0xAC, 0, 0, 2,   0,   16,  0,
    'd',  'a',  't', 'a', 0,    0,    0, 0};  // 22050 Hz, 44100 bytes a second

void writeSize(Bytes& bytes, std::size_t offset, std::size_t size) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(size >> (8 * i));
    }
}

}  // namespace

std::optional<Bytes> completeWave(Bytes stream) {
    if (stream.size() < kHeaderSize) {
        return std::nullopt;
    }
    writeSize(stream, kRiffSizeOffset, 0);
    writeSize(stream, kDataSizeOffset, 0);
    if (!std::equal(kHeader.begin(), kHeader.end(), stream.begin())) {
        return std::nullopt;
    }
    const std::size_t size = (stream.size() - kHeaderSize) / kSampleSize * kSampleSize;
    if (size == 0) {
        return Bytes();
    }
    stream.resize(kHeaderSize + size);
    writeSize(stream, kRiffSizeOffset, kRiffHeaderRest + size);
    writeSize(stream, kDataSizeOffset, size);
    return stream;
}

}  // namespace vaultpad::helpers
