// The private class behind Compile: the tables that its passes share. It lives for one call. Each pass is a member
// function in the source file of its topic; compile.cpp gives their order. Expressions are typed and emitted in one
// walk: a Compile... operation emits code for the current function and returns the type that the code leaves on the
// stack, FailedType when it has reported an error. A failed type travels upward in silence.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "core/script/compiler/name_table.h"
#include "core/script/program/program.h"
#include "core/script/source/diagnostics.h"
#include "core/script/syntax/syntax_tree.h"
#include "core/script/world/world_api.h"

namespace tavrel::core::script {

// What a name stands for.
enum class PlaceKind : std::int32_t { None = 0, Local = 1, Field = 2, Global = 3 };

struct Place {
    PlaceKind kind = PlaceKind::None;
    std::int32_t index = -1;  // slot, field of the instance, or global
    TypeId type = FailedType;
    GlobalCategory category = GlobalCategory::Derived;
    bool writable = true;
};

// What a piece of code may do.
struct Permits {
    CategoryMask writes = CategoryMask::None;  // the variables it may write
    bool random = false;                       // may draw random numbers
    bool rule = false;                         // a terrain or ground rule: reads only locals and constants
    bool reached = false;                      // the analysis has come here
    HookMask hooks = HookMask::None;           // the hooks it runs in; with none it runs outside any world

    bool operator==(const Permits&) const = default;
};

// One declared function.
struct FunctionEntry {
    std::int32_t function = -1;  // into Program::functions
    const Unit* unit = nullptr;
    const FunctionDecl* declaration = nullptr;
    std::int32_t behaviour = -1;
    std::vector<TypeId> params;  // without the hidden instance
    TypeId result = NothingType;
    Permits permits;
};

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

// One host function in the compiler's own terms.
struct HostSignature {
    std::uint32_t id = 0;
    std::vector<TypeId> paramTypes;
    std::vector<std::string> labels;    // folded names of the parameters
    std::vector<HostDefault> defaults;  // one for each parameter
    std::int32_t required = 0;          // leading parameters without a default
    TypeId result = NothingType;
    HookMask hooks = HookMask::None;
    bool effect = false;
};

// A field of a namespace or of a handle, which the world answers.
struct HostField {
    std::uint32_t id = 0;
    TypeId type = FailedType;
    HookMask hooks = HookMask::None;
};

// A variable of an open scope. One without a name is out of reach of the source.
struct Local {
    NameId name = -1;
    TypeId type = FailedType;
    std::int32_t slot = 0;
    bool writable = true;
    std::int32_t shadowed = -1;  // the local that the name meant before, into Compiler::locals
};

// The jumps of one open loop that wait for their target.
struct LoopPatch {
    std::vector<std::int32_t> breaks;
    std::vector<std::int32_t> continues;
};

// The compiled arguments of a call. Code of argument i stands from offsets[i] up to offsets[i + 1].
struct Arguments {
    std::vector<TypeId> types;
    std::vector<std::size_t> offsets;

    // Some argument has failed: it is reported, and the call says nothing more.
    [[nodiscard]] bool Failed() const;
};

// What every hook may do.
[[nodiscard]] Permits HookPermits(HookKind kind);

// The hooks of a mask in words.
[[nodiscard]] std::string HookNames(HookMask mask);

// The component a name means on a vector or colour, -1 for none.
[[nodiscard]] std::int32_t VectorComponent(Kind kind, std::string_view folded);

[[nodiscard]] bool IsVector(Kind kind);

// A name in double quotes, as messages show it.
[[nodiscard]] std::string Quoted(std::string_view name);

// "there is no automatic conversion" where one of the two is real and the other inteiro, else empty.
[[nodiscard]] std::string ConversionHint(TypeId one, TypeId other, const char* text);

class Compiler {
public:
    Compiler(std::vector<Unit> units, Diagnostics& diagnostics, Program& program, const Api* api);

