// Calls: which form a call has, its arguments, and calls of functions of the script.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/script/compiler/translate/body.h"

namespace tavrel::core::script {

// The compiled arguments of a call. Code of argument i stands from offsets[i] up to offsets[i + 1].
struct Arguments {
    std::vector<TypeId> types;
    std::vector<std::size_t> offsets;

    // Some argument has failed: it is reported, and the call says nothing more.
    [[nodiscard]] bool Failed() const;
};

// A call of a form that is told from the syntax: of a name, of a command or an emission.
TypeId CompileCall(Body& body, const Expr& call);

// A call on a receiver that is compiled already, a value or a namespace of the world.
TypeId CompileReceiverCall(Body& body, const Expr& call, TypeId receiver);

// Compiles the arguments in the order of the source.
Arguments CompileArguments(Body& body, const Expr& call);

// For a call that is refused: its arguments still show their own faults.
void CompileForErrors(Body& body, const Expr& call);

// Only host functions have named arguments. False when the call has any, which is then reported.
bool RejectLabels(Body& body, const Expr& call, std::string_view name);

}  // namespace tavrel::core::script
