// Blocks, declarations, conditions, "escolha" and "retorne", and the frame of the function being compiled.
#include <utility>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

std::int32_t Compiler::AppendFunction(std::string name, std::int32_t params, TypeId result, std::int32_t file) {
    Function appended;
    appended.name = std::move(name);
    appended.params = params;
    appended.returnType = result;
    appended.file = file;
    program->functions.push_back(std::move(appended));
    return static_cast<std::int32_t>(program->functions.size()) - 1;
}

// A behaviour's function has its instance as a first argument, out of reach of the source.
void Compiler::BeginFunction(std::int32_t newFunction, std::int32_t owner, const Permits& newPermits, TypeId result) {
    while (!scopes.empty()) CloseScope();
    function = newFunction;
    Current().code.swap(codeBuffer);
    Current().spans.swap(spanBuffer);
    behaviour = owner;
    permits = newPermits;
    returnType = result;
    loops.clear();
    localCount = 0;
    localPeak = 0;
    PushScope();
    if (owner < 0) return;
    const BehaviourInfo& info = program->behaviours[static_cast<std::size_t>(owner)];
    NewLocal(-1, program->types.Record(info.record, info.name), false);
}

// Ends in a Return whatever stands before, so that control cannot run off the code. The function keeps a copy of the
// right size; the room that the code grew in serves the next one.
void Compiler::EndFunction(Span span) {
    Emit(Op::Return, span);
    Function& current = Current();
    current.locals = localPeak;
    codeBuffer.swap(current.code);
    spanBuffer.swap(current.spans);
    current.code = codeBuffer;
    current.spans = spanBuffer;
    codeBuffer.clear();
    spanBuffer.clear();
}

void Compiler::CompileParams(const std::vector<Param>& params) {
    for (const Param& param : params) {
        TypeId type = ResolveType(*unit, param.type);
        NameId name = names.Intern(param.name);
        if (InInnermostScope(name)) Error(param.span, Quoted(param.name) + " ja e o nome de outro argumento");
        NewLocal(name, type, true);
    }
}

void Compiler::CompileBlock(Block block) {
    PushScope();
    for (std::int32_t stmt : unit->Statements(block)) CompileStatement(unit->stmts[static_cast<std::size_t>(stmt)]);
    CloseScope();
}

void Compiler::CompileStatement(const Stmt& stmt) {
    switch (stmt.kind) {
        case StmtKind::Declare: return CompileDeclare(stmt);
        case StmtKind::Assign: return CompileAssign(stmt);
        case StmtKind::If: return CompileIf(stmt);
        case StmtKind::While: return CompileWhile(stmt);
        case StmtKind::For: return CompileFor(stmt);
        case StmtKind::ForEach: return CompileForEach(stmt);
        case StmtKind::Switch: return CompileSwitch(stmt);
        case StmtKind::Break:
            if (!loops.empty()) loops.back().breaks.push_back(Emit(Op::Jump, stmt.span));
            return;
        case StmtKind::Continue:
            if (!loops.empty()) loops.back().continues.push_back(Emit(Op::Jump, stmt.span));
            return;
        case StmtKind::Return: return CompileReturn(stmt);
        case StmtKind::Expression:
            if (CompileExpr(stmt.value) > NothingType) Emit(Op::Pop, stmt.span);
            return;
    }
}

// The local exists only behind its value, which cannot see it.
void Compiler::CompileDeclare(const Stmt& stmt) {
    TypeId type = ResolveType(*unit, stmt.type);
    NameId name = names.Intern(stmt.name);
    if (InInnermostScope(name)) {
        Error(stmt.span, Quoted(stmt.name) + " ja foi declarada aqui");
    } else if (globalNames.Has(name) || IsBehaviourField(name)) {
        Error(stmt.span, Quoted(stmt.name) + " ja existe fora deste bloco",
              "use outro nome, para nao esconder a de fora");
    }
    if (stmt.value < 0) {
        EmitDefault(type, stmt.span);
    } else {
        TypeId actual = CompileValue(stmt.value, type);
        CheckAssign(type, actual, stmt.value, std::string(stmt.name));
    }
    EmitIndexed(Op::StoreLocal, NewLocal(name, type, true), stmt.span);
}

