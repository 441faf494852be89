// A compiled program: one plain value that holds everything the runtime, the state writer and the digest need, and
// nothing of the syntax tree. All references inside it are indices into its own vectors, each of a type of its own. The
// compiler fills it; after a clean compile nothing changes it, and any number of machines may run it by const
// reference.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "core/script/program/comparison.h"
#include "core/script/program/kinds.h"
#include "core/script/program/type_table.h"
#include "core/script/source/source_file.h"
#include "core/sha256.h"

namespace tavrel::core::script {

enum class Op : std::uint8_t {
#define TAVREL_OP(name, number, operands) name = number,
#include "core/script/program/op.def"
};
inline constexpr int OpCount = 0
#define TAVREL_OP(name, number, operands) +1
#include "core/script/program/op.def"
    ;

enum class Native : std::uint16_t {
#define TAVREL_NATIVE(name, number, text) name = number,
#include "core/script/program/native.def"
    Count,  // one past the last; fails when called
};

// One operation. An operand that it does not use is 0; jumps hold the absolute index of their target in `c`.
struct Instruction {
    std::uint8_t op = 0;
    std::uint8_t a = 0;
    std::uint16_t b = 0;
    std::uint32_t c = 0;
};

struct ActionInfo;
struct BehaviourInfo;
struct EnumInfo;
struct EventInfo;
struct Function;
struct GlobalInfo;
struct RecordInfo;

// Into the vectors of a Program.
using ActionId = Index<ActionInfo>;
using BehaviourId = Index<BehaviourInfo>;
using EnumId = Index<EnumInfo>;
using EventId = Index<EventInfo>;
using FileId = Index<SourceFile>;
using FunctionId = Index<Function>;
using GlobalId = Index<GlobalInfo>;
using RecordId = Index<RecordInfo>;

struct Function {
    std::string name;
    std::int32_t params = 0;           // arguments on the stack, the instance of a behaviour included
    std::int32_t locals = 0;           // the greatest number of slots live at once, arguments included
    TypeId returnType = NothingType;   // of the result; NothingType for none
    std::vector<Instruction> code;     // always ends with a Return
    std::vector<std::uint32_t> spans;  // source offset of each instruction
    FileId file{0};
};

struct GlobalInfo {
    std::string name;
    TypeId type = ErrorType;
    GlobalCategory category = GlobalCategory::Constant;
    bool published = false;
};

// A record value has one field for each entry, in this order.
struct RecordInfo {
    std::string name;
    std::vector<std::string> fieldNames;
    std::vector<TypeId> fieldTypes;
    BehaviourId behaviour;  // none, also in instance records: those are found by BehaviourInfo::record
};

// A member's number is its index here.
struct EnumInfo {
    std::string name;
    std::vector<std::string> members;
};

// An action with no bindings is a command.
struct ActionInfo {
    std::string name;
    std::vector<Binding> bindings;
};

struct EventInfo {
    std::string name;
    TypeId type = ErrorType;  // of the payload
    GlobalId countGlobal;
    GlobalId valueGlobal;
    GlobalId seenGlobal;
};

struct BehaviourInfo {
    std::string name;
    std::vector<std::string> fieldNames;  // "eu", "meu_corpo", parameters, state, visual, map-derived fields
    std::vector<TypeId> fieldTypes;
    std::vector<GlobalCategory> fieldCategories;
    std::vector<bool> fieldPublished;  // "publico" or "privado"
    std::vector<bool> fieldPrivate;    // "privado"
    std::int32_t ownerField = -1;      // the field "dono" of type inteiro
    std::int32_t parameterCount = 0;
    std::int32_t stateFirst = 0;
    std::int32_t stateCount = 0;
    RecordId record;                          // the instance record
    std::array<FunctionId, HookCount> hooks;  // by HookKind
    FunctionId initializer;                   // takes the instance
};

struct Program {
    std::string name;                 // of the main script's module
    std::vector<SourceFile> sources;  // in unit order
    std::vector<Function> functions;
    std::vector<GlobalInfo> globals;
    std::vector<RecordInfo> records;  // of the world, of the script, then the instance record of each behaviour
    std::vector<EnumInfo> enums;
    std::vector<ActionInfo> actions;
    std::vector<EventInfo> events;
    std::vector<BehaviourInfo> behaviours;
    std::vector<std::int64_t> integers;                      // pool of PushInt
    std::vector<std::string> texts;                          // pool of PushText and Raise
    std::array<FunctionId, HookCount> hooks;                 // by HookKind; none where the module has no such hook
    std::array<FunctionId, ReservedFunctionCount> reserved;  // by ReservedFunction
    FunctionId initializer;                                  // computes the initial values
    std::string progressKey;                                 // file extension of the saved progress; may be empty
    TypeTable types;
    Digest digest{};  // zero until a clean compile

    // The entry under an index, which points at one.
    [[nodiscard]] Function& At(FunctionId function) { return functions[function.Number()]; }
    [[nodiscard]] const Function& At(FunctionId function) const { return functions[function.Number()]; }
    [[nodiscard]] const GlobalInfo& At(GlobalId global) const { return globals[global.Number()]; }
    [[nodiscard]] RecordInfo& At(RecordId record) { return records[record.Number()]; }
    [[nodiscard]] const RecordInfo& At(RecordId record) const { return records[record.Number()]; }
    [[nodiscard]] const EnumInfo& At(EnumId enumeration) const { return enums[enumeration.Number()]; }
    [[nodiscard]] const EventInfo& At(EventId event) const { return events[event.Number()]; }
    [[nodiscard]] BehaviourInfo& At(BehaviourId behaviour) { return behaviours[behaviour.Number()]; }
    [[nodiscard]] const BehaviourInfo& At(BehaviourId behaviour) const { return behaviours[behaviour.Number()]; }
    [[nodiscard]] const SourceFile& At(FileId file) const { return sources[file.Number()]; }

    // Whether any instruction calls that native.
    [[nodiscard]] bool Calls(Native native) const;
};

// The name of an operation; "?" for a number that is none.
[[nodiscard]] const char* OpName(Op op);

// Which operands an operation uses, as letters of "abc".
[[nodiscard]] const char* OpOperands(Op op);

// The script name of a native; "?" for a number that is none.
[[nodiscard]] const char* NativeName(Native native);

}  // namespace tavrel::core::script
