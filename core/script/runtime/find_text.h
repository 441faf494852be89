// Search of bytes in bytes, in time in proportion to both whatever they are: a script can make texts on which a plain
// search would not come back.
#pragma once

#include <cstddef>
#include <string_view>

namespace tavrel::core::script {

// The position of the first occurrence of `wanted` at or behind `from`, which is at most the length of `text`; npos
// for none. An empty `wanted` occurs everywhere.
[[nodiscard]] std::size_t FindText(std::string_view text, std::string_view wanted, std::size_t from);

}  // namespace tavrel::core::script
