#include "core/script/world/world_api.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

namespace tavrel::core::script {
namespace {

const ApiFunction& Function(const std::string& name) {
    static const ApiFunction none;
    const auto& functions = WorldApi().functions;
    const auto found =
        std::find_if(functions.begin(), functions.end(), [&](const ApiFunction& row) { return row.name == name; });
    return found == functions.end() ? none : *found;
}

TEST(WorldApi, NoIdServesTwice) {
    const Api& api = WorldApi();
    std::multiset<std::uint32_t> ids = {api.inputPressed, api.inputHeld, api.inputReleased, api.inputValue,
                                        api.commandSend};
    for (const auto& row : api.functions) ids.insert(row.id);
    for (const auto& row : api.namespaceFields) ids.insert(row.id);
    for (const auto& row : api.valueFields) ids.insert(row.id);
    for (const std::uint32_t id : ids) EXPECT_EQ(ids.count(id), 1u) << id;
    EXPECT_EQ(ids.size(), 69u);
}

TEST(WorldApi, KeepsTheNumbersThatProgramsCarry) {
    EXPECT_EQ(Function("mapa.objeto").id, 5u);
    EXPECT_EQ(Function("fisica.andar").id, 216u);
    EXPECT_EQ(Function("portas.aberta").id, 803u);
    EXPECT_EQ(Function("som.emitir_em").id, 303u);
    EXPECT_EQ(WorldApi().functions.front().id, 5u);
    EXPECT_EQ(WorldApi().functions.back().id, 902u);
    EXPECT_EQ(Function("fisica.impulso").hooks, HookMask{0x10});
    EXPECT_EQ(Function("som.tocar").hooks, HookMask{0x63});
    EXPECT_EQ(Function("sessao.presente").hooks, HookMask{0xF0});
    EXPECT_EQ(WorldApi().namespaceFields.back().hooks, HookMask{0xE0});
    EXPECT_EQ(WorldApi().inputHooks, HookMask{48});
    EXPECT_EQ(WorldApi().commandHooks, HookMask{32});
}

TEST(WorldApi, OnlyCreatingObjectsBelongsToTheMapUpdate) {
    for (const auto& row : WorldApi().functions) {
        EXPECT_EQ(row.hooks == HookMask::UpdateMap, std::string(row.name) == "mapa.criar") << row.name;
    }
}

TEST(WorldApi, ReadingPhysicsInTheTickIsNoEffect) {
    EXPECT_FALSE(Function("fisica.andar").effect);
    EXPECT_FALSE(Function("fisica.eventos").effect);
    EXPECT_TRUE(Function("fisica.reiniciar").effect);
}

}  // namespace
}  // namespace tavrel::core::script
