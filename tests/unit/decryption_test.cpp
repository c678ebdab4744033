// From an encrypted result back to the text.
#include <clocale>
#include <cstring>

#include "decryption-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

std::u16string digits(std::size_t count) {
    std::u16string text;
    for (std::size_t i = 0; i < count; ++i) {
        text.push_back(static_cast<char16_t>(u'0' + i % 10));
    }
    return text;
}

std::string narrow(const std::u16string& wide) {
    return {wide.begin(), wide.end()};
}

}  // namespace

struct RoundTrip : Named {
    unsigned int bits;
    std::size_t prefix;
    std::size_t characters;
};

class DecryptionOf : public DecryptionTest, public testing::WithParamInterface<RoundTrip> {};

TEST_P(DecryptionOf, GivesBackTheTypedTextCutToForty) {
    const RoundTrip& trip = GetParam();
    use(KeyPair::ofBits(trip.bits));
    const std::string typed = narrow(digits(trip.characters));
    EXPECT_EQ(
        decrypt(encrypted(plaintextOf(digits(trip.characters), trip.prefix)), static_cast<unsigned int>(trip.prefix)),
        0);
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::string(text), typed.substr(0, 40));
    EXPECT_EQ(length, trip.characters) << "the whole text's length";
    EXPECT_THAT(platform().errors(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    , DecryptionOf,
    testing::Values(RoundTrip{{"FourDigits1024"}, 1024, 0, 4}, RoundTrip{{"FourDigits2048"}, 2048, 0, 4},
                    RoundTrip{{"WithAPrefix"}, 1024, 8, 6}, RoundTrip{{"WithALongPrefix2048"}, 2048, 200, 12},
                    RoundTrip{{"FortyCharacters"}, 1024, 3, 40}, RoundTrip{{"FortyOneCharacters"}, 1024, 0, 41},
                    RoundTrip{{"NinetyCharacters"}, 2048, 16, 90}, RoundTrip{{"OneCharacter"}, 1024, 0, 1},
                    RoundTrip{{"SevenBlocks"}, 1024, 0, 55}),
    CaseName());

TEST_F(DecryptionTest, BufferHas48BytesThatEndInZeros) {
    ASSERT_EQ(decrypt(encrypted(plaintextOf(digits(41), 0)), 0), 0);
    ASSERT_NE(text, nullptr);
    for (std::size_t i = 40; i < 48; ++i) {
        EXPECT_EQ(text[i], '\0') << i;
    }
}

TEST_F(DecryptionTest, UsesCryptoCoreInThisOrder) {
    const Bytes data = encrypted(plaintextOf(digits(20), 0));
    ASSERT_EQ(data.size(), 48u);
    ASSERT_EQ(decrypt(data, 0), 0);
    EXPECT_THAT(
        platform().journal(),
        ElementsAre("create_CryptoCoreContainer(1054)",
                    "CryptoCore set_key_pair(1131, modulus of 128, no public exponent, private exponent of 128)",
                    "CryptoCore decrypt(128)", "destroy_CryptoCoreContainer(1054)", "create_CryptoCoreContainer(1048)",
                    "CryptoCore init(1122, 1201, key of 32, zero vector)", "CryptoCore update(32)",
                    "CryptoCore final(16)", "destroy_CryptoCoreContainer(1048)"));
}

TEST_F(DecryptionTest, TakesTheLargerContainerForALargerKey) {
    use(KeyPair::ofBits(2048));
    ASSERT_EQ(decrypt(encrypted(plaintextOf(digits(4), 0)), 0), 0);
    EXPECT_EQ(platform().callsOf("create_CryptoCoreContainer").front(), "create_CryptoCoreContainer(1055)");
}

TEST_F(DecryptionTest, LogsItsStepsAndTheText) {
    ASSERT_EQ(decrypt(encrypted(plaintextOf(u"4711", 2)), 2), 0);
    EXPECT_THAT(platform().infos(),
                ElementsAre("INPARAM 128, 128, 2,128, 16,", "decrypt session key", "decrypt data",
                            "encrypt1_len 16 -> decodedLen 11", "privMessageLen 2, num of char 4, actual_len=4",
                            "decrypted msg = [4711]"));
    for (const LogLine& line : platform().log()) {
        EXPECT_EQ(line.tag, "VPAD");
        EXPECT_EQ(line.function(), "CsapiVPADdecryptWithRSAKeyPair");
    }
}

TEST_F(DecryptionTest, CountByteIsLoggedOnly) {
    Bytes plaintext = plaintextOf(u"12345", 0);
    plaintext[0] = 2;
    ASSERT_EQ(decrypt(encrypted(plaintext), 0), 0);
    EXPECT_STREQ(text, "12345");
    EXPECT_THAT(platform().infos(), Contains("privMessageLen 0, num of char 2, actual_len=5"));
}

TEST_F(DecryptionTest, PlaintextOfPrefixAndTwoBytesIsAnEmptyText) {
    ASSERT_EQ(decrypt(encrypted(Bytes{9, 9, 9, 1, '7'}), 3), 0);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(length, 0u);
}

TEST_F(DecryptionTest, PlaintextOfPrefixAndCountIsAnEmptyText) {
    ASSERT_EQ(decrypt(encrypted(Bytes{9, 9, 9, 0}), 3), 0);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "");
}

