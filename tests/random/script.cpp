#include "tests/random/script.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/random/code.h"
#include "tests/random/forms.h"
#include "tests/random/layout.h"
#include "tests/random/numbers.h"

namespace tavrel::tests {

namespace {

using namespace core::script;

struct Hook {
    HookKind kind;
    const char* head;
    const char* param = "";  // "name: type"
};

constexpr Hook ModuleHooks[] = {
    {HookKind::Start, "ao iniciar"},
    {HookKind::LoadMap, "ao carregar mapa"},
    {HookKind::ResetMap, "ao reiniciar mapa"},
    {HookKind::Interrupt, "ao interromper"},
    {HookKind::Tick, "a cada tick", "dt: real"},
    {HookKind::Frame, "a cada quadro", "dt: real"},
    {HookKind::Draw, "ao desenhar", "tempo: real"},
    {HookKind::Camera, "camera"},
    {HookKind::Shutdown, "ao encerrar"},
};

constexpr Hook BehaviourHooks[] = {
    {HookKind::Spawn, "ao nascer"},
    {HookKind::LoadMap, "ao carregar mapa"},
    {HookKind::ResetMap, "ao reiniciar mapa"},
    {HookKind::Tick, "a cada tick", "dt: real"},
    {HookKind::Frame, "a cada quadro", "dt: real"},
    {HookKind::Draw, "ao desenhar", "tempo: real"},
    {HookKind::Touch, "ao tocar", "outro: objeto"},
    {HookKind::Release, "ao soltar", "outro: objeto"},
    {HookKind::Shutdown, "ao encerrar"},
};

// The laws of functions: those of any hook, of the tick alone, of the frame alone, and rules. Every one is reached from
// the tick or the frame, so that what it asks of the world is allowed.
constexpr Law Anywhere = {AllHooks};
constexpr Law InTick = {HookMask::Tick};
constexpr Law InFrame = {HookMask::Frame};
constexpr Law Rule = {HookMask::None, true, true};
constexpr Law Focus = {HookMask::None, true};
constexpr Law Initial = {};
constexpr Law MapUpdate = {HookMask::UpdateMap};

class ScriptWriter {
public:
    ScriptWriter(std::uint64_t seed, bool world)
        : numbers(seed * 2 + (world ? 1 : 0)), code(numbers, world, numbers.OneIn(4)) {}

    std::string Script() {
        sections = CommonDeclarations();
        const std::string globals = Globals();
        for (const Law& law : {Rule, Anywhere, Anywhere, InTick, InTick, InFrame, InTick}) AddSubprogram(law);
        AddReserved();
        for (const Hook& hook : ModuleHooks) {
            if (IsCalledFrom(hook.kind) || numbers.OneIn(2)) sections.push_back(HookText(hook));
        }
        for (std::uint64_t i = numbers.Below(3); i > 0; --i) AddBehaviour();
        return Untidy(numbers, "modulo Sorteio\n" + globals + Shuffled(sections));
    }

private:
    static bool IsCalledFrom(HookKind kind) { return kind == HookKind::Tick || kind == HookKind::Frame; }

    std::string Shuffled(std::vector<std::string>& parts) {
        std::string all;
        for (; !parts.empty(); parts.pop_back()) {
            std::swap(parts[numbers.Below(parts.size())], parts.back());
            all += "\n" + parts.back();
        }
        return all;
    }

    // "name: type", with an initial value now and then.
    std::string Declaration(const char* stem, const Type& type, Place place, bool withValue) {
        const std::string name = code.NewName(stem);
        const std::string value = withValue ? " = " + code.Value(Initial, type) : "";
        code.variables.push_back({name, type, place});
        return name + ": " + type + value + "\n";
    }

    // Variables of some types, of which those later in the list see the earlier.
    std::string Fields(const char* stem, Place place, std::uint64_t count) {
        std::string all;
        for (; count > 0; --count) all += Declaration(stem, numbers.OneOf(AllTypes()), place, numbers.OneIn(2));
        return all;
    }

    // The state has a variable of every type, so that code always finds one.
    std::string Globals() {
        std::string all;
        for (const Type type : {"inteiro", "real", "texto", "vetor3", "lista de inteiro"}) {
            all += "constante " + Declaration("FIXO", type, Place::Constant, true);
        }
        all += "constante MEIA = 0.5\nconstante NOME = \"n\"\nconstante CONTA = verdadeiro\nestado\n";
        for (const Type& type : AllTypes()) all += Declaration("nota", type, Place::State, numbers.OneIn(3));
        all += "publico vida: inteiro = 3\npublico pe: vetor3\npublico vivo: logico\nfim\n";
        all += "visual\n" + Fields("brilho", Place::Visual, 8) + "fim\n";
        all += "progresso \"sorteio\"\n" + Fields("ganho", Place::Progress, 8) + "fim\n";
        return all + Fields("alto", Place::Derived, 4);
    }

