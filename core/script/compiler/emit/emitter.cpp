// Code grows in vectors of the emitter, and a function gets a copy of the right size at its end: growing each function
// by itself would take longer and leave unused room in every one.
#include "core/script/compiler/emit/emitter.h"

#include <bit>

namespace tavrel::core::script {

void Emitter::Begin(FunctionId function) {
    current = function;
    code.clear();
    spans.clear();
}

void Emitter::End(Span span, std::int32_t locals) {
    Emit(Op::Return, span);
    Function& function = program.At(current);
    function.locals = locals;
    function.code = code;
    function.spans = spans;
}

void Emitter::CutTo(std::size_t size) {
    code.resize(size);
    spans.resize(size);
}

void Emitter::Emit(Op op, std::uint8_t a, std::uint16_t b, std::uint32_t c, Span span) {
    code.push_back({static_cast<std::uint8_t>(op), a, b, c});
    spans.push_back(span.start);
}

JumpId Emitter::EmitJump(Op op, Span span) {
    Emit(op, span);
    return JumpId(code.size() - 1);
}

void Emitter::PatchJumps(const std::vector<JumpId>& jumps) {
    for (JumpId jump : jumps) PatchJump(jump);
}

void Emitter::EmitInt(std::int64_t value, Span span) {
    auto [place, isNew] = integerPool.try_emplace(value, static_cast<std::int32_t>(program.integers.size()));
    if (isNew) program.integers.push_back(value);
    EmitIndexed(Op::PushInt, place->second, span);
}

void Emitter::EmitReal(float value, Span span) {
    Emit(Op::PushReal, 0, 0, std::bit_cast<std::uint32_t>(value), span);
}

std::int32_t Emitter::InternText(std::string_view text) {
    NameId number = textPool.InternExact(text);
    if (number.Number() == program.texts.size()) program.texts.emplace_back(text);
    return number.value;
}

void Emitter::EmitCall(FunctionId function, std::size_t count, Span span) {
    Emit(Op::Call, static_cast<std::uint8_t>(count), 0, static_cast<std::uint32_t>(function.value), span);
}

void Emitter::EmitNative(Native native, std::size_t count, Span span) {
    Emit(Op::CallNative, static_cast<std::uint8_t>(count), 0, static_cast<std::uint32_t>(native), span);
}

void Emitter::EmitHost(std::uint32_t id, std::size_t count, Span span) {
    Emit(Op::CallHost, static_cast<std::uint8_t>(count), 0, id, span);
}

}  // namespace tavrel::core::script
