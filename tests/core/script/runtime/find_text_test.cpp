#include "core/script/runtime/find_text.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace tavrel::core::script {
namespace {

std::string Letters(std::mt19937& random, std::size_t length, unsigned alphabet) {
    std::string text;
    while (text.size() < length) text += static_cast<char>('a' + random() % alphabet);
    return text;
}

std::string Repeated(const std::string& part, std::size_t length) {
    std::string text;
    while (text.size() < length) text += part;
    return text;
}

// Periodic texts take every way through the search: matches that shift by a period, and near misses on either side.
TEST(FindText, AgreesWithAPlainSearch) {
    std::mt19937 random(3);
    for (int round = 0; round < 4000; ++round) {
        const std::string part = Letters(random, 1 + random() % 12, 2);
        std::string text = Repeated(part, 300);
        std::string wanted = Repeated(part, 33 + random() % 60).substr(random() % part.size());
        if (random() % 2 == 0) wanted[random() % wanted.size()] ^= 3;
        for (unsigned change = random() % 4; change > 0; --change) text[random() % text.size()] ^= 3;
        if (random() % 2 == 0) text.insert(random() % text.size(), wanted);
        const std::size_t from = random() % text.size();
        ASSERT_EQ(FindText(text, wanted, from), text.find(wanted, from)) << text << " " << wanted;
    }
}

// A plain search takes some 10^13 steps here.
TEST(FindText, IsNotSlowedByPeriodicTexts) {
    const std::string half(4'000'000, 'a');
    EXPECT_EQ(FindText(half + half, half + "b", 0), std::string::npos);
    EXPECT_EQ(FindText(half + half, "b" + half, 0), std::string::npos);
    EXPECT_EQ(FindText(half + "b" + half, "b" + half, 0), half.size());
}

TEST(FindText, TakesAnEmptyTextForFound) {
    EXPECT_EQ(FindText("", "", 0), 0U);
    EXPECT_EQ(FindText("ab", "", 2), 2U);
}

}  // namespace
}  // namespace tavrel::core::script
