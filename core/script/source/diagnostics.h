// The reports of one compilation. Every stage appends to a collection that its caller owns; nothing here prints or
// decides. A stage's own result tells failure, or `errors`: never that `items` is not empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/script/source/source_file.h"

namespace tavrel::core::script {

enum class Severity : std::int32_t { Error = 0, Warning = 1 };

// One reported problem, with its place already worked out.
struct Diagnostic {
    Severity severity = Severity::Error;
    std::string file;
    Span span;
    std::int32_t line = 1;
    std::int32_t column = 1;
    std::string message;  // one line, in Portuguese
    std::string hint;     // what to write instead; may be empty

    // "file:line:column: erro: message", with the hint on a second line; no line feed at the end.
    [[nodiscard]] std::string Describe() const;
};

struct Diagnostics {
    // Reports past this many are dropped whole.
    static constexpr std::size_t Limit = 25;

    std::vector<Diagnostic> items;  // in the order reported
    std::uint64_t errors = 0;       // how many of the stored entries are errors

    [[nodiscard]] bool Full() const { return items.size() >= Limit; }

    void Add(const SourceFile& source, Span span, std::string message, std::string hint);
    void Warn(const SourceFile& source, Span span, std::string message);

    // Takes back every entry behind the first `count`, for a stage that only tried something.
    void CutTo(std::size_t count);

    // Each entry's Describe and a line feed.
    [[nodiscard]] std::string Describe() const;

private:
    void Store(Severity severity, const SourceFile& source, Span span, std::string message, std::string hint);
};

}  // namespace tavrel::core::script
