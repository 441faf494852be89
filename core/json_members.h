// The members of one object as a text spells them, made into members as an object holds them. Part of the reader of
// JSON, and nobody else's: it collects first and unites now and then, so that a wide object takes no search per member.
#pragma once

#include "core/json.h"

#include <cstddef>
#include <vector>

namespace tavrel::core {

// Leaves each key once, at its first place and with its last value. False when anything, even a repeated key, came
// after `most` different keys; what is left then is of no use.
[[nodiscard]] bool UniteMembers(std::vector<JsonMember>& members, std::size_t most);

}  // namespace tavrel::core
