// The one help text of the tool.
#pragma once

namespace tavrel::tools {

// Writes the commands and their options to standard error.
void Usage();

}  // namespace tavrel::tools
