#include "picture-comparison.h"

#include <gmock/gmock.h>
#include <stdlib.h>

#include <filesystem>

#include "temporary-folder.h"

namespace vaultpad::test {

namespace {

using testing::HasSubstr;

class PictureComparison : public testing::Test {
protected:
    PictureComparison() { unsetenv("VAULTPAD_UPDATE_REFERENCES"); }
    ~PictureComparison() override { unsetenv("VAULTPAD_UPDATE_REFERENCES"); }

    testing::AssertionResult match(const Picture& picture, Tolerance tolerance = {}) const {
        return matchesReference(picture, reference(), folder_.path() + "/out", tolerance);
    }
    std::string reference() const { return folder_.path() + "/picture.png"; }
    std::string output(const std::string& kind) const { return folder_.path() + "/out/picture." + kind + ".png"; }

    TemporaryFolder folder_;
    Picture grey_{6, 5, 0xFF808080};
};

TEST_F(PictureComparison, KeepsEveryPremultipliedPixelInAFile) {
    Picture all(256, 256);
    for (int alpha = 0; alpha < all.height; ++alpha) {
        for (int value = 0; value < all.width; ++value) {
            const auto a = static_cast<std::uint32_t>(alpha);
            const auto v = static_cast<std::uint32_t>(value > alpha ? alpha : value);
            all.pixel(value, alpha, a << 24 | v << 16 | (a - v) << 8 | v / 2);
        }
    }
    writePng(all, reference());
    EXPECT_EQ(readPng(reference()).pixels, all.pixels);
}

TEST_F(PictureComparison, NamesAFileThatCannotBeReadOrWritten) {
    for (const bool writing : {true, false}) {
        try {
            writing ? writePng(grey_, "/no/such/folder/a.png") : void(readPng("/no/such/folder/a.png"));
            ADD_FAILURE() << "no exception";
        } catch (const std::runtime_error& error) {
            EXPECT_THAT(error.what(), HasSubstr("/no/such/folder/a.png: "));
        }
    }
}

TEST_F(PictureComparison, AcceptsTheSamePicture) {
    writePng(grey_, reference());
    EXPECT_TRUE(match(grey_));
    EXPECT_FALSE(std::filesystem::exists(output("actual")));
}

TEST_F(PictureComparison, RefusesOneDifferentPixelAndLeavesPictureAndDifference) {
    writePng(grey_, reference());
    Picture other = grey_;
    other.pixel(4, 3, 0xFF808081);
    const testing::AssertionResult result = match(other);
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("first at 4,3"));
    EXPECT_THAT(result.message(), HasSubstr(output("actual")));
    EXPECT_THAT(result.message(), HasSubstr(output("difference")));
    EXPECT_EQ(readPng(output("actual")).pixels, other.pixels);
    const Picture difference = readPng(output("difference"));
    EXPECT_EQ(difference.pixel(4, 3), 0xFFFF0000u);
    EXPECT_NE(difference.pixel(0, 0), 0xFFFF0000u);
}

TEST_F(PictureComparison, SeesADifferenceOfEachComponent) {
    writePng(grey_, reference());
    for (const std::uint32_t colour : {0xFF808090u, 0xFF809080u, 0xFF908080u, 0xEF808080u}) {
        Picture other = grey_;
        other.pixel(0, 0, colour);
        EXPECT_FALSE(match(other)) << std::hex << colour;
        EXPECT_FALSE(match(other, {15, 0})) << std::hex << colour;
        EXPECT_TRUE(match(other, {16, 0})) << std::hex << colour;
    }
}

TEST_F(PictureComparison, AllowsAsManyPixelsAsToldToDiffer) {
    writePng(grey_, reference());
    Picture other = grey_;
    other.fill(0, 0, 3, 1, 0xFF000000);
    EXPECT_FALSE(match(other, {0, 2}));
    EXPECT_TRUE(match(other, {0, 3}));
}

TEST_F(PictureComparison, RefusesAnotherSize) {
    writePng(grey_, reference());
    const testing::AssertionResult result = match(Picture(5, 6, 0xFF808080), {255, 1000});
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("5x6"));
    EXPECT_TRUE(std::filesystem::exists(output("actual")));
}

TEST_F(PictureComparison, RefusesAMissingReferenceAndDoesNotMakeIt) {
    const testing::AssertionResult result = match(grey_);
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(), HasSubstr("VAULTPAD_UPDATE_REFERENCES=1"));
    EXPECT_TRUE(std::filesystem::exists(output("actual")));
    EXPECT_FALSE(std::filesystem::exists(reference()));
}

TEST_F(PictureComparison, WritesTheReferenceOnlyWhenAsked) {
    writePng(Picture(6, 5), reference());
    setenv("VAULTPAD_UPDATE_REFERENCES", "0", 1);
    EXPECT_FALSE(match(grey_));
    setenv("VAULTPAD_UPDATE_REFERENCES", "1", 1);
    EXPECT_TRUE(match(grey_));
    EXPECT_EQ(readPng(reference()).pixels, grey_.pixels);
}

TEST_F(PictureComparison, CutsTheTopLeftCornerOutOfABuffer) {
    const unsigned int buffer[] = {1, 2, 3, 4, 5, 6};
    EXPECT_THAT(cutOut(buffer, 3, 2, 2).pixels, testing::ElementsAre(1, 2, 4, 5));
    EXPECT_THAT(cutOut(buffer, 3, 0, 0).pixels, testing::IsEmpty());
}

}  // namespace

}  // namespace vaultpad::test
