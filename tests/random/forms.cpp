#include "tests/random/forms.h"

#include <cstddef>
#include <string_view>

namespace tavrel::tests {

namespace {

struct Pair {
    const char* key;
    const char* value;
};

constexpr const char* Elements[] = {"inteiro", "real",   "texto",   "Rumo",   "vetor3",          "Ponto",
                                    "Linha",   "objeto", "Contato", "Acerto", "lista de inteiro"};
constexpr Pair Pairs[] = {
    {"texto", "inteiro"}, {"inteiro", "texto"}, {"Rumo", "vetor3"}, {"texto", "lista de real"}, {"objeto", "Ponto"}};
constexpr const char* Scalars[] = {"logico",    "vetor2",      "cor",  "Categoria", "corpo", "som",
                                   "Andarilho", "TipoContato", "Chao", "Agua",      "camera"};
constexpr const char* Records[] = {"Ponto", "Linha", "Contato", "Acerto", "Andarilho", "Chao", "Agua", "camera"};

constexpr std::uint32_t Tick = 0x10;
constexpr std::uint32_t Frame = 0x20;
constexpr std::uint32_t Shown = 0xE0;   // frame, draw, camera
constexpr std::uint32_t Draws = 0xC10;  // where lots are drawn: tick, touch, release
constexpr std::uint32_t Inputs = 0x30;

const std::vector<Form> Forms = {
    {"inteiro", "{inteiro} + {inteiro}"},
    {"inteiro", "({inteiro} - {inteiro})"},
    {"inteiro", "({inteiro}) % 1000 * (({inteiro}) % 100)"},
    {"inteiro", "({inteiro}) / (abs({inteiro}) + 1)"},
    {"inteiro", "({inteiro}) % (abs({inteiro}) + 7)"},
    {"inteiro", "-({inteiro})"},
    {"inteiro", "abs({inteiro})"},
    {"inteiro", "inteiro(limitar({real}, -1000.5, 1000.5)) + inteiro({inteiro})"},
    {"inteiro", "inteiro_de_texto({texto}, {inteiro})"},
    {"inteiro", "maior({inteiro}, {inteiro})"},
    {"inteiro", "menor({inteiro}, {inteiro})"},
    {"inteiro", "limitar({inteiro}, -3, {inteiro})"},
    {"inteiro", "desce(({inteiro}) % 9)"},
    {"inteiro", "tamanho({texto})"},
    {"inteiro", "tamanho({lista de $})"},
    {"inteiro", "{=lista de $}.tamanho()"},
    {"inteiro", "{=lista de $}.posicao_de({$})"},
    {"inteiro", "tamanho({dicionario de @k para @v})"},
    {"inteiro", "{=dicionario de @k para @v}.tamanho()"},
    {"inteiro", "{=Linha}.fim_dela.peso - {=Ponto}.peso"},
    {"inteiro", "eventos.chegada.quantos", Frame},
    {"inteiro", "aleatorio(-2, ({inteiro}) % 100)", Draws},
    {"inteiro", "{inteiro} * {inteiro}", 0, Use::Risky},
    {"inteiro", "({inteiro}) / ({inteiro})", 0, Use::Risky},
    {"inteiro", "7 % ({inteiro})", 0, Use::Risky},
    {"inteiro", "inteiro({real})", 0, Use::Risky},
    {"real", "{real} + {real}"},
    {"real", "({real} - {real} * 0.5)"},
    {"real", "limitar({real}, -100, 100) * {real}"},
    {"real", "({real}) / (abs({real}) + 0.5)"},
    {"real", "3 * ({real}) + -2"},
    {"real", "{=real} + {=real} * limitar({real}, -2, 2)"},
    {"real", "{=real} - {=real} * limitar({real}, -2, 2)"},
    {"real", "limitar({real}, -2, 2) * {=real} - {=real}"},
    {"real", "-({real})"},
    {"real", "real({inteiro}) / 8 + real({real})"},
    {"real", "real_de_texto({texto}, {real})"},
    {"real", "abs({real})"},
    {"real", "piso({real}) + teto({real})"},
    {"real", "arredondar({real})"},
    {"real", "raiz(abs({real}) + 2)"},
    {"real", "potencia(limitar({real}, 0.5, 9), 2)"},
    {"real", "exp(menor({real}, 3))"},
    {"real", "log(abs({real}) + 1)"},
    {"real", "seno({real}) - cosseno({real})"},
    {"real", "tangente(PI / 5 + {=real} * 0)"},
    {"real", "arco_seno(seno({real}))"},
    {"real", "arco_cosseno(limitar({real}, -1, 1))"},
    {"real", "arco_tangente({real}) * arco_tangente2({real}, {real})"},
    {"real", "maior({real}, 1) + menor(2, {=real})"},
    {"real", "limitar({real}, {real}, {real})"},
    {"real", "interpolar({real}, {real}, 0.25)"},
    {"real", "distancia({vetor2}, {vetor2}) + distancia({vetor3}, {vetor3})"},
    {"real", "distancia_plana({vetor3}, {vetor3}) - distancia_plana({vetor2}, {vetor2})"},
    {"real", "comprimento({vetor3}) + comprimento({vetor2}) + comprimento({cor})"},
    {"real", "{=vetor3}.z + {=vetor2}.x"},
    {"real", "{=cor}.g"},
    {"real", "{=Ponto}.lugar.y"},
    {"real", "{=Andarilho}.altura * 0.5"},
    {"real", "eventos.nota.valor", Shown},
    {"real", "aleatorio()", Draws},
    {"real", "aleatorio_real({real}, 2)", Draws},
    {"real", "entrada.andar.valor", Inputs, Use::World},
    {"real", "raiz({real}) + log({real})", 0, Use::Risky},
    {"real", "exp({real}) * arco_seno({real})", 0, Use::Risky},
    {"logico", "{inteiro} < {inteiro}"},
    {"logico", "{inteiro} >= {inteiro}"},
    {"logico", "{real} > {real}"},
    {"logico", "{texto} <= {texto}"},
    {"logico", "{texto} == {texto}"},
    {"logico", "{vetor3} != {vetor3}"},
    {"logico", "{vetor2} == {vetor2}"},
    {"logico", "{cor} == {cor}"},
    {"logico", "{Rumo} == {Rumo}"},
    {"logico", "{objeto} != {objeto} ou {corpo} == {corpo} ou {som} == {som}"},
    {"logico", "({logico}) == ({logico})"},
    {"logico", "{logico} e {logico}"},
    {"logico", "({logico} ou {logico})"},
    {"logico", "nao {logico}"},
    {"logico", "nao ({logico}) e {Categoria} == MUSICA"},
    {"logico", "tamanho({=lista de $}) > 0 e texto({&}[0]) != {texto}"},
    {"logico", "contem({texto}, {texto})"},
    {"logico", "contem({lista de $}, {$})"},
    {"logico", "contem({=dicionario de @k para @v}, {@k})"},
    {"logico", "{=lista de $}.remover_valor({$})"},
    {"logico", "{=dicionario de @k para @v}.remover({@k})"},
    {"logico", "{=Andarilho}.no_chao ou {=Contato}.tipo == SEGUE"},
    {"logico", "eventos.chegada.chegou", Frame},
    {"logico", "{=Contato}.a.existe e {logico}", 0, Use::World},
    {"logico", "entrada.pular.apertado", Inputs, Use::World},
    {"logico", "entrada({inteiro}).pular.pressionado e entrada.andar.solto", Inputs, Use::World},
    {"texto", "{texto} + \"+\""},
    {"texto", "curto({texto} + {texto})"},
    {"texto", "curto(texto({$}))"},
    {"texto", "curto(texto({dicionario de @k para @v}) + texto({logico}))"},
    {"texto", "curto(formatar(\"{{}} e {{}}\", {$}, {logico}))"},
    {"texto", "curto(formatar({texto}) + formatar(\"[{{}}]\", {lista de $}))"},
    {"texto", "curto(formatar({texto} + \"{{}}{{}}\", {inteiro}))", 0, Use::Risky},
    {"texto", "{=Ponto}.nome"},
    {"vetor2", "vetor2({real}, {real})"},
    {"vetor2", "{vetor2} - {vetor2}"},
    {"vetor2", "({vetor2} + {vetor2}) * 0.5"},
    {"vetor2", "-normalizar({vetor2})"},
    {"vetor2", "interpolar({vetor2}, {vetor2}, {real})"},
    {"vetor3", "vetor3({real}, 2, {real})"},
    {"vetor3", "{vetor3} + {vetor3}"},
    {"vetor3", "({vetor3} - {vetor3})"},
    {"vetor3", "({vetor3}) * limitar({real}, -4, 4)"},
    {"vetor3", "({vetor3}) / (abs({real}) + 0.5)"},
    {"vetor3", "-({vetor3})"},
    {"vetor3", "interpolar({vetor3}, {vetor3}, 0.5)"},
    {"vetor3", "normalizar({vetor3} + vetor3(0.5, 1.5, 0))"},
    {"vetor3", "{=Ponto}.lugar"},
    {"vetor3", "{=Andarilho}.pes"},
    {"cor", "cor({real}, {real}, 0.5)"},
    {"cor", "cor({real}, 10, 20, {real}) - {cor}"},
    {"cor", "interpolar({cor}, {cor}, {real})"},
    {"corpo", "{=Contato}.a"},
    {"TipoContato", "{=Contato}.tipo"},
    {"Ponto", "copiar({Ponto})"},
    {"Ponto", "{=Linha}.fim_dela"},
    {"Linha", "copiar({Linha})"},
    {"lista de Linha", "{=Linha}.vizinhas"},
    {"Andarilho", "copiar({Andarilho})"},
    {"$", "[{$}, {$}][limitar({inteiro}, 0, 1)]"},
    {"$", "{=lista de $}[{inteiro}]", 0, Use::Risky},
    {"@v", "{=dicionario de @k para @v}.obter({@k}, {@v})"},
    {"@v", "[{@k}: {@v}].obter({@k}, {@v})"},
    {"@v", "{=dicionario de @k para @v}[{@k}]", 0, Use::Risky},
    {"lista de $", "[{$}, {$}, {$}]"},
    {"lista de $", "[{$},]"},
    {"lista de $", "copiar({lista de $})"},
    {"lista de @k", "{=dicionario de @k para @v}.chaves()"},
    {"lista de @v", "{=dicionario de @k para @v}.valores()"},
    {"lista de texto", "dividir({texto}, \",\")"},
    {"lista de texto", "dividir({texto}, {texto})"},
    {"dicionario de @k para @v", "[{@k}: {@v}, {@k}: {@v}]"},
    {"dicionario de @k para @v", "copiar({dicionario de @k para @v})"},
    {"", "{=lista de $}.adicionar({$})"},
    {"", "{=lista de $}.adicionar({$})"},
    {"", "{=lista de $}.inserir(0, {$})"},
    {"", "se {=lista de $}.tamanho() > 0 entao {&}.remover(0) fim"},
    {"", "{=lista de $}.remover_valor({$})"},
    {"", "{=lista de $}.inverter()"},
    {"", "{=lista de $}.limpar()"},
    {"", "{=lista de inteiro}.ordenar()"},
    {"", "{=lista de real}.ordenar()"},
    {"", "{=lista de texto}.ordenar()"},
    {"", "se tamanho({!lista de $}) > 0 entao {&}[0] = {$} fim"},
    {"", "se tamanho({!lista de vetor3}) > 0 entao {&}[0].y = {real} fim"},
    {"", "se tamanho({!lista de Linha}) > 0 entao {&}[0].fim_dela.lugar.x = {real} senao {&} = {lista de Linha} fim"},
    {"", "{=dicionario de @k para @v}.definir({@k}, {@v})"},
    {"", "{!dicionario de @k para @v}[{@k}] = {@v}"},
    {"", "{=dicionario de @k para @v}.remover({@k})"},
    {"", "{=dicionario de @k para @v}.limpar()"},
    {"", "se contem({!dicionario de Rumo para vetor3}, SUL) entao {&}[SUL].x = {real} fim"},
    {"", "{!vetor2}.z = {real}"},
    {"", "{!vetor3}.y = 2"},
    {"", "{!cor}.a = {real}"},
    {"", "{!Ponto}.peso = {inteiro}"},
    {"", "{!Ponto}.lugar.x = {real}"},
    {"", "{!Ponto}.nome = {texto}"},
    {"", "{!Linha}.fim_dela = {Ponto}"},
    {"", "{!Linha}.fim_dela.lugar.z = {real}"},
    {"", "{=Linha}.vizinhas.adicionar(novo_Linha())"},
    {"", "{=Linha}.vizinhas.adicionar({Linha})", 0, Use::Risky},
    {"", "{!Andarilho}.pes.x = {real}"},
    {"", "{!lista de $}[{inteiro}] = {$}", 0, Use::Risky},
    {"", "{=lista de $}.remover({inteiro})", 0, Use::Risky},
    {"", "eventos.chegada.emitir({inteiro})", Tick},
    {"", "eventos.nota.emitir({real})", Tick},
    {"", "entrada.comprar.enviar({real})", Frame, Use::World},
};

std::string Replaced(std::string text, std::string_view mark, std::string_view by) {
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + by.size())) {
        text.replace(at, mark.size(), by);
    }
    return text;
}

