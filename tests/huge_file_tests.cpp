// A script too large for positions of 32 bits. A program of its own, since it needs more memory than all other tests
// together; it skips itself where there is too little.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t Gigabyte = std::size_t{1} << 30;

std::size_t AvailableMemory() {
    std::ifstream info("/proc/meminfo");
    for (std::string word; info >> word;) {
        std::size_t kilobytes = 0;
        if (word == "MemAvailable:" && info >> kilobytes) return kilobytes * 1024;
    }
    return 0;
}

// Where a file that is all hole takes no memory when it is read.
fs::path RoomyFolder() {
    return fs::is_directory("/dev/shm") ? fs::path("/dev/shm") : fs::temp_directory_path();
}

TEST(HugeFile, IsReportedAboveFourGigabytes) {
    if (TAVREL_SANITIZED != 0 || AvailableMemory() < 10 * Gigabyte) GTEST_SKIP() << "needs 10 GB of free memory";
    const TemporaryFolder folder(RoomyFolder());
    WriteFile(folder.path / "grande.tvl", "");
    // More than memory holds: the rest of the file must not be read only to be refused.
    fs::resize_file(folder.path / "grande.tvl", 1024 * Gigabyte);
    const Finished finished = RunTool({"verificar", "grande.tvl"}, folder.path, {100, 1UL << 20});
    EXPECT_EQ(finished.code, 1);
    EXPECT_EQ(finished.err,
              "grande.tvl:1:1: erro: o arquivo passa de 4 GiB, o maximo de um script\n1 de 1 arquivo(s) com erro\n");
}

}  // namespace

}  // namespace tavrel::tests
