#include <cstdint>
#include <limits>

#include "core/script/numeric/float_math.h"
#include "core/script/numeric/int_to_float.h"
#include "core/script/runtime/native_math.h"
#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"

namespace tavrel::core::script {

namespace {

constexpr float LargestIntegerReal = 9223371487098961920.0F;  // the greatest float below 2^63

bool GiveInt(std::int64_t integer, Value& result) {
    result = MakeInt(integer);
    return true;
}

bool GiveReal(float real, Value& result) {
    result = MakeReal(real);
    return true;
}

// The comparisons are those of the language, so that a NaN and two zeros of different sign answer alike everywhere.
template <typename Number>
Number Greater(Number a, Number b) {
    return a > b ? a : b;
}

template <typename Number>
Number Lesser(Number a, Number b) {
    return a < b ? a : b;
}

// The upper bound wins where the bounds are crossed.
template <typename Number>
Number Clamp(Number x, Number low, Number high) {
    return Lesser(high, Greater(low, x));
}

}  // namespace

bool NativeToInt(Vm& vm, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    if (!(x >= -LargestIntegerReal && x <= LargestIntegerReal)) {
        return FailNative(vm, "este real nao cabe num inteiro");
    }
    return GiveInt(static_cast<std::int64_t>(x), result);
}

bool NativeToReal(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(IntToFloat<float>(args[0].Int()), result);
}

bool NativeAbsInt(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::int64_t x = args[0].Int();
    if (x == std::numeric_limits<std::int64_t>::min()) return FailNative(vm, OverflowFault);
    return GiveInt(x < 0 ? -x : x, result);
}

bool NativeAbsReal(Vm&, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    return GiveReal(x < 0.0F ? -x : x, result);
}

bool NativeFloor(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(FloorReal(args[0].Real()), result);
}

bool NativeCeil(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(CeilReal(args[0].Real()), result);
}

bool NativeRound(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(RoundReal(args[0].Real()), result);
}

bool NativeSqrt(Vm& vm, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    if (x < 0.0F) return FailNative(vm, "\"raiz\" de um numero negativo nao existe nos reais");
    return GiveReal(ExactSqrt(x), result);
}

bool NativePow(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "potencia", tavrel_libm_powf(args[0].Real(), args[1].Real()), result);
}

bool NativeExp(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "exp", tavrel_libm_expf(args[0].Real()), result);
}

bool NativeLog(Vm& vm, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    if (x <= 0.0F) return FailNative(vm, "\"log\" so existe para numeros maiores que zero");
    return GiveFinite(vm, "log", tavrel_libm_logf(x), result);
}

bool NativeSin(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "seno", tavrel_libm_sinf(args[0].Real()), result);
}

bool NativeCos(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "cosseno", tavrel_libm_cosf(args[0].Real()), result);
}

bool NativeTan(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "tangente", tavrel_libm_tanf(args[0].Real()), result);
}

bool NativeAsin(Vm& vm, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    if (x < -1.0F || x > 1.0F) return FailNative(vm, "\"arco_seno\" so existe entre -1 e 1");
    return GiveFinite(vm, "arco_seno", tavrel_libm_asinf(x), result);
}

bool NativeAcos(Vm& vm, Value* args, std::size_t, Value& result) {
    const float x = args[0].Real();
    if (x < -1.0F || x > 1.0F) return FailNative(vm, "\"arco_cosseno\" so existe entre -1 e 1");
    return GiveFinite(vm, "arco_cosseno", tavrel_libm_acosf(x), result);
}

bool NativeAtan(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "arco_tangente", tavrel_libm_atanf(args[0].Real()), result);
}

bool NativeAtan2(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveFinite(vm, "arco_tangente2", tavrel_libm_atan2f(args[0].Real(), args[1].Real()), result);
}

bool NativeMaxInt(Vm&, Value* args, std::size_t, Value& result) {
    return GiveInt(Greater(args[0].Int(), args[1].Int()), result);
}

bool NativeMaxReal(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(Greater(args[0].Real(), args[1].Real()), result);
}

bool NativeMinInt(Vm&, Value* args, std::size_t, Value& result) {
    return GiveInt(Lesser(args[0].Int(), args[1].Int()), result);
}

bool NativeMinReal(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(Lesser(args[0].Real(), args[1].Real()), result);
}

bool NativeClampInt(Vm&, Value* args, std::size_t, Value& result) {
    return GiveInt(Clamp(args[0].Int(), args[1].Int(), args[2].Int()), result);
}

bool NativeClampReal(Vm&, Value* args, std::size_t, Value& result) {
    return GiveReal(Clamp(args[0].Real(), args[1].Real(), args[2].Real()), result);
}

bool NativeLerpReal(Vm& vm, Value* args, std::size_t, Value& result) {
    const float a = args[0].Real();
    return GiveFinite(vm, "interpolar", a + (args[1].Real() - a) * args[2].Real(), result);
}

}  // namespace tavrel::core::script
