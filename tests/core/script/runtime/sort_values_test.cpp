#include "core/script/runtime/sort_values.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <limits>
#include <random>
#include <string>

#include "core/script/runtime/compare.h"

namespace tavrel::core::script {
namespace {

// The words of the items, which tell equal values apart where their bits or objects differ.
std::vector<std::int64_t> Words(const std::vector<Value>& items) {
    std::vector<std::int64_t> words;
    for (const Value& item : items) words.push_back(item.word);
    return words;
}

void ExpectStableOrder(const Heap& heap, std::vector<Value> items) {
    std::vector<Value> expected = items;
    std::stable_sort(expected.begin(), expected.end(),
                     [&heap](const Value& a, const Value& b) { return CompareValues(heap, a, b) < 0; });
    SortValues(heap, items);
    EXPECT_EQ(Words(items), Words(expected)) << items.size();
}

// Lengths on both sides of every change of method.
const std::size_t Lengths[] = {0, 1, 2, 11, 12, 13, 14, 25, 100, 191, 192, 193, 1000};

Value RandomReal(std::mt19937_64& random) {
    const float chosen[] = {
        0.0F, -0.0F, 1.0F, -1.0F, std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity()};
    const std::uint64_t drawn = random();
    if (drawn % 2 == 0) return MakeReal(chosen[(drawn >> 8U) % std::size(chosen)]);
    const float real = std::bit_cast<float>(static_cast<std::uint32_t>(drawn >> 32U));
    return MakeReal(real == real ? real : 2.0F);
}

Value RandomText(Heap& heap, std::mt19937_64& random) {
    const char letters[] = {'\0', 'a', '\x7F', '\xFF'};
    std::string text(random() % 3 * 4, 'a');
    for (std::uint64_t more = random() % 4; more > 0; --more) text += letters[random() % std::size(letters)];
    return MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(text)));
}

TEST(SortValues, OrdersStably) {
    std::mt19937_64 random(1);
    for (const std::size_t length : Lengths) {
        Heap heap;
        std::vector<Value> wide, narrow, handles, reals, texts, vectors;
        for (std::size_t i = 0; i < length; ++i) {
            wide.push_back(MakeInt(static_cast<std::int64_t>(random())));
            narrow.push_back(MakeInt(static_cast<std::int64_t>(random() % 600) - 300));
            handles.push_back(MakeHandle(Kind::Body, static_cast<std::uint32_t>(random())));
            reals.push_back(RandomReal(random));
            texts.push_back(RandomText(heap, random));
            vectors.push_back(MakeVector(Kind::Vec2, static_cast<float>(random() % 9), 0.0F));
        }
        for (const auto& items : {wide, narrow, handles, reals, texts, vectors}) ExpectStableOrder(heap, items);
    }
}

// The order among NaN is of our own making, and must not change.
TEST(SortValues, KeepsItsStepsWithNan) {
    const Heap heap;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<Value> items;
    for (const float real : {3.0F, nan, 1.0F, 2.0F, nan, 0.0F, 9.0F, 8.0F, nan, 7.0F, 6.0F, 5.0F, 4.0F, nan, -1.0F}) {
        items.push_back(MakeReal(real));
    }
    SortValues(heap, items);
    std::string order;
    for (const Value& item : items) {
        const float real = item.Real();
        order += real == real ? std::to_string(static_cast<int>(real)) + " " : "x ";
    }
    EXPECT_EQ(order, "3 x 1 2 x 0 8 9 x 4 5 6 7 x -1 ");
}

}  // namespace
}  // namespace tavrel::core::script
