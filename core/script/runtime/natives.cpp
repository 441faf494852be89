#include "core/script/runtime/natives.h"

#include <array>

namespace tavrel::core::script {

namespace {

constexpr std::size_t NativeCount = static_cast<std::size_t>(Native::Count);

constexpr std::array Functions{
#define TAVREL_NATIVE(name, number, text) &Native##name,
#include "core/script/program/native.def"
#undef TAVREL_NATIVE
};
static_assert(Functions.size() == NativeCount);

struct Signature {
    Native native;
    int arguments;
    Kind result;
    Kind first = Kind::Unknown;
    Kind second = Kind::Unknown;
};

constexpr std::array Signatures{
    Signature{Native::Print, 1, Kind::Nothing, Kind::Text},
    Signature{Native::ToText, 1, Kind::Text},
    Signature{Native::ToInt, 1, Kind::Int},
    Signature{Native::ToReal, 1, Kind::Real},
    Signature{Native::ParseInt, 2, Kind::Int, Kind::Text},
    Signature{Native::ParseReal, 2, Kind::Real, Kind::Text},
    Signature{Native::Format, 1, Kind::Text, Kind::Text},
    Signature{Native::TextSize, 1, Kind::Int, Kind::Text},
    Signature{Native::TextContains, 2, Kind::Bool, Kind::Text, Kind::Text},
    Signature{Native::TextSplit, 2, Kind::List, Kind::Text, Kind::Text},
    Signature{Native::ListSize, 1, Kind::Int, Kind::List},
    Signature{Native::ListContains, 2, Kind::Bool, Kind::List},
    Signature{Native::ListAppend, 2, Kind::Nothing, Kind::List},
    Signature{Native::ListInsert, 3, Kind::Nothing, Kind::List},
    Signature{Native::ListRemove, 2, Kind::Nothing, Kind::List},
    Signature{Native::ListRemoveValue, 2, Kind::Bool, Kind::List},
    Signature{Native::ListClear, 1, Kind::Nothing, Kind::List},
    Signature{Native::ListIndexOf, 2, Kind::Int, Kind::List},
    Signature{Native::ListSort, 1, Kind::Nothing, Kind::List},
    Signature{Native::ListReverse, 1, Kind::Nothing, Kind::List},
    Signature{Native::ListCopy, 1, Kind::List, Kind::List},
    Signature{Native::ListVersion, 1, Kind::Int, Kind::List},
    Signature{Native::DictSize, 1, Kind::Int, Kind::Dict},
    Signature{Native::DictContains, 2, Kind::Bool, Kind::Dict},
    Signature{Native::DictDefine, 3, Kind::Nothing, Kind::Dict},
    Signature{Native::DictObtain, 3, Kind::Unknown, Kind::Dict},
    Signature{Native::DictRemove, 2, Kind::Bool, Kind::Dict},
    Signature{Native::DictClear, 1, Kind::Nothing, Kind::Dict},
    Signature{Native::DictKeys, 1, Kind::List, Kind::Dict},
    Signature{Native::DictValues, 1, Kind::List, Kind::Dict},
    Signature{Native::DictCopy, 1, Kind::Dict, Kind::Dict},
    Signature{Native::RecordCopy, 1, Kind::Record, Kind::Record},
    Signature{Native::AbsInt, 1, Kind::Int},
    Signature{Native::AbsReal, 1, Kind::Real},
    Signature{Native::Floor, 1, Kind::Real},
    Signature{Native::Ceil, 1, Kind::Real},
    Signature{Native::Round, 1, Kind::Real},
    Signature{Native::Sqrt, 1, Kind::Real},
    Signature{Native::Pow, 2, Kind::Real},
    Signature{Native::Exp, 1, Kind::Real},
    Signature{Native::Log, 1, Kind::Real},
    Signature{Native::Sin, 1, Kind::Real},
    Signature{Native::Cos, 1, Kind::Real},
    Signature{Native::Tan, 1, Kind::Real},
    Signature{Native::Asin, 1, Kind::Real},
    Signature{Native::Acos, 1, Kind::Real},
    Signature{Native::Atan, 1, Kind::Real},
    Signature{Native::Atan2, 2, Kind::Real},
    Signature{Native::MaxInt, 2, Kind::Int},
    Signature{Native::MaxReal, 2, Kind::Real},
    Signature{Native::MinInt, 2, Kind::Int},
    Signature{Native::MinReal, 2, Kind::Real},
    Signature{Native::ClampInt, 3, Kind::Int},
    Signature{Native::ClampReal, 3, Kind::Real},
    Signature{Native::LerpReal, 3, Kind::Real},
    Signature{Native::LerpVec2, 3, Kind::Vec2},
    Signature{Native::LerpVec3, 3, Kind::Vec3},
    Signature{Native::LerpColor, 3, Kind::Color},
    Signature{Native::DistanceVec2, 2, Kind::Real},
    Signature{Native::DistanceVec3, 2, Kind::Real},
    Signature{Native::PlanarDistance, 2, Kind::Real},
    Signature{Native::NormalizeVec2, 1, Kind::Unknown},  // of a Color too, which stays one
    Signature{Native::NormalizeVec3, 1, Kind::Vec3},
    Signature{Native::LengthVec2, 1, Kind::Real},
    Signature{Native::LengthVec3, 1, Kind::Real},
    Signature{Native::Random, 0, Kind::Real},
    Signature{Native::RandomInt, 2, Kind::Int},
    Signature{Native::RandomReal, 2, Kind::Real},
};
static_assert(Signatures.size() == NativeCount);

constexpr bool InOrder() {
    for (std::size_t i = 0; i < NativeCount; ++i) {
        if (static_cast<std::size_t>(Signatures[i].native) != i) return false;
    }
    return true;
}
static_assert(InOrder(), "a row stands at its native's number");

// One row more: what is no native has no function.
constexpr std::array<NativeShape, NativeCount + 1> MakeShapes() {
    std::array<NativeShape, NativeCount + 1> shapes;
    for (std::size_t i = 0; i < NativeCount; ++i) {
        const Signature& row = Signatures[i];
        shapes[i] = {Functions[i], row.arguments, row.native == Native::Format, {row.first, row.second}, row.result};
    }
    return shapes;
}

constexpr std::array<NativeShape, NativeCount + 1> Shapes = MakeShapes();

}  // namespace

const NativeShape& ShapeOf(Native native) {
    const auto number = static_cast<std::size_t>(native);
    return Shapes[number < NativeCount ? number : NativeCount];
}

}  // namespace tavrel::core::script
