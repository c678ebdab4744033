/* What is wrong with a file. */
#ifndef VAULTPAD_TOOLS_CHECK_FINDING_H
#define VAULTPAD_TOOLS_CHECK_FINDING_H

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace vaultpad::tools {

struct Finding {
    int line = 0;
    std::string rule;
    std::string what;
    std::string mend; /* what to do about it */
};

/* The text with control characters made blanks: a message is one line, whatever a file holds. */
std::string onOneLine(std::string text);

class Findings {
public:
    void add(int line, std::string rule, std::string what, std::string mend);
    bool empty() const { return findings_.empty(); }
    std::size_t size() const { return findings_.size(); }

    /* Writes "FILE:LINE: RULE: WHAT; MEND" for each, by line; equal ones once. Returns how many lines that were. */
    std::size_t print(const std::string& file, std::ostream& output);

    /* For the way from one process to another. */
    std::string serialised() const;
    void addSerialised(const std::string& text);

private:
    std::vector<Finding> findings_;
};

}  // namespace vaultpad::tools

#endif
