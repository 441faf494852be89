// Names as small integers. Names in the language ignore accents but not case, so a name's identity is its fold; every
// table of names in the compiler is then a vector under that number, and a look-up hashes a name once.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace tavrel::core::script {

// The number of a folded name; numbers run from 0 in order of first use.
using NameId = std::int32_t;

class NameTable {
public:
    NameTable();

    // The number of a name as written; new names get the next one. The table keeps bytes of its own.
    NameId Intern(std::string_view written);

    // The same for bytes that are taken as they are.
    NameId InternExact(std::string_view bytes);

    // The fold of a name; valid while the table lives.
    [[nodiscard]] std::string_view Folded(NameId name) const { return folded[static_cast<std::size_t>(name)]; }

private:
    struct Slot {
        std::uint32_t hash = 0;
        NameId name = -1;
    };

    std::string_view Keep(std::string_view name);
    void Grow();

    std::vector<Slot> slots;  // open addressing; the size is a power of two
    std::vector<std::string_view> folded;
    std::vector<std::unique_ptr<char[]>> blocks;  // the bytes under `folded`
    std::size_t blockLeft = 0;
    char* blockNext = nullptr;
};

// A table from names to indices.
class NameMap {
public:
    // -1 for a name that is not there.
    [[nodiscard]] std::int32_t Find(NameId name) const {
        auto at = static_cast<std::size_t>(name);
        return at < values.size() ? values[at] : -1;
    }

    [[nodiscard]] bool Has(NameId name) const { return Find(name) >= 0; }

    // -1 takes the name out again.
    void Set(NameId name, std::int32_t value) {
        auto at = static_cast<std::size_t>(name);
        if (at >= values.size()) values.resize(at + at / 2 + 64, -1);
        values[at] = value;
    }

private:
    std::vector<std::int32_t> values;
};

}  // namespace tavrel::core::script
