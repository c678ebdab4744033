// The link to the voice maker: the socket, the messages, the process.
#include "helper-paths.h"
#include "voice-maker-fixture.h"

namespace vaultpad::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

}  // namespace

TEST_F(VoiceMakerTest, CreateNamesOneClipForEachVoiceInTheCollectionsOrder) {
    guide().create(1);
    EXPECT_EQ(guide().voiceCount(), 3);
    Strings ids;
    for (const audio::voice_data& data : guide().clips()) {
        ids.push_back(data.id);
        EXPECT_THAT(data.data, IsEmpty());
    }
    EXPECT_THAT(ids, UnorderedElementsAre("a", "b", "c"));
    EXPECT_EQ(platform().count("fork"), 1);
}

TEST_F(VoiceMakerTest, SocketIsBoundToTheZeroPaddedAbstractName) {
    guide().create(1);
    close(connection());
    // The receiver's thread writes the list that is read below: it has to have ended.
    VoiceGuide::destroy();
    std::string expected(110, '\0');
    expected[0] = AF_UNIX;
    expected.replace(3, std::strlen("vaultpad_voice.socket"), "vaultpad_voice.socket");
    EXPECT_THAT(libc().boundAddresses, ElementsAre(expected));
}

TEST_F(VoiceMakerTest, ClipsAreCompleteAfterTheThirdFinalFlag) {
    guide().create(1);
    sendChunk(0, "a1", 0);
    sendChunk(1, "b1", kFinal);
    sendChunk(2, "c1", 0);
    sendChunk(0, "a2", kFinal);
    sendChunk(2, "c2", 0);
    sendChunk(2, "", 2);
    sendChunk(2, "c4", kFinal);
    guide().waitComplete();
    EXPECT_TRUE(guide().enabled());
    EXPECT_EQ(clip(0), "a1a2");
    EXPECT_EQ(clip(1), "b1");
    EXPECT_EQ(clip(2), "c1c2c4");
    EXPECT_THAT(platform().errors(), IsEmpty());
    EXPECT_EQ(platform().count("kill"), 0);
}

TEST_F(VoiceMakerTest, CompletionCountsFinalFlagsNotClips) {
    guide().create(1);
    for (const char* text : {"x", "y", "z"}) {
        sendChunk(1, text, kFinal);
    }
    guide().waitComplete();
    EXPECT_TRUE(guide().enabled());
    EXPECT_EQ(clip(1), "xyz");
    EXPECT_EQ(clip(0), "");
}

TEST_F(VoiceMakerTest, OnlyTheValidBytesOfAMessageAreAppended) {
    writeVoices({"a"});
    guide().create(1);
    sendChunk(0, "four more", kFinal, 4);
    guide().waitComplete();
    EXPECT_EQ(clip(0), "four");
}

TEST_F(VoiceMakerTest, FullMessageIsTakenWhole) {
    writeVoices({"a"});
    guide().create(1);
    const std::string full(24000, 'w');
    sendChunk(0, full, kFinal);
    guide().waitComplete();
    EXPECT_EQ(clip(0), full);
}

TEST_F(VoiceMakerTest, FinalFlagsBeyondTheClipsFindNoReceiver) {
    writeVoices({"a"});
    guide().create(1);
    sendChunk(0, "all", kFinal);
    guide().waitComplete();
    EXPECT_EQ(tryToConnect(), -1);
    EXPECT_EQ(clip(0), "all");
}

TEST_F(VoiceMakerTest, NoVoicesAreCompleteAtOnce) {
    writeVoices({});
    guide().create(1);
    guide().waitComplete();
    EXPECT_TRUE(guide().enabled());
    EXPECT_EQ(guide().voiceCount(), 0);
    EXPECT_THAT(guide().clips(), IsEmpty());
}

TEST_F(VoiceMakerTest, ReceiverWithoutVoicesReturnsZeroAndClosesItsSocket) {
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    EXPECT_EQ(guide().recvVoiceData(socket), 0);
    EXPECT_EQ(close(socket), -1);
}

TEST_F(VoiceMakerTest, SetVoiceDataAppends) {
    guide().clips().resize(2);
    const unsigned char bytes[] = {'p', 'q', 'r'};
    guide().setVoiceDataListData(bytes, 1, 2);
    guide().setVoiceDataListData(bytes, 1, 3);
    EXPECT_EQ(clip(1), "pqpqr");
    EXPECT_EQ(clip(0), "");
}

TEST_F(VoiceMakerTest, ChildRunsTheMakerWithNameAndTypeAndNothingElse) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string path = voiceMakerPath();
    const std::string call = "execl." + path + ", " + path + ", vaultpad, 1.";
    EXPECT_EXIT(
        {
            libc().forks = {0};
            // The child ends where it stands, without destructors.
            platform().observer = [this](const std::string& function) {
                if (function == "execl") {
                    folder_.remove();
                }
            };
            guide().create(1);
        },
        testing::ExitedWithCode(127), call);
}

}  // namespace vaultpad::test
