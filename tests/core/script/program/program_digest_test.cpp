#include "core/script/program/program_digest.h"

#include <gtest/gtest.h>

namespace tavrel::core::script {
namespace {

// Every kind of row once, with values whose bytes tell order and width. The expected digests were computed from the
// byte layout by hand, outside this code.
Program SampleProgram() {
    Program program;
    program.name = "Jogo";
    program.progressKey = "farol";
    Function function;
    function.name = "f";
    function.params = 1;
    function.locals = 2;
    function.returnType = TypeId();
    function.code = {{5, 7, 0x1234, 0xDEADBEEF}, {55, 0, 0, 0}};
    program.functions.push_back(function);
    program.integers = {-2};
    program.texts = {"olá"};
    program.globals = {{"a", IntType, GlobalCategory::State, false}, {"b", RealType, GlobalCategory::Derived, false}};
    program.records = {{"R", {"x"}, {RealType}, {}}};
    program.enums = {{"E", {"UM", "DOIS"}}};
    program.actions = {{"pular", {{"tecla", "espaco", true, {}}}}};
    BehaviourInfo behaviour;
    behaviour.name = "Porta";
    behaviour.fieldNames = {"eu", "dono"};
    behaviour.fieldTypes = {ObjectType, IntType};
    behaviour.fieldCategories = {GlobalCategory::Derived, GlobalCategory::State};
    behaviour.fieldPublished = {false, false};
    behaviour.fieldPrivate = {false, false};
    behaviour.hooks[0] = FunctionId(3);
    program.behaviours.push_back(behaviour);
    program.hooks[4] = FunctionId(0);
    program.initializer = FunctionId(6);
    return program;
}

TEST(ProgramDigest, FollowsTheByteLayout) {
    EXPECT_EQ(ToHex(DigestOf(SampleProgram())), "85d99ece7e92df980b207298e551ebcbbc4b29b7464b46c08943c0c00659ac1d");
}

TEST(ProgramDigest, PublishedVariablesAddASection) {
    Program program = SampleProgram();
    program.globals[1].published = true;
    program.behaviours[0].fieldPublished[1] = true;
    program.behaviours[0].fieldPrivate[1] = true;
    program.behaviours[0].ownerField = 1;
    EXPECT_EQ(ToHex(DigestOf(program)), "1e24c26b7245692085f3e231f63c9fa9d3ff11444e891f4475b2cae0a1d77bfa");
}

TEST(ProgramDigest, IgnoresPositionsAndWhatIsDerived) {
    Program program = SampleProgram();
    program.functions[0].spans = {1, 2};
    program.functions[0].file = FileId(3);
    program.sources.emplace_back("a.tvl", "modulo A");
    program.reserved[0] = FunctionId(0);
    program.behaviours[0].initializer = FunctionId(4);
    EXPECT_EQ(DigestOf(program), DigestOf(SampleProgram()));
}

}  // namespace
}  // namespace tavrel::core::script
