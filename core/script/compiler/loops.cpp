// "enquanto", "para" and "para cada". Bounds, steps and the list walked are held in hidden locals, so that each is
// evaluated once.
#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

constexpr std::uint8_t NotEqual = 1;
constexpr std::uint8_t Less = 2;
constexpr std::uint8_t LessEqual = 3;
constexpr std::uint8_t Greater = 4;
constexpr std::uint8_t GreaterEqual = 5;

// The guard of "para cada" names the slot of its list in 16 bits.
constexpr std::int32_t LargestGuardedSlot = 0xFFFF;

}  // namespace

void Compiler::CompileWhile(const Stmt& stmt) {
    std::size_t start = CodeSize();
    CompileCondition(stmt.value);
    std::int32_t exit = Emit(Op::JumpIfFalse, stmt.span);
    CompileLoopBody(stmt.body);
    CloseLoop(start, exit, stmt.span);
}

// Leaves the loop open behind its body, where "continue" goes on.
void Compiler::CompileLoopBody(Block body) {
    loops.emplace_back();
    CompileBlock(body);
    PatchJumps(loops.back().continues);
}

void Compiler::CloseLoop(std::size_t start, std::int32_t exit, Span span) {
    EmitJumpTo(start, span);
    PatchJump(exit);
    PatchJumps(loops.back().breaks);
    loops.pop_back();
}

void Compiler::CompileForEach(const Stmt& stmt) {
    PushScope();
    TypeId type = CompileExpr(stmt.value);
    if (!CheckCollection(stmt, type)) {
        CloseScope();
        return;
    }
    std::int32_t list = HiddenLocal(type);
    if (list > LargestGuardedSlot) {
        Error(stmt.span, "esta funcao tem variaveis demais para um \"para cada\" aqui",
              "antes dele cabem ate 65535; divida a funcao");
    }
    EmitIndexed(Op::StoreLocal, list, stmt.span);
    std::int32_t version = HiddenLocal(IntType);
    EmitIndexed(Op::LoadLocal, list, stmt.span);
    EmitNative(Native::ListVersion, 1, stmt.span);
    EmitIndexed(Op::StoreLocal, version, stmt.span);
    std::int32_t position = HiddenLocal(IntType);
    EmitInt(0, stmt.span);
    EmitIndexed(Op::StoreLocal, position, stmt.span);
    std::int32_t item = NewLocal(names.Intern(stmt.name), program->types.At(type).element, false);

    std::size_t start = CodeSize();
    Emit(Op::ForEachGuard, 0, static_cast<std::uint16_t>(list), static_cast<std::uint32_t>(version), stmt.span);
    EmitIndexed(Op::LoadLocal, position, stmt.span);
    EmitIndexed(Op::LoadLocal, list, stmt.span);
    EmitNative(Native::ListSize, 1, stmt.span);
    Emit(Op::Compare, Less, 0, 0, stmt.span);
    std::int32_t exit = Emit(Op::JumpIfFalse, stmt.span);
    EmitIndexed(Op::LoadLocal, list, stmt.span);
    EmitIndexed(Op::LoadLocal, position, stmt.span);
    Emit(Op::ListGet, stmt.span);
    EmitIndexed(Op::StoreLocal, item, stmt.span);
    CompileLoopBody(stmt.body);
    EmitIndexed(Op::LoadLocal, position, stmt.span);
    EmitInt(1, stmt.span);
    Emit(Op::AddInt, stmt.span);
    EmitIndexed(Op::StoreLocal, position, stmt.span);
    CloseLoop(start, exit, stmt.span);
    CloseScope();
}

// A failed type goes on with elements of a failed type.
bool Compiler::CheckCollection(const Stmt& stmt, TypeId type) {
    Kind kind = KindOf(type);
    if (type == FailedType || kind == Kind::List) return true;
    Error(SpanOf(stmt.value), "\"para cada\" percorre uma lista, e isto e " + TypeName(type),
          kind == Kind::Dict ? "para um dicionario, percorra as \"chaves()\", que ja vem em ordem" : "");
    return false;
}

// Both bounds are inclusive; the direction is decided at run time, on each pass, by the sign of the step.
void Compiler::CompileFor(const Stmt& stmt) {
    PushScope();
    CompileForPart(stmt.from, "o laco \"para\" conta com inteiros, e este comeco e ");
    std::int32_t item = NewLocal(names.Intern(stmt.name), IntType, false);
    EmitIndexed(Op::StoreLocal, item, stmt.span);
    CompileForPart(stmt.to, "o laco \"para\" conta com inteiros, e este fim e ");
    std::int32_t end = HiddenLocal(IntType);
    EmitIndexed(Op::StoreLocal, end, stmt.span);
    if (stmt.step >= 0) {
        CompileForPart(stmt.step, "o passo de um laco e um inteiro, e este e ");
    } else {
        EmitInt(1, stmt.span);
    }
    std::int32_t step = HiddenLocal(IntType);
    EmitIndexed(Op::StoreLocal, step, stmt.span);

    EmitIndexed(Op::LoadLocal, step, stmt.span);
    EmitInt(0, stmt.span);
    Emit(Op::Compare, NotEqual, 0, 0, stmt.span);
    std::int32_t good = Emit(Op::JumpIfTrue, stmt.span);
    EmitIndexed(Op::Raise, InternText("o passo de um laco \"para\" nao pode ser zero"), stmt.span);
    PatchJump(good);

    std::size_t start = CodeSize();
    std::int32_t exit = EmitForTest(item, end, step, stmt.span);
    CompileLoopBody(stmt.body);
    EmitIndexed(Op::LoadLocal, item, stmt.span);
    EmitIndexed(Op::LoadLocal, step, stmt.span);
    Emit(Op::AddInt, stmt.span);
    EmitIndexed(Op::StoreLocal, item, stmt.span);
    CloseLoop(start, exit, stmt.span);
    CloseScope();
}

void Compiler::CompileForPart(std::int32_t expr, const char* message) {
    TypeId type = CompileExpr(expr);
    if (type != FailedType && type != IntType) Error(SpanOf(expr), message + TypeName(type));
}

// The jump that leaves the loop.
std::int32_t Compiler::EmitForTest(std::int32_t item, std::int32_t end, std::int32_t step, Span span) {
    EmitIndexed(Op::LoadLocal, step, span);
    EmitInt(0, span);
    Emit(Op::Compare, Greater, 0, 0, span);
    std::int32_t down = Emit(Op::JumpIfFalse, span);
    EmitIndexed(Op::LoadLocal, item, span);
    EmitIndexed(Op::LoadLocal, end, span);
    Emit(Op::Compare, LessEqual, 0, 0, span);
    std::int32_t tested = Emit(Op::Jump, span);
    PatchJump(down);
    EmitIndexed(Op::LoadLocal, item, span);
    EmitIndexed(Op::LoadLocal, end, span);
    Emit(Op::Compare, GreaterEqual, 0, 0, span);
    PatchJump(tested);
    return Emit(Op::JumpIfFalse, span);
}

}  // namespace tavrel::core::script
