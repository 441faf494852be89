// Declared functions, and those whose names the world calls.
#include <algorithm>
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

// What an 8-bit operand can count.
constexpr std::size_t MostArguments = 255;

struct ReservedRow {
    const char* signature;
    std::vector<const char*> params;
    const char* result;
    Permits permits;
};

Permits RulePermits() {
    return {.random = false, .rule = true, .reached = true};
}

// By ReservedFunction. Types are compared by their texts.
const std::array<ReservedRow, ReservedFunctionCount>& ReservedFunctions() {
    static const std::array<ReservedRow, ReservedFunctionCount> rows = {{
        {"funcao relevo_base(x: real, z: real): real", {"real", "real"}, "real", RulePermits()},
        {"procedimento ajustar_material(x: real, z: real, camadas: lista de real)",
         {"real", "real", "lista de real"},
         "nada",
         RulePermits()},
        {"funcao pode_ficar(x: real, z: real): logico", {"real", "real"}, "logico", RulePermits()},
        {"funcao altura_do_corpo(): real", {}, "real", RulePermits()},
        {"funcao atualizar_mapa(): logico",
         {},
         "logico",
         {.writes = CategoryMask::Visual | CategoryMask::Progress | CategoryMask::Derived,
          .reached = true,
          .hooks = HookMask::UpdateMap}},
        {"funcao foco_do_jogador(n: inteiro): vetor3", {"inteiro"}, "vetor3", {.reached = true}},
    }};
    return rows;
}

// -1 for a name that is not reserved.
std::int32_t ReservedIndex(std::string_view folded) {
    for (std::int32_t i = 0; i < ReservedFunctionCount; ++i) {
        if (folded == ReservedName(static_cast<ReservedFunction>(i))) return i;
    }
    return -1;
}

bool HasSignature(const TypeTable& types, const FunctionEntry& entry, const ReservedRow& row) {
    return types.Name(entry.result) == row.result &&
           std::equal(entry.params.begin(), entry.params.end(), row.params.begin(), row.params.end(),
                      [&types](TypeId type, const char* word) { return types.Name(type) == word; });
}

std::uint64_t OwnedKey(std::int32_t owner, NameId name) {
    return static_cast<std::uint64_t>(static_cast<std::uint32_t>(owner)) << 32 | static_cast<std::uint32_t>(name);
}

}  // namespace

void Compiler::AddFunctions(const Unit& where, const Section& section, std::int32_t owner, std::int32_t unitIndex) {
    for (std::int32_t index : section.functions) {
        AddFunction(where, where.functions[static_cast<std::size_t>(index)], owner, unitIndex);
    }
}

// A rejected function is kept, so that every compiled function has its entry.
void Compiler::AddFunction(const Unit& where, const FunctionDecl& declaration, std::int32_t owner,
                           std::int32_t unitIndex) {
    FunctionEntry entry;
    entry.unit = &where;
    entry.declaration = &declaration;
    entry.behaviour = owner;
    for (const Param& param : declaration.params) entry.params.push_back(ResolveType(where, param.type));
    entry.result = declaration.isProcedure ? NothingType : ResolveType(where, declaration.returnType);
    std::size_t params = declaration.params.size() + (owner < 0 ? 0 : 1);
    entry.function = AppendFunction(declaration.name, static_cast<std::int32_t>(params), entry.result, unitIndex);
    CheckFunctionName(where, declaration, owner);
    if (params > MostArguments) {
        Error(where, declaration.span, "a funcao " + Quoted(declaration.name) + " tem argumentos demais",
              owner < 0 ? "cabem ate 255" : "num comportamento cabem ate 254");
    }

    NameId name = names.Intern(declaration.name);
    auto index = static_cast<std::int32_t>(functions.size());
    if (owner >= 0) {
        behaviourFunctions.try_emplace(OwnedKey(owner, name), index);
    } else if (!moduleFunctions.Has(name)) {
        moduleFunctions.Set(name, index);
    }
    functions.push_back(std::move(entry));
}

void Compiler::CheckFunctionName(const Unit& where, const FunctionDecl& declaration, std::int32_t owner) {
    NameId name = names.Intern(declaration.name);
    std::int32_t& sameName = sameNameCounts[OwnedKey(owner, name)];
    // One report for each earlier function of the name, as long as reports are kept at all.
    for (std::int32_t i = 0; i < sameName && !diagnostics->Full(); ++i) {
        Error(where, declaration.span, "ja existe uma funcao chamada " + Quoted(declaration.name));
    }
    ++sameName;
    if (globalNames.Has(name)) {
        Error(where, declaration.span, "ja existe uma variavel chamada " + Quoted(declaration.name));
    }
}

// A behaviour's function hides a module's of that name, and a behaviour sees no other behaviour's functions.
std::int32_t Compiler::FindFunction(NameId name, std::int32_t owner) const {
    if (owner >= 0) {
        auto found = behaviourFunctions.find(OwnedKey(owner, name));
        if (found != behaviourFunctions.end()) return found->second;
    }
    return moduleFunctions.Find(name);
}

void Compiler::CheckReservedFunctions() {
    for (const FunctionEntry& entry : functions) {
        if (entry.behaviour >= 0) continue;
        const FunctionDecl& declaration = *entry.declaration;
        std::int32_t reserved = ReservedIndex(names.Folded(names.Intern(declaration.name)));
        if (reserved < 0) continue;
        const ReservedRow& row = ReservedFunctions()[static_cast<std::size_t>(reserved)];
        if (HasSignature(program->types, entry, row)) {
            program->reserved[static_cast<std::size_t>(reserved)] = entry.function;
        } else {
            Error(*entry.unit, declaration.span,
                  Quoted(declaration.name) + " e uma funcao de nome reservado, e se escreve assim", row.signature);
        }
    }
}

void Compiler::PermitReservedFunctions() {
    for (FunctionEntry& entry : functions) {
        if (entry.behaviour >= 0) continue;
        std::int32_t reserved = ReservedIndex(names.Folded(names.Intern(entry.declaration->name)));
        if (reserved >= 0) entry.permits = ReservedFunctions()[static_cast<std::size_t>(reserved)].permits;
    }
}

}  // namespace tavrel::core::script
