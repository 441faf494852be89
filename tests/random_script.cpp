#include "tests/random_script.h"

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "core/script/world/world_api.h"

namespace tavrel::tests {

namespace {

// The language's own words for a type: "inteiro", "lista de texto", the name of a record or enumeration.
using Type = std::string;

constexpr int MaxDepth = 4;

struct Variable {
    std::string name;
    Type type;
    bool writable = true;
};

struct Routine {
    std::string name;
    std::vector<Type> params;
    Type result;        // empty for a procedure
    bool tick = false;  // writes the state or draws lots, so only "a cada tick" may reach it
};

// One way to make a value: "{type}" stands for any expression of that type, "{=type}" for a variable of it.
struct Form {
    const char* result;
    const char* text;
};

constexpr Form Forms[] = {
    {"inteiro", "{inteiro} + {inteiro}"},
    {"inteiro", "({inteiro} - {inteiro})"},
    {"inteiro", "({inteiro}) * {=inteiro}"},
    {"inteiro", "({inteiro}) / (abs({inteiro}) + 1)"},
    {"inteiro", "({inteiro}) % 7"},
    {"inteiro", "7 % ({inteiro})"},
    {"inteiro", "-({inteiro})"},
    {"inteiro", "abs({inteiro})"},
    {"inteiro", "inteiro({real})"},
    {"inteiro", "inteiro_de_texto({texto}, {inteiro})"},
    {"inteiro", "maior({inteiro}, {inteiro})"},
    {"inteiro", "menor({inteiro}, {inteiro})"},
    {"inteiro", "limitar({inteiro}, -3, {inteiro})"},
    {"inteiro", "tamanho({texto})"},
    {"inteiro", "tamanho({=lista de inteiro})"},
    {"inteiro", "{=lista de texto}.tamanho()"},
    {"inteiro", "tamanho({=dicionario de texto para inteiro})"},
    {"inteiro", "{=lista de inteiro}.posicao_de({inteiro})"},
    {"inteiro", "{=lista de inteiro}[limitar({inteiro}, 0, 1)]"},
    {"inteiro", "{=dicionario de texto para inteiro}.obter({texto}, {inteiro})"},
    {"inteiro", "{=dicionario de texto para inteiro}[\"a\"]"},
    {"inteiro", "{=Ponto}.peso"},
    {"inteiro", "{=Linha}.fim_dela.peso"},
    {"real", "{real} + {real}"},
    {"real", "({real} - {real})"},
    {"real", "({real}) * {=real}"},
    {"real", "({real}) / (abs({real}) + 0.5)"},
    {"real", "-({real})"},
    {"real", "real({inteiro})"},
    {"real", "real_de_texto({texto}, {real})"},
    {"real", "abs({real})"},
    {"real", "piso({real}) + teto({real})"},
    {"real", "arredondar({real})"},
    {"real", "raiz(abs({real}))"},
    {"real", "potencia({real}, 2.0)"},
    {"real", "exp(menor({real}, 3.0))"},
    {"real", "log(abs({real}) + 1.0)"},
    {"real", "seno({real}) - cosseno({real})"},
    {"real", "tangente({real})"},
    {"real", "arco_seno(seno({real}))"},
    {"real", "arco_cosseno(limitar({real}, -1.0, 1.0))"},
    {"real", "arco_tangente({real}) * arco_tangente2({real}, {real})"},
    {"real", "maior({real}, {real})"},
    {"real", "limitar({real}, {real}, {real})"},
    {"real", "interpolar({real}, {real}, 0.25)"},
    {"real", "distancia({vetor2}, {vetor2})"},
    {"real", "distancia_plana({vetor3}, {vetor3})"},
    {"real", "distancia({vetor3}, {vetor3}) - distancia_plana({vetor2}, {vetor2})"},
    {"real", "comprimento({vetor3}) + comprimento({vetor2})"},
    {"real", "menor({real}, {real})"},
    {"real", "{=vetor3}.z"},
    {"real", "{=vetor2}.x"},
    {"real", "{=Ponto}.lugar.y"},
    {"real", "{=lista de real}[limitar({inteiro}, 0, 1)]"},
    {"logico", "{inteiro} < {inteiro}"},
    {"logico", "{real} >= {real}"},
    {"logico", "({texto}) <= ({texto})"},
    {"logico", "({texto}) == ({texto})"},
    {"logico", "{vetor3} != {vetor3}"},
    {"logico", "{Rumo} == {Rumo}"},
    {"logico", "({logico}) e ({logico})"},
    {"logico", "({logico}) ou ({logico})"},
    {"logico", "nao ({logico})"},
    {"logico", "contem({texto}, {texto})"},
    {"logico", "contem({=lista de inteiro}, {inteiro})"},
    {"logico", "contem({=dicionario de texto para inteiro}, {texto})"},
    {"texto", "{texto} + {texto}"},
    {"texto", "texto({inteiro})"},
    {"texto", "texto({vetor3}) + texto({Rumo})"},
    {"texto", "texto({=Linha})"},
    {"texto", "formatar(\"{{}} e {{}}\", {real}, {logico})"},
    {"texto", "formatar(\"[{{}}]\", {=lista de texto})"},
    {"texto", "{=lista de texto}[limitar({inteiro}, 0, 1)]"},
    {"texto", "{=Ponto}.nome"},
    {"vetor2", "vetor2({real}, {real})"},
    {"vetor2", "{vetor2} - {vetor2}"},
    {"vetor2", "normalizar({vetor2} + vetor2(0.5, 1.5))"},
    {"vetor2", "interpolar({vetor2}, {vetor2}, {real})"},
    {"vetor3", "vetor3({real}, {real}, {real})"},
    {"vetor3", "{vetor3} + {vetor3}"},
    {"vetor3", "({vetor3}) * {=real}"},
    {"vetor3", "({vetor3}) / (abs({real}) + 0.5)"},
    {"vetor3", "-({vetor3})"},
    {"vetor3", "interpolar({vetor3}, {vetor3}, 0.5)"},
    {"vetor3", "normalizar({vetor3} + vetor3(0.5, 1.5, 0.0))"},
    {"vetor3", "{=Ponto}.lugar"},
    {"cor", "cor({real}, {real}, 0.5, 1.0)"},
    {"cor", "interpolar({cor}, {cor}, {real})"},
    {"Rumo", "NORTE"},
    {"Rumo", "SUL"},
    {"Ponto", "copiar({=Ponto})"},
    {"Ponto", "{=Linha}.fim_dela"},
    {"Linha", "copiar({=Linha})"},
    {"lista de inteiro", "[{inteiro}, {inteiro}, {inteiro}]"},
    {"lista de inteiro", "copiar({=lista de inteiro})"},
    {"lista de inteiro", "{=dicionario de texto para inteiro}.valores()"},
    {"lista de real", "[{real}, {real}]"},
    {"lista de texto", "dividir({texto}, \",\")"},
    {"lista de texto", "[{texto}]"},
    {"lista de texto", "{=dicionario de texto para inteiro}.chaves()"},
    {"dicionario de texto para inteiro", "[\"a\": {inteiro}, \"\xC3\xA9\": {inteiro}]"},
    {"dicionario de texto para inteiro", "copiar({=dicionario de texto para inteiro})"},
};

constexpr Form Draws[] = {
    {"real", "aleatorio()"}, {"inteiro", "aleatorio(-2, {inteiro} % 100)"}, {"real", "aleatorio_real({real}, 2.0)"}};

// What changes a container or a part of a value: the first braces hold the type that is changed.
constexpr const char* Changes[] = {
    "{=lista de inteiro}.adicionar({inteiro})",
    "{=lista de inteiro}.inserir(0, {inteiro})",
    "{=lista de inteiro}.remover(0)",
    "{=lista de inteiro}.remover_valor({inteiro})",
    "{=lista de inteiro}.ordenar()",
    "{=lista de texto}.inverter()",
    "{=lista de texto}.adicionar({texto})",
    "{=lista de inteiro}[0] = {inteiro}",
    "{=lista de real}[1] = {real}",
    "{=lista de texto}.ordenar()",
    "{=lista de texto}.limpar()",
    "{=dicionario de texto para inteiro}.definir({texto}, {inteiro})",
    "{=dicionario de texto para inteiro}[{texto}] = {inteiro}",
    "{=dicionario de texto para inteiro}.remover({texto})",
    "{=dicionario de texto para inteiro}.limpar()",
    "{=vetor3}.y = {real}",
    "{=Ponto}.peso = {inteiro}",
    "{=Ponto}.lugar.x = {real}",
    "{=Ponto}.nome = {texto}",
    "{=Linha}.fim_dela = {Ponto}",
    "{=Linha}.fim_dela.lugar.z = {real}",
};

// Every type that expressions are made of. The state holds a variable of each, so that "{=type}" always finds one.
const std::vector<Type> Types = {"inteiro",
                                 "real",
                                 "logico",
                                 "texto",
                                 "vetor2",
                                 "vetor3",
                                 "cor",
                                 "Rumo",
                                 "Ponto",
                                 "Linha",
                                 "lista de inteiro",
                                 "lista de real",
                                 "lista de texto",
                                 "dicionario de texto para inteiro"};

constexpr const char* Heading = R"(
enumeracao Rumo = NORTE, SUL, LESTE

registro Ponto
    lugar: vetor3
    nome: texto = "p"
    peso: inteiro = 2
fim

registro Linha
    fim_dela: Ponto
    vizinhas: lista de Linha
fim
)";

class Writer {
public:
    Writer(std::uint64_t seed, bool givenWorld) : state(seed), world(givenWorld) {}

