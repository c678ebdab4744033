/* The grammar of the television's key file. */
#ifndef VAULTPAD_PLATFORM_HOST_TELEVISION_FILE_H
#define VAULTPAD_PLATFORM_HOST_TELEVISION_FILE_H

#include <string>
#include <vector>

#include "television.h"

namespace vaultpad::host {

/*
 * Reads the text of a key file into television, over the defaults. file is its name, for the messages; relative paths
 * in it are meant from the folder that the file is in. Returns one line for each problem, none when all is well; with
 * problems, television holds part of the values and must not be used.
 */
std::vector<std::string> parseTelevision(const std::string& text, const std::string& file, Television& television);

}  // namespace vaultpad::host

#endif
