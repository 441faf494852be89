// Standard output goes through the library's buffer, standard error does not. Both may be one file, so the buffer is
// emptied before each report.
#include "tools/console.h"

#include <cstdio>

namespace tavrel::tools {

void Print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

void PrintError(std::string_view text) {
    std::fflush(stdout);
    std::fwrite(text.data(), 1, text.size(), stderr);
    std::fflush(stderr);  // some C libraries buffer it, too
}

bool Flush() {
    return std::fflush(stdout) == 0 && std::ferror(stdout) == 0;
}

}  // namespace tavrel::tools
