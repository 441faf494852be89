#include "core/script/program/type_table.h"

#include <gtest/gtest.h>

#include <string>

namespace tavrel::core::script {
namespace {

TEST(TypeTable, InternsByWhatTellsTypesApart) {
    TypeTable types;
    TypeId list = types.List(IntType);
    EXPECT_EQ(types.List(IntType), list);
    TypeId textToReal = types.Dict(TextType, RealType);
    TypeId realToText = types.Dict(RealType, TextType);
    EXPECT_NE(textToReal, realToText);
    EXPECT_EQ(types.Name(textToReal), "dicionario de texto para real");
    EXPECT_EQ(types.Name(types.List(textToReal)), "lista de dicionario de texto para real");
    EXPECT_NE(types.Record(0, "A"), types.Enum(0, "A"));
    EXPECT_EQ(types.Record(0, "outro nome"), types.Record(0, "A"));
    EXPECT_EQ(types.Name(types.Record(0, "")), "A");
    EXPECT_NE(types.Space(0, "mapa"), types.Enum(0, "A"));
}

TEST(TypeTable, UnknownIdsReadAsTheFailedType) {
    TypeTable types;
    for (std::int32_t id : {-1, 12, 1000}) EXPECT_EQ(types.Name(TypeId(id)), "?") << id;
}

// A name as deep as nested lists may get must not recurse.
TEST(TypeTable, NamesDeepTypes) {
    TypeTable types;
    TypeId type = IntType;
    for (int i = 0; i < 100000; ++i) type = types.List(type);
    EXPECT_EQ(types.Name(type).size(), 100000 * 9 + 7);
}

}  // namespace
}  // namespace tavrel::core::script
