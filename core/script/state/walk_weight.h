// How much a walk over values of the heap would write, found without walking. Lists may share what they hold, and hold
// themselves, so that a small heap can have more ways through it than any time suffices to go. A heap comes in and has
// to stay as it is while the answers are used; out comes a number for each value. Private to the writer of states.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "core/script/program/program.h"
#include "core/script/runtime/heap.h"

namespace tavrel::core::script {

// The deepest level at which values are written as they are; one further down stands a mark in their place.
inline constexpr int MaxStateDepth = 64;

// A long text costs time for its bytes, and so does a long path, which is kept beside each value: each such number of
// bytes counts as a value.
inline constexpr std::uint64_t TextBytesPerValue = 32;
inline constexpr std::uint64_t PathBytesPerValue = 256;

// The name of a record's field; null where the program has none for it, and its number serves.
[[nodiscard]] const std::string* FieldName(const Program& program, const HeapObject& record, std::size_t field);

class WalkWeights {
public:
    // Takes time in proportion to the heap times the depth of what stands in it, at most MaxStateDepth.
    WalkWeights(const Program& program, const Heap& heap);

    // The values that a walk from `value` at depth 0 writes, long texts and paths counted as told above; each path
    // begins with a name of `nameBytes`. An estimate from above by a few bytes of path for each value; numbers beyond
    // 2^31 come as 2^31.
    [[nodiscard]] std::uint64_t Of(const Value& value, std::uint64_t nameBytes) const;

private:
    struct Weight {
        std::uint64_t values = 1;
        std::uint64_t pathBytes = 0;  // of the parts of the paths below this value, summed over all those values

        bool operator==(const Weight&) const = default;
    };

    [[nodiscard]] bool Deepen();
    [[nodiscard]] Weight WeightOf(const Value& value) const;
    [[nodiscard]] Weight WeightOf(const HeapObject& object) const;
    [[nodiscard]] std::uint64_t LabelBytes(const HeapObject& object, std::size_t item) const;
    static void Add(Weight& sum, const Weight& held, std::uint64_t partBytes);

    const Program& program;
    const Heap& heap;
    std::vector<Weight> weights;  // by object, for walks that end some number of levels below it
};

}  // namespace tavrel::core::script
