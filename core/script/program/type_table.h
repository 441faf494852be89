// The static types of one compilation, interned: a type is an id into one growing table, and two types are the same
// exactly when their ids are equal. The compiler fills the table; it is part of the finished program.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/index.h"
#include "core/script/program/kinds.h"

namespace tavrel::core::script {

struct TypeInfo;
using TypeId = Index<TypeInfo>;  // into the TypeTable

// Ids of the built-in types equal the values of their kinds.
constexpr TypeId TypeOf(Kind builtIn) {
    return TypeId(static_cast<std::int32_t>(builtIn));
}
inline constexpr TypeId ErrorType = TypeOf(Kind::Unknown);  // already reported; later checks pass over it in silence
inline constexpr TypeId NothingType = TypeOf(Kind::Nothing);
inline constexpr TypeId IntType = TypeOf(Kind::Int);
inline constexpr TypeId RealType = TypeOf(Kind::Real);
inline constexpr TypeId BoolType = TypeOf(Kind::Bool);
inline constexpr TypeId TextType = TypeOf(Kind::Text);
inline constexpr TypeId Vec2Type = TypeOf(Kind::Vec2);
inline constexpr TypeId Vec3Type = TypeOf(Kind::Vec3);
inline constexpr TypeId ColorType = TypeOf(Kind::Color);
inline constexpr TypeId ObjectType = TypeOf(Kind::Object);
inline constexpr TypeId BodyType = TypeOf(Kind::Body);
inline constexpr TypeId SoundType = TypeOf(Kind::Sound);

// One entry; never changed, never removed.
struct TypeInfo {
    Kind kind = Kind::Unknown;
    TypeId element = ErrorType;  // element of a list, value of a dictionary
    TypeId key = ErrorType;      // key of a dictionary
    std::int32_t index = -1;     // into the program's records or enumerations
    std::int32_t space = -1;     // of a namespace, into the compiler's list
    std::string name;            // empty for lists and dictionaries, whose text Name builds
};

class TypeTable {
public:
    // Opens with the built-in types.
    TypeTable();

    // The entry of an id; an id that is not there reads as the failed type.
    [[nodiscard]] const TypeInfo& At(TypeId id) const;
    [[nodiscard]] Kind KindOf(TypeId id) const { return At(id).kind; }
    [[nodiscard]] std::size_t Size() const { return entries.size(); }

    // Keys of dictionaries and subjects of a switch.
    [[nodiscard]] bool Comparable(TypeId id) const;
    // Types with an order, which sort.
    [[nodiscard]] bool Ordered(TypeId id) const;
    // Types whose values live on the heap.
    [[nodiscard]] bool Reference(TypeId id) const;
    // The text of a type in messages.
    [[nodiscard]] std::string Name(TypeId id) const;

    // The id of a type, created if new. The name takes no part in the match: the first one given stays.
    TypeId List(TypeId element);
    TypeId Dict(TypeId key, TypeId value);
    TypeId Record(std::int32_t index, const std::string& name);
    TypeId Enum(std::int32_t index, const std::string& name);
    TypeId Space(std::int32_t index, const std::string& name);

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

    TypeId Intern(const Key& key, TypeInfo entry, const std::string& name);

    std::vector<TypeInfo> entries;
    std::unordered_map<Key, TypeId, KeyHash> ids;  // of the composite and named entries
};

}  // namespace tavrel::core::script
