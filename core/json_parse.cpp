// A reader by recursive descent over bytes from outside. Depth, width and size are bounded, so that no text can exhaust
// the stack or the memory. It is lenient where that costs nothing (a sign or a point at the start of a number, an
// exponent without digits, any bytes above 127); which texts it takes and which reasons it gives are relied upon, so
// that a change here is a change of what editors get. Plain stretches of texts are copied whole, and the room that the
// last container of a depth needed is taken at once for the next.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "core/json.h"
#include "core/json_members.h"
#include "core/json_scan.h"

namespace tavrel::core {

namespace {

constexpr std::size_t MaxBytes = 0x1000000;
constexpr std::size_t MaxMembers = 65536;
constexpr std::size_t MaxItems = 8388608;  // more than fit into MaxBytes today
constexpr std::size_t MaxDepth = 64;
constexpr std::size_t MaxUsual = 8;  // elements that a container gets room for unseen
constexpr std::size_t MaxUnunited =
    4 * MaxMembers;  // members, repeated ones among them, that an open object may pile up

bool IsDigit(char byte) {
    return byte >= '0' && byte <= '9';
}

int HexDigit(char byte) {
    if (IsDigit(byte)) return byte - '0';
    const char lower = static_cast<char>(byte | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

void AppendUtf8(std::string& out, unsigned code) {
    const auto follow = [&](unsigned shift) { out += static_cast<char>(0x80 | ((code >> shift) & 0x3F)); };
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        follow(0);
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | (code >> 12));
        follow(6);
        follow(0);
    } else {
        out += static_cast<char>(0xF0 | (code >> 18));
        follow(12);
        follow(6);
        follow(0);
    }
}

// Digits and at most a point, with no care for the last bits.
double Accumulate(const char* at) {
    double value = 0;
    for (; IsDigit(*at); ++at) value = value * 10 + (*at - '0');
    if (*at != '.') return value;
    double weight = 0.1;
    for (++at; IsDigit(*at); ++at, weight *= 0.1) value += (*at - '0') * weight;
    return value;
}

// The common case, with the same result sooner: up to 15 digits around a point, or 16 without one. There at most one of
// the two operations rounds, so that the result is the nearest double.
bool ShortDecimal(std::string_view text, double& out) {
    constexpr std::array<double, 16> Powers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                               1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (text.size() > Powers.size()) return false;
    std::int64_t value = 0;
    std::size_t fraction = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '.') {
            fraction = text.size() - 1 - i;
        } else if (IsDigit(text[i])) {
            value = value * 10 + (text[i] - '0');
        } else {
            return false;
        }
    }
    out = static_cast<double>(value) / Powers[fraction];
    return true;
}

// The value of a number without its sign. False when it is too large for a double, or so small that it would be 0.
bool Magnitude(std::string_view text, double& out) {
    if (ShortDecimal(text, out)) return true;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, out);
    if (result.ec == std::errc::result_out_of_range) return false;
    if (result.ptr != end) out = Accumulate(text.data());  // an exponent without digits counts for nothing
    return true;
}

// Reads one document from front to back. Every operation that can fail gives false and leaves the reason behind. The
// text ends in a NUL that is not part of it, so that looking at a byte needs no test for the end.
class Reader {
public:
    explicit Reader(const std::string& text) : at(text.data()), end(at + text.size()) {
        if (text.starts_with("\xEF\xBB\xBF")) at += 3;
    }

    bool Document(Json& out) {
        if (!Value(out, 0)) {
            out = Json();
            return false;
        }
        SkipSpace();
        return at == end || Fail("sobrou texto depois do documento");
    }

    const char* Error() const { return error; }

private:
    bool Fail(const char* reason) {
        error = reason;
        return false;
    }

    void SkipSpace() {
        while (*at == ' ' || *at == '\n' || *at == '\r' || *at == '\t') ++at;
    }

    void SkipDigits() {
        while (IsDigit(*at)) ++at;
    }

    bool Take(char byte) {
        if (*at != byte) return false;
        ++at;
        return true;
    }

    bool Take(std::string_view word) {
        if (!std::string_view(at, static_cast<std::size_t>(end - at)).starts_with(word)) return false;
        at += word.size();
        return true;
    }

    // All of these read into a value that is null.
    bool Value(Json& out, std::size_t depth);
    bool Literal(Json& out);
    bool Object(Json& out, std::size_t depth);
    bool Unite(std::vector<JsonMember>& members);
    bool Member(JsonMember& out, std::size_t depth);
    bool Array(Json& out, std::size_t depth);
    bool Number(Json& out);
    bool String(std::string& out);
    bool Escape(std::string& out);
    bool Unicode(std::string& out);
    bool HexDigits(unsigned& out);

    const char* at;
    const char* const end;
    const char* error = "JSON invalido";
    // How much the last container at each depth held. The next one gets that room at once: lists of alike things are
    // what texts from programs are made of.
    std::array<std::size_t, MaxDepth + 1> usualMembers{};
    std::array<std::size_t, MaxDepth + 1> usualItems{};
};

