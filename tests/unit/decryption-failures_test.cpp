// Decryption that cannot succeed: logged, 0 returned, no text or what the buffers hold.
#include <signal.h>

#include <algorithm>

#include "decryption-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

}  // namespace

TEST_F(DecryptionTest, ModulusOf1536BitsIsNotSupported) {
    modulus.resize(192);
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    expectNoText();
    EXPECT_THAT(platform().errors(), ElementsAre("not support RSA for len 1536"));
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(DecryptionTest, WithoutAKeyOnlyTheInputLineIsLogged) {
    encryptedKey.clear();
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    expectNoText();
    ASSERT_EQ(platform().log().size(), 1u);
    EXPECT_EQ(platform().log().front().message(), "INPARAM 128, 128, 0,0, 16,");
    EXPECT_THAT(platform().journal(), IsEmpty());
}

TEST_F(DecryptionTest, WithoutDataTheSessionKeyIsDecryptedAndNothingHandedOut) {
    EXPECT_EQ(decrypt({}, 0), 0);
    expectNoText();
    EXPECT_EQ(platform().count("CryptoCore decrypt"), 1);
    EXPECT_EQ(platform().count("CryptoCore init"), 0);
    EXPECT_EQ(platform().infos().back(), "decrypt data");
}

TEST_F(DecryptionTest, DataShorterThanABlockIsRefused) {
    EXPECT_EQ(decrypt(Bytes(15), 0), 0);
    expectNoText();
    EXPECT_THAT(platform().errors(), Contains("encrypted data of 15 bytes is shorter than a block"));
    EXPECT_EQ(platform().count("CryptoCore update"), 0);
}

struct PrefixCase : Named {
    unsigned int prefix;
};

class PrefixBeyondThePlaintext : public DecryptionTest, public testing::WithParamInterface<PrefixCase> {};

TEST_P(PrefixBeyondThePlaintext, LeavesNoText) {
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), GetParam().prefix), 0);
    expectNoText();
    EXPECT_THAT(platform().errors(),
                ElementsAre("a prefix of " + std::to_string(GetParam().prefix) + " bytes leaves nothing of 9"));
}

INSTANTIATE_TEST_SUITE_P(, PrefixBeyondThePlaintext,
                         testing::Values(PrefixCase{{"ByNone"}, 9}, PrefixCase{{"ByOne"}, 10},
                                         PrefixCase{{"ByFar"}, 0xFFFFFFFFu}),
                         CaseName());

TEST_F(DecryptionTest, PaddingThatIsWrongIsLoggedAndTheWholeBlocksBeforeItDecoded) {
    Bytes plaintext = plaintextOf(u"1234567", 1);
    plaintext.resize(32, 0);
    EXPECT_EQ(decrypt(encrypted(plaintext, false), 1), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("DECRYPT AES DATA ERROR rt1 = 0, rt2 = 0, rt3 = -2"));
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "1234567");
}

TEST_F(DecryptionTest, PaddingThatIsWrongInTheOnlyBlockLeavesNoText) {
    EXPECT_EQ(decrypt(encrypted(Bytes(16), false), 0), 0);
    expectNoText();
    EXPECT_THAT(platform().errors(), Contains("DECRYPT AES DATA ERROR rt1 = 0, rt2 = 0, rt3 = -2"));
}

TEST_F(DecryptionTest, DataThatIsNoWholeBlocksDoesNotCrash) {
    EXPECT_EQ(decrypt(Bytes(33, 0x5A), 0), 0);
}

TEST_F(DecryptionTest, KeyThatIsNoneIsLoggedAndTheDataDecryptedRegardless) {
    encryptedKey.assign(128, 0);
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    EXPECT_THAT(platform().errors(), Contains(StartsWith("DECRYPT RSA SESSION KEY ERROR rt1 = 0, rt2 = -2, rt3 = 0")));
    EXPECT_THAT(platform().callsOf("CryptoCore init"),
                ElementsAre("CryptoCore init(1122, 1201, key of 32, zero vector)"));
}

TEST_F(DecryptionTest, ShorterSessionKeyIsFilledUpWithZeros) {
    const Bytes shortKey = {1, 2, 3, 4};
    encryptedKey = KeyPair::ofBits(1024).encrypt(shortKey);
    sessionKey.assign(32, 0);
    std::copy(shortKey.begin(), shortKey.end(), sessionKey.begin());
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text, "1234");
    EXPECT_THAT(platform().errors(), IsEmpty());
}

