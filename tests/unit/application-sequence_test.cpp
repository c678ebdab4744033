// The order of everything that a session asks of the platform.
#include "application-stages.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

}  // namespace

TEST_F(SequenceTest, SessionFromCreateToCloseCallsThePlatformInThisOrder) {
    EXPECT_EQ(create(), 0);
    EXPECT_EQ(CsapiVPADclose(), 0);
    Strings expected;
    for (const auto& [stage, calls] : startUpSequence()) {
        append(expected, calls);
    }
    EXPECT_EQ(calls(), expected);
    EXPECT_THAT(platform().errors(), IsEmpty());
}

TEST_F(SequenceTest, TrustedApplicationReceivesTheEventsInThisOrder) {
    ASSERT_EQ(create(), 0);
    EXPECT_THAT(platform().events(),
                ElementsAre(VAULTPAD_TA_EVENT_IME_TYPE, VAULTPAD_TA_EVENT_RENDER_CONTEXT, VAULTPAD_TA_EVENT_IMAGE_DATA,
                            VAULTPAD_TA_EVENT_IMAGE_DONE, VAULTPAD_TA_EVENT_SHOW, VAULTPAD_TA_EVENT_PUBLIC_KEY));
}

TEST_F(SequenceTest, SessionLogsItsStages) {
    ASSERT_EQ(create(), 0);
    ASSERT_EQ(CsapiVPADclose(), 0);
    Strings stages;
    for (const LogLine& line : platform().log()) {
        stages.push_back(line.file() + " " + line.function() + ": " + line.message());
    }
    EXPECT_THAT(
        stages,
        ElementsAre("vaultpad.cpp vault_pad_session: enter check_vpad_api_privilege success",
                    "voice-guide.cpp initialize: [TUI NWD] Disable voice guide",
                    "application.cpp vault_pad_init: called;", "object-renderer.cpp lazyInit: called;",
                    "tee-client.cpp send_ime_type: type : 1 / extra : 4 / enlarge : 0 / highcontrast : 0 / "
                    "oMode : 0 / orientation_ : 0",
                    "object-renderer.cpp render: number of objects : 1", "application.cpp vault_pad_show: called;",
                    "tee-client_voice.cpp send_data_to_ta: called;", "tee-client_efl.cpp init_render_context: called;",
                    "tee-client_efl.cpp send_image_data: [TUI NWD] before send_image_really with cnt = 1",
                    "tee-client.cpp send_image_done: called;", "tee-client.cpp show: called;",
                    "application.cpp destroy: called;", "application.cpp ~Application: called;",
                    "tee-client.cpp exit: called;"));
}

TEST_F(SequenceTest, SecondSessionInOneProcessRunsLikeTheFirst) {
    ASSERT_EQ(create(), 0);
    ASSERT_EQ(CsapiVPADclose(), 0);
    const Strings first = calls();
    platform().clearJournal();
    ASSERT_EQ(create(), 0);
    ASSERT_EQ(CsapiVPADclose(), 0);
    EXPECT_EQ(calls(), first);
}

}  // namespace vaultpad::test
