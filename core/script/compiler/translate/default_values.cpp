// The default values of a record's fields are compiled anew at each place that needs them: in the scopes open there,
// from the file that declares the record. A short script can so ask for more code than memory holds, records in
// records, each field a default of its own; so what they take in one program is counted, and too much is reported.
#include "core/script/compiler/translate/default_values.h"

#include "core/script/compiler/translate/expressions.h"

namespace tavrel::core::script {

namespace {

constexpr std::int32_t MaxEnumOperand = 0xFFFF;

// How many operations the declared defaults of records may take in one program.
constexpr std::size_t MaxDefaultCode = std::size_t{1} << 22;

void EmitDefaultVector(Body& body, Kind kind, Span span) {
    const int count = ComponentCount(kind);
    for (int i = 0; i < count; ++i) body.code.EmitReal(DefaultComponent(kind), span);
    body.code.EmitCount(Op::MakeVector, static_cast<std::size_t>(count), span);
}

// The world's table gives its records defaults of their own.
void EmitApiFieldDefaults(Body& body, RecordId record, Span span) {
    const std::vector<HostDefault>& defaults = body.declarations.recordDefaults[record.Number()];
    for (std::size_t i = 0; i < defaults.size(); ++i) {
        if (defaults[i].kind == DefaultKind::None) continue;
        body.code.Emit(Op::Dup, span);
        EmitHostDefault(body, defaults[i], body.FieldType(record, FieldId(i)), span);
        body.code.EmitIndexed(Op::FieldSet, FieldId(i), span);
    }
}

void EmitFieldDefaults(Body& body, const RecordSource& source, RecordId record, Span span) {
    if (body.recordDefaultCode > MaxDefaultCode) return;
    const Unit* current = body.unit;
    std::size_t first = body.code.Size();
    body.unit = source.unit;
    const std::vector<VarDecl>& fields = source.declaration->fields;
    for (std::size_t i = 0; i < fields.size(); ++i) {
        const VarDecl& field = fields[i];
        if (!field.init) continue;
        TypeId wanted = body.FieldType(record, FieldId(i));
        body.code.Emit(Op::Dup, span);
        TypeId actual = CompileValue(body, field.init, wanted);
        if (wanted != ErrorType && actual != ErrorType && wanted != actual) {
            body.Error(body.SpanOf(field.init), "o valor inicial do campo " + Quoted(field.name) + " e " +
                                                    body.TypeName(actual) + ", e o campo e " + body.TypeName(wanted));
        }
        body.code.EmitIndexed(Op::FieldSet, FieldId(i), span);
    }
    body.unit = current;
    body.recordDefaultCode += body.code.Size() - first;
    if (body.recordDefaultCode > MaxDefaultCode) {
        body.Error(span, "os valores iniciais dos campos de registros geram codigo demais neste programa",
                   "de esses valores numa funcao, em vez de na declaracao dos campos");
    }
}

void EmitRecordDefault(Body& body, RecordId record, Span span) {
    const Declarations& declarations = body.declarations;
    body.code.EmitIndexed(Op::NewRecord, record, span);
    if (record.Number() < declarations.apiRecordCount) return EmitApiFieldDefaults(body, record, span);
    // The records of behaviours stand behind those of declarations, and their fields have no defaults here.
    std::size_t declared = record.Number() - declarations.apiRecordCount;
    if (declared < declarations.recordSources.size()) {
        EmitFieldDefaults(body, declarations.recordSources[declared], record, span);
    }
}

}  // namespace

void EmitDefault(Body& body, TypeId type, Span span) {
    const TypeInfo& info = body.Types().At(type);
    switch (info.kind) {
        case Kind::Int: return body.code.EmitInt(0, span);
        case Kind::Real: return body.code.EmitReal(0, span);
        case Kind::Bool: return body.code.EmitBool(false, span);
        case Kind::Text: return body.code.EmitText("", span);
        case Kind::Vec2:
        case Kind::Vec3:
        case Kind::Color: return EmitDefaultVector(body, info.kind, span);
        case Kind::Object: return EmitHandle(body, 0, span);
        case Kind::Body: return EmitHandle(body, 1, span);
        case Kind::Sound: return EmitHandle(body, 2, span);
        case Kind::List: body.code.Emit(Op::NewList, span); return;
        case Kind::Dict: body.code.Emit(Op::NewDict, span); return;
        case Kind::Record: return EmitRecordDefault(body, body.RecordOf(type), span);
        case Kind::Enum: return EmitEnum(body, EnumId(info.index), 0, span);
        case Kind::Unknown:
        case Kind::Nothing:
        case Kind::Space: body.code.Emit(Op::PushNothing, span); return;
    }
}

void EmitHostDefault(Body& body, const HostDefault& value, TypeId type, Span span) {
    switch (value.kind) {
        case DefaultKind::None: EmitDefault(body, type, span); break;
        case DefaultKind::Integer: body.code.EmitInt(value.integer, span); break;
        case DefaultKind::Real: body.code.EmitReal(value.components[0], span); break;
        case DefaultKind::Bool: body.code.EmitBool(value.integer != 0, span); break;
        case DefaultKind::Text: body.code.EmitText(value.text, span); break;
        case DefaultKind::Handle: EmitHandle(body, value.count, span); break;
        case DefaultKind::Vector:
            for (std::int32_t i = 0; i < value.count; ++i) {
                body.code.EmitReal(value.components[static_cast<std::size_t>(i)], span);
            }
            body.code.EmitCount(Op::MakeVector, static_cast<std::size_t>(value.count), span);
            break;
        case DefaultKind::Enum:
            EmitEnum(body, EnumId(value.count), static_cast<std::int32_t>(value.integer), span);
            break;
    }
}

void EmitEnum(Body& body, EnumId enumeration, std::int32_t member, Span span) {
    if (enumeration.value > MaxEnumOperand) {
        body.Error(span, "ha enumeracoes demais: so as primeiras 65536 podem ser usadas como valor",
                   "junte enumeracoes, ou declare antes as que sao usadas");
        return;
    }
    body.code.Emit(Op::PushEnum, 0, static_cast<std::uint16_t>(enumeration.value), static_cast<std::uint32_t>(member),
                   span);
}

void EmitHandle(Body& body, std::int32_t handle, Span span) {
    body.code.EmitCount(Op::PushHandle, static_cast<std::size_t>(handle), span);
}

}  // namespace tavrel::core::script
