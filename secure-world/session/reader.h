// Reads a request's values in order, never beyond its end.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_READER_H
#define VAULTPAD_SECURE_WORLD_SESSION_READER_H

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "session/request-bytes.h"

namespace vaultpad::secureworld {

// Works on a copy only, never on the shared memory itself: the client could change a length there after it has been
// checked. Every method throws Refusal, naming `what`, when the value is not wholly there. Results point into the
// bytes that the reader was made of.
class Reader {
public:
    explicit Reader(const RequestBytes& bytes) : bytes_(bytes) {}

    std::size_t remaining() const { return bytes_.size - position_; }

    std::uint32_t word(const char* what);

    // A word that stands for a signed number in two's complement.
    std::int32_t number(const char* what);

    // The text up to its NUL, of at most longest bytes without it.
    std::string_view string(const char* what, std::size_t longest);

    // The next size bytes, sharing their ownership.
    RequestBytes blob(const char* what, std::size_t size);

    // Refuses what follows the last value: a client that writes more than it says has another idea of the protocol.
    void end() const;

private:
    const std::uint8_t* take(const char* what, std::size_t size);

    RequestBytes bytes_;
    std::size_t position_ = 0;
};

}  // namespace vaultpad::secureworld

#endif