    bool Run();

private:
    // compile.cpp: the order of passes, and reports.
    bool Declare();
    void Generate();
    void CompileFunctions();
    void Error(const Unit& where, Span span, std::string message, std::string hint = {});
    void Error(Span span, std::string message, std::string hint = {});

    // names.cpp: scopes, and what a name means.
    [[nodiscard]] Place Resolve(NameId name) const;
    [[nodiscard]] bool IsBehaviourField(NameId name) const;
    [[nodiscard]] bool InInnermostScope(NameId name) const;
    bool AddFieldName(std::int32_t record, NameId name, std::int32_t field);
    [[nodiscard]] std::int32_t RecordField(std::int32_t record, NameId name) const;
    void PushScope();
    void CloseScope();
    std::int32_t NewLocal(NameId name, TypeId type, bool writable);
    std::int32_t HiddenLocal(TypeId type);

    // types.cpp: records, enumerations, actions and written types.
    void CollectTypes();
    void CollectRecord(const Unit& where, const RecordDecl& declaration);
    void CollectEnum(const Unit& where, const EnumDecl& declaration);
    void ResolveRecords();
    void ResolveFields(const Unit& where, const RecordDecl& declaration, std::int32_t record);
    void CollectActions();
    TypeId ResolveType(const Unit& where, std::int32_t typeRef);
    TypeId ResolveDictionary(const Unit& where, const TypeRef& reference);

    // record_cycles.cpp
    void CheckRecordsContainThemselves();
    [[nodiscard]] std::vector<std::int32_t> DirectRecords(const RecordInfo& record) const;

    // prelude.cpp and api_values.cpp: the world's table in the compiler's terms.
    void Prelude();
    void DeclareApiRecords();
    void DeclareApiEnums();
    void DeclareApiRecordFields();
    void DeclareApiFunction(const ApiFunction& row);
    void AddApiParams(const ApiFunction& row, HostSignature& signature);
    void DeclareApiNamespaceField(const ApiNamespaceField& row);
    void DeclareApiValueField(const ApiValueField& row);
    [[nodiscard]] bool HasInput() const;
    TypeId ApiType(const std::string& text, const std::string& context);
    void ApiSpace(const std::string& name);
    HostDefault ApiDefault(const std::string& text, TypeId type, const std::string& context);
    HostDefault ApiConstructor(const std::string& text, const std::string& context);
    HostDefault ApiNumber(const std::string& text, TypeId type, const std::string& context);
    void ApiError(const std::string& subject, const std::string& what);
    [[nodiscard]] std::string ApiHint(const std::string& prefix) const;
    [[nodiscard]] std::string LabelHint(const HostSignature& signature) const;

    // globals.cpp: variables of the module and events.
    void CollectGlobals();
    void AddGlobals(const Unit& where, const std::vector<VarDecl>& declarations, GlobalCategory category);
    void AddGlobal(const Unit& where, const VarDecl& declaration, GlobalCategory category);
    TypeId GlobalType(const Unit& where, const VarDecl& declaration);
    void CollectImportedGlobals(const Unit& where);
    void CollectEvents();
    void AddEvent(const Unit& where, const EventDecl& declaration);
    std::int32_t AddHiddenGlobal(std::string name, TypeId type, GlobalCategory category, bool published);
    void CheckPublished(const Unit& where, const std::string& name, Span span, TypeId type);
    void CompileInitializer();
    void InitializeGlobals(const Unit& where, const std::vector<VarDecl>& declarations, std::int32_t& next);
    void CompileInitialValue(const VarDecl& declaration, TypeId type);

    // behaviours.cpp: behaviours and their instance records.
    void CollectBehaviours();
    void CollectBehaviour(const Section& section);
    void AddParameters(const Section& section, BehaviourInfo& info, RecordInfo& record);
    void AddStateFields(const Section& section, BehaviourInfo& info, RecordInfo& record);
    void FindOwner(const Section& section, BehaviourInfo& info);
    void CompileBehaviourInitializer(std::int32_t index);
    void InitializeFields(const std::vector<VarDecl>& declarations, std::int32_t& next);

