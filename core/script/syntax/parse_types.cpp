// Written types and the lists of parameters that hold them, and the reading of one type out of a text of its own.
#include <utility>

#include "core/script/syntax/lexer.h"
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

TypeRef MakeType(Tok kind, Span span) {
    TypeRef type;
    type.kind = kind;
    type.span = span;
    return type;
}

}  // namespace

TypeRefId Parser::ParseType() {
    if (!Enter()) return Add(MakeType(Tok::End, Here()));
    TypeRefId type;
    if (Check(Tok::Lista)) {
        type = ParseListType();
    } else if (Check(Tok::Dicionario)) {
        type = ParseDictionaryType();
    } else {
        type = ParseSimpleType();
    }
    Leave();
    return type;
}

// The type inside another one, whose span it stretches.
TypeRefId Parser::ParseInnerType(Span& outer) {
    const TypeRefId inner = ParseType();
    outer.end = std::max(outer.end, unit->At(inner).span.end);
    return inner;
}

TypeRefId Parser::ParseListType() {
    TypeRef type = MakeType(Tok::Lista, Here());
    Advance();
    if (!MatchWord(Word::Of)) {
        Error(Here(), "depois de \"lista\" vem \"de\" e o tipo dos elementos", "por exemplo: lista de inteiro");
    }
    type.element = ParseInnerType(type.span);
    return Add(std::move(type));
}

TypeRefId Parser::ParseDictionaryType() {
    TypeRef type = MakeType(Tok::Dicionario, Here());
    Advance();
    if (!MatchWord(Word::Of)) {
        Error(Here(), "depois de \"dicionario\" vem \"de\", o tipo da chave, \"para\" e o tipo do valor",
              "por exemplo: dicionario de texto para inteiro");
    }
    type.key = ParseInnerType(type.span);
    if (!Match(Tok::Para)) Error(Here(), "depois do tipo da chave vem \"para\" e o tipo do valor");
    type.element = ParseInnerType(type.span);
    return Add(std::move(type));
}

TypeRefId Parser::ParseSimpleType() {
    TypeRef type = MakeType(Tok::End, Here());
    if (IsTypeWord(Current().kind)) {
        type.kind = Current().kind;
        Advance();
    } else if (Check(Tok::Name)) {
        type.kind = Tok::Name;
        type.name = Current().text;
        Advance();
    } else {
        ErrorExpected("um tipo",
                      "os tipos sao inteiro, real, logico, texto, vetor2, vetor3, cor, objeto, corpo, som, "
                      "lista de ... e dicionario de ... para ...");
    }
    return Add(std::move(type));
}

void Parser::ParseParams(std::vector<Param>& params) {
    if (!Match(Tok::LeftParen) || Match(Tok::RightParen)) return;
    do {
        Param param;
        param.span = Here();
        param.name = ExpectName("o nome do argumento");
        if (!Expect(Tok::Colon, "\":\" e o tipo do argumento")) break;
        param.type = ParseType();
        RaiseEnd(param.span);
        params.push_back(std::move(param));
    } while (Match(Tok::Comma));
    Expect(Tok::RightParen, "\")\"");
}

bool ParseTypeText(const std::string& text, Unit& unit, Diagnostics& diagnostics, TypeRefId& out) {
    SourceFile api("<api>", text);
    const std::size_t reportsBefore = diagnostics.items.size();
    TokenList list = Tokenize(api, diagnostics, false);
    std::swap(unit.source, api);
    Parser parser(diagnostics, unit, std::move(list.tokens));
    out = parser.ParseType();
    const bool isGood = parser.FinishFile() && diagnostics.items.size() == reportsBefore;
    std::swap(unit.source, api);
    if (isGood) return true;

    const Span whole{0, static_cast<std::uint32_t>(text.size())};
    diagnostics.Add(api, whole, "\"" + text + "\" nao e um tipo desta linguagem",
                    "defeito na tabela da API do host, e nao no script");
    return false;
}

}  // namespace tavrel::core::script
