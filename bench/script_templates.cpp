#include "bench/script_templates.h"

namespace tavrel::bench {

namespace {

const Template DeclarationsTemplate = {R"(
// $T: o que se guarda, se vende e se perde. Vem do mapa de testes, seção $i.
acao usar_$n = tecla espaco, controle a
evento mudou_$n: real

enumeracao Tipo$T = COMUM_$C, RARO_$C, EPICO_$C, LENDA_$C

registro Item$T
    nome: texto = "$t"
    tipo: Tipo$T
    posicao: vetor3
    peso: real = $r
    quantos: inteiro = $i
    marcas: lista de inteiro
fim

constante LIMITE_$C = $i
constante FATOR_$C: real = $r
constante ROTULO_$C = "$t"
constante PASSOS_$C: lista de inteiro = [$d, $d, $i, $d, $i]
)",
                                       R"(
-- $T: o que se guarda, se vende e se perde. Vem do mapa de testes, seção $i.
acoes.usar_$n = { tecla = "espaco", controle = "a" }
eventos.mudou_$n = { valor = 0.0, quantos = 0 }

Tipo$T = { COMUM = 0, RARO = 1, EPICO = 2, LENDA = 3 }

function Item$T()
    return {
        nome = "$t",
        tipo = Tipo$T.COMUM, posicao = vetor3(0, 0, 0),
        peso = $r,
        quantos = $i,
        marcas = {}
    }
end

LIMITE_$C = $i
FATOR_$C = $r
ROTULO_$C = "$t"
PASSOS_$C = { $d, $d, $i, $d, $i }
)"};

const Template StateTemplate = {R"(    itens_$n: lista de Item$T
    nivel_$n: inteiro = $i
    precos_$n: dicionario de texto para inteiro
    contagem_$n: dicionario de Tipo$T para inteiro
    publico energia_$n: real = $r
)",
                                R"(itens_$n = {}
nivel_$n = $i
precos_$n = {}
contagem_$n = {}
energia_$n = $r
)"};

const Template VisualTemplate = {R"(    brilho_$n: real = $r
    voz_$n: som
)",
                                 R"(brilho_$n = $r
voz_$n = nenhum_som
)"};

const Template DerivedTemplate = {"centro_$n: vetor3\n", "centro_$n = vetor3(0, 0, 0)\n"};

constexpr Template Calculate[] = {{R"(
// Quanto vale depois de tantas vezes; nunca passa do limite.
funcao calcular_$n(base: inteiro, vezes: inteiro): inteiro
    soma: inteiro = base * $d + $i
    para i de 1 ate vezes
        se i % $d == 0 e soma < LIMITE_$C
            soma = soma + i * $i
        senao se soma > $i ou i == vezes
            soma = soma - nivel_$n
        senao
            soma = (soma * $d + i) % $i
        fim
    fim
    se soma < 0
        retorne calcular_$p(vezes, $i)
    fim
    retorne menor(soma, LIMITE_$P)
fim
)",
                                   R"(
-- Quanto vale depois de tantas vezes; nunca passa do limite.
function calcular_$n(base, vezes)
    local soma = base * $d + $i
    for i = 1, vezes do
        if i % $d == 0 and soma < LIMITE_$C then
            soma = soma + i * $i
        elseif soma > $i or i == vezes then
            soma = soma - nivel_$n
        else
            soma = (soma * $d + i) % $i
        end
    end
    if soma < 0 then
        return calcular_$p(vezes, $i)
    end
    return menor(soma, LIMITE_$P)
end
)"},
                                  {R"(
// Divide até caber; quem chama garante que "vezes" é pequeno.
funcao calcular_$n(base: inteiro, vezes: inteiro): inteiro
    resto: inteiro = abs(base - $i)
    voltas: inteiro
    enquanto resto > $d e voltas < vezes
        resto = resto / 2 + PASSOS_$C[voltas % 5]
        voltas = voltas + 1
        se resto == $i
            continue
        fim
        se resto > LIMITE_$C entao pare
        fim
    fim
    se nao contem(contagem_$n, RARO_$C) ou resto == calcular_$s(voltas, $d)
        resto = -resto
    fim
    retorne limitar(resto + voltas, 0, nivel_$q)
fim
)",
                                   R"(
-- Divide até caber; quem chama garante que "vezes" é pequeno.
function calcular_$n(base, vezes)
    local resto = abs(base - $i)
    local voltas = 0
    while resto > $d and voltas < vezes do
        resto = resto / 2 + PASSOS_$C[voltas % 5]
        voltas = voltas + 1
        if resto == $i then
            goto continua
        end
        if resto > LIMITE_$C then break
        end ::continua::
    end
    if not contem(contagem_$n, Tipo$T.RARO) or resto == calcular_$s(voltas, $d) then
        resto = -resto
    end
    return limitar(resto + voltas, 0, nivel_$q)
