#include "core/script/runtime/dictionary.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>
#include <vector>

#include "core/script/runtime/compare.h"

namespace tavrel::core::script {
namespace {

// What the language promises: keys in order, scanned from the first.
struct Literal {
    struct Entry {
        Value key;
        Value value;
    };
    std::vector<Entry> entries;

    std::int64_t FindByOrder(const Heap& heap, const Value& key) const {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const std::int32_t order = CompareValues(heap, entries[i].key, key);
            if (order >= 0) return order == 0 ? static_cast<std::int64_t>(i) : -1;
        }
        return -1;
    }

    std::int64_t FindSame(const Heap& heap, const Value& key) const {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            if (SameValue(heap, entries[i].key, key)) return static_cast<std::int64_t>(i);
        }
        return -1;
    }

    bool Store(const Heap& heap, const Value& key, const Value& value) {
        for (std::size_t i = 0; i < entries.size(); ++i) {
            const std::int32_t order = CompareValues(heap, entries[i].key, key);
            if (order == 0) entries[i].value = value;
            if (order > 0) entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(i), {key, value});
            if (order >= 0) return order > 0;
        }
        entries.push_back({key, value});
        return true;
    }
};

// Times the multiplier of the index's hash it is 1, so that its small multiples have the hash of 0.
constexpr std::uint64_t HashInverse = 0xF1DE83E19937733D;

Value DrawKey(Heap& heap, Kind kind, std::mt19937& random, std::uint32_t range) {
    const auto number = static_cast<std::uint32_t>(random() % range);
    switch (kind) {
        case Kind::Int:
            if (number % 2 == 0) return MakeInt(static_cast<std::int64_t>(number * HashInverse));  // all of one hash
            return MakeInt((std::int64_t{number} - range / 2) << (number % 3 * 20));
        case Kind::Enum: return MakeEnum(3, number);
        case Kind::Bool: return MakeBool(number % 2 == 0);
        case Kind::Object: return MakeHandle(Kind::Object, number * 0x01000001U);
        case Kind::Real:
            if (random() % 50 == 0) return MakeReal(std::numeric_limits<float>::quiet_NaN());
            if (number < 2) return MakeReal(number == 0 ? 0.0F : -0.0F);
            return MakeReal((static_cast<float>(number) - static_cast<float>(range) / 2) / 8);
        default: {
            const std::string digits = std::to_string(number);
            const std::string text = number % 2 == 0 ? digits + std::string(number % 19, '\xE1') : "chave " + digits;
            return MakeObject(Kind::Text, static_cast<std::uint32_t>(heap.NewText(text)));
        }
    }
}

class Comparison {
public:
    Comparison(Kind keys, unsigned seed, std::uint32_t keyRange)
        : kind(keys), random(seed), range(keyRange), dict(static_cast<std::uint32_t>(heap.NewDict())) {}

    void Step() {
        const Value key = DrawKey(heap, kind, random, range);
        switch (random() % 8) {
            case 0:
                if (random() % 16 == 0) CheckOrder();
                break;
            case 1:
            case 2: return Store(key);
            case 3: Remove(key); break;
            case 4: Check(FindByOrder(heap, dict, key), literal.FindByOrder(heap, key)); break;
            default: Check(FindSame(heap, dict, key), literal.FindSame(heap, key)); break;
        }
        heap.Drop(key);
    }

    void Finish() {
        CheckOrder();
        heap.Drop(MakeObject(Kind::Dict, dict));
        EXPECT_EQ(heap.live, 0U);
        EXPECT_EQ(heap.bytes, 0U);
        EXPECT_TRUE(heap.unsettled.empty());
    }

private:
    void Store(const Value& key) {
        const Value value = DrawKey(heap, Kind::Text, random, 1000);
        const bool inserted = literal.Store(heap, key, value);
        ASSERT_EQ(WouldInsert(heap, dict, key), inserted);
        ASSERT_EQ(StoreEntry(heap, dict, key, value), inserted);
    }

    void Remove(const Value& key) {
        const std::int64_t found = FindSame(heap, dict, key);
        const std::int64_t expected = literal.FindSame(heap, key);
        Check(found, expected);
        if (found < 0 || expected < 0) return;
        RemoveEntry(heap, dict, found);
        literal.entries.erase(literal.entries.begin() + expected);
    }

