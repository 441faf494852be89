// Open addressing with linear probing over the hash of a name; the bytes of names stand in blocks that never move, so
// that views of them hold while the table grows.
#include "core/script/compiler/declare/name_table.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

constexpr std::size_t FirstSlots = 512;
constexpr std::size_t BlockSize = std::size_t{16} << 10;

}  // namespace

NameTable::NameTable() : slots(FirstSlots) {}

NameId NameTable::Intern(std::string_view written) {
    return IsAscii(written) ? InternExact(written) : InternExact(FoldName(written));
}

NameId NameTable::InternExact(std::string_view bytes) {
    auto hash = static_cast<std::uint32_t>(std::hash<std::string_view>()(bytes));
    std::size_t mask = slots.size() - 1;
    std::size_t at = hash & mask;
    for (; slots[at].name; at = (at + 1) & mask) {
        if (slots[at].hash == hash && Folded(slots[at].name) == bytes) return slots[at].name;
    }
    NameId id(folded.size());
    slots[at] = {hash, id};
    folded.push_back(Keep(bytes));
    if (folded.size() * 2 > slots.size()) Grow();
    return id;
}

std::string_view NameTable::Keep(std::string_view name) {
    if (name.size() > blockLeft) {
        blockLeft = std::max(BlockSize, name.size());
        blocks.push_back(std::make_unique<char[]>(blockLeft));
        blockNext = blocks.back().get();
    }
    std::copy(name.begin(), name.end(), blockNext);
    std::string_view kept(blockNext, name.size());
    blockNext += name.size();
    blockLeft -= name.size();
    return kept;
}

void NameTable::Grow() {
    std::vector<Slot> larger(slots.size() * 2);
    std::size_t mask = larger.size() - 1;
    for (const Slot& slot : slots) {
        if (!slot.name) continue;
        std::size_t at = slot.hash & mask;
        while (larger[at].name) at = (at + 1) & mask;
        larger[at] = slot;
    }
    slots = std::move(larger);
}

}  // namespace tavrel::core::script
