/* Wiping of secrets in a way that the compiler cannot drop. */
#ifndef VAULTPAD_SOURCE_WIPE_H
#define VAULTPAD_SOURCE_WIPE_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vaultpad {

/* Overwrites size bytes with zeros. */
void wipe(void* data, std::size_t size) noexcept;

/* Bytes that are wiped when they go out of scope. The size is fixed, so no copy is ever left behind by growth. */
class SecretBytes {
public:
    explicit SecretBytes(std::size_t size) : bytes_(size) {}
    ~SecretBytes() { wipe(bytes_.data(), bytes_.size()); }
    SecretBytes(const SecretBytes&) = delete;
    SecretBytes& operator=(const SecretBytes&) = delete;

    std::uint8_t* data() { return bytes_.data(); }
    const std::uint8_t* data() const { return bytes_.data(); }
    std::size_t size() const { return bytes_.size(); }

private:
    std::vector<std::uint8_t> bytes_;
};

}  // namespace vaultpad

#endif