    // functions.cpp: declared functions and the reserved ones.
    void AddFunctions(const Unit& where, const Section& section, std::int32_t owner, std::int32_t unitIndex);
    void AddFunction(const Unit& where, const FunctionDecl& declaration, std::int32_t owner, std::int32_t unitIndex);
    void CheckFunctionName(const Unit& where, const FunctionDecl& declaration, std::int32_t owner);
    [[nodiscard]] std::int32_t FindFunction(NameId name, std::int32_t owner) const;
    void CheckReservedFunctions();
    void PermitReservedFunctions();

    // permissions.cpp: what each function may do, and the checks at each write and use of the world.
    void AnalyzePermissions();
    void MergeHookCalls(const Section& section, std::int32_t owner);
    void PropagatePermits();
    [[nodiscard]] std::vector<std::int32_t> CollectCalls(const Unit& where, Slice<Expr> exprs, std::int32_t owner);
    bool CheckHooks(HookMask allowed, Span span, const std::string& name, bool effect);
    bool CheckWrite(const Place& place, Span span, const std::string& name);
    void RefuseWrite(const Place& place, Span span, const std::string& name);
    bool CheckContainerWrite(std::int32_t expr);
    void CheckAssign(TypeId expected, TypeId actual, std::int32_t expr, const std::string& name);

    // emit.cpp: instructions, pools and default values.
    [[nodiscard]] Function& Current() { return program->functions[static_cast<std::size_t>(function)]; }
    [[nodiscard]] std::size_t CodeSize() { return Current().code.size(); }
    std::int32_t Emit(Op op, std::uint8_t a, std::uint16_t b, std::uint32_t c, Span span);
    std::int32_t Emit(Op op, Span span) { return Emit(op, 0, 0, 0, span); }
    std::int32_t EmitIndexed(Op op, std::int32_t index, Span span);
    void PatchJump(std::int32_t jump);
    void PatchJumps(const std::vector<std::int32_t>& jumps);
    void EmitJumpTo(std::size_t target, Span span);
    void EmitInt(std::int64_t value, Span span);
    void EmitReal(float value, Span span);
    void EmitBool(bool value, Span span);
    void EmitText(std::string_view text, Span span);
    void EmitEnum(std::int32_t enumeration, std::int32_t member, Span span);
    void EmitHandle(std::int32_t handle, Span span);
    void EmitNative(Native native, std::size_t count, Span span);
    void EmitHost(std::uint32_t id, std::size_t count, Span span);
    std::int32_t InternText(std::string_view text);
    void EmitDefault(TypeId type, Span span);
    void EmitRepeatedReal(float value, std::int32_t count, Span span);
    void EmitRecordDefault(std::int32_t record, Span span);
    void EmitFieldDefaults(const Unit& where, const RecordDecl& declaration, std::int32_t record, Span span);
    void EmitHostDefault(const HostDefault& value, TypeId type, Span span);

    // expressions.cpp: values, names and literals; literals.cpp: lists, dictionaries and conversions.
    TypeId CompileExpr(std::int32_t expr);
    [[nodiscard]] std::int32_t LeftOperand(const Expr& expr);
    TypeId CompileLeaf(const Expr& expr);
    TypeId CompileOnLeft(const Expr& expr, TypeId left, std::size_t first);
    TypeId CompileValue(std::int32_t expr, TypeId wanted);
    TypeId CompileName(const Expr& expr);
    TypeId CompilePlace(const Expr& expr, const Place& place);
    TypeId CompilePredefined(const Expr& expr, NameId name);
    TypeId PeekType(std::int32_t expr);
    TypeId AsReal(std::size_t first, std::size_t last, TypeId type, TypeId wanted, std::int32_t expr);
    bool Fits(const Expr& call, Arguments& arguments, std::size_t index, TypeId wanted);
    void ShareReal(const Expr& call, Arguments& arguments);
    [[nodiscard]] bool IsNumberLiteral(std::int32_t expr) const;
    bool RejectNonValue(std::int32_t expr, TypeId type);
    bool RejectSpace(std::int32_t expr, TypeId type);
    bool RejectProcedure(std::int32_t expr, TypeId type);
    TypeId CompileListLit(const Expr& expr);
    TypeId CompileDictLit(const Expr& expr);
    TypeId CompileElement(std::int32_t expr);
    TypeId CompileConstruct(const Expr& expr);
    TypeId ConstructNumber(const Expr& expr, const Arguments& arguments);
    TypeId ConstructText(const Expr& expr, const Arguments& arguments);
    TypeId ConstructVector(const Expr& expr, Arguments& arguments);

