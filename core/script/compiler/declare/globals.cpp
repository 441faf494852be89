// A variable that is reported is still declared, so that its uses are not reported again; only one whose name is taken
// is dropped. Globals are numbered in step with the walk over the declarations, and the code of the initial values
// relies on walking them in the same order.
#include "core/script/compiler/declare/globals.h"

#include <utility>

#include "core/script/compiler/declare/record_cycles.h"
#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

namespace {

constexpr std::size_t MaxPublishedName = 64;

bool IsPublishedName(const std::string& name) {
    if (name.empty() || name.size() > MaxPublishedName) return false;
    for (char letter : name) {
        bool good = (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
        if (!good) return false;
    }
    return true;
}

bool MayBePublished(Kind kind) {
    switch (kind) {
        case Kind::Unknown:  // reported already
        case Kind::Int:
        case Kind::Real:
        case Kind::Bool:
        case Kind::Vec3: return true;
        case Kind::Nothing:
        case Kind::Text:
        case Kind::Vec2:
        case Kind::Color:
        case Kind::Object:
        case Kind::Body:
        case Kind::Sound:
        case Kind::List:
        case Kind::Dict:
        case Kind::Record:
        case Kind::Enum:
        case Kind::Space: return false;
    }
    return false;
}

// The written type, or the type of the literal that is the initial value.
TypeId GlobalType(Compiler& compiler, const Declarations& declarations, const Unit& where, const VarDecl& variable) {
    if (variable.type) return ResolveType(compiler, declarations, where, variable.type);
    if (!variable.init) {
        compiler.Error(where, variable.span, "esta declaracao precisa dizer o tipo");
        return ErrorType;
    }
    const Expr& init = where.At(variable.init);
    switch (init.kind) {
        case ExprKind::Integer: return IntType;
        case ExprKind::Real: return RealType;
        case ExprKind::Logical: return BoolType;
        case ExprKind::Text: return TextType;
        default: break;
    }
    compiler.Error(where, init.span, "esta constante precisa dizer o tipo", "escreva \"constante NOME: tipo = valor\"");
    return ErrorType;
}

void AddGlobal(Compiler& compiler, Declarations& declarations, const Unit& where, const VarDecl& variable,
               GlobalCategory category) {
    NameId name = compiler.names.Intern(variable.name);
    if (!declarations.IsFreeForGlobal(name)) {
        compiler.Error(where, variable.span, "ja existe algo chamado " + Quoted(variable.name));
        return;
    }
    TypeId type = GlobalType(compiler, declarations, where, variable);
    if (variable.isPrivate) {
        compiler.Error(where, variable.span, "um campo privado e de um exemplar de comportamento com dono",
                       "o estado do modulo e do jogo inteiro: para todos, use publico");
    }
    if (variable.published) CheckPublished(compiler, where, variable.name, variable.span, type);
    declarations.globalNames.Set(name, GlobalId(compiler.program.globals.size()));
    compiler.program.globals.push_back({variable.name, type, category, variable.published});
}

void AddGlobals(Compiler& compiler, Declarations& declarations, const Unit& where,
                const std::vector<VarDecl>& variables, GlobalCategory category) {
    for (const VarDecl& variable : variables) AddGlobal(compiler, declarations, where, variable, category);
}

// Of an import only the constants are declared, whatever else stands there.
void CollectImportedGlobals(Compiler& compiler, Declarations& declarations, const Unit& where) {
    const Section& module = where.module;
    bool hasBlocks = module.hasState || module.hasVisual || module.hasProgress;
    if (hasBlocks || !module.hooks.empty() || !where.behaviours.empty() || !module.derived.empty()) {
        compiler.Error(where, module.span, "estado, ganchos e comportamentos moram no modulo que os usa",
                       "um arquivo importado so pode trazer constantes, registros, enumeracoes, acoes e funcoes");
    }
    AddGlobals(compiler, declarations, where, module.constants, GlobalCategory::Constant);
}

// The dotted names of an event's globals are out of reach of any script, so they enter no name table.
GlobalId AddHiddenGlobal(Program& program, std::string name, TypeId type, GlobalCategory category, bool published) {
    program.globals.push_back({std::move(name), type, category, published});
    return GlobalId(program.globals.size() - 1);
}

void AddEvent(Compiler& compiler, Declarations& declarations, const Unit& where, const EventDecl& declaration) {
    NameId name = compiler.names.Intern(declaration.name);
    if (declarations.eventNames.Has(name)) {
        compiler.Error(where, declaration.span, "ja existe um evento chamado " + Quoted(declaration.name));
        return;
    }
    TypeId payload = declaration.type ? ResolveType(compiler, declarations, where, declaration.type) : RealType;
    CheckPublished(compiler, where, declaration.name, declaration.span, payload);
    Program& program = compiler.program;
    declarations.eventNames.Set(name, EventId(program.events.size()));
    std::string prefix = "evento." + declaration.name;
    EventInfo event;
    event.name = declaration.name;
    event.type = payload;
    event.countGlobal = AddHiddenGlobal(program, prefix + ".n", IntType, GlobalCategory::State, true);
    event.valueGlobal = AddHiddenGlobal(program, prefix + ".v", payload, GlobalCategory::State, true);
    event.seenGlobal = AddHiddenGlobal(program, prefix + ".visto", IntType, GlobalCategory::Visual, false);
    program.events.push_back(std::move(event));
}

void CollectEvents(Compiler& compiler, Declarations& declarations) {
    for (const Unit& unit : compiler.units) {
        for (const EventDecl& declaration : unit.events) {
            if (&unit == &compiler.Main()) {
                AddEvent(compiler, declarations, unit, declaration);
            } else {
                compiler.Error(unit, declaration.span, "um evento mora no modulo que o emite",
                               "declare \"evento " + declaration.name + "\" no script principal");
            }
        }
    }
}

}  // namespace

void CollectGlobals(Compiler& compiler, Declarations& declarations) {
    const Unit& main = compiler.Main();
    AddGlobals(compiler, declarations, main, main.module.constants, GlobalCategory::Constant);
    AddGlobals(compiler, declarations, main, main.module.state, GlobalCategory::State);
    AddGlobals(compiler, declarations, main, main.module.visual, GlobalCategory::Visual);
    AddGlobals(compiler, declarations, main, main.module.progress, GlobalCategory::Progress);
    AddGlobals(compiler, declarations, main, main.module.derived, GlobalCategory::Derived);
    compiler.program.progressKey = main.module.progressExtension;
    for (std::size_t i = 1; i < compiler.units.size(); ++i) {
        CollectImportedGlobals(compiler, declarations, compiler.units[i]);
    }
    CollectEvents(compiler, declarations);
    CheckRecordsContainThemselves(compiler);
}

void CheckPublished(Compiler& compiler, const Unit& where, const std::string& name, Span span, TypeId type) {
    if (!MayBePublished(compiler.KindOf(type))) {
        compiler.Error(where, span, "um campo publico e logico, inteiro, real ou vetor3",
                       "texto, lista e registro ainda nao vao para a rede");
    }
    if (!IsPublishedName(name)) {
        compiler.Error(where, span, "o nome de um campo publico e de letras minusculas sem acento, digitos e _",
                       "e o nome que vai pela rede");
    }
}

}  // namespace tavrel::core::script
