// Scopes, and what a name means at a place in the code.
#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

std::uint64_t FieldKey(std::int32_t record, NameId name) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(record)) << 32 | static_cast<std::uint32_t>(name);
}

}  // namespace

// A local hides a behaviour's field, and a field hides a global.
Place Compiler::Resolve(NameId name) const {
    Place place;
    if (std::int32_t local = localNames.Find(name); local >= 0) {
        const Local& found = locals[static_cast<std::size_t>(local)];
        place.kind = PlaceKind::Local;
        place.index = found.slot;
        place.type = found.type;
        place.writable = found.writable;
        return place;
    }
    if (behaviour >= 0) {
        const BehaviourInfo& info = program->behaviours[static_cast<std::size_t>(behaviour)];
        if (std::int32_t field = RecordField(info.record, name); field >= 0) {
            auto at = static_cast<std::size_t>(field);
            place = {PlaceKind::Field, field, info.fieldTypes[at], info.fieldCategories[at], true};
            place.writable = place.category != GlobalCategory::Constant;
            return place;
        }
    }
    if (std::int32_t global = globalNames.Find(name); global >= 0) {
        const GlobalInfo& info = program->globals[static_cast<std::size_t>(global)];
        place = {PlaceKind::Global, global, info.type, info.category, true};
        place.writable = place.category != GlobalCategory::Constant;
    }
    return place;
}

bool Compiler::IsBehaviourField(NameId name) const {
    if (behaviour < 0) return false;
    return RecordField(program->behaviours[static_cast<std::size_t>(behaviour)].record, name) >= 0;
}

// False when the record has a field of that name already; the first one keeps the name.
bool Compiler::AddFieldName(std::int32_t record, NameId name, std::int32_t field) {
    return fieldNames.try_emplace(FieldKey(record, name), field).second;
}

std::int32_t Compiler::RecordField(std::int32_t record, NameId name) const {
    auto found = fieldNames.find(FieldKey(record, name));
    return found == fieldNames.end() ? -1 : found->second;
}

void Compiler::PushScope() {
    scopes.push_back(locals.size());
}

void Compiler::CloseScope() {
    while (locals.size() > scopes.back()) {
        const Local& local = locals.back();
        if (local.name >= 0) localNames.Set(local.name, local.shadowed);
        locals.pop_back();
        --localCount;
    }
    scopes.pop_back();
}

bool Compiler::InInnermostScope(NameId name) const {
    std::int32_t local = localNames.Find(name);
    return local >= 0 && static_cast<std::size_t>(local) >= scopes.back();
}

std::int32_t Compiler::NewLocal(NameId name, TypeId type, bool writable) {
    Local local{-1, type, localCount, writable, -1};
    // Of two in one scope, which is an error, the first keeps the name.
    if (name >= 0 && !InInnermostScope(name)) {
        local.name = name;
        local.shadowed = localNames.Find(name);
        localNames.Set(name, static_cast<std::int32_t>(locals.size()));
    }
    locals.push_back(local);
    ++localCount;
    if (localCount > localPeak) localPeak = localCount;
    return local.slot;
}

std::int32_t Compiler::HiddenLocal(TypeId type) {
    return NewLocal(-1, type, true);
}

}  // namespace tavrel::core::script
