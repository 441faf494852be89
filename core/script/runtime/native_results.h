// What most natives end with: a checked result, a new text, or a fault.
#pragma once

#include <string>
#include <utility>

#include "core/script/runtime/native_math.h"
#include "core/script/runtime/value.h"
#include "core/script/runtime/vm.h"

namespace tavrel::core::script {

// Records a fault; false.
[[nodiscard]] inline bool FailNative(Vm& vm, std::string message) {
    vm.Fail(std::move(message));
    return false;
}

// A real that must be finite; else the fault that names the function.
[[nodiscard]] inline bool GiveFinite(Vm& vm, const char* name, float real, Value& result) {
    if (!IsFinite(real)) return FailNative(vm, "o resultado de \"" + std::string(name) + "\" nao cabe num real");
    result = MakeReal(real);
    return true;
}

// A new text, if the memory allows it.
[[nodiscard]] inline bool GiveText(Vm& vm, std::string text, Value& result) {
    if (!vm.Grow(Heap::ObjectCost + text.size())) return false;
    result = MakeObject(Kind::Text, static_cast<std::uint32_t>(vm.heap.NewText(std::move(text))));
    return true;
}

}  // namespace tavrel::core::script
