// Line starts are gathered in one pass when the file is made; a line is then found by binary search, and a column by
// counting characters from the start of the line.
#include "core/script/source/source_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// Larger than any standard library's small-string buffer.
constexpr std::size_t HeapCapacity = 64;

// Offsets reach further than the counts that are reported; beyond their range a count stays at its greatest.
std::int32_t ClampCount(std::uint64_t count) {
    return static_cast<std::int32_t>(std::min<std::uint64_t>(count, std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

SourceFile::SourceFile() : SourceFile(std::string(), std::string()) {}

SourceFile::SourceFile(std::string fileName, std::string fileText)
    : name(std::move(fileName)), text(std::move(fileText)), lineStarts{0} {
    text.reserve(HeapCapacity);
    if (!FitsOffsets()) return;
    const char* begin = text.data();
    const char* end = begin + text.size();
    for (const char* at = begin; at != end;) {
        const void* lineFeed = std::memchr(at, '\n', static_cast<std::size_t>(end - at));
        if (lineFeed == nullptr) break;
        at = static_cast<const char*>(lineFeed) + 1;
        lineStarts.push_back(static_cast<std::uint32_t>(at - begin));
    }
}

LineColumn SourceFile::At(std::uint32_t offset) const {
    std::size_t at = std::min<std::size_t>(offset, text.size());
    auto next = std::upper_bound(lineStarts.begin(), lineStarts.end(), at);
    std::size_t lineStart = *(next - 1);
    auto line = static_cast<std::uint64_t>(next - lineStarts.begin());
    std::uint64_t before = CountCharacters(std::string_view(text).substr(lineStart, at - lineStart));
    return {ClampCount(line), ClampCount(before + 1)};
}

std::string SourceFile::Line(int number) const {
    if (number < 1 || static_cast<std::size_t>(number) > lineStarts.size()) return {};
    std::size_t start = lineStarts[static_cast<std::size_t>(number) - 1];
    std::size_t end = std::min(text.find('\n', start), text.size());
    if (end > start && text[end - 1] == '\r') --end;
    return text.substr(start, end - start);
}

std::string_view SourceFile::View(Span span) const {
    if (span.start >= text.size() || span.end <= span.start) return {};
    return std::string_view(text).substr(span.start, span.end - span.start);
}

}  // namespace tavrel::core::script
