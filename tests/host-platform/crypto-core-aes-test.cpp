/* AES-256-CBC containers, against what OpenSSL encrypts here. */
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <vaultpad-platform/crypto-core.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kBlock = 16;
constexpr uint8_t kFiller = 0xEE;

struct Delete {
    void operator()(CryptoCoreContainer* container) const { destroy_CryptoCoreContainer(container); }
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};
using Container = std::unique_ptr<CryptoCoreContainer, Delete>;

Bytes counted(std::size_t size, uint8_t first) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<uint8_t>(first + i);
    }
    return bytes;
}

const Bytes kKey = counted(32, 7);
const Bytes kVector = counted(kBlock, 100);

Bytes encrypt(const Bytes& text) {
    const std::unique_ptr<EVP_CIPHER_CTX, Delete> context(EVP_CIPHER_CTX_new());
    Bytes out(text.size() + kBlock);
    int body = 0;
    int rest = 0;
    EXPECT_EQ(EVP_EncryptInit_ex(context.get(), EVP_aes_256_cbc(), nullptr, kKey.data(), kVector.data()), 1);
    EXPECT_EQ(EVP_EncryptUpdate(context.get(), out.data(), &body, text.data(), static_cast<int>(text.size())), 1);
    EXPECT_EQ(EVP_EncryptFinal_ex(context.get(), out.data() + body, &rest), 1);
    out.resize(static_cast<std::size_t>(body + rest));
    return out;
}

class AesTest : public testing::Test {
protected:
    int init() { return init(kKey, kVector.data()); }
    int init(const Bytes& key, const uint8_t* iv) {
        return aes_->operations->init(aes_.get(), VAULTPAD_CRYPTO_MODE_CBC, VAULTPAD_CRYPTO_PADDING_PKCS7, key.data(),
                                      static_cast<uint32_t>(key.size()), iv);
    }

    /* Run an operation with room for output; on return out has what was written. */
    int update(const Bytes& in, Bytes& out) { return run(aes_->operations->update, in, out); }
    int final(const Bytes& in, Bytes& out) { return run(aes_->operations->final, in, out); }

    Container aes_{create_CryptoCoreContainer(VAULTPAD_CRYPTO_AES_256)};

private:
    int run(decltype(CryptoCoreOperations::update) operation, const Bytes& in, Bytes& out) {
        const uint32_t room = static_cast<uint32_t>(out.size());
        out.assign(room + kBlock, kFiller); /* a margin that must stay as it is */
        uint32_t length = room;
        const int result = operation(aes_.get(), in.data(), static_cast<uint32_t>(in.size()), out.data(), &length);
        EXPECT_LE(length, room);
        EXPECT_THAT(Bytes(out.begin() + room, out.end()), testing::Each(kFiller));
        EXPECT_TRUE(result == 0 || length == 0);
        out.resize(length);
        return result;
    }
};

TEST_F(AesTest, DecryptsTextsOfEveryLengthWithTheLastBlockInFinal) {
    for (std::size_t size = 0; size <= 70; ++size) {
        const Bytes text = counted(size, 1);
        const Bytes cipher = encrypt(text);
        const auto split = cipher.end() - kBlock;
        Bytes body(cipher.size());
        ASSERT_EQ(init(), 0);
        ASSERT_EQ(update(Bytes(cipher.begin(), split), body), 0) << size;
        Bytes rest(cipher.size() - body.size());
        ASSERT_EQ(final(Bytes(split, cipher.end()), rest), 0) << size;
        body.insert(body.end(), rest.begin(), rest.end());
        EXPECT_EQ(body, text);
    }
}

TEST_F(AesTest, DecryptsHoweverTheInputIsCutIntoPieces) {
    const Bytes text = counted(100, 3);
    const Bytes cipher = encrypt(text);
    for (std::size_t piece = 1; piece <= cipher.size(); ++piece) {
        Bytes result;
        ASSERT_EQ(init(), 0);
        for (std::size_t at = 0; at < cipher.size(); at += piece) {
            const std::size_t end = std::min(at + piece, cipher.size());
            Bytes out(cipher.size());
            ASSERT_EQ(
                update(Bytes(cipher.begin() + static_cast<long>(at), cipher.begin() + static_cast<long>(end)), out), 0);
            result.insert(result.end(), out.begin(), out.end());
        }
        Bytes rest(kBlock);
        ASSERT_EQ(final({}, rest), 0) << piece;
        result.insert(result.end(), rest.begin(), rest.end());
        EXPECT_EQ(result, text) << piece;
    }
}

