// The members of one object as a text spells them, made into members as an object holds them. Private to
// the reader of JSON, which collects first and unites now and then, so that a wide object takes no search per member.
#pragma once

#include <cstddef>
#include <vector>

#include "core/json.h"

namespace tavrel::core {

// Leaves each key once, at its first place and with its last value. False when anything, even a repeated key, came
// after `limit` different keys; what is left then is of no use.
[[nodiscard]] bool UniteMembers(std::vector<JsonMember>& members, std::size_t limit);

}  // namespace tavrel::core