    std::string Script() {
        text = "modulo Sorteio\n";
        text += Heading;
        Globals();
        for (int i = 0; i < 4; ++i) Subprogram(false);
        for (int i = 0; i < 3; ++i) Subprogram(true);
        Behaviour();
        Hook("ao iniciar", "", false);
        inTick = true;
        Hook("a cada tick", "passo", true);
        inTick = false;
        Hook("a cada quadro", "quadro", false);
        return Untidy(text);
    }

private:
    // SplitMix64 (Steele, Lea, Flood: Fast splittable pseudorandom number generators).
    std::uint64_t Below(std::uint64_t count) {
        std::uint64_t word = (state += 0x9E3779B97F4A7C15U);
        word = (word ^ (word >> 30U)) * 0xBF58476D1CE4E5B9U;
        word = (word ^ (word >> 27U)) * 0x94D049BB133111EBU;
        return (word ^ (word >> 31U)) % count;
    }
    bool OneIn(std::uint64_t count) { return Below(count) == 0; }

    template <class List>
    const auto& OneOf(const List& list) {
        return list[Below(std::size(list))];
    }

    // Names with an accent are found without it, and the other way round.
    std::string NewName(const char* stem) { return stem + std::to_string(++names); }
    std::string Spelled(const std::string& name) {
        if (name.starts_with("no") && OneIn(2)) return "n\xC3\xB3" + name.substr(2);
        return name;
    }

