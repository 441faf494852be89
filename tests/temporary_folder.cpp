#include "tests/temporary_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tavrel::tests {

TemporaryFolder::TemporaryFolder(const std::filesystem::path& parent) {
    std::string name = (parent / "tavrel_XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    path = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    std::filesystem::remove_all(path, error);
}

}  // namespace tavrel::tests
