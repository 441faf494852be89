// Names as small integers. Names in the language ignore accents but not case, so a name's identity is its fold; every
// table of names in the compiler is then a vector under that number, and a look-up hashes a name once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/index.h"

namespace tavrel::core::script {

// The number of a folded name; numbers run from 0 in order of first use.
using NameId = Index<struct Name>;

class NameTable {
public:
    NameTable();

    // The number of a name as written; new names get the next one. The table keeps bytes of its own.
    NameId Intern(std::string_view written);

    // The same for bytes that are taken as they are.
    NameId InternExact(std::string_view bytes);

    // The fold of a name; valid while the table lives.
    [[nodiscard]] std::string_view Folded(NameId name) const { return folded[name.Number()]; }

private:
    struct Slot {
        std::uint32_t hash = 0;
        NameId name;
    };

    std::string_view Keep(std::string_view name);
    void Grow();

    std::vector<Slot> slots;  // open addressing; the size is a power of two
    std::vector<std::string_view> folded;
    std::vector<std::unique_ptr<char[]>> blocks;  // the bytes under `folded`
    std::size_t blockLeft = 0;
    char* blockNext = nullptr;
};

// A table from names to indices of one type.
template <class Id>
class NameMap {
public:
    // None for a name that is not there.
    [[nodiscard]] Id Find(NameId name) const { return name.Number() < values.size() ? values[name.Number()] : Id(); }

    [[nodiscard]] bool Has(NameId name) const { return static_cast<bool>(Find(name)); }

    // None takes the name out again.
    void Set(NameId name, Id value) {
        std::size_t at = name.Number();
        if (at >= values.size()) values.resize(at + at / 2 + 64);
        values[at] = value;
    }

private:
    std::vector<Id> values;
};

// The same for names that mean something else under each owner, as the fields of records do. No owner is one, too.
template <class Owner, class Value>
class OwnedNameMap {
public:
    // The empty value for a name that the owner does not have.
    [[nodiscard]] Value Find(Owner owner, NameId name) const {
        auto found = values.find(Key(owner, name));
        return found == values.end() ? Value() : found->second;
    }

    // False when the owner has something of that name already, which keeps it.
    bool Add(Owner owner, NameId name, Value value) { return values.try_emplace(Key(owner, name), value).second; }

    // What the owner has under that name, made where there was nothing.
    [[nodiscard]] Value& Obtain(Owner owner, NameId name) { return values[Key(owner, name)]; }

private:
    static std::uint64_t Key(Owner owner, NameId name) {
        return static_cast<std::uint64_t>(static_cast<std::uint32_t>(owner.value)) << 32 |
               static_cast<std::uint32_t>(name.value);
    }

    std::unordered_map<std::uint64_t, Value> values;
};

}  // namespace tavrel::core::script
