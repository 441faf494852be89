#include <bit>
#include <cstdint>
#include <filesystem>
#include <string>

#include "core/canonical_writer.h"
#include "core/script/program/program.h"
#include "core/script/runtime/vm.h"
#include "core/script/state/script_state.h"
#include "core/sha256.h"
#include "tools/arguments.h"
#include "tools/build_script.h"
#include "tools/commands.h"
#include "tools/console.h"

namespace tavrel::tools {

namespace {

using core::script::HookKind;
using core::script::Value;
using core::script::Vm;

// 1/60 of a second as the nearest float: a run without a world has no clock.
constexpr std::uint32_t TimeStepBits = 0x3C888889;

constexpr const char* StateSection = "script";

// Prints the fault of a hook behind the words that tell when it came.
bool Report(const Vm& vm, const std::string& when) {
    PrintError(when + vm.DescribeFault() + "\n");
    return false;
}

bool Has(const Vm& vm, HookKind hook) {
    return vm.program->hooks[static_cast<std::size_t>(hook)] >= 0;
}

bool RunTicks(Vm& vm, unsigned long long ticks) {
    if (!Has(vm, HookKind::Tick) && !Has(vm, HookKind::Frame)) return true;  // however many they are
    const Value step = core::script::MakeReal(std::bit_cast<float>(TimeStepBits));
    for (unsigned long long i = 0; i < ticks; ++i) {
        if (!vm.RunHook(HookKind::Tick, &step, 1)) return Report(vm, "tick " + std::to_string(i) + ": ");
        if (!vm.RunHook(HookKind::Frame, &step, 1)) return Report(vm, "quadro " + std::to_string(i) + ": ");
    }
    return true;
}

bool RunHooks(Vm& vm, unsigned long long ticks) {
    if (!vm.Start() || !vm.RunHook(HookKind::Start, nullptr, 0)) return Report(vm, "");
    if (!RunTicks(vm, ticks)) return false;
    if (!vm.RunHook(HookKind::Shutdown, nullptr, 0)) return Report(vm, "");
    return true;
}

bool HashState(const Vm& vm, core::Digest& out) {
    core::CanonicalWriter writer(false);
    core::script::WriteScriptState(vm, writer, StateSection);
    if (!writer.failure.empty()) {
        PrintError("erro: o estado do script nao entra no canonico: " + writer.failure + "\n");
        return false;
    }
    out = core::HashSha256(writer.bytes.data(), writer.bytes.size());
    return true;
}

// Walks the state a second time rather than keep its fields, which take ten times the memory of the state itself.
void ListState(const Vm& vm) {
    core::CanonicalWriter writer(true);
    writer.takeField = [&writer](const core::CanonicalField& field) {
        Print(field.name + " = " + field.text + "\n");
        writer.bytes.clear();
    };
    core::script::WriteScriptState(vm, writer, StateSection);
}

bool PrintState(const Vm& vm, unsigned long long ticks) {
    core::Digest digest;
    if (!HashState(vm, digest)) return false;
    Print("--- estado depois de " + std::to_string(ticks) + " tick(s) ---\n");
    ListState(vm);
    Print("resumo do estado " + core::ToHex(digest) + "\n");
    return true;
}

// Compiles one script and runs it without a world: the same source, ticks and seed print the same on every machine.
int Run(const std::filesystem::path& script, unsigned long long ticks, unsigned long long seed) {
    core::script::Program program;
    if (!BuildScript(script, program)) return FailedExit;
    Vm vm(program);
    vm.print = [](const std::string& text) { Print(text + "\n"); };
    vm.SeedRandom(seed, 0);
    return RunHooks(vm, ticks) && PrintState(vm, ticks) ? GoodExit : FailedExit;
}

}  // namespace

int RunCommand(const std::vector<std::string>& args) {
    RunArguments arguments;
    if (!TakeRunArguments(args, arguments)) return RefusedExit;
    return Run(arguments.path, arguments.ticks, arguments.seed);
}

}  // namespace tavrel::tools
