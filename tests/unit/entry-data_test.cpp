// The exported record and the entry points that hand it out.
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "application-fixture.h"

namespace vaultpad::test {

namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

// Taken before any test has run.
const AppResult kFreshRecord = app_data;

class RecordTest : public ApplicationTest {
protected:
    static Bytes bytesOf(const AppResult& record) {
        const auto* start = reinterpret_cast<const std::uint8_t*>(&record);
        return {start, start + sizeof(record)};
    }

    static void fillRecord() {
        auto* bytes = reinterpret_cast<std::uint8_t*>(&app_data);
        for (std::size_t i = 0; i < sizeof(app_data); ++i) {
            bytes[i] = static_cast<std::uint8_t>(i % 251);
        }
    }
};

struct HandedOut {
    void* key = nullptr;
    void* data = nullptr;
    unsigned int keyLength = 77;
    unsigned int dataLength = 77;
    unsigned int value = 77;

    int result = CsapiVPADgetdata(&key, &keyLength, &data, &dataLength, &value);

    ~HandedOut() {
        CsapiVPADfreemem(key);
        CsapiVPADfreemem(data);
    }
};

Bytes bytesAt(const void* start, std::size_t size) {
    const auto* bytes = static_cast<const std::uint8_t*>(start);
    return {bytes, bytes + size};
}

}  // namespace

TEST_F(RecordTest, IsExactly1920BytesWithKeyAt98AndDataAt354) {
    EXPECT_EQ(sizeof(app_data), 1920u);
    fillRecord();
    const Bytes bytes = bytesOf(app_data);
    EXPECT_EQ(bytesAt(app_data.enc_key, 256), Bytes(bytes.begin() + 98, bytes.begin() + 354));
    EXPECT_EQ(bytesAt(app_data.enc_data, 512), Bytes(bytes.begin() + 354, bytes.begin() + 866));
    std::uint32_t word = 0;
    std::memcpy(&word, bytes.data() + 1892, sizeof(word));
    EXPECT_EQ(app_data.enc_data_len, word);
    std::memcpy(&word, bytes.data() + 1900, sizeof(word));
    EXPECT_EQ(app_data.enc_key_len, word);
    std::memcpy(&word, bytes.data() + 12, sizeof(word));
    EXPECT_EQ(app_data.ta_value, word);
}

TEST_F(RecordTest, IsAllZeroWhenTheLibraryIsLoaded) {
    EXPECT_THAT(bytesOf(kFreshRecord), Each(0));
}

TEST_F(RecordTest, GetDataWorksWithoutASessionAndHandsOutEveryByte) {
    fillRecord();
    AppResult copy;
    EXPECT_EQ(vault_pad_get_data(&copy), 0);
    EXPECT_EQ(bytesOf(copy), bytesOf(app_data));
    EXPECT_THAT(platform().journal(), IsEmpty());
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(RecordTest, GetDataOfStatusOneEmptiesTheRecordAndKeepsTheStatus) {
    fillRecord();
    app_data.status = 1;
    AppResult copy;
    EXPECT_EQ(vault_pad_get_data(&copy), 0);
    AppResult expected = {};
    expected.status = 1;
    EXPECT_EQ(bytesOf(copy), bytesOf(expected));
    EXPECT_EQ(bytesOf(app_data), bytesOf(expected));
}

TEST_F(RecordTest, GetDataOfAnotherStatusLeavesTheRecordAlone) {
    for (const std::int32_t status : {0, 2, -1, 257}) {
        fillRecord();
        app_data.status = status;
        const Bytes before = bytesOf(app_data);
        AppResult copy;
        vault_pad_get_data(&copy);
        EXPECT_EQ(bytesOf(copy), before) << status;
        EXPECT_EQ(bytesOf(app_data), before) << status;
    }
}

TEST_F(RecordTest, CheckEncLenNeedsBothLengths) {
    ASSERT_EQ(vault_pad_session(), 1);
    EXPECT_EQ(vault_pad_check_enc_len(), 0);
    app_data.enc_data_len = 16;
    EXPECT_EQ(vault_pad_check_enc_len(), 0);
    app_data.enc_key_len = 128;
    EXPECT_EQ(vault_pad_check_enc_len(), 1);
    app_data.enc_data_len = 0;
    EXPECT_EQ(vault_pad_check_enc_len(), 0);
}

TEST_F(RecordTest, CsapiGetDataCopiesKeyAndDataOfTheirLengths) {
    fillRecord();
    app_data.enc_key_len = 128;
    app_data.enc_data_len = 512;
    app_data.ta_value = 0xFFFFFFFFu;
    const HandedOut out;
    EXPECT_EQ(out.result, 0);
    EXPECT_EQ(out.keyLength, 128u);
    EXPECT_EQ(out.dataLength, 512u);
    EXPECT_EQ(out.value, 0xFFFFFFFFu);
    EXPECT_EQ(bytesAt(out.key, 128), bytesAt(app_data.enc_key, 128));
    EXPECT_EQ(bytesAt(out.data, 512), bytesAt(app_data.enc_data, 512));
    EXPECT_THAT(platform().log(), IsEmpty());
}

TEST_F(RecordTest, CsapiGetDataOfAnEmptyRecordHandsOutNoBytes) {
    const HandedOut out;
    EXPECT_EQ(out.result, 0);
    EXPECT_EQ(out.keyLength, 0u);
    EXPECT_EQ(out.dataLength, 0u);
    EXPECT_EQ(out.value, 0u);
}

TEST_F(RecordTest, CsapiGetDataHandsOutCopies) {
    app_data.enc_key_len = 4;
    app_data.enc_key[0] = 1;
    const HandedOut out;
    app_data.enc_key[0] = 2;
    EXPECT_EQ(*static_cast<std::uint8_t*>(out.key), 1);
}

TEST_F(RecordTest, CsapiGetDataWithoutMemoryHandsOutALengthOfZero) {
    app_data.enc_key_len = 4;
    app_data.enc_data_len = 5;
    libc().failingAllocation = 1;
    const HandedOut out;
    libc().failingAllocation = 0;
    EXPECT_EQ(out.key, nullptr);
    EXPECT_EQ(out.keyLength, 0u);
    EXPECT_EQ(out.dataLength, 5u);
}

TEST_F(RecordTest, CsapiGetDataRefusesLengthsBeyondTheRecord) {
    app_data.enc_key_len = 257;
    app_data.enc_data_len = 513;
    const HandedOut out;
    EXPECT_EQ(out.keyLength, 0u);
    EXPECT_EQ(out.dataLength, 0u);
    EXPECT_THAT(platform().errors(), ElementsAre("[vaultpad]: the result record holds a length of 257 for 256 bytes",
                                                 "[vaultpad]: the result record holds a length of 513 for 512 bytes"));
}

TEST_F(RecordTest, FreememTakesNull) {
    EXPECT_EQ(CsapiVPADfreemem(nullptr), 0);
}

}  // namespace vaultpad::test
