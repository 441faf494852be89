// Offsets and positions. Both directions find the line first, in the table of the source file, and then walk that one
// line character by character, told by the lead byte of each.
#include "script_lsp/position.h"

#include <algorithm>
#include <cstddef>

namespace tavrel::script_lsp {

using core::Json;
using core::script::SourceFile;
using core::script::Span;

namespace {

struct Character {
    std::size_t bytes = 1;
    std::int32_t units = 1;  // of UTF-16
};

// Told by the lead byte alone; a continuation byte without its lead is a character by itself.
Character CharacterOf(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte < 0xC0) return {1, 1};
    if (byte < 0xE0) return {2, 1};
    if (byte < 0xF0) return {3, 1};
    return {4, 2};
}

Json PositionJson(Position position) {
    Json json = Json::Object();
    json.Set("line", Json::Int(position.line));
    json.Set("character", Json::Int(position.character));
    return json;
}

}  // namespace

Position PositionOf(const SourceFile& file, std::uint32_t offset) {
    const std::size_t end = std::min<std::size_t>(offset, file.text.size());
    Position position{file.At(offset).line - 1, 0};
    std::size_t place = end == 0 ? 0 : file.text.rfind('\n', end - 1) + 1;
    while (place < end) {
        const Character character = CharacterOf(file.text[place]);
        place += character.bytes;
        position.character += character.units;
    }
    return position;
}

std::uint32_t OffsetOf(const SourceFile& file, Position position) {
    const auto line = static_cast<std::size_t>(std::max(position.line, 0));
    const std::size_t size = file.text.size();
    if (line >= file.lineStarts.size()) return static_cast<std::uint32_t>(size);
    std::size_t place = file.lineStarts[line];
    std::int32_t units = 0;
    while (place < size && file.text[place] != '\n' && units < position.character) {
        const Character character = CharacterOf(file.text[place]);
        place += character.bytes;
        units += character.units;
    }
    return static_cast<std::uint32_t>(std::min(place, size));
}

Json RangeOf(const SourceFile& file, Span span) {
    Json range = Json::Object();
    range.Set("start", PositionJson(PositionOf(file, span.start)));
    range.Set("end", PositionJson(PositionOf(file, span.end)));
    return range;
}

}  // namespace tavrel::script_lsp
