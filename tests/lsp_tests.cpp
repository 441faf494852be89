// Every folder lsp/<name>/ is a recorded session: `session`, and the files that stand on the disk beside it. Lines:
//
//     > BODY     is sent with its head; what the server says to it stands below
//     < BODY     must come back, byte for byte
//     >> BYTES   are sent as they are, with \r, \n and \xHH for bytes; the input ends behind them
//     -          the next connection begins; each must end with exit code 0 and nothing more to say
//     # TEXT     a word to the reader
//
// %DIR% stands for the folder. With UPDATE_CASES=1 in the environment the answers are rewritten from what the server
// says; read that diff as if it were code.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "tests/editor_connection.h"
#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Sessions() {
    std::vector<fs::path> sessions;
    for (const auto& folder : fs::directory_iterator(TAVREL_SESSIONS)) sessions.push_back(folder.path());
    std::sort(sessions.begin(), sessions.end());
    return sessions;
}

void Replace(std::string& text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
}

std::string Unescaped(const std::string& text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            bytes += text[i];
        } else if (const char letter = text[++i]; letter == 'x') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += letter == 'r' ? '\r' : letter == 'n' ? '\n' : letter;
        }
    }
    return bytes;
}

// Plays the lines of a session and writes it down again, with the answers that really came.
class Player {
public:
    explicit Player(const fs::path& givenFolder) : folder(givenFolder) {}

    void Play(std::string line) {
        if (line.starts_with("< ")) return;
        written += line + "\n";
        Replace(line, "%DIR%", folder.string());
        if (line == "-") End();
        if (line.starts_with("> ")) Ask(line.substr(2));
        if (line.starts_with(">> ")) Server().SendBytes(Unescaped(line.substr(3)));
        if (line.starts_with(">> ")) End();
    }

    void End() {
        if (!server) return;
        server->EndInput();
        for (std::string body; server->Receive(body);) WriteAnswer(body);
        EXPECT_EQ(server->Rest(), "");
        EXPECT_EQ(server->End(), 0);
        server.reset();
    }

    std::string written;

private:
    EditorConnection& Server() {
        if (!server) server = std::make_unique<EditorConnection>(folder);
        return *server;
    }

    // A request that the server does not know shows where the answers to the message before it end.
    void Ask(const std::string& body) {
        Server().SendMessage(body);
        server->SendMessage(R"({"id":"end","method":"end"})");
        for (std::string answer; server->Receive(answer);) {
            if (answer.find(R"("id":"end")") != std::string::npos) break;
            WriteAnswer(answer);
        }
    }

    void WriteAnswer(std::string body) {
        Replace(body, folder.string(), "%DIR%");
        written += "< " + body + "\n";
    }

    fs::path folder;
    std::unique_ptr<EditorConnection> server;
};

class SessionTest : public testing::TestWithParam<fs::path> {};

TEST_P(SessionTest, GoesAsRecorded) {
    const TemporaryFolder copy;
    fs::copy(GetParam(), copy.path, fs::copy_options::recursive);
    const std::string session = ReadFile(GetParam() / "session");
    Player player(copy.path);
    std::istringstream lines(session);
    for (std::string line; std::getline(lines, line);) player.Play(line);
    player.End();
    if (std::getenv("UPDATE_CASES") != nullptr) WriteFile(GetParam() / "session", player.written);
    EXPECT_EQ(player.written, ReadFile(GetParam() / "session"));
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) {
    return info.param.filename().string();
}

INSTANTIATE_TEST_SUITE_P(Lsp, SessionTest, testing::ValuesIn(Sessions()), NameOf);

// An editor that dies must not leave a server that dies of it with a signal, or waits for ever.
TEST(Lsp, EndsQuietlyWhenNobodyReads) {
    const TemporaryFolder folder;
    EditorConnection server(folder.path);
    server.StopReading();
    for (int i = 0; i < 3; ++i) server.SendMessage(R"({"id":1,"method":"initialize"})");
    EXPECT_EQ(server.End(), 0);
}

// What a head announces costs nothing, only what comes.
TEST(Lsp, TakesLargeMessagesAndLargePromises) {
    const TemporaryFolder folder;
    EditorConnection server(folder.path);
    server.SendMessage(std::string((std::size_t{16} << 20) + 1, ' '));
    std::string body;
    ASSERT_TRUE(server.Receive(body));
    EXPECT_EQ(body, R"({"jsonrpc":"2.0","id":null,"error":{"code":-32700,)"
                    R"("message":"JSON invalido: documento JSON grande demais"}})");
    server.SendBytes("Content-Length: 1000000000\r\n\r\n{");
    if (TAVREL_SANITIZED == 0) {
        EXPECT_LT(server.ResidentBytes(), 100L << 20);
    }
    EXPECT_EQ(server.End(), 0);
}

}  // namespace

}  // namespace tavrel::tests
