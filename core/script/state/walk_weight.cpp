// Counts by levels in place of ways. A walk that may go no level down writes one value for each object; a walk that may
// go n levels down from an object writes one value and what walks of n - 1 levels write from all that it holds. So one
// pass over the heap for each level of depth counts what a walk would take ages to meet. Passes end early when nothing
// changed any more: then no object holds itself, and the deepest one has been reached.
#include "core/script/state/walk_weight.h"

#include <algorithm>
#include <utility>

namespace tavrel::core::script {

namespace {

// Each sum stops here, and a part of a path counts as so many bytes at most, so that the product of the two stays well
// within 64 bits.
constexpr std::uint64_t MaxWeight = std::uint64_t{1} << 31U;
constexpr std::uint64_t MaxPartBytes = std::uint64_t{1} << 31U;

constexpr std::uint64_t IndexBytes = 12;     // "[" and "]" around an index of any heap
constexpr std::uint64_t KeyLabelBytes = 18;  // the same, and ".chave"

bool HoldsValues(Kind kind) {
    return kind == Kind::List || kind == Kind::Dict || kind == Kind::Record;
}

}  // namespace

const std::string* FieldName(const Program& program, const HeapObject& record, std::size_t field) {
    if (!record.record || record.record.Number() >= program.records.size()) return nullptr;
    const std::vector<std::string>& names = program.At(record.record).fieldNames;
    return field < names.size() ? &names[field] : nullptr;
}

WalkWeights::WalkWeights(const Program& givenProgram, const Heap& givenHeap)
    : program(givenProgram), heap(givenHeap), weights(givenHeap.objects.size()) {
    // One more than the depth, for the marks that stand below it.
    for (int level = 0; level <= MaxStateDepth; ++level) {
        if (!Deepen()) return;
    }
}

std::uint64_t WalkWeights::Of(const Value& value, std::uint64_t nameBytes) const {
    Weight all{0, 0};
    Add(all, WeightOf(value), nameBytes);
    return std::min(all.values + all.pathBytes / PathBytesPerValue, MaxWeight);
}

// Lets walks go one level further down. False when that changed nothing.
bool WalkWeights::Deepen() {
    std::vector<Weight> deeper(weights.size());
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const HeapObject& object = heap.objects[i];
        if (object.refs > 0 && HoldsValues(object.kind)) deeper[i] = WeightOf(object);
    }
    if (deeper == weights) return false;
    weights = std::move(deeper);
    return true;
}

WalkWeights::Weight WalkWeights::WeightOf(const Value& value) const {
    if (HoldsValues(value.kind)) return weights[value.ObjectIndex()];
    if (value.kind == Kind::Text) return {1 + heap.At(value).text.size() / TextBytesPerValue, 0};
    return {};
}

WalkWeights::Weight WalkWeights::WeightOf(const HeapObject& object) const {
    Weight sum;
    for (std::size_t i = 0; i < object.items.size(); ++i) {
        Add(sum, WeightOf(object.items[i]), LabelBytes(object, i));
        if (object.kind == Kind::Dict) Add(sum, WeightOf(object.keys[i]), KeyLabelBytes);
    }
    return sum;
}

std::uint64_t WalkWeights::LabelBytes(const HeapObject& object, std::size_t item) const {
    const std::string* name = object.kind == Kind::Record ? FieldName(program, object, item) : nullptr;
    return name == nullptr ? IndexBytes : name->size() + 1;
}

void WalkWeights::Add(Weight& sum, const Weight& held, std::uint64_t partBytes) {
    const std::uint64_t ownBytes = held.values * std::min(partBytes, MaxPartBytes);
    sum.values = std::min(sum.values + held.values, MaxWeight);
    sum.pathBytes = std::min(sum.pathBytes + held.pathBytes + ownBytes, MaxWeight * PathBytesPerValue);
}

}  // namespace tavrel::core::script