    std::string Literal(const Type& type) {
        static const std::vector<std::string> Integers = {"0", "1", "2", "7", "0x1F", "0b101", "1000", "4000000000"};
        static const std::vector<std::string> Reals = {"0.0", "0.5", "1.25", "3.0e2", "1.0e-3", "100.0"};
        static const std::vector<std::string> Texts = {
            "\"\"", "\"a\"", "\"b,c,d\"", "\"a\xC3\xA7\xC3\xA3o \xF0\x9F\x98\x80\"", "\"\\n\\\"\\\\\"", "\"12\""};
        if (type == "inteiro") return OneOf(Integers);
        if (type == "real") return OneOf(Reals);
        if (type == "logico") return OneIn(2) ? "verdadeiro" : "falso";
        if (type == "texto") return OneOf(Texts);
        if (type == "Rumo") return OneOf(std::vector<std::string>{"NORTE", "SUL", "LESTE"});
        if (type == "vetor2") return "vetor2(1.0, 2.0)";
        if (type == "vetor3") return "vetor3(1.0, 2.0, 0.5)";
        if (type == "cor") return "cor(1.0, 0.5, 0.25, 1.0)";
        return VariableOf(type, false);
    }

    std::string VariableOf(const Type& type, bool toWrite) {
        std::vector<const Variable*> found;
        for (const Variable& variable : variables) {
            if (variable.type == type && (variable.writable || !toWrite)) found.push_back(&variable);
        }
        return found.empty() ? "" : Spelled(OneOf(found)->name);
    }

