// The check that no record contains itself.
#pragma once

#include "core/script/compiler/declare/compiler.h"

namespace tavrel::core::script {

// Reports each record of the program that contains itself through plain fields of records. A list or a dictionary
// breaks a cycle. The reports stand at the start of the main script.
void CheckRecordsContainThemselves(Compiler& compiler);

}  // namespace tavrel::core::script
