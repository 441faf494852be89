// Conversions and constructors: a type word before parentheses. Which types a word takes, and what it gives, is fixed
// for each word; anything else is reported with the form to write.
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

TypeId CompileConstruct(Body& body, const Expr& expr);

}  // namespace tavrel::core::script
