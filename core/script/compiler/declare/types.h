// Records, enumerations and actions of the script, and types as they are written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "core/script/compiler/declare/compiler.h"
#include "core/script/compiler/declare/declarations.h"

namespace tavrel::core::script {

// Declares the records and enumerations of every unit, records without their fields. Gives the record of each record
// declaration, units in order, none for one that was reported.
[[nodiscard]] std::vector<RecordId> CollectTypes(Compiler& compiler, Declarations& declarations);

// Declares the fields of the records that CollectTypes gave. A field of a failed type keeps its place.
void ResolveRecords(Compiler& compiler, Declarations& declarations, const std::vector<RecordId>& records);

// Declares the input actions of every unit. One whose name is taken is reported and dropped.
void CollectActions(Compiler& compiler, Declarations& declarations);

// The type that is written at a place of a unit. ErrorType where none is written or the parser could read none; a name
// that is not declared and a key that is not comparable are reported and fail too.
TypeId ResolveType(Compiler& compiler, const Declarations& declarations, const Unit& where, TypeRefId written);

// Adds a record without fields to the program. Its name is free.
RecordId DeclareRecord(Compiler& compiler, Declarations& declarations, const std::string& name);

// Adds an enumeration, whose name is free, and the names of its members. `reportTaken` is called with the position of
// each member whose name a member has already; the name keeps its first meaning.
template <class Report>
void DeclareEnum(Compiler& compiler, Declarations& declarations, EnumInfo info, const Report& reportTaken) {
    EnumId index(compiler.program.enums.size());
    declarations.typeNames.Set(compiler.names.Intern(info.name), compiler.program.types.Enum(index.value, info.name));
    for (std::size_t i = 0; i < info.members.size(); ++i) {
        NameId member = compiler.names.Intern(info.members[i]);
        if (declarations.enumMembers.Has(member)) {
            reportTaken(i);
            continue;
        }
        declarations.enumMembers.Set(member, EnumMemberId(declarations.enumMemberPlaces.size()));
        declarations.enumMemberPlaces.push_back({index, static_cast<std::int32_t>(i)});
    }
    compiler.program.enums.push_back(std::move(info));
}

}  // namespace tavrel::core::script
