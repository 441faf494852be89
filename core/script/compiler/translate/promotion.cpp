// A literal is compiled as an integer before it is known that a real is wanted. Its code is a PushInt and a NegInt for
// each minus sign, which become PushReal and NegReal; the pool of integers keeps an entry that nothing uses.
#include "core/script/compiler/translate/promotion.h"

#include <bit>

#include "core/script/numeric/int_to_float.h"

namespace tavrel::core::script {

namespace {

// Exact when the float reads back as the same integer. The bound keeps the conversion back defined.
bool ConvertExactly(std::int64_t value, float& real) {
    constexpr float TwoToThe63 = 9223372036854775808.0F;
    real = IntToFloat<float>(value);
    return real < TwoToThe63 && static_cast<std::int64_t>(real) == value;
}

bool IsNumberLiteral(const Body& body, ExprId expr) {
    if (!expr) return false;
    while (body.At(expr).kind == ExprKind::Unary && body.At(expr).op == Tok::Minus) expr = body.At(expr).left;
    return body.At(expr).kind == ExprKind::Integer;
}

}  // namespace

TypeId PromoteLiteral(Body& body, std::size_t first, std::size_t last, TypeId type, TypeId wanted, ExprId expr) {
    if (wanted != RealType || type != IntType || !IsNumberLiteral(body, expr)) return type;
    for (std::size_t at = first; at < last && at < body.code.Size(); ++at) {
        Instruction& instruction = body.code.At(at);
        if (instruction.op == static_cast<std::uint8_t>(Op::NegInt)) {
            instruction.op = static_cast<std::uint8_t>(Op::NegReal);
        }
        if (instruction.op != static_cast<std::uint8_t>(Op::PushInt)) continue;
        float real = 0;
        if (!ConvertExactly(body.code.IntegerAt(instruction.c), real)) {
            body.Error(body.SpanOf(expr), "este numero nao cabe exatamente num real",
                       "escreva-o com ponto, para dizer qual real voce quer");
            return ErrorType;
        }
        instruction = {static_cast<std::uint8_t>(Op::PushReal), 0, 0, std::bit_cast<std::uint32_t>(real)};
    }
    return RealType;
}

bool Fits(Body& body, const Expr& call, Arguments& arguments, std::size_t index, TypeId wanted) {
    if (index >= arguments.types.size()) return false;
    TypeId& type = arguments.types[index];
    if (wanted == RealType && type == IntType) {
        ExprId expr = body.Item(call, index);
        type = PromoteLiteral(body, arguments.offsets[index], arguments.offsets[index + 1], type, wanted, expr);
    }
    return type == wanted;
}

void UnifyToReal(Body& body, const Expr& call, Arguments& arguments) {
    bool anyReal = false;
    for (TypeId type : arguments.types) anyReal = anyReal || type == RealType;
    if (!anyReal) return;
    for (std::size_t i = 0; i < arguments.types.size(); ++i) Fits(body, call, arguments, i, RealType);
}

}  // namespace tavrel::core::script
