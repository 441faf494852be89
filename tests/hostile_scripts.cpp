#include "tests/hostile_scripts.h"

namespace tavrel::tests {

namespace {

const std::string Head = "modulo M\n";

// The texts that `piece` gives for 0 to `count` - 1, with `between` between them.
template <typename Piece>
std::string Join(int count, const std::string& between, Piece piece) {
    std::string text;
    for (int index = 0; index < count; ++index) {
        if (index > 0) text += between;
        text += piece(std::to_string(index));
    }
    return text;
}

}  // namespace

std::string Repeat(const std::string& text, int times) {
    std::string result;
    result.reserve(text.size() * static_cast<std::size_t>(times));
    for (int index = 0; index < times; ++index) result += text;
    return result;
}

std::string NestedValue(const std::string& type, const std::string& open, const std::string& middle,
                        const std::string& close, int levels) {
    return Head + "constante A: " + type + " = " + Repeat(open, levels) + middle + Repeat(close, levels) + "\n";
}

std::string NestedStatement(const std::string& open, const std::string& close, int levels) {
    return Head + "procedimento p(a: logico, n: inteiro)\n" + Repeat(open, levels) + "n = 1\n" + Repeat(close, levels) +
           "\nfim\n";
}

std::string LongSum(const std::string& type, const std::string& term, const std::string& sign, int count) {
    return Head + "constante A: " + type + " = " + term + Repeat(" " + sign + " " + term, count - 1) + "\n";
}

std::string LongChain(const std::string& base, const std::string& step, int count) {
    return Head + "registro No\n    mais: lista de No\n    n: inteiro\nfim\n" +
           "funcao no(): No\n    x: No\n    retorne x\nfim\n" + "procedimento p(a: No)\n    " + base +
           Repeat(step, count) + ".n = 1\nfim\n";
}

std::string Numbered(const std::string& declaration, int count) {
    return Head + Join(count, "", [&](const std::string& number) {
               std::string text = declaration;
               for (std::size_t at = text.find('#'); at != std::string::npos; at = text.find('#', at)) {
                   text.replace(at, 1, number);
               }
               return text;
           });
}

std::string ManyBranches(int count) {
    return Head + "funcao f(n: inteiro): inteiro\n    se n < 0\n        retorne -1\n" +
           Join(count, "", [](const std::string& number) { return "senao se n == " + number + "\nretorne 1\n"; }) +
           "    fim\n    retorne 0\nfim\n";
}

std::string TallList(int elements, int gap) {
    const std::string separator = std::string(",").append(Repeat("\n", gap)).append("\n");
    return Head + "constante A: lista de inteiro = [\n" +
           Join(elements, separator, [](const std::string& number) { return number; }) + "\n]\n";
}

std::string WideCall(int params, bool inBehaviour) {
    const std::string declared =
        Join(params, ", ", [](const std::string& number) { return "a" + number + ": inteiro"; });
    const std::string given = Join(params, ", ", [](const std::string& number) { return number; });
    const std::string body =
        "procedimento muitos(" + declared + ")\nfim\n" + "ao encerrar\n    muitos(" + given + ")\nfim\n";
    return Head + (inBehaviour ? "comportamento C\n" + body + "fim\n" : body);
}

std::string CallLadder(int count) {
    return Head + "estado\n    total: inteiro\nfim\nprocedimento f0()\n    total = 1\nfim\n" +
           Join(count, "",
                [](const std::string& number) {
                    const std::string next = std::to_string(std::stoi(number) + 1);
                    return "procedimento f" + next + "()\n    f" + number + "()\nfim\n";
                }) +
           "a cada tick (passo: real)\n    f" + std::to_string(count) + "()\nfim\n";
}

std::string LoopBehindLocals(int locals) {
    return Head + "procedimento p(itens: lista de inteiro)\n" +
           Join(locals, "", [](const std::string& number) { return "x" + number + ": inteiro\n"; }) +
           "para cada item em itens\nfim\nfim\n";
}

std::string RepeatedDefaults(int fields, int values) {
    const auto field = [](const std::string& number) { return "c" + number + ": inteiro = 1\n"; };
    const auto local = [](const std::string& number) { return "v" + number + ": R\n"; };
    return Head + "registro R\n" + Join(fields, "", field) + "fim\nprocedimento p()\n" + Join(values, "", local) +
           "fim\n";
}

std::string RecordsInRecords(int count) {
    std::string text = Head;
    std::string fields;
    for (int index = count - 1; index >= 0; --index) {
        const std::string name = std::to_string(index);
        text += "registro R" + name + "\n" + fields + "fim\n";
        fields += "c" + name + ": R" + name + "\n";
    }
    return text;
}

std::string UseOfLastEnum(int count) {
    return Numbered("enumeracao E# = M#\n", count) + "constante A: E" + std::to_string(count - 1) + " = M" +
           std::to_string(count - 1) + "\n";
}

}  // namespace tavrel::tests
