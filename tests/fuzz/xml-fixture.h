/* A resource tree of the process's own, into which a fuzzer writes the file that the parser is to read. */
#ifndef VAULTPAD_TESTS_FUZZ_XML_FIXTURE_H
#define VAULTPAD_TESTS_FUZZ_XML_FIXTURE_H

#include <string>

#include "exception.h"
#include "platform-double.h"
#include "temporary-folder.h"

namespace vaultpad::fuzz {

class XmlFixture {
public:
    void write(const char* file, const std::uint8_t* data, std::size_t size) {
        test::platform().reset();
        test::platform().television.applicationRoot = folder_.path();
        folder_.write(std::string("vaultpad/res/xml/") + file, {reinterpret_cast<const char*>(data), size});
    }

private:
    test::TemporaryFolder folder_;
};

}  // namespace vaultpad::fuzz

#endif
