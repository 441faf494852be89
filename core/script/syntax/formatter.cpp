// Writes the tokens of a source back line by line, each with its own bytes. A line here is a logical one: what stands
// between two line ends outside brackets. Three decisions make the layout: how deep a line stands (by the words that it
// and the lines before it begin and end with, looking past comments behind the code), whether a blank goes between two
// neighbours (by their kinds alone), and where an empty line stays. Nothing is parsed, so none of them may ask for more
// than one line. Every change must keep the tokens as they are: blanks that the layout leaves out may not join two
// tokens into another (WouldMerge), and code behind a comment inside brackets goes on a line of its own (WriteTokens).
#include "core/script/syntax/formatter.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string_view>
#include <utility>

#include "core/script/syntax/contextual_words.h"
#include "core/script/syntax/lexer.h"
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

namespace {

constexpr std::size_t BlanksPerLevel = 4;

// What stands between two line ends that count: an expression may run over several lines of the source.
struct Line {
    std::span<const Token> tokens;  // never empty, and without the Newline
    std::span<const Token> code;    // the same up to the comments at its end; empty where the line has nothing else
    bool blankBefore = false;       // an empty line stood before it in the source
};

// A token on its way out and the two around it. `before` passes over comments, which do not change what a sign is.
struct Place {
    Tok before = Tok::End;  // End where the line begins
    Tok current = Tok::End;
    Tok next = Tok::End;
};

// Comments behind the code of a line do not bear on what it opens and closes. More than one stand there only where a
// bracket is still open at the end of the file.
std::span<const Token> WithoutLastComments(std::span<const Token> tokens) {
    while (!tokens.empty() && tokens.back().kind == Tok::Comment) tokens = tokens.first(tokens.size() - 1);
    return tokens;
}

bool StandsOneLevelOut(Tok first) {
    const BlockRole role = RoleOf(first);
    return role == BlockRole::Divides || role == BlockRole::Ends;
}

bool BeginsBlock(Tok first) {
    const BlockRole role = RoleOf(first);
    return role == BlockRole::Begins || role == BlockRole::Divides;
}

bool BeginsHook(std::span<const Token> code) {
    switch (HookHeadOf(code[0], code.size() > 1 ? code[1] : Token())) {
        case HookHead::Event: return code.size() > 1;
        case HookHead::Periodic: return code.size() > 2;
        case HookHead::Camera: return code.size() == 1;
        case HookHead::None: return false;
    }
    return false;
}

bool OpensHook(std::span<const Token> code) {
    if (code.empty() || !BeginsHook(code)) return false;
    return std::none_of(code.begin(), code.end(), [](const Token& token) { return token.kind == Tok::Assign; });
}

// A block written on one line ends there.
bool OpensBlock(std::span<const Token> code) {
    return !code.empty() && BeginsBlock(code.front().kind) && (code.size() == 1 || code.back().kind != Tok::Fim);
}

bool IsNumber(Tok kind) {
    return kind == Tok::IntegerLiteral || kind == Tok::RealLiteral;
}

// What a "+" or "-" behind it adds to or takes from.
bool EndsOperand(Tok kind) {
    switch (kind) {
        case Tok::Name:
        case Tok::IntegerLiteral:
        case Tok::RealLiteral:
        case Tok::TextLiteral:
        case Tok::RightParen:
        case Tok::RightBracket:
        case Tok::Verdadeiro:
        case Tok::Falso: return true;
        default: return false;
    }
}

bool IsSign(const Place& place) {
    return (place.current == Tok::Plus || place.current == Tok::Minus) && !EndsOperand(place.before);
}

bool TakesNoBlankBefore(Tok kind) {
    switch (kind) {
        case Tok::RightParen:
        case Tok::RightBracket:
        case Tok::Comma:
        case Tok::Colon:
        case Tok::Dot: return true;
        default: return false;
    }
}

bool TakesNoBlankBehind(Tok kind) {
    return kind == Tok::LeftParen || kind == Tok::LeftBracket || kind == Tok::Dot;
}

bool IsCalledOrIndexed(Tok kind) {
    return kind == Tok::Name || kind == Tok::RightParen || kind == Tok::RightBracket || IsTypeWord(kind);
}

bool WantsBlank(const Place& place, bool opensHook) {
    if (place.next == Tok::Comment) return true;
    const bool opensBracket = place.next == Tok::LeftParen || place.next == Tok::LeftBracket;
    if (opensHook && place.next == Tok::LeftParen) return true;
    if (TakesNoBlankBehind(place.current) || TakesNoBlankBefore(place.next)) return false;
    if (IsSign(place)) return false;
    return !(opensBracket && IsCalledOrIndexed(place.current));
}

// A few bytes per line may ask for an indentation as deep as there are lines before it, which grows with the square
// of the source. No script that people keep comes near this.
std::size_t MaxLayout(std::size_t sourceSize) {
    constexpr std::size_t AlwaysFine = 32U << 20U;
    constexpr std::size_t MaxGrowth = 16;
    return std::min(MaxSourceSize, AlwaysFine + MaxGrowth * sourceSize);
}

class Formatter {
public:
    Formatter(const SourceFile& file, const TokenList& list)
        : source(file), tokens(list.tokens), limit(MaxLayout(file.text.size())) {}

