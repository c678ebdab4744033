// The image store as the real trusted application writes it out.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "sample-pads.h"
#include "ta-client.h"
#include "temporary-folder.h"
#include "vaultpad/ta-protocol.h"

namespace vaultpad::secureworld {
namespace {

TEST(Store, HoldsEachImageAsItArrived) {
    const TemporaryFolder folder;
    TaClient::Setup setup;
    setup.options = {"--store", folder / "new/store"};
    TaClient client(setup);
    std::vector<SampleImage> images = tinyPad();
    images[1].place.x = -5;
    ASSERT_NO_FATAL_FAILURE(showPad(&client, images));
    std::ifstream index(folder / "new/store/index.tsv");
    const std::string text(std::istreambuf_iterator<char>(index), {});
    EXPECT_EQ(
        "001\t/root/background.ppm\t0\t0\t6\t3\t54\n"
        "002\t/root/input.ppm\t-5\t0\t2\t1\t6\n"
        "003\t/root/mask.ppm\t0\t0\t1\t1\t3\n"
        "004\t/root/key.1.normal.ppm\t0\t2\t2\t1\t6\n"
        "005\t/root/key.1.focus.ppm\t0\t2\t2\t1\t6\n"
        "006\t/root/key.2.normal.ppm\t4\t2\t2\t1\t6\n"
        "007\t/root/key.2.focus.ppm\t4\t2\t2\t1\t6\n",
        text);
    std::ifstream file(folder / "new/store/007.bin", std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    EXPECT_EQ(images[6].pixels, Bytes(bytes.begin(), bytes.end()));
}

TEST(Store, RefusesTheEndOfTheImagesWhenItCannotBeWritten) {
    const TemporaryFolder folder;
    std::ofstream(folder / "file") << "x";
    TaClient::Setup setup;
    setup.options = {"--store", folder / "file"};
    TaClient client(setup);
    ASSERT_EQ(0, client.open());
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IME_TYPE, typeRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_RENDER_CONTEXT, renderContextRequest()));
    ASSERT_EQ(0, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DATA, imagesRequest(tinyPad())));
    EXPECT_EQ(-1, client.invoke(VAULTPAD_TA_EVENT_IMAGE_DONE));
}

}  // namespace
}  // namespace vaultpad::secureworld
