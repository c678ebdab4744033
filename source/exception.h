/* The library's one exception type. */
#ifndef VAULTPAD_SOURCE_EXCEPTION_H
#define VAULTPAD_SOURCE_EXCEPTION_H

#include <exception>
#include <string>

namespace vaultpad::exception {

class Exception : public std::exception {
public:
    explicit Exception(const char* message);
    explicit Exception(const std::string& message);
    ~Exception() override;

    const char* what() const noexcept override;

private:
    std::string message_;
};

}  // namespace vaultpad::exception

#endif
