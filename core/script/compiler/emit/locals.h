// The variables of the scopes that are open at a place in the code, and the slots that they take in the frame.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/script/compiler/declare/name_table.h"
#include "core/script/program/type_table.h"

namespace tavrel::core::script {

// A place in the frame of a function.
using SlotId = Index<struct Slot>;

// One without a name is out of reach of the source.
struct Local {
    NameId name;
    TypeId type = ErrorType;
    SlotId slot;
    bool writable = true;
    Index<Local> shadowed;  // the local that the name meant before
};

class Locals {
public:
    // Closes every scope and opens the outermost one of a new function.
    void Begin();

    void PushScope() { scopes.push_back(locals.size()); }
    // The scope's names mean what they meant before, and its slots are free again.
    void CloseScope();

    // A variable of the innermost scope in the next free slot. Of two of one name in one scope, which is an error that
    // the caller reports, the first keeps the name.
    SlotId NewLocal(NameId name, TypeId type, bool writable);
    SlotId HiddenLocal(TypeId type) { return NewLocal(NameId(), type, true); }

    // Null when no open scope has a local of that name. Valid until the next change.
    [[nodiscard]] const Local* Find(NameId name) const;
    [[nodiscard]] bool InInnermostScope(NameId name) const;

    // The greatest number of slots in use at once since Begin.
    [[nodiscard]] std::int32_t Peak() const { return peak; }

private:
    std::vector<Local> locals;        // of all open scopes, so the index of one is its slot
    std::vector<std::size_t> scopes;  // where each open scope begins in locals
    NameMap<Index<Local>> names;      // into locals: what the name means in the open scopes
    std::int32_t peak = 0;
};

}  // namespace tavrel::core::script
