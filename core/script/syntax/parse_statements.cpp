// Statements. A statement is told by its first token, or by the colon behind a name; anything else is read as an
// expression, which is a target when "=" follows. A block ends before "fim", "senao" or "caso", which its owner reads.
// The one body that may share the line of its head is that of "se" and "senao": `singleLine` then lets "senao" and
// "fim" end a statement's line.
#include "core/script/syntax/foreign_words.h"
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

Stmt MakeStmt(StmtKind kind, Span span) {
    Stmt stmt;
    stmt.kind = kind;
    stmt.span = span;
    return stmt;
}

// Whether the running block ends before this token.
bool ClosesBlock(Tok kind) {
    const BlockRole role = RoleOf(kind);
    return kind == Tok::End || role == BlockRole::Divides || role == BlockRole::Ends;
}

}  // namespace

StmtId Parser::ParseStatement() {
    if (!Enter()) return AddExpression(AddPlaceholder());
    const StmtId stmt = ParseStatementByWord();
    Leave();
    return stmt;
}

StmtId Parser::ParseStatementByWord() {
    switch (Current().kind) {
        case Tok::Se: return ParseIf();
        case Tok::Enquanto: return ParseWhile();
        case Tok::Para: return ParseLoop();
        case Tok::Escolha: return ParseSwitch();
        case Tok::Pare: return ParseJump(StmtKind::Break);
        case Tok::Continue: return ParseJump(StmtKind::Continue);
        case Tok::Retorne: return ParseReturn();
        default: return CheckVariable() ? ParseDeclare() : ParseAssignOrExpression();
    }
}

// The statements up to the word that closes the block, which is left for the caller. A statement that takes no token
// loses its line, so that every input comes to an end.
Block Parser::ParseBlock() {
    const Mark mark = pendingStmts.size();
    for (;;) {
        SkipNewlines();
        if (ClosesBlock(Current().kind)) break;
        const std::size_t before = position;
        pendingStmts.push_back(ParseStatement());
        if (position != before) continue;
        RecoverLine();
        if (Check(Tok::End)) break;
    }
    return CloseBlock(mark);
}

Block Parser::ParseBody(Slice<Expr>& exprs) {
    exprs.first = CountOf(unit->exprs.size());
    const Block body = ParseBlock();
    exprs.count = CountOf(unit->exprs.size()) - exprs.first;
    return body;
}

Block Parser::ParseIfBody() {
    if (Match(Tok::Newline)) return ParseBlock();
    const bool wasSingleLine = singleLine;
    singleLine = true;
    const Block body = ParseLineBody();
    singleLine = wasSingleLine;
    return body;
}

// A body on the line of its head. A statement that ends its line takes the line end with it, and the body goes on.
Block Parser::ParseLineBody() {
    const Mark mark = pendingStmts.size();
    std::size_t before = position;
    do {
        if (Check(Tok::Senao) || Check(Tok::Fim) || CheckLineEnd()) break;
        before = position;
        pendingStmts.push_back(ParseStatement());
    } while (position != before);
    return CloseBlock(mark);
}

StmtId Parser::ParseDeclare() {
    Stmt stmt = MakeStmt(StmtKind::Declare, Here());
    stmt.name = Current().text;
    Advance();
    Advance();
    stmt.type = ParseType();
    if (Match(Tok::Assign)) stmt.value = ParseExpression();
    RaiseEnd(stmt.span);
    EndOfLine();
    return Add(stmt);
}

StmtId Parser::ParseIf() {
    Stmt stmt = MakeStmt(StmtKind::If, Here());
    const Mark mark = pendingBranches.size();
    Advance();
    pendingBranches.push_back(ParseIfBranch());
    while (Check(Tok::Senao) && CheckAhead(1, Tok::Se)) {
        Advance();
        Advance();
        pendingBranches.push_back(ParseIfBranch());
    }
    stmt.hasElse = Match(Tok::Senao);
    if (stmt.hasElse) stmt.elseBody = ParseIfBody();
    ExpectEnd("se");
    stmt.branches = Close(pendingBranches, mark, unit->branches);
    return Add(stmt);
}

Branch Parser::ParseIfBranch() {
    Branch branch;
    branch.span = Here();
    branch.condition = ParseExpression();
    Match(Tok::Entao);
    branch.body = ParseIfBody();
    return branch;
}

StmtId Parser::ParseWhile() {
    Stmt stmt = MakeStmt(StmtKind::While, Here());
    Advance();
    stmt.value = ParseExpression();
    ParseLoopBody(stmt, "enquanto");
    return Add(stmt);
}

