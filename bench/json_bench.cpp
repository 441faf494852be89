// Reading and writing of JSON, in bytes of text per second, beside a widely used library where that is installed. The
// documents are what a language server meets (a whole script in a change, a long list of completions, reports of
// faults), then one of numbers and small objects, and one object as wide as the reader allows.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <utility>

#include "bench/generate_script.h"
#include "core/json.h"

#ifdef TAVREL_NLOHMANN_JSON
#include <nlohmann/json.hpp>
#endif

namespace tavrel::bench {

namespace {

using core::Json;

Json Message(const char* method, Json params) {
    Json message = Json::Object();
    message.Set("jsonrpc", Json::Text("2.0"));
    message.Set("method", Json::Text(method));
    message.Set("params", std::move(params));
    return message;
}

std::string Change() {
    Json change = Json::Object();
    change.Set("text", Json::Text(GenerateScript(5000, Language::Script)));
    Json params;
    Json& document = params.Set("textDocument", Json::Object());
    document.Set("uri", Json::Text("file:///home/ana/jogos/masmorra/principal.tvl"));
    document.Set("version", Json::Int(41));
    params.Set("contentChanges", Json::Array()).Add(std::move(change));
    return WriteJson(Message("textDocument/didChange", std::move(params)));
}

std::string Completions() {
    Json result = Json::Array();
    for (int i = 0; i < 1000; ++i) {
        Json& item = result.Add(Json::Object());
        item.Set("label", Json::Text("contarInimigosDaSala" + std::to_string(i)));
        item.Set("kind", Json::Int(i % 25));
        item.Set("detail", Json::Text("funcao contarInimigosDaSala" + std::to_string(i) + "(sala: texto) -> inteiro"));
    }
    Json response = Json::Object();
    response.Set("jsonrpc", Json::Text("2.0"));
    response.Set("id", Json::Int(17));
    response.Set("result", std::move(result));
    return WriteJson(response);
}

Json PositionAt(int line, int character) {
    Json position = Json::Object();
    position.Set("line", Json::Int(line));
    position.Set("character", Json::Int(character));
    return position;
}

std::string Reports() {
    Json params = Json::Object();
    params.Set("uri", Json::Text("file:///home/ana/jogos/masmorra/principal.tvl"));
    Json& reports = params.Set("diagnostics", Json::Array());
    for (int i = 0; i < 200; ++i) {
        Json& report = reports.Add(Json::Object());
        Json& range = report.Set("range", Json::Object());
        range.Set("start", PositionAt(i * 7, 4 + i % 40));
        range.Set("end", PositionAt(i * 7, 12 + i % 40));
        report.Set("severity", Json::Int(1));
        report.Set("source", Json::Text("tavrel"));
        report.Set("message", Json::Text("nao conheco o nome \"vidaDoHeroi\"\ntalvez \"vidaHeroi\""));
    }
    return WriteJson(Message("textDocument/publishDiagnostics", std::move(params)));
}

// Decimals as people and other tools write them, so not by our writer with its seventeen digits.
std::string Numbers() {
    std::string text = "[";
    for (int i = 0; i < 20'000; ++i) {
        const std::string number = std::to_string(i);
        if (i > 0) text += ',';
        text += "{\"id\":" + number + ",\"x\":" + std::to_string(i % 640) + ".25,\"y\":-" + std::to_string(i % 360) +
                '.' + std::to_string(100 + i % 900) + ",\"vivo\":" + (i % 3 == 0 ? "false" : "true") + ",\"itens\":[" +
                number + ",7,1000" + number + "]}";
    }
    return text + ']';
}

std::string Wide() {
    std::string text = "{";
    for (int i = 0; i < 65'536; ++i)
        text += (i > 0 ? ",\"campo" : "\"campo") + std::to_string(i) + "\":" + std::to_string(i);
    return text + '}';
}

using Document = std::string (*)();

void CountBytes(benchmark::State& state, std::size_t size) {
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(size));
}

void Read(benchmark::State& state, Document document) {
    const std::string text = document();
    std::string error;
    for (auto _ : state) {
        Json value;
        if (!ParseJson(text, value, error)) return state.SkipWithError(error.c_str());
        benchmark::DoNotOptimize(value);
    }
    CountBytes(state, text.size());
}

void Write(benchmark::State& state, Document document) {
    Json value;
    std::string error;
    if (!ParseJson(document(), value, error)) return state.SkipWithError(error.c_str());
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string text = WriteJson(value);
        benchmark::DoNotOptimize(text.data());
        size = text.size();
    }
    CountBytes(state, size);
}

#ifdef TAVREL_NLOHMANN_JSON

void OtherRead(benchmark::State& state, Document document) {
    const std::string text = document();
    for (auto _ : state) benchmark::DoNotOptimize(nlohmann::json::parse(text, nullptr, false));
    CountBytes(state, text.size());
}

void OtherWrite(benchmark::State& state, Document document) {
    const nlohmann::json value = nlohmann::json::parse(document(), nullptr, false);
    std::size_t size = 0;
    for (auto _ : state) {
        const std::string text = value.dump();
        benchmark::DoNotOptimize(text.data());
        size = text.size();
    }
    CountBytes(state, size);
}

#define TAVREL_BOTH(operation, name, document)    \
    BENCHMARK_CAPTURE(operation, name, document); \
    BENCHMARK_CAPTURE(Other##operation, name, document)
#else
#define TAVREL_BOTH(operation, name, document) BENCHMARK_CAPTURE(operation, name, document)
#endif

TAVREL_BOTH(Read, change, Change);
TAVREL_BOTH(Read, completions, Completions);
TAVREL_BOTH(Read, reports, Reports);
TAVREL_BOTH(Read, numbers, Numbers);
TAVREL_BOTH(Read, wide, Wide);
TAVREL_BOTH(Write, change, Change);
TAVREL_BOTH(Write, completions, Completions);
TAVREL_BOTH(Write, reports, Reports);
TAVREL_BOTH(Write, numbers, Numbers);
TAVREL_BOTH(Write, wide, Wide);

}  // namespace

}  // namespace tavrel::bench
