// How long an editor waits: the whole server as a process, a document of 5,000 lines with two imports, one request at a
// time from the first byte sent to the last byte received. Prints milliseconds at the median, the 99th percentile and
// the worst. usage: lsp_latency [ROUNDS]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "bench/generate_script.h"
#include "core/json.h"
#include "tests/editor_connection.h"
#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::bench {

namespace {

using core::Json;
using Clock = std::chrono::steady_clock;

constexpr int DocumentLines = 5000;

// A script of the asked length that imports others; `letter` ends up in it, as if somebody had typed it.
std::string Script(int lines, const std::string& imports, char letter) {
    std::string text = GenerateScript(lines, Language::Script);
    text.insert(text.find('\n') + 1, imports);
    return text + "// " + letter + "\n";
}

class Session {
public:
    Session() : server(folder.path), uri("file://" + folder.path.string() + "/jogo.tvl") {
        for (const char* name : {"um", "dois"}) {
            std::string text = "modulo M" + std::string(name) + "\n\n";
            for (int i = 0; i < 200; ++i) {
                text += "funcao " + std::string(name) + std::to_string(i) +
                        "(a: inteiro): inteiro\n    retorne a * 2 + 1\nfim\n\n";
            }
            tests::WriteFile(folder.path / (std::string(name) + ".tvl"), text);
        }
    }

    // One keystroke, until the document's faults are there.
    double Change(int round) {
        const char letter = static_cast<char>('a' + round % 26);
        Json params = Document();
        Json& change = params.Set("contentChanges", Json::Array()).Add(Json::Object());
        change.Set("text", Json::Text(Script(DocumentLines, "importar \"um\"\nimportar \"dois\"\n", letter)));
        return Exchange("didChange", std::move(params));
    }

    double Ask(const char* method, int round) {
        Json params = Document();
        Json& position = params.Set("position", Json::Object());
        position.Set("line", Json::Int(round * 37 % DocumentLines));
        position.Set("character", Json::Int(round % 20));
        return Exchange(method, std::move(params));
    }

private:
    Json Document() const {
        Json params = Json::Object();
        params.Set("textDocument", Json::Object()).Set("uri", Json::Text(uri));
        return params;
    }

    double Exchange(const std::string& method, Json params) {
        Json message = Json::Object();
        message.Set("id", Json::Int(1));
        message.Set("method", Json::Text("textDocument/" + method));
        message.Set("params", std::move(params));
        const std::string sent = WriteJson(message);
        const Clock::time_point start = Clock::now();
        server.SendMessage(sent);
        std::string answer;
        if (!server.Receive(answer)) std::exit(1);
        return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
    }

    tests::TemporaryFolder folder;
    tests::EditorConnection server;
    std::string uri;
};

void Print(const char* what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    const std::size_t last = times.size() - 1;
    std::printf("%-12s median %6.2f ms   99th percentile %6.2f ms   worst %6.2f ms   (%zu rounds)\n", what,
                times[last / 2], times[last * 99 / 100], times[last], times.size());
}

void Run(int rounds) {
    Session session;
    std::vector<double> times;
    for (int i = 0; i < rounds; ++i) times.push_back(session.Change(i));
    Print("didChange", times);
    for (const char* method : {"completion", "hover", "definition", "formatting"}) {
        times.clear();
        for (int i = 0; i < rounds; ++i) times.push_back(session.Ask(method, i));
        Print(method, times);
    }
}

}  // namespace

}  // namespace tavrel::bench

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 500;
    tavrel::bench::Run(std::max(rounds, 1));
    return 0;
}
