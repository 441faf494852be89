// "--lsp": the language server over the standard streams.
#pragma once

namespace tavrel::tools {

// Serves one editor until it says "exit", its input ends or is no message, or nobody reads the answers any more. Waits
// for input; gives 0 however the connection ended.
[[nodiscard]] int Serve();

}  // namespace tavrel::tools
