// The loop of one connection. One message is read, answered and flushed before the next is read, so that a client that
// waits for an answer always gets it.
#include "script_lsp/connection.h"

#include <string>

#include "script_lsp/transport.h"

namespace tavrel::script_lsp {

void RunConnection(Server& server, std::istream& in, std::ostream& out) {
    while (!server.exited && out) {
        std::string body;
        if (!ReadMessage(in, body)) return;
        for (const std::string& text : server.Handle(body)) out << Frame(text);
        out.flush();
    }
}

}  // namespace tavrel::script_lsp