struct OperationFailure : Named {
    std::string operation;
    std::string message;
};

class FailingOperation : public DecryptionTest, public testing::WithParamInterface<OperationFailure> {};

TEST_P(FailingOperation, IsLoggedWithAllResultsAndBothContainersDestroyed) {
    platform().fail(GetParam().operation, 1, -5);
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234567890", 0)), 0), 0);
    EXPECT_THAT(platform().errors(), Contains(StartsWith(GetParam().message)));
    EXPECT_EQ(platform().count("destroy_CryptoCoreContainer"), 2);
}

INSTANTIATE_TEST_SUITE_P(
    , FailingOperation,
    testing::Values(
        OperationFailure{
            {"SetKeyPair"}, "CryptoCore set_key_pair", "DECRYPT RSA SESSION KEY ERROR rt1 = -5, rt2 = -1, rt3 = 0"},
        OperationFailure{{"Decrypt"}, "CryptoCore decrypt", "DECRYPT RSA SESSION KEY ERROR rt1 = 0, rt2 = -5, rt3 = 0"},
        OperationFailure{{"Init"}, "CryptoCore init", "DECRYPT AES DATA ERROR rt1 = -5, rt2 = "},
        OperationFailure{{"Update"}, "CryptoCore update", "DECRYPT AES DATA ERROR rt1 = 0, rt2 = -5, rt3 = "},
        OperationFailure{{"Final"}, "CryptoCore final", "DECRYPT AES DATA ERROR rt1 = 0, rt2 = 0, rt3 = -5"}),
    CaseName());

TEST_F(DecryptionTest, MissingRsaContainerIsLogged) {
    platform().fail("create_CryptoCoreContainer");
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    EXPECT_THAT(platform().errors(), Contains("DECRYPT RSA SESSION KEY ERROR rt1 = -1, rt2 = -1, rt3 = 0"));
}

TEST_F(DecryptionTest, MissingCipherContainerLeavesNoText) {
    platform().fail("create_CryptoCoreContainer", 2);
    EXPECT_EQ(decrypt(encrypted(plaintextOf(u"1234", 0)), 0), 0);
    expectNoText();
    EXPECT_THAT(platform().errors(), Contains("DECRYPT AES DATA ERROR rt1 = -1, rt2 = -1, rt3 = -1"));
}

TEST_F(DecryptionTest, WithoutMemoryForTheTextNothingIsHandedOut) {
    const Bytes data = encrypted(plaintextOf(u"1234", 0));
    libc().failingAllocation = 1;
    const int result = decrypt(data, 0);
    libc().failingAllocation = 0;
    EXPECT_EQ(result, 0);
    expectNoText();
    EXPECT_THAT(platform().errors(), ElementsAre("memory allocation fail;"));
}

class OversizeInput : public DecryptionTest {
protected:
    OversizeInput() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    Bytes data = Bytes(16);
};

TEST_F(OversizeInput, KeyBeyondTheRecordEndsTheProcess) {
    encryptedKey.resize(1823);
    EXPECT_EXIT(decrypt(data, 0), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(OversizeInput, DataBeyondTheRecordEndsTheProcess) {
    data.resize(1567);
    EXPECT_EXIT(decrypt(data, 0), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(OversizeInput, ModulusBeyondTheRecordEndsTheProcess) {
    modulus.resize(1055);
    EXPECT_EXIT(decrypt(data, 0), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(OversizeInput, PrivateExponentBeyondTheRecordEndsTheProcess) {
    privateExponent.resize(799);
    EXPECT_EXIT(decrypt(data, 0), testing::KilledBySignal(SIGABRT), "");
}

TEST_F(OversizeInput, InputsThatJustFitTheRecordDoNot) {
    encryptedKey.resize(1822);
    data.resize(1566);
    privateExponent.resize(798);
    modulus.resize(1054);
    EXPECT_EQ(decrypt(data, 0), 0);
    EXPECT_THAT(platform().errors(), ElementsAre("not support RSA for len 8432"));
}

}  // namespace vaultpad::test
