// The system's operations where names are bytes and a folder is a file that can be flushed. A signal may end a system
// call early; such calls are made again.
#include "core/platform.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace tavrel::core {

namespace {

int OpenPatiently(const char* name, int flags) {
    int descriptor = -1;
    do {
        descriptor = open(name, flags | O_CLOEXEC);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

// To stable storage itself: where the system knows the difference, a plain fsync may stop at the drive's own cache.
bool Flush(int descriptor) {
#ifdef F_FULLFSYNC
    if (fcntl(descriptor, F_FULLFSYNC) == 0) return true;
#endif
    int result = -1;
    do {
        result = fsync(descriptor);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

bool Sync(const char* name, int flags) {
    const int descriptor = OpenPatiently(name, flags);
    if (descriptor < 0) return false;
    const bool flushed = Flush(descriptor);
    close(descriptor);
    return flushed;
}

}  // namespace

std::vector<std::string> Arguments(int argc, char** argv) {
    return {argv, argv + argc};
}

std::string Utf8Of(const std::filesystem::path& path) {
    return path.native();
}

void UseBinaryStreams() {}  // bytes are bytes here

bool platform::SyncFile(const std::filesystem::path& file) {
    return Sync(file.c_str(), O_WRONLY);
}

bool platform::SyncDirectory(const std::filesystem::path& folder) {
    return Sync(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY);
}

bool win32::ReplaceDurably(const std::filesystem::path& from, const std::filesystem::path& to) {
    return std::rename(from.c_str(), to.c_str()) == 0;
}

}  // namespace tavrel::core
