#include "loading-indicator.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace vaultpad::helpers {

LoadingIndicator::LoadingIndicator(const std::string& pad, const std::string& voiceConnection)
    : file_(memfd_create("vaultpad-loading", MFD_CLOEXEC)) {
    const std::string line = "loading " + pad + ", voice " + voiceConnection + "\n";
    if (write(file_, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
        std::fprintf(stderr, "vault-pad-bg: the loading indicator cannot be shown: %s\n", std::strerror(errno));
    }
}

LoadingIndicator::~LoadingIndicator() {
    close(file_);
}

}  // namespace vaultpad::helpers
