#include "core/script/runtime/sort_values.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>

#include "core/script/runtime/compare.h"
#include "core/script/runtime/merge_sort.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint64_t SignBit = std::uint64_t{1} << 63U;
// From this length on counting bytes beats comparing.
constexpr std::size_t RadixLength = 192;

// Puts the words in the order of one byte, stably.
void ScatterByByte(const std::vector<std::uint64_t>& from, unsigned shift, std::vector<std::uint64_t>& to) {
    std::array<std::size_t, 256> place{};
    for (const std::uint64_t word : from) ++place[(word >> shift) & 0xFFU];
    std::size_t next = 0;
    for (std::size_t& count : place) {
        const std::size_t first = next;
        next += count;
        count = first;
    }
    for (const std::uint64_t word : from) to[place[(word >> shift) & 0xFFU]++] = word;
}

// Sorts words by their bits from `lowest` up, stably: byte by byte from the least, without those in which all agree.
void SortWords(std::vector<std::uint64_t>& words, unsigned lowest) {
    if (words.size() < RadixLength) {
        MergeSort(words, [lowest](std::uint64_t a, std::uint64_t b) { return a >> lowest < b >> lowest; });
        return;
    }
    std::uint64_t differing = 0;
    for (const std::uint64_t word : words) differing |= word ^ words.front();
    std::vector<std::uint64_t> spare(words.size());
    for (unsigned shift = lowest; shift < 64; shift += 8) {
        if (((differing >> shift) & 0xFFU) == 0) continue;
        ScatterByByte(words, shift, spare);
        words.swap(spare);
    }
}

// Equal words are the same value, so that only their number matters.
void SortIntegers(std::span<Value> items) {
    std::vector<std::uint64_t> words;
    words.reserve(items.size());
    for (const Value& item : items) words.push_back(static_cast<std::uint64_t>(item.word) ^ SignBit);
    SortWords(words, 0);
    for (std::size_t i = 0; i < items.size(); ++i) items[i].word = static_cast<std::int64_t>(words[i] ^ SignBit);
}

// A number that orders as the real does, both zeros alike, above the bits of the real.
std::uint64_t OrderedReal(float real) {
    const auto bits = std::bit_cast<std::uint32_t>(real);
    const std::uint32_t positive = real == 0.0F ? 0 : bits;
    const std::uint32_t ordered = (positive >> 31U) != 0 ? ~positive : positive | 0x80000000U;
    return static_cast<std::uint64_t>(ordered) << 32U | bits;
}

void SortReals(std::span<Value> items) {
    std::vector<float> reals;
    reals.reserve(items.size());
    for (const Value& item : items) reals.push_back(item.Real());
    const bool ordered = std::none_of(reals.begin(), reals.end(), [](float real) { return real != real; });
    if (!ordered || reals.size() < RadixLength) {
        MergeSort(reals, [](float a, float b) { return a < b; });
        for (std::size_t i = 0; i < items.size(); ++i) items[i] = MakeReal(reals[i]);
        return;
    }
    std::vector<std::uint64_t> words(reals.size());
    std::transform(reals.begin(), reals.end(), words.begin(), OrderedReal);
    SortWords(words, 32);
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i] = MakeReal(std::bit_cast<float>(static_cast<std::uint32_t>(words[i])));
    }
}

struct TextKey {
    std::uint64_t prefix = 0;  // TextPrefix
    std::uint32_t object = 0;
};

void SortTexts(const Heap& heap, std::span<Value> items) {
    std::vector<TextKey> keys;
    keys.reserve(items.size());
    for (const Value& item : items) keys.push_back({TextPrefix(heap.At(item).text), item.ObjectIndex()});
    MergeSort(keys, [&heap](const TextKey& a, const TextKey& b) {
        if (a.prefix != b.prefix) return a.prefix < b.prefix;
        if (a.object == b.object) return false;
        return heap.objects[a.object].text < heap.objects[b.object].text;
    });
    for (std::size_t i = 0; i < items.size(); ++i) items[i] = MakeObject(Kind::Text, keys[i].object);
}

}  // namespace

void SortValues(const Heap& heap, std::span<Value> items) {
    if (items.empty()) return;
    const Kind kind = items[0].kind;
    const auto alike = [kind](const Value& item) { return item.kind == kind; };
    // Code that no compiler of ours made may mix kinds, which have no order between them.
    if (!std::all_of(items.begin(), items.end(), alike)) return;
    switch (kind) {
        case Kind::Int:
        case Kind::Enum:
        case Kind::Bool:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return SortIntegers(items);
        case Kind::Real: return SortReals(items);
        case Kind::Text: return SortTexts(heap, items);
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Space: return;
    }
}

}  // namespace tavrel::core::script
