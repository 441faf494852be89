#include "tools/serve.h"

#include <csignal>
#include <filesystem>
#include <iostream>
#include <string>

#include "core/platform.h"
#include "core/script/world/world_api.h"
#include "script_lsp/server.h"
#include "script_lsp/transport.h"
#include "tools/script_files.h"

namespace tavrel::tools {

namespace {

bool ReadPath(const std::string& path, std::string& text) {
    std::filesystem::path file;
    return PathOf(path, file) && ReadText(file, text);
}

// An editor that goes away without a word ends the connection, not the process.
void IgnoreBrokenPipes() {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

bool Send(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) std::cout << script_lsp::Frame(text);
    return static_cast<bool>(std::cout.flush());
}

}  // namespace

int Serve() {
    core::UseBinaryStreams();
    std::ios::sync_with_stdio(false);
    IgnoreBrokenPipes();
    script_lsp::Server server(&core::script::WorldApi(), ReadPath);
    while (!server.exited) {
        std::string body;
        if (!script_lsp::ReadMessage(std::cin, body)) break;
        if (!Send(server.Handle(body))) break;
    }
    return 0;
}

}  // namespace tavrel::tools
