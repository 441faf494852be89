// One row for each method tells its parameters and result in terms of the receiver's type.
#include "core/script/compiler/translate/method_calls.h"

#include <algorithm>

#include "core/script/compiler/translate/calls.h"
#include "core/script/compiler/translate/native_calls.h"

namespace tavrel::core::script {

namespace {

// What a parameter or the result of a method is.
enum class Part : std::uint8_t { None, Int, Bool, Element, Key, ElementList, KeyList };

struct MethodRow {
    std::string_view name;
    Native native;
    Part first;
    Part second;
    Part result;
    const char* form;
};

constexpr MethodRow ListMethods[] = {
    {"adicionar", Native::ListAppend, Part::Element, Part::None, Part::None, "adicionar(um elemento da lista)"},
    {"inserir", Native::ListInsert, Part::Int, Part::Element, Part::None, "inserir(posicao, elemento)"},
    {"remover", Native::ListRemove, Part::Int, Part::None, Part::None, "remover(posicao)"},
    {"remover_valor", Native::ListRemoveValue, Part::Element, Part::None, Part::Bool, "remover_valor(um elemento)"},
    {"limpar", Native::ListClear, Part::None, Part::None, Part::None, "limpar()"},
    {"tamanho", Native::ListSize, Part::None, Part::None, Part::Int, "tamanho()"},
    {"posicao_de", Native::ListIndexOf, Part::Element, Part::None, Part::Int, "posicao_de(um elemento)"},
    {"ordenar", Native::ListSort, Part::None, Part::None, Part::None, "ordenar()"},
    {"inverter", Native::ListReverse, Part::None, Part::None, Part::None, "inverter()"},
};

constexpr MethodRow DictMethods[] = {
    {"definir", Native::DictDefine, Part::Key, Part::Element, Part::None, "definir(chave, valor)"},
    {"obter", Native::DictObtain, Part::Key, Part::Element, Part::Element, "obter(chave, padrao)"},
    {"remover", Native::DictRemove, Part::Key, Part::None, Part::Bool, "remover(chave)"},
    {"limpar", Native::DictClear, Part::None, Part::None, Part::None, "limpar()"},
    {"tamanho", Native::DictSize, Part::None, Part::None, Part::Int, "tamanho()"},
    {"chaves", Native::DictKeys, Part::None, Part::None, Part::KeyList, "chaves()"},
    {"valores", Native::DictValues, Part::None, Part::None, Part::ElementList, "valores()"},
};

template <std::size_t Size>
const MethodRow* FindMethod(const MethodRow (&rows)[Size], std::string_view folded) {
    const MethodRow* row =
        std::find_if(rows, rows + Size, [folded](const MethodRow& one) { return one.name == folded; });
    return row == rows + Size ? nullptr : row;
}

template <std::size_t Size>
constexpr bool Calls(const MethodRow (&rows)[Size], Native native) {
    return std::any_of(rows, rows + Size, [native](const MethodRow& row) { return row.native == native; });
}

// Whether a native is the method of some row, or none at all: the names of methods have a point. The version of a list
// is read by "para cada" alone.
constexpr bool IsCallable(Native native, std::string_view name) {
    return name.find('.') == std::string_view::npos || native == Native::ListVersion || Calls(ListMethods, native) ||
           Calls(DictMethods, native);
}
#define TAVREL_NATIVE(name, number, text) static_assert(IsCallable(Native::name, text), text " has no row");
#include "core/script/program/native.def"

TypeId PartType(TypeTable& types, Part part, const TypeInfo& receiver) {
    switch (part) {
        case Part::Int: return IntType;
        case Part::Bool: return BoolType;
        case Part::Element: return receiver.element;
        case Part::Key: return receiver.key;
        case Part::ElementList: return types.List(receiver.element);
        case Part::KeyList: return types.List(receiver.key);
        case Part::None: break;
    }
    return NothingType;
}

}  // namespace

TypeId CompileMethodCall(Body& body, const Expr& call, TypeId receiver, std::string_view name) {
    if (!RejectLabels(body, call, name)) return ErrorType;
    NativeCall native{call, name, CompileArguments(body, call)};
    if (native.Failed()) return ErrorType;
    const TypeInfo info = body.Types().At(receiver);
    if (info.kind != Kind::List && info.kind != Kind::Dict) {
        body.Error(call.span, body.TypeName(receiver) + " nao tem metodos");
        return ErrorType;
    }
    bool list = info.kind == Kind::List;
    std::string_view folded = body.Folded(name);
    const MethodRow* row = list ? FindMethod(ListMethods, folded) : FindMethod(DictMethods, folded);
    if (row == nullptr) {
        body.Error(call.span, (list ? "uma lista nao tem " : "um dicionario nao tem ") + Quoted(name),
                   list ? "ela tem adicionar, inserir, remover, remover_valor, limpar, tamanho, posicao_de, ordenar e "
                          "inverter"
                        : "ele tem definir, obter, remover, limpar, tamanho, chaves e valores");
        return ErrorType;
    }
    std::vector<TypeId> wanted;
    for (Part part : {row->first, row->second}) {
        if (part != Part::None) wanted.push_back(PartType(body.Types(), part, info));
    }
    if (!FitsAll(body, native, wanted)) return RefuseNative(body, native, row->form);
    if (row->native == Native::ListSort && !body.Types().Ordered(info.element)) {
        body.Error(call.span, "nao da para ordenar uma lista de " + body.TypeName(info.element),
                   "so listas de inteiro, real e texto tem ordem");
        return ErrorType;
    }
    body.code.EmitNative(row->native, native.Count() + 1, call.span);
    return PartType(body.Types(), row->result, info);
}

}  // namespace tavrel::core::script
