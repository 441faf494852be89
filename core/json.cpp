// What a JSON value answers and how it is put together. Members are searched from the front: the objects of a protocol
// are short, and a table beside them would cost more than it saves. A lookup that finds nothing refers to one constant
// null value, so no caller has to ask before it goes a step further down.
#include "core/json.h"

#include <limits>
#include <utility>

namespace tavrel::core {

namespace {

const Json Nothing;

// 2^63: the first double above the signed 64-bit range, and its negative the least one inside.
constexpr double IntegerEnd = 9223372036854775808.0;

// The index of the member, or their count when the key is not among them.
std::size_t Find(const std::vector<JsonMember>& members, const std::string& key) {
    std::size_t place = 0;
    while (place < members.size() && members[place].key != key) ++place;
    return place;
}

}  // namespace

Json Json::Bool(bool value) {
    Json json;
    json.kind = Kind::Boolean;
    json.boolean = value;
    return json;
}

Json Json::Number(double value) {
    Json json;
    json.kind = Kind::Number;
    json.number = value;
    return json;
}

Json Json::Int(long long value) {
    return Number(static_cast<double>(value));
}

Json Json::Text(std::string value) {
    Json json;
    json.kind = Kind::Text;
    json.text = std::move(value);
    return json;
}

Json Json::Array() {
    Json json;
    json.kind = Kind::Array;
    return json;
}

Json Json::Object() {
    Json json;
    json.kind = Kind::Object;
    return json;
}

const Json& Json::At(const std::string& key) const {
    const std::size_t place = Find(members, key);
    return place < members.size() ? members[place].value : Nothing;
}

const Json& Json::operator[](std::uint64_t index) const {
    return index < items.size() ? items[static_cast<std::size_t>(index)] : Nothing;
}

bool Json::Has(const std::string& key) const {
    return Find(members, key) < members.size();
}

std::string Json::TextOr(const std::string& fallback) const {
    return kind == Kind::Text ? text : fallback;
}

bool Json::BoolOr(bool fallback) const {
    return kind == Kind::Boolean ? boolean : fallback;
}

long long Json::IntOr(long long fallback) const {
    if (kind != Kind::Number) return fallback;
    if (number >= IntegerEnd) return std::numeric_limits<long long>::max();
    if (number < -IntegerEnd) return std::numeric_limits<long long>::min();
    return number == number ? static_cast<long long>(number) : fallback;
}

bool Json::IsInteger() const {
    constexpr double MaxExact = 9007199254740992;
    if (kind != Kind::Number || !(number >= -MaxExact && number <= MaxExact)) return false;
    return static_cast<double>(static_cast<long long>(number)) == number;
}

std::uint64_t Json::Size() const {
    return kind == Kind::Array ? items.size() : members.size();
}

Json& Json::Set(const std::string& key, Json value) {
    if (kind != Kind::Object) *this = Object();
    const std::size_t place = Find(members, key);
    if (place == members.size()) members.emplace_back(key, Json());
    return members[place].value = std::move(value);
}

Json& Json::Add(Json value) {
    if (kind != Kind::Array) *this = Array();
    return items.emplace_back(std::move(value));
}

}  // namespace tavrel::core
