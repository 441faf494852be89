// The value stack of a machine. Frames lie on it one behind the other; a frame has its locals first, then its operands.
// Storage above what is in use never holds a reference: whoever takes a value off leaves a kind there that is not on
// the heap. So a frame needs no clearing for safety when it is set up.
#pragma once

#include <cstddef>
#include <vector>

#include "core/script/runtime/value.h"

namespace tavrel::core::script {

class ValueStack {
public:
    [[nodiscard]] std::size_t Size() const { return size; }
    [[nodiscard]] Value* Data() { return slots.data(); }
    [[nodiscard]] const Value* Data() const { return slots.data(); }
    // How many values fit without moving.
    [[nodiscard]] std::size_t Room() const { return slots.size(); }

    // Makes room for that many values in all; pointers into the stack are gone then.
    void Reserve(std::size_t count) {
        if (count > slots.size()) slots.resize(count + count / 2);
    }
    // Takes over the reference.
    void Push(const Value& value) {
        Reserve(size + 1);
        slots[size++] = value;
    }
    // Says how many values are in use. Owned values must not be cut off, nor stale ones be taken in.
    void SetSize(std::size_t count) { size = count; }

private:
    std::vector<Value> slots;
    std::size_t size = 0;
};

}  // namespace tavrel::core::script
