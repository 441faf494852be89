#include "core/script/runtime/vm.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "core/script/runtime/prepared.h"
#include "core/script/runtime/value_text.h"
#include "tests/core/script/compiler/compile_support.h"

namespace tavrel::core::script {

struct VmTesting {
    // Any budget counts as nearly spent: every function runs in exact code.
    static void RunExactly(Vm& vm) { vm.prepared->margin = std::int64_t{1} << 60U; }
};

namespace {

Value NewText(Vm& vm, const char* text) {
    return MakeObject(Kind::Text, static_cast<std::uint32_t>(vm.heap.NewText(text)));
}

// Answers as the test says, and notes what it was asked.
class RecordingHost : public Host {
public:
    bool Call(HostCall& call) override {
        const Vm::Frame& frame = call.vm->frames.back();
        asked += call.vm->program->At(frame.function).name + " ";
        asked += std::to_string(frame.pc) + "/" + std::to_string(call.vm->used);
        for (std::uint32_t i = 0; i < call.count; ++i) asked += " " + ValueToText(call.vm->heap, call.args[i]);
        asked += ";";
        return answer(call);
    }
    std::string asked;
    std::function<bool(HostCall&)> answer = [](HostCall&) { return true; };
};

// A machine in a world over a compiled script, and all that a run leaves to be seen.
struct Machine {
    explicit Machine(const Compiled& compiled) : vm(compiled.program) {
        EXPECT_EQ(compiled.reports, "");
        vm.print = [this](const std::string& text) { printed += text + ";"; };
        vm.host = &host;
    }
    bool Tick() {
        const Value step = MakeReal(0.5F);
        return vm.RunHook(HookKind::Tick, &step, 1);
    }
    [[nodiscard]] FunctionId Function(const std::string& name) const {
        FunctionId function(0);
        while (vm.program->At(function).name != name) ++function.value;
        return function;
    }

