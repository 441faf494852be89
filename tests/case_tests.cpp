// Every folder cases/<construct>/<case>/ is a test: its scripts, and `session`, what a user types and sees there:
//
//     $ ARGUMENTS   the tool is started with them; double quotes keep blanks inside a word and make an empty one
//     | TEXT        a line of standard output, byte for byte; "|~TEXT" one that does not end
//     ! TEXT        a line of standard error
//     = CODE        how it ended, where that is not 0
//
// Under `after/` stand the scripts that the tool rewrites, as it leaves them. With UPDATE_CASES=1 in the environment
// what the tool says is written down; read that diff as if it were code.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> Cases() {
    std::vector<fs::path> cases;
    for (const auto& construct : fs::directory_iterator(TAVREL_CASES)) {
        for (const auto& folder : fs::directory_iterator(construct)) cases.push_back(folder.path());
    }
    std::sort(cases.begin(), cases.end());
    return cases;
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) {
    std::string name = info.param.parent_path().filename().string() + "_" + info.param.filename().string();
    for (char& letter : name) {
        if (std::isalnum(static_cast<unsigned char>(letter)) == 0) letter = '_';
    }
    return name;
}

std::vector<std::string> SplitLine(const std::string& line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool open = false;
    for (const char letter : line) {
        if (letter == ' ' && !quoted) {
            open = false;
            continue;
        }
        if (!open) words.emplace_back();
        open = true;
        if (letter == '"') {
            quoted = !quoted;
        } else {
            words.back() += letter;
        }
    }
    return words;
}

void CopyScripts(const fs::path& from, const fs::path& to) {
    for (const auto& entry : fs::directory_iterator(from)) {
        const std::string name = entry.path().filename().string();
        if (name == "session" || name == "after") continue;
        fs::copy(entry.path(), to / name, fs::copy_options::recursive);
    }
}

using Files = std::map<std::string, std::string>;  // contents by name

// What stands in a folder itself, where there is one; folders in it are left aside.
Files FilesIn(const fs::path& folder) {
    Files files;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error)) {
        if (entry.is_regular_file()) files[entry.path().filename().string()] = ReadFile(entry.path());
    }
    return files;
}

std::string Marked(const std::string& mark, const std::string& text) {
    std::string lines;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = text.find('\n', at);
        const std::string line = text.substr(at, end - at);
        lines += mark + (end == std::string::npos ? "~" : line.empty() ? "" : " ") + line + "\n";
        at = end == std::string::npos ? text.size() : end + 1;
    }
    return lines;
}

// The session as it should be, with what the tool really says.
std::string Play(const std::string& session, const fs::path& folder) {
    std::string written;
    std::istringstream lines(session);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with("$ ")) continue;
        const Finished finished = RunTool(SplitLine(line.substr(2)), folder);
        EXPECT_EQ(finished.signal, 0) << line;
        written += line + "\n" + Marked("|", finished.out) + Marked("!", finished.err);
        if (finished.code != 0) written += "= " + std::to_string(finished.code) + "\n";
    }
    return written;
}

class CaseTest : public testing::TestWithParam<fs::path> {};

TEST_P(CaseTest, GoesAsWritten) {
    const fs::path& folder = GetParam();
    const TemporaryFolder copy;
    CopyScripts(folder, copy.path);
    const Files before = FilesIn(copy.path);
    const std::string session = ReadFile(folder / "session");
    const std::string written = Play(session, copy.path);
    Files changed = FilesIn(copy.path);
    std::erase_if(changed, [&before](const auto& file) {
        const auto found = before.find(file.first);
        return found != before.end() && found->second == file.second;
    });
    if (std::getenv("UPDATE_CASES") != nullptr) {
        WriteFile(folder / "session", written);
        fs::remove_all(folder / "after");
        if (!changed.empty()) fs::create_directory(folder / "after");
        for (const auto& [name, content] : changed) WriteFile(folder / "after" / name, content);
    }
    EXPECT_EQ(written, ReadFile(folder / "session"));
    EXPECT_EQ(changed, FilesIn(folder / "after"));
}

INSTANTIATE_TEST_SUITE_P(Scripts, CaseTest, testing::ValuesIn(Cases()), NameOf);

// Every script of every example stands on its own, the imported ones too.
TEST(Examples, Compile) {
    std::vector<std::string> line{"verificar"};
    for (const auto& folder : fs::directory_iterator(TAVREL_EXAMPLES)) line.push_back(folder.path().string());
    const Finished finished = RunTool(line, TAVREL_EXAMPLES);
    EXPECT_EQ(finished.code, 0);
    EXPECT_EQ(finished.err, "");
}

TEST(Examples, AreInFormat) {
    std::vector<std::string> line{"formatar", "--conferir"};
    for (const auto& folder : fs::directory_iterator(TAVREL_EXAMPLES)) line.push_back(folder.path().string());
    const Finished finished = RunTool(line, TAVREL_EXAMPLES);
    EXPECT_EQ(finished.out.find("ha o que arrumar"), std::string::npos) << finished.out;
    EXPECT_EQ(finished.code, 0);
}

}  // namespace

}  // namespace tavrel::tests
