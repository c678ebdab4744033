#include "keymap.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "../host/key-router-keys.h"

namespace vaultpad::compositor {

namespace {

/* Between the kernel's codes and xkb's. */
constexpr uint32_t kXkbOffset = 8;

/* xkbcommon knows fewer names than a television. Those without a keysym get a number of the vendors' range. */
constexpr uint32_t kVendorKeysyms = 0x1F000000;

std::string keysymOf(const host::RemoteControlKey& key) {
    if (xkb_keysym_from_name(key.name, XKB_KEYSYM_NO_FLAGS) != XKB_KEY_NoSymbol) {
        return key.name;
    }
    std::ostringstream number;
    number << "0x" << std::hex << kVendorKeysyms + key.code;
    return number.str();
}

}  // namespace

std::string keymapText() {
    std::ostringstream codes;
    std::ostringstream symbols;
    uint32_t largest = 0;
    for (const host::RemoteControlKey& key : host::remoteControlKeys()) {
        const uint32_t code = key.code + kXkbOffset;
        largest = code > largest ? code : largest;
        codes << "<" << code << ">=" << code << ";\n";
        symbols << "key <" << code << ">{[" << keysymOf(key) << "]};\n";
    }
    std::ostringstream text;
    text << "xkb_keymap {\nxkb_keycodes \"remote\" {\nminimum=" << kXkbOffset << ";\nmaximum=" << largest << ";\n"
         << codes.str() << "};\nxkb_types \"remote\" {\ntype \"ONE_LEVEL\" { modifiers=none; };\n};\n"
         << "xkb_compatibility \"remote\" {};\nxkb_symbols \"remote\" {\n"
         << symbols.str() << "};\n};\n";
    return text.str();
}

Keymap makeKeymap() {
    const std::string text = keymapText();
    Keymap keymap;
    keymap.fd = host::UniqueFd(memfd_create("keymap", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    keymap.size = static_cast<uint32_t>(text.size() + 1);
    if (!keymap.fd.valid() || write(keymap.fd.get(), text.c_str(), keymap.size) != static_cast<ssize_t>(keymap.size) ||
        fcntl(keymap.fd.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL) != 0) {
        throw std::runtime_error(std::string("the keymap could not be made: ") + std::strerror(errno));
    }
    return keymap;
}

uint32_t codeOf(const std::string& name) {
    for (const host::RemoteControlKey& key : host::remoteControlKeys()) {
        if (name == key.name) {
            return key.code;
        }
    }
    return 0;
}

}  // namespace vaultpad::compositor
