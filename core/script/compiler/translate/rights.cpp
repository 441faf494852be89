// A refusal says what the law is and where the thing would be allowed.
#include "core/script/compiler/translate/rights.h"

namespace tavrel::core::script {

namespace {

const char* WriteHint(GlobalCategory category) {
    switch (category) {
        case GlobalCategory::State:
            return "o bloco \"estado\" decide os ticks seguintes, entao so \"a cada tick\" e \"ao reiniciar mapa\" "
                   "escrevem nele";
        case GlobalCategory::Visual:
            return "o bloco \"visual\" e apresentacao: escreva nele em \"a cada quadro\", \"ao desenhar\" ou "
                   "\"ao carregar mapa\"";
        case GlobalCategory::Derived: return "o que deriva do mapa e refeito em \"ao carregar mapa\"";
        case GlobalCategory::Constant:
        case GlobalCategory::Progress: return "";
    }
    return "";
}

void RefuseWrite(Body& body, const Place& place, Span span, const std::string& name) {
    if (place.kind == PlaceKind::Local) {
        body.Error(span, Quoted(name) + " e a variavel do laco e nao pode ser mudada aqui");
    } else if (place.writable && body.permits.rule) {
        body.Error(span, Quoted(name) + " nao pode ser mudada aqui: esta funcao e uma regra de relevo ou de chao");
    } else if (place.writable) {
        body.Error(span,
                   Quoted(name) + " e do bloco " + Quoted(CategoryName(place.category)) + " e nao pode ser mudada aqui",
                   WriteHint(place.category));
    } else if (place.kind == PlaceKind::Field) {
        body.Error(span, Quoted(name) + " e um parametro do comportamento e vale a partida inteira",
                   "quem o define e o manifesto do asset; para um valor que muda, declare no bloco \"estado\"");
    } else {
        body.Error(span, Quoted(name) + " e uma constante e nao pode ser mudada");
    }
}

}  // namespace

bool CheckHooks(Body& body, HookMask allowed, Span span, const std::string& name, bool effect) {
    if (effect && body.permits.rule) {
        body.Error(span, Quoted(name) + " muda o mundo, e esta funcao e uma regra de relevo ou de chao",
                   "ela roda sobre uma copia do terreno, fora do quadro, e so le o que recebe");
        return false;
    }
    if (body.permits.hooks == HookMask::None) {
        body.Error(span, Quoted(name) + " precisa do mundo, e aqui nao ha gancho que o alcance",
                   body.permits.rule
                       ? "esta funcao e uma regra de relevo: ela roda sobre uma copia do terreno, fora do quadro"
                       : "o valor inicial de uma variavel e calculado antes de haver mapa (use \"ao carregar "
                         "mapa\"), e foco_do_jogador so le o estado, entre ticks");
        return false;
    }
    if (Contains(allowed, body.permits.hooks)) return true;
    if (Overlap(allowed, body.permits.hooks)) {
        body.Error(
            span, Quoted(name) + " nao vale em todos os ganchos que chamam esta funcao",
            "ela vale em: " + HookNames(allowed) + "; esta funcao e chamada de: " + HookNames(body.permits.hooks));
    } else {
        body.Error(span, Quoted(name) + " nao pode ser chamada aqui", "ela vale em: " + HookNames(allowed));
    }
    return false;
}

bool CheckWrite(Body& body, const Place& place, Span span, const std::string& name) {
    bool categoryAllowed = Contains(body.permits.writes, MaskOf(place.category));
    bool allowed = place.writable && (place.kind == PlaceKind::Local || (!body.permits.rule && categoryAllowed));
    if (!allowed) RefuseWrite(body, place, span, name);
    return allowed;
}

void CheckContainerWrite(Body& body, ExprId expr) {
    while (body.At(expr).kind == ExprKind::Index || body.At(expr).kind == ExprKind::Field) expr = body.At(expr).left;
    const Expr& root = body.At(expr);
    if (root.kind != ExprKind::Name) return;
    Place place = Resolve(body, body.Intern(root.text));
    bool holds = place.kind == PlaceKind::Field || place.kind == PlaceKind::Global;
    if (holds) CheckWrite(body, place, root.span, std::string(root.text));
}

void CheckAssign(Body& body, TypeId expected, TypeId actual, ExprId expr, const std::string& name) {
    if (expected == ErrorType || actual == ErrorType || expected == actual) return;
    body.Error(body.SpanOf(expr),
               Quoted(name) + " e " + body.TypeName(expected) + " e o valor e " + body.TypeName(actual),
               ConversionHint(expected, actual, "nao ha conversao automatica; escreva real(...) ou inteiro(...)"));
}

}  // namespace tavrel::core::script