TEST_F(AesTest, UpdateNeedsRoomOnlyForTheBlocksThatLeave) {
    const Bytes cipher = encrypt(counted(40, 0)); /* three blocks */
    ASSERT_EQ(init(), 0);
    Bytes out(2 * kBlock - 1);
    EXPECT_NE(update(cipher, out), 0);
    out.resize(2 * kBlock);
    EXPECT_EQ(update(cipher, out), 0) << "refusing must not have taken the input";
    EXPECT_EQ(out, counted(2 * kBlock, 0));
    out.resize(8);
    EXPECT_EQ(final({}, out), 0);
    EXPECT_EQ(out, counted(8, 2 * kBlock));
}

TEST_F(AesTest, UpdateNeedsNoOutputWhenNoBlockLeaves) {
    const Bytes cipher = encrypt(counted(5, 0));
    uint32_t length = 0;
    ASSERT_EQ(init(), 0);
    EXPECT_EQ(aes_->operations->update(aes_.get(), cipher.data(), kBlock, nullptr, &length), 0);
    EXPECT_EQ(length, 0u);
    Bytes out(5);
    EXPECT_EQ(final({}, out), 0);
    EXPECT_EQ(out, counted(5, 0));
}

TEST_F(AesTest, FinalWritesExactlyIntoARoomThatFitsAndRefusesASmallerOne) {
    const Bytes cipher = encrypt(counted(21, 9));
    ASSERT_EQ(init(), 0);
    Bytes out(21);
    EXPECT_EQ(final(cipher, out), 0);
    EXPECT_EQ(out, counted(21, 9));
    ASSERT_EQ(init(), 0);
    out.resize(20);
    EXPECT_NE(final(cipher, out), 0);
}

TEST_F(AesTest, FinalRefusesBadPaddingAndPartialBlocks) {
    Bytes cipher = encrypt(counted(21, 9));
    for (const std::size_t size : {0u, 1u, 15u, 17u, 31u}) {
        Bytes out(64);
        ASSERT_EQ(init(), 0);
        EXPECT_NE(final(Bytes(cipher.begin(), cipher.begin() + static_cast<long>(size)), out), 0) << size;
    }
    cipher[kBlock - 1] ^= 0x40; /* comes out as the padding's last byte */
    Bytes out(64);
    ASSERT_EQ(init(), 0);
    EXPECT_NE(final(cipher, out), 0);
}

TEST_F(AesTest, RefusesAStepOutOfOrder) {
    const Bytes cipher = encrypt(counted(21, 9));
    Bytes out(64);
    EXPECT_NE(update(cipher, out), 0);
    out.resize(64);
    EXPECT_NE(final(cipher, out), 0);
    ASSERT_EQ(init(), 0);
    out.resize(64);
    EXPECT_EQ(final(cipher, out), 0);
    out.resize(64);
    EXPECT_NE(update(cipher, out), 0) << "after final";
    out.resize(64);
    EXPECT_NE(final(cipher, out), 0) << "after final";
}

TEST_F(AesTest, RefusesOtherModesPaddingsAndKeySizes) {
    const auto start = [this](int mode, int padding, const uint8_t* key, uint32_t size, const uint8_t* iv) {
        return aes_->operations->init(aes_.get(), mode, padding, key, size, iv);
    };
    constexpr int kMode = VAULTPAD_CRYPTO_MODE_CBC;
    constexpr int kPadding = VAULTPAD_CRYPTO_PADDING_PKCS7;
    EXPECT_NE(start(kMode + 1, kPadding, kKey.data(), 32, kVector.data()), 0);
    EXPECT_NE(start(kMode, kPadding - 1, kKey.data(), 32, kVector.data()), 0);
    EXPECT_NE(start(kMode, kPadding, kKey.data(), 16, kVector.data()), 0);
    EXPECT_NE(start(kMode, kPadding, nullptr, 32, kVector.data()), 0);
    EXPECT_NE(start(kMode, kPadding, kKey.data(), 32, nullptr), 0);
    Bytes out(64);
    EXPECT_NE(update(encrypt({1}), out), 0) << "a refused init starts nothing";
}

