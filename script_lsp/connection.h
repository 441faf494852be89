// One client from its first byte to its last: reads messages from a stream, has the server answer each before it reads
// the next, and writes the answers to another.
#pragma once

#include <istream>
#include <ostream>

#include "script_lsp/server.h"

namespace tavrel::script_lsp {

// Returns when the client says "exit", its input ends or is no message, or the output takes nothing any more.
void RunConnection(Server& server, std::istream& in, std::ostream& out);

}  // namespace tavrel::script_lsp
