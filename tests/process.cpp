#include "tests/process.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

void SendStream(int stream, const std::filesystem::path& file) {
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(opened, stream);
    close(opened);
}

void Limit(const ProcessLimits& limits) {
    alarm(limits.seconds);
    if (limits.stackBytes == 0) return;
    const rlimit stack{limits.stackBytes, limits.stackBytes};
    setrlimit(RLIMIT_STACK, &stack);
}

// Never returns: the child becomes the tool, or ends with the shell's code for a command that cannot start.
[[noreturn]] void BecomeTool(std::vector<char*>& words, const std::filesystem::path& folder,
                             const std::filesystem::path& streams, const ProcessLimits& limits,
                             const std::filesystem::path& both) {
    SendStream(STDOUT_FILENO, both.empty() ? streams / "out" : both);
    SendStream(STDERR_FILENO, streams / "err");
    if (!both.empty()) dup2(STDOUT_FILENO, STDERR_FILENO);
    dup2(open("/dev/null", O_RDONLY), STDIN_FILENO);
    Limit(limits);
    if (chdir(folder.c_str()) == 0) execv(words[0], words.data());
    _exit(127);
}

}  // namespace

Finished RunTool(const std::vector<std::string>& args, const std::filesystem::path& folder, const ProcessLimits& limits,
                 const std::filesystem::path& both) {
    const TemporaryFolder streams;
    std::vector<std::string> line{TAVREL_TOOL};
    line.insert(line.end(), args.begin(), args.end());
    std::vector<char*> words;
    words.reserve(line.size() + 1);
    for (std::string& word : line) words.push_back(word.data());
    words.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) BecomeTool(words, folder, streams.path, limits, both);
    int status = 0;
    waitpid(child, &status, 0);

    Finished finished;
    finished.out = ReadFile(streams.path / "out");
    finished.err = ReadFile(streams.path / "err");
    if (WIFEXITED(status)) finished.code = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) finished.signal = WTERMSIG(status);
    return finished;
}

std::string ReadFile(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void WriteFile(const std::filesystem::path& file, const std::string& content) {
    std::ofstream stream(file, std::ios::binary);
    stream.write(content.data(), static_cast<std::streamsize>(content.size()));
}

}  // namespace tavrel::tests
