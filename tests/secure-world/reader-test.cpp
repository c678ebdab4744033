#include "session/reader.h"

#include <gtest/gtest.h>

#include <string>

#include "sample-pads.h"
#include "session/refusal.h"
#include "session/text.h"
#include "ta-client.h"

namespace vaultpad::secureworld {
namespace {

TEST(Reader, ReadsWordsStringsAndBlobsInTheOrderTheyWereWritten) {
    Reader reader(requestOf(Writer().word(0x04030201).string("ab").blob({7, 8}).word(0xfffffffe).bytes()));
    EXPECT_EQ(0x04030201u, reader.word("w"));
    EXPECT_EQ("ab", reader.string("s", 10));
    const RequestBytes blob = reader.blob("b", 2);
    EXPECT_EQ((Bytes{7, 8}), Bytes(blob.begin(), blob.end()));
    EXPECT_EQ(-2, reader.number("n"));
    EXPECT_NO_THROW(reader.end());
}

TEST(Reader, RefusesAWordThatTheBlockCutsOff) {
    Reader reader(requestOf({1, 2, 3}));
    EXPECT_THROW(reader.word("w"), Refusal);
}

TEST(Reader, RefusesABlobLargerThanWhatIsLeft) {
    Reader reader(requestOf(Writer().word(1).blob({1, 2, 3}).bytes()));
    reader.word("w");
    EXPECT_THROW(reader.blob("b", 4), Refusal);
    EXPECT_THROW(reader.blob("b", static_cast<std::size_t>(-1)), Refusal);
    EXPECT_EQ(3u, reader.remaining());
}

TEST(Reader, RefusesAStringWithoutItsEndInTheBlock) {
    Reader reader(requestOf({'a', 'b', 'c'}));
    EXPECT_THROW(reader.string("s", 100), Refusal);
}

TEST(Reader, TakesAStringOfTheLongestLengthAndRefusesOneMore) {
    Reader fits(requestOf(Writer().string("abc").bytes()));
    EXPECT_EQ("abc", fits.string("s", 3));
    Reader exceeds(requestOf(Writer().string("abcd").bytes()));
    EXPECT_THROW(exceeds.string("s", 3), Refusal);
}

TEST(Reader, RefusesBytesThatFollowTheLastValue) {
    Reader reader(requestOf({1, 2, 3, 4, 5}));
    reader.word("w");
    EXPECT_THROW(reader.end(), Refusal);
}

TEST(Reader, KeepsABlobAliveAfterTheRequestIsGone) {
    RequestBytes blob;
    {
        Reader reader(requestOf({9, 8, 7}));
        blob = reader.blob("b", 3);
    }
    EXPECT_EQ((Bytes{9, 8, 7}), Bytes(blob.begin(), blob.end()));
}

TEST(Text, ShowsNoControlCharacterOfTheClientInTheLog) {
    EXPECT_EQ("\"a\\x0a\\x1b[2Jb\\x5c\"", printable("a\n\x1b[2Jb\\"));
}

TEST(Text, CutsALongTextOfTheClientShort) {
    EXPECT_LT(printable(std::string(5000, 'x')).size(), 100u);
}

}  // namespace
}  // namespace vaultpad::secureworld
