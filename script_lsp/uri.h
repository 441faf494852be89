// Between the URIs that a client sends and the paths of files, both as UTF-8. Bytes in, bytes out: nothing is looked up
// on the disk.
#pragma once

#include <string>

namespace tavrel::script_lsp {

// The path that a "file://" URI names, escapes resolved; any other text counts as a path already.
[[nodiscard]] std::string PathFromUri(const std::string& uri);

// The URI that this server gives to a path, backslashes as slashes. A client may spell the URI of the same file in
// another way.
[[nodiscard]] std::string UriFromPath(const std::string& path);

// The part of a path up to and including its last "/", empty without one.
[[nodiscard]] std::string FolderOf(const std::string& path);

}  // namespace tavrel::script_lsp
