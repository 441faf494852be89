// The forms that are told from the syntax alone, before any name is looked up: "entrada.A.leitura",
// "entrada.A.enviar(...)", "eventos.E.leitura" and "eventos.E.emitir(...)".
#pragma once

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Whether a field has the form of a reading. The base of a field that has is not compiled by itself.
[[nodiscard]] bool IsInputReading(const Body& body, const Expr& field);
[[nodiscard]] bool IsEventReading(Body& body, const Expr& field);

// Whether the callee of a call, a field, has the form of a command or of an emission.
[[nodiscard]] bool IsCommand(const Body& body, const Expr& callee);
[[nodiscard]] bool IsEmission(Body& body, const Expr& callee);

// The code of each form. They are told from the syntax, so names in them, those of actions and events too, are looked
// up and reported only here.
TypeId CompileInputReading(Body& body, const Expr& expr);
TypeId CompileEventReading(Body& body, const Expr& expr);
TypeId CompileCommand(Body& body, const Expr& call);
TypeId CompileEmission(Body& body, const Expr& call);

}  // namespace tavrel::core::script
