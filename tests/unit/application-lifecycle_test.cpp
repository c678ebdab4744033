// Construction, the start-up's decisions, destruction.
#include <libintl.h>
#include <signal.h>

#include <clocale>

#include "application-fixture.h"
#include "audio/voice-guide.h"
#include "exception.h"
#include "helper-paths.h"
#include "voice-decision-double.h"

namespace vaultpad::test {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

class LifecycleTest : public ApplicationTest {
protected:
    LifecycleTest() {
        writeLayout("normal/pinpad.xml");
        writeLayout("normal/keyboard.xml");
    }

    static void init(int type, int extra) { Application::instance()->vault_pad_init(type, extra, false); }

    static std::string helperCall(const std::string& arguments) {
        const std::string path = backgroundHelperPath();
        return "execl(" + path + ", " + path + ", " + arguments + ")";
    }
};

}  // namespace

TEST_F(LifecycleTest, InstanceIsMadeOnceAndStartsUnclosedWithAPressedButton) {
    Application* instance = Application::instance();
    EXPECT_EQ(Application::instance(), instance);
    EXPECT_EQ(platform().count("ua_UI_orientation_get"), 1);
    EXPECT_TRUE(instance->vault_pad_button_press());
    EXPECT_FALSE(instance->is_vault_pad_close());
}

TEST_F(LifecycleTest, DestroyWithoutAnInstanceDoesNothing) {
    Application::destroy();
    EXPECT_THAT(platform().log(), IsEmpty());
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(LifecycleTest, DestroyEndsTheVoiceGuideToo) {
    Application::instance();
    ASSERT_NE(audio::VoiceGuide::voiceGuide, nullptr);
    Application::destroy();
    EXPECT_EQ(audio::VoiceGuide::voiceGuide, nullptr);
}

TEST_F(LifecycleTest, ConstructionAppliesLanguageAndCatalogue) {
    setlocale(LC_ALL, "C");
    platform().television.language = "C.UTF-8";
    Application::instance();
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C.UTF-8");
    EXPECT_EQ(bindtextdomain("vaultpad", nullptr), folder_.path() + "/vaultpad/res/locale");
    EXPECT_STREQ(textdomain(nullptr), "vaultpad");
}

TEST_F(LifecycleTest, WithoutALanguageSettingTheLocaleStays) {
    setlocale(LC_ALL, "C");
    platform().television.language.reset();
    Application::instance();
    EXPECT_STREQ(setlocale(LC_ALL, nullptr), "C");
}

TEST_F(LifecycleTest, SecondInitAfterSuccessDoesNothingNotEvenStoreTheType) {
    init(1, 4);
    platform().clearJournal();
    platform().clearLog();
    Application::instance()->vault_pad_init(2, 0, true);
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().infos(), ElementsAre("called;"));
    // use_keyrouter was not stored either: nothing is ungrabbed.
    Application::destroy();
    EXPECT_EQ(platform().count("KeyRouter_UnSet_KeyList"), 0);
    EXPECT_THAT(platform().infos(), Not(Contains("keyrouter finalizey")));
}

TEST_F(LifecycleTest, PinpadSendsItsExtra) {
    init(1, 6);
    EXPECT_EQ(imeTypeWords()[1], Value(6u));
}

TEST_F(LifecycleTest, KeyboardSendsExtraZeroWhateverTheCallerPassed) {
    init(2, 6);
    EXPECT_EQ(imeTypeWords()[0], Value(2u));
    EXPECT_EQ(imeTypeWords()[1], Value(0u));
}

TEST_F(LifecycleTest, UnknownTypeOnAFreshObjectStartsTheNumpadHelperAndContinues) {
    libc().forks = {0};
    // Type 0 has neither an origin nor a layout: the start-up ends at the layout that was never chosen.
    EXPECT_THROW(init(3, 5), exception::Exception);
    EXPECT_THAT(platform().journal(), Contains(helperCall("numpad, disconnect")));
    EXPECT_THAT(platform().journal(), Contains("tzfw_core_write_uint(block 1, 0)"));
    EXPECT_THAT(platform().errors(),
                ElementsAre("vault_pad_init failed; wrong ime type",
                            "wrong ime type and wrong enlarge mode (type : 0, enlarge : 0)", " wrong ime type"));
}

TEST_F(LifecycleTest, UnknownTypeKeepsTheKeyboardWithExtraZero) {
    platform().fail("tzplatform_mkpath", 2);
    ASSERT_THROW(init(2, 0), exception::Exception);
    init(3, 7);
    EXPECT_EQ(imeTypeWords()[0], Value(2u));
    EXPECT_EQ(imeTypeWords()[1], Value(0u));
}

TEST_F(LifecycleTest, UnknownTypeKeepsThePinpadWithTheNewExtra) {
    platform().fail("tzplatform_mkpath", 2);
    ASSERT_THROW(init(1, 2), exception::Exception);
    init(9, 7);
    EXPECT_EQ(imeTypeWords()[0], Value(1u));
    EXPECT_EQ(imeTypeWords()[1], Value(7u));
}

TEST_F(LifecycleTest, KeyboardHelperIsStartedWithItsMode) {
    libc().forks = {0};
    init(2, 0);
    EXPECT_THAT(platform().journal(), Contains(helperCall("keyboard, disconnect")));
}

