// URIs and paths, byte by byte: an escape stands for one byte, so text beyond ASCII travels as the bytes of its UTF-8.
#include "script_lsp/uri.h"

#include <cstddef>
#include <string_view>

namespace tavrel::script_lsp {

namespace {

constexpr std::string_view Scheme = "file://";

bool IsLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z');
}

// Stands as it is in a URI; "-", ".", "/" and the digits are neighbours in ASCII.
bool IsPlain(char letter) {
    return IsLetter(letter) || (letter >= '-' && letter <= '9') || letter == '_' || letter == '~';
}

// The value of a hexadecimal digit, -1 for anything else.
int DigitValue(char letter) {
    if (letter >= '0' && letter <= '9') return letter - '0';
    if (letter >= 'a' && letter <= 'f') return letter - 'a' + 10;
    if (letter >= 'A' && letter <= 'F') return letter - 'A' + 10;
    return -1;
}

// The byte that an escape at `place` stands for, -1 where there is none.
int EscapeAt(std::string_view text, std::size_t place) {
    if (text[place] != '%' || place + 2 >= text.size()) return -1;
    const int high = DigitValue(text[place + 1]);
    const int low = DigitValue(text[place + 2]);
    return high < 0 || low < 0 ? -1 : high * 16 + low;
}

}  // namespace

std::string PathFromUri(const std::string& uri) {
    std::string_view rest = uri;
    if (rest.starts_with(Scheme)) rest.remove_prefix(Scheme.size());
    std::string path;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        const int byte = EscapeAt(rest, i);
        path += byte < 0 ? rest[i] : static_cast<char>(byte);
        if (byte >= 0) i += 2;
    }
    const bool drive = path.size() > 2 && path[0] == '/' && IsLetter(path[1]) && path[2] == ':';
    if (drive) path.erase(0, 1);
    return path;
}

std::string UriFromPath(const std::string& path) {
    constexpr std::string_view Digits = "0123456789ABCDEF";
    std::string uri(Scheme);
    if (!path.empty() && path[0] != '/' && path[0] != '\\') uri += '/';
    for (const char letter : path) {
        const auto byte = static_cast<unsigned char>(letter);
        if (letter == '\\') {
            uri += '/';
        } else if (IsPlain(letter)) {
            uri += letter;
        } else {
            uri += {'%', Digits[byte / 16], Digits[byte % 16]};
        }
    }
    return uri;
}

std::string FolderOf(const std::string& path) {
    return path.substr(0, path.rfind('/') + 1);
}

}  // namespace tavrel::script_lsp
