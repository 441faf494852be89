// Each operation puts one record together: its tag, then its payload, then, where fields are kept, the same value as a
// person reads it. All multi-byte numbers are taken apart by shifts, so the order of bytes in memory plays no part. A
// field is only put into words when it is kept, since that takes ten times as long as the record.
#include "core/canonical_writer.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>

#include "core/float_text.h"

namespace tavrel::core {

namespace {

constexpr std::size_t MaxElementName = 95;
// Taking less at a time would cost a call for a few values, taking more would no longer stay in the cache.
constexpr std::size_t StretchSize = std::size_t{1} << 16U;

// Tests of the pattern hold whatever the compiler believes of NaN.
bool IsNan(std::uint32_t bits) {
    return (bits & 0x7FFF'FFFF) > 0x7F80'0000;
}

bool IsNan(std::uint64_t bits) {
    return (bits & 0x7FFF'FFFF'FFFF'FFFF) > 0x7FF0'0000'0000'0000;
}

// "1.5 (0xcp-3)": 34 characters at most with 9 digits for a float, 51 with 17 for a double.
std::string ListedFloat(double value, int precision) {
    std::string text;
    AppendDecimal(text, value, precision);
    text += " (";
    AppendHexadecimal(text, value);
    text += ')';
    return text;
}

std::uint64_t Fnv1a(std::string_view text) {
    std::uint64_t hash = 14695981039346656037U;
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211U;
    return hash;
}

std::string ElementName(std::string_view list, std::size_t index) {
    std::string name(list);
    name += '[';
    name += std::to_string(index);
    name += ']';
    return name;
}

}  // namespace

CanonicalWriter::CanonicalWriter(bool withFields) : keepFields(withFields) {}

void CanonicalWriter::U8(const char* name, std::uint8_t value) {
    Unsigned(name, '1', value, 1);
}

void CanonicalWriter::U32(const char* name, std::uint32_t value) {
    Unsigned(name, '4', value, 4);
}

void CanonicalWriter::U64(const char* name, std::uint64_t value) {
    Unsigned(name, '8', value, 8);
}

void CanonicalWriter::I32(const char* name, std::int32_t value) {
    Signed(name, 'i', value, static_cast<std::uint32_t>(value), 4);
}

void CanonicalWriter::I64(const char* name, std::int64_t value) {
    Signed(name, 'I', value, static_cast<std::uint64_t>(value), 8);
}

void CanonicalWriter::Bool(const char* name, bool value) {
    Put('b', value ? 1 : 0, 1);
    if (keepFields) Record(name, 'b', value ? 1 : 0, value ? "true" : "false");
}

void CanonicalWriter::Float(const char* name, float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    Put('f', bits, 4);
    if (IsNan(bits)) RefuseNan(name);
    if (keepFields) Record(name, 'f', bits, ListedFloat(value, 9));
}

void CanonicalWriter::Double(const char* name, double value) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    Put('d', bits, 8);
    if (IsNan(bits)) RefuseNan(name);
    if (keepFields) Record(name, 'd', bits, ListedFloat(value, 17));
}

void CanonicalWriter::Floats(const char* name, std::span<const float> values) {
    Put('F', static_cast<std::uint32_t>(values.size()), 4);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const auto bits = std::bit_cast<std::uint32_t>(values[i]);
        if (IsNan(bits)) RefuseNan(ElementName(name, i));
        Raw(bits, 4);
        if (!keepFields) continue;
        const std::string element = ElementName(name, i).substr(0, MaxElementName);
        Record(element.c_str(), 'f', bits, ListedFloat(values[i], 9));
    }
}

void CanonicalWriter::Text(const char* name, std::string_view value) {
    PutText('s', value);
    if (keepFields) Record(name, 's', Fnv1a(value), std::string(value));
}

void CanonicalWriter::Entity(std::uint64_t id) {
    entity = id;
    hasEntity = true;
    Put('E', id, 8);
}

void CanonicalWriter::Section(std::string_view name) {
    const std::uint64_t here = StreamSize();
    if (!sections.empty()) sections.back().end = here;
    sections.push_back({std::string(name), here, here});
    entity = 0;
    hasEntity = false;
    PutText('S', name);
}

// Every record begins with its tag, so bytes are given away here, between two records.
void CanonicalWriter::Tag(char tag) {
    if (bytes.size() >= StretchSize && takeBytes) GiveBytes();
    bytes.push_back(static_cast<std::uint8_t>(tag));
}

void CanonicalWriter::Raw(std::uint64_t value, int count) {
    std::array<std::uint8_t, 8> low;
    for (std::size_t i = 0; i < low.size(); ++i) low[i] = static_cast<std::uint8_t>(value >> (8 * i));
    bytes.insert(bytes.end(), low.begin(), low.begin() + std::clamp(count, 0, 8));
}

std::vector<std::pair<std::string, Digest>> CanonicalWriter::SectionDigests() const {
    std::vector<std::pair<std::string, Digest>> digests;
    if (taken > 0) return digests;
    digests.reserve(sections.size());
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const std::uint64_t start = sections[i].start;
        const std::uint64_t end = i + 1 < sections.size() ? sections[i + 1].start : bytes.size();
        digests.emplace_back(sections[i].name, HashSha256(bytes.data() + start, end - start));
    }
    return digests;
}

void CanonicalWriter::GiveBytes() {
    takeBytes(bytes);
    taken += bytes.size();
    bytes.clear();
}

void CanonicalWriter::Put(char tag, std::uint64_t value, int count) {
    Tag(tag);
    Raw(value, count);
}

void CanonicalWriter::PutText(char tag, std::string_view text) {
    Put(tag, static_cast<std::uint32_t>(text.size()), 4);
    bytes.insert(bytes.end(), text.begin(), text.end());
}

void CanonicalWriter::Unsigned(const char* name, char tag, std::uint64_t value, int count) {
    Put(tag, value, count);
    if (keepFields) Record(name, 'u', value, std::to_string(value));
}

void CanonicalWriter::Signed(const char* name, char tag, std::int64_t value, std::uint64_t bits, int count) {
    Put(tag, bits, count);
    if (keepFields) Record(name, 'i', bits, std::to_string(value));
}

void CanonicalWriter::RefuseNan(std::string_view name) {
    if (!failure.empty()) return;
    failure = "NaN no estado deterministico: ";
    if (!sections.empty()) failure += sections.back().name + '/';
    failure += name;
}

// Callers ask for fields only when they are kept, so that their text costs nothing otherwise.
void CanonicalWriter::Record(const char* name, char kind, std::uint64_t bits, std::string text) {
    assert(keepFields);
    CanonicalField field{
        sections.empty() ? std::string() : sections.back().name, entity, hasEntity, name, kind, bits, std::move(text)};
    if (takeField) return takeField(field);
    fields.push_back(std::move(field));
}

}  // namespace tavrel::core
