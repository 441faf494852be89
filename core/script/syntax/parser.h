// The recursive-descent parser behind Parse and ParseTypeText, cut by construct over the parse_*.cpp files. It reads
// the tokens of one file and appends to a Unit that its caller owns; one object lives for one call.
//
// Frames count here: a level of nesting in the source is about ten calls, and the smallest stack has to hold
// MaxNesting levels. So the functions that recurse keep few locals, and messages are built in parser.cpp, where the
// compiler cannot draw the building into them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/source/diagnostics.h"
#include "core/script/syntax/contextual_words.h"
#include "core/script/syntax/parse.h"
#include "core/script/syntax/syntax_tree.h"
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

class Parser {
public:
    // The tokens are those of `target.source` and end in Newline, End.
    Parser(Diagnostics& reports, Unit& target, std::vector<Token> stream);

    // The whole file, from its "modulo" line on.
    void ParseModule();

    // One written type. The result indexes Unit::types and is good even where no type could be read.
    TypeRefId ParseType();

    // Steps over line ends; true when nothing stands behind them.
    [[nodiscard]] bool FinishFile();

private:
    // Where a list under construction starts on one of the scratch stacks below.
    using Mark = std::size_t;

    // Looking at tokens. Every look is clamped to the last one, the End.
    [[nodiscard]] const Token& Current() const { return tokens[position]; }
    [[nodiscard]] const Token& Ahead(std::size_t count) const {
        return tokens[std::min(position + count, tokens.size() - 1)];
    }
    [[nodiscard]] Span Here() const { return Current().span; }
    [[nodiscard]] bool Check(Tok kind) const { return Current().kind == kind; }
    [[nodiscard]] bool CheckAhead(std::size_t count, Tok kind) const { return Ahead(count).kind == kind; }
    // A contextual word.
    [[nodiscard]] bool CheckWord(Word word) const { return IsWord(Current(), word); }
    // The "nome:" that begins a variable.
    [[nodiscard]] bool CheckVariable() const { return Check(Tok::Name) && CheckAhead(1, Tok::Colon); }
    [[nodiscard]] bool CheckLineEnd() const { return Check(Tok::Newline) || Check(Tok::End); }

    // Moving on. The End is never passed.
    void Advance() {
        if (position + 1 < tokens.size()) ++position;
    }
    bool Match(Tok kind) {
        const bool matches = Check(kind);
        if (matches) Advance();
        return matches;
    }
    bool MatchWord(Word word);
    void SkipNewlines();
    void RecoverLine();

    // The end of a statement's or declaration's line; anything else there is reported and skipped.
    void EndOfLine();
    // The "fim" of the block that messages call `what`, and its line end. Skips nothing where it is missing.
    void ExpectEnd(std::string_view what);
    // True, past the token, when it has the kind; else reports that `what` was expected and skips nothing.
    bool Expect(Tok kind, const char* what);
    // The text of a name, past it; else reports and gives an empty text.
    std::string_view ExpectName(const char* what);

    // Reporting. Nothing is built for a report that would be dropped.
    [[nodiscard]] bool CanReport() const { return !silenced && !diagnostics->Full(); }
    void Error(Span span, std::string_view message, std::string_view hint = {});
    void ErrorExpected(const char* what, std::string_view hint = {});
    [[nodiscard]] std::string NameHint() const;

    // One more level of nesting, to be left with Leave. False, with the file given up, when there are too many.
    bool Enter();
    void Leave() { --depth; }

    // Growing the tree.
    [[nodiscard]] static std::int32_t CountOf(std::size_t size) { return static_cast<std::int32_t>(size); }
    ExprId Add(const Expr& expr);
    StmtId Add(const Stmt& stmt);
    TypeRefId Add(TypeRef type);
    [[nodiscard]] Span SpanOf(ExprId expr) const { return unit->At(expr).span; }
    void RaiseEnd(Span& span) const { span.end = std::max(span.end, Here().end); }
    // Moves what stands above `mark` on a scratch stack to the end of a pool.
    template <class Entry>
    [[nodiscard]] static Slice<Entry> Close(std::vector<Entry>& scratch, Mark mark, std::vector<Entry>& pool) {
        const Slice<Entry> list{CountOf(pool.size()), CountOf(scratch.size() - mark)};
        pool.insert(pool.end(), scratch.begin() + static_cast<std::ptrdiff_t>(mark), scratch.end());
        scratch.resize(mark);
        return list;
    }
    [[nodiscard]] ExprList CloseExprs(Mark mark) { return Close(pendingExprs, mark, unit->exprLists); }
    [[nodiscard]] Block CloseBlock(Mark mark) { return Close(pendingStmts, mark, unit->blocks); }

