// Folding by a table of the accented letters. All of them are two bytes of UTF-8 with the same first byte, so most
// bytes pass after one comparison, and the table is searched by the second byte.
#include "core/script/source/fold.h"

#include <algorithm>

namespace tavrel::core::script {

namespace {

struct Accent {
    char bytes[3];  // a two-byte UTF-8 sequence; all begin with 0xC3
    char letter;
};

constexpr char AccentLead = '\xC3';

constexpr Accent Accents[] = {
    {"á", 'a'}, {"à", 'a'}, {"â", 'a'}, {"ã", 'a'}, {"ä", 'a'}, {"é", 'e'}, {"è", 'e'}, {"ê", 'e'},
    {"ë", 'e'}, {"í", 'i'}, {"ì", 'i'}, {"î", 'i'}, {"ï", 'i'}, {"ó", 'o'}, {"ò", 'o'}, {"ô", 'o'},
    {"õ", 'o'}, {"ö", 'o'}, {"ú", 'u'}, {"ù", 'u'}, {"û", 'u'}, {"ü", 'u'}, {"ç", 'c'}, {"ñ", 'n'},
    {"Á", 'A'}, {"À", 'A'}, {"Â", 'A'}, {"Ã", 'A'}, {"Ä", 'A'}, {"É", 'E'}, {"È", 'E'}, {"Ê", 'E'},
    {"Ë", 'E'}, {"Í", 'I'}, {"Ì", 'I'}, {"Î", 'I'}, {"Ï", 'I'}, {"Ó", 'O'}, {"Ò", 'O'}, {"Ô", 'O'},
    {"Õ", 'O'}, {"Ö", 'O'}, {"Ú", 'U'}, {"Ù", 'U'}, {"Û", 'U'}, {"Ü", 'U'}, {"Ç", 'C'}, {"Ñ", 'N'},
};
static_assert(sizeof(Accents) / sizeof(Accents[0]) == 48);

}  // namespace

int AccentedLetter(std::string_view text, std::size_t at, int& length) {
    length = 0;
    if (at >= text.size() || text.size() - at < 2 || text[at] != AccentLead) return 0;
    for (const Accent& accent : Accents) {
        if (accent.bytes[1] == text[at + 1]) {
            length = 2;
            return accent.letter;
        }
    }
    return 0;
}

std::string FoldName(std::string_view name) {
    std::string folded;
    folded.reserve(name.size());
    for (std::size_t at = 0; at < name.size();) {
        int length = 0;
        int letter = AccentedLetter(name, at, length);
        if (length == 0) {
            folded.push_back(name[at]);
            ++at;
        } else {
            folded.push_back(static_cast<char>(letter));
            at += static_cast<std::size_t>(length);
        }
    }
    return folded;
}

std::string FoldLower(std::string_view name) {
    std::string folded = FoldName(name);
    for (char& letter : folded) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return folded;
}

bool FoldsTo(std::string_view name, std::string_view folded) {
    return name == folded || (!IsAscii(name) && FoldName(name) == folded);
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char byte) { return (byte & 0x80) == 0; });
}

std::uint64_t CountCharacters(std::string_view text) {
    return static_cast<std::uint64_t>(std::count_if(
        text.begin(), text.end(), [](char byte) { return StartsCharacter(static_cast<unsigned char>(byte)); }));
}

}  // namespace tavrel::core::script
