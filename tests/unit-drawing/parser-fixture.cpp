#include "parser-fixture.h"

#include "exception.h"

namespace vaultpad::test {

std::string ParserTest::parseError(const std::string& xml) {
    try {
        parse(xml);
        ADD_FAILURE() << "parsed: " << xml.substr(0, 200);
    } catch (const exception::Exception& error) {
        return error.what();
    } catch (...) {
        ADD_FAILURE() << "threw another type than Exception for: " << xml.substr(0, 200);
    }
    return {};
}

}  // namespace vaultpad::test