end
)"}};

constexpr Template Average[] = {{R"(
funcao media_$n(x: real, y: real): real
    largura: real = abs(x - y) * FATOR_$C + $r
    altura: real = (x + y) / $r
    se largura > altura e x >= 0.0
        largura = raiz(largura * largura + altura * altura)
    fim
    onda: real = seno(x * $r) + cosseno(y * $r) * $r
    retorne limitar(onda * largura, -$r, media_$p(altura, y))
fim
)",
                                 R"(
function media_$n(x, y)
    local largura = abs(x - y) * FATOR_$C + $r
    local altura = (x + y) / $r
    if largura > altura and x >= 0.0 then
        largura = raiz(largura * largura + altura * altura)
    end
    local onda = seno(x * $r) + cosseno(y * $r) * $r
    return limitar(onda * largura, -$r, media_$p(altura, y))
end
)"},
                                {R"(
funcao media_$n(x: real, y: real): real
    total: real
    parte: real = x / 4.0
    para i de 0 ate $d passo 2
        total = total + parte * real(i) - y * $r
        parte = parte * FATOR_$C
    fim
    se total < -$r ou total > $r
        retorne (x + y) / 2.0
    fim
    retorne media_$q(total, energia_$n) + potencia($r, x)
fim
)",
                                 R"(
function media_$n(x, y)
    local total = 0.0
    local parte = x / 4.0
    for i = 0, $d, 2 do
        total = total + parte * real(i) - y * $r
        parte = parte * FATOR_$C
    end
    if total < -$r or total > $r then
        return (x + y) / 2.0
    end
    return media_$q(total, energia_$n) + potencia($r, x)
end
)"}};

constexpr Template Describe[] = {{R"(
funcao descrever_$n(item: Item$T): texto
    linha: texto = "$t: " + item.nome
    escolha item.tipo
        caso COMUM_$C
            linha = linha + " <$t>"
        caso RARO_$C, EPICO_$C
            linha = linha + formatar(" {} de {}", item.quantos, item.peso)
        senao
            linha = linha + " - " + ROTULO_$C
    fim
    para cada marca em item.marcas
        linha = linha + " " + texto(marca)
    fim
    retorne linha
fim
)",
                                  R"(
function descrever_$n(item)
    local linha = "$t: " .. item.nome
    local tipo = item.tipo
    if tipo == Tipo$T.COMUM then
        linha = linha .. " <$t>"
    elseif tipo == Tipo$T.RARO or tipo == Tipo$T.EPICO then
        linha = linha .. formatar(" {} de {}", item.quantos, item.peso)
    else
        linha = linha .. " - " .. ROTULO_$C
    end
    for _, marca in ipairs(item.marcas) do
        linha = linha .. " " .. texto(marca)
    end
    return linha
end
)"}};

constexpr Template Create[] = {{R"(
funcao criar_$n(nome: texto, quantos: inteiro): Item$T
    novo: Item$T
    novo.nome = nome
    novo.tipo = RARO_$C
    novo.peso = novo.peso + $r // o peso da embalagem
    novo.quantos = maior(quantos, $i)
    novo.posicao = vetor3($r, 0, -$r)
    novo.posicao.y = media_$p(novo.peso, $r)
    novo.marcas.adicionar($i)
    retorne novo
fim

funcao filtrar_$n(minimo: inteiro): lista de Item$T
    achados: lista de Item$T
    para cada item em itens_$n
        se item.quantos >= minimo e nao contem(item.nome, "$t")
            achados.adicionar(item)
        fim
    fim
    para i de 0 ate tamanho(achados) - 1
        achados[i].quantos = achados[i].quantos - $d
    fim
    retorne achados
fim
)",
                                R"(
function criar_$n(nome, quantos)
    local novo = Item$T()
    novo.nome = nome
    novo.tipo = Tipo$T.RARO
    novo.peso = novo.peso + $r -- o peso da embalagem
    novo.quantos = maior(quantos, $i)
    novo.posicao = vetor3($r, 0, -$r)
    novo.posicao.y = media_$p(novo.peso, $r)
    table.insert(novo.marcas, $i)
    return novo
end

function filtrar_$n(minimo)
    local achados = {}
    for _, item in ipairs(itens_$n) do
        if item.quantos >= minimo and not contem(item.nome, "$t") then
            table.insert(achados, item)
        end
    end
    for i = 0, #achados - 1 do
        achados[i].quantos = achados[i].quantos - $d
    end
    return achados
end
)"}};

