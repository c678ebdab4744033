/* The loading indicator of a development host: not drawn, but kept where a person or a test can read it. */
#ifndef VAULTPAD_HELPERS_LOADING_INDICATOR_H
#define VAULTPAD_HELPERS_LOADING_INDICATOR_H

#include <string>

namespace vaultpad::helpers {

/*
 * While it exists, the process has an unnamed file called "vaultpad-loading" with one line: the pad and the state of
 * the voice connection. Read it below /proc/PID/fd. It goes with the process, however that ends.
 */
class LoadingIndicator {
public:
    LoadingIndicator(const std::string& pad, const std::string& voiceConnection);
    ~LoadingIndicator();
    LoadingIndicator(const LoadingIndicator&) = delete;
    LoadingIndicator& operator=(const LoadingIndicator&) = delete;

private:
    int file_;
};

}  // namespace vaultpad::helpers

#endif
