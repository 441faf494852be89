// The static types of one compilation, interned: a type is an id into one growing table, and two types are the same
// exactly when their ids are equal. The compiler fills the table; it is part of the finished program.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/script/program/kinds.h"

namespace tavrel::core::script {

// One entry; never changed, never removed.
struct TypeInfo {
    Kind kind = Kind::Unknown;
    std::int32_t element = 0;  // element of a list, value of a dictionary
    std::int32_t key = 0;      // key of a dictionary
    std::int32_t index = -1;   // into the program's records or enumerations
    std::int32_t space = -1;   // of a namespace, into the compiler's list
    std::string name;          // empty for lists and dictionaries, whose text Name builds
};

// Ids of the built-in types equal the values of their kinds.
inline constexpr std::int32_t FailedType = 0;  // already reported; later checks pass over it in silence
inline constexpr std::int32_t NothingType = 1;
inline constexpr std::int32_t IntType = 2;
inline constexpr std::int32_t RealType = 3;
inline constexpr std::int32_t BoolType = 4;
inline constexpr std::int32_t TextType = 5;
inline constexpr std::int32_t Vec2Type = 6;
inline constexpr std::int32_t Vec3Type = 7;
inline constexpr std::int32_t ColorType = 8;
inline constexpr std::int32_t ObjectType = 9;
inline constexpr std::int32_t BodyType = 10;
inline constexpr std::int32_t SoundType = 11;

class TypeTable {
public:
    // Opens with the built-in types.
    TypeTable();

    // The entry of an id; an id that is not there reads as the failed type.
    [[nodiscard]] const TypeInfo& At(std::int32_t id) const;
    [[nodiscard]] Kind KindOf(std::int32_t id) const { return At(id).kind; }
    [[nodiscard]] std::size_t Size() const { return entries.size(); }

    // Keys of dictionaries and subjects of a switch.
    [[nodiscard]] bool Comparable(std::int32_t id) const;
    // Types with an order, which sort.
    [[nodiscard]] bool Ordered(std::int32_t id) const;
    // Types whose values live on the heap.
    [[nodiscard]] bool Reference(std::int32_t id) const;
    // The text of a type in messages.
    [[nodiscard]] std::string Name(std::int32_t id) const;

    // The id of a type, created if new. The name takes no part in the match: the first one given stays.
    std::int32_t List(std::int32_t element);
    std::int32_t Dict(std::int32_t key, std::int32_t value);
    std::int32_t Record(std::int32_t index, const std::string& name);
    std::int32_t Enum(std::int32_t index, const std::string& name);
    std::int32_t Space(std::int32_t index, const std::string& name);

private:
    // What tells types of one kind apart: `first` is the key, index or space; `second` the element.
    struct Key {
        Kind kind;
        std::int32_t first;
        std::int32_t second;
        bool operator==(const Key&) const = default;
    };
    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    std::int32_t Intern(const Key& key, TypeInfo entry, const std::string& name);

    std::vector<TypeInfo> entries;
    std::unordered_map<Key, std::int32_t, KeyHash> ids;  // of the composite and named entries
};

}  // namespace tavrel::core::script
