/* The television of this session: a key file for the development host's platform services. */
#ifndef VAULTPAD_DEMO_TELEVISION_FILE_H
#define VAULTPAD_DEMO_TELEVISION_FILE_H

#include <string>

#include "options.h"

namespace vaultpad_demo {

/* Writes the key file and points VAULTPAD_TELEVISION at it; removes it when it goes. Throws std::runtime_error. */
class TelevisionFile {
public:
    explicit TelevisionFile(const Options& options);
    ~TelevisionFile();
    TelevisionFile(const TelevisionFile&) = delete;
    TelevisionFile& operator=(const TelevisionFile&) = delete;

private:
    std::string path_;
};

}  // namespace vaultpad_demo

#endif
