// Instructions, the pools of constants, and the code of default values.
#include <bit>

#include "core/script/compiler/compiler.h"

namespace tavrel::core::script {

namespace {

constexpr std::int32_t LargestEnumOperand = 0xFFFF;

// How many operations the declared defaults of records may take in one program. They are compiled anew at each place,
// so a short script can ask for more of them than memory holds.
constexpr std::size_t MostDefaultCode = std::size_t{1} << 22;

}  // namespace

// The index of the new instruction, on which every jump patch rests.
std::int32_t Compiler::Emit(Op op, std::uint8_t a, std::uint16_t b, std::uint32_t c, Span span) {
    Function& current = Current();
    current.code.push_back({static_cast<std::uint8_t>(op), a, b, c});
    current.spans.push_back(span.start);
    return static_cast<std::int32_t>(current.code.size()) - 1;
}

std::int32_t Compiler::EmitIndexed(Op op, std::int32_t index, Span span) {
    return Emit(op, 0, 0, static_cast<std::uint32_t>(index), span);
}

void Compiler::PatchJump(std::int32_t jump) {
    Function& current = Current();
    current.code[static_cast<std::size_t>(jump)].c = static_cast<std::uint32_t>(current.code.size());
}

void Compiler::PatchJumps(const std::vector<std::int32_t>& jumps) {
    for (std::int32_t jump : jumps) PatchJump(jump);
}

void Compiler::EmitJumpTo(std::size_t target, Span span) {
    Emit(Op::Jump, 0, 0, static_cast<std::uint32_t>(target), span);
}

// Equal constants share one entry; the pool's order is the order of first use.
void Compiler::EmitInt(std::int64_t value, Span span) {
    auto [place, isNew] = integerPool.try_emplace(value, static_cast<std::int32_t>(program->integers.size()));
    if (isNew) program->integers.push_back(value);
    EmitIndexed(Op::PushInt, place->second, span);
}

void Compiler::EmitReal(float value, Span span) {
    Emit(Op::PushReal, 0, 0, std::bit_cast<std::uint32_t>(value), span);
}

void Compiler::EmitBool(bool value, Span span) {
    Emit(Op::PushBool, value ? 1 : 0, 0, 0, span);
}

std::int32_t Compiler::InternText(std::string_view text) {
    std::int32_t index = textPool.InternExact(text);
    if (static_cast<std::size_t>(index) == program->texts.size()) program->texts.emplace_back(text);
    return index;
}

void Compiler::EmitText(std::string_view text, Span span) {
    EmitIndexed(Op::PushText, InternText(text), span);
}

void Compiler::EmitEnum(std::int32_t enumeration, std::int32_t member, Span span) {
    if (enumeration > LargestEnumOperand) {
        Error(span, "ha enumeracoes demais: so as primeiras 65536 podem ser usadas como valor",
              "junte enumeracoes, ou declare antes as que sao usadas");
        return;
    }
    Emit(Op::PushEnum, 0, static_cast<std::uint16_t>(enumeration), static_cast<std::uint32_t>(member), span);
}

// The handle of nothing; 0 objeto, 1 corpo, 2 som.
void Compiler::EmitHandle(std::int32_t handle, Span span) {
    Emit(Op::PushHandle, static_cast<std::uint8_t>(handle), 0, 0, span);
}

void Compiler::EmitNative(Native native, std::size_t count, Span span) {
    Emit(Op::CallNative, static_cast<std::uint8_t>(count), 0, static_cast<std::uint32_t>(native), span);
}

void Compiler::EmitHost(std::uint32_t id, std::size_t count, Span span) {
    Emit(Op::CallHost, static_cast<std::uint8_t>(count), 0, id, span);
}

// The twin of the machine's own default values.
void Compiler::EmitDefault(TypeId type, Span span) {
    const TypeInfo& info = program->types.At(type);
    switch (info.kind) {
        case Kind::Int: return EmitInt(0, span);
        case Kind::Real: return EmitReal(0, span);
        case Kind::Bool: return EmitBool(false, span);
        case Kind::Text: return EmitText("", span);
        case Kind::Vec2: return EmitRepeatedReal(0, 2, span);
        case Kind::Vec3: return EmitRepeatedReal(0, 3, span);
        case Kind::Color: return EmitRepeatedReal(255, 4, span);
        case Kind::Object: return EmitHandle(0, span);
        case Kind::Body: return EmitHandle(1, span);
        case Kind::Sound: return EmitHandle(2, span);
        case Kind::List: Emit(Op::NewList, span); return;
        case Kind::Dict: Emit(Op::NewDict, span); return;
        case Kind::Record: return EmitRecordDefault(info.index, span);
        case Kind::Enum: return EmitEnum(info.index, 0, span);
        default: Emit(Op::PushNothing, span); return;
    }
}

void Compiler::EmitRepeatedReal(float value, std::int32_t count, Span span) {
    for (std::int32_t i = 0; i < count; ++i) EmitReal(value, span);
    Emit(Op::MakeVector, static_cast<std::uint8_t>(count), 0, 0, span);
}

void Compiler::EmitRecordDefault(std::int32_t record, Span span) {
    auto at = static_cast<std::size_t>(record);
    if (at >= program->records.size()) {
        Emit(Op::PushNothing, span);
        return;
    }
    EmitIndexed(Op::NewRecord, record, span);
    if (at < apiRecordCount) {
        for (std::size_t field = 0; field < recordDefaults[at].size(); ++field) {
            const HostDefault& value = recordDefaults[at][field];
            if (value.kind == DefaultKind::None) continue;
            Emit(Op::Dup, span);
            EmitHostDefault(value, program->records[at].fieldTypes[field], span);
            EmitIndexed(Op::FieldSet, static_cast<std::int32_t>(field), span);
        }
    } else if (at - apiRecordCount < recordDeclarations.size()) {
        auto [where, declaration] = recordDeclarations[at - apiRecordCount];
        EmitFieldDefaults(*where, *declaration, record, span);
    }
}

// The values are compiled anew at each place that needs them: in the scopes open there, from the file that declares
// the record.
void Compiler::EmitFieldDefaults(const Unit& where, const RecordDecl& declaration, std::int32_t record, Span span) {
    if (defaultCode > MostDefaultCode) return;
    const Unit* current = unit;
    std::size_t first = CodeSize();
    unit = &where;
    for (std::size_t i = 0; i < declaration.fields.size(); ++i) {
        const VarDecl& field = declaration.fields[i];
        if (field.init < 0) continue;
        TypeId wanted = program->records[static_cast<std::size_t>(record)].fieldTypes[i];
        Emit(Op::Dup, span);
        TypeId actual = CompileValue(field.init, wanted);
        if (wanted != FailedType && actual != FailedType && wanted != actual) {
            Error(SpanOf(field.init), "o valor inicial do campo " + Quoted(field.name) + " e " + TypeName(actual) +
                                          ", e o campo e " + TypeName(wanted));
        }
        EmitIndexed(Op::FieldSet, static_cast<std::int32_t>(i), span);
    }
    unit = current;
    defaultCode += CodeSize() - first;
    if (defaultCode > MostDefaultCode) {
        Error(span, "os valores iniciais dos campos de registros geram codigo demais neste programa",
              "de esses valores numa funcao, em vez de na declaracao dos campos");
    }
}

void Compiler::EmitHostDefault(const HostDefault& value, TypeId type, Span span) {
    switch (value.kind) {
        case DefaultKind::None: EmitDefault(type, span); break;
        case DefaultKind::Integer: EmitInt(value.integer, span); break;
        case DefaultKind::Real: EmitReal(value.components[0], span); break;
        case DefaultKind::Bool: EmitBool(value.integer != 0, span); break;
        case DefaultKind::Text: EmitText(value.text, span); break;
        case DefaultKind::Handle: EmitHandle(value.count, span); break;
        case DefaultKind::Vector:
            for (std::int32_t i = 0; i < value.count; ++i) {
                EmitReal(value.components[static_cast<std::size_t>(i)], span);
            }
            Emit(Op::MakeVector, static_cast<std::uint8_t>(value.count), 0, 0, span);
            break;
        case DefaultKind::Enum: EmitEnum(value.count, static_cast<std::int32_t>(value.integer), span); break;
    }
}

}  // namespace tavrel::core::script
