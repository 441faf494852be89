// JSON as a tree of values, its reader and its writer. The reader takes texts from outside: any bytes come back as a
// value or as a short reason, within bounds of size, depth and width, and it accepts somewhat more than strict JSON.
// The writer gives strict JSON without white space. A value owns all below it; nothing is shared, nothing is a map.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace tavrel::core {

struct JsonMember;

// Only the part that belongs to `kind` has meaning, the others stay empty. A default-built value is null.
struct Json {
    enum class Kind : std::uint8_t { Null = 0, Boolean = 1, Number = 2, Text = 3, Array = 4, Object = 5 };

    Kind kind = Kind::Null;
    bool boolean = false;
    double number = 0;  // integers too
    std::string text;   // UTF-8 by custom, unchecked
    std::vector<Json> items;
    std::vector<JsonMember> members;  // in the order they were set, each key once

    Json();

    static Json Bool(bool value);
    static Json Number(double value);
    // Beyond 2^53 the nearest double.
    static Json Int(long long value);
    static Json Text(std::string value);
    static Json Array();
    static Json Object();

    // What a lookup does not find is one null value that lives as long as the program, so that lookups can be chained.
    // They are linear: objects and paths of a protocol are short.
    [[nodiscard]] const Json& At(const std::string& key) const;
    [[nodiscard]] const Json& operator[](std::uint64_t index) const;
    // True for a member that is null, too.
    [[nodiscard]] bool Has(const std::string& key) const;

    // The value when it is of the asked kind, else the fallback.
    [[nodiscard]] std::string TextOr(const std::string& fallback) const;
    [[nodiscard]] bool BoolOr(bool fallback) const;
    // Truncated toward zero; what does not fit gives the end of the range on its side, and NaN the fallback.
    [[nodiscard]] long long IntOr(long long fallback) const;
    // A number without a fraction, of a magnitude of at most 2^53.
    [[nodiscard]] bool IsInteger() const;
    // Items of an array, members of an object, 0 for all else.
    [[nodiscard]] std::uint64_t Size() const;

    // Makes this an object first, dropping what it was. A key that is there keeps its place and gets the new value.
    Json& Set(const std::string& key, Json value);
    // Makes this an array first, dropping what it was.
    Json& Add(Json value);
};

struct JsonMember {
    JsonMember() {}  // NOLINT(modernize-use-equals-default): see below
    JsonMember(std::string ownKey, Json ownValue) : key(std::move(ownKey)), value(std::move(ownValue)) {}

    std::string key;
    Json value;
};

// Written out, as the one above is, because a defaulted one would clear every byte first, and a reader makes many.
inline Json::Json() {}  // NOLINT(modernize-use-equals-default)

// False with the reason in `error` and null in `out`; but where only text behind a whole value is wrong, `out` is that
// value.
[[nodiscard]] bool ParseJson(const std::string& text, Json& out, std::string& error);

// Doubles without a fraction come as integers where 64 bits hold them, others with 17 digits; NaN and infinities as 0.
[[nodiscard]] std::string WriteJson(const Json& value);

}  // namespace tavrel::core
