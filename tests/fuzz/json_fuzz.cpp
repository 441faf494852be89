// What reads as JSON writes as JSON that reads as the same, and writes the same again.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/json.h"
#include "tests/fuzz/require.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tavrel::fuzz;
    using tavrel::core::Json;
    Json value;
    std::string error;
    if (!ParseJson(TextOf(data, size), value, error)) {
        Require(!error.empty());
        return 0;
    }
    Require(error.empty());
    const std::string text = WriteJson(value);
    Json again;
    Require(ParseJson(text, again, error) && WriteJson(again) == text);
    return 0;
}