constexpr Template Move[] = {{R"(
funcao mover_$n(de_onde: vetor3, rumo: vetor3, dt: real): vetor3
    direcao: vetor3 = normalizar(rumo - de_onde)
    proxima: vetor3 = de_onde + direcao * ($r * dt)
    se distancia(proxima, rumo) < $r
        proxima = interpolar(proxima, rumo, 0.5)
    fim
    proxima.y = maior(proxima.y, $r)
    se comprimento(direcao) == 0.0
        retorne vetor3(0, $r, 0)
    fim
    retorne proxima
fim
)",
                              R"(
function mover_$n(de_onde, rumo, dt)
    local direcao = normalizar(rumo - de_onde)
    local proxima = de_onde + direcao * ($r * dt)
    if distancia(proxima, rumo) < $r then
        proxima = interpolar(proxima, rumo, 0.5)
    end
    proxima.y = maior(proxima.y, $r)
    if comprimento(direcao) == 0.0 then
        return vetor3(0, $r, 0)
    end
    return proxima
end
)"},
                             {R"(
funcao mover_$n(de_onde: vetor3, rumo: vetor3, dt: real): vetor3
    alvo: vetor3 = interpolar(de_onde, rumo, dt * $r)
    chao: Chao = mapa.chao(alvo.x, alvo.z)
    se chao.acertou e chao.normal.y > $r
        alvo.y = chao.ponto.y + $r
    senao se mapa.dentro(alvo.x, alvo.z)
        alvo = mover_$p(alvo, rumo, dt)
    fim
    retorne alvo
fim
)",
                              R"(
function mover_$n(de_onde, rumo, dt)
    local alvo = interpolar(de_onde, rumo, dt * $r)
    local chao = mapa.chao(alvo.x, alvo.z)
    if chao.acertou and chao.normal.y > $r then
        alvo.y = chao.ponto.y + $r
    elseif mapa.dentro(alvo.x, alvo.z) then
        alvo = mover_$p(alvo, rumo, dt)
    end
    return alvo
end
)"}};

constexpr Template Update[] = {{R"(
procedimento atualizar_$n(passo: real)
    nivel_$n = nivel_$n + calcular_$p(nivel_$q, $d)
    energia_$n = energia_$n + media_$n(passo, $r) * passo
    se tamanho(itens_$n) < $i
        itens_$n.adicionar(criar_$n("$t", nivel_$n))
        precos_$n["$t"] = nivel_$n * $d
    fim
    para cada item em filtrar_$n($i)
        item.posicao = mover_$n(item.posicao, centro_$n, passo)
        precos_$n.definir(item.nome, precos_$n.obter(item.nome, 0) + $i)
        contagem_$n[item.tipo] = contagem_$n.obter(item.tipo, 0) + 1
    fim
    se aleatorio(1, 100) > $d e entrada.usar_$n.apertado
        energia_$n = 0.0
        eventos.mudou_$n.emitir(energia_$p)
        som.emitir($i, "$t", volume = 0.5)
    fim
fim
)",
                                R"(
function atualizar_$n(passo)
    nivel_$n = nivel_$n + calcular_$p(nivel_$q, $d)
    energia_$n = energia_$n + media_$n(passo, $r) * passo
    if #itens_$n < $i then
        table.insert(itens_$n, criar_$n("$t", nivel_$n))
        precos_$n["$t"] = nivel_$n * $d
    end
    for _, item in ipairs(filtrar_$n($i)) do
        item.posicao = mover_$n(item.posicao, centro_$n, passo)
        precos_$n[item.nome] = (precos_$n[item.nome] or 0) + $i
        contagem_$n[item.tipo] = (contagem_$n[item.tipo] or 0) + 1
    end
    if aleatorio(1, 100) > $d and entrada.usar_$n.apertado then
        energia_$n = 0.0
        eventos.mudou_$n.emitir(energia_$p)
        som.emitir($i, "$t", 0.5)
    end
end
)"}};

