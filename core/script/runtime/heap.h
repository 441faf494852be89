// The objects of one running script: texts, lists, dictionaries and records in reference-counted slots, which a Value
// names by index. One heap belongs to one machine; there is no collector and no sharing.
//
// Ownership: every value of a heap kind that stands on the stack, in a local, in a global, in `items` or in `keys`
// holds one reference. Moving it between these places transfers the reference, copying it needs Retain, removing it
// needs Drop. The first reference of a new object belongs to whoever made it.
//
// Memory is counted by what the script put in, not by what the allocator gave, so that a script meets its limit at the
// same instruction on every machine: ObjectCost for an object, ItemCost for an item, key or value, one for a byte of
// text, and what the index of a large dictionary takes (dict_index.h). The heap counts; whoever lets a script grow
// something asks Fits first. An index comes unasked and may pass the limit, so that the next growth fails.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/runtime/value.h"
#include "core/script/runtime/value_vector.h"

namespace tavrel::core::script {

struct DictIndex;

struct HeapObject {
    HeapObject();
    HeapObject(HeapObject&&) noexcept;
    HeapObject& operator=(HeapObject&&) noexcept;
    ~HeapObject();

    Kind kind = Kind::Nothing;
    std::uint16_t effort = 0;  // that a dictionary without an index cost so far (dictionary.cpp)
    std::int32_t refs = 0;
    RecordId record;            // none for what is no record
    std::uint32_t version = 0;  // counts the changes of a list or dictionary that a "para cada" may not see
    std::string text;           // the bytes of a Text, which never change
    ValueVector items;          // of a list; the fields of a record; the values of a dictionary
    ValueVector keys;           // of a dictionary, strictly ascending once settled (dictionary.h)

    std::unique_ptr<DictIndex> index;  // of a dictionary that is searched by hash (dictionary.h); else null
};

struct Heap {
    static constexpr std::uint64_t ObjectCost = 128;
    static constexpr std::uint64_t ItemCost = 24;

    std::vector<HeapObject> objects;
    std::vector<std::uint32_t> free;  // released slots, last released first reused
    std::uint64_t live = 0;           // objects in use
    std::uint64_t taken = 0;          // calls of Take so far

    std::uint64_t bytes = 0;                        // counted memory in use
    std::uint64_t limit = std::uint64_t{1} << 30U;  // most counted memory a script may use
    std::vector<std::uint32_t> unsettled;           // dictionaries with a DictIndex, in any order

    // A new object with one reference.
    [[nodiscard]] std::int32_t Take(Kind kind);

    void Retain(const Value& value) {
        if (OnHeap(value.kind)) ++objects[value.ObjectIndex()].refs;
    }

    // Releases one reference; an object without references goes, and what it held, without recursion. What a dictionary
    // held goes in its present arrangement.
    void Drop(const Value& value) {
        if (OnHeap(value.kind)) DropObject(value.ObjectIndex());
    }
    // As Drop, of a value known to be on the heap.
    void DropObject(std::uint32_t object) {
        if (--objects[object].refs <= 0) Release(object);
    }

    // Destroys all objects. `taken` stays.
    void Clear();

    // Each gives the index of a new object; its one reference goes to the caller.
    [[nodiscard]] std::int32_t NewText(std::string text);
    [[nodiscard]] std::int32_t NewList();
    [[nodiscard]] std::int32_t NewDict();
    // The fields are Nothing.
    [[nodiscard]] std::int32_t NewRecord(RecordId record, std::size_t fieldCount);

    // Whether that much more stays within the limit.
    [[nodiscard]] bool Fits(std::uint64_t more) const { return more <= limit && bytes <= limit - more; }

    // Counted changes of a list's items. Append and Insert take over the reference; RemoveAt gives it to the caller.
    // A position is trusted. None touches `version`.
    void Append(HeapObject& list, const Value& value) {
        list.items.push_back(value);
        bytes += ItemCost;
    }
    void Insert(HeapObject& list, std::size_t position, const Value& value);
    [[nodiscard]] Value RemoveAt(HeapObject& list, std::size_t position);
    // Empties items and keys, dropping keys first, and gives their memory back.
    void ClearItems(std::uint32_t object);

    // False for a value that names no object of its kind in use here. Values of the script's own need no such look.
    [[nodiscard]] bool Holds(const Value& value) const {
        if (!OnHeap(value.kind)) return true;
        const std::uint32_t index = value.ObjectIndex();
        return index < objects.size() && objects[index].refs > 0 && objects[index].kind == value.kind;
    }

    // The object of a value of a heap kind.
    [[nodiscard]] HeapObject& At(const Value& value) { return objects[value.ObjectIndex()]; }
    [[nodiscard]] const HeapObject& At(const Value& value) const { return objects[value.ObjectIndex()]; }

private:
    void Release(std::uint32_t object);
    void Free(std::uint32_t object);
    void PushHeld(const ValueVector& values);

    std::vector<std::uint32_t> pending;  // scratch of Release: objects that are to lose one reference
};

}  // namespace tavrel::core::script
