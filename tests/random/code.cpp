#include "tests/random/code.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace tavrel::tests {

namespace {

using namespace core::script;

constexpr int MaxDepth = 4;       // of expressions
constexpr int MaxBlockDepth = 3;  // of statements

// The places that each hook may write, bit p for Place p, by HookKind.
constexpr unsigned WritesOf[] = {28, 28, 30, 12, 10, 12, 12, 8, 8, 30, 10, 10};
constexpr unsigned WritesOfMapUpdate = 28;

unsigned Writes(const Law& law) {
    if (law.hooks == HookMask::None) return 0;
    unsigned writes = WritesOfMapUpdate;
    if (!Contains(law.hooks, HookMask::UpdateMap)) writes = ~0U;
    for (int kind = 0; kind < HookCount; ++kind) {
        if (Contains(law.hooks, MaskOf(static_cast<HookKind>(kind)))) writes &= WritesOf[kind];
    }
    return writes;
}

}  // namespace

std::string CodeWriter::Body(const Law& givenLaw, const Type& givenResult, std::uint64_t most) {
    law = givenLaw;
    result = givenResult;
    text.clear();
    const Scope scope = Open();
    Statements(0, most);
    if (!result.empty()) Ending(0);
    Close(scope);
    return std::move(text);
}

std::string CodeWriter::Value(const Law& givenLaw, const Type& type) {
    law = givenLaw;
    return Expression(type, 1);
}

std::string CodeWriter::CallLine(const Law& givenLaw, const Routine& routine) {
    law = givenLaw;
    return routine.name + Arguments(routine.params, 2) + "\n";
}

bool CodeWriter::MayCall(const Law& caller, const Routine& routine) {
    if (routine.law.rule) return true;
    return !caller.onlyReads && Contains(routine.law.hooks, caller.hooks);
}

bool CodeWriter::IsValidIn(HookMask hooks) const {
    return law.hooks != HookMask::None && Contains(hooks, law.hooks);
}

bool CodeWriter::MayUse(const Form& form) {
    if (form.use == Use::Literal) return false;
    if (form.hooks != 0 && !IsValidIn(HookMask{form.hooks})) return false;
    if (form.use == Use::World) return world && law.hooks != HookMask::None;
    return form.use == Use::Safe || (risky && numbers.OneIn(6));
}

bool CodeWriter::MaySee(const Variable& variable) const {
    return !law.rule || variable.place == Place::Constant || variable.place >= Place::Fixed;
}

bool CodeWriter::MayWrite(const Variable& variable) const {
    if (variable.place >= Place::Fixed) return variable.place == Place::Local;
    return MaySee(variable) && variable.place != Place::Constant &&
           (Writes(law) >> static_cast<unsigned>(variable.place) & 1U) != 0;
}

std::string CodeWriter::VariableOf(const Type& type, bool toWrite) {
    std::vector<const Variable*> found;
    for (std::size_t i = 0; i < variables.size(); ++i) {
        const Variable& variable = variables[i];
        if (variable.type != type || !(toWrite ? MayWrite(variable) : MaySee(variable))) continue;
        const auto hides = [&](const Variable& later) { return later.name == variable.name; };
        if (std::none_of(variables.begin() + static_cast<std::ptrdiff_t>(i) + 1, variables.end(), hides)) {
            found.push_back(&variable);
        }
    }
    return found.empty() ? "" : numbers.OneOf(found)->name;
}

std::string CodeWriter::Expression(const Type& type, int depth) {
    std::string value;
    if (depth >= MaxDepth || numbers.OneIn(4)) {
        if (!numbers.OneIn(3)) value = VariableOf(type, false);
    } else if (numbers.OneIn(6)) {
        value = CallOf(type, depth);
    } else if (world && numbers.OneIn(3)) {
        value = WorldCall(type, depth);
    } else {
        value = FormOf(type, depth);
    }
    return value.empty() ? LiteralOf(numbers, type) : value;
}

// Empty where no form fits, or where the one chosen finds no variable that it may write.
std::string CodeWriter::FormOf(const Type& type, int depth) {
    std::vector<std::string> fitting;
    for (const Form& form : AllForms()) {
        if (MayUse(form)) AddBound(numbers, form, type, fitting);
    }
    return fitting.empty() ? "" : Filled(numbers.OneOf(fitting), depth);
}

std::string CodeWriter::Filled(std::string_view form, int depth) {
    std::string filled;
    std::string last;
    for (std::size_t at = 0; at < form.size();) {
        if (form.substr(at, 4) == "{{}}") {
            filled += "{}";
            at += 4;
            continue;
        }
        if (form[at] != '{') {
            filled += form[at++];
            continue;
        }
        const std::size_t end = form.find('}', at);
        const std::string hole(form.substr(at + 1, end - at - 1));
        at = end + 1;
        if (hole[0] == '=' || hole[0] == '!') {
            last = VariableOf(hole.substr(1), hole[0] == '!');
            if (last.empty() && hole[0] == '!') return "";
            if (last.empty()) last = LiteralOf(numbers, hole.substr(1));
        }
        filled += hole[0] == '=' || hole[0] == '!' || hole[0] == '&' ? last : Expression(hole, depth + 1);
    }
    return filled;
}

