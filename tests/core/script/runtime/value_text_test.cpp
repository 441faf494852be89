#include "core/script/runtime/value_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tavrel::core::script {
namespace {

Value NewText(Heap& heap, std::string text) {
    return MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(std::move(text))));
}

Value NewList(Heap& heap, const std::vector<Value>& items) {
    const Value list = MakeObject(Kind::List, static_cast<std::uint32_t>(heap.NewList()));
    for (const Value& item : items) heap.Append(heap.At(list), item);
    return list;
}

Value NewRecord(Heap& heap, const std::vector<Value>& fields) {
    const Value record =
        MakeObject(Kind::Record, static_cast<std::uint32_t>(heap.NewRecord(RecordId(0), fields.size())));
    std::copy(fields.begin(), fields.end(), heap.At(record).items.begin());
    return record;
}

// What a script can make is shown in tests/cases/natives/texts.
TEST(ValueText, WhatNoScriptHolds) {
    const Heap heap;
    EXPECT_EQ(ValueToText(heap, Value{}), "nada");
    EXPECT_EQ(ValueToText(heap, MakeEnum(1, 2)), "4294967298");
    EXPECT_EQ(ValueToText(heap, MakeHandle(Kind::Object, 4294967295)), "objeto(4294967295)");
    EXPECT_EQ(ValueToText(heap, MakeWord(Kind::Unknown, 0)), "?");
    EXPECT_EQ(ValueToText(heap, MakeWord(static_cast<Kind>(200), 0)), "?");
}

TEST(ValueText, MarksOnlyWhatIsInsideItself) {
    Heap heap;
    const Value list = NewList(heap, {});
    const Value record = NewRecord(heap, {list, MakeInt(1)});
    heap.Append(heap.At(list), record);
    heap.Append(heap.At(list), record);
    EXPECT_EQ(ValueToText(heap, list), "[{..., 1}, {..., 1}]");
}

TEST(ValueText, FollowsAMillionLevels) {
    constexpr std::size_t Levels = 1'000'000;
    Heap heap;
    const Value innermost = NewList(heap, {});
    Value outer = innermost;
    for (std::size_t i = 1; i < Levels; ++i) outer = NewList(heap, {outer});
    EXPECT_EQ(ValueToText(heap, outer), std::string(Levels, '[') + std::string(Levels, ']'));
    heap.Append(heap.At(innermost), outer);
    EXPECT_EQ(ValueToText(heap, outer), std::string(Levels, '[') + "..." + std::string(Levels, ']'));
}

TEST(ValueText, StopsAtTheLimit) {
    Heap heap;
    Value doubled = NewList(heap, {MakeInt(1)});
    for (int i = 0; i < 60; ++i) doubled = NewList(heap, {doubled, doubled});
    std::string text = "x";
    EXPECT_FALSE(AppendValueText(heap, doubled, 1000, text));
    EXPECT_LE(text.size(), 1000U);
    text = "x";
    EXPECT_TRUE(AppendValueText(heap, NewText(heap, "abc"), 4, text));
    EXPECT_EQ(text, "xabc");
    EXPECT_FALSE(AppendValueText(heap, MakeBool(true), 13, text));
}

}  // namespace
}  // namespace tavrel::core::script
