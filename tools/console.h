// The only way out for text: standard output and standard error, as bytes. A text may hold any byte of a script, so
// nothing here goes through a format.
#pragma once

#include <string_view>

namespace tavrel::tools {

// What a command found and did.
void Print(std::string_view text);

// Faults and reports. What was printed before comes out first, so that both keep their order in one file.
void PrintError(std::string_view text);

// Writes out what is still buffered. False when standard output did not take everything so far.
[[nodiscard]] bool Flush();

}  // namespace tavrel::tools
