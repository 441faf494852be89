#include "core/script/runtime/compare.h"

#include <algorithm>
#include <string>

namespace tavrel::core::script {

namespace {

bool SameComponents(const Value& a, const Value& b) {
    for (int i = 0; i < ComponentCount(a.kind); ++i) {
        if (!(a.components[i] == b.components[i])) return false;
    }
    return true;
}

// Code that no compiler of ours made may compare a text with something else: that must not reach into the heap.
bool SameText(const Heap& heap, const Value& a, const Value& b) {
    if (b.kind != Kind::Text) return false;
    return a.word == b.word || heap.At(a).text == heap.At(b).text;
}

std::int32_t CompareTexts(const Heap& heap, const Value& a, const Value& b) {
    if (b.kind != Kind::Text || a.word == b.word) return 0;
    const int order = heap.At(a).text.compare(heap.At(b).text);  // as unsigned bytes
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

template <typename Number>
std::int32_t Order(Number a, Number b) {
    return a < b ? -1 : a > b ? 1 : 0;
}

}  // namespace

bool SameValue(const Heap& heap, const Value& a, const Value& b) {
    switch (a.kind) {
        case Kind::Int:
        case Kind::Enum: return a.word == b.word;
        case Kind::Real: return a.Real() == b.Real();
        case Kind::Bool: return a.Bool() == b.Bool();
        case Kind::Text: return SameText(heap, a, b);
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color: return SameComponents(a, b);
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return a.Handle() == b.Handle();
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Space: break;
    }
    return false;
}

std::uint64_t TextPrefix(const std::string& text) {
    std::uint64_t prefix = 0;
    const std::size_t length = std::min<std::size_t>(text.size(), 8);
    for (std::size_t i = 0; i < length; ++i) {
        prefix |= static_cast<std::uint64_t>(static_cast<unsigned char>(text[i])) << (56U - 8U * i);
    }
    return prefix;
}

std::int32_t CompareValues(const Heap& heap, const Value& a, const Value& b) {
    switch (a.kind) {
        case Kind::Int:
        case Kind::Enum: return Order(a.word, b.word);
        case Kind::Real: return Order(a.Real(), b.Real());
        case Kind::Bool: return Order<int>(a.Bool(), b.Bool());
        case Kind::Text: return CompareTexts(heap, a, b);
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound: return Order(a.Handle(), b.Handle());
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Space: break;
    }
    return 0;
}

}  // namespace tavrel::core::script
