// The lexer: one loop that looks at the first byte of what comes next and calls the reader of its class. Classes come
// from a table of 256 entries. Each reader moves `position` behind what it read and appends at most one token. The text
// is read through a pointer, with the zero byte behind it as a guard, so no look ahead tests for the end; a zero byte
// inside the text is of no class that continues anything, and is reported like any unknown character.
#include "core/script/syntax/lexer.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/source/fold.h"
#include "core/script/syntax/keywords.h"

namespace tavrel::core::script {

namespace {

// What a byte begins. Word and Digit stand first: together they are the bytes that continue a word.
enum class Class : std::uint8_t { Word, Digit, Blank, LineFeed, Quote, Symbol, Unknown };

constexpr std::array<Class, 256> MakeClasses() {
    std::array<Class, 256> classes{};
    for (std::size_t byte = 0; byte < classes.size(); ++byte) {
        auto letter = static_cast<unsigned char>(byte | 0x20);
        bool isWord = (letter >= 'a' && letter <= 'z') || byte == '_' || byte >= 0x80;
        bool isDigit = byte >= '0' && byte <= '9';
        classes[byte] = isWord ? Class::Word : isDigit ? Class::Digit : Class::Unknown;
    }
    for (char byte : std::string_view("\t\r ")) classes[static_cast<unsigned char>(byte)] = Class::Blank;
    classes['\n'] = Class::LineFeed;
    classes['"'] = Class::Quote;
    for (char byte : std::string_view("()[],:.=!<>+-*/%")) classes[static_cast<unsigned char>(byte)] = Class::Symbol;
    return classes;
}

constexpr std::array<Class, 256> Classes = MakeClasses();

constexpr Class ClassOf(char byte) {
    return Classes[static_cast<unsigned char>(byte)];
}
constexpr bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

// The value of a digit below `radix`, or -1.
int DigitValue(char byte, int radix) {
    int value = -1;
    if (IsDigit(byte)) value = byte - '0';
    if (byte >= 'a' && byte <= 'f') value = byte - 'a' + 10;
    if (byte >= 'A' && byte <= 'F') value = byte - 'A' + 10;
    return value < radix ? value : -1;
}

// Puts one more digit behind `value`; false, with the value left alone, when 64 bits do not hold the result.
bool AppendDigit(std::int64_t& value, int digit, int radix) {
    if (value > (std::numeric_limits<std::int64_t>::max() - digit) / radix) return false;
    value = value * radix + digit;
    return true;
}

constexpr const char* IntegerTooLarge = "este numero nao cabe num inteiro de 64 bits";

// One run over one source.
class Lexer {
public:
    Lexer(const SourceFile& file, Diagnostics& reports, bool wantComments)
        : source(file),
          diagnostics(reports),
          text(file.text.c_str()),
          size(file.text.size()),
          keepComments(wantComments) {}

    TokenList Run();

private:
    Token& Append(Tok kind, std::size_t start, std::size_t end);
    void Report(std::size_t start, std::size_t end, std::string message, std::string hint = {});
    [[nodiscard]] std::string_view View(std::size_t start, std::size_t end) const {
        return {text + start, end - start};
    }
    [[nodiscard]] bool LastIsNewline() const { return !list.tokens.empty() && list.tokens.back().kind == Tok::Newline; }

    void ReadNext();
    void SkipBlanks();
    void ReadComment();
    void ReadLineFeed();
    void ReadWord();
    void ReadNumber();
    void ReadPrefixed(int radix);
    void ReadInteger(std::size_t start, std::string_view digits);
    void ReadReal(std::size_t start, std::string_view digits);
    void SkipDigits(bool underscores);
    bool SkipFraction();
    bool SkipExponent();
    void ReadText();
    void ReadEscapes(std::string& value);
    void SkipPlainText();
    void ReadSymbol();
    void ReadPair(Tok kind);
    void ReadArrow();
    void ReadUnknown();

