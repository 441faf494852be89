// Arguments are compiled in the order of the parameters, not of the source, and every parameter is passed: one that was
// left out takes its default from the world's table.
#include "core/script/compiler/translate/host_calls.h"

#include "core/script/compiler/translate/calls.h"
#include "core/script/compiler/translate/default_values.h"
#include "core/script/compiler/translate/expressions.h"
#include "core/script/compiler/translate/rights.h"
#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// The argument of each parameter; none for one that was left out.
using ParamItems = std::vector<ExprId>;

TypeId MissingHost(Body& body, const Expr& call, const std::string& space, const std::string& folded) {
    std::string fullName = space + "." + folded;
    if (body.declarations.world.namespaceFields.contains(fullName)) {
        body.Error(call.span, Quoted(fullName) + " e um valor, e nao uma funcao",
                   "escreva " + Quoted(fullName) + " sem os parenteses");
    } else {
        body.Error(call.span, Quoted(space) + " nao tem " + Quoted(folded), body.declarations.world.ApiHint(space));
    }
    return ErrorType;
}

bool PlaceLabelled(Body& body, const Expr& call, std::size_t argument, const HostSignature& signature,
                   const std::string& fullName, ParamItems& items) {
    ExprId item = body.Item(call, argument);
    std::string_view label = body.unit->Labels(call.labels)[argument];
    std::string folded = FoldName(label);
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (signature.labels[i] != folded) continue;
        if (!items[i]) {
            items[i] = item;
            return true;
        }
        body.Error(body.SpanOf(item), "o argumento " + Quoted(label) + " foi dado duas vezes");
        return false;
    }
    body.Error(body.SpanOf(item), Quoted(fullName) + " nao tem um argumento chamado " + Quoted(label),
               LabelHint(signature));
    return false;
}

// Gives each argument its parameter: positions first, then names. False when anything was reported.
bool PlaceArguments(Body& body, const Expr& call, const HostSignature& signature, const std::string& fullName,
                    ParamItems& items) {
    std::span<const ExprId> given = body.unit->Items(call.items);
    std::span<const std::string_view> labels = body.unit->Labels(call.labels);
    bool good = true;
    bool labelled = false;
    for (std::size_t i = 0; i < given.size(); ++i) {
        if (!labels[i].empty()) {
            labelled = true;
            good = PlaceLabelled(body, call, i, signature, fullName, items) && good;
        } else if (labelled) {
            body.Error(body.SpanOf(given[i]), "depois de um argumento com nome, todos precisam de nome");
            good = false;
        } else if (i >= items.size()) {
            body.Error(call.span, Quoted(fullName) + " espera " + std::to_string(items.size()) +
                                      " argumento(s) e recebeu " + std::to_string(given.size()));
            return false;
        } else {
            items[i] = given[i];
        }
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(signature.required); ++i) {
        if (items[i]) continue;
        body.Error(call.span, Quoted(fullName) + " precisa do argumento " + Quoted(signature.labels[i]),
                   LabelHint(signature));
        good = false;
    }
    return good;
}

void EmitHostArguments(Body& body, const Expr& call, const HostSignature& signature, const std::string& fullName,
                       const ParamItems& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        TypeId wanted = signature.paramTypes[i];
        if (!items[i]) {
            EmitHostDefault(body, signature.defaults[i], wanted, call.span);
            continue;
        }
        TypeId type = CompileValue(body, items[i], wanted);
        if (type == ErrorType || wanted == ErrorType || type == wanted) continue;
        body.Error(body.SpanOf(items[i]), "o argumento " + Quoted(signature.labels[i]) + " de " + Quoted(fullName) +
                                              " e " + body.TypeName(wanted) + ", e veio " + body.TypeName(type));
    }
}

}  // namespace

TypeId CompileHostCall(Body& body, const Expr& call, const std::string& space, const std::string& folded) {
    std::string fullName = space + "." + folded;
    const auto& hosts = body.declarations.world.hosts;
    auto found = hosts.find(fullName);
    if (found == hosts.end()) return MissingHost(body, call, space, folded);
    const HostSignature& signature = found->second;
    if (!CheckHooks(body, signature.hooks, call.span, fullName, signature.effect)) return ErrorType;
    ParamItems items(signature.paramTypes.size());
    if (!PlaceArguments(body, call, signature, fullName, items)) {
        CompileForErrors(body, call);
        return ErrorType;
    }
    EmitHostArguments(body, call, signature, fullName, items);
    body.code.EmitHost(signature.id, items.size(), call.span);
    return signature.result;
}

}  // namespace tavrel::core::script
