// Declarations: everything between the "modulo" line and the end of the file, hooks aside. What begins with a keyword
// is told by it. What begins with a name is told by looking at most two tokens ahead, and only then read, so that
// ParseDeclaration leaves the position alone where nothing can begin and its caller sees that.
#include <algorithm>
#include <iterator>
#include <utility>

#include "core/script/source/fold.h"
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

// What a block of fields has in its section.
struct StateBlock {
    const char* word;
    bool& seen;
    std::vector<VarDecl>& fields;
};

StateBlock BlockOf(Section& section, Tok kind) {
    if (kind == Tok::Estado) return {"estado", section.hasState, section.state};
    if (kind == Tok::Visual) return {"visual", section.hasVisual, section.visual};
    return {"progresso", section.hasProgress, section.progress};
}

bool IsBindingSource(std::string_view folded) {
    constexpr Word Sources[] = {Word::Key, Word::Mouse, Word::Controller, Word::ControllerAxis};
    return std::any_of(std::begin(Sources), std::end(Sources), [&](Word word) { return folded == TextOf(word); });
}

}  // namespace

void Parser::ParseDeclarations(Section& section, bool inBehaviour) {
    for (;;) {
        SkipNewlines();
        if (Check(Tok::End) || (inBehaviour && Check(Tok::Fim))) return;
        const std::size_t before = position;
        ParseDeclaration(section, inBehaviour);
        if (position != before) continue;
        ErrorExpected("uma declaracao", NameHint());
        RecoverLine();
    }
}

void Parser::ParseDeclaration(Section& section, bool inBehaviour) {
    switch (Current().kind) {
        case Tok::Funcao:
        case Tok::Procedimento: return ParseFunction(section);
        case Tok::Constante: return ParseConstant(section);
        case Tok::Registro: return ParseRecord(inBehaviour);
        case Tok::Enumeracao: return ParseEnum(inBehaviour);
        case Tok::Comportamento: return ParseBehaviour(inBehaviour);
        case Tok::Importar: return ParseImport(inBehaviour);
        case Tok::Estado:
        case Tok::Visual:
        case Tok::Progresso: return ParseStateBlock(section);
        case Tok::Acao: return ParseAction(inBehaviour);
        case Tok::Name: return ParseNamedDeclaration(section, inBehaviour);
        default: return;
    }
}

// The contextual words come before the plain variable, which may be called like any of them.
void Parser::ParseNamedDeclaration(Section& section, bool inBehaviour) {
    const Tok behindName = Ahead(2).kind;
    const bool endsEvent = behindName == Tok::Colon || behindName == Tok::Newline || behindName == Tok::End;
    if (CheckAhead(1, Tok::Name) && endsEvent && CheckWord(Word::Event)) return ParseEvent(inBehaviour);
    if (CheckAhead(1, Tok::Name) && CheckWord(Word::Parameter)) return ParseParameter(section, inBehaviour);
    if (CheckHook()) return ParseHook(section, inBehaviour);
    if (CheckVariable()) ParseVariable(section.derived.emplace_back());
}

void Parser::ParseFunction(Section& section) {
    FunctionDecl function;
    function.span = Here();
    function.isProcedure = Check(Tok::Procedimento);
    Advance();
    function.name = ExpectName(function.isProcedure ? "o nome do procedimento" : "o nome da funcao");
    ParseParams(function.params);
    if (!ParseReturnType(function)) return RecoverLine();
    EndOfLine();
    function.body = ParseBody(function.bodyExprs);
    ExpectEnd(function.isProcedure ? "procedimento" : "funcao");
    section.functions.emplace_back(unit->functions.size());
    unit->functions.push_back(std::move(function));
}

// False for a function without one.
bool Parser::ParseReturnType(FunctionDecl& function) {
    if (!function.isProcedure) {
        if (!Expect(Tok::Colon, "\":\" e o tipo que a funcao devolve")) return false;
        function.returnType = ParseType();
    } else if (Check(Tok::Colon)) {
        Error(Here(), "um procedimento nao devolve valor", "para devolver um valor, use \"funcao\"");
        Advance();
        ParseType();
    }
    return true;
}

