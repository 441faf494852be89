// Hints over the names of the world, and the names of its handles.
#include "core/script/compiler/declare/world_names.h"

#include <algorithm>

#include "core/script/source/fold.h"

namespace tavrel::core::script {

namespace {

// Appends the parts behind `start` of all names that begin with it, but for those with one more point.
template <class Entry>
void AppendLeaves(const WorldNames::Table<Entry>& table, const std::string& start, std::string& list) {
    for (auto row = table.lower_bound(start); row != table.end() && row->first.starts_with(start); ++row) {
        std::string leaf = row->first.substr(start.size());
        if (leaf.find('.') != std::string::npos) continue;
        list += (list.empty() ? "" : ", ") + leaf;
    }
}

}  // namespace

std::string WorldNames::ApiHint(const std::string& prefix) const {
    std::string list;
    AppendLeaves(namespaceFields, prefix + ".", list);
    AppendLeaves(hosts, prefix + ".", list);
    return list.empty() ? list : "\"" + prefix + "\" tem " + list;
}

std::string ValueFieldKey(Kind kind, std::string_view name) {
    return std::to_string(static_cast<int>(kind)) + "." + FoldName(name);
}

std::string LabelHint(const HostSignature& signature) {
    std::string list;
    for (std::size_t i = 0; i < signature.labels.size(); ++i) {
        list += (i == 0 ? "" : ", ") + signature.labels[i];
        if (i >= static_cast<std::size_t>(signature.required)) list += " =";
    }
    return list.empty() ? list : "os argumentos sao " + list;
}

std::int32_t NullHandle(std::string_view folded) {
    const auto* found = std::find(NullHandleNames.begin(), NullHandleNames.end(), folded);
    return found == NullHandleNames.end() ? -1 : static_cast<std::int32_t>(found - NullHandleNames.begin());
}

}  // namespace tavrel::core::script
