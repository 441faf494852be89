// How reports are stored and written out. A place is worked out when a report comes in, since the source may be gone
// when it is printed; past the limit nothing is worked out at all.
#include "core/script/source/diagnostics.h"

#include <utility>

namespace tavrel::core::script {

std::string Diagnostic::Describe() const {
    std::string text = file + ":" + std::to_string(line) + ":" + std::to_string(column) + ": ";
    text += severity == Severity::Error ? "erro: " : "aviso: ";
    text += message;
    if (!hint.empty()) text += "\n  " + hint;
    return text;
}

void Diagnostics::Store(Severity severity, const SourceFile& source, Span span, std::string message, std::string hint) {
    LineColumn place = source.At(span.start);
    items.push_back({severity, source.name, span, place.line, place.column, std::move(message), std::move(hint)});
}

void Diagnostics::Add(const SourceFile& source, Span span, std::string message, std::string hint) {
    if (Full()) return;
    Store(Severity::Error, source, span, std::move(message), std::move(hint));
    ++errors;
}

void Diagnostics::Warn(const SourceFile& source, Span span, std::string message) {
    if (Full()) return;
    Store(Severity::Warning, source, span, std::move(message), {});
}

void Diagnostics::CutTo(std::size_t count) {
    while (items.size() > count) {
        if (items.back().severity == Severity::Error && errors > 0) --errors;
        items.pop_back();
    }
}

std::string Diagnostics::Describe() const {
    std::string text;
    for (const Diagnostic& item : items) text += item.Describe() + "\n";
    return text;
}

}  // namespace tavrel::core::script