    const SourceFile& source;
    Diagnostics& diagnostics;
    const char* text;
    std::size_t size;
    std::size_t position = 0;
    std::int64_t depth = 0;  // open parentheses and brackets
    bool keepComments;
    TokenList list;
};

// Dense scripts have a token every four bytes, and room that is not used costs nothing. A large file grows the list by
// doubling instead, since it may as well be one long comment.
constexpr std::size_t BytesPerToken = 3;
constexpr std::size_t MaxReserved = 1U << 20U;

TokenList Lexer::Run() {
    list.tokens.reserve(std::min(size / BytesPerToken + 2, MaxReserved));
    while (position < size) ReadNext();
    if (!LastIsNewline()) Append(Tok::Newline, size, size);
    Append(Tok::End, size, size);
    return std::move(list);
}

void Lexer::ReadNext() {
    switch (ClassOf(text[position])) {
        case Class::Blank: SkipBlanks(); break;
        case Class::LineFeed: ReadLineFeed(); break;
        case Class::Word: ReadWord(); break;
        case Class::Digit: ReadNumber(); break;
        case Class::Quote: ReadText(); break;
        case Class::Symbol: ReadSymbol(); break;
        case Class::Unknown: ReadUnknown(); break;
    }
}

Token& Lexer::Append(Tok kind, std::size_t start, std::size_t end) {
    Token& token = list.tokens.emplace_back();
    token.kind = kind;
    token.span = {static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)};
    return token;
}

void Lexer::Report(std::size_t start, std::size_t end, std::string message, std::string hint) {
    Span span{static_cast<std::uint32_t>(start), static_cast<std::uint32_t>(end)};
    diagnostics.Add(source, span, std::move(message), std::move(hint));
}

// Most blanks come in runs, as indentation.
void Lexer::SkipBlanks() {
    const char* end = text + position + 1;
    while (ClassOf(*end) == Class::Blank) ++end;
    position = static_cast<std::size_t>(end - text);
}

void Lexer::ReadComment() {
    const std::size_t start = position;
    const void* lineFeed = std::memchr(text + start, '\n', size - start);
    position = lineFeed == nullptr ? size : static_cast<std::size_t>(static_cast<const char*>(lineFeed) - text);
    if (!keepComments) return;
    std::size_t end = position;
    while (ClassOf(text[end - 1]) == Class::Blank) --end;
    Append(Tok::Comment, start, end).text = View(start, end);
}

void Lexer::ReadLineFeed() {
    const std::size_t start = position++;
    if (depth > 0 || LastIsNewline()) return;
    Append(Tok::Newline, start, position);
}

void Lexer::ReadWord() {
    const char* end = text + position;
    char bits = 0;
    for (; ClassOf(*end) <= Class::Digit; ++end) bits = static_cast<char>(bits | *end);
    const std::size_t start = std::exchange(position, static_cast<std::size_t>(end - text));
    const std::string_view word = View(start, position);
    const bool isAscii = (bits & 0x80) == 0;
    Append(isAscii ? KeywordOf(word) : KeywordOf(FoldName(word)), start, position).text = word;
}

void Lexer::ReadNumber() {
    const char letter = static_cast<char>(text[position + 1] | 0x20);
    if (text[position] == '0' && letter == 'x') return ReadPrefixed(16);
    if (text[position] == '0' && letter == 'b') return ReadPrefixed(2);

    const std::size_t start = position;
    SkipDigits(true);
    bool isReal = SkipFraction();
    isReal = SkipExponent() || isReal;
    std::string_view digits = View(start, position);
    std::string plain;
    if (digits.find('_') != std::string_view::npos) {
        plain = digits;
        std::erase(plain, '_');
        digits = plain;
    }
    if (isReal) return ReadReal(start, digits);
    ReadInteger(start, digits);
}

void Lexer::ReadPrefixed(int radix) {
    const std::size_t start = position;
    position += 2;
    std::int64_t value = 0;
    bool overflowed = false;
    for (;; ++position) {
        if (text[position] == '_') continue;
        int digit = DigitValue(text[position], radix);
        if (digit < 0) break;
        if (!AppendDigit(value, digit, radix)) overflowed = true;
    }
    if (position == start + 2) {
        Report(start, position,
               radix == 16 ? "faltam os digitos depois de \"0x\"" : "faltam os digitos depois de \"0b\"");
    } else if (overflowed) {
        Report(start, position, IntegerTooLarge);
    }
    Append(Tok::IntegerLiteral, start, position).integer = value;
}

void Lexer::ReadInteger(std::size_t start, std::string_view digits) {
    std::int64_t value = 0;
    bool fits = true;
    for (std::size_t at = 0; at < digits.size() && fits; ++at) fits = AppendDigit(value, digits[at] - '0', 10);
    if (!fits) Report(start, position, IntegerTooLarge);
    Append(Tok::IntegerLiteral, start, position).integer = value;
}

void Lexer::ReadReal(std::size_t start, std::string_view digits) {
    float value = 0;
    if (!ParseRealDigits(digits, value)) Report(start, position, "este numero nao cabe num real");
    Append(Tok::RealLiteral, start, position).real = value;
}

void Lexer::SkipDigits(bool underscores) {
    while (IsDigit(text[position]) || (underscores && text[position] == '_')) ++position;
}

bool Lexer::SkipFraction() {
    if (text[position] != '.' || !IsDigit(text[position + 1])) return false;
    ++position;
    SkipDigits(true);
    return true;
}

bool Lexer::SkipExponent() {
    if (text[position] != 'e' && text[position] != 'E') return false;
    const bool isSigned = text[position + 1] == '+' || text[position + 1] == '-';
    const std::size_t digits = position + (isSigned ? 2 : 1);
    if (!IsDigit(text[digits])) return false;
    position = digits;
    SkipDigits(false);
    return true;
}

// Most literals have no escapes and are their own value.
void Lexer::ReadText() {
    const std::size_t start = position++;
    SkipPlainText();
    std::string_view value = View(start + 1, position);
    if (position < size && text[position] == '\\') {
        std::string& unescaped = list.literals.emplace_front(value);
        ReadEscapes(unescaped);
        value = unescaped;
    }
    const bool isClosed = position < size && text[position] == '"';
    if (isClosed) {
        ++position;
    } else {
        Report(start, std::min(position + 1, size), "faltou fechar as aspas deste texto");
    }
    Append(Tok::TextLiteral, start, position).text = value;
}

// Stops at a quote, a line feed, an escape or the end. A backslash as the last byte of the file has nothing to escape
// and is a byte like any other.
void Lexer::SkipPlainText() {
    for (; position < size; ++position) {
        const char byte = text[position];
        if (byte == '"' || byte == '\n' || (byte == '\\' && position + 1 < size)) return;
    }
}

// Appends the rest of the literal to `value`, from the escape at the current position on.
void Lexer::ReadEscapes(std::string& value) {
    while (position < size && text[position] == '\\') {
        const char escaped = text[position + 1];
        switch (escaped) {
            case 'n': value += '\n'; break;
            case 'r': value += '\r'; break;
            case 't': value += '\t'; break;
            case '"':
            case '\\': value += escaped; break;
            default:
                value += escaped;
                Report(position, position + 2, std::string("\"\\") + escaped + "\" nao e uma fuga conhecida",
                       "as fugas sao \\n, \\t, \\r, \\\" e \\\\");
        }
        position += 2;
        const std::size_t run = position;
        SkipPlainText();
        value += View(run, position);
    }
}

void Lexer::ReadPair(Tok kind) {
    Append(kind, position, position + 2);
    position += 2;
}

void Lexer::ReadSymbol() {
    const char next = text[position + 1];
    Tok kind = Tok::End;
    switch (text[position]) {
        case '=':
            if (next == '=') return ReadPair(Tok::Equal);
            kind = Tok::Assign;
            break;
        case '!':
            if (next == '=') return ReadPair(Tok::NotEqual);
            return ReadUnknown();
        case '<':
            if (next == '=') return ReadPair(Tok::LessEqual);
            if (next == '-') return ReadArrow();
            kind = Tok::Less;
            break;
        case '>':
            if (next == '=') return ReadPair(Tok::GreaterEqual);
            kind = Tok::Greater;
            break;
        case '/':
            if (next == '/') return ReadComment();
            kind = Tok::Slash;
            break;
        case '(':
            ++depth;
            kind = Tok::LeftParen;
            break;
        case '[':
            ++depth;
            kind = Tok::LeftBracket;
            break;
        case ')':
            if (depth > 0) --depth;
            kind = Tok::RightParen;
            break;
        case ']':
            if (depth > 0) --depth;
            kind = Tok::RightBracket;
            break;
        case ',': kind = Tok::Comma; break;
        case ':': kind = Tok::Colon; break;
        case '.': kind = Tok::Dot; break;
        case '+': kind = Tok::Plus; break;
        case '-': kind = Tok::Minus; break;
        case '*': kind = Tok::Star; break;
        case '%': kind = Tok::Percent; break;
        default: break;
    }
    Append(kind, position, position + 1);
    ++position;
}

// The arrow of other Portuguese languages: read as what the writer meant.
void Lexer::ReadArrow() {
    Report(position, position + 2, "\"<-\" nao atribui nesta linguagem", "use \"=\" para atribuir");
    ReadPair(Tok::Assign);
}

// Ends the line for the parser at the bad character, even behind another end of line.
void Lexer::ReadUnknown() {
    constexpr std::size_t MaxCharacterBytes = 4;
    const std::size_t start = position++;
    const std::size_t limit = std::min(start + MaxCharacterBytes, size);
    while (position < limit && !StartsCharacter(static_cast<unsigned char>(text[position]))) ++position;
    Report(start, position, std::string("\"").append(View(start, position)).append("\" nao e usado nesta linguagem"));
    Append(Tok::Newline, start, position);
}

}  // namespace

TokenList Tokenize(const SourceFile& source, Diagnostics& diagnostics, bool keepComments) {
    if (source.FitsOffsets()) return Lexer(source, diagnostics, keepComments).Run();
    diagnostics.Add(source, {}, "o arquivo passa de 4 GiB, o maximo de um script", {});
    TokenList list;
    list.tokens.resize(2);
    list.tokens.front().kind = Tok::Newline;
    return list;
}

}  // namespace tavrel::core::script
