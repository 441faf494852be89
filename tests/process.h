// Starts the tool as a user would and brings back all that it left: both streams, byte for byte, and how it ended.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tavrel::tests {

struct ProcessLimits {
    unsigned seconds = 60;         // past this the process is ended and counts as hung
    unsigned long stackBytes = 0;  // size of the main stack; 0 leaves that of the system
};

struct Finished {
    std::string out;
    std::string err;
    int code = -1;   // exit code; -1 when a signal ended the process
    int signal = 0;  // that signal, SIGALRM for a process that hung
};

// Runs the built tool in `folder`, with nothing on standard input. A file `both` takes the two streams in place of
// `out` and `err`.
[[nodiscard]] Finished RunTool(const std::vector<std::string>& args, const std::filesystem::path& folder,
                               const ProcessLimits& limits = {}, const std::filesystem::path& both = {});

// The whole content of a file; empty when there is none.
[[nodiscard]] std::string ReadFile(const std::filesystem::path& file);

void WriteFile(const std::filesystem::path& file, const std::string& content);

}  // namespace tavrel::tests
