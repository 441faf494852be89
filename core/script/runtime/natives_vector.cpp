#include "core/script/runtime/native_math.h"
#include "core/script/runtime/native_results.h"
#include "core/script/runtime/natives.h"

namespace tavrel::core::script {

namespace {

bool GiveLerp(const Value* args, Kind kind, Value& result) {
    const float t = args[2].Real();
    Value between = MakeVector(kind, 0.0F, 0.0F);
    for (int i = 0; i < ComponentCount(kind); ++i) {
        const float a = args[0].components[i];
        between.components[i] = (args[1].components[i] - a) * t + a;
    }
    result = between;
    return true;
}

bool GiveDistance(Vm& vm, const Value* args, int count, Value& result) {
    Value difference = MakeVector(Kind::Vec3, 0.0F, 0.0F);
    for (int i = 0; i < count; ++i) difference.components[i] = args[0].components[i] - args[1].components[i];
    return GiveFinite(vm, "distancia", LengthOf(difference, count), result);
}

bool GiveLength(Vm& vm, const Value* args, int count, Value& result) {
    return GiveFinite(vm, "comprimento", LengthOf(args[0], count), result);
}

}  // namespace

bool NativeLerpVec2(Vm&, Value* args, std::size_t, Value& result) {
    return GiveLerp(args, Kind::Vec2, result);
}

bool NativeLerpVec3(Vm&, Value* args, std::size_t, Value& result) {
    return GiveLerp(args, Kind::Vec3, result);
}

bool NativeLerpColor(Vm&, Value* args, std::size_t, Value& result) {
    return GiveLerp(args, Kind::Color, result);
}

bool NativeDistanceVec2(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveDistance(vm, args, 2, result);
}

bool NativeDistanceVec3(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveDistance(vm, args, 3, result);
}

// Over the ground: x and z, leaving out the height of a Vec3. The fault has no name of its own.
bool NativePlanarDistance(Vm& vm, Value* args, std::size_t, Value& result) {
    const int last = args[0].kind == Kind::Vec3 ? 2 : 1;
    const Value ground[] = {MakeVector(Kind::Vec2, args[0].components[0], args[0].components[last]),
                            MakeVector(Kind::Vec2, args[1].components[0], args[1].components[last])};
    return GiveDistance(vm, ground, 2, result);
}

bool NativeNormalizeVec2(Vm&, Value* args, std::size_t, Value& result) {
    result = NormalizeVector(args[0], 2);
    return true;
}

bool NativeNormalizeVec3(Vm&, Value* args, std::size_t, Value& result) {
    result = NormalizeVector(args[0], 3);
    return true;
}

bool NativeLengthVec2(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveLength(vm, args, 2, result);
}

bool NativeLengthVec3(Vm& vm, Value* args, std::size_t, Value& result) {
    return GiveLength(vm, args, 3, result);
}

}  // namespace tavrel::core::script
