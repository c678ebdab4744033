// The items of a voice file, and that both ends count them alike.
#include "voice-maker/voice-list.h"

#include <gmock/gmock.h>
#include <vaultpad-platform/tzplatform-config.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "context/application-context-parser.h"
#include "television.h"

namespace vaultpad::helpers {

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using Strings = std::vector<std::string>;

class VoiceList : public testing::Test {
protected:
    /* The ids in the order of the library's clips. */
    static Strings libraryOrder(int type) {
        Strings ids;
        context::ApplicationContextParser parser;
        const auto container = parser.parseAudio(type);
        for (const auto& [id, element] : *container->getVoices()) {
            ids.push_back(element->attribute("id"));
        }
        return ids;
    }

    static Strings idsOf(const std::vector<VoiceItem>& items) {
        Strings ids;
        for (const VoiceItem& item : items) {
            ids.push_back(item.id);
        }
        return ids;
    }

    std::string write(const std::string& xml) {
        const std::filesystem::path file = television_.folder() / "vaultpad/res/xml/audio/pinpad-audio.xml";
        std::filesystem::create_directories(file.parent_path());
        std::ofstream(file) << xml;
        television_.set("paths", "application-root", television_.folder().string()).apply();
        return file.string();
    }

private:
    Television television_;
};

std::string stagedFile(const char* name) {
    return tzplatform_mkpath(VAULTPAD_TZPLATFORM_APPLICATION_ROOT, name);
}

}  // namespace

TEST_F(VoiceList, KeyboardsItemsHaveTheIndicesOfTheLibrarysClips) {
    const Strings ids = idsOf(readVoices(stagedFile("vaultpad/res/xml/audio/keyboard-audio.xml")));
    EXPECT_THAT(ids, SizeIs(testing::Gt(100u)));
    EXPECT_EQ(ids, libraryOrder(2));
}

TEST_F(VoiceList, PinPadsItemsHaveTheIndicesOfTheLibrarysClips) {
    const Strings ids = idsOf(readVoices(stagedFile("vaultpad/res/xml/audio/pinpad-audio.xml")));
    EXPECT_THAT(ids, SizeIs(testing::Ge(15u)));
    EXPECT_EQ(ids, libraryOrder(1));
}

TEST_F(VoiceList, UnusualFileHasTheIndicesOfTheLibrarysClips) {
    const std::string file = write(
        "<!DOCTYPE v [<!ENTITY e 'text'>]><v>words<voices><a id='1' text='x'/><text id='no'/><!-- c --><?pi x?>"
        "<b id='2'/>&e;<comment id='no'/><c/></voices><other><d id='3'/></other><voices><e id='1' text='y'/>"
        "<f id='4'><g id='5'/></f></voices></v>");
    EXPECT_EQ(idsOf(readVoices(file)), libraryOrder(1));
}

TEST_F(VoiceList, ItemsKeepTextTranslationAndLetter) {
    const auto items =
        readVoices(write("<v><voices><i id='k' text='Capital %s' i18n='true' letter='Q'/></voices></v>"));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].id, "k");
    EXPECT_EQ(items[0].text, "Capital %s");
    EXPECT_TRUE(items[0].translated);
    EXPECT_EQ(items[0].letter, "Q");
}

TEST_F(VoiceList, LaterOfEqualIdsStays) {
    const auto items = readVoices(write("<v><voices><i id='k' text='a'/><i id='k' text='b'/></voices></v>"));
    ASSERT_THAT(items, SizeIs(1));
    EXPECT_EQ(items[0].text, "b");
    EXPECT_FALSE(items[0].translated);
}

TEST_F(VoiceList, FileWithoutVoicesHasNoItems) {
    EXPECT_THAT(readVoices(write("<v><Voices><i id='k'/></Voices></v>")), IsEmpty());
}

TEST_F(VoiceList, MissingAndMalformedFilesAreNamed) {
    for (const std::string& file : {std::string("/nonexistent/pinpad-audio.xml"), write("<v><voices></v>")}) {
        try {
            readVoices(file);
            ADD_FAILURE() << file;
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr(file));
        }
    }
}

}  // namespace vaultpad::helpers