void Parser::ParseConstant(Section& section) {
    VarDecl constant;
    constant.span = Here();
    Advance();
    constant.name = ExpectName("o nome da constante");
    if (Match(Tok::Colon)) constant.type = ParseType();
    if (!Expect(Tok::Assign, "\"=\" e o valor da constante")) return RecoverLine();
    constant.init = ParseExpression();
    EndOfLine();
    section.constants.push_back(std::move(constant));
}

void Parser::ParseRecord(bool inBehaviour) {
    RecordDecl record;
    record.span = Here();
    Advance();
    if (inBehaviour) {
        Error(record.span, "um registro vale para o arquivo inteiro e nao pode ficar dentro de um comportamento");
    }
    record.name = ExpectName("o nome do registro");
    EndOfLine();
    for (SkipNewlines(); !Check(Tok::Fim) && !Check(Tok::End); SkipNewlines()) {
        if (CheckVariable()) {
            ParseVariable(record.fields.emplace_back());
        } else {
            Error(Here(), "um registro so tem campos, na forma \"nome: tipo\"");
            RecoverLine();
        }
    }
    ExpectEnd("registro");
    unit->records.push_back(std::move(record));
}

void Parser::ParseEnum(bool inBehaviour) {
    EnumDecl declaration;
    declaration.span = Here();
    Advance();
    if (inBehaviour) {
        Error(declaration.span,
              "uma enumeracao vale para o arquivo inteiro e nao pode ficar dentro de um comportamento");
    }
    declaration.name = ExpectName("o nome da enumeracao");
    if (!Expect(Tok::Assign, "\"=\" e os nomes da enumeracao")) return RecoverLine();
    do {
        declaration.memberSpans.push_back(Here());
        declaration.members.emplace_back(ExpectName("um nome da enumeracao"));
    } while (Match(Tok::Comma));
    EndOfLine();
    unit->enums.push_back(std::move(declaration));
}

void Parser::ParseBehaviour(bool inBehaviour) {
    const Span word = Here();
    Advance();
    if (inBehaviour) {
        Error(word, "um comportamento nao fica dentro de outro");
        return RecoverLine();
    }
    Section behaviour;
    behaviour.isBehaviour = true;
    behaviour.span = word;
    behaviour.nameSpan = Here();
    behaviour.name = ExpectName("o nome do comportamento");
    EndOfLine();
    ParseDeclarations(behaviour, true);
    ExpectEnd("comportamento");
    unit->behaviours.push_back(std::move(behaviour));
}

void Parser::ParseImport(bool inBehaviour) {
    const Span word = Here();
    Advance();
    if (!Check(Tok::TextLiteral)) {
        Error(Here(), "depois de \"importar\" vem o nome do arquivo entre aspas",
              "por exemplo: importar \"utilidades\"");
        return RecoverLine();
    }
    if (inBehaviour) {
        Error(word, "\"importar\" vale para o arquivo inteiro e nao pode ficar dentro de um comportamento");
    }
    unit->imports.emplace_back(Current().text);
    unit->importSpans.push_back(Here());
    Advance();
    EndOfLine();
}

void Parser::ParseStateBlock(Section& section) {
    const Tok kind = Current().kind;
    const Span span = Here();
    Advance();
    StateBlock block = BlockOf(section, kind);
    if (block.seen) Error(span, std::string("este modulo ja tem um bloco ") + Describe(kind));
    block.seen = true;
    if (kind == Tok::Progresso) ParseExtension(section);
    EndOfLine();
    ParseFields(block.fields, kind);
    ExpectEnd(block.word);
}

void Parser::ParseExtension(Section& section) {
    if (!Check(Tok::TextLiteral)) {
        return Error(Here(), "depois de \"progresso\" vem a extensao do arquivo, entre aspas",
                     "por exemplo: progresso \"farol\" grava mundo.farol ao lado do mapa");
    }
    section.progressExtension = Current().text;
    Advance();
}

