// Text from the client made fit for a log line.
#ifndef VAULTPAD_SECURE_WORLD_SESSION_TEXT_H
#define VAULTPAD_SECURE_WORLD_SESSION_TEXT_H

#include <string>
#include <string_view>

namespace vaultpad::secureworld {

// The text in quotation marks, every byte that is not printable ASCII as \xHH, cut short when it is long: a client
// must not be able to write lines or terminal commands of its own into the log.
std::string printable(std::string_view text);

// The same without quotation marks and without the cut.
std::string escaped(std::string_view text);

}  // namespace vaultpad::secureworld

#endif
