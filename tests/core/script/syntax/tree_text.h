// A syntax tree as text, so that a parser test is a line of source and a line of tree: "a + b * c" is
// "(+ a (* b c))". Statements in a block stand between braces, one behind another with ";".
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <utility>

#include "core/script/numeric/number_text.h"
#include "core/script/source/diagnostics.h"
#include "core/script/syntax/parse.h"

namespace tavrel::core::script {

class TreeText {
public:
    explicit TreeText(const Unit& source) : unit(source) {}

    std::string Type(TypeRefId index) const {
        if (!index) return "-";
        const TypeRef& type = unit.At(index);
        switch (type.kind) {
            case Tok::End: return "?";
            case Tok::Name: return type.name;
            case Tok::Lista: return "lista<" + Type(type.element) + ">";
            case Tok::Dicionario: return "dicionario<" + Type(type.key) + "," + Type(type.element) + ">";
            default: return Word(type.kind);
        }
    }

    std::string Expression(ExprId index) const {
        if (!index) return "-";
        const Expr& expr = unit.At(index);
        const std::string left = Expression(expr.left);
        const std::string right = Expression(expr.right);
        const std::string text(expr.text);
        switch (expr.kind) {
            case ExprKind::Integer: return IntegerToText(expr.integer);
            case ExprKind::Real: return RealToText(expr.real);
            case ExprKind::Logical: return expr.logical ? "verdadeiro" : "falso";
            case ExprKind::Text: return "'" + text + "'";
            case ExprKind::Name: return text;
            case ExprKind::Unary: return Form({Word(expr.op), left});
            case ExprKind::Binary:
            case ExprKind::Logic: return Form({Word(expr.op), left, right});
            case ExprKind::Call: return Form({"call", left + Arguments(expr)});
            case ExprKind::Index: return Form({"index", left, right});
            case ExprKind::Field: return Form({".", left, text});
            case ExprKind::List: return Form({"list" + Arguments(expr)});
            case ExprKind::Dictionary: return Form({"dict" + Arguments(expr)});
            case ExprKind::Conversion: return Form({Word(expr.op) + Arguments(expr)});
        }
        return "?";
    }

    std::string BlockText(Block block) const {
        std::string text;
        for (StmtId stmt : unit.Statements(block)) text += (text.empty() ? "" : "; ") + Statement(stmt);
        return "{" + text + "}";
    }

    std::string Statement(StmtId id) const {
        const Stmt& stmt = unit.At(id);
        const std::string name(stmt.name);
        const std::string value = Expression(stmt.value);
        const std::string otherwise = stmt.hasElse ? " else " + BlockText(stmt.elseBody) : "";
        switch (stmt.kind) {
            case StmtKind::Declare: return Form({"declare", name, Type(stmt.type), value});
            case StmtKind::Assign: return Form({"=", Expression(stmt.target), value});
            case StmtKind::If: return Form({"if" + Branches(stmt) + otherwise});
            case StmtKind::While: return Form({"while", value, BlockText(stmt.body)});
            case StmtKind::For:
                return Form(
                    {"for", name, Expression(stmt.from), Expression(stmt.to), Expression(stmt.step), BlockText(stmt.body)});
            case StmtKind::ForEach: return Form({"each", name, value, BlockText(stmt.body)});
            case StmtKind::Switch: return Form({"switch", value + Branches(stmt) + otherwise});
            case StmtKind::Break: return "pare";
            case StmtKind::Continue: return "continue";
            case StmtKind::Return: return Form({"retorne", value});
            case StmtKind::Expression: return value;
        }
        return "?";
    }

private:
    static std::string Word(Tok kind) {
        const std::string quoted = Describe(kind);
        return quoted.substr(1, quoted.size() - 2);
    }

    static std::string Form(std::initializer_list<std::string> parts) {
        std::string text;
        for (const std::string& part : parts) text += (text.empty() ? "" : " ") + part;
        return "(" + text + ")";
    }

    // The items of a call, a list or a dictionary, behind their labels or keys.
    std::string Arguments(const Expr& expr) const {
        const auto labels = unit.Labels(expr.labels);
        const auto keys = unit.Items(expr.keys);
        std::string text;
        for (std::size_t at = 0; at < unit.Items(expr.items).size(); ++at) {
            text += " ";
            if (!labels.empty() && !labels[at].empty()) text += std::string(labels[at]) + "=";
            if (!keys.empty()) text += Expression(keys[at]) + ":";
            text += Expression(unit.Items(expr.items)[at]);
        }
        return text;
    }

    std::string Branches(const Stmt& stmt) const {
        std::string text;
        for (const Branch& branch : unit.Branches(stmt.branches)) {
            text += " (";
            if (branch.condition) text += Expression(branch.condition) + " ";
            for (ExprId value : unit.Items(branch.values)) text += Expression(value) + " ";
            text += BlockText(branch.body) + ")";
        }
        return text;
    }

    const Unit& unit;
};

struct Parsed {
    Unit unit;
    bool isGood = false;
    std::string reports;
};

// A whole file, named "t" in reports.
inline Parsed ParseFile(std::string text) {
    Parsed parsed;
    Diagnostics diagnostics;
    parsed.isGood = Parse(SourceFile("t", std::move(text)), diagnostics, parsed.unit);
    parsed.reports = diagnostics.Describe();
    return parsed;
}

// The body of a procedure; its first line is line 3 of the file.
inline Parsed ParseBody(const std::string& body) {
    return ParseFile("modulo M\nprocedimento p()\n" + body + "\nfim\n");
}

inline std::string BodyText(const Parsed& parsed) {
    return TreeText(parsed.unit).BlockText(parsed.unit.functions.at(0).body);
}

struct BodyRow {
    std::string source;  // from line 3 on
    std::string tree;
    std::string reports = {};
};

inline void ExpectBody(const BodyRow& row) {
    SCOPED_TRACE(row.source);
    const Parsed parsed = ParseBody(row.source);
    EXPECT_EQ(BodyText(parsed), row.tree);
    EXPECT_EQ(parsed.reports, row.reports);
}

}  // namespace tavrel::core::script
