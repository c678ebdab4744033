/* The two platform services that drawing a layout needs, answered inside the tool. */
#ifndef VAULTPAD_TOOLS_HOST_SERVICES_H
#define VAULTPAD_TOOLS_HOST_SERVICES_H

#include <string>
#include <vector>

namespace vaultpad::tools {

/* The library's parser asks the platform where a layout is; it is told this file, whatever layout it asks for. */
void answerWithLayout(std::string file);

/* The messages that the library has logged as errors since the last call, without the log's decoration. */
std::vector<std::string> takeLoggedErrors();

}  // namespace vaultpad::tools

#endif