    // parse_types.cpp
    TypeRefId ParseListType();
    TypeRefId ParseDictionaryType();
    TypeRefId ParseSimpleType();
    TypeRefId ParseInnerType(Span& outer);
    void ParseParams(std::vector<Param>& params);

    // parse_expressions.cpp; one expression, and below it the levels of binding from the loosest to the tightest
    ExprId ParseExpression();
    ExprId ParseOr();
    ExprId ParseAnd();
    ExprId ParseNot();
    ExprId ParseComparison();
    ExprId ParseSum();
    ExprId ParseProduct();
    ExprId ParseUnary();
    ExprId ParsePostfix();
    ExprId ParsePrimary();
    ExprId ParseLiteral(ExprKind kind);
    ExprId ParseParentheses();
    ExprId ParseTypeWord();
    ExprId ParseMissingValue();
    ExprId ParseBrackets();
    void ParseElements(Expr& list, ExprId first);
    void ParseEntries(Expr& dictionary, ExprId firstKey);
    ExprId ParseField(ExprId base);
    ExprId ParseIndex(ExprId base);
    ExprId ParseCall(ExprId callee);
    ExprId ParseConversion();
    void ParseArguments(Expr& call);
    std::string_view ParseLabel();
    ExprId AddPair(ExprKind kind, Tok op, ExprId left, ExprId right);
    ExprId AddUnary(Span op, Tok kind, ExprId operand);
    ExprId AddPlaceholder();

    // parse_statements.cpp; an index into Unit::stmts, or a list of them
    StmtId ParseStatement();
    StmtId ParseStatementByWord();
    Block ParseBlock();
    // The block of a function or hook, with the run of its expressions.
    Block ParseBody(Slice<Expr>& exprs);
    Block ParseIfBody();
    Block ParseLineBody();
    StmtId ParseDeclare();
    StmtId ParseIf();
    Branch ParseIfBranch();
    StmtId ParseWhile();
    StmtId ParseLoop();
    void ParseForEach(Stmt& stmt);
    void ParseFor(Stmt& stmt);
    void ParseLoopBody(Stmt& stmt, const char* what);
    StmtId ParseSwitch();
    Branch ParseCase();
    StmtId ParseJump(StmtKind kind);
    StmtId ParseReturn();
    StmtId ParseAssignOrExpression();
    void FinishExpression(ExprId expr);
    StmtId AddExpression(ExprId expr);

    // parse_declarations.cpp
    void ParseDeclarations(Section& section, bool inBehaviour);
    void ParseDeclaration(Section& section, bool inBehaviour);
    void ParseNamedDeclaration(Section& section, bool inBehaviour);
    void ParseFunction(Section& section);
    bool ParseReturnType(FunctionDecl& function);
    void ParseConstant(Section& section);
    void ParseRecord(bool inBehaviour);
    void ParseEnum(bool inBehaviour);
    void ParseBehaviour(bool inBehaviour);
    void ParseImport(bool inBehaviour);
    void ParseStateBlock(Section& section);
    void ParseExtension(Section& section);
    void ParseFields(std::vector<VarDecl>& fields, Tok block);
    void ParseVisibility(VarDecl& field, Tok block);
    void ParseAction(bool inBehaviour);
    Binding ParseBinding();
    void ParseEvent(bool inBehaviour);
    void ParseParameter(Section& section, bool inBehaviour);
    void ParseVariable(VarDecl& variable);
    void ParseTypeAndValue(VarDecl& variable);

    // parse_hooks.cpp
    [[nodiscard]] bool CheckHook() const;
    void ParseHook(Section& section, bool inBehaviour);
    bool ParseHookHead(HookKind& kind);
    bool ParsePeriodicHead(HookKind& kind);
    bool ParseEventHead(HookKind& kind);
    void CheckHookPlace(const HookDecl& hook, bool inBehaviour);
    void ReportSecondHook(const Section& section, const HookDecl& hook);

    Diagnostics* diagnostics;
    Unit* unit;
    std::vector<Token> tokens;
    std::size_t position = 0;
    std::int32_t loopDepth = 0;  // loops open around the current statement
    bool singleLine = false;     // a body on the line of its "se" or "senao" is being read
    bool silenced = false;       // nested too deep: the rest is not read and nothing more is reported
    std::int32_t depth = 0;      // levels of nesting open at the current token

    // Lists under construction. A list inside another one is closed first, so each is a run at the top of its stack
    // and goes to the Unit's pool in one piece.
    std::vector<ExprId> pendingExprs;
    std::vector<StmtId> pendingStmts;
    std::vector<std::string_view> pendingLabels;
    std::vector<Branch> pendingBranches;
};

}  // namespace tavrel::core::script
