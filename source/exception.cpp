#include "exception.h"

namespace vaultpad::exception {

Exception::Exception(const char* message) : message_(message) {}

Exception::Exception(const std::string& message) : message_(message) {}

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
    return message_.c_str();
}

}  // namespace vaultpad::exception
