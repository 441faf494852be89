// Words of other Portuguese teaching languages that this one does not have and that writers bring along.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::core::script {

// What to write instead of `word`, whatever its case and accents; empty for any other word.
[[nodiscard]] std::string LegacyHint(std::string_view word);

}  // namespace tavrel::core::script
