#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vaultpad-platform/dlog.h>

#include <limits>
#include <set>

#include "context/application-context-parser.h"
#include "exception.h"
#include "platform-double.h"

namespace vaultpad::test {

namespace {

using context::ApplicationContextParser;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

constexpr int kPinpad = 1;
constexpr int kKeyboard = 2;

class LayoutSelection : public testing::Test {
protected:
    LayoutSelection() {
        platform().reset();
        platform().television.applicationRoot = "/root-of-apps";
    }

    // The selected file below the resources' XML folder.
    std::string selected(int focusZoom, int highContrast, int type, int reverse, int orientation) {
        EXPECT_EQ(parser_.setMode(focusZoom, highContrast, type, reverse, orientation), 0);
        const std::string folder = "/root-of-apps/vaultpad/res/xml/";
        const std::string path = parser_.path();
        EXPECT_EQ(path.substr(0, folder.size()), folder);
        return path.substr(folder.size());
    }

    ApplicationContextParser parser_;
};

TEST_F(LayoutSelection, HasNoPathAtFirst) {
    EXPECT_EQ(parser_.path(), "");
}

TEST_F(LayoutSelection, JoinsThePathWithThePlatformsApplicationRoot) {
    EXPECT_EQ(parser_.setMode(0, 0, kKeyboard, 0, 0), 0);
    EXPECT_EQ(parser_.path(), "/root-of-apps/vaultpad/res/xml/normal/keyboard.xml");
    EXPECT_THAT(platform().journal(), ElementsAre("tzplatform_mkpath(28, vaultpad/res/xml/normal/keyboard.xml)"));
}

struct File {
    int type;
    int orientation;
    int reverse;
    const char* stem;
};

constexpr File kFiles[] = {
    {kKeyboard, 0, 0, "normal/keyboard"},
    {kPinpad, 0, 0, "normal/pinpad"},
    {kKeyboard, 0, 1, "reverse/reverse-keyboard"},
    {kPinpad, 0, 1, "reverse/reverse-pinpad"},
    {kKeyboard, 1, 0, "vertical_normal/vertical-keyboard"},
    {kPinpad, 1, 0, "vertical_normal/vertical-pinpad"},
    {kKeyboard, 1, 1, "vertical_reverse/vertical-reverse-keyboard"},
    {kPinpad, 1, 1, "vertical_reverse/vertical-reverse-pinpad"},
};

TEST_F(LayoutSelection, KnowsThirtyTwoFiles) {
    std::set<std::string> paths;
    for (const File& file : kFiles) {
        const std::string stem = file.stem;
        EXPECT_EQ(selected(0, 0, file.type, file.reverse, file.orientation), stem + ".xml");
        EXPECT_EQ(selected(1, 0, file.type, file.reverse, file.orientation), stem + "-e.xml");
        EXPECT_EQ(selected(0, 1, file.type, file.reverse, file.orientation), stem + "-h.xml");
        EXPECT_EQ(selected(1, 1, file.type, file.reverse, file.orientation), stem + "-eh.xml");
        for (const int flags : {0, 1, 2, 3}) {
            paths.insert(selected(flags & 1, flags >> 1, file.type, file.reverse, file.orientation));
        }
    }
    EXPECT_EQ(paths.size(), 32u);
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(LayoutSelection, SelectsTheReversedPortraitPinpadWithBothSettings) {
    EXPECT_EQ(selected(1, 1, kPinpad, 1, 3), "vertical_reverse/vertical-reverse-pinpad-eh.xml");
}

TEST_F(LayoutSelection, TakesOrientationTwoForHorizontalAndFocusZoomTwoForBoth) {
    EXPECT_EQ(selected(2, 0, kKeyboard, 0, 2), "normal/keyboard-eh.xml");
}

TEST_F(LayoutSelection, TakesOnlyOrientationsOneAndThreeForVertical) {
    for (const int orientation : {1, 3}) {
        EXPECT_EQ(selected(0, 0, kKeyboard, 0, orientation), "vertical_normal/vertical-keyboard.xml") << orientation;
    }
    for (const int orientation : {0, 2, 4, 5, 7, 90, -1, -2, std::numeric_limits<int>::max(),
                                  std::numeric_limits<int>::min(), std::numeric_limits<int>::min() + 1}) {
        EXPECT_EQ(selected(0, 0, kKeyboard, 0, orientation), "normal/keyboard.xml") << orientation;
    }
}

TEST_F(LayoutSelection, TakesEveryUnknownPairOfSettingsForBoth) {
    constexpr int kPairs[][2] = {{1, 1}, {2, 0}, {0, 2}, {2, 2}, {1, 2}, {2, 1}, {-1, 0}, {0, -1}, {1, -1}, {-1, 1}};
    for (const auto& pair : kPairs) {
        EXPECT_EQ(selected(pair[0], pair[1], kPinpad, 0, 0), "normal/pinpad-eh.xml") << pair[0] << ", " << pair[1];
    }
}

TEST_F(LayoutSelection, LogsAWrongTypeOnlyEvenWithAWrongReverseFlag) {
    EXPECT_EQ(parser_.setMode(0, 0, 3, 5, 1), 0);
    EXPECT_THAT(platform().errors(), ElementsAre(" wrong ime type"));
}

TEST_F(LayoutSelection, LogsAWrongReverseFlag) {
    for (const int reverse : {2, -1}) {
        platform().clearLog();
        EXPECT_EQ(parser_.setMode(0, 0, kPinpad, reverse, 0), 0);
        EXPECT_THAT(platform().errors(), ElementsAre(" wrong reverse type")) << reverse;
    }
}

TEST_F(LayoutSelection, KeepsTheEarlierPathOnAWrongTypeOrReverseFlag) {
    const std::string earlier = selected(1, 0, kPinpad, 1, 1);
    EXPECT_EQ(selected(0, 0, 0, 0, 0), earlier);
    EXPECT_EQ(selected(0, 0, 3, 0, 0), earlier);
    EXPECT_EQ(selected(0, 0, -1, 0, 0), earlier);
    EXPECT_EQ(selected(0, 0, kPinpad, 2, 0), earlier);
}

TEST_F(LayoutSelection, StaysWithoutAPathWhenTheFirstModeIsWrong) {
    EXPECT_EQ(parser_.setMode(0, 0, 3, 0, 0), 0);
    EXPECT_EQ(parser_.path(), "");
    EXPECT_THROW(parser_.parse(), exception::Exception);
}

TEST_F(LayoutSelection, WritesItsMessagesInTheLibrarysErrorFormat) {
    parser_.setMode(0, 0, 3, 0, 0);
    parser_.setMode(0, 0, kPinpad, 2, 0);
    const auto lines = platform().log();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_THAT(lines[0].text, EndsWith(" > \033[01;31;40m wrong ime type\033[0m"));
    EXPECT_THAT(lines[1].text, EndsWith(" > \033[01;31;40m wrong reverse type\033[0m"));
    for (const LogLine& line : lines) {
        EXPECT_EQ(faultOf(line), "") << line.text;
        EXPECT_EQ(line.priority, VAULTPAD_DLOG_ERROR);
        EXPECT_EQ(line.tag, "VAULTPAD_CA");
        EXPECT_EQ(line.file(), "application-context-parser.cpp");
        EXPECT_EQ(line.function(), "setMode");
    }
}

TEST_F(LayoutSelection, SelectsNothingWhenThePlatformKnowsNoRoot) {
    platform().fail("tzplatform_mkpath");
    EXPECT_EQ(parser_.setMode(0, 0, kPinpad, 0, 0), 0);
    EXPECT_THROW(parser_.parse(), exception::Exception);
}

}  // namespace

}  // namespace vaultpad::test
