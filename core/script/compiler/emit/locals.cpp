// One table from names to locals serves all scopes: a local remembers what its name meant before, and closing a scope
// gives the names back. So a look-up takes one step however deep scopes nest.
#include "core/script/compiler/emit/locals.h"

#include <algorithm>

namespace tavrel::core::script {

void Locals::Begin() {
    while (!scopes.empty()) CloseScope();
    peak = 0;
    PushScope();
}

void Locals::CloseScope() {
    while (locals.size() > scopes.back()) {
        const Local& local = locals.back();
        if (local.name) names.Set(local.name, local.shadowed);
        locals.pop_back();
    }
    scopes.pop_back();
}

SlotId Locals::NewLocal(NameId name, TypeId type, bool writable) {
    Local local;
    local.type = type;
    local.slot = SlotId(locals.size());
    local.writable = writable;
    if (name && !InInnermostScope(name)) {
        local.name = name;
        local.shadowed = names.Find(name);
        names.Set(name, Index<Local>(locals.size()));
    }
    locals.push_back(local);
    peak = std::max(peak, static_cast<std::int32_t>(locals.size()));
    return local.slot;
}

const Local* Locals::Find(NameId name) const {
    Index<Local> found = names.Find(name);
    return found ? &locals[found.Number()] : nullptr;
}

bool Locals::InInnermostScope(NameId name) const {
    Index<Local> found = names.Find(name);
    return found && found.Number() >= scopes.back();
}

}  // namespace tavrel::core::script
