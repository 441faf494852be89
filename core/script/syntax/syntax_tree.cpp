#include "core/script/syntax/syntax_tree.h"

namespace tavrel::core::script {

namespace {

template <class Entry>
std::span<const Entry> Run(const std::vector<Entry>& pool, IndexList list) {
    return std::span<const Entry>(pool).subspan(static_cast<std::size_t>(list.first),
                                                static_cast<std::size_t>(list.count));
}

}  // namespace

std::span<const std::int32_t> Unit::Indices(IndexList list) const {
    return Run(indices, list);
}

std::span<const std::string_view> Unit::Labels(IndexList list) const {
    return Run(labels, list);
}

std::span<const Branch> Unit::Branches(IndexList list) const {
    return Run(branches, list);
}

std::span<const Expr> Unit::Exprs(IndexList list) const {
    return Run(exprs, list);
}

}  // namespace tavrel::core::script
