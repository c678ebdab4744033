// What has a meaning in markup is text again where it was escaped.
#include <common/markup.h>
#include <gtest/gtest.h>

namespace vaultpad::test {

TEST(Markup, CharactersWithAMeaningAreEscaped) {
    EXPECT_EQ(escapedMarkup("<a b=\"c\">&amp;"), "&lt;a b=&quot;c&quot;&gt;&amp;amp;");
}

TEST(Markup, OtherTextIsLeftAlone) {
    EXPECT_EQ(escapedMarkup("it's 5 \xE2\x82\xAC\n"), "it's 5 \xE2\x82\xAC\n");
    EXPECT_EQ(escapedMarkup(""), "");
}

}  // namespace vaultpad::test
