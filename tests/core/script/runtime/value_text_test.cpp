#include "core/script/runtime/value_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

#include "core/script/runtime/dictionary.h"

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

Value NewDict(Heap& heap, const std::vector<Value>& keysAndValues) {
    const auto dict = static_cast<std::uint32_t>(heap.NewDict());
    for (std::size_t i = 0; i < keysAndValues.size(); i += 2) {
        StoreEntry(heap, dict, keysAndValues[i], keysAndValues[i + 1]);
    }
    return MakeObject(Kind::Dict, dict);
}

TEST(ValueText, EveryKind) {
    Heap heap;
    struct Row {
        Value value;
        const char* text;
    };
    const Row rows[] = {
        {Value{}, "nada"},
        {MakeInt(-5), "-5"},
        {MakeEnum(1, 2), "4294967298"},
        {MakeReal(0.5F), "0.5"},
        {MakeReal(-std::numeric_limits<float>::infinity()), "-inf"},
        {MakeBool(true), "verdadeiro"},
        {MakeBool(false), "falso"},
        {NewText(heap, "a \"b\""), "a \"b\""},
        {MakeVector(Kind::Vec2, 1.0F, -2.0F), "vetor2(1, -2)"},
        {MakeVector(Kind::Vec3, 1.0F, 2.0F, 0.5F), "vetor3(1, 2, 0.5)"},
        {MakeVector(Kind::Color, 1.0F, 0.0F, 0.0F, 0.25F), "cor(1, 0, 0, 0.25)"},
        {MakeHandle(Kind::Object, 4294967295), "objeto(4294967295)"},
        {MakeHandle(Kind::Body, 0), "corpo(0)"},
        {MakeHandle(Kind::Sound, 3), "som(3)"},
        {NewList(heap, {}), "[]"},
        {NewList(heap, {NewText(heap, ""), NewList(heap, {MakeInt(1), MakeInt(2)}), MakeInt(3)}), "[, [1, 2], 3]"},
        {NewDict(heap, {}), "[]"},
        {NewDict(heap, {MakeInt(2), NewList(heap, {}), MakeInt(1), NewList(heap, {MakeInt(7)})}), "[1: [7], 2: []]"},
        {NewRecord(heap, {NewText(heap, "a"), MakeInt(1)}), "{a, 1}"},
        {NewRecord(heap, {}), "{}"},
        {MakeWord(Kind::Unknown, 0), "?"},
        {MakeWord(static_cast<Kind>(200), 0), "?"},
    };
    for (const Row& row : rows) EXPECT_EQ(ValueToText(heap, row.value), row.text);
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

TEST(ValueText, SettlesDictionaries) {
    Heap heap;
    const Value dict = NewDict(heap, {});
    std::string expected;
    for (int i = 0; i < 500; ++i) {
        StoreEntry(heap, dict.ObjectIndex(), MakeInt(i * 7 % 500), MakeBool(true));
        expected += (i == 0 ? "[" : ", ") + std::to_string(i) + ": verdadeiro";
    }
    std::string text;
    EXPECT_TRUE(AppendValueText(heap, dict, heap.limit, text));
    EXPECT_EQ(text, expected + "]");
}

}  // namespace
}  // namespace tavrel::core::script
