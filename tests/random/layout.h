// Layouts that nobody would choose and that mean the same.
#pragma once

#include <string>

#include "tests/random/numbers.h"

namespace tavrel::tests {

// The same script with blanks, line ends and comments strewn wherever the language lets them be, and its words spelled
// with other accents and, where case means nothing, in another case. `tidy` has one statement or head a line, one blank
// between tokens, and no comments.
[[nodiscard]] std::string Untidy(RandomNumbers& numbers, const std::string& tidy);

}  // namespace tavrel::tests