    std::string Expression(const Type& type, int depth) {
        if (depth >= MaxDepth || OneIn(4)) return OneIn(2) ? Literal(type) : VariableOf(type, false);
        if (OneIn(6)) {
            const std::string call = Call(type, depth);
            if (!call.empty()) return call;
        }
        if (world && OneIn(4)) {
            const std::string call = WorldCall(type);
            if (!call.empty()) return call;
        }
        std::vector<const char*> fitting;
        for (const Form& form : Forms) {
            if (type == form.result) fitting.push_back(form.text);
        }
        for (const Form& form : Draws) {
            if (inTick && type == form.result) fitting.push_back(form.text);
        }
        return fitting.empty() ? Literal(type) : Filled(OneOf(fitting), depth);
    }

    // Puts expressions in the place of a form's braces; "{{}}" is "{}".
    std::string Filled(std::string_view form, int depth) {
        std::string filled;
        for (std::size_t at = 0; at < form.size();) {
            if (form.substr(at, 4) == "{{}}") {
                filled += "{}";
                at += 4;
            } else if (form[at] == '{') {
                const std::size_t end = form.find('}', at);
                const bool variable = form[at + 1] == '=';
                const Type type(form.substr(at + 1 + (variable ? 1 : 0), end - at - 1 - (variable ? 1 : 0)));
                filled += variable ? VariableOf(type, false) : Expression(type, depth + 1);
                at = end + 1;
            } else {
                filled += form[at++];
            }
        }
        return filled;
    }

    std::string Arguments(const std::vector<Type>& params, int depth) {
        std::string list;
        for (const Type& param : params) list += (list.empty() ? "" : ", ") + Expression(param, depth + 1);
        return "(" + list + ")";
    }

    // A call of a routine that stands before, so that nothing calls itself.
    std::string Call(const Type& wanted, int depth) {
        std::vector<const Routine*> found;
        for (const Routine& routine : routines) {
            if (routine.result == wanted && (inTick || !routine.tick)) found.push_back(&routine);
        }
        if (found.empty()) return "";
        const Routine& routine = *OneOf(found);
        return routine.name + Arguments(routine.params, depth);
    }

    static bool IsPlain(std::string_view type) {
        return type == "inteiro" || type == "real" || type == "logico" || type == "vetor2" || type == "vetor3";
    }

    // What any hook may ask of the world and what the types here can say.
    std::string WorldCall(const Type& wanted) {
        using namespace core::script;
        std::vector<std::string> found;
        for (const ApiFunction& function : WorldApi().functions) {
            bool plain = wanted == function.result && function.hooks == AllHooks && !function.effect;
            std::vector<Type> params;
            for (const ApiParam& param : function.params) {
                plain = plain && IsPlain(param.type);
                params.emplace_back(param.type);
            }
            if (plain) found.push_back(function.name + Arguments(params, MaxDepth));
        }
        for (const ApiNamespaceField& field : WorldApi().namespaceFields) {
            if (wanted == field.type && field.hooks == AllHooks)
                found.push_back(std::string(field.space) + "." + field.name);
        }
        return found.empty() ? "" : OneOf(found);
    }

    void Line(const std::string& line) { text += line + "\n"; }

    void Globals() {
        Line("");
        for (const Type type : {"inteiro", "real", "texto"}) {
            const std::string name = NewName("CONST");
            Line("constante " + name + ": " + type + " = " + Literal(type));
            variables.push_back({name, type, false});
        }
        Line("estado");
        for (const Type& type : Types) {
            const std::string name = NewName("no");
            const bool list = type.find(" de ") != Type::npos;
            Line(Spelled(name) + ": " + type + (list || OneIn(2) ? Initial(type) : ""));
            variables.push_back({name, type, false});
            stateNames.push_back(name);
        }
        Line("fim\nvisual");
        Line("brilho: real = 0.5\nletreiro: texto\nfim");
    }

