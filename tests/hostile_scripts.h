// Scripts that nobody would write, made by the size asked for: very deep, very long, or too big for the fields of an
// instruction. Each returns the text of one module.
#pragma once

#include <string>

namespace tavrel::tests {

[[nodiscard]] std::string Repeat(const std::string& text, int times);

// `open` and `close` stand `levels` times around `middle`, in the value of a constant of the type given.
[[nodiscard]] std::string NestedValue(const std::string& type, const std::string& open, const std::string& middle,
                                      const std::string& close, int levels);

// The same around a statement, in the body of a procedure that has a logico `a` and an inteiro `n`.
[[nodiscard]] std::string NestedStatement(const std::string& open, const std::string& close, int levels);

// A constant that joins `count` times `term` with `sign` between.
[[nodiscard]] std::string LongSum(const std::string& type, const std::string& term, const std::string& sign, int count);

// A procedure whose only statement sets a value through `count` times `step` behind `base`.
[[nodiscard]] std::string LongChain(const std::string& base, const std::string& step, int count);

// `count` declarations, each `declaration` with every "#" replaced by its number, behind the line of the module.
[[nodiscard]] std::string Numbered(const std::string& declaration, int count);

[[nodiscard]] std::string ManyBranches(int count);

// A list of `elements` numbers with `gap` empty lines behind each.
[[nodiscard]] std::string TallList(int elements, int gap);

// A function with `params` parameters and a call that gives them all, in the module or in a behaviour.
[[nodiscard]] std::string WideCall(int params, bool inBehaviour);

// `count` functions, each calling the one declared before it, and a hook that reaches the last.
[[nodiscard]] std::string CallLadder(int count);

// A loop over a list, in a procedure that has `locals` locals before it.
[[nodiscard]] std::string LoopBehindLocals(int locals);

// A record of `fields` fields with a value each, and `values` locals that hold one.
[[nodiscard]] std::string RepeatedDefaults(int fields, int values);

// `count` records, each of which holds all those behind it, the last first.
[[nodiscard]] std::string RecordsInRecords(int count);

// `count` enumerations, of which the last one is used.
[[nodiscard]] std::string UseOfLastEnum(int count);

}  // namespace tavrel::tests
