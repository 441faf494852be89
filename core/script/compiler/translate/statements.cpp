// A statement leaves the stack as it found it. A jump forward is patched when its target stands.
#include "core/script/compiler/translate/statements.h"

#include "core/script/compiler/declare/types.h"
#include "core/script/compiler/translate/assignments.h"
#include "core/script/compiler/translate/default_values.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/loops.h"
#include "core/script/compiler/translate/rights.h"

namespace tavrel::core::script {

namespace {

// The local exists only behind its value, which cannot see it.
void CompileDeclare(Body& body, const Stmt& stmt) {
    TypeId type = ResolveType(body.compiler, body.declarations, *body.unit, stmt.type);
    NameId name = body.Intern(stmt.name);
    if (body.locals.InInnermostScope(name)) {
        body.Error(stmt.span, Quoted(stmt.name) + " ja foi declarada aqui");
    } else if (body.declarations.globalNames.Has(name) || IsBehaviourField(body, name)) {
        body.Error(stmt.span, Quoted(stmt.name) + " ja existe fora deste bloco",
                   "use outro nome, para nao esconder a de fora");
    }
    if (!stmt.value) {
        EmitDefault(body, type, stmt.span);
    } else {
        TypeId actual = CompileValue(body, stmt.value, type);
        CheckAssign(body, type, actual, stmt.value, std::string(stmt.name));
    }
    body.code.EmitIndexed(Op::StoreLocal, body.locals.NewLocal(name, type, true), stmt.span);
}

void CompileIf(Body& body, const Stmt& stmt) {
    std::vector<JumpId> ends;
    for (const Branch& branch : body.unit->Branches(stmt.branches)) {
        CompileCondition(body, branch.condition);
        JumpId skip = body.code.EmitJump(Op::JumpIfFalse, branch.span);
        CompileBlock(body, branch.body);
        ends.push_back(body.code.EmitJump(Op::Jump, branch.span));
        body.code.PatchJump(skip);
    }
    if (stmt.hasElse) CompileBlock(body, stmt.elseBody);
    body.code.PatchJumps(ends);
}

void CompileReturn(Body& body, const Stmt& stmt) {
    bool returnsValue = body.returnType != NothingType;
    if (!stmt.value) {
        if (returnsValue) {
            body.Error(stmt.span, "esta funcao devolve " + body.TypeName(body.returnType) +
                                      ", entao \"retorne\" precisa de um valor");
        }
        body.code.Emit(Op::Return, stmt.span);
        return;
    }
    TypeId type = CompileValue(body, stmt.value, body.returnType);
    if (!returnsValue) {
        body.Error(stmt.span, "um procedimento nao devolve valor", "para devolver um valor, declare uma \"funcao\"");
        body.code.Emit(Op::Pop, stmt.span);
        body.code.Emit(Op::Return, stmt.span);
        return;
    }
    if (type != ErrorType && body.returnType != ErrorType && type != body.returnType) {
        body.Error(body.SpanOf(stmt.value),
                   "esta funcao devolve " + body.TypeName(body.returnType) + ", e este valor e " + body.TypeName(type));
    }
    body.code.Emit(Op::ReturnValue, stmt.span);
}

// `hits` takes the jumps of the values that match.
void CompileCaseTests(Body& body, const Branch& branch, TypeId subject, SlotId slot, std::vector<JumpId>& hits) {
    for (ExprId value : body.unit->Items(branch.values)) {
        body.code.EmitIndexed(Op::LoadLocal, slot, branch.span);
        TypeId type = CompileValue(body, value, subject);
        if (type != ErrorType && subject != ErrorType && type != subject) {
            body.Error(body.SpanOf(value),
                       "o \"escolha\" compara " + body.TypeName(subject) + ", e este caso e " + body.TypeName(type));
        } else if (subject != ErrorType && !body.Types().Comparable(subject)) {
            body.Error(body.SpanOf(value), body.TypeName(subject) + " nao se compara com \"==\"");
        }
        body.code.EmitCompare(Comparison::Equal, branch.span);
        hits.push_back(body.code.EmitJump(Op::JumpIfTrue, branch.span));
    }
}

void CompileSwitch(Body& body, const Stmt& stmt) {
    body.locals.PushScope();
    TypeId subject = CompileExpr(body, stmt.value);
    SlotId slot = body.locals.HiddenLocal(subject);
    body.code.EmitIndexed(Op::StoreLocal, slot, stmt.span);
    std::vector<JumpId> ends;
    for (const Branch& branch : body.unit->Branches(stmt.branches)) {
        std::vector<JumpId> hits;
        CompileCaseTests(body, branch, subject, slot, hits);
        JumpId skip = body.code.EmitJump(Op::Jump, branch.span);
        body.code.PatchJumps(hits);
        CompileBlock(body, branch.body);
        ends.push_back(body.code.EmitJump(Op::Jump, branch.span));
        body.code.PatchJump(skip);
    }
    if (stmt.hasElse) CompileBlock(body, stmt.elseBody);
    body.code.PatchJumps(ends);
    body.locals.CloseScope();
}

// A call that failed or gives nothing has left nothing on the stack.
void CompileCallStatement(Body& body, const Stmt& stmt) {
    TypeId type = CompileExpr(body, stmt.value);
    if (type != ErrorType && type != NothingType) body.code.Emit(Op::Pop, stmt.span);
}

void CompileStatement(Body& body, const Stmt& stmt) {
    switch (stmt.kind) {
        case StmtKind::Declare: return CompileDeclare(body, stmt);
        case StmtKind::Assign: return CompileAssign(body, stmt);
        case StmtKind::If: return CompileIf(body, stmt);
        case StmtKind::While: return CompileWhile(body, stmt);
        case StmtKind::For: return CompileFor(body, stmt);
        case StmtKind::ForEach: return CompileForEach(body, stmt);
        case StmtKind::Switch: return CompileSwitch(body, stmt);
        case StmtKind::Break:
            if (!body.loops.empty()) body.loops.back().breaks.push_back(body.code.EmitJump(Op::Jump, stmt.span));
            return;
        case StmtKind::Continue:
            if (!body.loops.empty()) body.loops.back().continues.push_back(body.code.EmitJump(Op::Jump, stmt.span));
            return;
        case StmtKind::Return: return CompileReturn(body, stmt);
        case StmtKind::Expression: return CompileCallStatement(body, stmt);
    }
}

}  // namespace

void CompileBlock(Body& body, Block block) {
    body.locals.PushScope();
    for (StmtId stmt : body.unit->Statements(block)) CompileStatement(body, body.unit->At(stmt));
    body.locals.CloseScope();
}

void CompileCondition(Body& body, ExprId expr) {
    TypeId type = CompileExpr(body, expr);
    if (type == ErrorType || type == BoolType) return;
    body.Error(body.SpanOf(expr), "uma condicao e logica, e esta e " + body.TypeName(type),
               type == IntType ? "para comparar, escreva \"== 0\" ou \"> 0\"" : "");
}

bool AlwaysReturns(const Unit& unit, Block block) {
    if (block.count == 0) return false;
    const Stmt& stmt = unit.At(unit.Statements(block).back());
    switch (stmt.kind) {
        case StmtKind::Return: return true;
        case StmtKind::If:
        case StmtKind::Switch: break;
        case StmtKind::Declare:
        case StmtKind::Assign:
        case StmtKind::While:
        case StmtKind::For:
        case StmtKind::ForEach:
        case StmtKind::Break:
        case StmtKind::Continue:
        case StmtKind::Expression: return false;
    }
    if (!stmt.hasElse || !AlwaysReturns(unit, stmt.elseBody)) return false;
    for (const Branch& branch : unit.Branches(stmt.branches)) {
        if (!AlwaysReturns(unit, branch.body)) return false;
    }
    return true;
}

}  // namespace tavrel::core::script
