// The look-ups that go through more than one table of names.
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

FunctionEntryId Declarations::FindFunction(NameId name, BehaviourId owner) const {
    if (owner) {
        FunctionEntryId entry = behaviourFunctions.Find(owner, name);
        if (entry) return entry;
    }
    return moduleFunctions.Find(name);
}

bool Declarations::IsFreeForGlobal(NameId name) const {
    return !globalNames.Has(name) && !typeNames.Has(name) && !enumMembers.Has(name);
}

}  // namespace tavrel::core::script
