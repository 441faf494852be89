// One editor that types and asks at random for a long time on one connection: every answer comes, for what was asked,
// and the server's memory does not grow. TAVREL_SOAK_STEPS sets how long.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "core/json.h"
#include "tests/editor_connection.h"
#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;
using core::Json;

constexpr std::size_t MaxDocument = std::size_t{16} * 1024;
constexpr long AllowedGrowth = 4L << 20;

int StepsWanted() {
    const char* text = std::getenv("TAVREL_SOAK_STEPS");
    return text != nullptr ? std::atoi(text) : 4000;
}

std::vector<std::string> ExampleScripts() {
    std::vector<std::string> scripts;
    for (const auto& entry : fs::recursive_directory_iterator(TAVREL_EXAMPLES)) {
        if (entry.path().extension() == ".tvl") scripts.push_back(ReadFile(entry.path()));
    }
    std::sort(scripts.begin(), scripts.end());
    return scripts;
}

std::vector<std::string> Split(const std::string& text) {
    std::vector<std::string> pieces;
    std::istringstream rest(text);
    for (std::string piece; std::getline(rest, piece, '|');) pieces.push_back(piece);
    return pieces;
}

std::string Quoted(const std::string& text) {
    return WriteJson(Json::Text(text));
}

struct OpenDocument {
    std::string uri;
    std::string start;
    std::string text;
    bool open = false;
};

class Editor {
public:
    Editor() : server(folder.path) {
        const std::vector<std::string> scripts = ExampleScripts();
        for (std::size_t i = 0; i < 4; ++i) {
            const std::string imports = i == 0 ? "importar \"d1\"\nimportar \"d2\"\n" : "";
            const std::string& script = scripts[i * scripts.size() / 4];
            const std::size_t behindFirstLine = script.find('\n') + 1;
            const std::string text = script.substr(0, behindFirstLine) + imports + script.substr(behindFirstLine);
            documents.push_back({"file://" + folder.path.string() + "/d" + std::to_string(i) + ".tvl", text, text});
        }
    }

    void Step() {
        OpenDocument& document = documents[Below(documents.size())];
        if (!document.open) {
            Change(document, "didOpen");
        } else if (Below(2) == 0) {
            Edit(document);
            Change(document, "didChange");
        } else if (Below(50) == 0) {
            document.open = false;
            document.text = document.start;
            Change(document, "didClose");
        } else {
            Ask(document);
        }
    }

    EditorConnection& Server() { return server; }

private:
    std::size_t Below(std::size_t count) { return random() % count; }

    void Edit(OpenDocument& document) {
        static const std::vector<std::string> Pieces = Split(
            "fim\n|se | entao |funcao f(a: inteiro): texto\n|(|)|[|]|{|\"|.|, |: |1|2.5e3|// nota\n|\xC3\xA9|\r\n|\t|@|"
            "\xF0\x9F\x98\x80|\xFF|lista de |estado\n|comportamento B\n|mapa.|entrada.|x = |retorne |"
            "para i de 0 ate 3\n|9999999999999999999");
        std::string& text = document.text;
        const std::size_t place = Below(text.size() + 1);
        if (Below(3) == 0) text.erase(place, Below(40));
        if (Below(3) != 0) text.insert(std::min(place, text.size()), Pieces[Below(Pieces.size())]);
        if (Below(20) == 0) text.insert(Below(text.size() + 1), text.substr(place / 2, Below(400)));
        if (Below(30) == 0 || text.size() > MaxDocument) text = document.start;
    }

    void Change(OpenDocument& document, const std::string& method) {
        document.open = method != "didClose";
        const std::string described = R"({"uri":)" + Quoted(document.uri) + R"(,"text":)" + Quoted(document.text) + "}";
        const std::string message = R"({"method":"textDocument/)" + method + R"(","params":{"textDocument":)" +
                                    described + R"(,"contentChanges":[)" + described + "]}}";
        const Json answer = Exchange(message);
        ASSERT_EQ(answer.At("method").TextOr(""), "textDocument/publishDiagnostics");
        ASSERT_EQ(answer.At("params").At("uri").TextOr(""), document.uri);
    }

    void Ask(const OpenDocument& document) {
        static const std::vector<std::string> Methods = {"completion", "hover", "definition", "formatting", "nada"};
        const std::string message = R"({"id":)" + std::to_string(++lastId) + R"(,"method":"textDocument/)" +
                                    Methods[Below(Methods.size())] + R"(","params":{"textDocument":{"uri":)" +
                                    Quoted(document.uri) + R"(},"position":{"line":)" +
                                    std::to_string(static_cast<int>(Below(200)) - 1) + R"(,"character":)" +
                                    std::to_string(static_cast<int>(Below(60)) - 1) + "}}}";
        const Json answer = Exchange(message);
        ASSERT_EQ(answer.At("id").IntOr(-1), lastId);
    }

    Json Exchange(const std::string& message) {
        server.SendMessage(message);
        std::string body;
        Json answer;
        std::string error;
        EXPECT_TRUE(server.Receive(body));
        EXPECT_TRUE(ParseJson(body, answer, error)) << error << ": " << body;
        return answer;
    }

    TemporaryFolder folder;
    EditorConnection server;
    std::mt19937 random{1};
    std::vector<OpenDocument> documents;
    long long lastId = 0;
};

TEST(LspSoak, AnswersAllAndKeepsNothing) {
    Editor editor;
    const int steps = StepsWanted();
    long early = 0;
    for (int i = 0; i < steps; ++i) {
        editor.Step();
        if (testing::Test::HasFatalFailure()) return;
        if (i == steps / 4) early = editor.Server().ResidentBytes();
    }
    const long late = editor.Server().ResidentBytes();
    std::cout << steps << " steps, " << early / 1024 << " KiB in use after a quarter, " << late / 1024
              << " KiB at the end\n";
    // A sanitizer keeps what was freed for a while.
    if (TAVREL_SANITIZED == 0) {
        EXPECT_LT(late, early + AllowedGrowth);
    }
    EXPECT_EQ(editor.Server().End(), 0);
}

}  // namespace

}  // namespace tavrel::tests
