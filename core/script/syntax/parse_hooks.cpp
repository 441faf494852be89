#include <iterator>
#include <utility>

#include "core/script/source/fold.h"
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

struct Hook {
    std::string_view name;  // behind the "ao"
    HookKind kind;
};

constexpr Hook Hooks[] = {
    {"iniciar", HookKind::Start},         {"carregar mapa", HookKind::LoadMap}, {"reiniciar mapa", HookKind::ResetMap},
    {"interromper", HookKind::Interrupt}, {"desenhar", HookKind::Draw},         {"encerrar", HookKind::Shutdown},
    {"nascer", HookKind::Spawn},          {"tocar", HookKind::Touch},           {"soltar", HookKind::Release},
};

const Hook* FindHook(std::string_view name) {
    const Hook* found =
        std::find_if(std::begin(Hooks), std::end(Hooks), [&](const Hook& hook) { return hook.name == name; });
    return found == std::end(Hooks) ? nullptr : found;
}

bool OnlyInBehaviour(HookKind kind) {
    return kind == HookKind::Spawn || kind == HookKind::Touch || kind == HookKind::Release;
}

bool OnlyInModule(HookKind kind) {
    return kind == HookKind::Start || kind == HookKind::Interrupt || kind == HookKind::Camera;
}

}  // namespace

bool Parser::CheckHook() const {
    if (CheckAhead(1, Tok::Newline)) return CheckWord("camera");
    return CheckAhead(1, Tok::Name) && (CheckWord("ao") || (CheckWord("a") && CheckWord("cada", 1)));
}

void Parser::ParseHook(Section& section, bool inBehaviour) {
    HookDecl hook;
    hook.span = Here();
    if (!ParseHookHead(hook.kind)) return RecoverLine();
    CheckHookPlace(hook, inBehaviour);
    ParseParams(hook.params);
    EndOfLine();
    hook.body = ParseBody(hook.bodyExprs);
    ExpectEnd(HookName(hook.kind));
    ReportSecondHook(section, hook);
    section.hooks.push_back(std::move(hook));
}

// False, after a report, when the words are those of no hook.
bool Parser::ParseHookHead(HookKind& kind) {
    if (CheckWord("ao")) return ParseEventHead(kind);
    if (CheckWord("a")) return ParsePeriodicHead(kind);
    kind = HookKind::Camera;
    Advance();
    return true;
}

bool Parser::ParsePeriodicHead(HookKind& kind) {
    const Span span = Here();
    Advance();
    Advance();
    if (MatchWord("tick")) {
        kind = HookKind::Tick;
    } else if (MatchWord("quadro")) {
        kind = HookKind::Frame;
    } else {
        Error(span, "depois de \"a cada\" vem \"tick\" ou \"quadro\"");
        return false;
    }
    return true;
}

// A hook's name has as many words as it takes to match one of the table.
bool Parser::ParseEventHead(HookKind& kind) {
    const Span span = Here();
    Advance();
    std::string name;
    const Hook* hook = nullptr;
    for (; hook == nullptr && Check(Tok::Name); Advance()) {
        if (!name.empty()) name += ' ';
        name += FoldLower(Current().text);
        hook = FindHook(name);
    }
    if (hook == nullptr) {
        Error(span, "\"ao " + name + "\" nao e um gancho conhecido",
              "os ganchos sao: ao iniciar, ao carregar mapa, ao reiniciar mapa, ao interromper, ao desenhar, "
              "ao encerrar, ao nascer, ao tocar, ao soltar, a cada tick, a cada quadro e camera");
        return false;
    }
    kind = hook->kind;
    return true;
}

void Parser::CheckHookPlace(const HookDecl& hook, bool inBehaviour) {
    if (!inBehaviour && OnlyInBehaviour(hook.kind)) {
        Error(hook.span, std::string("\"") + HookName(hook.kind) + "\" so existe dentro de um comportamento");
    }
    if (inBehaviour && OnlyInModule(hook.kind)) {
        Error(hook.span, std::string("\"") + HookName(hook.kind) + "\" e do modulo, e nao de um comportamento",
              "um exemplar tem: ao nascer, ao carregar mapa, ao reiniciar mapa, a cada tick, a cada quadro, "
              "ao desenhar, ao tocar, ao soltar e ao encerrar");
    }
}

// Once the reports are full the search through ever more hooks would be for nothing.
void Parser::ReportSecondHook(const Section& section, const HookDecl& hook) {
    if (!CanReport()) return;
    auto isSame = [&](const HookDecl& other) { return other.kind == hook.kind; };
    if (std::any_of(section.hooks.begin(), section.hooks.end(), isSame)) {
        Error(hook.span, std::string("este modulo ja tem um \"") + HookName(hook.kind) + "\"");
    }
}

}  // namespace tavrel::core::script
