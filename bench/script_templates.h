// The pieces that generated scripts are made of, each in this language and in Lua, statement for statement. Pure data:
// the caller that expands a piece owns the result and decides what its marks stand for.
//
// Marks: $n the name of the piece's own block, $p $q $s names of other blocks; $T the block's name in a type, $C in a
// constant, $P that of $p in a constant; $i an integer, $r a real and $t a text that no other place has; $d a digit.
#pragma once

#include <span>

namespace tavrel::bench {

struct Template {
    const char* script = "";
    const char* lua = "";
};

// Parts of one block, in the order in which they stand in a file.
[[nodiscard]] const Template& Declarations();
[[nodiscard]] const Template& StateFields();
[[nodiscard]] const Template& VisualFields();
[[nodiscard]] const Template& DerivedFields();

// The functions of a block. A block takes one variant of each family.
[[nodiscard]] std::span<const std::span<const Template>> FunctionFamilies();

// What comes once for ten blocks.
[[nodiscard]] const Template& Behaviour();

}  // namespace tavrel::bench
