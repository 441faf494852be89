// The declarations are walked in the order in which they were numbered. No declaration was rejected when it comes to
// this, so the numbers go in step. The globals of events keep the machine's defaults.
#include "core/script/compiler/translate/initial_values.h"

#include "core/script/compiler/declare/behaviours.h"
#include "core/script/compiler/translate/default_values.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/rights.h"

namespace tavrel::core::script {

namespace {

void CompileInitialValue(Body& body, const VarDecl& declaration, TypeId type) {
    if (!declaration.init) {
        EmitDefault(body, type, declaration.span);
        return;
    }
    TypeId actual = CompileValue(body, declaration.init, type);
    CheckAssign(body, type, actual, declaration.init, declaration.name);
}

// `next` counts the globals that are done.
void InitializeGlobals(Body& body, const Unit& where, const std::vector<VarDecl>& declarations, std::size_t& next) {
    body.unit = &where;
    for (const VarDecl& declaration : declarations) {
        GlobalId global(next++);
        CompileInitialValue(body, declaration, body.compiler.program.At(global).type);
        body.code.EmitIndexed(Op::StoreGlobal, global, declaration.span);
    }
}

void InitializeFields(Body& body, const std::vector<VarDecl>& declarations, std::size_t& next) {
    const BehaviourInfo& info = body.compiler.program.At(body.behaviour);
    for (const VarDecl& declaration : declarations) {
        FieldId field(next++);
        body.code.EmitIndexed(Op::LoadLocal, 0, declaration.span);
        CompileInitialValue(body, declaration, info.fieldTypes[field.Number()]);
        body.code.EmitIndexed(Op::FieldSet, field, declaration.span);
    }
}

}  // namespace

void CompileInitializer(Body& body) {
    Compiler& compiler = body.compiler;
    const Unit& main = compiler.Main();
    FunctionId function = AppendFunction(compiler.program, "valores iniciais", 0, NothingType, FileId(0));
    compiler.program.initializer = function;
    BeginFunction(body, function, main, BehaviourId(), ModuleInitializerPermits, NothingType);
    std::size_t next = 0;
    const Section& module = main.module;
    for (const auto* list : {&module.constants, &module.state, &module.visual, &module.progress, &module.derived}) {
        InitializeGlobals(body, main, *list, next);
    }
    for (std::size_t i = 1; i < compiler.units.size(); ++i) {
        InitializeGlobals(body, compiler.units[i], compiler.units[i].module.constants, next);
    }
    EndFunction(body, {});
}

void CompileBehaviourInitializer(Body& body, BehaviourId behaviour) {
    Program& program = body.compiler.program;
    const Unit& main = body.compiler.Main();
    const Section& section = main.behaviours[behaviour.Number()];
    FunctionId function = AppendFunction(program, "valores iniciais de " + section.name, 1, NothingType, FileId(0));
    program.At(behaviour).initializer = function;
    BeginFunction(body, function, main, behaviour, BehaviourInitializerPermits, NothingType);
    std::size_t next = FirstDeclaredField;
    for (const auto* list : {&section.parameters, &section.state, &section.visual, &section.derived}) {
        InitializeFields(body, *list, next);
    }
    EndFunction(body, section.span);
}

}  // namespace tavrel::core::script
