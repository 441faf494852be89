#include <cstdint>

#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"
#include "core/script/runtime/random.h"

namespace tavrel::core::script {

namespace {

std::uint32_t Draw(Vm& vm) {
    return DrawRandom(vm.randomState, vm.randomIncrement);
}

// 24 random bits, from 0 up to but excluding 1.
float DrawUnit(Vm& vm) {
    return static_cast<float>(Draw(vm) >> 8U) * 0x1p-24F;
}

}  // namespace

bool NativeRandom(Vm& vm, Value*, std::size_t, Value& result) {
    result = MakeReal(DrawUnit(vm));
    return true;
}

bool NativeRandomInt(Vm& vm, Value* args, std::size_t, Value& result) {
    const std::int64_t low = args[0].Int();
    const std::int64_t high = args[1].Int();
    if (low > high) {
        result = MakeInt(low);
        return true;
    }
    const std::uint64_t span = static_cast<std::uint64_t>(high) - static_cast<std::uint64_t>(low);
    if (span >= 0xFFFFFFFF) {
        return FailNative(vm, "\"aleatorio\" nao cobre um intervalo maior que 4 bilhoes");
    }
    // 2^32 is no multiple of most sizes. Draws below the rest are thrown away, so that all members are equally likely.
    const auto size = static_cast<std::uint32_t>(span + 1);
    const std::uint32_t rest = (0U - size) % size;
    std::uint32_t drawn = Draw(vm);
    while (drawn < rest) drawn = Draw(vm);
    result = MakeInt(static_cast<std::int64_t>(static_cast<std::uint64_t>(low) + drawn % size));
    return true;
}

bool NativeRandomReal(Vm& vm, Value* args, std::size_t, Value& result) {
    const float unit = DrawUnit(vm);
    const float low = args[0].Real();
    result = MakeReal(unit * (args[1].Real() - low) + low);
    return true;
}

}  // namespace tavrel::core::script
