#include "core/script/runtime/heap.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "core/script/runtime/compare.h"
#include "core/script/runtime/dictionary.h"

namespace tavrel::core::script {
namespace {

Value NewText(Heap& heap, std::string text) {
    return MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(std::move(text))));
}

Value NewList(Heap& heap, const std::vector<Value>& items = {}) {
    const Value list = MakeObject(Kind::List, static_cast<std::uint32_t>(heap.NewList()));
    for (const Value& item : items) heap.Append(heap.At(list), item);
    return list;
}

TEST(Heap, LastReleasedIsFirstReused) {
    Heap heap;
    const Value inner = NewList(heap, {NewText(heap, "a")});
    const Value shared = NewText(heap, "b");
    const Value last = NewText(heap, "c");
    const Value list = NewList(heap, {inner, shared, last});
    heap.Retain(shared);
    heap.At(list).version = 7;
    heap.Drop(list);
    EXPECT_EQ(heap.free, (std::vector<std::uint32_t>{4, 3, 1, 0}));
    EXPECT_EQ(heap.At(list).version, 7U);
    EXPECT_EQ(heap.live, 1U);
    EXPECT_EQ(heap.NewRecord(RecordId(5), 2), 0);
    EXPECT_EQ(heap.NewDict(), 1);
    EXPECT_EQ(heap.objects[0].record, RecordId(5));
    EXPECT_EQ(heap.taken, 7U);
}

TEST(Heap, DictionaryReleasesItemsBehindKeys) {
    Heap heap;
    const auto dict = static_cast<std::uint32_t>(heap.NewDict());
    for (const char* key : {"a", "b"}) {
        const Value text = NewText(heap, key);
        const Value item = NewText(heap, "valor");
        StoreEntry(heap, dict, text, item);
    }
    heap.Drop(MakeObject(Kind::Dict, dict));
    EXPECT_EQ(heap.free, (std::vector<std::uint32_t>{0, 3, 1, 4, 2}));
    EXPECT_EQ(heap.bytes, 0U);
}

TEST(Heap, DropsAMillionNestedLists) {
    Heap heap;
    Value outer = NewList(heap);
    for (int i = 1; i < 1'000'000; ++i) outer = NewList(heap, {outer});
    heap.Drop(outer);
    EXPECT_EQ(heap.live, 0U);
    EXPECT_EQ(heap.bytes, 0U);
}

TEST(Heap, CountsMemory) {
    Heap heap;
    heap.limit = 1000;
    const Value list = NewList(heap, {NewText(heap, std::string(100, 'x'))});
    heap.Insert(heap.At(list), 0, MakeInt(1));
    EXPECT_EQ(heap.bytes, 2 * Heap::ObjectCost + 2 * Heap::ItemCost + 100);
    EXPECT_TRUE(heap.Fits(1000 - heap.bytes));
    EXPECT_FALSE(heap.Fits(1001 - heap.bytes));
    EXPECT_FALSE(heap.Fits(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ(heap.RemoveAt(heap.At(list), 0).Int(), 1);
    heap.ClearItems(list.ObjectIndex());
    EXPECT_EQ(heap.bytes, Heap::ObjectCost);
    EXPECT_EQ(heap.live, 1U);
}

TEST(Heap, ListsGiveMemoryBackAsTheyShrink) {
    Heap heap;
    const Value list = NewList(heap);
    for (int i = 0; i < 1000; ++i) heap.Insert(heap.At(list), heap.At(list).items.size() / 2, MakeInt(i));
    EXPECT_EQ(heap.At(list).items[499].Int(), 999);
    while (heap.At(list).items.size() > 5) static_cast<void>(heap.RemoveAt(heap.At(list), 5));
    EXPECT_LE(heap.At(list).items.capacity(), 32U);
    EXPECT_EQ(heap.At(list).items[4].Int(), 9);
}

TEST(Heap, Comparisons) {
    Heap heap;
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Value list = NewList(heap);
    struct Row {
        Value a;
        Value b;
        bool same;
        std::int32_t order;
    };
    const Row rows[] = {
        {MakeInt(-1), MakeInt(1), false, -1},
        {MakeEnum(1, 0), MakeEnum(0, 9), false, 1},
        {MakeReal(0.0F), MakeReal(-0.0F), true, 0},
        {MakeReal(nan), MakeReal(nan), false, 0},
        {MakeReal(nan), MakeReal(1.0F), false, 0},
        {MakeReal(-2.5F), MakeReal(1.0F), false, -1},
        {MakeBool(true), MakeBool(false), false, 1},
        {NewText(heap, "abc"), NewText(heap, "abd"), false, -1},
        {NewText(heap, "ab"), NewText(heap, "abc"), false, -1},
        {NewText(heap, "abc"), NewText(heap, "abc"), true, 0},
        {NewText(heap, "\xC3"), NewText(heap, "z"), false, 1},
        {NewText(heap, "a"), MakeInt(1'000'000), false, 0},
        {MakeVector(Kind::Vec2, 1.0F, 0.0F), MakeVector(Kind::Vec2, 1.0F, -0.0F), true, 0},
        {MakeVector(Kind::Vec2, 1.0F, nan), MakeVector(Kind::Vec2, 1.0F, nan), false, 0},
        {MakeVector(Kind::Color, 1, 2, 3, 4), MakeVector(Kind::Color, 1, 2, 3, 5), false, 0},
        {MakeHandle(Kind::Body, 0xFFFFFFFF), MakeHandle(Kind::Body, 1), false, 1},
        {Value{}, Value{}, false, 0},
        {list, list, false, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        EXPECT_EQ(SameValue(heap, row.a, row.b), row.same);
        EXPECT_EQ(CompareValues(heap, row.a, row.b), row.order);
    }
}

}  // namespace
}  // namespace tavrel::core::script
