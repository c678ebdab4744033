#include <algorithm>

#include "drawing-fixture.h"
#include "toolkit-recorder.h"

namespace vaultpad::test {

namespace {

constexpr int kWidth = 40;
constexpr int kHeight = 30;
constexpr unsigned char kDirt = 0xCD;

bool isBlank(const Picture& picture) {
    return std::all_of(picture.pixels.begin(), picture.pixels.end(), [](std::uint32_t pixel) { return pixel == 0; });
}

// The renderer clears nothing itself, and the memory that it draws into is anything at first.
TEST(StalePixels, OfTheAllocationAreGoneFromTheFirstImage) {
    platform().reset();
    ToolkitRecorder toolkit;
    toolkit.pixelBytes = kWidth * kHeight * 4;
    toolkit.pixelFilling = kDirt;
    graphic::ObjectRenderer renderer(kWidth, kHeight);
    const Delivery delivery =
        renderOne(renderer, LayoutBuilder()
                                .imageBaseDirectory("/nowhere")
                                .image({{"id", "box"}, {"width", "20"}, {"height", "10"}})
                                .object({{"id", "a"}, {"type", "image"}, {"ref", "box"}, {"x", "1"}, {"y", "1"}})
                                .container());
    EXPECT_TRUE(isBlank(delivery.whole));
}

}  // namespace

}  // namespace vaultpad::test