bool Reader::Value(Json& out, std::size_t depth) {
    if (depth > MaxDepth) return Fail("JSON encaixado demais");
    SkipSpace();
    if (at == end) return Fail("documento vazio");
    switch (*at) {
        case '{': return Object(out, depth);
        case '[': return Array(out, depth);
        case '"': out.kind = Json::Kind::Text; return String(out.text);
        case 't':
        case 'f':
        case 'n': return Literal(out) || Number(out);
        default: return Number(out);
    }
}

bool Reader::Literal(Json& out) {
    const bool yes = Take("true");
    if (yes || Take("false")) {
        out.kind = Json::Kind::Boolean;
        out.boolean = yes;
        return true;
    }
    return Take("null");
}

bool Reader::Object(Json& out, std::size_t depth) {
    ++at;
    out.kind = Json::Kind::Object;
    SkipSpace();
    if (Take('}')) return true;
    std::vector<JsonMember>& members = out.members;
    members.reserve(usualMembers[depth]);
    do {
        if (!Member(members.emplace_back(), depth)) {
            members.pop_back();
            Unite(members);  // too many before the one that failed are the earlier fault
            return false;
        }
        if (members.size() == MaxUnunited && !Unite(members)) return false;
        SkipSpace();
    } while (Take(','));
    if (!Unite(members)) return false;
    usualMembers[depth] = std::min(members.size(), MaxUsual);
    return Take('}') || Fail("esperava \",\" ou \"}\"");
}

bool Reader::Unite(std::vector<JsonMember>& members) {
    return UniteMembers(members, MaxMembers) || Fail("objeto com campos demais");
}

bool Reader::Member(JsonMember& out, std::size_t depth) {
    SkipSpace();
    if (*at != '"') return Fail("esperava um texto");
    if (!String(out.key)) return false;
    SkipSpace();
    if (!Take(':')) return Fail("esperava \":\"");
    return Value(out.value, depth + 1);
}

bool Reader::Array(Json& out, std::size_t depth) {
    ++at;
    out.kind = Json::Kind::Array;
    SkipSpace();
    if (Take(']')) return true;
    out.items.reserve(usualItems[depth]);
    do {
        if (!Value(out.items.emplace_back(), depth + 1)) return false;
        if (out.items.size() > MaxItems) return Fail("lista com itens demais");
        SkipSpace();
    } while (Take(','));
    usualItems[depth] = std::min(out.items.size(), MaxUsual);
    return Take(']') || Fail("esperava \",\" ou \"]\"");
}

bool Reader::Number(Json& out) {
    const bool negative = *at == '-';
    if (negative || *at == '+') ++at;
    const char* const start = at;
    SkipDigits();
    auto digits = at - start;
    if (Take('.')) {
        const char* const fraction = at;
        SkipDigits();
        digits += at - fraction;
    }
    if (digits == 0) return Fail("esperava um numero");
    if (Take('e') || Take('E')) {
        if (*at == '+' || *at == '-') ++at;
        SkipDigits();
    }
    double value = 0;
    if (!Magnitude({start, at}, value)) return Fail("numero fora da faixa");
    out.kind = Json::Kind::Number;
    out.number = negative ? -value : value;
    return true;
}

bool Reader::String(std::string& out) {
    ++at;
    while (true) {
        const char* const stop = SkipPlain(at, end);
        out.append(at, stop);
        at = stop;
        if (at == end) return Fail("texto sem fechar");
        if (Take('"')) return true;
        if (!Take('\\')) return Fail("byte de controle dentro de um texto");
        if (!Escape(out)) return false;
    }
}

bool Reader::Escape(std::string& out) {
    if (at == end) return Fail("texto sem fechar");
    switch (*at++) {
        case '"': out += '"'; return true;
        case '\\': out += '\\'; return true;
        case '/': out += '/'; return true;
        case 'b': out += '\b'; return true;
        case 'f': out += '\f'; return true;
        case 'n': out += '\n'; return true;
        case 'r': out += '\r'; return true;
        case 't': out += '\t'; return true;
        case 'u': return Unicode(out);
        default: return Fail("escape desconhecido");
    }
}

bool Reader::Unicode(std::string& out) {
    unsigned code = 0;
    if (!HexDigits(code)) return Fail("escape \\u incompleto");
    if (code >= 0xD800 && code <= 0xDBFF) {
        if (!Take("\\u")) return Fail("par substituto sem a segunda metade");
        unsigned low = 0;
        if (!HexDigits(low) || low < 0xDC00 || low > 0xDFFF) return Fail("par substituto invalido");
        code = 0x10000 + (code - 0xD800) * 0x400 + (low - 0xDC00);
    }
    AppendUtf8(out, code);
    return true;
}

// Four of them, of either case.
bool Reader::HexDigits(unsigned& out) {
    for (int i = 0; i < 4; ++i) {
        const int digit = HexDigit(*at);
        if (digit < 0) return false;
        out = out * 16 + static_cast<unsigned>(digit);
        ++at;
    }
    return true;
}

}  // namespace

bool ParseJson(const std::string& text, Json& out, std::string& error) {
    error.clear();
    out = Json();
    if (text.size() > MaxBytes) {
        error = "documento JSON grande demais";
        return false;
    }
    Reader reader(text);
    if (reader.Document(out)) return true;
    error = reader.Error();
    return false;
}

}  // namespace tavrel::core
