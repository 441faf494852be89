// Interned types. A composed type is found by a key of its kind and its one or two distinguishing numbers in a hash
// table, so that asking for it again costs the same however many there are. What a kind can do is a column of
// kinds.def.
#include "core/script/program/type_table.h"

#include <iterator>
#include <utility>

namespace tavrel::core::script {

namespace {

// What kinds.def says of a kind.
struct KindRow {
    Kind kind;
    const char* word;  // empty for a kind that is built from other types
    bool comparable;
    bool ordered;
    bool reference;
};

constexpr KindRow Rows[] = {
#define TAVREL_KIND(name, number, word, comparable, ordered, reference) \
    {Kind::name, word, comparable, ordered, reference},
#include "core/script/program/kinds.def"
};

// The row of a kind is found by its number, and TypeOf takes that for the id: so every row stands in the place of its
// number, the built-in ones up to SoundType first.
constexpr bool RowsAreInOrder() {
    for (std::size_t number = 0; number < std::size(Rows); ++number) {
        const bool isBuiltIn = *Rows[number].word != '\0';
        if (Rows[number].kind != static_cast<Kind>(number) || isBuiltIn != (number <= SoundType.Number())) return false;
    }
    return true;
}
static_assert(RowsAreInOrder());

constexpr const KindRow& RowOf(Kind kind) {
    return Rows[static_cast<std::size_t>(kind)];
}

}  // namespace

TypeTable::TypeTable() {
    for (const KindRow& row : Rows) {
        if (*row.word != '\0') entries.push_back({.kind = row.kind, .name = row.word});
    }
}

const TypeInfo& TypeTable::At(TypeId id) const {
    bool known = id && id.Number() < entries.size();
    return entries[known ? id.Number() : 0];
}

bool TypeTable::Comparable(TypeId id) const {
    return RowOf(KindOf(id)).comparable;
}

bool TypeTable::Ordered(TypeId id) const {
    return RowOf(KindOf(id)).ordered;
}

bool TypeTable::Reference(TypeId id) const {
    return RowOf(KindOf(id)).reference;
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