    std::string Initial(const Type& type) {
        if (type == "lista de inteiro") return " = [3, 1, 2]";
        if (type == "lista de real") return " = [0.5, -1.5]";
        if (type == "lista de texto") return " = [\"x\", \"b\", \"c\"]";
        if (type.starts_with("dicionario")) return " = [\"a\": 1]";
        if (type == "Ponto" || type == "Linha") return "";
        return " = " + Literal(type);
    }

    // The state may be written in what only a tick reaches.
    void LetStateBeWritten(bool may) {
        for (Variable& variable : variables) {
            for (const std::string& name : stateNames) {
                if (variable.name == name) variable.writable = may;
            }
        }
    }

    void Subprogram(bool tick) {
        Routine routine;
        routine.name = NewName(tick ? "muda" : "soma");
        routine.tick = tick;
        if (!OneIn(3)) routine.result = OneOf(Types);
        const std::size_t before = variables.size();
        std::string params;
        for (std::uint64_t i = Below(4); i > 0; --i) {
            const Type& type = OneOf(Types);
            const std::string name = NewName("p");
            params += (params.empty() ? "" : ", ") + name + ": " + type;
            routine.params.push_back(type);
            variables.push_back({name, type, false});
        }
        Line("");
        Line((routine.result.empty() ? "procedimento " : "funcao ") + routine.name + "(" + params + ")" +
             (routine.result.empty() ? "" : ": " + routine.result));
        inTick = tick;
        LetStateBeWritten(tick);
        Block(0, tick ? 6 : 3);
        if (!routine.result.empty()) Line("retorne " + Expression(routine.result, 0));
        Line("fim");
        LetStateBeWritten(false);
        inTick = false;
        variables.resize(before);
        routines.push_back(std::move(routine));
    }

    // Every routine is called from the tick, so that the law over the state reaches it from there.
    void Hook(const std::string& head, const std::string& step, bool tick) {
        const std::size_t before = variables.size();
        Line("");
        Line(head + (step.empty() ? "" : " (" + step + ": real)"));
        if (!step.empty()) variables.push_back({step, "real", false});
        LetStateBeWritten(tick);
        if (tick) {
            for (const Routine& routine : routines) CallStatement(routine);
        }
        Block(0, 8);
        if (!step.empty() && !tick)
            Line("brilho = " + Expression("real", 1) + "\nletreiro = " + Expression("texto", 1));
        Line("fim");
        LetStateBeWritten(false);
        variables.resize(before);
    }

    void CallStatement(const Routine& routine) {
        const std::string call = routine.name + Arguments(routine.params, 1);
        Line(routine.result.empty() ? call : NewName("r") + ": " + routine.result + " = " + call);
    }

    void Behaviour() {
        Line("\ncomportamento Guarda\nparametro forca: real = 1.5\nestado\nvidas: inteiro = 3\nfim\n");
        Line("funcao sobra(a: inteiro): inteiro\nretorne vidas - a\nfim\n");
        const std::size_t before = variables.size();
        variables.push_back({"vidas", "inteiro", true});
        variables.push_back({"forca", "real", false});
        inTick = true;
        Line("a cada tick (passo: real)\nvidas = sobra(1)");
        LetStateBeWritten(true);
        Block(0, 4);
        Line("fim\nfim");
        LetStateBeWritten(false);
        inTick = false;
        variables.resize(before);
    }

    // Some statements in a scope of their own.
    void Block(int depth, std::uint64_t most) {
        const std::size_t before = variables.size();
        for (std::uint64_t i = Below(most) + 1; i > 0; --i) Statement(depth);
        variables.resize(before);
    }

    void Statement(int depth) {
        switch (Below(depth < 3 ? 12 : 6)) {
            case 0:
            case 1: return Declare();
            case 2:
            case 3: return Assign();
            case 4: return Line("escreva(" + Expression("texto", 1) + ")");
            case 5: return Change();
            case 6:
            case 7: return If(depth);
            case 8: return While(depth);
            case 9: return For(depth);
            case 10: return ForEach(depth);
            default: return Switch(depth);
        }
    }