    // A parameter list, whose names are in scope from here on.
    std::string Params(const std::vector<Type>& types) {
        std::string list;
        for (const Type& type : types) {
            const std::string name = code.NewName("dado");
            list += (list.empty() ? "" : ", ") + name + ": " + type;
            code.variables.push_back({name, type, Place::Local});
        }
        return "(" + list + ")";
    }

    std::string Routine(const std::string& name, const std::vector<Type>& params, const Type& result, const Law& law) {
        const std::size_t before = code.variables.size();
        std::string text = (result.empty() ? "procedimento " : "funcao ") + name + Params(params);
        if (!result.empty()) text += ": " + result;
        text += "\n" + code.Body(law, result, 5) + "fim\n";
        code.variables.resize(before);
        return text;
    }

    std::string Subprogram(const Law& law) {
        struct Routine routine = {code.NewName("conta"), {}, "", law};
        if (!numbers.OneIn(4)) routine.result = numbers.OneOf(AllTypes());
        for (std::uint64_t i = numbers.Below(4); i > 0; --i) routine.params.push_back(numbers.OneOf(AllTypes()));
        const std::string text = Routine(routine.name, routine.params, routine.result, law);
        code.routines.push_back(std::move(routine));
        return text;
    }

    void AddSubprogram(const Law& law) { sections.push_back(Subprogram(law)); }

    void AddReserved() {
        const std::vector<Type> place = {"real", "real"};
        if (numbers.OneIn(2)) sections.push_back(Routine("relevo_base", place, "real", Rule));
        if (numbers.OneIn(2)) {
            sections.push_back(Routine("ajustar_material", {"real", "real", "lista de real"}, "", Rule));
        }
        if (numbers.OneIn(2)) sections.push_back(Routine("pode_ficar", place, "logico", Rule));
        if (numbers.OneIn(2)) sections.push_back(Routine("altura_do_corpo", {}, "real", Rule));
        if (numbers.OneIn(2)) sections.push_back(Routine("atualizar_mapa", {}, "logico", MapUpdate));
        if (numbers.OneIn(2)) sections.push_back(Routine("foco_do_jogador", {"inteiro"}, "vetor3", Focus));
    }

    // The tick and the frame begin with a call of all that only they, or first they, may call.
    std::string HookText(const Hook& hook) {
        const Law law = {MaskOf(hook.kind)};
        const std::string_view param = hook.param;
        const std::size_t before = code.variables.size();
        std::string text = hook.head;
        if (!param.empty()) {
            const std::size_t colon = param.find(':');
            code.variables.push_back(
                {std::string(param.substr(0, colon)), Type(param.substr(colon + 2)), Place::Local});
            text += " (" + std::string(param) + ")";
        }
        text += "\n";
        for (const struct Routine& routine : code.routines) {
            const bool first = hook.kind == HookKind::Tick || routine.law.hooks == law.hooks;
            if (first && CodeWriter::MayCall(law, routine)) text += code.CallLine(law, routine);
        }
        text += code.Body(law, hook.kind == HookKind::Camera ? "camera" : "", 8) + "fim\n";
        code.variables.resize(before);
        return text;
    }

    void AddBehaviour() {
        const std::size_t variables = code.variables.size();
        const std::size_t routines = code.routines.size();
        std::string text = "comportamento " + code.NewName("Guarda") + "\nparametro dono: inteiro = 1\n";
        for (const Type type : {"real", "texto", "logico"}) {
            text += "parametro " + Declaration("modo", type, Place::Fixed, numbers.OneIn(2));
        }
        text +=
            "estado\npublico folego: real = 1.5\nprivado segredo: inteiro\n" + Fields("vez", Place::State, 6) + "fim\n";
        text += "visual\n" + Fields("tom", Place::Visual, 3) + "fim\n" + Fields("lado", Place::Derived, 2);
        code.variables.push_back({"eu", "objeto", Place::Derived});
        code.variables.push_back({"meu_corpo", "corpo", Place::Derived});
        std::vector<std::string> parts;
        for (const Law& law : {Anywhere, InTick, InFrame}) parts.push_back(Subprogram(law));
        for (const Hook& hook : BehaviourHooks) {
            if (IsCalledFrom(hook.kind) || numbers.OneIn(2)) parts.push_back(HookText(hook));
        }
        sections.push_back(text + Shuffled(parts) + "fim\n");
        code.variables.resize(variables);
        code.routines.resize(routines);
    }

    RandomNumbers numbers;
    CodeWriter code;
    std::vector<std::string> sections;  // what may stand in any order
};

}  // namespace

std::string RandomScript(std::uint64_t seed, bool world) {
    return ScriptWriter(seed, world).Script();
}

}  // namespace tavrel::tests
