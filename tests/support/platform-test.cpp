#include "platform-test.h"

#include "audio/voice-guide.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

int voiceDecision = 0;

PlatformTest::PlatformTest() {
    platform().reset();
    libc() = {};
    vaultpad_test_reset_efl();
    voiceDecision = 0;
}

PlatformTest::~PlatformTest() {
    audio::VoiceGuide::destroy();
    for (const LogLine& line : platform().log()) {
        EXPECT_EQ(faultOf(line), "") << line.text;
    }
}

}  // namespace vaultpad::test

void vaultpad_test_record(const char* function, const char* arguments) {
    vaultpad::test::platform().call(function, arguments);
}
