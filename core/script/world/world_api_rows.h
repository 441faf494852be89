// The rows of the world's table. Private to this folder: everyone else asks WorldApi for the one table of the process.
#pragma once

#include "core/script/world/world_api.h"

namespace tavrel::core::script {

// A new table with every row, in the order in which programs number them.
[[nodiscard]] Api Build();

}  // namespace tavrel::core::script
