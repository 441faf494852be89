// "formatar": lays each file out in memory, restores the line ends that it had, and writes it only where the bytes
// differ from those read. The durable writer puts a new file in the place of the name it is given, so the name of a
// link is followed to its end before: the link stays, and the file that it leads to is exchanged.
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "core/durable_file.h"
#include "core/script/source/diagnostics.h"
#include "core/script/source/source_file.h"
#include "core/script/syntax/formatter.h"
#include "tools/arguments.h"
#include "tools/commands.h"
#include "tools/console.h"
#include "tools/script_files.h"

namespace tavrel::tools {

namespace {

namespace fs = std::filesystem;
using core::script::FormatResult;

constexpr int MaxLinks = 64;  // Linux follows 40 from one name, Windows 63

struct Counts {
    std::int32_t failed = 0;
    std::int32_t changed = 0;
};

std::string WithCarriageReturns(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 16);
    for (std::size_t start = 0; start < text.size();) {
        // What Format returns ends in a line feed.
        const std::size_t lineFeed = text.find('\n', start);
        out.append(text, start, lineFeed - start).append("\r\n");
        start = lineFeed + 1;
    }
    return out;
}

std::string ReasonOf(FormatResult refusal) {
    return refusal == FormatResult::TooLarge ? "o texto arrumado nao caberia no limite"
                                             : "o arquivo nao pode ser lido inteiro";
}

// The layout of `text`, with the line ends that the file has. False after the reports.
bool LayOut(const fs::path& path, const std::string& text, std::string& out) {
    const core::script::SourceFile source(Shown(path), text);
    core::script::Diagnostics diagnostics;
    const FormatResult result = core::script::TryFormat(source, diagnostics, out);
    if (result != FormatResult::Done) {
        PrintError(diagnostics.Describe());
        PrintError(Shown(path) + ": nao formatei, porque " + ReasonOf(result) + "\n");
        return false;
    }
    if (text.find("\r\n") != std::string::npos) out = WithCarriageReturns(out);
    return true;
}

bool RefuseToWrite(const fs::path& path, const std::string& reason) {
    PrintError("erro: nao consegui gravar " + Shown(path) + ": " + reason + "\n");
    return false;
}

// The file that a name stands for: behind a link what it leads to, however many links on, else the name itself. One
// link at a time, since a resolved path would begin at the root, and folders up there may be closed to this user. False
// where the links do not end at the file that was read: it went away since, or it had no name any more.
bool FollowLinks(const fs::path& path, fs::path& target) {
    target = path;
    std::error_code error;
    for (int links = 0; links < MaxLinks && fs::is_symlink(fs::symlink_status(target, error)); ++links) {
        target = target.parent_path() / fs::read_symlink(target, error);
    }
    return target == path || fs::equivalent(path, target, error);
}

bool Write(const fs::path& path, const std::string& text) {
    fs::path target;
    if (!FollowLinks(path, target)) return RefuseToWrite(path, "o link nao leva mais a um arquivo.");
    const core::WriteResult result = core::WriteFileDurably(target, text, core::FileEncoding::Bytes);
    if (result.code != 0) return RefuseToWrite(path, result.message);
    Print(Shown(path) + ": arrumado\n");
    return true;
}

// False when the file could not be read, laid out or written.
bool FormatFile(const fs::path& path, bool check, std::int32_t& changed) {
    std::string text;
    if (!ReadText(path, text)) {
        PrintError("erro: nao consegui ler " + Shown(path) + "\n");
        return false;
    }
    std::string out;
    if (!LayOut(path, text, out)) return false;
    if (out == text) return true;
    ++changed;
    if (!check) return Write(path, out);
    Print(Shown(path) + ": ha o que arrumar\n");
    return true;
}

int Summarise(std::size_t files, const Counts& counts, bool check) {
    if (counts.failed > 0) return FailedExit;
    const std::string changed = std::to_string(counts.changed);
    if (check && counts.changed > 0) {
        PrintError(changed + " arquivo(s) fora do formato\n");
        return FailedExit;
    }
    Print(std::to_string(files) + " arquivo(s) no formato" + (check ? "" : ", " + changed + " arrumado(s)") + "\n");
    return GoodExit;
}

}  // namespace

int FormatCommand(const std::vector<std::string>& args) {
    FileArguments arguments;
    if (!TakeFileArguments(args, true, arguments)) return RefusedExit;
    Counts counts;
    for (const fs::path& path : arguments.paths) {
        if (!FormatFile(path, arguments.check, counts.changed)) ++counts.failed;
    }
    return Summarise(arguments.paths.size(), counts, arguments.check);
}

}  // namespace tavrel::tools
