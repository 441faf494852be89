// Hooks. Three kinds of heads lead to one body: "ao" and the words of a hook, "a cada" and a period, and "camera" alone
// on its line. All three begin with a name, so CheckHook looks further ahead before anything is read; what looks like a
// hook and is none is reported, and its line is skipped.
#include <algorithm>
#include <optional>
#include <utility>

#include "core/script/source/fold.h"
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

// Where a hook may be declared.
enum class HookPlace { Anywhere, OnlyModule, OnlyBehaviour };

HookPlace PlaceOf(HookKind kind) {
    switch (kind) {
        case HookKind::Start:
        case HookKind::Interrupt:
        case HookKind::Camera: return HookPlace::OnlyModule;
        case HookKind::Spawn:
        case HookKind::Touch:
        case HookKind::Release: return HookPlace::OnlyBehaviour;
        case HookKind::LoadMap:
        case HookKind::ResetMap:
        case HookKind::Tick:
        case HookKind::Frame:
        case HookKind::Draw:
        case HookKind::Shutdown: return HookPlace::Anywhere;
    }
    return HookPlace::Anywhere;
}

// The hook whose text is `words`, all folded.
std::optional<HookKind> FindHook(std::string_view words) {
    for (int number = 0; number < HookCount; ++number) {
        const auto kind = static_cast<HookKind>(number);
        if (words == HookName(kind)) return kind;
    }
    return std::nullopt;
}

}  // namespace

bool Parser::CheckHook() const {
    switch (HookHeadOf(Current(), Ahead(1))) {
        case HookHead::Event: return CheckAhead(1, Tok::Name);
        case HookHead::Periodic: return true;
        case HookHead::Camera: return CheckAhead(1, Tok::Newline);
        case HookHead::None: return false;
    }
    return false;
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
    const HookHead head = HookHeadOf(Current(), Ahead(1));
    if (head == HookHead::Event) return ParseEventHead(kind);
    if (head == HookHead::Periodic) return ParsePeriodicHead(kind);
    kind = HookKind::Camera;
    Advance();
    return true;
}

bool Parser::ParsePeriodicHead(HookKind& kind) {
    const Span span = Here();
    Advance();
    Advance();
    if (MatchWord(Word::Tick)) {
        kind = HookKind::Tick;
    } else if (MatchWord(Word::Frame)) {
        kind = HookKind::Frame;
    } else {
        Error(span, "depois de \"a cada\" vem \"tick\" ou \"quadro\"");
        return false;
    }
    return true;
}

// A hook's name has as many words as it takes to match a hook's text.
bool Parser::ParseEventHead(HookKind& kind) {
    const Span span = Here();
    Advance();
    std::string words(TextOf(Word::On));
    std::optional<HookKind> hook;
    for (; !hook && Check(Tok::Name); Advance()) {
        words.append(" ").append(FoldLower(Current().text));
        hook = FindHook(words);
    }
    if (!hook) {
        Error(span, "\"" + words + "\" nao e um gancho conhecido",
              "os ganchos sao: ao iniciar, ao carregar mapa, ao reiniciar mapa, ao interromper, ao desenhar, "
              "ao encerrar, ao nascer, ao tocar, ao soltar, a cada tick, a cada quadro e camera");
        return false;
    }
    kind = *hook;
    return true;
}

void Parser::CheckHookPlace(const HookDecl& hook, bool inBehaviour) {
    if (!inBehaviour && PlaceOf(hook.kind) == HookPlace::OnlyBehaviour) {
        Error(hook.span, std::string("\"") + HookName(hook.kind) + "\" so existe dentro de um comportamento");
    }
    if (inBehaviour && PlaceOf(hook.kind) == HookPlace::OnlyModule) {
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
