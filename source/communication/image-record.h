/* One rendered image on its way to the trusted application. */
#ifndef VAULTPAD_SOURCE_COMMUNICATION_IMAGE_RECORD_H
#define VAULTPAD_SOURCE_COMMUNICATION_IMAGE_RECORD_H

#include <vaultpad/ta-protocol.h>

#include <cstdint>

namespace vaultpad::communication {

struct ImageRecord {
    char name[VAULTPAD_TA_IMAGE_NAME_SIZE]; /* NUL-terminated */
    std::uint8_t* pixels;                   /* packed, from malloc; owned until sent, then null */
    std::int32_t x;                         /* place within the pad */
    std::int32_t y;
    std::int32_t width; /* pixels per row */
    std::int32_t height;
    std::uint32_t size; /* width * height * 3 bytes */
    bool sent;          /* written into a batch */
};

}  // namespace vaultpad::communication

#endif
