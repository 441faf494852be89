// One connection of an editor from its first byte to its last. A line "> BODY" of the input becomes a message, a line
// ">> BYTES" goes in as it is, as in the recorded sessions; other lines are left out. Whatever comes in, what goes out
// is JSON in proper frames, and the same when it is said again.
#include <cstddef>
#include <cstdint>
#include <sstream>
#include <string>

#include "core/json.h"
#include "core/script/world/world_api.h"
#include "script_lsp/connection.h"
#include "script_lsp/transport.h"
#include "tests/fuzz/require.h"

namespace tavrel::fuzz {

namespace {

std::string BytesOf(const std::string& session) {
    std::string bytes;
    std::istringstream lines(session);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(">> ")) bytes += line.substr(3) + "\n";
        if (line.starts_with("> ")) bytes += script_lsp::Frame(line.substr(2));
    }
    return bytes;
}

std::string Answers(const std::string& bytes) {
    const auto load = [](const std::string& path, std::string& out) {
        if (path.ends_with("nada.tvl")) return false;
        out = "modulo Disco\nfuncao dobro(n: inteiro): inteiro\n    retorne n * 2\nfim\n";
        return true;
    };
    script_lsp::Server server(&core::script::WorldApi(), load);
    std::istringstream in(bytes);
    std::ostringstream out;
    RunConnection(server, in, out);
    return out.str();
}

}  // namespace

}  // namespace tavrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    const std::string bytes = BytesOf(TextOf(data, size));
    const std::string answers = Answers(bytes);
    Require(Answers(bytes) == answers);
    std::istringstream frames(answers);
    std::string again;
    for (std::string body; tavrel::script_lsp::ReadMessage(frames, body);) {
        tavrel::core::Json value;
        std::string error;
        Require(ParseJson(body, value, error) && value.At("jsonrpc").TextOr("") == "2.0");
        again += tavrel::script_lsp::Frame(body);
    }
    Require(again == answers);
    return 0;
}