TEST_F(LifecycleTest, HelperIsToldAboutANetworkSpeaker) {
    voiceDecision = 1;
    platform().television.speaker = 3;
    libc().forks = {0};
    init(1, 0);
    EXPECT_THAT(platform().journal(), Contains(helperCall("numpad, connect")));
}

TEST_F(LifecycleTest, ChildWhoseHelperIsMissingGoesOnWithTheStartUp) {
    libc().forks = {0};
    init(1, 4);
    const Strings journal = platform().journal();
    const auto exec = std::find(journal.begin(), journal.end(), helperCall("numpad, disconnect"));
    ASSERT_NE(exec, journal.end());
    EXPECT_EQ(*(exec + 1), "signal(SIGUSR2)");
    EXPECT_THAT(platform().events(), ElementsAre(VAULTPAD_TA_EVENT_IME_TYPE));
}

TEST_F(LifecycleTest, ClosedTrustedApplicationMakesInitThrowItsCode) {
    platform().fail("tzfw_core_open_session");
    try {
        init(1, 0);
        FAIL() << "init returned";
    } catch (const exception::Exception& error) {
        EXPECT_STREQ(error.what(), "To initialize tee client is failed, ret: -1");
    }
    EXPECT_EQ(platform().count("fork"), 0);
}

TEST_F(LifecycleTest, UserSignalIsOnlyLoggedDuringAndAfterASession) {
    init(1, 0);
    raise(SIGUSR2);
    Application::destroy();
    raise(SIGUSR2);
    int lines = 0;
    for (const LogLine& line : platform().log()) {
        lines += line.message() == "signal handler for SIGUSR2." ? 1 : 0;
    }
    EXPECT_EQ(lines, 2);
    EXPECT_THAT(platform().errors(), IsEmpty());
    signal(SIGUSR2, SIG_DFL);
}

struct Mode : Named {
    int focusZoom;
    int highContrast;
    int mirrored;
    int rotatorStatus;
    int type;
    const char* layout;
    std::vector<std::int32_t> settings; /* the third to the sixth word of event 5 */
};

class LayoutOfMode : public ApplicationTest, public testing::WithParamInterface<Mode> {};

TEST_P(LayoutOfMode, FollowsSettingsMirroringAndPanel) {
    const Mode& mode = GetParam();
    writeLayout(mode.layout);
    Television& television = platform().television;
    television.settings["db/menu/system/accessibility/focuszoom"] = mode.focusZoom;
    television.settings["db/menu/system/accessibility/highcontrast"] = mode.highContrast;
    television.uiOrientation = mode.mirrored;
    television.rotatorStatus = mode.rotatorStatus;
    Application::instance()->vault_pad_init(mode.type, 0, false);
    EXPECT_THAT(platform().journal(), Contains(layoutPath(mode.layout)));
    const Values sent = imeTypeWords();
    EXPECT_EQ(Values(sent.begin() + 2, sent.begin() + 6), [&mode] {
        Values expected;
        for (const std::int32_t word : mode.settings) {
            expected.emplace_back(static_cast<std::uint32_t>(word));
        }
        return expected;
    }());
}

INSTANTIATE_TEST_SUITE_P(
    , LayoutOfMode,
    testing::Values(
        Mode{"Plain", 0, 0, 0, 1, 1, "normal/pinpad.xml", {0, 0, 0, 0}},
        Mode{"Enlarged", 1, 0, 0, 1, 2, "normal/keyboard-e.xml", {1, 0, 0, 0}},
        Mode{"HighContrast", 0, 1, 0, 1, 1, "normal/pinpad-h.xml", {0, 1, 0, 0}},
        Mode{"EnlargedHighContrast", 1, 1, 0, 1, 2, "normal/keyboard-eh.xml", {1, 1, 0, 0}},
        Mode{"Mirrored", 0, 0, 5, 1, 1, "reverse/reverse-pinpad.xml", {0, 0, 1, 0}},
        Mode{"Portrait", 0, 0, 0, 0, 2, "vertical_normal/vertical-keyboard.xml", {0, 0, 0, 1}},
        Mode{"MirroredReversed", 1, 1, 1, 2, 1, "vertical_reverse/vertical-reverse-pinpad-eh.xml", {1, 1, 1, 3}}),
    CaseName());

TEST_F(LifecycleTest, EnabledVoiceGuideIsFilledAfterTheImeTypeAndAwaitedAfterTheImages) {
    folder_.write("vaultpad/res/xml/audio/pinpad-audio.xml", "<audio/>");
    voiceDecision = 1;
    init(1, 0);
    EXPECT_EQ(platform().count("fork"), 2);
    const Strings paths = platform().callsOf("tzplatform_mkpath");
    EXPECT_THAT(paths, ElementsAre("tzplatform_mkpath(28, vaultpad/res/locale)", layoutPath("audio/pinpad-audio.xml"),
                                   layoutPath("normal/pinpad.xml")));
    EXPECT_TRUE(audio::VoiceGuide::instance().enabled());
}

TEST_F(LifecycleTest, MissingVoiceTextEndsTheStartUp) {
    voiceDecision = 1;
    EXPECT_THROW(init(1, 0), exception::Exception);
    EXPECT_THAT(platform().events(), ElementsAre(VAULTPAD_TA_EVENT_IME_TYPE));
}

}  // namespace vaultpad::test
