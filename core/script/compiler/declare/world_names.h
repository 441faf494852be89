// The world's table in the compiler's own terms: namespaces, host functions with resolved types and parsed defaults,
// and the fields that the world answers. Prelude fills it from an Api; every name in it is folded.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/program/kinds.h"
#include "core/script/program/type_table.h"

namespace tavrel::core::script {

// The parsed default of a host parameter or of a field of a host record.
enum class DefaultKind : std::int32_t {
    None = 0,
    Integer = 1,
    Real = 2,  // components[0]
    Bool = 3,  // integer 0 or 1
    Text = 4,
    Handle = 5,  // count: 0 objeto, 1 corpo, 2 som
    Vector = 6,  // count components
    Enum = 7,    // count: the enumeration, integer: the member
};

struct HostDefault {
    DefaultKind kind = DefaultKind::None;
    std::int64_t integer = 0;
    std::array<float, 4> components{};
    std::int32_t count = 0;
    std::string text;
};

struct HostSignature {
    std::uint32_t id = 0;
    std::vector<TypeId> paramTypes;
    std::vector<std::string> labels;    // names of the parameters
    std::vector<HostDefault> defaults;  // one for each parameter
    std::int32_t required = 0;          // leading parameters without a default
    TypeId result = NothingType;
    HookMask hooks = HookMask::None;
    bool effect = false;
};

// A field of a namespace or of a handle.
struct HostField {
    std::uint32_t id = 0;
    TypeId type = ErrorType;
    HookMask hooks = HookMask::None;
};

struct WorldNames {
    // Ordered by name, because hints list names in byte order.
    template <class Entry>
    using Table = std::map<std::string, Entry, std::less<>>;

    Table<std::int32_t> spaces;        // namespaces by dotted name, numbered in order of first mention
    Table<HostSignature> hosts;        // host functions by dotted name
    Table<HostField> namespaceFields;  // by dotted name
    Table<HostField> valueFields;      // fields of handles, by ValueFieldKey

    // The direct names under a namespace as a hint, fields first; nested namespaces are left out. Empty for none.
    [[nodiscard]] std::string ApiHint(const std::string& prefix) const;
};

// The key of a field of a handle kind in WorldNames::valueFields.
[[nodiscard]] std::string ValueFieldKey(Kind kind, std::string_view name);

// The labels of a signature as a hint; empty when it has no parameters.
[[nodiscard]] std::string LabelHint(const HostSignature& signature);

// The names of the handles of nothing, in the order objeto, corpo, som.
inline constexpr std::array<std::string_view, 3> NullHandleNames = {"nenhum_objeto", "nenhum_corpo", "nenhum_som"};

// Which handle of nothing a folded name means; -1 for none.
[[nodiscard]] std::int32_t NullHandle(std::string_view folded);

}  // namespace tavrel::core::script
