// What a game supplies: the world behind the functions that a script calls in it.
#pragma once

#include <cstdint>

#include "core/script/runtime/value.h"

namespace tavrel::core::script {

class Vm;

// One call of a function of the world.
struct HostCall {
    Vm* vm = nullptr;
    std::uint32_t function = 0;   // the id of the function's row in the world's table
    const Value* args = nullptr;  // on the machine's stack, which keeps their references; gone once the stack grows
    std::uint32_t count = 0;
    Value result;  // the answer, which hands over its reference; Nothing for a function without one
};

class Host {
public:
    virtual ~Host() = default;

    // Performs the call; true for success. A false answer ends the script's run with a fault: the one that the host
    // recorded by Vm::Fail, or a general one.
    [[nodiscard]] virtual bool Call(HostCall& call) = 0;
};

}  // namespace tavrel::core::script