TEST_F(AesTest, RefusesNullArguments) {
    ASSERT_EQ(init(), 0);
    uint8_t out[64];
    uint32_t length = sizeof out;
    EXPECT_NE(aes_->operations->update(aes_.get(), nullptr, 16, out, &length), 0);
    EXPECT_EQ(length, 0u);
    EXPECT_NE(aes_->operations->update(aes_.get(), kKey.data(), 16, out, nullptr), 0);
    length = sizeof out;
    EXPECT_NE(aes_->operations->update(aes_.get(), kKey.data(), 32, nullptr, &length), 0);
    length = sizeof out;
    EXPECT_EQ(aes_->operations->update(aes_.get(), nullptr, 0, out, &length), 0);
}

TEST_F(AesTest, HasNoRsaOperations) {
    uint8_t out[256];
    uint32_t length = sizeof out;
    EXPECT_NE(aes_->operations->set_key_pair(aes_.get(), VAULTPAD_CRYPTO_PADDING_PKCS1_V15, kKey.data(), 32, nullptr, 0,
                                             kKey.data(), 32),
              0);
    EXPECT_NE(aes_->operations->decrypt(aes_.get(), kKey.data(), 32, out, &length), 0);
    EXPECT_EQ(length, 0u);
}

TEST_F(AesTest, LeavesTheClientsOpensslErrorsAlone) {
    ERR_clear_error();
    ERR_raise(ERR_LIB_USER, 42);
    Bytes out(64);
    ASSERT_EQ(init(), 0);
    EXPECT_NE(final(counted(15, 0), out), 0);
    EXPECT_EQ(ERR_GET_REASON(ERR_get_error()), 42);
    EXPECT_EQ(ERR_get_error(), 0u);
}

TEST(CryptoCoreTest, MakesContainersOnlyForKnownAlgorithms) {
    for (const int algorithm : {VAULTPAD_CRYPTO_RSA_1024, VAULTPAD_CRYPTO_RSA_2048, VAULTPAD_CRYPTO_AES_256}) {
        const Container container(create_CryptoCoreContainer(algorithm));
        ASSERT_NE(container, nullptr);
        EXPECT_EQ(container->algorithm, algorithm);
        EXPECT_NE(container->operations, nullptr);
    }
    for (const int algorithm : {0, -1, 1047, 1056, int{VAULTPAD_CRYPTO_MODE_CBC}}) {
        EXPECT_EQ(create_CryptoCoreContainer(algorithm), nullptr);
    }
}

TEST(CryptoCoreTest, RefusesNullAndStaleContainers) {
    CryptoCoreContainer* const stale = create_CryptoCoreContainer(VAULTPAD_CRYPTO_AES_256);
    const CryptoCoreOperations* const operations = stale->operations;
    destroy_CryptoCoreContainer(stale);
    for (CryptoCoreContainer* const bad : {static_cast<CryptoCoreContainer*>(nullptr), stale}) {
        uint8_t out[64];
        uint32_t length = sizeof out;
        EXPECT_NE(operations->init(bad, VAULTPAD_CRYPTO_MODE_CBC, VAULTPAD_CRYPTO_PADDING_PKCS7, kKey.data(), 32,
                                   kVector.data()),
                  0);
        EXPECT_NE(operations->update(bad, kKey.data(), 16, out, &length), 0);
        EXPECT_NE(operations->final(bad, kKey.data(), 16, out, &length), 0);
        EXPECT_NE(operations->decrypt(bad, kKey.data(), 16, out, &length), 0);
        destroy_CryptoCoreContainer(bad);
    }
}

}  // namespace
