// Calls of the world's functions, whose arguments may be named and left out.
#include "core/script/compiler/compiler.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

constexpr std::int32_t EmptySlot = -1;

}  // namespace

TypeId Compiler::CompileHostCall(const Expr& call, const std::string& space, const std::string& folded) {
    std::string fullName = space + "." + folded;
    auto found = hostNames.find(fullName);
    if (found == hostNames.end()) return MissingHost(call, space, folded);
    const HostSignature& signature = hosts[static_cast<std::size_t>(found->second)];
    if (!CheckHooks(signature.hooks, call.span, fullName, signature.effect)) return FailedType;
    std::vector<std::int32_t> slots(signature.paramTypes.size(), EmptySlot);
    if (!PlaceArguments(call, signature, fullName, slots)) {
        CompileForErrors(call);
        return FailedType;
    }
    EmitHostArguments(call, signature, fullName, slots);
    EmitHost(signature.id, slots.size(), call.span);
    return signature.result;
}

TypeId Compiler::MissingHost(const Expr& call, const std::string& space, const std::string& folded) {
    std::string fullName = space + "." + folded;
    if (namespaceFieldNames.contains(fullName)) {
        Error(call.span, Quoted(fullName) + " e um valor, e nao uma funcao",
              "escreva " + Quoted(fullName) + " sem os parenteses");
    } else {
        Error(call.span, Quoted(space) + " nao tem " + Quoted(folded), ApiHint(space));
    }
    return FailedType;
}

// Gives each argument its parameter: positions first, then names. False when anything was reported.
bool Compiler::PlaceArguments(const Expr& call, const HostSignature& signature, const std::string& fullName,
                              std::vector<std::int32_t>& slots) {
    std::span<const ExprId> items = unit->Items(call.items);
    std::span<const std::string_view> labels = unit->Labels(call.labels);
    bool good = true;
    bool labelled = false;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (!labels[i].empty()) {
            labelled = true;
            good = PlaceLabelled(call, i, signature, fullName, slots) && good;
        } else if (labelled) {
            Error(SpanOf(items[i]), "depois de um argumento com nome, todos precisam de nome");
            good = false;
        } else if (i >= slots.size()) {
            Error(call.span, Quoted(fullName) + " espera " + std::to_string(slots.size()) + " argumento(s) e recebeu " +
                                 std::to_string(items.size()));
            return false;
        } else {
            slots[i] = items[i];
        }
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(signature.required); ++i) {
        if (slots[i] != EmptySlot) continue;
        Error(call.span, Quoted(fullName) + " precisa do argumento " + Quoted(signature.labels[i]),
              LabelHint(signature));
        good = false;
    }
    return good;
}

bool Compiler::PlaceLabelled(const Expr& call, std::size_t argument, const HostSignature& signature,
                             const std::string& fullName, std::vector<std::int32_t>& slots) {
    std::int32_t item = unit->Items(call.items)[argument];
    std::string_view label = unit->Labels(call.labels)[argument];
    std::string folded = FoldName(label);
    for (std::size_t i = 0; i < slots.size(); ++i) {
        if (signature.labels[i] != folded) continue;
        if (slots[i] == EmptySlot) {
            slots[i] = item;
            return true;
        }
        Error(SpanOf(item), "o argumento " + Quoted(label) + " foi dado duas vezes");
        return false;
    }
    Error(SpanOf(item), Quoted(fullName) + " nao tem um argumento chamado " + Quoted(label), LabelHint(signature));
    return false;
}

// In the order of the parameters, not of the source; every parameter is passed.
void Compiler::EmitHostArguments(const Expr& call, const HostSignature& signature, const std::string& fullName,
                                 const std::vector<std::int32_t>& slots) {
    for (std::size_t i = 0; i < slots.size(); ++i) {
        TypeId wanted = signature.paramTypes[i];
        if (slots[i] == EmptySlot) {
            EmitHostDefault(signature.defaults[i], wanted, call.span);
            continue;
        }
        TypeId type = CompileValue(slots[i], wanted);
        if (type == FailedType || wanted == FailedType || type == wanted) continue;
        Error(SpanOf(slots[i]), "o argumento " + Quoted(signature.labels[i]) + " de " + Quoted(fullName) + " e " +
                                    TypeName(wanted) + ", e veio " + TypeName(type));
    }
}

}  // namespace tavrel::core::script
