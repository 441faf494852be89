// The header is read line by line and only its length is used; a body is read in chunks, so that memory grows with what
// has arrived and not with what the header announced.
#include "script_lsp/transport.h"

#include <algorithm>
#include <new>
#include <optional>
#include <string_view>

namespace tavrel::script_lsp {

namespace {

constexpr std::size_t ChunkBytes = std::size_t{1} << 20U;

// One line of the header without its line end. False when the input ends within it, or when it is too long.
bool ReadLine(std::istream& in, std::string& line) {
    line.clear();
    char letter = 0;
    while (in.get(letter)) {
        if (letter == '\n') {
            while (line.ends_with('\r')) line.pop_back();
            return true;
        }
        if (line.size() == MaxHeaderBytes) return false;
        line += letter;
    }
    return false;
}

bool IsContentLength(std::string_view name) {
    constexpr std::string_view Wanted = "content-length";
    return std::equal(name.begin(), name.end(), Wanted.begin(), Wanted.end(),
                      [](char have, char want) { return have == want || (have >= 'A' && have + ('a' - 'A') == want); });
}

// The number at the start of a header's value, or one above the limit; what follows its digits does not matter.
std::optional<unsigned long long> LengthIn(std::string_view value) {
    value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
    const std::size_t digits = std::min(value.find_first_not_of("0123456789"), value.size());
    if (digits == 0) return std::nullopt;
    unsigned long long length = 0;
    for (const char digit : value.substr(0, digits)) {
        length = std::min(length * 10 + static_cast<unsigned long long>(digit - '0'), MaxBodyBytes + 1);
    }
    return length;
}

// False also when memory ends on the way: a length that it has no room for ends the connection like a broken header.
bool ReadBody(std::istream& in, std::size_t length, std::string& body) {
    try {
        while (body.size() < length) {
            const std::size_t before = body.size();
            const std::size_t chunk = std::min(length - before, ChunkBytes);
            body.resize(before + chunk);
            if (!in.read(body.data() + before, static_cast<std::streamsize>(chunk))) return false;
        }
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

}  // namespace

bool ReadMessage(std::istream& in, std::string& body) {
    body.clear();
    std::optional<unsigned long long> length;
    for (std::string line; ReadLine(in, line);) {
        if (line.empty()) {
            return length && *length <= MaxBodyBytes && ReadBody(in, static_cast<std::size_t>(*length), body);
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos) return false;
        const std::string_view header = line;
        if (!IsContentLength(header.substr(0, colon))) continue;
        length = LengthIn(header.substr(colon + 1));
        if (!length) return false;
    }
    return false;
}

std::string Frame(const std::string& body) {
    return "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

}  // namespace tavrel::script_lsp
