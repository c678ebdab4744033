/* What a fuzzer is made of: its entry point, and a way to take its input apart. */
#ifndef VAULTPAD_TESTS_FUZZ_FUZZER_H
#define VAULTPAD_TESTS_FUZZ_FUZZER_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

/* Takes one input, whatever it holds; returns 0. */
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace vaultpad::fuzz {

/* Ends the process, and so makes a finding, when a condition that must hold does not. */
inline void require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

/* The input from its front. What is not there any more reads as zeroes. */
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

    bool empty() const { return size_ == 0; }

    std::uint8_t byte() {
        if (size_ == 0) {
            return 0;
        }
        --size_;
        return *data_++;
    }

    /* Little-endian. */
    std::uint16_t shortWord() {
        const std::uint8_t low = byte();
        return static_cast<std::uint16_t>(low | byte() << 8);
    }
    std::uint32_t word() {
        const std::uint32_t low = shortWord();
        return low | static_cast<std::uint32_t>(shortWord()) << 16;
    }

    /* At most count bytes. */
    std::vector<std::uint8_t> bytes(std::size_t count) {
        const std::size_t taken = std::min(count, size_);
        std::vector<std::uint8_t> result(data_, data_ + taken);
        data_ += taken;
        size_ -= taken;
        return result;
    }
    std::vector<std::uint8_t> rest() { return bytes(size_); }

    /* At most count bytes as text. */
    std::string text(std::size_t count) {
        const std::vector<std::uint8_t> taken = bytes(count);
        return {taken.begin(), taken.end()};
    }

private:
    const std::uint8_t* data_;
    std::size_t size_;
};

}  // namespace vaultpad::fuzz

#endif
