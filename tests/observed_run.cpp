#include "tests/observed_run.h"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "core/canonical_writer.h"
#include "core/script/runtime/prepared.h"
#include "core/script/runtime/value_text.h"
#include "core/script/runtime/vm.h"
#include "core/script/state/script_state.h"
#include "core/script/world/world_api.h"
#include "core/sha256.h"

namespace tavrel::core::script {

struct VmTesting {
    // Any budget counts as nearly spent: every function runs in exact code.
    static void RunExactly(Vm& vm) { vm.prepared->margin = std::int64_t{1} << 60U; }
};

}  // namespace tavrel::core::script

namespace tavrel::tests {

namespace {

using namespace core::script;

constexpr std::uint64_t MemoryLimit = 4'000'000;
constexpr int Ticks = 3;

// A value of the type that the world's table names.
Value ValueOf(Vm& vm, std::string_view type, std::uint64_t number) {
    if (type == "inteiro") return MakeInt(static_cast<std::int64_t>(number % 7) - 2);
    if (type == "real") return MakeReal(static_cast<float>(number % 9) - 3.5F);
    if (type == "logico") return MakeBool(number % 2 == 0);
    if (type == "texto") return MakeObject(Kind::Text, static_cast<std::uint32_t>(vm.heap.NewText("mundo")));
    if (type == "objeto") return MakeWord(Kind::Object, static_cast<std::int64_t>(number % 3));
    if (type == "corpo") return MakeWord(Kind::Body, static_cast<std::int64_t>(number % 3));
    if (type == "som") return MakeWord(Kind::Sound, static_cast<std::int64_t>(number % 3));
    if (type == "vetor2") return MakeVector(Kind::Vec2, 1.0F, 2.0F);
    if (type == "vetor3") return MakeVector(Kind::Vec3, 1.0F, 2.0F, 3.0F);
    if (type == "cor") return MakeVector(Kind::Color, 1.0F, 0.5F, 0.25F, 1.0F);
    if (type.starts_with("lista")) return vm.NewList(nullptr, 0);
    Value record;
    for (std::size_t i = 0; i < vm.program->records.size(); ++i) {
        if (vm.program->records[i].name != type) continue;
        if (!vm.NewRecordValue(RecordId(i), record)) return {};
    }
    return record;
}

std::string_view ResultOf(std::uint32_t function) {
    const Api& api = WorldApi();
    for (const ApiFunction& row : api.functions) {
        if (row.id == function) return row.result;
    }
    for (const ApiNamespaceField& row : api.namespaceFields) {
        if (row.id == function) return row.type;
    }
    for (const ApiValueField& row : api.valueFields) {
        if (row.id == function) return row.type;
    }
    if (function == api.inputValue) return "real";
    return function == api.commandSend ? "" : "logico";
}

class World : public Host {
public:
    bool Call(HostCall& call) override {
        ++calls;
        const std::string_view type = ResultOf(call.function);
        if (!type.empty()) call.result = ValueOf(*call.vm, type, calls);
        return calls % 50 != 0;
    }

private:
    std::uint64_t calls = 0;
};

bool TakesStep(HookKind hook) {
    return hook == HookKind::Tick || hook == HookKind::Frame || hook == HookKind::Draw;
}

void RunBehaviours(Vm& vm, const Value& step) {
    for (const BehaviourInfo& behaviour : vm.program->behaviours) {
        Value args[] = {Value(), step};
        if (!vm.NewRecordValue(behaviour.record, args[0])) continue;
        Value result;
        bool good = !behaviour.initializer || vm.RunFunction(behaviour.initializer, args, 1, result);
        for (std::size_t kind = 0; kind < behaviour.hooks.size(); ++kind) {
            const FunctionId hook = behaviour.hooks[kind];
            if (!good || !hook) continue;
            const std::int32_t params = vm.program->At(hook).params;
            if (params < 1 || params > 2) continue;
            args[1] = TakesStep(static_cast<HookKind>(kind)) ? step : MakeWord(Kind::Object, 1);
            good = vm.RunFunction(hook, args, params, result);
            if (good) vm.heap.Drop(result);
        }
        vm.heap.Drop(args[0]);
    }
}

// The functions that the world calls by name.
void RunReserved(Vm& vm, const Value& real) {
    constexpr int Params[ReservedFunctionCount] = {2, 3, 2, 0, 0, 1};
    for (std::size_t kind = 0; kind < vm.program->reserved.size(); ++kind) {
        if (!vm.program->reserved[kind]) continue;
        Value args[] = {real, real, Value()};
        if (kind == static_cast<std::size_t>(ReservedFunction::PlayerFocus)) args[0] = MakeInt(1);
        if (Params[kind] == 3) args[2] = vm.NewList(nullptr, 0);
        Value result;
        if (vm.RunFunction(vm.program->reserved[kind], args, Params[kind], result)) vm.heap.Drop(result);
        vm.heap.Drop(args[2]);
    }
}

}  // namespace

std::string ObservedRun(const Program& program, bool exactly, std::uint64_t budget) {
    Vm vm(program);
    World world;
    std::string seen;
    vm.print = [&seen](const std::string& text) { seen += text + "\n"; };
    vm.host = &world;
    vm.budget = budget;
    vm.heap.limit = MemoryLimit;
    vm.SeedRandom(1, 0);
    if (exactly) VmTesting::RunExactly(vm);
    const Value step = MakeReal(0.25F);
    std::string last;
    const auto note = [&](bool) {
        const std::string fault =
            vm.faulted ? vm.DescribeFault() + " in " + vm.faultFunction + " at " + std::to_string(vm.faultOffset) + "\n"
                       : "";
        const std::string line = fault + "used " + std::to_string(vm.used) + ", live " + std::to_string(vm.heap.live) +
                                 ", bytes " + std::to_string(vm.heap.bytes) + "\n";
        if (line != last) seen += line;
        last = line;
    };
    note(vm.Start());
    const auto runHooks = [&](std::initializer_list<HookKind> hooks) {
        for (const HookKind hook : hooks) note(vm.RunHook(hook, &step, TakesStep(hook) ? 1 : 0));
    };
    runHooks({HookKind::Start, HookKind::LoadMap, HookKind::ResetMap});
    for (int i = 0; i < Ticks; ++i) {
        runHooks({HookKind::Tick, HookKind::Frame, HookKind::Draw, HookKind::Camera});
        RunBehaviours(vm, step);
        note(true);
        RunReserved(vm, step);
        note(true);
    }
    runHooks({HookKind::Interrupt, HookKind::Shutdown});
    if (!vm.frames.empty() || vm.stack.Size() != 0) seen += "operands or frames left behind\n";
    core::CanonicalWriter writer(false);
    WriteScriptState(vm, writer, "script");
    return seen + writer.failure + core::ToHex(core::HashSha256(writer.bytes.data(), writer.bytes.size())) + "\n";
}

}  // namespace tavrel::tests
