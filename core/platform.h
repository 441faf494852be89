// The few operations that differ by operating system. Each reports by its result and never throws.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavrel::core {

// The program's arguments as UTF-8, element 0 being the program itself.
[[nodiscard]] std::vector<std::string> Arguments(int argc, char** argv);

// A path as UTF-8, its separators as they are. What has no UTF-8 form, such as half of a surrogate pair, shows as
// U+FFFD.
[[nodiscard]] std::string Utf8Of(const std::filesystem::path& path);

// From here on nothing translates line ends on standard input and output.
void UseBinaryStreams();

namespace platform {

// The content of a closed file has reached stable storage; false when it cannot be opened or flushed.
[[nodiscard]] bool SyncFile(const std::filesystem::path& file);

// The latest replacement inside the folder has reached stable storage. An empty path is the current folder.
[[nodiscard]] bool SyncDirectory(const std::filesystem::path& folder);

}  // namespace platform

namespace win32 {

// `from` takes the place of `to` in one step, whether or not `to` exists; false with both files as they were. It is
// named for the system whose call promises all of this by itself; every other supplies the same.
[[nodiscard]] bool ReplaceDurably(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace win32

}  // namespace tavrel::core