    RecordingHost host;
    std::string printed;
    Vm vm;
};

// A jump over more instructions than fit in sixteen bits.
TEST(VmForms, CountLongJumps) {
    std::string lines;
    for (int i = 0; i < 10'000; ++i) lines += " n = n + m\n";
    const Compiled script = CompileScript(
        "modulo M\nestado\n n: inteiro\n m: inteiro = 2\nfim\n"
        "procedimento f()\nfim\na cada tick (passo: real)\nse m == 2\n m = 3\nsenao\n" +
        lines + "fim\nf()\nfim\n");
    for (bool exactly : {false, true}) {
        Machine machine(script);
        if (exactly) VmTesting::RunExactly(machine.vm);
        for (const std::uint64_t used : {10U, 40'007U}) {
            EXPECT_TRUE(machine.vm.Start() && machine.Tick());
            EXPECT_EQ(machine.vm.used, used);
        }
        EXPECT_EQ(machine.vm.globals[0].Int(), 30'000);
    }
}

TEST(VmRuns, GoOnBehindAFault) {
    const Compiled script = CompileScript(
        "modulo M\nestado\n g: texto\n n: inteiro\nfim\n"
        "a cada tick (passo: real)\n n = n + 1\n g = g + \"x\"\n s: texto = g + g\n"
        " se n == 1 e 1 / (n - 1) == 0\n  n = 9\n fim\nfim\n");
    Machine machine(script);
    EXPECT_EQ(machine.vm.DescribeFault(), "");
    EXPECT_TRUE(machine.vm.Start());
    EXPECT_FALSE(machine.Tick());
    EXPECT_EQ(machine.vm.DescribeFault(), "m.tvl:10: erro: divisao por zero");
    machine.vm.used = 77;
    EXPECT_TRUE(machine.vm.Start());
    EXPECT_TRUE(machine.vm.RunHook(HookKind::Draw, nullptr, 0));  // the script has none
    EXPECT_EQ(machine.vm.used, 77U);
    EXPECT_TRUE(machine.vm.faulted);
    EXPECT_TRUE(machine.Tick());
    EXPECT_EQ(machine.vm.DescribeFault() + machine.vm.faultFunction, "");
    EXPECT_EQ(ValueToText(machine.vm.heap, machine.vm.globals[0]), "xx");
    Value result;
    EXPECT_FALSE(machine.vm.RunFunction(FunctionId(99), nullptr, 0, result));
    EXPECT_FALSE(machine.vm.RunFunction(FunctionId(), nullptr, 0, result));
    EXPECT_EQ(machine.vm.faultMessage, "funcao desconhecida");
    machine.vm.faulted = false;
    machine.vm.faultMessage.clear();
    EXPECT_FALSE(machine.vm.Execute(FunctionId(0), 1, result));  // the stack is empty
    EXPECT_EQ(machine.vm.faultMessage, "funcao desconhecida");
}

TEST(VmRuns, HoldSixtyFourFrames) {
    const Compiled script = CompileScript(
        "modulo M\nfuncao f(n: inteiro): inteiro\n se n <= 1\n  retorne 1\n fim\n"
        " retorne 1 + f(n - 1)\nfim\n");
    Machine machine(script);
    Value result;
    Value depth = MakeInt(64);
    EXPECT_TRUE(machine.vm.RunFunction(FunctionId(0), &depth, 1, result));
    EXPECT_EQ(result.Int(), 64);
    depth = MakeInt(65);
    EXPECT_FALSE(machine.vm.RunFunction(FunctionId(0), &depth, 1, result));
    EXPECT_EQ(machine.vm.DescribeFault(),
              "m.tvl:6: erro: chamadas demais encaixadas (64); ha uma funcao que chama a si mesma sem parar");
}

class VmHost : public testing::Test {
protected:
    const Compiled script = CompileScript(R"(modulo M
estado
    g: texto
fim
funcao soma(x: real, z: real): real
    retorne x + z
fim
funcao cai(x: real, z: real): real
    retorne soma(x, z) + real(1 / inteiro(z - 2.0))
fim
a cada tick (passo: real)
    para i de 1 ate 3
        fisica.reiniciar()
    fim
    g = "a" + mapa.nome
    g = g + texto(soma(1.0, mapa.altura(1.0, cai(passo, 3.0))))
fim
)");
    Machine machine{script};
};

TEST_F(VmHost, SeesItsCallsAndAnswers) {
    machine.host.answer = [](HostCall& call) {
        if (call.function == 1) call.result = NewText(*call.vm, "M");
        if (call.function == 6) call.result = MakeReal(0.25F);
        return true;
    };
    ASSERT_TRUE(machine.vm.Start() && machine.Tick()) << machine.vm.DescribeFault();
    EXPECT_EQ(machine.host.asked,
              "a cada tick 24/20;a cada tick 24/35;a cada tick 24/50;a cada tick 31/66;a cada tick 40/91 1 4.5;");
    EXPECT_EQ(ValueToText(machine.vm.heap, machine.vm.globals[0]), "aM1.25");
    const std::uint64_t live = machine.vm.heap.live;
    EXPECT_TRUE(machine.Tick());
    EXPECT_EQ(machine.vm.heap.live, live);
}

TEST_F(VmHost, FailsCallsWithItsFaultOrAGeneralOne) {
    machine.vm.host = nullptr;
    EXPECT_TRUE(machine.vm.Start());
    const std::uint64_t live = machine.vm.heap.live;
    EXPECT_FALSE(machine.Tick());
    EXPECT_EQ(machine.vm.DescribeFault(),
              "m.tvl:13: erro: esta funcao precisa do mundo, e nao ha mundo nesta execucao (\"tavrel_script executar\" "
              "roda o script sem mapa)");
    machine.vm.host = &machine.host;
    for (const char* message : {"", "sem mapa"}) {
        machine.host.answer = [message](HostCall& call) {
            if (call.function != 1) return true;
            call.result = NewText(*call.vm, "M");
            if (*message != '\0') call.vm->Fail(message);
            return false;
        };
        EXPECT_FALSE(machine.Tick());
        const std::string expected = *message != '\0' ? message : "a funcao do mundo falhou";
        EXPECT_EQ(machine.vm.DescribeFault(), "m.tvl:15: erro: " + expected);
        EXPECT_EQ(machine.vm.heap.live, live);
        EXPECT_EQ(machine.vm.stack.Size() + machine.vm.frames.size(), 0U);
    }
}

// A world may run functions of the script while it answers, with arguments that stand on the machine's own stack.
TEST_F(VmHost, MayRunFunctionsMeanwhile) {
    std::string runs;
    machine.host.answer = [this, &runs](HostCall& call) {
        if (call.function == 1) call.result = NewText(*call.vm, "M");
        if (call.function != 6) return true;
        Value lost;
        const Value bad[] = {MakeReal(0.0F), MakeReal(2.0F)};
        EXPECT_FALSE(call.vm->RunFunction(machine.Function("cai"), bad, 2, lost));
        runs += call.vm->DescribeFault() + " ";
        EXPECT_TRUE(call.vm->RunFunction(machine.Function("soma"), call.args, 2, call.result));
        runs += std::to_string(call.vm->used);
        return true;
    };
    ASSERT_TRUE(machine.vm.Start() && machine.Tick()) << machine.vm.DescribeFault();
    EXPECT_EQ(runs, "m.tvl:9: erro: divisao por zero 4");
    EXPECT_EQ(machine.vm.used, 100U);
    EXPECT_EQ(ValueToText(machine.vm.heap, machine.vm.globals[0]), "aM6.5");
    EXPECT_EQ(machine.vm.frames.size(), 0U);
}

// A function of the world may call the script that calls the world; that ends, too.
TEST(VmRuns, HoldSixtyFourFramesThroughTheWorld) {
    const Compiled script = CompileScript(
        "modulo M\na cada tick (passo: real)\n alto()\nfim\n"
        "funcao alto(): real\n retorne mapa.altura(1.0, 2.0)\nfim\n");
    Machine machine(script);
    int calls = 0;
    machine.host.answer = [&](HostCall& call) {
        ++calls;
        return call.vm->RunFunction(machine.Function("alto"), nullptr, 0, call.result);
    };
    EXPECT_FALSE(machine.vm.Start() && machine.Tick());
    EXPECT_EQ(calls, 63);
    EXPECT_EQ(machine.vm.faultMessage, "chamadas demais encaixadas (64); ha uma funcao que chama a si mesma sem parar");
    EXPECT_EQ(machine.vm.frames.size() + machine.vm.stack.Size(), 0U);
}

TEST(VmValues, HaveDefaultsByType) {
    const Compiled script = CompileScript(R"(modulo M
enumeracao E = A, B
registro P
    v: vetor3
    d: dicionario de texto para E
    q: Q
fim
registro Q
    l: lista de P
    n: inteiro = 7
fim
estado
    a: P
    b: cor
    c: E
    d: vetor2
    f: logico
    g: objeto
    h: som
    i: real
fim
)");
    Machine machine(script);
    Vm& vm = machine.vm;
    std::string defaults;
    for (const Value& global : vm.globals) defaults += ValueToText(vm.heap, global) + " ";
    EXPECT_EQ(
        defaults,
        "{vetor3(0, 0, 0), [], {[], 0}} cor(255, 255, 255, 255) 8589934592 vetor2(0, 0) falso objeto(0) som(0) 0 ");
    const std::uint32_t place = vm.globals[2].EnumIndex();
    EXPECT_EQ(vm.EnumText(vm.globals[2]) + vm.EnumText(MakeEnum(place, 2)) + vm.EnumText(MakeEnum(99, 3)), "A23");

    const Value list = vm.NewList(vm.globals.data() + 1, 2);
    const Value fields[] = {list, list, list, list};
    const RecordId record = vm.heap.At(vm.globals[0]).record;
    EXPECT_EQ(ValueToText(vm.heap, vm.NewRecord(record, fields, 2)),
              "{[cor(255, 255, 255, 255), 8589934592], [cor(255, 255, 255, 255), 8589934592], {[], 0}}");
    EXPECT_EQ(vm.heap.At(list).refs, 3);
    EXPECT_EQ(vm.NewRecord(record, fields, 4).kind, Kind::Record);
    EXPECT_EQ(vm.heap.At(list).refs, 6);
    EXPECT_EQ(vm.NewRecord(record, fields, -1).kind, Kind::Record);
    EXPECT_EQ(vm.NewRecord(RecordId(99), fields, 1).kind, Kind::Nothing);
    EXPECT_EQ(vm.DescribeFault(), "m.tvl:1: erro: registro desconhecido");
    vm.Fail("outra");
    vm.faultFile = FileId(1);
    EXPECT_EQ(vm.DescribeFault(), "script:1: erro: registro desconhecido");
}

TEST(VmValues, LackMemoryOnlyWhileThereIsNone) {
    const Compiled script = CompileScript(
        "modulo M\nregistro P\n a: texto\n b: texto\nfim\nestado\n p: P\nfim\nao reiniciar mapa\n p.a = \"x\"\nfim\n");
    Machine machine(script);
    Vm& vm = machine.vm;
    const std::uint64_t live = vm.heap.live;
    vm.heap.limit = vm.heap.bytes + 3 * Heap::ObjectCost;  // not for the second text
    EXPECT_EQ(vm.DefaultValue(script.program.globals[0].type).kind, Kind::Nothing);
    EXPECT_EQ(vm.NewRecord(vm.heap.At(vm.globals[0]).record, nullptr, 0).kind, Kind::Nothing);
    EXPECT_EQ(vm.heap.live, live);
    EXPECT_TRUE(vm.RunHook(HookKind::ResetMap, nullptr, 0)) << vm.DescribeFault();
}

TEST(VmValues, InsertIntoADictionaryOnlyWhatFits) {
    const Compiled script = CompileScript(
        "modulo M\nestado\n d: dicionario de inteiro para inteiro\nfim\nao reiniciar mapa\n d[1] = 2\nfim\n");
    Machine machine(script);
    Vm& vm = machine.vm;
    vm.heap.limit = vm.heap.bytes + 2 * Heap::ItemCost - 1;
    EXPECT_FALSE(vm.RunHook(HookKind::ResetMap, nullptr, 0));
    EXPECT_EQ(vm.faultMessage, "o script passou do limite de memoria");
    ++vm.heap.limit;
    EXPECT_TRUE(vm.RunHook(HookKind::ResetMap, nullptr, 0)) << vm.DescribeFault();
    EXPECT_EQ(vm.heap.bytes, vm.heap.limit);
    EXPECT_TRUE(vm.RunHook(HookKind::ResetMap, nullptr, 0)) << vm.DescribeFault();  // replaces
}

// The compiler never asks for one, but other writers of programs may.
TEST(VmValues, RecordsOfGivenFields) {
    Program program = CompileScript(
                          "modulo M\nregistro P\n t: texto\n n: inteiro\nfim\n"
                          "funcao f(t: texto, n: inteiro): P\n p: P\n retorne p\nfim\n")
                          .program;
    const auto code = [](Op op, std::uint32_t c) { return Instruction{static_cast<std::uint8_t>(op), 0, 0, c}; };
    Function& function = program.functions[0];
    const auto record = static_cast<std::uint32_t>(program.records.size() - 1);
    function.code = {code(Op::LoadLocal, 0), code(Op::LoadLocal, 1), code(Op::MakeRecord, record),
                     code(Op::ReturnValue, 0)};
    function.spans.assign(function.code.size(), 0);
    for (bool exactly : {false, true}) {
        Vm vm(program);
        if (exactly) VmTesting::RunExactly(vm);
        const Value args[] = {NewText(vm, "a"), MakeInt(7)};
        Value result;
        EXPECT_TRUE(vm.RunFunction(FunctionId(0), args, 2, result)) << vm.DescribeFault();
        EXPECT_EQ(ValueToText(vm.heap, result), "{a, 7}");
        EXPECT_EQ(vm.heap.At(result).items.size(), 2U);
    }
}

TEST(VmRuns, PassOverWhatIsNoOperation) {
    Program program;
    program.functions.push_back({"f",
                                 0,
                                 0,
                                 NothingType,
                                 {{60, 0, 0, 0}, {255, 1, 1, 1}, {static_cast<std::uint8_t>(Op::Return)}},
                                 {0, 0, 0},
                                 {}});
    Vm vm(program);
    Value result;
    EXPECT_TRUE(vm.RunFunction(FunctionId(0), nullptr, 0, result));
    EXPECT_EQ(vm.used, 3U);
}

}  // namespace
}  // namespace tavrel::core::script