    // operators.cpp
    TypeId CompileUnary(const Expr& expr, TypeId operand);
    TypeId CompileBinary(const Expr& expr, TypeId left, std::size_t first);
    TypeId CompileComparison(const Expr& expr, TypeId left, TypeId right);
    TypeId CompileArithmetic(const Expr& expr, TypeId left, TypeId right);
    TypeId ReportArithmetic(const Expr& expr, TypeId left, TypeId right);
    TypeId CompileLogical(const Expr& expr, TypeId left);
    void CheckLogical(const Expr& expr, std::int32_t side, TypeId type);

    // access.cpp: indices and fields.
    TypeId CompileIndex(const Expr& expr, TypeId left);
    void CheckIndex(std::int32_t index, TypeId container, TypeId type);
    TypeId CompileField(const Expr& expr, TypeId left);
    TypeId CompileSpaceField(const Expr& expr, TypeId left);
    TypeId CompileHandleField(const Expr& expr, TypeId left);
    TypeId CompileVectorField(const Expr& expr, TypeId left);
    TypeId CompileRecordField(const Expr& expr, TypeId left);
    TypeId MissingField(const Expr& expr, TypeId record);

    // input_and_events.cpp: the forms "entrada.A.x" and "eventos.E.x".
    [[nodiscard]] const Expr* InputRoot(std::int32_t expr) const;
    [[nodiscard]] bool IsInputReading(const Expr& field) const;
    [[nodiscard]] bool IsEventReading(const Expr& field);
    [[nodiscard]] bool IsCommand(const Expr& callee) const;
    [[nodiscard]] bool IsEmission(const Expr& callee);
    [[nodiscard]] bool IsOverEvents(const Expr& field);
    TypeId CompileInputReading(const Expr& expr);
    bool CompilePlayer(const Expr& root, Span span);
    TypeId CompileEventReading(const Expr& expr);
    TypeId CompileCommand(const Expr& call);
    bool CheckCommand(const Expr& call, const Expr& root, const Expr& action);
    TypeId CompileEmission(const Expr& call);
    [[nodiscard]] const EventInfo* FindEvent(const Expr& field);
    [[nodiscard]] bool HasOneUnlabelled(const Expr& call) const;
    void CompileForErrors(const Expr& call);

    // calls.cpp
    TypeId CompileCall(const Expr& call);
    TypeId CompileReceiverCall(const Expr& call, TypeId receiver);
    TypeId CompileUserCall(const Expr& call, std::int32_t entry, std::string_view name);
    void CompileUserArgument(const Expr& call, std::size_t index, TypeId wanted, std::string_view name);
    Arguments CompileArguments(const Expr& call);
    bool RejectLabels(const Expr& call, std::string_view name);
    TypeId WrittenAs(const Expr& call, std::string_view name, std::string_view form);

    // native_calls.cpp and method_calls.cpp
    struct NativeCall {
        const Expr& call;
        std::string_view name;  // as written
        Arguments arguments;

