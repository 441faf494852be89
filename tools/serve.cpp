// Puts the server between the standard streams: bytes as they are, no buffer shared with the C library, and a lost
// editor as an error that the connection sees.
#include "tools/serve.h"

#include <csignal>
#include <filesystem>
#include <iostream>
#include <string>

#include "core/platform.h"
#include "core/script/world/world_api.h"
#include "script_lsp/connection.h"
#include "script_lsp/server.h"
#include "tools/script_files.h"

namespace tavrel::tools {

namespace {

bool ReadPath(const std::string& path, std::string& text) {
    std::filesystem::path file;
    return PathOf(path, file) && ReadText(file, text);
}

// An editor that goes away ends the connection by an error of the write, not the process by a signal.
void IgnoreBrokenPipes() {
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
}

}  // namespace

int Serve() {
    core::UseBinaryStreams();
    std::ios::sync_with_stdio(false);
    IgnoreBrokenPipes();
    script_lsp::Server server(&core::script::WorldApi(), ReadPath);
    script_lsp::RunConnection(server, std::cin, std::cout);
    return 0;
}

}  // namespace tavrel::tools
