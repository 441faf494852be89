#include "core/script/runtime/translator.h"

#include <algorithm>

namespace tavrel::core::script {

namespace {

// Facts are kept at every entry and joined on every way to it; beyond this many in all they are not worth it.
constexpr std::uint64_t MaxFacts = std::uint64_t{1} << 22U;
// Byte offsets of slots must stay small in any frame.
constexpr std::uint32_t MaxSlots = std::uint32_t{1} << 24U;
// Passes until facts are given up, and without them the code. Compiled code needs two or three.
constexpr int MaxPasses = 24;

Fact JoinFacts(const Fact& a, const Fact& b) {
    Fact joined;
    if (a.kind == b.kind) joined.kind = a.kind;
    joined.constant = joined.kind != Kind::Unknown && a.constant && b.constant && a.word == b.word;
    if (joined.constant) joined.word = a.word;
    if (a.type == b.type) joined.type = a.type;
    return joined;
}

}  // namespace

Translator::Translator(const Program& givenProgram, const PreparedProgram& prepared, FunctionId function,
                       const PreparedCode* givenModel, PreparedCode& givenOut)
    : program(givenProgram),
      texts(*prepared.texts),
      recordTypes(prepared.recordTypes),
      source(givenProgram.At(function)),
      model(givenModel),
      exact(givenModel == nullptr),
      out(givenOut) {
    out.function = function;
    out.locals = static_cast<std::uint32_t>(std::max(source.locals, 0));
}

bool Translator::Run() {
    if (source.code.empty() || source.locals < 0 || source.params < 0 || source.params > source.locals ||
        out.locals > MaxSlots || source.spans.size() != source.code.size()) {
        return false;
    }
    Restart(!exact);
    bool settled = Settle();
    if (!settled && good && following) {
        Restart(false);
        settled = Settle();
    }
    if (!settled || !good) return false;
    EmitAll();
    out.extent = std::max(out.locals + deepest, exact ? 0 : model->extent);
    out.clearLocals = out.clearLocals || !following;
    return good && out.extent <= MaxSlots;
}

void Translator::Restart(bool follow) {
    following = follow && out.locals <= MaxFacts;
    effort = 0;
    states.clear();
    entryOf.assign(Size(), -1);
    EntryState first;
    if (following) {
        first.locals.resize(out.locals);
        for (std::size_t i = static_cast<std::size_t>(source.params); i < first.locals.size(); ++i) {
            first.locals[i] = {Kind::Nothing, true, {}, 0};
        }
    }
    states.push_back(std::move(first));
    entryOf[0] = 0;
}

// Walks all regions until nothing new is known at any entry. False when that takes too long or the code is refused.
bool Translator::Settle() {
    for (int pass = 0; pass < MaxPasses; ++pass) {
        changed = false;
        for (std::uint32_t at = 0; at < Size() && good && effort <= MaxFacts; ++at) {
            if (entryOf[at] >= 0) Region(at);
        }
        if (!good || effort > MaxFacts) return false;
        if (!changed) return true;
    }
    return false;
}

void Translator::EmitAll() {
    Forget();
    emitting = true;
    placeOf.assign(Size(), -1);
    for (std::uint32_t at = 0; at < Size() && good; ++at) {
        if (entryOf[at] < 0) continue;
        placeOf[at] = static_cast<std::int32_t>(out.code.size());
        Region(at);
    }
    if (!good) return;
    Patch();
    if (exact) NoteEntries();
}

void Translator::NoteEntries() {
    out.entries = placeOf;
    out.depths.resize(Size());
    for (std::uint32_t at = 0; at < Size(); ++at) {
        if (entryOf[at] < 0) continue;
        out.depths[at] = static_cast<std::uint32_t>(states[static_cast<std::size_t>(entryOf[at])].depth);
    }
}

// What was emitted only to see where it leads.
void Translator::Forget() {
    out.code.clear();
    out.origins.clear();
    out.divisors.clear();
    fixups.clear();
    stubs.clear();
}

void Translator::Patch() {
    for (const Stub& stub : stubs) {
        out.code[stub.at].a = static_cast<std::uint32_t>(out.code.size());
        const bool back = placeOf[stub.pc] <= static_cast<std::int32_t>(stub.at);
        out.code.push_back({back ? FastOp::JumpBack : FastOp::Jump, 0, static_cast<std::uint32_t>(placeOf[stub.pc]), 0,
                            static_cast<std::uint32_t>(stub.delta)});
        out.origins.push_back({stub.pc, 0});
    }
    for (const Fixup& fixup : fixups) out.code[fixup.at].a = static_cast<std::uint32_t>(placeOf[fixup.pc]);
}

void Translator::Region(std::uint32_t start) {
    if (!emitting) Forget();
    regionFirst = out.code.size();
    const EntryState& state = states[static_cast<std::size_t>(entryOf[start])];
    Stand(state);
    deepest = std::max(deepest, static_cast<std::uint32_t>(operands.size()));
    ended = inlining = loopCheck = false;
    straight = true;
    inlined = 0;
    delta = 0;
    for (pc = start; !ended && good; pc = next) {
        if (pc >= Size()) return Refuse();
        if (pc != start && !inlining && (exact || entryOf[pc] >= 0)) return FallInto(pc);
        if (exact) {
            Emit(FastOp::Step, 0, 0, pc);
        } else {
            TrimOperands();
        }
        next = pc + 1;
        fusedLocal = -1;
        Translate(At(pc));
    }
}

// Takes up what stands at an entry. Without facts, operands that the last region left in their slots stay as they are.
void Translator::Stand(const EntryState& state) {
    locals = state.locals;
    operands.resize(following ? 0 : std::min({placed, operands.size(), state.depth}));
    for (std::size_t i = operands.size(); i < state.depth; ++i) {
        operands.push_back({Operand::Where::Temp, 0, following ? state.operands[i] : Fact{}});
    }
    placed = operands.size();
}

// Calls of the world that answer nothing leave a Nothing that nobody takes off, in a loop one more each time around.
// The exact form, which follows every way to a place, knows how many operands are there for certain.
void Translator::TrimOperands() {
    while (operands.size() > model->depths[pc]) {
        const Operand operand = Pop();
        if (operand.where == Operand::Where::Temp && !Plain(operand.fact)) {
            Emit(FastOp::DropSlot, SlotAt(operands.size()), 0, 0);
        }
    }
}

// The region ends where the next begins; its operations follow at once when the walk came straight here.
void Translator::FallInto(std::uint32_t target) {
    MaterialiseFrom(0);
    if (straight && delta == 0) return Edge(target);
    EmitJump(target);
}

// Tells the entry at `target` what is known on this way to it.
void Translator::Edge(std::uint32_t target) {
    if (!good) return;
    if (target >= Size()) return Refuse();
    if (emitting) return;
    if (following) effort += locals.size() + operands.size();
    if (effort > MaxFacts) {
        ended = true;
        return;
    }
    if (entryOf[target] < 0) {
        entryOf[target] = static_cast<std::int32_t>(states.size());
        EntryState state{operands.size(), locals, {}};
        for (std::size_t i = 0; following && i < operands.size(); ++i) state.operands.push_back(operands[i].fact);
        states.push_back(std::move(state));
        changed = true;
    } else if (Join(states[static_cast<std::size_t>(entryOf[target])])) {
        changed = true;
    }
}

bool Translator::Join(EntryState& known) {
    bool news = false;
    for (std::size_t i = 0; i < known.locals.size(); ++i) {
        const Fact joined = JoinFacts(known.locals[i], locals[i]);
        // A local that may still be unset on one way must really be Nothing there.
        const bool unset = known.locals[i].kind == Kind::Nothing || locals[i].kind == Kind::Nothing;
        if (unset && joined.kind != Kind::Nothing) out.clearLocals = true;
        if (joined == known.locals[i]) continue;
        known.locals[i] = joined;
        news = true;
    }
    // Ways that leave different numbers of operands: what is above the fewest is never used again.
    if (operands.size() < known.depth) {
        known.depth = operands.size();
        known.operands.resize(std::min(known.operands.size(), known.depth));
        news = true;
    }
    for (std::size_t i = 0; i < known.operands.size(); ++i) {
        const Fact joined = JoinFacts(known.operands[i], operands[i].fact);
        if (joined == known.operands[i]) continue;
        known.operands[i] = joined;
        news = true;
    }
    return news;
}

void Translator::Emit(FastOp op, std::uint32_t a, std::uint32_t b, std::uint32_t c, std::uint16_t flags) {
    out.code.push_back({op, flags, a, b, c});
    out.origins.push_back({pc, delta});
}

}  // namespace tavrel::core::script
