#include "core/script/program/kinds.h"

#include <array>
#include <cstddef>

namespace tavrel::core::script {

namespace {

constexpr std::array<const char*, HookCount> HookNames = {
    "ao iniciar",  "ao carregar mapa", "ao reiniciar mapa", "ao interromper", "a cada tick", "a cada quadro",
    "ao desenhar", "camera",           "ao encerrar",       "ao nascer",      "ao tocar",    "ao soltar",
};

constexpr std::array<const char*, 5> CategoryNames = {"constante", "estado", "visual", "progresso", "derivado do mapa"};

constexpr std::array<const char*, ReservedFunctionCount> ReservedNames = {
    "relevo_base", "ajustar_material", "pode_ficar", "altura_do_corpo", "atualizar_mapa", "foco_do_jogador",
};

}  // namespace

const char* HookName(HookKind kind) {
    const auto row = static_cast<std::size_t>(kind);
    return row < HookNames.size() ? HookNames[row] : "um gancho";
}

const char* CategoryName(GlobalCategory category) {
    const auto row = static_cast<std::size_t>(category);
    return row < CategoryNames.size() ? CategoryNames[row] : "?";
}

const char* ReservedName(ReservedFunction function) {
    const auto row = static_cast<std::size_t>(function);  // a negative number becomes a row far behind the last
    return row < ReservedNames.size() ? ReservedNames[row] : "?";
}

}  // namespace tavrel::core::script
