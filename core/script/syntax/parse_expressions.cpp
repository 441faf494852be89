// Expressions, by recursive descent: one function for each level of binding, which reads operands of the next tighter
// level and joins them as long as one of its own operators follows. ParseExpression is the entry for everything inside
// brackets, arguments and statements; it counts one level of nesting, as does each prefix operator, so the recursion is
// bounded. Nodes go to the tree behind their operands.
#include "core/script/syntax/parser.h"

namespace tavrel::core::script {

namespace {

constexpr bool IsComparison(Tok kind) {
    return kind >= Tok::Equal && kind <= Tok::GreaterEqual;
}
constexpr bool IsSumOperator(Tok kind) {
    return kind == Tok::Plus || kind == Tok::Minus;
}
constexpr bool IsProductOperator(Tok kind) {
    return kind == Tok::Star || kind == Tok::Slash || kind == Tok::Percent;
}

// Behind a point, these words are field names like any other.
constexpr bool CanNameField(Tok kind) {
    return kind == Tok::Name || IsTypeWord(kind) || kind == Tok::Estado || kind == Tok::Visual ||
           kind == Tok::Progresso || kind == Tok::Acao;
}

Expr MakeExpr(ExprKind kind, Span span) {
    Expr expr;
    expr.kind = kind;
    expr.span = span;
    return expr;
}

}  // namespace

ExprId Parser::ParseExpression() {
    if (!Enter()) return AddPlaceholder();
    const ExprId expr = ParseOr();
    Leave();
    return expr;
}

ExprId Parser::ParseOr() {
    ExprId left = ParseAnd();
    while (Match(Tok::Ou)) left = AddPair(ExprKind::Logic, Tok::Ou, left, ParseAnd());
    return left;
}

ExprId Parser::ParseAnd() {
    ExprId left = ParseNot();
    while (Match(Tok::E)) left = AddPair(ExprKind::Logic, Tok::E, left, ParseNot());
    return left;
}

ExprId Parser::ParseNot() {
    if (!Check(Tok::Nao)) return ParseComparison();
    if (!Enter()) return AddPlaceholder();
    const Span span = Here();
    Advance();
    const ExprId operand = ParseNot();
    Leave();
    return AddUnary(span, Tok::Nao, operand);
}

ExprId Parser::ParseComparison() {
    ExprId left = ParseSum();
    const Tok op = Current().kind;
    if (!IsComparison(op)) return left;
    Advance();
    left = AddPair(ExprKind::Binary, op, left, ParseSum());
    if (IsComparison(Current().kind)) {
        Error(Here(), "nao da para encadear comparacoes", "escreva \"a < b e b < c\"");
        Advance();
        ParseSum();
    }
    return left;
}

ExprId Parser::ParseSum() {
    ExprId left = ParseProduct();
    for (Tok op = Current().kind; IsSumOperator(op); op = Current().kind) {
        Advance();
        left = AddPair(ExprKind::Binary, op, left, ParseProduct());
    }
    return left;
}

ExprId Parser::ParseProduct() {
    ExprId left = ParseUnary();
    for (Tok op = Current().kind; IsProductOperator(op); op = Current().kind) {
        Advance();
        left = AddPair(ExprKind::Binary, op, left, ParseUnary());
    }
    return left;
}

ExprId Parser::ParseUnary() {
    if (!Check(Tok::Minus)) return ParsePostfix();
    if (!Enter()) return AddPlaceholder();
    const Span span = Here();
    Advance();
    const ExprId operand = ParseUnary();
    Leave();
    return AddUnary(span, Tok::Minus, operand);
}

ExprId Parser::ParsePostfix() {
    ExprId expr = ParsePrimary();
    for (;;) {
        switch (Current().kind) {
            case Tok::Dot: expr = ParseField(expr); break;
            case Tok::LeftBracket: expr = ParseIndex(expr); break;
            case Tok::LeftParen: expr = ParseCall(expr); break;
            default: return expr;
        }
    }
}

ExprId Parser::ParsePrimary() {
    switch (Current().kind) {
        case Tok::IntegerLiteral: return ParseLiteral(ExprKind::Integer);
        case Tok::RealLiteral: return ParseLiteral(ExprKind::Real);
        case Tok::TextLiteral: return ParseLiteral(ExprKind::Text);
        case Tok::Verdadeiro:
        case Tok::Falso: return ParseLiteral(ExprKind::Logical);
        case Tok::Name: return ParseLiteral(ExprKind::Name);
        case Tok::LeftParen: return ParseParentheses();
        case Tok::LeftBracket: return ParseBrackets();
        default: return IsTypeWord(Current().kind) ? ParseTypeWord() : ParseMissingValue();
    }
}

ExprId Parser::ParseLiteral(ExprKind kind) {
    const Token& token = Current();
    Expr expr = MakeExpr(kind, token.span);
    if (kind == ExprKind::Integer) expr.integer = token.integer;
    if (kind == ExprKind::Real) expr.real = token.real;
    if (kind == ExprKind::Logical) expr.logical = token.kind == Tok::Verdadeiro;
    if (kind == ExprKind::Text || kind == ExprKind::Name) expr.text = token.text;
    Advance();
    return Add(expr);
}

// Parentheses leave no node and change no span.
ExprId Parser::ParseParentheses() {
    Advance();
    const ExprId inner = ParseExpression();
    Expect(Tok::RightParen, "\")\"");
    return inner;
}

// A type word stands for a value as a conversion, or as a namespace of the world, such as the "som" of "som.tocar".
ExprId Parser::ParseTypeWord() {
    if (CheckAhead(1, Tok::LeftParen)) return ParseConversion();
    if (CheckAhead(1, Tok::Dot)) return ParseLiteral(ExprKind::Name);
    return ParseMissingValue();
}

ExprId Parser::ParseMissingValue() {
    const char* hint = "";
    if (Check(Tok::Assign)) hint = "faltou o que atribuir";
    if (IsTypeWord(Current().kind)) {
        hint = "um tipo so aparece numa declaracao ou como conversao, com parenteses";
    }
    ErrorExpected("um valor", hint);
    const ExprId value = AddPlaceholder();
    if (!CheckLineEnd()) Advance();
    return value;
}

ExprId Parser::ParseBrackets() {
    Expr expr = MakeExpr(ExprKind::List, Here());
    Advance();
    if (Check(Tok::RightBracket)) {
        RaiseEnd(expr.span);
        Advance();
        Error(expr.span, "uma lista vazia nao diz o tipo dos elementos",
              "declare o tipo: \"pontos: lista de inteiro\"");
        return Add(expr);
    }
    const ExprId first = ParseExpression();
    if (Match(Tok::Colon)) {
        ParseEntries(expr, first);
    } else {
        ParseElements(expr, first);
    }
    RaiseEnd(expr.span);
    Expect(Tok::RightBracket, "\"]\"");
    return Add(expr);
}

void Parser::ParseElements(Expr& list, ExprId first) {
    const Mark mark = pendingExprs.size();
    pendingExprs.push_back(first);
    while (Match(Tok::Comma) && !Check(Tok::RightBracket)) pendingExprs.push_back(ParseExpression());
    list.items = CloseExprs(mark);
}

// Keys and values are gathered as they come, in turn, and told apart into their two lists at the end.
void Parser::ParseEntries(Expr& dictionary, ExprId firstKey) {
    dictionary.kind = ExprKind::Dictionary;
    const Mark mark = pendingExprs.size();
    pendingExprs.push_back(firstKey);
    for (;;) {
        pendingExprs.push_back(ParseExpression());
        if (!Match(Tok::Comma) || Check(Tok::RightBracket)) break;
        pendingExprs.push_back(ParseExpression());
        Expect(Tok::Colon, "\":\" entre a chave e o valor");
    }
    dictionary.keys = {CountOf(unit->exprLists.size()), CountOf((pendingExprs.size() - mark) / 2)};
    for (std::size_t at = mark; at < pendingExprs.size(); at += 2) unit->exprLists.push_back(pendingExprs[at]);
    dictionary.items = {CountOf(unit->exprLists.size()), dictionary.keys.count};
    for (std::size_t at = mark + 1; at < pendingExprs.size(); at += 2) unit->exprLists.push_back(pendingExprs[at]);
    pendingExprs.resize(mark);
}

ExprId Parser::ParseField(ExprId base) {
    Advance();
    Expr field = MakeExpr(ExprKind::Field, {SpanOf(base).start, Here().end});
    field.left = base;
    if (CanNameField(Current().kind)) {
        field.text = Current().text;
        Advance();
    } else {
        ErrorExpected("o nome do campo depois do ponto");
    }
    return Add(field);
}

ExprId Parser::ParseIndex(ExprId base) {
    Expr index = MakeExpr(ExprKind::Index, {SpanOf(base).start, Here().end});
    index.left = base;
    Advance();
    index.right = ParseExpression();
    Expect(Tok::RightBracket, "\"]\"");
    return Add(index);
}

ExprId Parser::ParseCall(ExprId callee) {
    Expr call = MakeExpr(ExprKind::Call, {SpanOf(callee).start, Here().end});
    call.left = callee;
    ParseArguments(call);
    return Add(call);
}

ExprId Parser::ParseConversion() {
    Expr conversion = MakeExpr(ExprKind::Conversion, Here());
    conversion.op = Current().kind;
    Advance();
    ParseArguments(conversion);
    return Add(conversion);
}

void Parser::ParseArguments(Expr& call) {
    Expect(Tok::LeftParen, "\"(\"");
    if (Match(Tok::RightParen)) return;
    const Mark items = pendingExprs.size();
    const Mark labels = pendingLabels.size();
    do {
        pendingLabels.push_back(ParseLabel());
        pendingExprs.push_back(ParseExpression());
    } while (Match(Tok::Comma));
    RaiseEnd(call.span);
    Expect(Tok::RightParen, "\")\"");
    call.items = CloseExprs(items);
    call.labels = Close(pendingLabels, labels, unit->labels);
}

// The "nome =" before an argument; an empty text, with nothing skipped, where none stands.
std::string_view Parser::ParseLabel() {
    const bool canLabel = Check(Tok::Name) || IsTypeWord(Current().kind);
    if (!canLabel || !CheckAhead(1, Tok::Assign)) return {};
    const std::string_view label = Current().text;
    Advance();
    Advance();
    return label;
}

ExprId Parser::AddPair(ExprKind kind, Tok op, ExprId left, ExprId right) {
    Expr pair = MakeExpr(kind, SpanOf(left));
    pair.span.end = std::max(pair.span.end, SpanOf(right).end);
    pair.op = op;
    pair.left = left;
    pair.right = right;
    return Add(pair);
}

ExprId Parser::AddUnary(Span op, Tok kind, ExprId operand) {
    Expr unary = MakeExpr(ExprKind::Unary, {op.start, SpanOf(operand).end});
    unary.op = kind;
    unary.left = operand;
    return Add(unary);
}

// Stands where no value could be read, so that every index in the tree is good.
ExprId Parser::AddPlaceholder() {
    return Add(MakeExpr(ExprKind::Integer, Here()));
}

}  // namespace tavrel::core::script
