// What every part of the parser rests on: looking at tokens, moving on, reporting what was expected, the bound on
// nesting; and Parse, which runs it over a file. A fault is reported where it is met, and the reading goes on with the
// token at hand; RecoverLine gives up the rest of a line. Past MaxNesting the parser jumps to the end of the file and
// reports nothing more.
#include "core/script/syntax/parser.h"

#include <utility>

#include "core/script/syntax/foreign_words.h"
#include "core/script/syntax/lexer.h"

namespace tavrel::core::script {

namespace {

// Of a large file only so much is reserved ahead; its vectors grow by doubling from there.
constexpr std::size_t MaxReserved = 1U << 20U;

void ReserveTree(Unit& unit, std::size_t tokens) {
    unit.exprs.reserve(std::min(tokens / 2, MaxReserved));
    unit.stmts.reserve(std::min(tokens / 8, MaxReserved));
    unit.exprLists.reserve(std::min(tokens / 8, MaxReserved));
    unit.blocks.reserve(std::min(tokens / 8, MaxReserved));
}

}  // namespace

Parser::Parser(Diagnostics& reports, Unit& target, std::vector<Token> stream)
    : diagnostics(&reports), unit(&target), tokens(std::move(stream)) {}

bool Parser::MatchWord(Word word) {
    const bool matches = CheckWord(word);
    if (matches) Advance();
    return matches;
}

void Parser::SkipNewlines() {
    while (Check(Tok::Newline)) Advance();
}

void Parser::RecoverLine() {
    while (!CheckLineEnd()) Advance();
    Match(Tok::Newline);
}

void Parser::EndOfLine() {
    if (Match(Tok::Newline) || Check(Tok::End)) return;
    if (singleLine && (Check(Tok::Senao) || Check(Tok::Fim))) return;
    ErrorExpected("o fim da linha", NameHint());
    RecoverLine();
}

void Parser::ExpectEnd(std::string_view what) {
    if (Match(Tok::Fim)) return EndOfLine();
    if (!CanReport()) return;
    std::string hint = NameHint();
    if (hint.empty()) hint.append("o bloco de \"").append(what).append("\" precisa terminar com \"fim\"");
    Error(Here(), std::string("faltou \"fim\" para fechar ").append(what), hint);
}

bool Parser::Expect(Tok kind, const char* what) {
    if (Match(kind)) return true;
    ErrorExpected(what, NameHint());
    return false;
}

std::string_view Parser::ExpectName(const char* what) {
    if (Check(Tok::Name)) {
        const std::string_view name = Current().text;
        Advance();
        return name;
    }
    ErrorExpected(what, CheckLineEnd() ? "" : "esta e uma palavra reservada da linguagem");
    return {};
}

void Parser::Error(Span span, std::string_view message, std::string_view hint) {
    if (CanReport()) diagnostics->Add(unit->source, span, std::string(message), std::string(hint));
}

void Parser::ErrorExpected(const char* what, std::string_view hint) {
    if (!CanReport()) return;
    Error(Here(), std::string("esperava ") + what + ", e veio " + Describe(Current().kind), hint);
}

std::string Parser::NameHint() const {
    return Check(Tok::Name) ? LegacyHint(Current().text) : std::string();
}

bool Parser::Enter() {
    if (depth < MaxNesting) {
        ++depth;
        return true;
    }
    const std::string limit = std::to_string(MaxNesting);
    Error(Here(), "o codigo esta aninhado demais: o limite e de " + limit + " niveis",
          "divida esta parte em funcoes ou variaveis menores");
    silenced = true;
    position = tokens.size() - 1;
    return false;
}

ExprId Parser::Add(const Expr& expr) {
    unit->exprs.push_back(expr);
    return ExprId(unit->exprs.size() - 1);
}

StmtId Parser::Add(const Stmt& stmt) {
    unit->stmts.push_back(stmt);
    return StmtId(unit->stmts.size() - 1);
}

TypeRefId Parser::Add(TypeRef type) {
    unit->types.push_back(std::move(type));
    return TypeRefId(unit->types.size() - 1);
}

bool Parser::FinishFile() {
    SkipNewlines();
    return Check(Tok::End);
}

void Parser::ParseModule() {
    SkipNewlines();
    if (!Check(Tok::Modulo)) {
        const std::string hint =
            Check(Tok::Comportamento) ? "um comportamento mora dentro de um modulo" : LegacyHint(Current().text);
        return Error(Here(), "um script comeca com \"modulo <Nome>\"", hint);
    }
    Section& module = unit->module;
    module.span = Here();
    module.nameSpan = Ahead(1).span;
    Advance();
    module.name = ExpectName("o nome do modulo");
    EndOfLine();
    ParseDeclarations(module, false);
}

bool Parse(SourceFile source, Diagnostics& diagnostics, Unit& unit) {
    unit.source = std::move(source);
    TokenList list = Tokenize(unit.source, diagnostics, false);
    unit.literals = std::move(list.literals);
    // A source that is too large was reported and has no tokens to say more about.
    if (unit.source.FitsOffsets()) {
        ReserveTree(unit, list.tokens.size());
        Parser(diagnostics, unit, std::move(list.tokens)).ParseModule();
    }
    return diagnostics.errors == 0;
}

}  // namespace tavrel::core::script
