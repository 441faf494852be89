// The names of the fixed numberings, taken from the same rows as the enumerations. A switch refuses a number that two
// rows share, and the assertions one that leaves a gap, since Count rows then hold the numbers below Count.
#include "core/script/program/kinds.h"

namespace tavrel::core::script {

#define TAVREL_KIND(name, number, ...) static_assert(number < KindCount);
#define TAVREL_HOOK(name, number, text) static_assert(number < HookCount);
#define TAVREL_CATEGORY(name, number, text) static_assert(number < CategoryCount);
#define TAVREL_RESERVED(name, number, text) static_assert(number < ReservedFunctionCount);
#include "core/script/program/kinds.def"
static_assert(HookCount < 31, "the last bit of a HookMask stands for \"atualizar_mapa\"");

const char* HookName(HookKind kind) {
#define TAVREL_HOOK(name, number, text) \
    case HookKind::name: return text;
    switch (kind) {
#include "core/script/program/kinds.def"
    }
    return "um gancho";
}

const char* CategoryName(GlobalCategory category) {
#define TAVREL_CATEGORY(name, number, text) \
    case GlobalCategory::name: return text;
    switch (category) {
#include "core/script/program/kinds.def"
    }
    return "?";
}

const char* ReservedName(ReservedFunction function) {
#define TAVREL_RESERVED(name, number, text) \
    case ReservedFunction::name: return text;
    switch (function) {
#include "core/script/program/kinds.def"
    }
    return "?";
}

}  // namespace tavrel::core::script
