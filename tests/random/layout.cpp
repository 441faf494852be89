#include "tests/random/layout.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <string_view>

namespace tavrel::tests {

namespace {

constexpr std::string_view Comment = "// \xC3\xA9 \"assim\" (x  ";

// Words that only their place makes special; there, their case means nothing.
constexpr std::string_view CaseFree[] = {"ate",      "em",        "passo",    "tick",    "quadro",
                                         "carregar", "reiniciar", "desenhar", "negativo"};

bool IsWordByte(char byte) {
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_' || (byte & 0x80) != 0;
}

class Layout {
public:
    Layout(RandomNumbers& givenNumbers, const std::string& givenText) : numbers(givenNumbers), text(givenText) {}

    std::string Write() {
        StartLine();
        while (at < text.size()) {
            const char byte = text[at];
            if (byte == '"') {
                Copy(TextEnd());
            } else if (IsWordByte(byte)) {
                Word();
            } else if (byte == '\n') {
                EndLine();
            } else if (byte == ' ') {
                Blank();
            } else {
                Symbol(byte);
            }
        }
        if (numbers.OneIn(4)) out.append("  ").append(Comment);
        return numbers.OneIn(8) ? WithCarriageReturns() : out;
    }

private:
    void Copy(std::size_t end) {
        out.append(text, at, end - at);
        at = end;
    }

    [[nodiscard]] std::size_t TextEnd() const {
        std::size_t end = at + 1;
        while (text[end] != '"') end += text[end] == '\\' ? 2 : 1;
        return end + 1;
    }

    // What is published goes by its exact bytes.
    void StartLine() {
        const std::string_view line = std::string_view(text).substr(at);
        exact = line.starts_with("publico") || line.starts_with("privado") || line.starts_with("evento ");
        isHead =
            line.starts_with("para ") || line.starts_with("a ") || line.starts_with("ao ") || line.starts_with("acao ");
        out.append(numbers.Below(9), numbers.OneIn(9) ? '\t' : ' ');
    }

    void Word() {
        std::size_t end = at;
        while (end < text.size() && IsWordByte(text[end])) ++end;
        const std::string_view word = std::string_view(text).substr(at, end - at);
        if (exact || std::isdigit(static_cast<unsigned char>(word[0])) != 0) return Copy(end);
        const bool caseFree =
            isHead && depth == 0 && std::find(std::begin(CaseFree), std::end(CaseFree), word) != std::end(CaseFree);
        const bool shout = caseFree && numbers.OneIn(3);
        const std::size_t accented = numbers.OneIn(6) ? numbers.Below(word.size()) : word.size();
        for (std::size_t i = 0; i < word.size(); ++i) {
            const char letter = shout ? static_cast<char>(std::toupper(word[i])) : word[i];
            if (i == accented) {
                out += Accented(letter);
            } else {
                out += letter;
            }
        }
        at = end;
    }

    static std::string Accented(char letter) {
        constexpr std::string_view Letters = "aeioucAEIOUC";
        constexpr std::string_view Second = "\xA3\xA9\xAD\xB5\xBC\xA7\x83\x89\x8D\x95\x9C\x87";  // behind 0xC3
        const std::size_t index = Letters.find(letter);
        return index == std::string_view::npos ? std::string(1, letter) : std::string("\xC3") + Second[index];
    }

    void Symbol(char byte) {
        if (byte == '(' || byte == '[') ++depth;
        if (byte == ')' || byte == ']') --depth;
        out += byte;
        ++at;
        if (byte == '(' || byte == '[' || byte == ',') Gap();
    }

    void Blank() {
        ++at;
        if (numbers.OneIn(8) && CanJoin()) return;
        out += numbers.OneIn(12) ? "\t" : " ";
        if (numbers.OneIn(8)) Gap();
    }

    // Two tokens that would be others without the blank between them: words, "<-", a comment.
    [[nodiscard]] bool CanJoin() const {
        const char left = out.back();
        const char right = text[at];
        if (left == ' ' || left == '\t') return false;
        if (left == '\n') return true;
        if (IsWordByte(left) && IsWordByte(right)) return false;
        return !(left == '<' && right == '-') && !(left == '/' && right == '/');
    }

    // Inside of brackets the end of a line is a blank.
    void Gap() {
        if (numbers.OneIn(3)) out.append(numbers.Below(3), ' ');
        if (depth == 0 || !numbers.OneIn(10)) return;
        if (numbers.OneIn(3)) out.append(" ").append(Comment);
        out += "\n";
    }

    void EndLine() {
        ++at;
        if (numbers.OneIn(10)) out.append(numbers.Below(3), ' ').append(Comment);
        if (numbers.OneIn(6)) out.append(numbers.Below(4), ' ');
        out += numbers.OneIn(10) ? "\n\n \n" : "\n";
        if (numbers.OneIn(20)) out.append("\t").append(Comment).append("\n");
        StartLine();
    }

    [[nodiscard]] std::string WithCarriageReturns() const {
        std::string lines;
        for (const char byte : out) {
            if (byte == '\n') lines += '\r';
            lines += byte;
        }
        return lines;
    }

    RandomNumbers& numbers;
    const std::string& text;
    std::string out;
    std::size_t at = 0;
    int depth = 0;        // of parentheses and brackets
    bool exact = false;   // this line keeps its spelling
    bool isHead = false;  // this line's words may be free in case
};

}  // namespace

std::string Untidy(RandomNumbers& numbers, const std::string& tidy) {
    return Layout(numbers, tidy).Write();
}

}  // namespace tavrel::tests
