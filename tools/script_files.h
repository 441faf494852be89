// Between the file system and the front end: which scripts an argument names, what a file holds, and where an import
// is found. Only Collect prints; for the others the message belongs to the caller.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "core/script/compiler/build.h"

namespace tavrel::tools {

// The path that a UTF-8 text names. False for a text that no path can hold: where names are UTF-16, broken UTF-8 has
// none.
[[nodiscard]] bool PathOf(const std::string& text, std::filesystem::path& out);

// The path as messages show it: UTF-8, with forward slashes.
[[nodiscard]] std::string Shown(const std::filesystem::path& file);

// Appends the file that a UTF-8 argument names, or the scripts of a folder in order. False after its own message.
[[nodiscard]] bool Collect(const std::string& argument, std::vector<std::filesystem::path>& paths);

// Reads a regular file whole, without a leading byte-order mark. On false `text` is left alone.
[[nodiscard]] bool ReadText(const std::filesystem::path& file, std::string& text);

// Finds imports beside the main script, whichever file asks for them.
[[nodiscard]] core::script::ImportLoader LoaderFor(const std::filesystem::path& script);

}  // namespace tavrel::tools
