// The frame of the current function, and what a name means at a place in its code.
#include "core/script/compiler/translate/body.h"

#include <utility>

#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

namespace {

FieldId BehaviourField(const Body& body, NameId name) {
    if (!body.behaviour) return FieldId();
    return body.declarations.fieldNames.Find(body.compiler.program.At(body.behaviour).record, name);
}

}  // namespace

void Body::Error(Span span, std::string message, std::string hint) {
    compiler.Error(*unit, span, std::move(message), std::move(hint));
}

void BeginFunction(Body& body, FunctionId function, const Unit& unit, BehaviourId behaviour, const Permits& permits,
                   TypeId result) {
    body.unit = &unit;
    body.behaviour = behaviour;
    body.permits = permits;
    body.returnType = result;
    body.code.Begin(function);
    body.locals.Begin();
    body.loops.clear();
    if (!behaviour) return;
    const BehaviourInfo& info = body.compiler.program.At(behaviour);
    body.locals.NewLocal(NameId(), body.Types().Record(info.record.value, info.name), false);
}

void EndFunction(Body& body, Span span) {
    body.code.End(span, body.locals.Peak());
}

void CompileParams(Body& body, const std::vector<Param>& params) {
    for (const Param& param : params) {
        TypeId type = ResolveType(body.compiler, body.declarations, *body.unit, param.type);
        NameId name = body.Intern(param.name);
        if (body.locals.InInnermostScope(name)) {
            body.Error(param.span, Quoted(param.name) + " ja e o nome de outro argumento");
        }
        body.locals.NewLocal(name, type, true);
    }
}

Place Resolve(const Body& body, NameId name) {
    Place place;
    const Program& program = body.compiler.program;
    if (const Local* local = body.locals.Find(name)) {
        place.kind = PlaceKind::Local;
        place.index = local->slot.value;
        place.type = local->type;
        place.writable = local->writable;
    } else if (FieldId field = BehaviourField(body, name)) {
        const BehaviourInfo& info = program.At(body.behaviour);
        place = {PlaceKind::Field, field.value, info.fieldTypes[field.Number()], info.fieldCategories[field.Number()]};
        place.writable = place.category != GlobalCategory::Constant;
    } else if (GlobalId global = body.declarations.globalNames.Find(name)) {
        const GlobalInfo& info = program.At(global);
        place = {PlaceKind::Global, global.value, info.type, info.category};
        place.writable = place.category != GlobalCategory::Constant;
    }
    return place;
}

bool IsBehaviourField(const Body& body, NameId name) {
    return static_cast<bool>(BehaviourField(body, name));
}

}  // namespace tavrel::core::script
