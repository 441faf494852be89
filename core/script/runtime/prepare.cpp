#include <algorithm>

#include "core/script/runtime/prepared.h"
#include "core/script/runtime/translator.h"

namespace tavrel::core::script {

PreparedProgram::PreparedProgram(const Program& givenProgram, const std::vector<Value>& givenTexts)
    : program(&givenProgram),
      texts(&givenTexts),
      recordTypes(givenProgram.records.size()),
      functions(givenProgram.functions.size()) {
    for (std::size_t type = 0; type < program->types.Size(); ++type) {
        const TypeInfo& info = program->types.At(TypeId(type));
        if (info.kind != Kind::Record || info.index < 0) continue;
        const auto record = static_cast<std::size_t>(info.index);
        if (record < recordTypes.size()) recordTypes[record] = TypeId(type);
    }
    for (const Function& function : program->functions) {
        margin = std::max(margin, static_cast<std::int64_t>(function.code.size()) * 3);
    }
}

const PreparedCode* CodeOf(PreparedProgram& prepared, FunctionId function, bool exact) {
    PreparedProgram::Pair& pair = prepared.functions[function.Number()];
    std::unique_ptr<PreparedCode>& code = exact ? pair.exact : pair.fast;
    if (code || pair.refused) return code.get();
    const PreparedCode* model = exact ? nullptr : CodeOf(prepared, function, true);
    if (!exact && model == nullptr) return nullptr;
    auto fresh = std::make_unique<PreparedCode>();
    if (Translator(*prepared.program, prepared, function, model, *fresh).Run()) {
        fresh->code.insert(fresh->code.begin(), FastInstruction());
        fresh->before = fresh->code.data();
        fresh->pool = fresh->constants.data();
        fresh->extentBytes = std::uint64_t{fresh->extent} * SlotBytes;
        code = std::move(fresh);
    } else {
        pair.refused = true;
    }
    return code.get();
}

}  // namespace tavrel::core::script
