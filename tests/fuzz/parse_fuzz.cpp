// Any bytes give tokens in order and a tree whose references all lead to something that stands before them.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/script/syntax/lexer.h"
#include "core/script/syntax/parse.h"
#include "tests/fuzz/require.h"

namespace tavrel::fuzz {

namespace {

using namespace core::script;
using core::Index;

void CheckTokens(const SourceFile& source, const TokenList& list) {
    std::uint32_t last = 0;
    for (const Token& token : list.tokens) {
        Require(token.span.start >= last && token.span.end >= token.span.start);
        Require(token.span.end <= source.text.size());
        last = token.span.start;
    }
    Require(list.tokens.size() >= 2 && list.tokens.back().kind == Tok::End);
    Require(list.tokens[list.tokens.size() - 2].kind == Tok::Newline);
}

// A child stands before its parent.
template <class Entry>
void CheckChild(Index<Entry> child, std::size_t parent) {
    Require(child.value >= -1 && (!child || child.Number() < parent));
}

template <class Entry>
void CheckChildren(std::span<const Index<Entry>> children, std::size_t parent) {
    for (const Index<Entry> child : children) CheckChild(child, parent);
}

void CheckExprs(const Unit& unit) {
    for (std::size_t i = 0; i < unit.exprs.size(); ++i) {
        const Expr& expr = unit.exprs[i];
        CheckChild(expr.left, i);
        CheckChild(expr.right, i);
        CheckChildren(unit.Items(expr.items), i);
        CheckChildren(unit.Items(expr.keys), i);
        Require(expr.span.start <= expr.span.end && expr.span.end <= unit.source.text.size());
    }
}

void CheckStmts(const Unit& unit) {
    for (std::size_t i = 0; i < unit.stmts.size(); ++i) {
        const Stmt& stmt = unit.stmts[i];
        CheckChildren(unit.Statements(stmt.body), i);
        CheckChildren(unit.Statements(stmt.elseBody), i);
        for (const Branch& branch : unit.Branches(stmt.branches)) CheckChildren(unit.Statements(branch.body), i);
        for (const ExprId expr : {stmt.value, stmt.target, stmt.from, stmt.to, stmt.step}) {
            CheckChild(expr, unit.exprs.size());
        }
        CheckChild(stmt.type, unit.types.size());
        Require(stmt.span.start <= stmt.span.end && stmt.span.end <= unit.source.text.size());
    }
}

}  // namespace

}  // namespace tavrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    using namespace tavrel::core::script;
    SourceFile source("m.tvl", TextOf(data, size));
    Diagnostics lexical;
    for (const bool keepComments : {false, true}) CheckTokens(source, Tokenize(source, lexical, keepComments));
    Diagnostics diagnostics;
    Unit unit;
    Require(Parse(std::move(source), diagnostics, unit) == (diagnostics.errors == 0));
    CheckExprs(unit);
    CheckStmts(unit);
    return 0;
}
