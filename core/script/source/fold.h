// The small text functions that make accents optional in the language. They know only the accented letters of
// Portuguese and its neighbours; every other byte passes through.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tavrel::core::script {

// False for a UTF-8 continuation byte.
[[nodiscard]] constexpr bool StartsCharacter(unsigned char byte) {
    return (byte & 0xC0) != 0x80;
}

// The ASCII letter under the accented letter at `at`, with its length in bytes; 0 and length 0 where none stands.
[[nodiscard]] int AccentedLetter(std::string_view text, std::size_t at, int& length);

// Accents off, case kept: the identity of every name.
[[nodiscard]] std::string FoldName(std::string_view name);

// As FoldName, then ASCII capitals lowered: recognises contextual words.
[[nodiscard]] std::string FoldLower(std::string_view name);

// Whether a name, as written, folds to `folded`.
[[nodiscard]] bool FoldsTo(std::string_view name, std::string_view folded);

// True when every byte is ASCII, so that a name is its own fold.
[[nodiscard]] bool IsAscii(std::string_view text);

// The number of code points of a well-formed text: bytes that are no continuation.
[[nodiscard]] std::uint64_t CountCharacters(std::string_view text);

}  // namespace tavrel::core::script