    void Check(std::int64_t found, std::int64_t expected) {
        ASSERT_EQ(found < 0, expected < 0);
        if (found < 0) return;
        const HeapObject& object = heap.objects[dict];
        ASSERT_EQ(object.keys[static_cast<std::size_t>(found)].word,
                  literal.entries[static_cast<std::size_t>(expected)].key.word);
        ASSERT_EQ(object.items[static_cast<std::size_t>(found)].word,
                  literal.entries[static_cast<std::size_t>(expected)].value.word);
    }

    void CheckOrder() {
        SettleAll(heap);
        ASSERT_EQ(heap.objects[dict].keys.size(), literal.entries.size());
        for (std::size_t i = 0; i < literal.entries.size(); ++i) {
            Check(static_cast<std::int64_t>(i), static_cast<std::int64_t>(i));
        }
    }

    Kind kind;
    std::mt19937 random;
    std::uint32_t range;
    Heap heap;
    std::uint32_t dict;
    Literal literal;
};

TEST(Dictionary, DoesWhatScansDo) {
    constexpr int Steps = 4000;
    unsigned seed = 0;
    for (const Kind kind : {Kind::Int, Kind::Enum, Kind::Bool, Kind::Object, Kind::Real, Kind::Text}) {
        for (const std::uint32_t range : {6U, 40U, 150U, 1500U}) {
            SCOPED_TRACE("kind " + std::to_string(static_cast<int>(kind)) + ", range " + std::to_string(range));
            Comparison comparison(kind, ++seed, range);
            for (int i = 0; i < Steps && !testing::Test::HasFailure(); ++i) comparison.Step();
            comparison.Finish();
        }
    }
}

TEST(Dictionary, NanFindsTheFirstKeyInOrder) {
    Heap heap;
    const auto dict = static_cast<std::uint32_t>(heap.NewDict());
    for (int i = 200; i > 0; --i) StoreEntry(heap, dict, MakeReal(static_cast<float>(i)), MakeInt(i));
    const Value nan = MakeReal(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(FindSame(heap, dict, nan), -1);
    EXPECT_FALSE(StoreEntry(heap, dict, nan, MakeInt(-1)));
    const std::int64_t first = FindByOrder(heap, dict, MakeReal(1.0F));
    ASSERT_GE(first, 0);
    EXPECT_EQ(heap.objects[dict].items[static_cast<std::size_t>(first)].Int(), -1);
}

TEST(Dictionary, NanIsTheOnlyKeyOfItsDictionary) {
    Heap heap;
    const auto dict = static_cast<std::uint32_t>(heap.NewDict());
    for (int i = 200; i > 0; --i) StoreEntry(heap, dict, MakeReal(static_cast<float>(i)), MakeInt(i));
    while (!heap.objects[dict].keys.empty()) RemoveEntry(heap, dict, 0);
    const Value nan = MakeReal(std::numeric_limits<float>::quiet_NaN());
    EXPECT_TRUE(StoreEntry(heap, dict, nan, MakeInt(1)));
    EXPECT_FALSE(StoreEntry(heap, dict, MakeReal(5.0F), MakeInt(2)));
    EXPECT_EQ(FindByOrder(heap, dict, MakeReal(7.0F)), 0);
    EXPECT_EQ(FindSame(heap, dict, MakeReal(7.0F)), -1);
    EXPECT_EQ(FindSame(heap, dict, nan), -1);
}

// A script could pile up memory that nobody counts in dictionaries that were large once.
TEST(Dictionary, GivesMemoryBackAsItEmpties) {
    constexpr std::int64_t Count = 4001;
    constexpr std::uint64_t Plain = Heap::ObjectCost + 2 * Heap::ItemCost * std::uint64_t{Count};
    for (const bool ascending : {false, true}) {
        Heap heap;
        const auto dict = static_cast<std::uint32_t>(heap.NewDict());
        const std::int64_t step = ascending ? 1 : 1000;
        for (std::int64_t i = 0; i < Count; ++i) StoreEntry(heap, dict, MakeInt(i * step % Count), MakeInt(i));
        for (std::int64_t i = 0; i < Count; ++i) ASSERT_GE(FindSame(heap, dict, MakeInt(i)), 0);
        EXPECT_GT(heap.bytes, Plain + 16 * std::uint64_t{Count});
        for (std::int64_t i = Count; i-- > 2;) RemoveEntry(heap, dict, FindSame(heap, dict, MakeInt(i)));
        EXPECT_LT(heap.bytes, 1000U);
        EXPECT_LE(heap.objects[dict].keys.capacity() + heap.objects[dict].items.capacity(), 32U);
        EXPECT_GE(FindSame(heap, dict, MakeInt(1)), 0);
    }
}

}  // namespace
}  // namespace tavrel::core::script
