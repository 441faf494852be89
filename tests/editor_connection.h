// The tool as a language server, from the editor's side: bytes to its input, messages from its output.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace tavrel::tests {

class EditorConnection {
public:
    // Starts the tool in `folder`. It is ended when it hangs for minutes, and with this object at the latest.
    explicit EditorConnection(const std::filesystem::path& folder);
    ~EditorConnection();
    EditorConnection(const EditorConnection&) = delete;
    EditorConnection& operator=(const EditorConnection&) = delete;

    // A server that does not listen any more takes nothing, without complaint.
    void SendBytes(const std::string& bytes) const;
    void SendMessage(const std::string& body) const;

    // Waits for the next message. False when the output ends before it, or goes on with anything else.
    [[nodiscard]] bool Receive(std::string& body);

    // The server gets no more input.
    void EndInput();
    // The server's answers find no reader from here on.
    void StopReading();

    // What is left of the output, once the server ended it.
    [[nodiscard]] std::string Rest();

    // Ends the input and waits: the exit code, or the negative number of the signal that ended the server.
    [[nodiscard]] int End();

    // Memory that the server has in use at the moment.
    [[nodiscard]] long ResidentBytes() const;

private:
    bool Fill();

    pid_t process = -1;
    int input = -1;
    int output = -1;
    std::string received;
};

}  // namespace tavrel::tests
