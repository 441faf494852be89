// A function that is reported is declared all the same, so that every function of the program has its entry and calls
// of it are not reported again. Of two functions of one name in one place, calls reach the first.
#include "core/script/compiler/declare/functions.h"

#include <utility>

#include "core/script/compiler/declare/types.h"

namespace tavrel::core::script {

namespace {

class FunctionCollector {
public:
    FunctionCollector(Compiler& shared, Declarations& output) : compiler(shared), declarations(output) {}

    void AddSection(const Unit& unit, FileId file, const Section& section, BehaviourId owner) {
        for (FunctionDeclId function : section.functions) Add(unit, file, unit.At(function), owner);
    }

private:
    void Add(const Unit& unit, FileId file, const FunctionDecl& declaration, BehaviourId owner);
    void CheckName(const Unit& unit, const FunctionDecl& declaration, BehaviourId owner);

    Compiler& compiler;
    Declarations& declarations;
    OwnedNameMap<BehaviourId, std::int32_t> sameNames;  // how many functions have a name so far
};

void FunctionCollector::Add(const Unit& unit, FileId file, const FunctionDecl& declaration, BehaviourId owner) {
    FunctionEntry entry;
    entry.unit = &unit;
    entry.declaration = &declaration;
    entry.behaviour = owner;
    for (const Param& param : declaration.params) {
        entry.params.push_back(ResolveType(compiler, declarations, unit, param.type));
    }
    if (!declaration.isProcedure) entry.result = ResolveType(compiler, declarations, unit, declaration.returnType);
    std::size_t params = declaration.params.size() + (owner ? 1 : 0);
    entry.function = AppendFunction(compiler.program, declaration.name, params, entry.result, file);
    CheckName(unit, declaration, owner);
    if (params > MaxArguments) {
        compiler.Error(unit, declaration.span, "a funcao " + Quoted(declaration.name) + " tem argumentos demais",
                       owner ? "num comportamento cabem ate 254" : "cabem ate 255");
    }

    NameId name = compiler.names.Intern(declaration.name);
    FunctionEntryId index(declarations.functions.size());
    if (owner) {
        declarations.behaviourFunctions.Add(owner, name, index);
    } else if (!declarations.moduleFunctions.Has(name)) {
        declarations.moduleFunctions.Set(name, index);
    }
    declarations.functions.push_back(std::move(entry));
}

void FunctionCollector::CheckName(const Unit& unit, const FunctionDecl& declaration, BehaviourId owner) {
    NameId name = compiler.names.Intern(declaration.name);
    std::int32_t& sameName = sameNames.Obtain(owner, name);
    // One report for each earlier function of the name, as long as reports are kept at all.
    for (std::int32_t i = 0; i < sameName && !compiler.diagnostics.Full(); ++i) {
        compiler.Error(unit, declaration.span, "ja existe uma funcao chamada " + Quoted(declaration.name));
    }
    ++sameName;
    if (declarations.globalNames.Has(name)) {
        compiler.Error(unit, declaration.span, "ja existe uma variavel chamada " + Quoted(declaration.name));
    }
}

}  // namespace

void AddFunctions(Compiler& compiler, Declarations& declarations) {
    FunctionCollector collector(compiler, declarations);
    for (std::size_t i = 0; i < compiler.units.size(); ++i) {
        const Unit& unit = compiler.units[i];
        collector.AddSection(unit, FileId(i), unit.module, BehaviourId());
        if (i != 0) continue;
        for (std::size_t owner = 0; owner < unit.behaviours.size(); ++owner) {
            collector.AddSection(unit, FileId(i), unit.behaviours[owner], BehaviourId(owner));
        }
    }
}

}  // namespace tavrel::core::script
