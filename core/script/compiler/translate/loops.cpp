// Bounds, steps and the list walked are held in hidden locals, so that each is evaluated once.
#include "core/script/compiler/translate/loops.h"

#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/statements.h"

namespace tavrel::core::script {

namespace {

// The guard of "para cada" names the slot of its list in 16 bits.
constexpr std::int32_t MaxGuardedSlot = 0xFFFF;

// Leaves the loop open behind its body, where "continue" goes on.
void CompileLoopBody(Body& body, Block block) {
    body.loops.emplace_back();
    CompileBlock(body, block);
    body.code.PatchJumps(body.loops.back().continues);
}

void CloseLoop(Body& body, std::size_t start, JumpId exit, Span span) {
    body.code.EmitJumpTo(start, span);
    body.code.PatchJump(exit);
    body.code.PatchJumps(body.loops.back().breaks);
    body.loops.pop_back();
}

// A failed type goes on with elements of a failed type.
bool CheckCollection(Body& body, const Stmt& stmt, TypeId type) {
    Kind kind = body.KindOf(type);
    if (type == ErrorType || kind == Kind::List) return true;
    body.Error(body.SpanOf(stmt.value), "\"para cada\" percorre uma lista, e isto e " + body.TypeName(type),
               kind == Kind::Dict ? "para um dicionario, percorra as \"chaves()\", que ja vem em ordem" : "");
    return false;
}

void CompileForPart(Body& body, ExprId expr, const char* message) {
    TypeId type = CompileExpr(body, expr);
    if (type != ErrorType && type != IntType) body.Error(body.SpanOf(expr), message + body.TypeName(type));
}

// The jump that leaves the loop.
JumpId EmitForTest(Body& body, SlotId item, SlotId end, SlotId step, Span span) {
    body.code.EmitIndexed(Op::LoadLocal, step, span);
    body.code.EmitInt(0, span);
    body.code.EmitCompare(Comparison::Greater, span);
    JumpId down = body.code.EmitJump(Op::JumpIfFalse, span);
    body.code.EmitIndexed(Op::LoadLocal, item, span);
    body.code.EmitIndexed(Op::LoadLocal, end, span);
    body.code.EmitCompare(Comparison::LessEqual, span);
    JumpId tested = body.code.EmitJump(Op::Jump, span);
    body.code.PatchJump(down);
    body.code.EmitIndexed(Op::LoadLocal, item, span);
    body.code.EmitIndexed(Op::LoadLocal, end, span);
    body.code.EmitCompare(Comparison::GreaterEqual, span);
    body.code.PatchJump(tested);
    return body.code.EmitJump(Op::JumpIfFalse, span);
}

}  // namespace

void CompileWhile(Body& body, const Stmt& stmt) {
    std::size_t start = body.code.Size();
    CompileCondition(body, stmt.value);
    JumpId exit = body.code.EmitJump(Op::JumpIfFalse, stmt.span);
    CompileLoopBody(body, stmt.body);
    CloseLoop(body, start, exit, stmt.span);
}

// Both bounds are inclusive; the direction is decided at run time, on each pass, by the sign of the step.
void CompileFor(Body& body, const Stmt& stmt) {
    body.locals.PushScope();
    CompileForPart(body, stmt.from, "o laco \"para\" conta com inteiros, e este comeco e ");
    SlotId item = body.locals.NewLocal(body.Intern(stmt.name), IntType, false);
    body.code.EmitIndexed(Op::StoreLocal, item, stmt.span);
    CompileForPart(body, stmt.to, "o laco \"para\" conta com inteiros, e este fim e ");
    SlotId end = body.locals.HiddenLocal(IntType);
    body.code.EmitIndexed(Op::StoreLocal, end, stmt.span);
    if (stmt.step) {
        CompileForPart(body, stmt.step, "o passo de um laco e um inteiro, e este e ");
    } else {
        body.code.EmitInt(1, stmt.span);
    }
    SlotId step = body.locals.HiddenLocal(IntType);
    body.code.EmitIndexed(Op::StoreLocal, step, stmt.span);

    body.code.EmitIndexed(Op::LoadLocal, step, stmt.span);
    body.code.EmitInt(0, stmt.span);
    body.code.EmitCompare(Comparison::NotEqual, stmt.span);
    JumpId good = body.code.EmitJump(Op::JumpIfTrue, stmt.span);
    body.code.EmitIndexed(Op::Raise, body.code.InternText("o passo de um laco \"para\" nao pode ser zero"), stmt.span);
    body.code.PatchJump(good);

    std::size_t start = body.code.Size();
    JumpId exit = EmitForTest(body, item, end, step, stmt.span);
    CompileLoopBody(body, stmt.body);
    body.code.EmitIndexed(Op::LoadLocal, item, stmt.span);
    body.code.EmitIndexed(Op::LoadLocal, step, stmt.span);
    body.code.Emit(Op::AddInt, stmt.span);
    body.code.EmitIndexed(Op::StoreLocal, item, stmt.span);
    CloseLoop(body, start, exit, stmt.span);
    body.locals.CloseScope();
}

void CompileForEach(Body& body, const Stmt& stmt) {
    body.locals.PushScope();
    TypeId type = CompileExpr(body, stmt.value);
    if (!CheckCollection(body, stmt, type)) {
        body.locals.CloseScope();
        return;
    }
    SlotId list = body.locals.HiddenLocal(type);
    if (list.value > MaxGuardedSlot) {
        body.Error(stmt.span, "esta funcao tem variaveis demais para um \"para cada\" aqui",
                   "antes dele cabem ate 65535; divida a funcao");
    }
    body.code.EmitIndexed(Op::StoreLocal, list, stmt.span);
    SlotId version = body.locals.HiddenLocal(IntType);
    body.code.EmitIndexed(Op::LoadLocal, list, stmt.span);
    body.code.EmitNative(Native::ListVersion, 1, stmt.span);
    body.code.EmitIndexed(Op::StoreLocal, version, stmt.span);
    SlotId position = body.locals.HiddenLocal(IntType);
    body.code.EmitInt(0, stmt.span);
    body.code.EmitIndexed(Op::StoreLocal, position, stmt.span);
    SlotId item = body.locals.NewLocal(body.Intern(stmt.name), body.Types().At(type).element, false);

    std::size_t start = body.code.Size();
    body.code.Emit(Op::ForEachGuard, 0, static_cast<std::uint16_t>(list.value),
                   static_cast<std::uint32_t>(version.value), stmt.span);
    body.code.EmitIndexed(Op::LoadLocal, position, stmt.span);
    body.code.EmitIndexed(Op::LoadLocal, list, stmt.span);
    body.code.EmitNative(Native::ListSize, 1, stmt.span);
    body.code.EmitCompare(Comparison::Less, stmt.span);
    JumpId exit = body.code.EmitJump(Op::JumpIfFalse, stmt.span);
    body.code.EmitIndexed(Op::LoadLocal, list, stmt.span);
    body.code.EmitIndexed(Op::LoadLocal, position, stmt.span);
    body.code.Emit(Op::ListGet, stmt.span);
    body.code.EmitIndexed(Op::StoreLocal, item, stmt.span);
    CompileLoopBody(body, stmt.body);
    body.code.EmitIndexed(Op::LoadLocal, position, stmt.span);
    body.code.EmitInt(1, stmt.span);
    body.code.Emit(Op::AddInt, stmt.span);
    body.code.EmitIndexed(Op::StoreLocal, position, stmt.span);
    CloseLoop(body, start, exit, stmt.span);
    body.locals.CloseScope();
}

}  // namespace tavrel::core::script
