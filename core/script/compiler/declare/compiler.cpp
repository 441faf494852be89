// Reports, and the small texts that the messages of every pass share.
#include "core/script/compiler/declare/compiler.h"

#include <utility>

namespace tavrel::core::script {

void Compiler::Error(const Unit& where, Span span, std::string message, std::string hint) {
    diagnostics.Add(where.source, span, std::move(message), std::move(hint));
}

std::string Compiler::TypeName(TypeId type) const {
    return diagnostics.Full() ? std::string() : program.types.Name(type);
}

FunctionId AppendFunction(Program& program, std::string name, std::size_t params, TypeId result, FileId file) {
    Function appended;
    appended.name = std::move(name);
    appended.params = static_cast<std::int32_t>(params);
    appended.returnType = result;
    appended.file = file;
    program.functions.push_back(std::move(appended));
    return FunctionId(program.functions.size() - 1);
}

std::string Quoted(std::string_view name) {
    std::string text;
    text.reserve(name.size() + 2);
    text += '"';
    text += name;
    text += '"';
    return text;
}

std::string ConversionHint(TypeId one, TypeId other, const char* text) {
    bool mixed = (one == IntType && other == RealType) || (one == RealType && other == IntType);
    return mixed ? text : "";
}

}  // namespace tavrel::core::script
