/* One line of the platform's log, taken apart. */
#ifndef VAULTPAD_TESTS_SUPPORT_LOG_LINE_H
#define VAULTPAD_TESTS_SUPPORT_LOG_LINE_H

#include <string>

namespace vaultpad::test {

struct LogLine {
    int logId = 0;
    int priority = 0;
    std::string tag;
    std::string text;

    /* The parts of "file: function(line) > message"; empty or 0 when the text has another form. */
    std::string file() const;
    std::string function() const;
    int line() const;
    /* Without prefix and colour sequence. */
    std::string message() const;
};

/*
 * Tells what is wrong with a line's form, empty when nothing is: the prefix, the tag, and for every tag but the entry
 * points' the colour sequence that goes with the priority.
 */
std::string faultOf(const LogLine& line);

}  // namespace vaultpad::test

#endif