StmtId Parser::ParseLoop() {
    Stmt stmt = MakeStmt(StmtKind::For, Here());
    Advance();
    if (MatchWord(Word::Each)) stmt.kind = StmtKind::ForEach;
    stmt.name = ExpectName("o nome da variavel do laco");
    if (stmt.kind == StmtKind::ForEach) {
        ParseForEach(stmt);
    } else {
        ParseFor(stmt);
    }
    return Add(stmt);
}

void Parser::ParseForEach(Stmt& stmt) {
    if (!MatchWord(Word::In)) {
        Error(Here(), "depois do nome vem \"em\" e a colecao", "por exemplo: para cada item em lista");
    }
    stmt.value = ParseExpression();
    ParseLoopBody(stmt, "para cada");
}

void Parser::ParseFor(Stmt& stmt) {
    if (!MatchWord(Word::Of)) {
        Error(Here(), "depois do nome vem \"de\", o primeiro valor, \"ate\" e o ultimo",
              "por exemplo: para i de 1 ate 10");
    }
    stmt.from = ParseExpression();
    if (!MatchWord(Word::UpTo)) Error(Here(), "faltou \"ate\" e o ultimo valor do laco");
    stmt.to = ParseExpression();
    if (MatchWord(Word::Step)) stmt.step = ParseExpression();
    ParseLoopBody(stmt, "para");
}

void Parser::ParseLoopBody(Stmt& stmt, const char* what) {
    EndOfLine();
    ++loopDepth;
    stmt.body = ParseBlock();
    --loopDepth;
    ExpectEnd(what);
}

StmtId Parser::ParseSwitch() {
    Stmt stmt = MakeStmt(StmtKind::Switch, Here());
    Advance();
    stmt.value = ParseExpression();
    EndOfLine();
    SkipNewlines();
    const Mark mark = pendingBranches.size();
    while (Check(Tok::Caso)) {
        pendingBranches.push_back(ParseCase());
        SkipNewlines();
    }
    if (pendingBranches.size() == mark) Error(stmt.span, "um \"escolha\" precisa de pelo menos um \"caso\"");
    stmt.hasElse = Match(Tok::Senao);
    if (stmt.hasElse) {
        EndOfLine();
        stmt.elseBody = ParseBlock();
    }
    ExpectEnd("escolha");
    stmt.branches = Close(pendingBranches, mark, unit->branches);
    return Add(stmt);
}

Branch Parser::ParseCase() {
    Branch branch;
    branch.span = Here();
    Advance();
    const Mark mark = pendingExprs.size();
    do {
        pendingExprs.push_back(ParseExpression());
    } while (Match(Tok::Comma));
    branch.values = CloseExprs(mark);
    EndOfLine();
    branch.body = ParseBlock();
    return branch;
}

StmtId Parser::ParseJump(StmtKind kind) {
    const Span word = Here();
    Advance();
    if (loopDepth == 0) {
        Error(word, kind == StmtKind::Break ? "\"pare\" so vale dentro de um laco"
                                            : "\"continue\" so vale dentro de um laco");
    }
    EndOfLine();
    return Add(MakeStmt(kind, word));
}

StmtId Parser::ParseReturn() {
    Stmt stmt = MakeStmt(StmtKind::Return, Here());
    Advance();
    if (!CheckLineEnd()) stmt.value = ParseExpression();
    EndOfLine();
    return Add(stmt);
}

StmtId Parser::ParseAssignOrExpression() {
    const ExprId expr = ParseExpression();
    if (!Match(Tok::Assign)) {
        FinishExpression(expr);
        return AddExpression(expr);
    }
    const ExprId value = ParseExpression();
    Stmt stmt = MakeStmt(StmtKind::Assign, SpanOf(expr));
    stmt.span.end = std::max(stmt.span.end, SpanOf(value).end);
    stmt.target = expr;
    stmt.value = value;
    EndOfLine();
    return Add(stmt);
}

// Only a call does something on a line of its own.
void Parser::FinishExpression(ExprId expr) {
    const Expr& line = unit->At(expr);
    if (line.kind != ExprKind::Call && CanReport()) {
        std::string hint;
        if (line.kind == ExprKind::Name) hint = LegacyHint(line.text);
        if (line.kind == ExprKind::Name && hint.empty()) hint = "para atribuir, escreva \"nome = valor\"";
        Error(line.span, "esta linha nao faz nada", hint);
    }
    EndOfLine();
}

StmtId Parser::AddExpression(ExprId expr) {
    Stmt stmt = MakeStmt(StmtKind::Expression, SpanOf(expr));
    stmt.value = expr;
    return Add(stmt);
}

}  // namespace tavrel::core::script