std::string CodeWriter::Arguments(const std::vector<Type>& params, int depth) {
    std::string list;
    for (const Type& param : params) list += (list.empty() ? "" : ", ") + Expression(param, depth + 1);
    return "(" + list + ")";
}

std::string CodeWriter::CallOf(const Type& type, int depth) {
    std::vector<const Routine*> found;
    for (const Routine& routine : routines) {
        if (routine.result == type && MayCall(law, routine)) found.push_back(&routine);
    }
    if (found.empty()) return "";
    const Routine& routine = *numbers.OneOf(found);
    return routine.name + Arguments(routine.params, depth);
}

// A call or a value of the world; for the empty type one that gives no value.
std::string CodeWriter::WorldCall(const Type& type, int depth) {
    std::vector<const ApiFunction*> functions;
    std::vector<std::string> values;
    for (const ApiFunction& function : WorldApi().functions) {
        if (type == function.result && IsValidIn(function.hooks)) functions.push_back(&function);
    }
    for (const ApiNamespaceField& field : WorldApi().namespaceFields) {
        if (type == field.type && IsValidIn(field.hooks)) values.push_back(std::string(field.space) + "." + field.name);
    }
    for (const ApiValueField& field : WorldApi().valueFields) {
        const char* const handle = field.kind == Kind::Object ? "{=objeto}." : "{=corpo}.";
        if (type == field.type && IsValidIn(field.hooks)) values.push_back(Filled(handle, depth) + field.name);
    }
    const std::uint64_t choice = numbers.Below(functions.size() + values.size() + 1);
    if (choice < functions.size()) return functions[choice]->name + WorldArguments(functions[choice]->params, depth);
    return choice < functions.size() + values.size() ? values[choice - functions.size()] : "";
}

// The first few by place, the others by name in any order; what has a default may be left out. "para" cannot be written
// as the name of an argument, since it is a keyword.
std::string CodeWriter::WorldArguments(const std::vector<ApiParam>& params, int depth) {
    std::size_t placed = numbers.Below(params.size() + 1);
    if (std::any_of(params.begin(), params.end(), [](const ApiParam& param) { return Type("para") == param.name; })) {
        placed = params.size();
    }
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < params.size(); ++i) {
        const std::string value = Expression(params[i].type, depth + 1);
        if (i < placed) {
            arguments.push_back(value);
        } else if (params[i].fallback[0] == '\0' || numbers.OneIn(2)) {
            const std::size_t at = placed + numbers.Below(arguments.size() - placed + 1);
            arguments.insert(arguments.begin() + static_cast<std::ptrdiff_t>(at), params[i].name + (" = " + value));
        }
    }
    std::string list;
    for (const std::string& argument : arguments) list += (list.empty() ? "" : ", ") + argument;
    return "(" + list + ")";
}

CodeWriter::Scope CodeWriter::Open() {
    return {variables.size(), std::exchange(scopeStart, variables.size())};
}

void CodeWriter::Close(const Scope& scope) {
    variables.resize(scope.first);
    scopeStart = scope.outer;
}

void CodeWriter::Statements(int depth, std::uint64_t most) {
    for (std::uint64_t i = numbers.Below(most) + 1; i > 0; --i) Statement(depth);
}

void CodeWriter::Block(int depth, std::uint64_t most) {
    const Scope scope = Open();
    Statements(depth, most);
    Close(scope);
}

void CodeWriter::Statement(int depth) {
    switch (numbers.Below(depth < MaxBlockDepth ? 16 : 9)) {
        case 0:
        case 1: return Declare();
        case 2: return Assign();
        case 3: return CallAny();
        case 4: return Line("escreva(" + Expression("texto", 1) + ")");
        case 9: return Leave(depth);
        case 10:
        case 11: return If(depth);
        case 12: return While(depth);
        case 13: return For(depth);
        case 14: return ForEach(depth);
        case 15: return Switch(depth);
        default: return Simple();
    }
}

void CodeWriter::Simple() {
    const std::string call = world && numbers.OneIn(2) ? WorldCall("", 1) : "";
    const std::string statement = call.empty() ? FormOf("", 1) : call;
    if (!statement.empty()) Line(statement);
}

// Now and then under the name of a local outside of this block, which it hides.
void CodeWriter::Declare() {
    const Type& type = numbers.OneOf(AllTypes());
    const std::string value = numbers.OneIn(4) ? "" : " = " + Expression(type, 0);
    std::string name = NewName("novo");
    if (scopeStart > 0 && numbers.OneIn(6)) {
        const Variable& outer = variables[numbers.Below(scopeStart)];
        const auto isHere = [&](const Variable& variable) { return variable.name == outer.name; };
        const auto here = variables.begin() + static_cast<std::ptrdiff_t>(scopeStart);
        if (outer.place == Place::Local && std::none_of(here, variables.end(), isHere)) name = outer.name;
    }
    Line(name + ": " + type + value);
    variables.push_back({name, type});
}

