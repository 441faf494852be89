// Conversions and constructors: a type word before parentheses.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileConstruct(Body& body, const Expr& expr);

}  // namespace tavrel::core::script
