// "--lsp": the language server over the standard streams.
#pragma once

namespace tavrel::tools {

// Serves one editor until it says "exit", its input ends or is no message, or the answers find no reader any more.
// Waits for input; gives 0 however the connection ended.
[[nodiscard]] int Serve();

}  // namespace tavrel::tools
