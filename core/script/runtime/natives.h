// The native functions behind CallNative, one C++ function each, by family: natives_text.cpp, natives_list.cpp,
// natives_dictionary.cpp, natives_number.cpp, natives_vector.cpp, natives_random.cpp. The compiler has chosen the
// overload and checked the types; a native checks values only. Vm::CallNativeAt calls them and cleans up behind them.
#pragma once

#include <cstddef>

#include "core/script/program/program.h"
#include "core/script/runtime/value.h"

namespace tavrel::core::script {

class Vm;

// Reads its arguments in place, the first at args[0]; they are dropped behind it, so a native that stores one leaves
// Nothing in its slot. The reference in `result` goes to the caller, also on failure. False after Vm::Fail.
using NativeFunction = bool (*)(Vm& vm, Value* args, std::size_t count, Value& result);

#define TAVREL_NATIVE(name, number, text) \
    [[nodiscard]] bool Native##name(Vm& vm, Value* args, std::size_t count, Value& result);
#include "core/script/program/native.def"
#undef TAVREL_NATIVE

// What a call of a native looks like from outside.
struct NativeShape {
    NativeFunction function = nullptr;
    int arguments = 0;            // for Format, the least count
    bool variadic = false;        // Format only
    Kind kinds[2] = {};           // kind of the first and second argument where it must be on the heap; else Unknown
    Kind result = Kind::Unknown;  // what it pushes: Nothing for a procedure, Unknown where the arguments decide
};

// The shape of a native; a null function for a number that is none.
[[nodiscard]] const NativeShape& ShapeOf(Native native);

// The texts of faults that more than one place needs.
inline constexpr const char* MemoryFault = "o script passou do limite de memoria";
inline constexpr const char* UnknownFunctionFault = "funcao desconhecida";
inline constexpr const char* OverflowFault = "a conta passou do que cabe num inteiro";

}  // namespace tavrel::core::script