void Parser::ParseFields(std::vector<VarDecl>& fields, Tok block) {
    for (SkipNewlines(); !Check(Tok::Fim) && !Check(Tok::End); SkipNewlines()) {
        VarDecl field;
        ParseVisibility(field, block);
        if (CheckVariable()) {
            ParseVariable(field);
            fields.push_back(std::move(field));
        } else {
            Error(Here(), std::string("um bloco ") + Describe(block) + " so tem declaracoes, na forma \"nome: tipo\"");
            RecoverLine();
        }
    }
}

// The "publico" or "privado" before a field. Before anything else the words are names, and nothing is read. These two
// alone are compared as written.
void Parser::ParseVisibility(VarDecl& field, Tok block) {
    if (!Check(Tok::Name) || !CheckAhead(1, Tok::Name) || !CheckAhead(2, Tok::Colon)) return;
    const std::string_view word = Current().text;
    const bool isPrivate = word == TextOf(Word::Private);
    if (!isPrivate && word != TextOf(Word::Public)) return;
    if (block != Tok::Estado) {
        Error(Here(), std::string("so um campo do bloco \"estado\" pode ser ").append(word),
              "o visual e o progresso sao de quem joga; o que vai para a rede e o estado que o servidor decide");
    }
    field.published = true;
    field.isPrivate = isPrivate;
    Advance();
}

void Parser::ParseAction(bool inBehaviour) {
    ActionDecl action;
    action.span = Here();
    Advance();
    if (inBehaviour) {
        Error(action.span, "uma acao vale para o jogo inteiro e nao pode ficar dentro de um comportamento");
    }
    action.name = ExpectName("o nome da acao");
    if (!CheckLineEnd()) {
        if (!Expect(Tok::Assign, "\"=\" e as ligacoes padrao")) return RecoverLine();
        do {
            action.bindings.push_back(ParseBinding());
        } while (Match(Tok::Comma));
    }
    EndOfLine();
    unit->actions.push_back(std::move(action));
}

Binding Parser::ParseBinding() {
    Binding binding;
    binding.span = Here();
    binding.source = FoldLower(ExpectName("a fonte da ligacao"));
    if (!IsBindingSource(binding.source)) {
        Error(binding.span, "\"" + binding.source + "\" nao e uma fonte de entrada",
              "as fontes sao tecla, mouse, controle e eixo_controle");
    }
    binding.code = ExpectName("o nome da tecla, do botao ou do eixo");
    binding.negative = MatchWord(Word::Negative);
    RaiseEnd(binding.span);
    return binding;
}

void Parser::ParseEvent(bool inBehaviour) {
    EventDecl event;
    event.span = Here();
    Advance();
    if (inBehaviour) {
        Error(event.span, "um evento vale para o jogo inteiro e nao pode ficar dentro de um comportamento");
    }
    event.name = Current().text;
    Advance();
    if (Match(Tok::Colon)) event.type = ParseType();
    EndOfLine();
    unit->events.push_back(std::move(event));
}

void Parser::ParseParameter(Section& section, bool inBehaviour) {
    VarDecl parameter;
    parameter.span = Here();
    Advance();
    parameter.name = Current().text;
    Advance();
    if (!Expect(Tok::Colon, "\":\" e o tipo do parametro")) return RecoverLine();
    ParseTypeAndValue(parameter);
    if (!inBehaviour) {
        Error(parameter.span, "\"parametro\" so existe dentro de um comportamento", "num modulo, use \"constante\"");
    }
    section.parameters.push_back(std::move(parameter));
}

void Parser::ParseVariable(VarDecl& variable) {
    variable.span = Here();
    variable.name = Current().text;
    Advance();
    Advance();
    ParseTypeAndValue(variable);
}

void Parser::ParseTypeAndValue(VarDecl& variable) {
    variable.type = ParseType();
    if (Match(Tok::Assign)) variable.init = ParseExpression();
    EndOfLine();
}

}  // namespace tavrel::core::script
