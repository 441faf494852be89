#include "core/script/source/fold.h"

#include <gtest/gtest.h>

namespace tavrel::core::script {
namespace {

TEST(Fold, TakesEveryAccentOff) {
    const char* accented[] = {"áàâãä", "éèêë", "íìîï", "óòôõö", "úùûü", "çñ",
                              "ÁÀÂÃÄ", "ÉÈÊË", "ÍÌÎÏ", "ÓÒÔÕÖ", "ÚÙÛÜ", "ÇÑ"};
    const char* plain[] = {"aaaaa", "eeee", "iiii", "ooooo", "uuuu", "cn",
                           "AAAAA", "EEEE", "IIII", "OOOOO", "UUUU", "CN"};
    for (std::size_t row = 0; row < std::size(plain); ++row) EXPECT_EQ(FoldName(accented[row]), plain[row]);
}

TEST(Fold, LeavesOtherBytesAlone) {
    for (const char* text : {"", "Abc_9", "\xF0\x9F\x98\x80", "ø", "\xC3", "\x80", "\xC3\xC3"}) {
        EXPECT_EQ(FoldName(text), text);
    }
    EXPECT_EQ(FoldName("\xC3\xC3\xA1"),
              "\xC3"
              "a");
    EXPECT_EQ(FoldLower("ÁGUA Ø Z"), "agua Ø z");
}

TEST(Fold, AccentNeedsBothBytes) {
    int length = 9;
    EXPECT_EQ(AccentedLetter("a\xC3", 1, length), 0);
    EXPECT_EQ(length, 0);
    EXPECT_EQ(AccentedLetter("aç", 1, length), 'c');
    EXPECT_EQ(length, 2);
    EXPECT_EQ(AccentedLetter("a", 7, length), 0);
}

TEST(Fold, CountsCharacters) {
    EXPECT_EQ(CountCharacters("não"), 3U);
    EXPECT_EQ(CountCharacters("\x80\xBF"), 0U);
}

}  // namespace
}  // namespace tavrel::core::script
