// The base protocol: messages with a small header, as they come over a stream. A text comes in and goes out; what it
// holds is not looked at here. Nothing is ever said about a broken header: it ends the connection.
#pragma once

#include <cstddef>
#include <istream>
#include <string>

namespace tavrel::script_lsp {

// Above this a length is as good as none, and a line of the header is no header. Far above what a client sends.
inline constexpr unsigned long long MaxBodyBytes = 1ULL << 30;
inline constexpr std::size_t MaxHeaderBytes = std::size_t{64} * 1024;

// Reads the content of the next message into `body`, waiting for it. False ends the connection: the input ended, also
// within a message, the header is malformed, or the content is too large for memory. Memory grows with what arrives,
// not with what a header announces.
[[nodiscard]] bool ReadMessage(std::istream& in, std::string& body);

// The whole text to send for one content.
[[nodiscard]] std::string Frame(const std::string& body);

}  // namespace tavrel::script_lsp