std::string WithElement(const std::string& text, const char* element) {
    return Replaced(text, "$", element);
}

std::string WithPair(const std::string& text, const Pair& pair) {
    return Replaced(Replaced(text, "@k", pair.key), "@v", pair.value);
}

}  // namespace

const std::vector<std::string>& AllTypes() {
    static const std::vector<std::string> all = [] {
        std::vector<std::string> types(std::begin(Elements), std::end(Elements));
        types.insert(types.end(), std::begin(Scalars), std::end(Scalars));
        for (const char* element : Elements) types.push_back(WithElement("lista de $", element));
        for (const Pair& pair : Pairs) types.push_back(WithPair("dicionario de @k para @v", pair));
        return types;
    }();
    return all;
}

const std::vector<Form>& AllForms() {
    return Forms;
}

std::string LiteralOf(RandomNumbers& numbers, const std::string& type) {
    static const std::vector<std::string> integers = {"0",    "1",      "2",     "7",          "0x1F",
                                                      "0XFf", "0b1_01", "1_000", "4000000000", "12"};
    static const std::vector<std::string> reals = {"0.0", "0.5", "1.25", "3.0e2", "1e-3", "100.0", "1_0.2_5", "7E+1"};
    static const std::vector<std::string> texts = {
        "\"\"", "\"a\"", "\"b,c,d\"", "\"a\xC3\xA7\xC3\xA3o \xF0\x9F\x98\x80\"", "\"\\n\\\"\\\\ // {\\t\"", "\"12\""};
    if (type == "inteiro") return numbers.OneOf(integers);
    if (type == "real") return numbers.OneOf(reals);
    if (type == "texto") return numbers.OneOf(texts);
    if (type == "logico") return numbers.OneIn(2) ? "verdadeiro" : "falso";
    if (type == "Rumo") return numbers.OneOf(std::vector<std::string>{"NORTE", "SUL", "LESTE"});
    if (type == "Categoria") return numbers.OneIn(2) ? "EFEITOS" : "MUSICA";
    if (type == "TipoContato") return numbers.OneIn(2) ? "COMECOU" : "TERMINOU";
    if (type == "vetor2") return "vetor2(1.0, 2)";
    if (type == "vetor3") return "vetor3(1.0, 2.0, 0.5)";
    if (type == "cor") return "cor(255, 0.5, 0.25, 1.0)";
    if (type == "objeto" || type == "corpo" || type == "som") return "nenhum_" + type;
    if (type.starts_with("lista de ")) return "[" + LiteralOf(numbers, type.substr(9)) + "]";
    if (const std::size_t value = type.find(" para "); value != std::string::npos) {
        const std::string key = type.substr(14, value - 14);  // behind "dicionario de "
        return "[" + LiteralOf(numbers, key) + ": " + LiteralOf(numbers, type.substr(value + 6)) + "]";
    }
    return "novo_" + type + "()";
}

