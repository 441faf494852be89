// What the declarations of a script and of its world mean: every name that code may use, with what it stands for. The
// passes in this folder fill it, in the order that compile.cpp gives; from then on it is read-only, and code is
// translated against it. Types, globals, records, actions, events and behaviours themselves stand in the Program; what
// stands here leads to them by name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/script/compiler/declare/name_table.h"
#include "core/script/compiler/declare/world_names.h"
#include "core/script/program/program.h"
#include "core/script/syntax/syntax_tree.h"

namespace tavrel::core::script {

// One declared function. A function that was reported stays, so that every function of the program has its entry.
struct FunctionEntry {
    FunctionId function;
    const Unit* unit = nullptr;
    const FunctionDecl* declaration = nullptr;
    BehaviourId behaviour;       // none for a function of a module
    std::vector<TypeId> params;  // without the hidden instance
    TypeId result = NothingType;
};
using FunctionEntryId = Index<FunctionEntry>;  // into Declarations::functions

// A member of an enumeration; its name is global to the script.
struct EnumMember {
    EnumId enumeration;
    std::int32_t member = 0;  // into EnumInfo::members
};
using EnumMemberId = Index<EnumMember>;  // into Declarations::enumMemberPlaces

// Where a record of the script was declared.
struct RecordSource {
    const Unit* unit = nullptr;
    const RecordDecl* declaration = nullptr;
};

// The fields of a record or of an instance, by position.
using FieldId = Index<struct Field>;

struct Declarations {
    NameMap<TypeId> typeNames;  // records and enumerations of the script and of the world
    NameMap<EnumMemberId> enumMembers;
    std::vector<EnumMember> enumMemberPlaces;
    NameMap<GlobalId> globalNames;
    NameMap<ActionId> actionNames;
    NameMap<EventId> eventNames;
    OwnedNameMap<RecordId, FieldId> fieldNames;  // the first field of each name

    std::vector<FunctionEntry> functions;      // in order of declaration
    NameMap<FunctionEntryId> moduleFunctions;  // the first of each name outside behaviours
    OwnedNameMap<BehaviourId, FunctionEntryId> behaviourFunctions;

    std::size_t apiRecordCount = 0;                        // how many of the first records come from the world
    std::vector<std::vector<HostDefault>> recordDefaults;  // of the fields of each of those
    std::vector<RecordSource> recordSources;               // of each record of the script, behind those

    WorldNames world;

    // The function that a call by that name reaches from the code of a behaviour, or from the module's where `owner`
    // is none. A behaviour's function hides a module's of that name, and a behaviour sees no other behaviour's.
    [[nodiscard]] FunctionEntryId FindFunction(NameId name, BehaviourId owner) const;

    [[nodiscard]] const FunctionEntry& At(FunctionEntryId entry) const { return functions[entry.Number()]; }
    [[nodiscard]] const EnumMember& At(EnumMemberId member) const { return enumMemberPlaces[member.Number()]; }

    // False when there is a type, a member of an enumeration or a global of that name, so that no global may have it.
    [[nodiscard]] bool IsFreeForGlobal(NameId name) const;
};

}  // namespace tavrel::core::script
