// Programs that no compiler made, and worlds that answer anything: they may fail, but never reach outside a vector.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "core/canonical_writer.h"
#include "core/script/runtime/value_text.h"
#include "core/script/runtime/vm.h"
#include "core/script/state/script_state.h"
#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {

namespace {

constexpr const char* Invalid = "o codigo deste programa nao e valido";

Instruction Make(Op op, int a = 0, int b = 0, std::uint32_t c = 0) {
    return {static_cast<std::uint8_t>(op), static_cast<std::uint8_t>(a), static_cast<std::uint16_t>(b), c};
}

Function MakeFunction(std::vector<Instruction> code, std::int32_t locals) {
    code.push_back(Make(Op::Return));
    const std::vector<std::uint32_t> spans(code.size());
    return {"f", 0, locals, NothingType, std::move(code), spans, FileId(0)};
}

std::string FaultOf(const Program& program) {
    Vm vm(program);
    Value result;
    EXPECT_FALSE(vm.RunFunction(FunctionId(0), nullptr, 0, result));
    return vm.faultMessage;
}

TEST(BadProgram, IsRefused) {
    const Instruction one = Make(Op::PushInt);
    const Instruction sum = Make(Op::AddInt);
    const Instruction store = Make(Op::StoreLocal);
    const Instruction load = Make(Op::LoadLocal);
    const auto native = [](Native called, int count) {
        return Make(Op::CallNative, count, 0, static_cast<std::uint32_t>(called));
    };
    const std::vector<std::vector<Instruction>> codes = {
        {Make(Op::PushInt, 0, 0, 1)},
        {Make(Op::PushText, 0, 0, 1)},
        {Make(Op::LoadLocal, 0, 0, 1)},
        {one, Make(Op::StoreGlobal, 0, 0, 1)},
        {one, Make(Op::Dup2)},
        {Make(Op::Jump, 0, 0, 2)},
        {Make(Op::NewList), Make(Op::ForEachGuard, 0, 1, 0)},
        {Make(Op::NewList), store, Make(Op::ForEachGuard, 0, 0, 1)},
        {one, one, one, one, one, Make(Op::MakeVector, 5)},
        {one, Make(Op::VecGet, 4)},
        {one, one, Make(Op::Compare, 6)},
        {Make(Op::NewRecord, 0, 0, 1)},
        {Make(Op::MakeRecord)},
        {Make(Op::MakeList, 1)},
        {Make(Op::Raise, 0, 0, 1)},
        {Make(Op::ReturnValue)},
        {one, Make(Op::Call, 1)},
        {one, native(Native::ListAppend, 1)},
        {one, native(Native::MaxInt, 1)},
        // Well formed, and wrong in what the operands are.
        {one, Make(Op::FieldGet)},
        {one, one, sum, store, load, Make(Op::FieldGet)},
        {one, one, sum, store, load, one, Make(Op::FieldSet)},
        {one, one, Make(Op::ListGet)},
        {Make(Op::LoadGlobal), one, one, Make(Op::ListSet)},
        {one, one, one, Make(Op::ListSet)},
        {one, one, Make(Op::DictGet)},
        {one, one, one, Make(Op::DictSet)},
        {one, one, Make(Op::ConcatText)},
        {one, native(Native::ListSize, 1)},
        {one, one, native(Native::ListAppend, 2)},
        {one, one, one, native(Native::DictObtain, 3)},
        {one, store, Make(Op::ForEachGuard)},
        {Make(Op::NewRecord), Make(Op::FieldGet, 0, 0, 1)},
        {Make(Op::NewRecord), store, load, Make(Op::FieldGet, 0, 0, 1)},
        {Make(Op::NewRecord), store, load, one, Make(Op::FieldSet, 0, 0, 1)},
    };
    for (const std::vector<Instruction>& code : codes) {
        Program program;
        program.integers = {1};
        program.globals.push_back({"g", IntType, GlobalCategory::State, false});
        program.records.push_back({"R", {"x"}, {IntType}, {}});
        program.functions.push_back(MakeFunction(code, 1));
        EXPECT_EQ(FaultOf(program), Invalid) << ListFunction(program, program.functions[0]);
    }
    Program program;
    program.functions.push_back(MakeFunction({}, 0));
    program.functions[0].params = 1;
    EXPECT_EQ(FaultOf(program), Invalid);
    program.functions[0].params = 0;
    program.functions[0].code = {Make(Op::PushNothing)};  // and runs on behind it
    EXPECT_EQ(FaultOf(program), Invalid);
    program.functions[0].spans.clear();
    EXPECT_EQ(FaultOf(program), Invalid);
}

TEST(BadProgram, MeetsTheLimitOfMemory) {
    Program endless;  // a record that holds two of itself
    const TypeId type = endless.types.Record(0, "R");
    endless.records.push_back({"R", {"a", "b"}, {type, type}, {}});
    endless.functions.push_back(MakeFunction({Make(Op::NewRecord)}, 0));
    EXPECT_EQ(FaultOf(endless), "o script passou do limite de memoria");
    endless.globals.push_back({"g", type, GlobalCategory::State, false});
    endless.functions[0].code = {Make(Op::PushNothing), Make(Op::Return)};
    EXPECT_EQ(FaultOf(endless), "o script passou do limite de memoria");
}

// Ways that part and meet above deep operands, returns among them: time and memory stay in proportion.
TEST(BadProgram, IsReadInProportionToItsSize) {
    constexpr std::uint32_t Count = 40'000;
    std::vector<Instruction> code(Count, Make(Op::LoadGlobal));
    for (std::uint32_t i = 0; i < Count; ++i) {
        code.push_back(Make(Op::LoadLocal));
        code.push_back(Make(Op::JumpIfTrue, 0, 0, static_cast<std::uint32_t>(code.size()) + 2));
        code.push_back(Make(i % 2 == 0 ? Op::Return : Op::PushNothing));
    }
    Program program;
    program.globals.resize(1);
    program.functions.push_back(MakeFunction(std::move(code), 1000));
    for (const std::uint64_t budget : {std::uint64_t{10}, std::uint64_t{2'000'000}}) {
        Vm vm(program);
        vm.budget = budget;
        Value result;
        EXPECT_EQ(vm.RunFunction(FunctionId(0), nullptr, 0, result), budget > 10);
    }
}

// Every kind of answer: objects of the right kind and of a wrong one, released ones, and such as never were.
class AnyHost : public Host {
public:
    explicit AnyHost(std::mt19937& givenRandom) : random(givenRandom) {}

