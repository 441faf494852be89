// What random scripts are made of, as data: the types, and for each type the ways to write a value of it, which
// stand in the file `forms`. A form is text with holes: "{type}" takes any expression of that type, "{=type}" a
// variable or another value that a dot or an index may follow, "{!type}" a variable that may be written here, "{&}" the
// last variable again, and "{{}}" stands for
// "{}". "$" is any type that lists hold, "@k" and "@v" are key and value of a dictionary, the same throughout a form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/random/numbers.h"

namespace tavrel::tests {

// Where a form may be chosen, besides the hooks it is valid in.
enum class Use : std::uint8_t {
    Safe,     // anywhere
    Risky,    // in scripts that may fault; others mostly run to their end
    World,    // in scripts for a world
    Literal,  // only where no variable may stand
};

struct Form {
    std::string result;
    std::string text;
    std::uint32_t hooks = 0;  // the hooks it is valid in, bit k for HookKind k; 0 for all and outside of them
    Use use = Use::Safe;
};

// Every type of the scripts, in the language's own words.
[[nodiscard]] const std::vector<std::string>& AllTypes();

// The forms of all values, and the statements that change a part of one or do nothing but call; those have no result.
[[nodiscard]] const std::vector<Form>& AllForms();

// The value of a type that needs no variable.
[[nodiscard]] std::string LiteralOf(RandomNumbers& numbers, const std::string& type);

// The ways to bind "$" and "@" in a form so that its result is `type`: its texts with them replaced, at most one for
// each way to get that result. What the result does not bind is chosen at random.
void AddBound(RandomNumbers& numbers, const Form& form, const std::string& type, std::vector<std::string>& texts);

// The declarations that the forms rely on: records, enumerations, actions, events and a few functions.
[[nodiscard]] std::vector<std::string> CommonDeclarations();

}  // namespace tavrel::tests