        [[nodiscard]] std::size_t Count() const { return arguments.types.size(); }
        [[nodiscard]] TypeId Type(std::size_t index) const { return arguments.types[index]; }
        [[nodiscard]] bool Failed() const { return arguments.Failed(); }
    };
    TypeId CompileNativeCall(const Expr& call, NameId name);
    TypeId EmitNativeCall(const NativeCall& native, Native number, TypeId result);
    TypeId RefuseNative(const NativeCall& native, std::string_view form);
    TypeId CompileFormat(NativeCall& native);
    TypeId CompileSize(NativeCall& native);
    TypeId CompileContains(NativeCall& native);
    TypeId CompileCopy(NativeCall& native);
    TypeId CompileFloatNative(NativeCall& native, Native number, std::size_t count);
    TypeId CompileShared(NativeCall& native, Native integer, Native real, std::size_t count, const char* mismatch,
                         const char* kinds);
    TypeId CompileInterpolate(NativeCall& native);
    TypeId CompileDistance(NativeCall& native, bool planar);
    TypeId CompileOfVector(NativeCall& native, Native flat, Native deep, TypeId result, const char* form);
    TypeId CompileRandom(NativeCall& native, bool real);
    TypeId CompileMethodCall(const Expr& call, TypeId receiver, std::string_view name);
    bool FitsAll(NativeCall& native, const std::vector<TypeId>& wanted);

    // host_calls.cpp
    TypeId CompileHostCall(const Expr& call, const std::string& space, const std::string& folded);
    TypeId MissingHost(const Expr& call, const std::string& space, const std::string& folded);
    bool PlaceArguments(const Expr& call, const HostSignature& signature, const std::string& fullName,
                        std::vector<std::int32_t>& slots);
    bool PlaceLabelled(const Expr& call, std::size_t argument, const HostSignature& signature,
                       const std::string& fullName, std::vector<std::int32_t>& slots);
    void EmitHostArguments(const Expr& call, const HostSignature& signature, const std::string& fullName,
                           const std::vector<std::int32_t>& slots);

    // statements.cpp, assignments.cpp, loops.cpp and hooks.cpp
    void BeginFunction(std::int32_t newFunction, std::int32_t owner, const Permits& newPermits, TypeId result);
    void EndFunction(Span span);
    void CompileParams(const std::vector<Param>& params);
    void CompileBlock(Block block);
    void CompileStatement(const Stmt& stmt);
    void CompileDeclare(const Stmt& stmt);
    void CompileIf(const Stmt& stmt);
    void CompileCondition(std::int32_t expr);
    void CompileReturn(const Stmt& stmt);
    void CompileSwitch(const Stmt& stmt);
    void CompileCaseTests(const Branch& branch, TypeId subject, std::int32_t slot, std::vector<std::int32_t>& hits);
    [[nodiscard]] bool AlwaysReturns(Block block) const;
    void CompileAssign(const Stmt& stmt);
    void AssignName(const Stmt& stmt, const Expr& target);
    void AssignIndex(const Stmt& stmt, const Expr& target);
    void AssignField(const Stmt& stmt, const Expr& target);
    void AssignRecordField(const Stmt& stmt, const Expr& target, TypeId record);
    void AssignComponent(const Stmt& stmt, const Expr& target, std::int32_t component);
    void AssignComponentOfName(const Stmt& stmt, const Expr& base, std::int32_t component);
    void AssignComponentOfIndex(const Stmt& stmt, const Expr& base, std::int32_t component);
    void AssignComponentOfField(const Stmt& stmt, const Expr& base, std::int32_t component);
    void EmitComponentChange(const Stmt& stmt, std::int32_t component);
    void CompileWhile(const Stmt& stmt);
    void CompileForEach(const Stmt& stmt);
    bool CheckCollection(const Stmt& stmt, TypeId type);
    void CompileFor(const Stmt& stmt);
    void CompileForPart(std::int32_t expr, const char* message);
    std::int32_t EmitForTest(std::int32_t item, std::int32_t end, std::int32_t step, Span span);
    void CompileLoopBody(Block body);
    void CloseLoop(std::size_t start, std::int32_t exit, Span span);
    void CompileHook(const HookDecl& hook, std::int32_t owner);
    void CheckHookParams(const HookDecl& hook);
    std::int32_t AppendFunction(std::string name, std::int32_t params, TypeId result, std::int32_t file);