void CodeWriter::Assign() {
    const Type& type = numbers.OneOf(AllTypes());
    const std::string name = VariableOf(type, true);
    if (!name.empty()) Line(name + " = " + Expression(type, 0));
}

void CodeWriter::CallAny() {
    const Type none;
    const std::string call = CallOf(numbers.OneIn(2) ? none : numbers.OneOf(AllTypes()), 1);
    if (!call.empty()) Line(call);
}

// Behind "entao", or without it, a body may begin on the line of its head.
void CodeWriter::Branch(const std::string& head, int depth) {
    std::string line = head + " " + Expression("logico", depth);
    if (numbers.OneIn(3)) line += numbers.OneIn(2) ? " entao escreva(\"sim\")" : " escreva(\"sim\")";
    Line(line);
    Block(depth + 1, 3);
}

void CodeWriter::If(int depth) {
    if (numbers.OneIn(4)) {
        const std::string otherwise = numbers.OneIn(2) ? " senao escreva(" + Expression("texto", 2) + ")" : "";
        const std::string body = " entao escreva(" + Expression("texto", 2) + ")" + otherwise + " fim";
        return Line("se " + Expression("logico", 0) + body);
    }
    Branch("se", depth);
    while (numbers.OneIn(3)) Branch("senao se", depth);
    if (numbers.OneIn(2)) {
        Line("senao");
        Block(depth + 1, 3);
    }
    Line("fim");
}

void CodeWriter::While(int depth) {
    const bool real = numbers.OneIn(3);
    const std::string counter = NewName("volta");
    Line(counter + (real ? ": real" : ": inteiro"));
    std::string condition = counter + " < " + std::to_string(numbers.Below(5)) + (real ? ".5" : "");
    if (numbers.OneIn(2)) condition += " e (" + Expression("logico", 2) + ")";
    Line("enquanto " + condition);
    Line(counter + " = " + counter + (real ? " + 0.75" : " + 1"));
    LoopBody("", "", depth);
}

void CodeWriter::For(int depth) {
    static const std::vector<std::string> steps = {"", "", " passo 2", " passo limitar({inteiro}, 1, 3)"};
    std::string line = Filled(" de limitar({inteiro}, 0, 3) ate limitar({inteiro}, 1, 6)" + numbers.OneOf(steps), 2);
    if (numbers.OneIn(4)) line = " de 5 ate -1 passo -" + std::to_string(numbers.Below(3) + 1);
    const std::string counter = NewName("conta");
    Line("para " + counter + line);
    LoopBody(counter, "inteiro", depth);
}

void CodeWriter::ForEach(int depth) {
    static const std::string List = "lista de ";
    Type type;
    while (!type.starts_with(List)) type = numbers.OneOf(AllTypes());
    const std::string item = NewName("item");
    const std::string list = risky ? Expression(type, 2) : "copiar(" + Expression(type, 2) + ")";
    Line("para cada " + item + " em " + list);
    LoopBody(item, type.substr(List.size()), depth);
}

void CodeWriter::LoopBody(const std::string& variable, const Type& type, int depth) {
    if (!variable.empty()) variables.push_back({variable, type, Place::Fixed});
    ++loops;
    Block(depth + 1, 3);
    --loops;
    if (!variable.empty()) variables.pop_back();
    Line("fim");
}

void CodeWriter::Switch(int depth) {
    static const std::vector<Type> types = {"inteiro", "texto", "Rumo", "logico", "objeto", "Categoria"};
    const Type& type = numbers.OneOf(types);
    Line("escolha " + Expression(type, 1));
    for (std::uint64_t i = numbers.Below(3) + 1; i > 0; --i) {
        Line("caso " + Expression(type, 2) + (numbers.OneIn(3) ? ", " + Expression(type, 3) : ""));
        Block(depth + 1, 2);
    }
    if (numbers.OneIn(2)) {
        Line("senao");
        Block(depth + 1, 2);
    }
    Line("fim");
}

// Out of a loop, or out of the routine, behind a condition that keeps it from hiding all that follows.
void CodeWriter::Leave(int depth) {
    Line("se " + Expression("logico", 1));
    const Scope scope = Open();
    if (numbers.OneIn(2)) Statements(depth + 1, 2);
    if (loops > 0 && !numbers.OneIn(4)) {
        Line(numbers.OneIn(2) ? "pare" : "continue");
    } else {
        Line(ReturnLine());
    }
    Close(scope);
    Line("fim");
}

std::string CodeWriter::ReturnLine() {
    return result.empty() ? "retorne" : "retorne " + Expression(result, 0);
}

// What returns on every path: at once, or through all branches of a statement.
void CodeWriter::Ending(int depth) {
    if (depth >= MaxBlockDepth || !numbers.OneIn(3)) return Line(ReturnLine());
    const bool choice = numbers.OneIn(2);
    Line(choice ? "escolha " + Expression("Rumo", 1) : "se " + Expression("logico", 1));
    if (choice) Line("caso NORTE, SUL");
    Ending(depth + 1);
    Line("senao");
    const Scope scope = Open();
    Statements(depth + 1, 2);
    Ending(depth + 1);
    Close(scope);
    Line("fim");
}

}  // namespace tavrel::tests
