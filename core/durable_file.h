// Replaces a file so that neither a crash nor a full disk can leave it half written. The content goes to a temporary
// beside the target, reaches stable storage there, and only then takes the target's place. Until that exchange every
// failure leaves the previous file as it was. What ends at the target is the temporary itself: permissions of the
// previous file are not carried over, and a link there gives way to the new file, while what it led to stays untouched.
// Two writers of one target at a time are not foreseen. Failures are told in the result; nothing is printed.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <iosfwd>
#include <string>

namespace tavrel::core {

// `code` is 0 for a written file, 2 for a folder that could not be created, 3 for data not written, not synced or not
// confirmed, 4 for a target not replaced, 5 for a producer that refused. Hosts keep these numbers: 1 stays unused.
struct WriteResult {
    std::int32_t code = 0;
    std::string path;     // the whole target path as UTF-8; empty on success
    std::string message;  // a sentence for the user, in Portuguese; empty on success
};

// Text lets the platform translate line ends, where it does so; Bytes never changes anything.
enum class FileEncoding : std::int32_t { Bytes = 0, Text = 1 };

enum class WriteStep : std::int32_t { None = 0, CreateFolder = 1, OpenTemporary = 2, Write = 3, Sync = 4, Replace = 5 };

// Writes the content to the stream. False abandons the write, and the text may then say why.
using ContentProducer = std::function<bool(std::ostream&, std::string&)>;

// Replaces `target` by what the producer writes, creating missing folders. May block on the disk. What the producer
// throws passes through and leaves the temporary behind.
[[nodiscard]] WriteResult WriteFileDurably(const std::filesystem::path& target, const ContentProducer& producer,
                                           FileEncoding encoding);

// The same for a text that is already whole.
[[nodiscard]] WriteResult WriteFileDurably(const std::filesystem::path& target, const std::string& text,
                                           FileEncoding encoding);

// The text overload, with bytes as they are, for callers that only show the message: on false it is in `error`.
[[nodiscard]] bool WriteFileReplacing(const std::filesystem::path& target, const std::string& text, std::string& error);

// Arms one failure: the next write of any thread that reaches `step` behaves as if that step had failed, once.
void InjectWriteFailure(WriteStep step);

}  // namespace tavrel::core
