// How the slices of a Unit are read.
#include "core/script/syntax/syntax_tree.h"

namespace tavrel::core::script {

namespace {

template <class Entry>
std::span<const Entry> EntriesOf(const std::vector<Entry>& pool, Slice<Entry> slice) {
    return std::span<const Entry>(pool).subspan(static_cast<std::size_t>(slice.first),
                                                static_cast<std::size_t>(slice.count));
}

}  // namespace

std::span<const ExprId> Unit::Items(ExprList list) const {
    return EntriesOf(exprLists, list);
}

std::span<const StmtId> Unit::Statements(Block block) const {
    return EntriesOf(blocks, block);
}

std::span<const std::string_view> Unit::Labels(Slice<std::string_view> slice) const {
    return EntriesOf(labels, slice);
}

std::span<const Branch> Unit::Branches(Slice<Branch> slice) const {
    return EntriesOf(branches, slice);
}

std::span<const Expr> Unit::Exprs(Slice<Expr> slice) const {
    return EntriesOf(exprs, slice);
}

}  // namespace tavrel::core::script
