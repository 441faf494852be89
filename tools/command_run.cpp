// "executar": compiles one script and runs its hooks in the order of a game without a world, with a fixed step for
// every tick, then hashes the state and lists it. The state is walked once for its digest and once more for the list,
// and neither walk keeps what it writes, since a large state fills gigabytes. A fault ends the run at once, behind what
// the script had printed before it.
#include <bit>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <utility>

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

// A run on its way: the machine, and whether the hook at hand has printed.
struct Session {
    explicit Session(const core::script::Program& program) : vm(program) {}

    Vm vm;
    bool printed = false;
};

// Prints the fault of a hook behind the words that tell when it came.
bool Report(const Vm& vm, const std::string& when) {
    PrintError(when + vm.DescribeFault() + "\n");
    return false;
}

bool Has(const Vm& vm, HookKind hook) {
    return static_cast<bool>(vm.program->hooks[static_cast<std::size_t>(hook)]);
}

// What a hook printed leaves the process with its end: not line by line, which would cost a system call each, and not
// later, or a run that is stopped from outside would have shown nothing of it.
bool RunHook(Session& session, HookKind hook, const Value* step = nullptr) {
    const bool good = session.vm.RunHook(hook, step, step == nullptr ? 0 : 1);
    if (std::exchange(session.printed, false)) static_cast<void>(Flush());  // what is lost, main reports at the end
    return good;
}

bool RunTicks(Session& session, unsigned long long ticks) {
    const Vm& vm = session.vm;
    if (!Has(vm, HookKind::Tick) && !Has(vm, HookKind::Frame)) return true;  // however many they are
    const Value step = core::script::MakeReal(std::bit_cast<float>(TimeStepBits));
    for (unsigned long long i = 0; i < ticks; ++i) {
        if (!RunHook(session, HookKind::Tick, &step)) return Report(vm, "tick " + std::to_string(i) + ": ");
        if (!RunHook(session, HookKind::Frame, &step)) return Report(vm, "quadro " + std::to_string(i) + ": ");
    }
    return true;
}

bool RunHooks(Session& session, unsigned long long ticks) {
    const Vm& vm = session.vm;
    if (!session.vm.Start() || !RunHook(session, HookKind::Start)) return Report(vm, "");
    if (!RunTicks(session, ticks)) return false;
    return RunHook(session, HookKind::Shutdown) || Report(vm, "");
}

bool HashState(const Vm& vm, core::Digest& out) {
    core::Sha256 hash(false);
    core::CanonicalWriter writer(false);
    writer.takeBytes = [&hash](std::span<const std::uint8_t> bytes) { hash.Update(bytes.data(), bytes.size()); };
    core::script::WriteScriptState(vm, writer, StateSection);
    if (!writer.failure.empty()) {
        PrintError("erro: o estado do script nao entra no canonico: " + writer.failure + "\n");
        return false;
    }
    writer.takeBytes(writer.bytes);
    out = hash.Finish();
    return true;
}

void ListState(const Vm& vm) {
    core::CanonicalWriter writer(true);
    writer.takeBytes = [](std::span<const std::uint8_t>) {};  // they were hashed
    writer.takeField = [](const core::CanonicalField& field) { Print(field.name + " = " + field.text + "\n"); };
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
    Session session(program);
    session.vm.print = [&session](const std::string& text) {
        Print(text + "\n");
        session.printed = true;
    };
    session.vm.SeedRandom(seed, 0);
    return RunHooks(session, ticks) && PrintState(session.vm, ticks) ? GoodExit : FailedExit;
}

}  // namespace

int RunCommand(const std::vector<std::string>& args) {
    RunArguments arguments;
    if (!TakeRunArguments(args, arguments)) return RefusedExit;
    return Run(arguments.path, arguments.ticks, arguments.seed);
}

}  // namespace tavrel::tools
