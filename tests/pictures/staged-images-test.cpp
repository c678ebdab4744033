/* The images as the toolkit loads them: those that were drawn, in another form. */
#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "drawing-fixture.h"

namespace vaultpad::test {

namespace {

// Holds the largest panel.
constexpr int kWidth = 1600;
constexpr int kHeight = 600;

std::vector<std::string> namesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().stem());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Picture loaded(graphic::ObjectRenderer& renderer, const std::string& folder, const std::string& file) {
    LayoutBuilder layout;
    layout.imageBaseDirectory(folder)
        .image({{"id", "image"}, {"type", "file"}, {"url", file}})
        .object({{"id", "image"}, {"type", "image"}, {"ref", "image"}, {"x", "0"}, {"y", "0"}});
    return renderOne(renderer, layout.container()).image;
}

class StagedImages : public DrawingTest {};

TEST_F(StagedImages, HaveThePixelsThatWereDrawn) {
    const std::string staged = VAULTPAD_APPLICATION_ROOT "/vaultpad/res/images";
    const std::vector<std::string> names = namesIn(staged);
    ASSERT_FALSE(names.empty());
    graphic::ObjectRenderer renderer(kWidth, kHeight);
    for (const std::string& name : names) {
        const Picture stored = loaded(renderer, staged, name + ".tga");
        const Picture drawn = loaded(renderer, VAULTPAD_DRAWN_FOLDER, name + ".png");
        EXPECT_GT(stored.pixels.size(), 0u) << name;
        EXPECT_EQ(stored.width, drawn.width) << name;
        EXPECT_TRUE(stored.pixels == drawn.pixels) << name;
    }
}

}  // namespace

}  // namespace vaultpad::test
