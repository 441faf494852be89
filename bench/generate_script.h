// Large valid scripts for measuring: a size in, source text out, the same text on every machine. A generated script
// reads like the code of one long game, with as many distinct names, numbers, texts and types per line at any size.
// Nothing here touches a file.
#pragma once

#include <string>

namespace tavrel::bench {

enum class Language { Script, Lua };

// A script of exactly `lines` lines, from some 300 up, that compiles with the world's table. In Lua the same pieces,
// statement for statement; its number of lines may differ by a few in a hundred.
[[nodiscard]] std::string GenerateScript(int lines, Language language);

}  // namespace tavrel::bench