    // False when the layout is larger than the limit; `out` is then left alone.
    bool Run(Diagnostics& diagnostics, std::string& out);

private:
    [[nodiscard]] Line LineOf(std::size_t start, std::size_t end) const;
    void WriteLine(const Line& line);
    void WriteTokens(const Line& line, std::size_t indent, bool opensHook);
    [[nodiscard]] bool WouldMerge(std::span<const Token> line) const;
    void WriteIndent(std::size_t indent) { text.append(indent * BlanksPerLevel, ' '); }

    const SourceFile& source;
    std::span<const Token> tokens;
    std::size_t limit;
    std::string text;
    std::size_t depth = 0;  // blocks open before the next line
};

bool Formatter::Run(Diagnostics& diagnostics, std::string& out) {
    // Blanks that come in and blanks that go nearly balance in code that people keep.
    text.reserve(std::min(source.text.size() + source.text.size() / 8, limit));
    std::size_t start = 0;
    for (std::size_t at = 0; at < tokens.size(); ++at) {
        if (tokens[at].kind != Tok::Newline && tokens[at].kind != Tok::End) continue;
        if (at > start) WriteLine(LineOf(start, at));
        if (text.size() > limit) {
            diagnostics.Add(source, tokens[start].span, "o texto arrumado ficaria grande demais",
                            "confira se cada bloco tem o seu \"fim\"");
            return false;
        }
        start = at + 1;
    }
    out = std::move(text);
    return true;
}

Line Formatter::LineOf(std::size_t start, std::size_t end) const {
    Line line{tokens.subspan(start, end - start), {}};
    line.code = WithoutLastComments(line.tokens);
    if (start > 0) {
        // The Newline before is the first line feed of the gap; one more makes an empty line.
        const Span gap{tokens[start - 1].span.end, tokens[start].span.start};
        line.blankBefore = source.View(gap).find('\n') != std::string_view::npos;
    }
    return line;
}

void Formatter::WriteLine(const Line& line) {
    if (line.blankBefore && !text.empty()) text += '\n';
    const std::size_t indent = StandsOneLevelOut(line.tokens[0].kind) && depth > 0 ? depth - 1 : depth;
    const bool opensHook = OpensHook(line.code);
    WriteIndent(indent);
    WriteTokens(line, indent, opensHook);
    text += '\n';
    depth = OpensBlock(line.code) || opensHook ? indent + 1 : indent;
}

// A comment with code behind it stands inside brackets. The line has to break there, or it would swallow that code.
void Formatter::WriteTokens(const Line& line, std::size_t indent, bool opensHook) {
    Place place;
    for (std::size_t at = 0; at < line.tokens.size(); ++at) {
        const Token& token = line.tokens[at];
        place.next = token.kind;
        if (place.current == Tok::Comment) {
            if (text.size() > limit) return;
            text += '\n';
            WriteIndent(indent + 1);
        } else if (place.current != Tok::End &&
                   (WantsBlank(place, opensHook) || WouldMerge(line.tokens.first(at + 1)))) {
            text += ' ';
        }
        text += source.View(token.span);
        if (place.current != Tok::Comment) place.before = place.current;
        place.current = place.next;
    }
}

// Whether the last of these tokens, written close, would become another: an integer, a point and a number read as one
// real. An integer with a prefix takes no point.
bool Formatter::WouldMerge(std::span<const Token> line) const {
    if (!IsNumber(line.back().kind) || line.size() < 3) return false;
    const Token& integer = line[line.size() - 3];
    if (integer.kind != Tok::IntegerLiteral || line[line.size() - 2].kind != Tok::Dot) return false;
    return source.View(integer.span).find_first_of("xXbB") == std::string_view::npos;
}

}  // namespace

FormatResult TryFormat(const SourceFile& source, Diagnostics& diagnostics, std::string& out) {
    const TokenList list = Tokenize(source, diagnostics, true);
    if (diagnostics.errors != 0) return FormatResult::Unreadable;
    return Formatter(source, list).Run(diagnostics, out) ? FormatResult::Done : FormatResult::TooLarge;
}

bool Format(const SourceFile& source, Diagnostics& diagnostics, std::string& out) {
    return TryFormat(source, diagnostics, out) == FormatResult::Done;
}

}  // namespace tavrel::core::script
