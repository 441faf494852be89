// A deterministic state as one canonical stream of bytes, and beside it a list of named fields for people. Values come
// in one call each; two runs are equal when their streams are, byte for byte. The stream has one encoding per type:
// a tag of one byte, then little-endian integers or bit patterns as they are, without padding. It holds no field names,
// so renaming a field keeps the digest and reordering fields changes it. The writer owns all that it holds, is filled
// once and read after, and refuses nothing midway: read `failure` before anything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "core/sha256.h"

namespace tavrel::core {

// A stretch of the stream, from its own "S" record up to the next one.
struct CanonicalSection {
    std::string name;
    std::uint64_t start = 0;
    std::uint64_t end = 0;  // the same as `start` while no later section is open
};

// One value of the stream as a person reads it. Never hashed.
struct CanonicalField {
    std::string section;  // empty when none is open
    std::uint64_t entity = 0;
    bool hasEntity = false;
    std::string name;
    char kind = 0;           // 'u', 'i', 'b', 'f', 'd' or 's'
    std::uint64_t bits = 0;  // the value's pattern; for a text the FNV-1a hash of its bytes
    std::string text;
};

class CanonicalWriter {
public:
    // Without `keepFields` only the stream is built.
    explicit CanonicalWriter(bool keepFields);

    // Each value goes to the stream first, then to the fields, so that fields never bear on the stream.
    void U8(const char* name, std::uint8_t value);
    void U32(const char* name, std::uint32_t value);
    void U64(const char* name, std::uint64_t value);
    void I32(const char* name, std::int32_t value);
    void I64(const char* name, std::int64_t value);
    void Bool(const char* name, bool value);

    // Patterns are not normalised: both zeros and the infinities pass. The first NaN sets `failure`.
    void Float(const char* name, float value);
    void Double(const char* name, double value);

    // One record of many elements, and one field per element: "name[0]", "name[1]" and so on.
    void Floats(const char* name, std::span<const float> values);

    void Text(const char* name, std::string_view value);

    // The entity that the next fields belong to, up to the next Section or Entity.
    void Entity(std::uint64_t id);

    // Ends the open section and its entity, and opens another.
    void Section(std::string_view name);

    // The primitives: one byte, and the `count` low bytes of `value` (at most 8), least significant first. No field.
    void Tag(char tag);
    void Raw(std::uint64_t value, int count);

    // Name and digest of each section, in order. Bytes before the first section belong to none. None when stretches of
    // the stream were taken.
    [[nodiscard]] std::vector<std::pair<std::string, Digest>> SectionDigests() const;

    bool keepFields;
    std::vector<std::uint8_t> bytes;
    // When set, takes the stream in stretches of whole records, in order: that of a large state fills gigabytes. What
    // it took is gone from `bytes`, and what is left there at the end is the last stretch.
    std::function<void(std::span<const std::uint8_t>)> takeBytes;
    std::vector<CanonicalSection> sections;
    std::vector<CanonicalField> fields;  // in the order written
    // When set, takes each field at once in place of `fields`: those of a large state fill gigabytes.
    std::function<void(const CanonicalField&)> takeField;
    std::string failure;  // why the stream has no meaning, or empty; others may refuse the state here too
    std::uint64_t entity = 0;
    bool hasEntity = false;

private:
    [[nodiscard]] std::uint64_t StreamSize() const { return taken + bytes.size(); }
    void GiveBytes();
    void Put(char tag, std::uint64_t value, int count);
    void PutText(char tag, std::string_view text);
    void Unsigned(const char* name, char tag, std::uint64_t value, int count);
    void Signed(const char* name, char tag, std::int64_t value, std::uint64_t bits, int count);
    void RefuseNan(std::string_view name);
    void Record(const char* name, char kind, std::uint64_t bits, std::string text);

    std::uint64_t taken = 0;  // bytes of the stream that are gone from `bytes`
};

}  // namespace tavrel::core
