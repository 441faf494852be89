// The syntax tree of one source file, as Parse leaves it. No pointers: expressions, statements and written types live
// in flat vectors of the Unit, and every reference between them is an index of its own type, -1 for none. A child
// always stands before its parent. The names inside bodies (Expr::text, labels, Stmt::name) are views into the unit's
// own source text and literals and live as long as the Unit, moves included; declarations own their names.
#pragma once

#include <cstdint>
#include <forward_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/index.h"
#include "core/script/program/kinds.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

struct Branch;
struct Expr;
struct FunctionDecl;
struct Stmt;
struct TypeRef;

using ExprId = Index<Expr>;                  // into Unit::exprs
using StmtId = Index<Stmt>;                  // into Unit::stmts
using TypeRefId = Index<TypeRef>;            // into Unit::types
using FunctionDeclId = Index<FunctionDecl>;  // into Unit::functions

// A run of entries in the one vector of the Unit that holds entries of this type.
template <class Entry>
struct Slice {
    std::int32_t first = 0;
    std::int32_t count = 0;
};

using ExprList = Slice<ExprId>;  // expressions anywhere in the tree, as the arguments of a call
using Block = Slice<StmtId>;     // the statements of a body, in source order

enum class ExprKind : std::uint8_t {
    Integer = 0,
    Real = 1,
    Logical = 2,
    Text = 3,
    Name = 4,   // also a type word directly before a "."
    Unary = 5,  // "-" or "nao"
    Binary = 6,
    Logic = 7,  // "e", "ou"
    Call = 8,
    Index = 9,
    Field = 10,
    List = 11,
    Dictionary = 12,
    Conversion = 13,  // a type word before "("
};

// One node for all kinds of expression; a kind uses only some of the fields.
struct Expr {
    ExprKind kind = ExprKind::Integer;
    Tok op = Tok::End;  // operator of Unary, Binary and Logic; type word of Conversion
    bool logical = false;
    float real = 0;
    Span span;
    std::int64_t integer = 0;
    std::string_view text;           // value of Text; the name of Name and Field as written
    ExprId left;                     // operand, base or callee
    ExprId right;                    // second operand or index
    ExprList items;                  // arguments, elements, or values of a Dictionary
    Slice<std::string_view> labels;  // for Call and Conversion one entry per argument; empty for none written
    ExprList keys;                   // keys of a Dictionary, parallel to items
};

enum class StmtKind : std::uint8_t {
    Declare = 0,
    Assign = 1,
    If = 2,
    While = 3,
    For = 4,
    ForEach = 5,
    Switch = 6,
    Break = 7,
    Continue = 8,
    Return = 9,
    Expression = 10,
};

// One "se", "senao se" or "caso".
struct Branch {
    ExprId condition;  // none in a Switch
    ExprList values;   // the values of one "caso"
    Block body;
    Span span;  // the condition's first token, or the "caso" word
};

// One node for all kinds of statement; a kind uses only some of the fields.
struct Stmt {
    StmtKind kind = StmtKind::Expression;
    bool hasElse = false;  // a "senao" stood there, so an empty elseBody is told from none
    Span span;
    std::string_view name;   // the variable of Declare, For and ForEach
    TypeRefId type;          // Declare
    ExprId value;            // initial value, assigned value, condition, collection, subject, result
    ExprId target;           // Assign
    ExprId from;             // For
    ExprId to;               // For
    ExprId step;             // For; none when not written
    Slice<Branch> branches;  // If and Switch
    Block body;              // loops
    Block elseBody;          // If and Switch
};

// A type as written.
struct TypeRef {
    Tok kind = Tok::End;  // a type word; Name for a named type; End for the place of a faulty type
    std::string name;
    TypeRefId element;  // element of a list, value of a dictionary
    TypeRefId key;      // key of a dictionary
    Span span;
};

// A declared variable, constant, field, or parameter of a behaviour.
struct VarDecl {
    std::string name;
    TypeRefId type;          // none when no type was written
    ExprId init;             // none when no value was written
    Span span;               // "constante" or "parametro"; otherwise the name
    bool published = false;  // "publico" or "privado" stood before it
    bool isPrivate = false;
};