    [[nodiscard]] const Expr& ExprAt(std::int32_t expr) const { return unit->exprs[static_cast<std::size_t>(expr)]; }
    [[nodiscard]] Span SpanOf(std::int32_t expr) const { return ExprAt(expr).span; }
    // The text of a type in a report. Empty once reports are dropped: names are long where a script wants them so.
    [[nodiscard]] std::string TypeName(TypeId type) const {
        return diagnostics->Full() ? std::string() : program->types.Name(type);
    }
    [[nodiscard]] Kind KindOf(TypeId type) const { return program->types.KindOf(type); }

    std::vector<Unit> units;  // the main script first, then its imports
    Diagnostics* diagnostics;
    Program* program;
    const Api* api;

    NameTable names;
    NameMap typeNames;        // to type ids
    NameMap enumMembers;      // into enumMemberPlaces
    NameMap globalNames;      // into Program::globals
    NameMap moduleFunctions;  // into functions: the first of that name outside behaviours
    NameMap actionNames;      // into Program::actions
    NameMap eventNames;       // into Program::events
    NameMap localNames;       // into locals: what the name means in the open scopes
    std::vector<std::pair<std::int32_t, std::int32_t>> enumMemberPlaces;  // enumeration and member
    // Under a behaviour or record in the high half and a name in the low half.
    std::unordered_map<std::uint64_t, std::int32_t> behaviourFunctions;  // into functions: the first of that name
    std::unordered_map<std::uint64_t, std::int32_t> sameNameCounts;      // functions of one name in one place
    std::unordered_map<std::uint64_t, std::int32_t> fieldNames;          // fields of records: the first of that name
    std::vector<FunctionEntry> functions;                                // in order of declaration

    // Ordered, because hints list names in byte order.
    std::vector<std::string> spaces;  // folded namespaces of the world
    std::map<std::string, std::int32_t, std::less<>> spaceNames;
    std::map<std::string, std::int32_t, std::less<>> hostNames;            // dotted, into hosts
    std::map<std::string, std::int32_t, std::less<>> namespaceFieldNames;  // dotted, into namespaceFields
    std::map<std::string, std::int32_t, std::less<>> valueFieldNames;      // "kind.field", into valueFields
    std::unordered_map<std::string, TypeId> apiTypes;                      // of the type texts read so far
    std::vector<HostSignature> hosts;
    std::vector<HostField> namespaceFields;
    std::vector<HostField> valueFields;

    std::size_t apiRecordCount = 0;           // how many of the first records come from the world
    std::vector<std::int32_t> recordIndices;  // of each declaration, into Program::records; -1 for a rejected one
    std::vector<std::vector<HostDefault>> recordDefaults;                       // of each record of the world
    std::vector<std::pair<const Unit*, const RecordDecl*>> recordDeclarations;  // of each record behind those

    std::size_t defaultCode = 0;  // operations that declared defaults of records took so far

    std::unordered_map<std::int64_t, std::int32_t> integerPool;  // into Program::integers
    NameTable textPool;                                          // numbers texts as Program::texts does

    // The code being compiled.
    const Unit* unit = nullptr;
    std::int32_t function = -1;  // into Program::functions
    std::vector<Local> locals;
    std::vector<std::size_t> scopes;  // where each open scope begins in locals
    std::int32_t localCount = 0;
    std::int32_t localPeak = 0;
    std::int32_t behaviour = -1;
    Permits permits;
    TypeId returnType = NothingType;
    std::vector<LoopPatch> loops;
    std::vector<Instruction> codeBuffer;    // room for the code of the next function
    std::vector<std::uint32_t> spanBuffer;  // and for its spans
    std::vector<std::int32_t> leftChain;    // operators that wait for their left operand, of all open CompileExpr
};

}  // namespace tavrel::core::script