    Value Any(Vm& vm) {
        const Kind kind = static_cast<Kind>(random() % 17);
        Value value = MakeWord(kind, static_cast<std::int64_t>(random() % 40));
        if (ComponentCount(value.kind) > 0) value = MakeVector(value.kind, 1.0F, 2.0F);
        if (value.kind == Kind::Text) value.word = vm.heap.NewText("t");
        if (value.kind == Kind::List && random() % 2 == 0) value = vm.NewList(nullptr, 0);
        const bool there = OnHeap(value.kind) && value.ObjectIndex() < vm.heap.objects.size();
        if (there && value.kind != Kind::Text && vm.heap.At(value).refs > 0) ++vm.heap.At(value).refs;
        return value;
    }
    bool Call(HostCall& call) override {
        for (std::uint32_t i = 0; i < call.count; ++i) (void)ValueToText(call.vm->heap, call.args[i]);
        call.result = Any(*call.vm);
        return random() % 8 != 0;
    }

private:
    std::mt19937& random;
};

void Mutate(std::mt19937& random, Program& program) {
    Function& function = program.functions[random() % program.functions.size()];
    Instruction& instruction = function.code[random() % function.code.size()];
    switch (random() % 9) {
        case 0: instruction.op = static_cast<std::uint8_t>(random() % 61); break;
        case 1: instruction.a = static_cast<std::uint8_t>(random() % 6); break;
        case 2: instruction.b = static_cast<std::uint16_t>(random() % 8); break;
        case 3: instruction.c = static_cast<std::uint32_t>(random() % (function.code.size() + 2)); break;
        case 4: instruction = function.code[random() % function.code.size()]; break;
        case 5: function.locals = static_cast<std::int32_t>(random() % 12); break;
        case 6: function.returnType = TypeId(std::size_t{random() % 4}); break;
        case 7: program.globals[random() % program.globals.size()].type = TypeId(std::size_t{random() % 20}); break;
        default: {
            RecordInfo& record = program.records[random() % program.records.size()];
            if (!record.fieldTypes.empty()) record.fieldTypes[0] = TypeId(std::size_t{random() % 20});
            if (random() % 4 == 0) record.fieldTypes.pop_back();
        }
    }
}

void RunAll(std::mt19937& random, const Program& program) {
    Vm vm(program);
    AnyHost host(random);
    vm.host = &host;
    vm.heap.limit = 1'000'000;
    vm.budget = random() % 3000;
    (void)vm.Start();
    for (std::size_t i = 0; i < 4 * program.functions.size(); ++i) {
        std::vector<Value> args(random() % 4);
        for (Value& value : args) value = host.Any(vm);
        const FunctionId function(random() % program.functions.size());
        Value result;
        if (vm.RunFunction(function, args.data(), static_cast<int>(args.size()), result)) vm.heap.Drop(result);
        (void)vm.DescribeFault();
        ASSERT_EQ(vm.frames.size() + vm.stack.Size(), 0U);
    }
    CanonicalWriter writer(false);
    WriteScriptState(vm, writer, nullptr);
}

TEST(BadProgram, StaysInsideWhateverItDoes) {
    const std::string common =
        "modulo M\nregistro P\n v: vetor3\n t: texto\nfim\nestado\n n: inteiro = 3\n g: texto\n"
        " p: P\n l: lista de texto = [\"b\", \"a\"]\n d: dicionario de texto para P\nfim\n";
    const std::string scripts[] = {
        "procedimento f(q: P, i: inteiro)\n q.v.x = q.v.y + real(i)\n p = copiar(q)\n d[l[i]] = q\n"
        " g = q.t + g + l[0]\nfim\nao reiniciar mapa\n q: P\n f(q, 1)\n"
        " escreva(formatar(\"{}{}\", d, p))\nfim\n",
        "funcao f(i: inteiro): inteiro\n para cada s em l\n  se s > g e nao (i == n) ou s == \"b\"\n   g = g + s\n"
        "   l[0] = g\n  fim\n fim\n se i > 0\n  retorne f(i - 1) % 3\n fim\n retorne tamanho(l)\nfim\n"
        "ao reiniciar mapa\n n = f(4)\n l.ordenar()\n p.t = texto(d.obter(g, p).v)\nfim\n",
        "a cada tick (passo: real)\n para i de 0 ate 4\n  p.v = p.v * passo + vetor3(1, mapa.altura(passo, 2.0), 0)\n"
        "  g = g + mapa.nome\n  n = n * 7 / (i + 1)\n  l.adicionar(g)\n  d[g] = p\n fim\n"
        " para cada o em mapa.objetos\n  p.v.x = o.x\n  fisica.impulso(fisica.corpo_de(o), p.v)\n fim\nfim\n",
    };
    std::mt19937 random(7);
    for (const std::string& script : scripts) {
        const Compiled compiled = CompileScript(common + script);
        ASSERT_EQ(compiled.reports, "");
        for (int round = 0; round < 1500; ++round) {
            Program program = compiled.program;
            for (std::size_t i = random() % 5 + 1; i > 0; --i) Mutate(random, program);
            RunAll(random, program);
        }
    }
}

}  // namespace

}  // namespace tavrel::core::script
