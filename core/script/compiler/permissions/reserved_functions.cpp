// One table holds the signature of each reserved function and its rights. Types are compared by their texts, since a
// list type has no id before some script writes it.
#include "core/script/compiler/permissions/reserved_functions.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <vector>

#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

struct ReservedRow {
    ReservedFunction function;
    const char* signature;
    std::vector<const char*> params;
    const char* result;
    Permits permits;
};

constexpr Permits RulePermits = {.rule = true, .reached = true};
constexpr Permits UpdateMapPermits = {.writes = CategoryMask::Visual | CategoryMask::Progress | CategoryMask::Derived,
                                      .reached = true,
                                      .hooks = HookMask::UpdateMap};
constexpr Permits FocusPermits = {.reached = true};

std::span<const ReservedRow> ReservedFunctions() {
    static const ReservedRow rows[] = {
        {ReservedFunction::BaseRelief,
         "funcao relevo_base(x: real, z: real): real",
         {"real", "real"},
         "real",
         RulePermits},
        {ReservedFunction::AdjustMaterial,
         "procedimento ajustar_material(x: real, z: real, camadas: lista de real)",
         {"real", "real", "lista de real"},
         "nada",
         RulePermits},
        {ReservedFunction::CanStand,
         "funcao pode_ficar(x: real, z: real): logico",
         {"real", "real"},
         "logico",
         RulePermits},
        {ReservedFunction::BodyHeight, "funcao altura_do_corpo(): real", {}, "real", RulePermits},
        {ReservedFunction::UpdateMap, "funcao atualizar_mapa(): logico", {}, "logico", UpdateMapPermits},
        {ReservedFunction::PlayerFocus,
         "funcao foco_do_jogador(n: inteiro): vetor3",
         {"inteiro"},
         "vetor3",
         FocusPermits},
    };
    static_assert(std::size(rows) == ReservedFunctionCount, "one row for each reserved function");
    return rows;
}

// The row of a function's name; null in a behaviour, where such a name means nothing.
const ReservedRow* FindReserved(const FunctionEntry& entry) {
    if (entry.behaviour) return nullptr;
    for (const ReservedRow& row : ReservedFunctions()) {
        if (FoldsTo(entry.declaration->name, ReservedName(row.function))) return &row;
    }
    return nullptr;
}

bool HasSignature(const TypeTable& types, const FunctionEntry& entry, const ReservedRow& row) {
    return types.Name(entry.result) == row.result &&
           std::equal(entry.params.begin(), entry.params.end(), row.params.begin(), row.params.end(),
                      [&types](TypeId type, const char* word) { return types.Name(type) == word; });
}

}  // namespace

void CheckReservedFunctions(Compiler& compiler, const Declarations& declarations) {
    for (const FunctionEntry& entry : declarations.functions) {
        const ReservedRow* row = FindReserved(entry);
        if (row == nullptr) continue;
        if (HasSignature(compiler.program.types, entry, *row)) {
            compiler.program.reserved[static_cast<std::size_t>(row->function)] = entry.function;
        } else {
            compiler.Error(*entry.unit, entry.declaration->span,
                           Quoted(entry.declaration->name) + " e uma funcao de nome reservado, e se escreve assim",
                           row->signature);
        }
    }
}

std::optional<Permits> ReservedPermits(const FunctionEntry& entry) {
    const ReservedRow* row = FindReserved(entry);
    return row == nullptr ? std::nullopt : std::optional<Permits>(row->permits);
}

}  // namespace tavrel::core::script
