// The system's operations on Windows: names are UTF-16 here and UTF-8 in the rest of the program, and a replacement
// that writes through leaves nothing of a folder to flush.
#include "core/platform.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <cwchar>

namespace tavrel::core {

namespace {

// Without WC_ERR_INVALID_CHARS a lone surrogate becomes U+FFFD: the name will not be found, but the program goes on.
// Command lines and paths have at most 32,767 characters.
std::string Utf8(const wchar_t* wide) {
    const int length = static_cast<int>(std::wcslen(wide));
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide, length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide, length, text.data(), size, nullptr, nullptr);
    return text;
}

}  // namespace

std::vector<std::string> Arguments(int argc, char** argv) {
    // The narrow arguments are in the ANSI code page, which cannot hold every file name.
    int count = 0;
    wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
    if (wide == nullptr) return {argv, argv + argc};
    std::vector<std::string> arguments;
    for (int i = 0; i < count; ++i) arguments.push_back(Utf8(wide[i]));
    LocalFree(wide);
    return arguments;
}

std::string Utf8Of(const std::filesystem::path& path) {
    return Utf8(path.c_str());
}

void UseBinaryStreams() {
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}

bool platform::SyncFile(const std::filesystem::path& file) {
    const HANDLE handle =
        CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) return false;
    const bool flushed = FlushFileBuffers(handle) != 0;
    CloseHandle(handle);
    return flushed;
}

bool platform::SyncDirectory(const std::filesystem::path&) {
    return true;  // the write-through of ReplaceDurably has put the directory entry on the disk
}

bool win32::ReplaceDurably(const std::filesystem::path& from, const std::filesystem::path& to) {
    return MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

}  // namespace tavrel::core
