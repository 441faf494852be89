// Calls of the built-in functions: the overload is chosen by the types of the arguments.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "core/script/compiler/translate/body.h"
#include "core/script/compiler/translate/calls.h"

namespace tavrel::core::script {

// A call whose arguments are compiled.
struct NativeCall {
    const Expr& call;
    std::string_view name;  // as written
    Arguments arguments;

    [[nodiscard]] std::size_t Count() const { return arguments.types.size(); }
    [[nodiscard]] TypeId Type(std::size_t index) const { return arguments.types[index]; }
    [[nodiscard]] bool Failed() const { return arguments.Failed(); }
};

// A call of a name that is no function of the script.
TypeId CompileNativeCall(Body& body, const Expr& call, NameId name);

// Whether the arguments have exactly these types, a number literal standing for a real.
bool FitsAll(Body& body, NativeCall& native, const std::vector<TypeId>& wanted);

// Reports how the call is written; says nothing where an argument failed to fit and has been reported.
TypeId RefuseNative(Body& body, const NativeCall& native, std::string_view form);

}  // namespace tavrel::core::script
