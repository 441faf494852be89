// The order in which names are declared. Each step may use what the steps before it declared, and the numbers that the
// program gives to types, records and globals follow this order, so it is part of what digests hold still.
#include "core/script/compiler/declare/declare.h"

#include "core/script/compiler/declare/behaviours.h"
#include "core/script/compiler/declare/functions.h"
#include "core/script/compiler/declare/globals.h"
#include "core/script/compiler/declare/prelude.h"
#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

Declarations Declare(Compiler& compiler) {
    Declarations declarations;
    Prelude(compiler, declarations);
    const std::vector<RecordId> records = CollectTypes(compiler, declarations);
    ResolveRecords(compiler, declarations, records);
    CollectActions(compiler, declarations);
    CollectGlobals(compiler, declarations);
    CollectBehaviours(compiler, declarations);
    AddFunctions(compiler, declarations);
    return declarations;
}

}  // namespace tavrel::core::script