    void Declare() {
        const Type& type = OneOf(Types);
        const std::string name = NewName("no");
        Line(Spelled(name) + ": " + type + (OneIn(4) ? "" : " = " + Expression(type, 0)));
        variables.push_back({name, type, true});
    }

    void Assign() {
        const Type& type = OneOf(Types);
        const std::string name = VariableOf(type, true);
        if (!name.empty()) Line(name + " = " + Expression(type, 0));
    }

    // The changed variable must be one that this code may write.
    void Change() {
        const std::string_view form = OneOf(Changes);
        const std::size_t end = form.find('}');
        const std::string name = VariableOf(Type(form.substr(2, end - 2)), true);
        if (!name.empty()) Line(name + Filled(form.substr(end + 1), 0));
    }

    void If(int depth) {
        const std::string condition = Expression("logico", 0);
        if (OneIn(4)) return Line("se " + condition + " entao escreva(" + Expression("texto", 2) + ") fim");
        Line("se " + condition);
        Block(depth + 1, 3);
        while (OneIn(3)) {
            Line("senao se " + Expression("logico", 1));
            Block(depth + 1, 2);
        }
        if (OneIn(2)) {
            Line("senao");
            Block(depth + 1, 3);
        }
        Line("fim");
    }

    void While(int depth) {
        const std::string counter = NewName("volta");
        Line(counter + ": inteiro");
        Line("enquanto " + counter + " < " + std::to_string(Below(5)) + " e (" + Expression("logico", 2) + ")");
        Line(counter + " = " + counter + " + 1");
        LoopBody(depth);
    }

    void For(int depth) {
        const std::string counter = NewName("i");
        const char* const step = OneIn(3) ? " passo 2" : "";
        Line("para " + counter + " de " + std::to_string(Below(3)) + " ate " + std::to_string(Below(6)) + step);
        variables.push_back({counter, "inteiro", false});
        LoopBody(depth);
        variables.pop_back();
    }

    void ForEach(int depth) {
        static const std::vector<Type> Elements = {"inteiro", "texto", "real"};
        const Type& type = OneOf(Elements);
        const std::string item = NewName("cada");
        Line("para cada " + item + " em " + VariableOf("lista de " + type, false));
        variables.push_back({item, type, false});
        LoopBody(depth);
        variables.pop_back();
    }

    void LoopBody(int depth) {
        Block(depth + 1, 3);
        if (OneIn(3)) Line("se " + Expression("logico", 1) + " entao " + (OneIn(2) ? "pare" : "continue") + " fim");
        Line("fim");
    }

    void Switch(int depth) {
        const bool direction = OneIn(2);
        Line("escolha " + Expression(direction ? "Rumo" : "inteiro", 1));
        Line(direction ? "caso NORTE, LESTE" : "caso 1, 2");
        Block(depth + 1, 2);
        Line(direction ? "caso SUL" : "caso 0");
        Block(depth + 1, 2);
        if (OneIn(2)) {
            Line("senao");
            Block(depth + 1, 2);
        }
        Line("fim");
    }

    // Blanks at either end, empty lines and comments, where they mean nothing.
    std::string Untidy(const std::string& tidy) {
        std::string untidy;
        for (std::size_t at = 0; at < tidy.size();) {
            const std::size_t end = tidy.find('\n', at);
            untidy += std::string(Below(9), OneIn(9) ? '\t' : ' ') + tidy.substr(at, end - at);
            if (OneIn(12)) untidy += std::string(Below(3), ' ') + "// \xC3\xA9 assim  ";
            untidy += std::string(OneIn(6) ? Below(4) : 0, ' ');
            untidy += OneIn(10) ? "\n\n\n" : "\n";
            at = end + 1;
        }
        return untidy;
    }

    std::uint64_t state;
    bool world;
    int names = 0;
    bool inTick = false;
    std::string text;
    std::vector<Variable> variables;  // in scope, the state's first
    std::vector<std::string> stateNames;
    std::vector<Routine> routines;
};

}  // namespace

std::string RandomScript(std::uint64_t seed, bool world) {
    return Writer(seed, world).Script();
}

}  // namespace tavrel::tests