void Compiler::CompileCondition(std::int32_t expr) {
    TypeId type = CompileExpr(expr);
    if (type == FailedType || type == BoolType) return;
    Error(SpanOf(expr), "uma condicao e logica, e esta e " + TypeName(type),
          type == IntType ? "para comparar, escreva \"== 0\" ou \"> 0\"" : "");
}

void Compiler::CompileIf(const Stmt& stmt) {
    std::vector<std::int32_t> ends;
    for (const Branch& branch : unit->Branches(stmt.branches)) {
        CompileCondition(branch.condition);
        std::int32_t skip = Emit(Op::JumpIfFalse, branch.span);
        CompileBlock(branch.body);
        ends.push_back(Emit(Op::Jump, branch.span));
        PatchJump(skip);
    }
    if (stmt.hasElse) CompileBlock(stmt.elseBody);
    PatchJumps(ends);
}

void Compiler::CompileReturn(const Stmt& stmt) {
    bool returnsValue = returnType != NothingType;
    if (stmt.value < 0) {
        if (returnsValue) {
            Error(stmt.span, "esta funcao devolve " + TypeName(returnType) + ", entao \"retorne\" precisa de um valor");
        }
        Emit(Op::Return, stmt.span);
        return;
    }
    TypeId type = CompileValue(stmt.value, returnType);
    if (!returnsValue) {
        Error(stmt.span, "um procedimento nao devolve valor", "para devolver um valor, declare uma \"funcao\"");
        Emit(Op::Pop, stmt.span);
        Emit(Op::Return, stmt.span);
        return;
    }
    if (type != FailedType && returnType != FailedType && type != returnType) {
        Error(SpanOf(stmt.value), "esta funcao devolve " + TypeName(returnType) + ", e este valor e " + TypeName(type));
    }
    Emit(Op::ReturnValue, stmt.span);
}

void Compiler::CompileSwitch(const Stmt& stmt) {
    PushScope();
    TypeId subject = CompileExpr(stmt.value);
    std::int32_t slot = HiddenLocal(subject);
    EmitIndexed(Op::StoreLocal, slot, stmt.span);
    std::vector<std::int32_t> ends;
    for (const Branch& branch : unit->Branches(stmt.branches)) {
        std::vector<std::int32_t> hits;
        CompileCaseTests(branch, subject, slot, hits);
        std::int32_t skip = Emit(Op::Jump, branch.span);
        PatchJumps(hits);
        CompileBlock(branch.body);
        ends.push_back(Emit(Op::Jump, branch.span));
        PatchJump(skip);
    }
    if (stmt.hasElse) CompileBlock(stmt.elseBody);
    PatchJumps(ends);
    CloseScope();
}

// `hits` takes the jumps of the values that match.
void Compiler::CompileCaseTests(const Branch& branch, TypeId subject, std::int32_t slot,
                                std::vector<std::int32_t>& hits) {
    for (std::int32_t value : unit->Items(branch.values)) {
        EmitIndexed(Op::LoadLocal, slot, branch.span);
        TypeId type = CompileValue(value, subject);
        if (type != FailedType && subject != FailedType && type != subject) {
            Error(SpanOf(value), "o \"escolha\" compara " + TypeName(subject) + ", e este caso e " + TypeName(type));
        } else if (subject != FailedType && !program->types.Comparable(subject)) {
            Error(SpanOf(value), TypeName(subject) + " nao se compara com \"==\"");
        }
        Emit(Op::Compare, branch.span);
        hits.push_back(Emit(Op::JumpIfTrue, branch.span));
    }
}

bool Compiler::AlwaysReturns(Block block) const {
    if (block.count == 0) return false;
    std::int32_t last = unit->Statements(block).back();
    const Stmt& stmt = unit->stmts[static_cast<std::size_t>(last)];
    if (stmt.kind == StmtKind::Return) return true;
    if (stmt.kind != StmtKind::If && stmt.kind != StmtKind::Switch) return false;
    if (!stmt.hasElse || !AlwaysReturns(stmt.elseBody)) return false;
    for (const Branch& branch : unit->Branches(stmt.branches)) {
        if (!AlwaysReturns(branch.body)) return false;
    }
    return true;
}

}  // namespace tavrel::core::script
