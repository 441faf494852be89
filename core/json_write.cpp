// Appends a value and all below it to one text, without white space. It recurses with the value: values come from the
// reader, which bounds their depth, or from code that builds a few levels. Bytes above 127 pass as they are.
#include <array>
#include <charconv>
#include <cstdint>

#include "core/float_text.h"
#include "core/json.h"
#include "core/json_scan.h"

namespace tavrel::core {

namespace {

void WriteEscape(char byte, std::string& out) {
    switch (byte) {
        case '"': out += "\\\""; return;
        case '\\': out += "\\\\"; return;
        case '\b': out += "\\b"; return;
        case '\t': out += "\\t"; return;
        case '\n': out += "\\n"; return;
        case '\f': out += "\\f"; return;
        case '\r': out += "\\r"; return;
        default: break;
    }
    out += byte < 16 ? "\\u000" : "\\u001";
    out += "0123456789abcdef"[byte % 16];
}

void WriteText(const std::string& text, std::string& out) {
    out += '"';
    const char* at = text.data();
    const char* const end = at + text.size();
    while (true) {
        const char* const stop = SkipPlain(at, end);
        out.append(at, stop);
        if (stop == end) break;
        WriteEscape(*stop, out);
        at = stop + 1;
    }
    out += '"';
}

void WriteInteger(std::int64_t value, std::string& out) {
    std::array<char, 20> digits;  // as many as the least one takes with its sign
    out.append(digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr);
}

void WriteNumber(double value, std::string& out) {
    constexpr double IntegerEnd = 9223372036854775808.0;  // 2^63
    if (value >= -IntegerEnd && value < IntegerEnd) {
        const auto integer = static_cast<std::int64_t>(value);
        if (static_cast<double>(integer) == value) return WriteInteger(integer, out);
    } else if (value - value != 0) {  // an infinity or NaN
        out += '0';
        return;
    }
    AppendDecimal(out, value, 17);
}

void Write(const Json& value, std::string& out) {
    switch (value.kind) {
        case Json::Kind::Null: out += "null"; return;
        case Json::Kind::Boolean: out += value.boolean ? "true" : "false"; return;
        case Json::Kind::Number: return WriteNumber(value.number, out);
        case Json::Kind::Text: return WriteText(value.text, out);
        case Json::Kind::Array: {
            char mark = '[';
            for (const Json& item : value.items) {
                out += mark;
                Write(item, out);
                mark = ',';
            }
            out += value.items.empty() ? "[]" : "]";
            return;
        }
        case Json::Kind::Object: {
            char mark = '{';
            for (const auto& [key, member] : value.members) {
                out += mark;
                WriteText(key, out);
                out += ':';
                Write(member, out);
                mark = ',';
            }
            out += value.members.empty() ? "{}" : "}";
            return;
        }
    }
}

}  // namespace

std::string WriteJson(const Json& value) {
    std::string out;
    Write(value, out);
    return out;
}

}  // namespace tavrel::core
