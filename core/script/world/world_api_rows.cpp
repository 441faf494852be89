// The rows of the world's table, data only. The order is part of it: compiled programs number records and enumerations
// by it. Ids never change; a new row takes a new one. The last two columns of a function say where it may be called and
// whether it changes the world.
#include "core/script/world/world_api_rows.h"

namespace tavrel::core::script {

namespace {

constexpr HookMask OnTick = HookMask::Tick;
constexpr HookMask OnFrame = HookMask::Frame;
constexpr HookMask OnDraw = HookMask::Draw;
constexpr HookMask OnCamera = HookMask::Camera;
constexpr HookMask OnPresentation = OnFrame | OnDraw | OnCamera;
constexpr HookMask OnTickAndPresentation = OnTick | OnPresentation;
constexpr HookMask OnSoundCalls = HookMask::Start | HookMask::LoadMap | OnFrame | OnDraw;
constexpr HookMask OnMapUpdate = HookMask::UpdateMap;

constexpr const char* White = "cor(255.0, 255.0, 255.0, 255.0)";

std::vector<ApiRecord> Records() {
    return {
        {"Chao",
         {{"acertou", "logico", "falso"},
          {"ponto", "vetor3"},
          {"normal", "vetor3"},
          {"material", "inteiro", "0"},
          {"objeto", "objeto", "nenhum_objeto"}}},
        {"Agua", {{"existe", "logico", "falso"}, {"nivel", "real", "0.0"}, {"profundidade", "real", "0.0"}}},
        {"Acerto",
         {{"acertou", "logico", "falso"},
          {"distancia", "real", "0.0"},
          {"ponto", "vetor3"},
          {"normal", "vetor3"},
          {"corpo", "corpo", "nenhum_corpo"},
          {"objeto", "objeto", "nenhum_objeto"}}},
        {"Contato",
         {{"tipo", "TipoContato"},
          {"a", "corpo", "nenhum_corpo"},
          {"b", "corpo", "nenhum_corpo"},
          {"ponto", "vetor3"},
          {"normal", "vetor3"}}},
        {"Andarilho",
         {{"pes", "vetor3"},
          {"queda", "real", "0.0"},
          {"no_chao", "logico", "falso"},
          {"raio", "real", "0.3"},
          {"altura", "real", "1.8"},
          {"degrau", "real", "0.35"},
          {"salto", "real", "6.5"}}},
        {"camera",
         {{"posicao", "vetor3"},
          {"alvo", "vetor3"},
          {"cima", "vetor3", "vetor3(0.0, 1.0, 0.0)"},
          {"abertura", "real", "60.0"}}},
    };
}

std::vector<ApiEnum> Enums() {
    return {
        {"TipoContato", {"COMECOU", "SEGUE", "TERMINOU"}},
        {"Categoria", {"EFEITOS", "AMBIENTE", "MUSICA", "INTERFACE"}},
    };
}

// NOLINTNEXTLINE(readability-function-size): data only
std::vector<ApiFunction> Functions() {
    return {
        {5, "mapa.objeto", "objeto", {{"id", "inteiro"}}, AllHooks, false},
        {6, "mapa.altura", "real", {{"x", "real"}, {"z", "real"}}, AllHooks, false},
        {7, "mapa.chao", "Chao", {{"x", "real"}, {"z", "real"}}, AllHooks, false},
        {8, "mapa.agua_em", "Agua", {{"x", "real"}, {"z", "real"}}, AllHooks, false},
        {9, "mapa.dentro", "logico", {{"x", "real"}, {"z", "real"}}, AllHooks, false},
        {200, "fisica.corpo_de", "corpo", {{"objeto", "objeto"}}, AllHooks, false},
        {206, "fisica.impulso", "", {{"corpo", "corpo"}, {"impulso", "vetor3"}}, OnTick, true},
        {207, "fisica.impulso_em", "", {{"corpo", "corpo"}, {"impulso", "vetor3"}, {"ponto", "vetor3"}}, OnTick, true},
        {208, "fisica.forca", "", {{"corpo", "corpo"}, {"forca", "vetor3"}}, OnTick, true},
        {209, "fisica.torque", "", {{"corpo", "corpo"}, {"torque", "vetor3"}}, OnTick, true},
        {210, "fisica.velocidade", "", {{"corpo", "corpo"}, {"velocidade", "vetor3"}}, OnTick, true},
        {211, "fisica.teleportar", "", {{"corpo", "corpo"}, {"posicao", "vetor3"}}, OnTick, true},
        {212, "fisica.acordar", "", {{"corpo", "corpo"}}, OnTick, true},
        {213, "fisica.reiniciar", "", {}, OnTick, true},
        {214,
         "fisica.raio",
         "lista de Acerto",
         {{"de", "vetor3"}, {"direcao", "vetor3"}, {"distancia", "real"}},
         AllHooks,
         false},
        {215, "fisica.eventos", "lista de Contato", {}, OnTick, false},
        {216,
         "fisica.andar",
         "Andarilho",
         {{"quem", "Andarilho"}, {"direcao", "vetor2"}, {"velocidade", "real"}, {"pular", "logico", "falso"}},
         OnTick,
         false},
        {800, "portas.interagir", "logico", {{"pes", "vetor3"}, {"frente", "vetor3"}}, OnTick, true},
        {801, "portas.abrir", "logico", {{"porta", "objeto"}}, OnTick, true},
        {802, "portas.fechar", "logico", {{"porta", "objeto"}}, OnTick, true},
        {803, "portas.aberta", "logico", {{"porta", "objeto"}}, AllHooks, false},
        {300,
         "som.tocar",
         "som",
         {{"nome", "texto"},
          {"volume", "real", "1.0"},
          {"altura", "real", "1.0"},
          {"categoria", "Categoria", "EFEITOS"},
          {"prioridade", "inteiro", "0"},
          {"repetir", "logico", "falso"}},
         OnSoundCalls,
         false},
        {301,
         "som.tocar_em",
         "som",
         {{"nome", "texto"},
          {"posicao", "vetor3"},
          {"volume", "real", "1.0"},
          {"altura", "real", "1.0"},
          {"categoria", "Categoria", "EFEITOS"},
          {"prioridade", "inteiro", "0"},
          {"repetir", "logico", "falso"}},
         OnSoundCalls,
         false},
        {302,
         "som.emitir",
         "som",
         {{"chave", "inteiro"},
          {"nome", "texto"},
          {"volume", "real", "1.0"},
          {"altura", "real", "1.0"},
          {"categoria", "Categoria", "EFEITOS"},
          {"prioridade", "inteiro", "0"},
          {"repetir", "logico", "falso"}},
         OnTick,
         false},
        {303,
         "som.emitir_em",
         "som",
         {{"chave", "inteiro"},
          {"nome", "texto"},
          {"posicao", "vetor3"},
          {"volume", "real", "1.0"},
          {"altura", "real", "1.0"},
          {"categoria", "Categoria", "EFEITOS"},
          {"prioridade", "inteiro", "0"},
          {"repetir", "logico", "falso"}},
         OnTick,
         false},
        {304, "som.parar", "", {{"voz", "som"}}, OnFrame, false},
        {305, "som.tocando", "logico", {{"voz", "som"}}, OnFrame, false},
        {306, "som.volume", "", {{"voz", "som"}, {"volume", "real"}}, OnFrame, false},
        {307, "som.mover", "", {{"voz", "som"}, {"posicao", "vetor3"}}, OnFrame, false},
        {400,
         "desenhar.modelo",
         "",
         {{"asset", "texto"}, {"em", "vetor3"}, {"giro_y", "real", "0.0"}, {"escala", "real", "1.0"}},
         OnDraw,
         false},
        {401, "desenhar.caixa", "", {{"em", "vetor3"}, {"tamanho", "vetor3"}, {"cor", "cor", White}}, OnDraw, false},
        {402, "desenhar.esfera", "", {{"em", "vetor3"}, {"raio", "real"}, {"cor", "cor", White}}, OnDraw, false},
        {403, "desenhar.linha", "", {{"de", "vetor3"}, {"ate", "vetor3"}, {"cor", "cor", White}}, OnDraw, false},
        {500,
         "camera.orbita",
         "camera",
         {{"centro", "vetor3"}, {"raio", "real"}, {"altura", "real"}, {"angulo", "real"}},
         OnCamera,
         false},
        {501,
         "camera.atras",
         "camera",
         {{"alvo", "objeto"}, {"distancia", "real"}, {"altura", "real"}},
         OnCamera,
         false},
        {502, "camera.livre", "camera", {{"de", "vetor3"}, {"para", "vetor3"}}, OnCamera, false},
        {14, "mapa.criar", "objeto", {{"asset", "texto"}, {"x", "real"}, {"z", "real"}}, OnMapUpdate, true},
        {902, "sessao.presente", "logico", {{"jogador", "inteiro"}}, OnTickAndPresentation, false},
    };
}

std::vector<ApiNamespaceField> NamespaceFields() {
    return {
        {1, "mapa", "nome", "texto", AllHooks},
        {2, "mapa", "largura", "real", AllHooks},
        {3, "mapa", "profundidade", "real", AllHooks},
        {4, "mapa", "objetos", "lista de objeto", AllHooks},
        {10, "mapa.ambiente", "hora", "real", AllHooks},
        {11, "mapa.ambiente", "chuva", "real", AllHooks},
        {12, "mapa.ambiente", "vento", "real", AllHooks},
        {13, "mapa.ambiente", "noite", "logico", AllHooks},
        {600, "projeto", "nome", "texto", AllHooks},
        {601, "projeto", "pasta", "texto", AllHooks},
        {900, "sessao", "papel", "texto", OnPresentation},
        {901, "sessao", "jogador", "inteiro", OnPresentation},
    };
}

std::vector<ApiValueField> ValueFields() {
    return {
        {100, Kind::Object, "id", "inteiro", AllHooks},      {101, Kind::Object, "asset", "texto", AllHooks},
        {102, Kind::Object, "nome", "texto", AllHooks},      {103, Kind::Object, "x", "real", AllHooks},
        {104, Kind::Object, "y", "real", AllHooks},          {105, Kind::Object, "z", "real", AllHooks},
        {106, Kind::Object, "giro_y", "real", AllHooks},     {107, Kind::Object, "visivel", "logico", AllHooks},
        {108, Kind::Object, "existe", "logico", AllHooks},   {201, Kind::Body, "posicao", "vetor3", AllHooks},
        {202, Kind::Body, "velocidade", "vetor3", AllHooks}, {203, Kind::Body, "girando", "logico", AllHooks},
        {204, Kind::Body, "dormindo", "logico", AllHooks},   {205, Kind::Body, "existe", "logico", AllHooks},
    };
}

}  // namespace

Api Build() {
    Api api;
    api.records = Records();
    api.enums = Enums();
    api.inputPressed = 700;
    api.inputHeld = 701;
    api.inputReleased = 702;
    api.inputValue = 703;
    api.inputHooks = OnTick | OnFrame;
    api.commandSend = 704;
    api.commandHooks = OnFrame;
    api.functions = Functions();
    api.namespaceFields = NamespaceFields();
    api.valueFields = ValueFields();
    return api;
}

}  // namespace tavrel::core::script
