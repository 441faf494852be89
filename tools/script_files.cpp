// Asks the file system with error codes only and takes its answers as hints: a name can change its meaning between the
// question and the use. A script is a regular file, links followed; what else a name stands for, a pipe or a device, is
// not opened at all, since that may wait for ever.
#include "tools/script_files.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <memory>
#include <system_error>
#include <utility>

#include "core/platform.h"
#include "tools/console.h"

namespace tavrel::tools {

namespace {

namespace fs = std::filesystem;

struct CloseFile {
    void operator()(std::FILE* stream) const { std::fclose(stream); }
};
using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

// More than any script may hold, also behind a byte-order mark: reading on would tell nothing new and fill the memory.
constexpr std::uintmax_t MaxUseful = std::uintmax_t{core::script::MaxSourceSize} + 4;

// No status, no type: a link that leads nowhere and a path that cannot be asked about are not regular either.
bool IsRegular(const fs::path& file) {
    std::error_code error;
    return fs::is_regular_file(fs::status(file, error));
}

OpenFile OpenForReading(const fs::path& file) {
#ifdef _WIN32
    return OpenFile(_wfopen(file.c_str(), L"rb"));
#else
    return OpenFile(std::fopen(file.c_str(), "rb"));
#endif
}

// The size is only a hint: the file may grow meanwhile, and some regular files promise nothing. What is too large for a
// script is read just so far that it shows.
bool ReadAll(std::FILE* stream, std::uintmax_t hint, std::string& text) {
    std::setvbuf(stream, nullptr, _IONBF, 0);
    text.resize(static_cast<std::size_t>(std::min(hint, MaxUseful)) + 1);
    std::size_t filled = 0;
    while (true) {
        filled += std::fread(text.data() + filled, 1, text.size() - filled, stream);
        if (filled < text.size() || filled > MaxUseful) break;
        text.resize(text.size() * 2);
    }
    text.resize(filled);
    return std::ferror(stream) == 0;
}

bool ListScripts(const fs::path& folder, std::vector<fs::path>& scripts) {
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    while (!error && entry != fs::directory_iterator()) {
        // The entry may know its type from the listing, also where the folder does not let its files be asked.
        std::error_code unknown;
        const bool regular = entry->path().extension() == ".tvl" && entry->is_regular_file(unknown);
        if (regular) scripts.push_back(entry->path());
        entry.increment(error);
    }
    return !error;
}

bool CollectFolder(const std::string& argument, const fs::path& folder, std::vector<fs::path>& paths) {
    std::vector<fs::path> scripts;
    if (!ListScripts(folder, scripts)) {
        PrintError("erro: nao consegui ler a pasta " + argument + "\n");
        return false;
    }
    std::sort(scripts.begin(), scripts.end());
    std::move(scripts.begin(), scripts.end(), std::back_inserter(paths));
    return true;
}

}  // namespace

bool PathOf(const std::string& text, fs::path& out) {
    try {
        out = fs::path(std::u8string(text.begin(), text.end()));
    } catch (const std::system_error&) {
        return false;
    }
    return true;
}

std::string Shown(const fs::path& file) {
    return core::Utf8Of(file.generic_string<fs::path::value_type>());
}

bool Collect(const std::string& argument, std::vector<fs::path>& paths) {
    fs::path path;
    std::error_code error;
    const fs::file_status status = PathOf(argument, path) ? fs::status(path, error) : fs::file_status();
    if (fs::is_directory(status)) return CollectFolder(argument, path, paths);
    if (!fs::is_regular_file(status)) {
        PrintError("erro: nao achei " + argument + "\n");
        return false;
    }
    paths.push_back(path);
    return true;
}

bool ReadText(const fs::path& file, std::string& text) {
    // The system would take a name with a NUL for the shorter one before it.
    if (file.native().find(fs::path::value_type()) != fs::path::string_type::npos) return false;
    // Opening a pipe or a device may wait for ever, so the type is asked first.
    if (!IsRegular(file)) return false;
    const OpenFile stream = OpenForReading(file);
    if (!stream) return false;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    std::string read;
    if (!ReadAll(stream.get(), error ? 0 : size, read)) return false;
    if (read.starts_with("\xEF\xBB\xBF")) read.erase(0, 3);
    text = std::move(read);
    return true;
}

core::script::ImportLoader LoaderFor(const fs::path& script) {
    return [folder = script.parent_path()](const std::string& name, core::script::SourceFile& out) {
        fs::path file;
        if (!PathOf(name + ".tvl", file)) return false;
        file = folder / file;
        std::string text;
        if (!ReadText(file, text)) return false;
        out = core::script::SourceFile(Shown(file), std::move(text));
        return true;
    };
}

}  // namespace tavrel::tools
