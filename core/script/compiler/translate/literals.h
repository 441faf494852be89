// Lists and dictionaries written in the code.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileListLit(Body& body, const Expr& expr);
TypeId CompileDictLit(Body& body, const Expr& expr);

}  // namespace tavrel::core::script
