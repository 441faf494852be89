#include "bench/generate_many.h"

namespace tavrel::bench {

namespace {

constexpr std::string_view Head = "modulo Muitos\n\n";
constexpr int PerFunction = 500;  // statements in a function, where a kind needs many of both

// `piece` for each number from 0, with "#" standing for the number and "@" for the one before it.
void Repeat(std::string_view piece, int first, int count, std::string& out) {
    for (int number = first; number < first + count; ++number) {
        for (const char byte : piece) {
            if (byte == '#') {
                out += std::to_string(number);
            } else if (byte == '@') {
                out += std::to_string(number > 0 ? number - 1 : 0);
            } else {
                out += byte;
            }
        }
    }
}

// As Repeat from 0, with functions of PerFunction pieces around.
void RepeatInFunctions(std::string_view piece, int count, std::string& out) {
    for (int first = 0; first < count; first += PerFunction) {
        out += "procedimento parte" + std::to_string(first) + "()\n    valor: inteiro\n    fala: texto\n";
        Repeat(piece, first, count - first < PerFunction ? count - first : PerFunction, out);
        out += "fim\n";
    }
}

std::string One(std::string_view piece, int count) {
    std::string out(Head);
    Repeat(piece, 0, count, out);
    return out;
}

// Declarations first, then functions that use each.
std::string DeclareAndUse(std::string_view declaration, std::string_view use, int count) {
    std::string out = One(declaration, count);
    RepeatInFunctions(use, count, out);
    return out;
}

// All pieces between two lines.
std::string Wrapped(std::string_view before, std::string_view piece, std::string_view after, int count) {
    std::string out = std::string(Head) + std::string(before);
    Repeat(piece, 0, count, out);
    return out + std::string(after);
}

std::string Functions(int count) {
    return One("funcao f#(x: inteiro): inteiro\n    retorne f@(x) + f#(x)\nfim\n", count);
}

std::string Constants(int count) {
    return DeclareAndUse("constante C# = 7\n", "    valor = C#\n", count);
}

std::string Variables(int count) {
    std::string out = Wrapped("estado\n", "    v#: inteiro = 3\n", "fim\n", count);
    RepeatInFunctions("    v# = v@ + 1\n", count, out);
    return out;
}

std::string Integers(int count) {
    return DeclareAndUse("", "    valor = valor + #\n", count);
}

std::string Texts(int count) {
    return DeclareAndUse("", "    fala = \"texto #\"\n", count);
}

std::string Records(int count) {
    return DeclareAndUse("registro R#\n    x: inteiro = 1\nfim\n", "    r#: R#\n    r#.x = valor\n", count);
}

std::string RecordFields(int count) {
    std::string out = Wrapped("registro R\n", "    x#: inteiro\n", "fim\nestado\n    r: R\nfim\n", count);
    RepeatInFunctions("    r.x# = r.x@\n", count, out);
    return out;
}

// Every outer record reaches every inner one through the hub.
std::string RecordHub(int count) {
    std::string out = Wrapped("registro Centro\n", "    c#: Dentro#\n", "fim\n", count);
    Repeat("registro Dentro#\n    x: inteiro\nfim\nregistro Fora#\n    c: Centro\nfim\n", 0, count, out);
    return out;
}

std::string Enumerations(int count) {
    return DeclareAndUse("enumeracao E# = A#, B#\n", "    e#: E# = B#\n", count);
}

std::string Members(int count) {
    std::string out = Wrapped("enumeracao E = PRIMEIRO", ", M#", "\n", count);
    RepeatInFunctions("    e#: E = M#\n", count, out);
    return out;
}

std::string ListTypes(int count) {
    return DeclareAndUse("enumeracao E# = A#\n", "    l#: lista de lista de E#\n    l#.limpar()\n", count);
}

std::string DictTypes(int count) {
    return DeclareAndUse("enumeracao E# = A#\n", "    d#: dicionario de E# para E#\n    d#.limpar()\n", count);
}

std::string Locals(int count) {
    return Wrapped("procedimento p()\n    x0: inteiro\n", "    y#: inteiro = x0\n    x0 = y#\n", "fim\n", count);
}

std::string Parameters(int count) {
    return One("funcao f#(a: inteiro, b: inteiro, c: inteiro): inteiro\n    retorne f@(c, a, b)\nfim\n", count);
}

std::string Behaviours(int count) {
    return One(
        "comportamento B#\n    funcao dobro(): inteiro\n        retorne 2\n    fim\n"
        "    ao nascer\n        x: inteiro = dobro()\n        x = dobro()\n    fim\nfim\n",
        count);
}

std::string BehaviourFields(int count) {
    std::string out = Wrapped("comportamento B\n    estado\n", "        v#: inteiro\n", "    fim\n", count);
    RepeatInFunctions("        v# = v@\n", count, out);
    return out + "fim\n";
}

// Each function calls the one before it and the hook calls the last, so that a sweep in order carries one step only.
std::string BackwardCalls(int count) {
    return One("procedimento f#()\n    se 1 == 2 entao f@() fim\nfim\n", count) + "a cada tick (passo: real)\n    f" +
           std::to_string(count - 1) + "()\nfim\n";
}

// The same way round in each of two directions, joined in one cycle.
std::string CallCycle(int count) {
    std::string out(Head);
    Repeat("procedimento f#()\n    se 1 == 2 entao f@() fim\n    g#()\nfim\n", 0, count / 2, out);
    Repeat("procedimento g#()\n    se 1 == 2 entao g@() fim\n    f#()\nfim\n", 0, count / 2, out);
    return out + "a cada tick (passo: real)\n    f0()\nfim\na cada quadro (dt: real)\n    g" +
           std::to_string(count / 2 - 1) + "()\nfim\n";
}

std::string Actions(int count) {
    std::string out = One("acao a# = tecla w\n", count) + "a cada tick (passo: real)\n";
    Repeat("    se entrada.a#.apertado entao pular() fim\n", 0, count, out);
    return out + "fim\nprocedimento pular()\nfim\n";
}

std::string Commands(int count) {
    return One("acao a#\n", count) + "a cada quadro (dt: real)\n" +
           Wrapped("", "    entrada.a#.enviar(1)\n", "fim\n", count).substr(Head.size());
}

std::string Events(int count) {
    return One("evento e#: real\n", count) + "a cada tick (passo: real)\n" +
           Wrapped("", "    eventos.e#.emitir(1)\n", "fim\n", count).substr(Head.size());
}

std::string HostCalls(int count) {
    return Wrapped("a cada tick (passo: real)\n", "    som.emitir(#, \"passo\", repetir = mapa.dentro(1, 2))\n",
                   "fim\n", count);
}

std::string Statements(int count) {
    return Wrapped("procedimento p()\n    x: inteiro\n", "    x = x * 3 + 1\n", "fim\n", count);
}

std::string ElseIfs(int count) {
    return Wrapped("procedimento p(x: inteiro)\n    se x < 0\n        p(1)\n", "    senao se x == #\n        p(2)\n",
                   "    fim\nfim\n", count);
}

std::string Cases(int count) {
    return Wrapped("procedimento p(x: inteiro)\n    escolha x\n", "        caso #\n            p(2)\n",
                   "    fim\nfim\n", count);
}

std::string Terms(int count) {
    return Wrapped("funcao p(x: inteiro): inteiro\n    retorne x", " + x * 2", "\nfim\n", count);
}

std::string AccentedNames(int count) {
    return Wrapped("procedimento p(posição: inteiro)\n    x: inteiro\n", "    x = x + posição\n", "fim\n", count);
}

constexpr ManyKind Kinds[] = {{"functions", Functions},
                              {"parameters", Parameters},
                              {"constants", Constants},
                              {"variables", Variables},
                              {"integers", Integers},
                              {"texts", Texts},
                              {"records", Records},
                              {"record_fields", RecordFields},
                              {"record_hub", RecordHub},
                              {"enumerations", Enumerations},
                              {"members", Members},
                              {"list_types", ListTypes},
                              {"dict_types", DictTypes},
                              {"locals", Locals},
                              {"behaviours", Behaviours},
                              {"behaviour_fields", BehaviourFields},
                              {"backward_calls", BackwardCalls},
                              {"call_cycle", CallCycle},
                              {"actions", Actions},
                              {"commands", Commands},
                              {"events", Events},
                              {"host_calls", HostCalls},
                              {"statements", Statements},
                              {"else_ifs", ElseIfs},
                              {"cases", Cases},
                              {"terms", Terms},
                              {"accented_names", AccentedNames}};

}  // namespace

std::span<const ManyKind> ManyKinds() {
    return Kinds;
}

std::string GenerateImporter(int count) {
    return One("importar \"m#\"\n", count) + "procedimento p()\n    x: inteiro\n" +
           Wrapped("", "    x = valor#(x)\n", "fim\n", count).substr(Head.size());
}

std::string GenerateImported(int number) {
    std::string out;
    Repeat("modulo M#\nconstante BASE# = 1\nfuncao valor#(x: inteiro): inteiro\n    retorne x + BASE#\nfim\n", number,
           1, out);
    return out;
}

}  // namespace tavrel::bench
