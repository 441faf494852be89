#include "core/script/source/diagnostics.h"

#include <gtest/gtest.h>

namespace tavrel::core::script {
namespace {

const SourceFile Source("jogo.tvl", "ação x\n  y\n");

TEST(Diagnostics, RendersPlaceMessageAndHint) {
    Diagnostics diagnostics;
    diagnostics.Add(Source, {11, 12}, "\"<-\" nao atribui nesta linguagem", "use \"=\" para atribuir");
    diagnostics.Add(Source, {7, 8}, "sem dica", "");
    diagnostics.Warn(Source, {7, 8}, "cuidado");
    EXPECT_EQ(diagnostics.Describe(),
              "jogo.tvl:2:3: erro: \"<-\" nao atribui nesta linguagem\n"
              "  use \"=\" para atribuir\n"
              "jogo.tvl:1:6: erro: sem dica\n"
              "jogo.tvl:1:6: aviso: cuidado\n");
    EXPECT_EQ(diagnostics.errors, 2U);
}

TEST(Diagnostics, CutTakesErrorsBack) {
    Diagnostics diagnostics;
    diagnostics.Add(Source, {}, "fica", "");
    diagnostics.Add(Source, {}, "sai", "");
    diagnostics.Warn(Source, {}, "sai");
    diagnostics.CutTo(1);
    EXPECT_EQ(diagnostics.Describe(), "jogo.tvl:1:1: erro: fica\n");
    EXPECT_EQ(diagnostics.errors, 1U);
}

}  // namespace
}  // namespace tavrel::core::script