void AddBound(RandomNumbers& numbers, const Form& form, const std::string& type, std::vector<std::string>& texts) {
    const std::string result = form.result;
    const std::string text = form.text;
    if (result.find('$') != std::string::npos) {
        for (const char* element : Elements) {
            if (WithElement(result, element) == type) texts.push_back(WithElement(text, element));
        }
    } else if (result.find('@') != std::string::npos) {
        for (const Pair& pair : Pairs) {
            if (WithPair(result, pair) == type) texts.push_back(WithPair(text, pair));
        }
    } else if (result == type) {
        texts.push_back(WithPair(WithElement(text, numbers.OneOf(Elements)), numbers.OneOf(Pairs)));
    }
}

std::vector<std::string> CommonDeclarations() {
    std::vector<std::string> all = {
        "enumeracao Rumo = NORTE, SUL, LESTE\n",
        "registro Ponto\nlugar: vetor3 = vetor3(1, 2, 3) * 2\nnome: texto = \"p\"\npeso: inteiro = 2 + 3\nfim\n",
        "registro Linha\nfim_dela: Ponto\nvizinhas: lista de Linha\nrumo: Rumo = LESTE\nfim\n",
        "acao pular = tecla espaco, controle a\n",
        "acao andar = tecla w, tecla s negativo, eixo_controle esquerdo_y\n",
        "acao comprar\n",
        "evento chegada: inteiro\n",
        "evento nota\n",
        "funcao curto(t: texto): texto\nse tamanho(t) > 60 entao retorne \"longo\"\nfim\nretorne t\nfim\n",
        "funcao desce(n: inteiro): inteiro\nse n <= 0 entao retorne 1\nfim\nretorne desce(n - 1) + n % 3\nfim\n",
    };
    for (const std::string record : Records) {
        all.push_back("funcao novo_" + record + "(): " + record + "\nfresco: " + record + "\nretorne fresco\nfim\n");
    }
    return all;
}

}  // namespace tavrel::tests
