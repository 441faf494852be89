// The syntax tree of one source file, as Parse leaves it. No pointers: expressions, statements and written types live
// in flat vectors of the Unit, and every reference between them is a signed 32-bit index, -1 for none. A child always
// stands before its parent. The names inside bodies (Expr::text, labels, Stmt::name) are views into the unit's own
// source text and literals and live as long as the Unit, moves included; declarations own their names.
#pragma once

#include <cstdint>
#include <forward_list>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/script/program/kinds.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/token.h"

namespace tavrel::core::script {

// A run of entries in one of the Unit's vectors.
struct IndexList {
    std::int32_t first = 0;
    std::int32_t count = 0;
};

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
    std::string_view text;    // value of Text; the name of Name and Field as written
    std::int32_t left = -1;   // operand, base or callee, into exprs
    std::int32_t right = -1;  // second operand or index, into exprs
    IndexList items;          // arguments, elements, or values of a Dictionary, in Unit::indices
    IndexList labels;         // for Call and Conversion one entry per argument, in Unit::labels; empty for none written
    IndexList keys;           // keys of a Dictionary, parallel to items, in Unit::indices
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
    std::int32_t condition = -1;  // into exprs; -1 in a Switch
    IndexList values;             // the values of one "caso", in Unit::indices
    IndexList body;               // in Unit::indices, indices into stmts
    Span span;                    // the condition's first token, or the "caso" word
};

// One node for all kinds of statement; a kind uses only some of the fields.
struct Stmt {
    StmtKind kind = StmtKind::Expression;
    bool hasElse = false;  // a "senao" stood there, so an empty elseBody is told from none
    Span span;
    std::string_view name;     // the variable of Declare, For and ForEach
    std::int32_t type = -1;    // Declare: into types
    std::int32_t value = -1;   // into exprs: initial value, assigned value, condition, collection, subject, result
    std::int32_t target = -1;  // Assign: into exprs
    std::int32_t from = -1;    // For: into exprs
    std::int32_t to = -1;      // For: into exprs
    std::int32_t step = -1;    // For: into exprs; -1 when not written
    IndexList branches;        // If and Switch, in Unit::branches
    IndexList body;            // loops, in Unit::indices
    IndexList elseBody;        // If and Switch, in Unit::indices
};

// A type as written.
struct TypeRef {
    Tok kind = Tok::End;  // a type word; Name for a named type; End for the place of a faulty type
    std::string name;
    std::int32_t element = -1;  // into types: element of a list, value of a dictionary
    std::int32_t key = -1;      // into types: key of a dictionary
    Span span;
};

// A declared variable, constant, field, or parameter of a behaviour.
struct VarDecl {
    std::string name;
    std::int32_t type = -1;  // into types, -1 when no type was written
    std::int32_t init = -1;  // into exprs, -1 when no value was written
    Span span;               // "constante" or "parametro"; otherwise the name
    bool published = false;  // "publico" or "privado" stood before it
    bool isPrivate = false;
};

// A parameter of a function or hook.
struct Param {
    std::string name;
    std::int32_t type = -1;  // into types
    Span span;
};

struct FunctionDecl {
    std::string name;
    std::vector<Param> params;
    std::int32_t returnType = -1;  // into types; -1 for a procedure
    bool isProcedure = false;
    IndexList body;       // in Unit::indices
    IndexList bodyExprs;  // in Unit::exprs: every expression of the body, in one run
    Span span;            // the "funcao" or "procedimento" word
};

struct HookDecl {
    HookKind kind = HookKind::Start;
    std::vector<Param> params;
    IndexList body;       // in Unit::indices
    IndexList bodyExprs;  // in Unit::exprs: every expression of the body, in one run
    Span span;            // the first word of the hook
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
    std::int32_t type = -1;  // into types, -1 for an event without payload
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
    std::vector<std::int32_t> functions;  // into Unit::functions, in source order
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
    std::vector<std::int32_t> indices;        // pool of all lists of expressions and statements
    std::vector<std::string_view> labels;     // pool of argument labels, empty for an argument without one
    std::vector<Branch> branches;             // pool of branches
    std::forward_list<std::string> literals;  // values of text literals with escapes

    Unit() = default;
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    Unit(Unit&&) = default;
    Unit& operator=(Unit&&) = default;
    ~Unit() = default;

    // The entries of a list; valid until the pool grows, so for good once the unit is parsed.
    [[nodiscard]] std::span<const std::int32_t> Indices(IndexList list) const;
    [[nodiscard]] std::span<const std::string_view> Labels(IndexList list) const;
    [[nodiscard]] std::span<const Branch> Branches(IndexList list) const;
    [[nodiscard]] std::span<const Expr> Exprs(IndexList list) const;
};

}  // namespace tavrel::core::script
