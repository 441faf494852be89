// The code of default values.
#pragma once

#include <cstdint>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// Leaves the default value of a type on the stack. It is what the machine itself would put there, but that records
// take the values that their declarations give to fields.
void EmitDefault(Body& body, TypeId type, Span span);

// Leaves a default of the world's table on the stack, and where the table gives none that of the type.
void EmitHostDefault(Body& body, const HostDefault& value, TypeId type, Span span);

// A member of an enumeration. Reports an enumeration whose number does not fit the operand.
void EmitEnum(Body& body, EnumId enumeration, std::int32_t member, Span span);

// The handle of nothing; 0 objeto, 1 corpo, 2 som.
void EmitHandle(Body& body, std::int32_t handle, Span span);

}  // namespace tavrel::core::script
