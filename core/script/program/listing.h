// A compiled function as text, for tests and for looking at what the compiler made.
#pragma once

#include <string>

#include "core/script/program/program.h"

namespace tavrel::core::script {

// One line an operation: its index, its name, and the operands it uses, pool constants and callees in words.
[[nodiscard]] std::string ListFunction(const Program& program, const Function& function);

}  // namespace tavrel::core::script
