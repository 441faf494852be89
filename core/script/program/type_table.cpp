#include "core/script/program/type_table.h"

#include <string_view>
#include <utility>

namespace tavrel::core::script {

namespace {

// By number of the kind; empty for a kind that is built from other types.
constexpr std::string_view BuiltInWords[] = {
#define TAVREL_KIND(name, number, word) word,
#include "core/script/program/kinds.def"
};

// TypeOf gives an entry's position, so the built-in types have to be the first of the table, one for each number.
#define TAVREL_KIND(name, number, word) \
    static_assert(BuiltInWords[number] == word && BuiltInWords[number].empty() == (number > SoundType.value));
#include "core/script/program/kinds.def"

}  // namespace

TypeTable::TypeTable() {
    for (std::size_t number = 0; number <= SoundType.Number(); ++number) {
        entries.push_back({.kind = static_cast<Kind>(number), .name = std::string(BuiltInWords[number])});
    }
}

const TypeInfo& TypeTable::At(TypeId id) const {
    bool known = id && id.Number() < entries.size();
    return entries[known ? id.Number() : 0];
}

bool TypeTable::Comparable(TypeId id) const {
    switch (KindOf(id)) {
        case Kind::Int:
        case Kind::Real:
        case Kind::Bool:
        case Kind::Text:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound:
        case Kind::Enum: return true;
        default: return false;
    }
}

bool TypeTable::Ordered(TypeId id) const {
    Kind kind = KindOf(id);
    return kind == Kind::Int || kind == Kind::Real || kind == Kind::Text;
}

bool TypeTable::Reference(TypeId id) const {
    Kind kind = KindOf(id);
    return kind == Kind::Text || kind == Kind::List || kind == Kind::Dict || kind == Kind::Record;
}

std::string TypeTable::Name(TypeId id) const {
    std::string name;
    // A key is comparable and so has a plain name: only the element nests, and a loop follows it.
    const TypeInfo* type = &At(id);
    while (type->kind == Kind::List || type->kind == Kind::Dict) {
        name += type->kind == Kind::List ? "lista de " : "dicionario de " + At(type->key).name + " para ";
        type = &At(type->element);
    }
    return name + type->name;
}

std::size_t TypeTable::KeyHash::operator()(const Key& key) const {
    std::uint64_t bits = static_cast<std::uint64_t>(static_cast<std::uint32_t>(key.first)) << 32 |
                         static_cast<std::uint32_t>(key.second);
    bits = (bits ^ static_cast<std::uint64_t>(key.kind) << 59) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(bits ^ bits >> 32);
}

// The name may be as long as a script, and one type is asked for with every function: only a new entry copies it.
TypeId TypeTable::Intern(const Key& key, TypeInfo entry, const std::string& name) {
    auto [place, isNew] = ids.try_emplace(key, TypeId(entries.size()));
    if (isNew) {
        entry.name = name;
        entries.push_back(std::move(entry));
    }
    return place->second;
}

TypeId TypeTable::List(TypeId element) {
    return Intern({Kind::List, 0, element.value}, {.kind = Kind::List, .element = element, .name = {}}, {});
}

TypeId TypeTable::Dict(TypeId key, TypeId value) {
    return Intern({Kind::Dict, key.value, value.value}, {.kind = Kind::Dict, .element = value, .key = key, .name = {}},
                  {});
}

TypeId TypeTable::Record(std::int32_t index, const std::string& name) {
    return Intern({Kind::Record, index, 0}, {.kind = Kind::Record, .index = index, .name = {}}, name);
}

TypeId TypeTable::Enum(std::int32_t index, const std::string& name) {
    return Intern({Kind::Enum, index, 0}, {.kind = Kind::Enum, .index = index, .name = {}}, name);
}

TypeId TypeTable::Space(std::int32_t index, const std::string& name) {
    return Intern({Kind::Space, index, 0}, {.kind = Kind::Space, .space = index, .name = {}}, name);
}

}  // namespace tavrel::core::script
