/* A parser whose resources lie in a folder of the test's own. */
#ifndef VAULTPAD_UNIT_DRAWING_PARSER_FIXTURE_H
#define VAULTPAD_UNIT_DRAWING_PARSER_FIXTURE_H

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "context/application-context-parser.h"
#include "platform-double.h"
#include "temporary-folder.h"

namespace vaultpad::test {

class ParserTest : public testing::Test {
protected:
    ParserTest() {
        platform().reset();
        platform().television.applicationRoot = folder_.path();
    }

    /* Parses the text as the PIN pad's layout. */
    std::shared_ptr<context::ElementContainer> parse(const std::string& xml) {
        folder_.write("vaultpad/res/xml/normal/pinpad.xml", xml);
        parser_.setMode(0, 0, 1, 0, 0);
        return parser_.parse();
    }

    /* The text of the Exception that parse() throws; anything else fails the test. */
    std::string parseError(const std::string& xml);

    void writeVoices(const std::string& keyboardOrPinpad, const std::string& xml) {
        folder_.write("vaultpad/res/xml/audio/" + keyboardOrPinpad + "-audio.xml", xml);
    }

    /* Writes a file into the test's folder and returns its path. */
    std::string write(const std::string& relative, const std::string& text) {
        folder_.write(relative, text);
        return folder_.path() + "/" + relative;
    }

    TemporaryFolder folder_;
    context::ApplicationContextParser parser_;
};

}  // namespace vaultpad::test

#endif