// A parameter of a function or hook.
struct Param {
    std::string name;
    TypeRefId type;
    Span span;
};

struct FunctionDecl {
    std::string name;
    std::vector<Param> params;
    TypeRefId returnType;  // none for a procedure
    bool isProcedure = false;
    Block body;
    Slice<Expr> bodyExprs;  // every expression of the body, in one run
    Span span;              // the "funcao" or "procedimento" word
};

struct HookDecl {
    HookKind kind = HookKind::Start;
    std::vector<Param> params;
    Block body;
    Slice<Expr> bodyExprs;  // every expression of the body, in one run
    Span span;              // the first word of the hook
};

struct RecordDecl {
    std::string name;
    std::vector<VarDecl> fields;
    Span span;
};

struct EnumDecl {
    std::string name;
    std::vector<std::string> members;
    std::vector<Span> memberSpans;  // parallel to members
    Span span;
};

struct ActionDecl {
    std::string name;
    std::vector<Binding> bindings;
    Span span;
};

struct EventDecl {
    std::string name;
    TypeRefId type;  // none for an event without payload
    Span span;
};

// The declarations of the module or of one behaviour.
struct Section {
    std::string name;
    bool isBehaviour = false;
    Span span;      // the "modulo" or "comportamento" word
    Span nameSpan;  // the name behind it
    std::vector<VarDecl> parameters;
    std::vector<VarDecl> state;
    std::vector<VarDecl> visual;
    std::vector<VarDecl> progress;
    std::vector<VarDecl> derived;  // "nome: tipo" outside any block
    std::vector<VarDecl> constants;
    std::string progressExtension;
    bool hasState = false;
    bool hasVisual = false;
    bool hasProgress = false;
    std::vector<FunctionDeclId> functions;  // in source order
    std::vector<HookDecl> hooks;
};

// One file. Move-only: the views inside would go on pointing into the unit copied from.
struct Unit {
    SourceFile source;
    Section module;
    std::vector<Section> behaviours;
    std::vector<RecordDecl> records;
    std::vector<EnumDecl> enums;
    std::vector<ActionDecl> actions;
    std::vector<EventDecl> events;
    std::vector<std::string> imports;  // as written
    std::vector<Span> importSpans;     // parallel to imports
    std::vector<FunctionDecl> functions;
    std::vector<Expr> exprs;
    std::vector<Stmt> stmts;
    std::vector<TypeRef> types;
    std::vector<ExprId> exprLists;            // pool of the entries of every ExprList
    std::vector<StmtId> blocks;               // pool of the entries of every Block
    std::vector<std::string_view> labels;     // pool of argument labels, empty for an argument without one
    std::vector<Branch> branches;             // pool of branches
    std::forward_list<std::string> literals;  // values of text literals with escapes

    Unit() = default;
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    Unit(Unit&&) = default;
    Unit& operator=(Unit&&) = default;
    ~Unit() = default;

    // The entry under an index, which points at one.
    [[nodiscard]] const Expr& At(ExprId expr) const { return exprs[expr.Number()]; }
    [[nodiscard]] const Stmt& At(StmtId stmt) const { return stmts[stmt.Number()]; }
    [[nodiscard]] const TypeRef& At(TypeRefId type) const { return types[type.Number()]; }
    [[nodiscard]] const FunctionDecl& At(FunctionDeclId function) const { return functions[function.Number()]; }

    // The entries of a slice; valid until its vector grows, so for good once the unit is parsed.
    [[nodiscard]] std::span<const ExprId> Items(ExprList list) const;
    [[nodiscard]] std::span<const StmtId> Statements(Block block) const;
    [[nodiscard]] std::span<const std::string_view> Labels(Slice<std::string_view> slice) const;
    [[nodiscard]] std::span<const Branch> Branches(Slice<Branch> slice) const;
    [[nodiscard]] std::span<const Expr> Exprs(Slice<Expr> slice) const;
};

}  // namespace tavrel::core::script
