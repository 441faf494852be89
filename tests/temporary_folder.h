// A folder of its own for one test, gone with all in it when the object goes.
#pragma once

#include <filesystem>

namespace tavrel::tests {

struct TemporaryFolder {
    std::filesystem::path path;

    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path());
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
};

}  // namespace tavrel::tests