constexpr Template Show[] = {{R"(
procedimento mostrar_$n(dt: real)
    brilho_$n = interpolar(brilho_$n, energia_$n, dt * $r)
    se brilho_$n > $r e eventos.mudou_$n.chegou
        voz_$n = som.tocar("$t", volume = brilho_$n / $r, repetir = verdadeiro)
        brilho_$n = media_$p(brilho_$n, 1.0)
    senao
        se som.tocando(voz_$n)
            som.volume(voz_$n, brilho_$n)
        fim
    fim
    para cada item em filtrar_$n($i)
        escreva(descrever_$n(item))
    fim
fim

procedimento preparar_$n()
    centro_$n = vetor3(mapa.largura / 2.0, 0, mapa.profundidade / $r)
    centro_$n.y = mapa.altura(centro_$n.x, centro_$n.z)
    para cada coisa em mapa.objetos
        se coisa.existe e coisa.nome == "$t"
            centro_$n = vetor3(coisa.x, coisa.y + $r, coisa.z)
            pare
        fim
    fim
fim
)",
                              R"(
function mostrar_$n(dt)
    brilho_$n = interpolar(brilho_$n, energia_$n, dt * $r)
    if brilho_$n > $r and eventos.mudou_$n.chegou then
        voz_$n = som.tocar("$t", { volume = brilho_$n / $r, repetir = true })
        brilho_$n = media_$p(brilho_$n, 1.0)
    else
        if som.tocando(voz_$n) then
            som.volume(voz_$n, brilho_$n)
        end
    end
    for _, item in ipairs(filtrar_$n($i)) do
        escreva(descrever_$n(item))
    end
end

function preparar_$n()
    centro_$n = vetor3(mapa.largura / 2.0, 0, mapa.profundidade / $r)
    centro_$n.y = mapa.altura(centro_$n.x, centro_$n.z)
    for _, coisa in ipairs(mapa.objetos) do
        if coisa.existe and coisa.nome == "$t" then
            centro_$n = vetor3(coisa.x, coisa.y + $r, coisa.z)
            break
        end
    end
end
)"}};

constexpr std::span<const Template> Families[] = {Calculate, Average, Describe, Create, Move, Update, Show};

const Template BehaviourTemplate = {R"(
comportamento Porta$T
    parametro velocidade: real = $r
    parametro dono: inteiro = 1
    parametro rotulo: texto = "$t"

    estado
        publico abertura: real
        privado segredo: inteiro = $i
        estagio: Tipo$T
    fim

    visual
        tinta: cor
    fim

    trilha: lista de vetor3

    funcao aberta(): logico
        retorne abertura >= $r
    fim

    procedimento avancar(passo: real)
        abertura = menor(1.0, abertura + velocidade * passo)
        se aberta()
            estagio = RARO_$C
            segredo = calcular_$n(segredo, $d)
        fim
    fim

    ao nascer
        abertura = 0.0
    fim

    ao tocar (outro: objeto)
        se outro != nenhum_objeto e estagio == COMUM_$C
            estagio = EPICO_$C
        fim
    fim

    a cada tick (passo: real)
        se estagio == EPICO_$C
            avancar(passo)
        fim
    fim

    a cada quadro (dt: real)
        tinta.g = interpolar(0, 255, abertura)
    fim
fim
)",
                                    R"(
Porta$T = {
    velocidade = $r,
    dono = 1,
    rotulo = "$t",

    -- estado
        abertura = 0.0,
        segredo = $i,
        estagio = Tipo$T.COMUM,
    --

    -- visual
        tinta = cor(255, 255, 255),
    --

    trilha = {}
}
    function Porta$T:aberta()
        return self.abertura >= $r
    end

    function Porta$T:avancar(passo)
        self.abertura = menor(1.0, self.abertura + self.velocidade * passo)
        if self:aberta() then
            self.estagio = Tipo$T.RARO
            self.segredo = calcular_$n(self.segredo, $d)
        end
    end

    function Porta$T:ao_nascer()
        self.abertura = 0.0
    end

    function Porta$T:ao_tocar(outro)
        if outro ~= nenhum_objeto and self.estagio == Tipo$T.COMUM then
            self.estagio = Tipo$T.EPICO
        end
    end

    function Porta$T:a_cada_tick(passo)
        if self.estagio == Tipo$T.EPICO then
            self:avancar(passo)
        end
    end

    function Porta$T:a_cada_quadro(dt)
        self.tinta.g = interpolar(0, 255, self.abertura)
    end
)"};

}  // namespace

const Template& Declarations() {
    return DeclarationsTemplate;
}
const Template& StateFields() {
    return StateTemplate;
}
const Template& VisualFields() {
    return VisualTemplate;
}
const Template& DerivedFields() {
    return DerivedTemplate;
}
std::span<const std::span<const Template>> FunctionFamilies() {
    return Families;
}
const Template& Behaviour() {
    return BehaviourTemplate;
}

}  // namespace tavrel::bench
