#include "tests/editor_connection.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstddef>
#include <fstream>

namespace tavrel::tests {

namespace {

constexpr unsigned MaxSeconds = 1200;

[[noreturn]] void BecomeServer(const std::filesystem::path& folder, const int* inputPipe, const int* outputPipe) {
    dup2(inputPipe[0], STDIN_FILENO);
    dup2(outputPipe[1], STDOUT_FILENO);
    for (const int stream : {inputPipe[0], inputPipe[1], outputPipe[0], outputPipe[1]}) close(stream);
    std::signal(SIGPIPE, SIG_DFL);
    alarm(MaxSeconds);
    if (chdir(folder.c_str()) == 0) execl(TAVREL_TOOL, TAVREL_TOOL, "--lsp", nullptr);
    _exit(127);
}

}  // namespace

EditorConnection::EditorConnection(const std::filesystem::path& folder) {
    std::signal(SIGPIPE, SIG_IGN);
    int inputPipe[2] = {-1, -1};
    int outputPipe[2] = {-1, -1};
    if (pipe(inputPipe) != 0 || pipe(outputPipe) != 0) return;
    process = fork();
    if (process == 0) BecomeServer(folder, inputPipe, outputPipe);
    close(inputPipe[0]);
    close(outputPipe[1]);
    input = inputPipe[1];
    output = outputPipe[0];
}

EditorConnection::~EditorConnection() {
    if (process > 0) kill(process, SIGKILL);
    static_cast<void>(End());
    StopReading();
}

void EditorConnection::SendBytes(const std::string& bytes) const {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = write(input, bytes.data() + sent, bytes.size() - sent);
        if (count <= 0) return;
        sent += static_cast<std::size_t>(count);
    }
}

void EditorConnection::SendMessage(const std::string& body) const {
    SendBytes("Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body);
}

bool EditorConnection::Fill() {
    char buffer[65536];
    const ssize_t count = read(output, buffer, sizeof buffer);
    if (count <= 0) return false;
    received.append(buffer, static_cast<std::size_t>(count));
    return true;
}

bool EditorConnection::Receive(std::string& body) {
    const std::string start = "Content-Length: ";
    std::size_t end = 0;
    while ((end = received.find("\r\n\r\n")) == std::string::npos) {
        if (!Fill()) return false;
    }
    if (!received.starts_with(start)) return false;
    const std::size_t size = std::stoul(received.substr(start.size(), end - start.size()));
    const std::size_t head = end + 4;
    while (received.size() < head + size) {
        if (!Fill()) return false;
    }
    body = received.substr(head, size);
    received.erase(0, head + size);
    return true;
}

void EditorConnection::EndInput() {
    if (input >= 0) close(input);
    input = -1;
}

void EditorConnection::StopReading() {
    if (output >= 0) close(output);
    output = -1;
}

std::string EditorConnection::Rest() {
    while (Fill()) {
    }
    return received;
}

int EditorConnection::End() {
    EndInput();
    if (process <= 0) return 0;
    int status = 0;
    waitpid(process, &status, 0);
    process = -1;
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

long EditorConnection::ResidentBytes() const {
    std::ifstream file("/proc/" + std::to_string(process) + "/statm");
    long all = 0;
    long resident = 0;
    file >> all >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

}  // namespace tavrel::tests
