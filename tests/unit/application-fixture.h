/* A television with a layout for every mode, on which the controller starts up without an error line. */
#ifndef VAULTPAD_TESTS_UNIT_APPLICATION_FIXTURE_H
#define VAULTPAD_TESTS_UNIT_APPLICATION_FIXTURE_H

#include <vaultpad/ta-protocol.h>
#include <vaultpad/vaultpad.h>

#include <string>

#include "application.h"
#include "platform-test.h"
#include "temporary-folder.h"

namespace vaultpad::test {

/* One transparent key of 4 x 3 pixels at (5, 6). */
constexpr const char* kOneKeyLayout = R"(<layout>
    <images basedir="/images"><image id="box" type="rectangle" width="4" height="3"/></images>
    <objects><object id="key.1.normal" type="image" ref="box" x="5" y="6"/></objects>
</layout>)";

class ApplicationTest : public PlatformTest {
protected:
    ApplicationTest() {
        Television& television = platform().television;
        television.applicationRoot = folder_.path();
        television.settings = {{"db/menu/system/accessibility/focuszoom", 0},
                               {"db/menu/system/accessibility/highcontrast", 0},
                               {"memory/bluetooth/stream_status", 0}};
        television.rotatorSupported = true;
        television.sensorSupported = true;
        libc().processesAreFake = true;
        libc().securityLabel = "pad-client";
        app_data = {};
    }
    ~ApplicationTest() override {
        Application::destroy();
        app = nullptr;
        app_data = {};
    }

    /* relative: below "vaultpad/res/xml/". */
    void writeLayout(const std::string& relative, const std::string& text = kOneKeyLayout) const {
        folder_.write("vaultpad/res/xml/" + relative, text);
    }

    static std::string layoutPath(const std::string& relative) {
        return "tzplatform_mkpath(28, vaultpad/res/xml/" + relative + ")";
    }

    static Values imeTypeWords() { return platform().blockOf(VAULTPAD_TA_EVENT_IME_TYPE).written; }

    TemporaryFolder folder_;
};

}  // namespace vaultpad::test

#endif
