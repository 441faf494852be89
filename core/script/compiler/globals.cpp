// Variables of the module, their storage categories and initial values, and events. The order in which globals are
// numbered does not depend on the order of the blocks in the source.
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

constexpr std::size_t LongestPublishedName = 64;

constexpr Permits InitializerPermits = {
    .writes = AllVariables | CategoryMask::Constant, .random = false, .rule = false, .reached = true};

bool IsPublishedName(const std::string& name) {
    if (name.empty() || name.size() > LongestPublishedName) return false;
    for (char letter : name) {
        bool good = (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9') || letter == '_';
        if (!good) return false;
    }
    return true;
}

bool MayBePublished(Kind kind) {
    return kind == Kind::Int || kind == Kind::Real || kind == Kind::Bool || kind == Kind::Vec3 || kind == Kind::Unknown;
}

}  // namespace

void Compiler::CollectGlobals() {
    const Section& module = units[0].module;
    AddGlobals(units[0], module.constants, GlobalCategory::Constant);
    AddGlobals(units[0], module.state, GlobalCategory::State);
    AddGlobals(units[0], module.visual, GlobalCategory::Visual);
    AddGlobals(units[0], module.progress, GlobalCategory::Progress);
    AddGlobals(units[0], module.derived, GlobalCategory::Derived);
    program->progressKey = module.progressExtension;
    for (std::size_t i = 1; i < units.size(); ++i) CollectImportedGlobals(units[i]);
    CollectEvents();
    CheckRecordsContainThemselves();
}

void Compiler::CollectImportedGlobals(const Unit& where) {
    const Section& module = where.module;
    bool hasBlocks = module.hasState || module.hasVisual || module.hasProgress;
    if (hasBlocks || !module.hooks.empty() || !where.behaviours.empty() || !module.derived.empty()) {
        Error(where, module.span, "estado, ganchos e comportamentos moram no modulo que os usa",
              "um arquivo importado so pode trazer constantes, registros, enumeracoes, acoes e funcoes");
    }
    AddGlobals(where, module.constants, GlobalCategory::Constant);
}

void Compiler::AddGlobals(const Unit& where, const std::vector<VarDecl>& declarations, GlobalCategory category) {
    for (const VarDecl& declaration : declarations) AddGlobal(where, declaration, category);
}

void Compiler::AddGlobal(const Unit& where, const VarDecl& declaration, GlobalCategory category) {
    NameId name = names.Intern(declaration.name);
    if (globalNames.Has(name) || typeNames.Has(name) || enumMembers.Has(name)) {
        Error(where, declaration.span, "ja existe algo chamado " + Quoted(declaration.name));
        return;
    }
    TypeId type = GlobalType(where, declaration);
    if (declaration.isPrivate) {
        Error(where, declaration.span, "um campo privado e de um exemplar de comportamento com dono",
              "o estado do modulo e do jogo inteiro: para todos, use publico");
    }
    if (declaration.published) CheckPublished(where, declaration.name, declaration.span, type);
    globalNames.Set(name, static_cast<std::int32_t>(program->globals.size()));
    program->globals.push_back({declaration.name, type, category, declaration.published});
}

TypeId Compiler::GlobalType(const Unit& where, const VarDecl& declaration) {
    if (declaration.type >= 0) return ResolveType(where, declaration.type);
    if (declaration.init < 0) {
        Error(where, declaration.span, "esta declaracao precisa dizer o tipo");
        return FailedType;
    }
    const Expr& init = where.exprs[static_cast<std::size_t>(declaration.init)];
    switch (init.kind) {
        case ExprKind::Integer: return IntType;
        case ExprKind::Real: return RealType;
        case ExprKind::Logical: return BoolType;
        case ExprKind::Text: return TextType;
        default: break;
    }
    Error(where, init.span, "esta constante precisa dizer o tipo", "escreva \"constante NOME: tipo = valor\"");
    return FailedType;
}

void Compiler::CheckPublished(const Unit& where, const std::string& name, Span span, TypeId type) {
    if (!MayBePublished(KindOf(type))) {
        Error(where, span, "um campo publico e logico, inteiro, real ou vetor3",
              "texto, lista e registro ainda nao vao para a rede");
    }
    if (!IsPublishedName(name)) {
        Error(where, span, "o nome de um campo publico e de letras minusculas sem acento, digitos e _",
              "e o nome que vai pela rede");
    }
}

void Compiler::CollectEvents() {
    for (std::size_t i = 0; i < units.size(); ++i) {
        for (const EventDecl& declaration : units[i].events) {
            if (i == 0) {
                AddEvent(units[i], declaration);
            } else {
                Error(units[i], declaration.span, "um evento mora no modulo que o emite",
                      "declare \"evento " + declaration.name + "\" no script principal");
            }
        }
    }
}

// The dotted names of an event's globals are out of reach of any script, so they enter no name table.
void Compiler::AddEvent(const Unit& where, const EventDecl& declaration) {
    NameId name = names.Intern(declaration.name);
    if (eventNames.Has(name)) {
        Error(where, declaration.span, "ja existe um evento chamado " + Quoted(declaration.name));
        return;
    }
    TypeId payload = declaration.type < 0 ? RealType : ResolveType(where, declaration.type);
    CheckPublished(where, declaration.name, declaration.span, payload);
    eventNames.Set(name, static_cast<std::int32_t>(program->events.size()));
    std::string prefix = "evento." + declaration.name;
    EventInfo event{declaration.name, payload, -1, -1, -1};
    event.countGlobal = AddHiddenGlobal(prefix + ".n", IntType, GlobalCategory::State, true);
    event.valueGlobal = AddHiddenGlobal(prefix + ".v", payload, GlobalCategory::State, true);
    event.seenGlobal = AddHiddenGlobal(prefix + ".visto", IntType, GlobalCategory::Visual, false);
    program->events.push_back(std::move(event));
}

std::int32_t Compiler::AddHiddenGlobal(std::string name, TypeId type, GlobalCategory category, bool published) {
    program->globals.push_back({std::move(name), type, category, published});
    return static_cast<std::int32_t>(program->globals.size()) - 1;
}

// Runs over the declarations in the order in which they were numbered. No declaration was rejected when it comes to
// this, so the numbers go in step. The globals of events keep the machine's defaults.
void Compiler::CompileInitializer() {
    program->initializer = AppendFunction("valores iniciais", 0, NothingType, 0);
    BeginFunction(program->initializer, -1, InitializerPermits, NothingType);
    const Section& module = units[0].module;
    std::int32_t next = 0;
    for (const auto* list : {&module.constants, &module.state, &module.visual, &module.progress, &module.derived}) {
        InitializeGlobals(units[0], *list, next);
    }
    for (std::size_t i = 1; i < units.size(); ++i) InitializeGlobals(units[i], units[i].module.constants, next);
    EndFunction({});
}

void Compiler::InitializeGlobals(const Unit& where, const std::vector<VarDecl>& declarations, std::int32_t& next) {
    unit = &where;
    for (const VarDecl& declaration : declarations) {
        CompileInitialValue(declaration, program->globals[static_cast<std::size_t>(next)].type);
        EmitIndexed(Op::StoreGlobal, next, declaration.span);
        ++next;
    }
}

void Compiler::CompileInitialValue(const VarDecl& declaration, TypeId type) {
    if (declaration.init < 0) {
        EmitDefault(type, declaration.span);
        return;
    }
    TypeId actual = CompileValue(declaration.init, type);
    CheckAssign(type, actual, declaration.init, declaration.name);
}

}  // namespace tavrel::core::script
