// Scripts with very many of one thing, for finding the pass whose time grows faster than its input. A name and a count
// in, source text out; every script compiles with the world's table.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tavrel::bench {

// A kind of script that grows in one direction only.
struct ManyKind {
    std::string_view name;
    std::string (*generate)(int count);
};

// In the order in which a report shows them.
[[nodiscard]] std::span<const ManyKind> ManyKinds();

// A main script that imports "m0", "m1" and so on, `count` of them, and uses each.
[[nodiscard]] std::string GenerateImporter(int count);

// The text of the module "m<number>".
[[nodiscard]] std::string GenerateImported(int number);

}  // namespace tavrel::bench
