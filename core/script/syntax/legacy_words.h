// Words that writers bring along from other Portuguese teaching languages and that this one does not have.
#pragma once

#include <string>
#include <string_view>

namespace tavrel::core::script {

// What to write instead of `word`, whatever its case and accents; empty for a word that is no legacy.
[[nodiscard]] std::string LegacyHint(std::string_view word);

}  // namespace tavrel::core::script
