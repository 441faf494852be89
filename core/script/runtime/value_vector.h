// The items of a heap object: a vector of values that knows its size without arithmetic on pointers, which element
// access by index pays for at each of its steps. Values are plain data, so they move as bytes.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

#include "core/script/runtime/value.h"

namespace tavrel::core::script {

class ValueVector {
public:
    ValueVector() = default;
    explicit ValueVector(std::size_t size) { resize(size); }
    ValueVector(ValueVector&& other) noexcept { swap(other); }
    ValueVector& operator=(ValueVector&& other) noexcept {
        swap(other);
        return *this;
    }
    ~ValueVector() { Free(); }

    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] bool empty() const { return count == 0; }
    [[nodiscard]] std::size_t capacity() const { return room; }
    [[nodiscard]] Value* data() { return first; }
    [[nodiscard]] const Value* data() const { return first; }
    [[nodiscard]] Value* begin() { return first; }
    [[nodiscard]] Value* end() { return first + count; }
    [[nodiscard]] const Value* begin() const { return first; }
    [[nodiscard]] const Value* end() const { return first + count; }
    [[nodiscard]] Value& operator[](std::size_t index) { return first[index]; }
    [[nodiscard]] const Value& operator[](std::size_t index) const { return first[index]; }
    [[nodiscard]] Value& back() { return first[count - 1]; }
    [[nodiscard]] const Value& back() const { return first[count - 1]; }

    void push_back(const Value& value) {
        const Value kept = value;  // may be one of ours
        if (count == room) Move(std::max<std::size_t>(4, room * 2));
        first[count++] = kept;
    }
    void pop_back() {
        --count;
        GiveBack();
    }
    void insert(Value* position, const Value& value) {
        const Value kept = value;
        const std::ptrdiff_t index = position - first;
        push_back(kept);
        std::copy_backward(first + index, first + count - 1, first + count);
        first[index] = kept;
    }
    void erase(Value* position) {
        std::copy(position + 1, first + count, position);
        --count;
        GiveBack();
    }
    void reserve(std::size_t wanted) {
        if (wanted > room) Move(wanted);
    }
    // New items are Nothing.
    void resize(std::size_t wanted) {
        reserve(wanted);
        if (wanted > count) std::fill(first + count, first + wanted, Value());
        count = wanted;
    }
    void clear() { count = 0; }
    // Gives the memory back.
    void reset() {
        Free();
        first = nullptr;
        count = room = 0;
    }
    void swap(ValueVector& other) noexcept {
        std::swap(first, other.first);
        std::swap(count, other.count);
        std::swap(room, other.room);
    }

private:
    void Free() {
        if (first != nullptr) std::allocator<Value>().deallocate(first, room);
    }
    // Room that stands empty is counted nowhere, so a script must not be able to pile it up.
    void GiveBack() {
        if (room > 8 && count < room / 4) Move(room / 2);
    }
    void Move(std::size_t wanted) {
        Value* fresh = std::allocator<Value>().allocate(wanted);
        if (count > 0) std::copy(first, first + count, fresh);
        Free();
        first = fresh;
        room = wanted;
    }

    Value* first = nullptr;
    std::size_t count = 0;
    std::size_t room = 0;
};

}  // namespace tavrel::core::script