TEST_F(DecryptionTest, HalfACharacterAtTheEndIsDropped) {
    Bytes plaintext = plaintextOf(u"12", 0);
    plaintext.push_back('3');
    ASSERT_EQ(decrypt(encrypted(plaintext), 0), 0);
    EXPECT_STREQ(text, "12");
}

TEST_F(DecryptionTest, TextEndsAtTheFirstCharacterWithoutBytesInTheLocale) {
    setlocale(LC_ALL, "C");
    ASSERT_EQ(decrypt(encrypted(plaintextOf(u"12\u20AC34", 0)), 0), 0);
    EXPECT_STREQ(text, "12");
    EXPECT_EQ(length, 2u);
}

TEST_F(DecryptionTest, SpilledBytesOfACharacterAreOverwrittenByTheNext) {
    ASSERT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr);
    ASSERT_EQ(decrypt(encrypted(plaintextOf(u"\u00E9a", 0)), 0), 0);
    setlocale(LC_ALL, "C");
    // The two bytes of the first character start at position 0, the next character stands at position 1.
    EXPECT_STREQ(text,
                 "\xC3"
                 "a");
}

TEST_F(DecryptionTest, LastCharacterKeepsAllItsBytes) {
    ASSERT_NE(setlocale(LC_ALL, "C.UTF-8"), nullptr);
    ASSERT_EQ(decrypt(encrypted(plaintextOf(u"a\u20AC", 0)), 0), 0);
    setlocale(LC_ALL, "C");
    EXPECT_STREQ(text, "a\xE2\x82\xAC");
    EXPECT_EQ(length, 4u);
}

TEST_F(DecryptionTest, DataLongerThanItsFieldRunsOnIntoTheNextAndIsReplacedThere) {
    // Fixed numbers instead of a random key pair: the session key comes out as zeros.
    modulus.assign(128, 0xB5);
    encryptedKey.assign(128, 0);
    sessionKey.assign(32, 0);
    // 528 bytes of data: the last block lies where the modulus is put afterwards, and is lost.
    const Bytes data = encrypted(plaintextOf(digits(255), 8));
    ASSERT_EQ(data.size(), 528u);
    EXPECT_EQ(decrypt(data, 8), 0);
    EXPECT_THAT(platform().errors(), Contains("DECRYPT AES DATA ERROR rt1 = 0, rt2 = 0, rt3 = -2"));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::string(text), narrow(digits(40)));
}

}  // namespace vaultpad::test
