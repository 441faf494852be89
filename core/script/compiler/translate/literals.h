// Lists and dictionaries written in the code. The elements decide the type, so an empty one has none: it gives
// ErrorType without a report.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileListLit(Body& body, const Expr& expr);
TypeId CompileDictLit(Body& body, const Expr& expr);

}  // namespace tavrel::core::script
