// Every folder cases/<construct>/<case>/ is a test: its scripts, `args` with one command line a line, and what must
// come out, `stdout`, `stderr` (no such file: nothing printed) and `code`, one exit code a line. Under `after/` stand
// the scripts that the tool rewrites, as it leaves them. With UPDATE_CASES=1 in the environment the expectations are
// rewritten from what the tool says; read that diff as if it were code.
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

const std::vector<std::string> Results{"stdout", "stderr", "code", "after"};

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

// Words apart by blanks; double quotes keep blanks inside a word and make an empty one.
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
        if (name == "args" || std::find(Results.begin(), Results.end(), name) != Results.end()) continue;
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

struct Outcome {
    std::string out;
    std::string err;
    std::string codes;
    Files changed;
};

Outcome RunLines(const fs::path& folder) {
    const TemporaryFolder copy;
    CopyScripts(folder, copy.path);
    const Files before = FilesIn(copy.path);
    Outcome outcome;
    std::istringstream lines(ReadFile(folder / "args"));
    for (std::string line; std::getline(lines, line);) {
        const Finished finished = RunTool(SplitLine(line), copy.path);
        EXPECT_EQ(finished.signal, 0) << line;
        outcome.out += finished.out;
        outcome.err += finished.err;
        outcome.codes += std::to_string(finished.code) + "\n";
    }
    for (const auto& [name, content] : FilesIn(copy.path)) {
        const auto found = before.find(name);
        if (found == before.end() || found->second != content) outcome.changed[name] = content;
    }
    return outcome;
}

void Store(const fs::path& file, const std::string& content) {
    if (content.empty()) {
        fs::remove(file);
    } else {
        WriteFile(file, content);
    }
}

class CaseTest : public testing::TestWithParam<fs::path> {};

TEST_P(CaseTest, PrintsWhatIsExpected) {
    const fs::path& folder = GetParam();
    const Outcome outcome = RunLines(folder);
    if (std::getenv("UPDATE_CASES") != nullptr) {
        Store(folder / "stdout", outcome.out);
        Store(folder / "stderr", outcome.err);
        Store(folder / "code", outcome.codes);
        fs::remove_all(folder / "after");
        if (!outcome.changed.empty()) fs::create_directory(folder / "after");
        for (const auto& [name, content] : outcome.changed) WriteFile(folder / "after" / name, content);
    }
    EXPECT_EQ(outcome.err, ReadFile(folder / "stderr"));
    EXPECT_EQ(outcome.out, ReadFile(folder / "stdout"));
    EXPECT_EQ(outcome.codes, ReadFile(folder / "code"));
    EXPECT_EQ(outcome.changed, FilesIn(folder / "after"));
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
