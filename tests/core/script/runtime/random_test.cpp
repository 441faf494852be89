#include "core/script/runtime/random.h"

#include <gtest/gtest.h>

namespace tavrel::core::script {
namespace {

struct Row {
    std::uint64_t seed;
    std::uint64_t salt;
    std::uint64_t state;
    std::uint32_t draws[4];
    std::uint64_t after;
};

// Worked out by another program with integers of any size, by the steps of the published generator.
const Row Rows[] = {
    {0, 0, 0x0160094C628E6FBD, {0x2C01228C, 0xFA3319DB, 0xED539F88, 0x8BEC543A}, 0x67C8E9FB91BF6411},
    {1, 0, 0x51539C54D42F83E7, {0x018A9C40, 0xADA9DCC7, 0xB012CC1D, 0xA361C0C9}, 0x47AECE59991CE6DB},
    {~0ULL, 7, 0x407D759D3DB6D6FA, {0x4C0FACB0, 0x1C128996, 0x4698A625, 0xFA3F5807}, 0x20B01DF7DF37851E},
};

TEST(Random, SeedsAndDraws) {
    for (const Row& row : Rows) {
        RandomWords words = SeedWords(row.seed, row.salt);
        EXPECT_EQ(words.state, row.state);
        EXPECT_EQ(words.increment, 11U);
        for (const std::uint32_t draw : row.draws) EXPECT_EQ(DrawRandom(words.state, words.increment), draw);
        EXPECT_EQ(words.state, row.after);
    }
}

}  // namespace
}  // namespace tavrel::core::script
