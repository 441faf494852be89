#include "core/platform.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

namespace tavrel::core {
namespace {

namespace fs = std::filesystem;

class PlatformTest : public testing::Test {
protected:
    void SetUp() override {
        folder = fs::path(testing::TempDir()) / ("tavrel_platform_" + std::to_string(std::random_device{}()));
        fs::create_directories(folder);
    }
    void TearDown() override { fs::remove_all(folder); }

    fs::path Write(const char* name, const char* content) const {
        std::ofstream(folder / name, std::ios::binary) << content;
        return folder / name;
    }

    static std::string Read(const fs::path& file) {
        std::ifstream stream(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }

    fs::path folder;
};

TEST_F(PlatformTest, SyncFileNeitherChangesNorCreatesAFile) {
    const fs::path file = Write("jogo.sav", "123");
    EXPECT_TRUE(platform::SyncFile(file));
    EXPECT_EQ(Read(file), "123");
    EXPECT_FALSE(platform::SyncFile(folder / "nada"));
    EXPECT_FALSE(fs::exists(folder / "nada"));
}

TEST_F(PlatformTest, SyncDirectoryTakesTheEmptyPathAsTheCurrentFolder) {
    EXPECT_TRUE(platform::SyncDirectory(folder));
    EXPECT_TRUE(platform::SyncDirectory(""));
#ifndef _WIN32
    EXPECT_FALSE(platform::SyncDirectory(folder / "nada"));
#endif
}

TEST_F(PlatformTest, ReplaceDurablyTakesThePlaceOfAnExistingFileOrOfNone) {
    for (const char* target : {"velho", "nenhum"}) {
        Write("velho", "antes");
        const fs::path from = Write("novo", "depois");
        EXPECT_TRUE(win32::ReplaceDurably(from, folder / target)) << target;
        EXPECT_EQ(Read(folder / target), "depois") << target;
        EXPECT_FALSE(fs::exists(from)) << target;
    }
}

TEST_F(PlatformTest, ReplaceDurablyWithoutASourceLeavesTheTarget) {
    const fs::path to = Write("velho", "antes");
    EXPECT_FALSE(win32::ReplaceDurably(folder / "nada", to));
    EXPECT_EQ(Read(to), "antes");
}

}  // namespace
}  // namespace tavrel::core
