// Every file snippets/<topic> is a test of what the compiler makes of short scripts: a row of sections, each headed by
// a line "== WORD". With UPDATE_CASES=1 in the environment the results are rewritten from what comes out; read that
// diff as if it were code.
//
//     == # TEXT         a word to the reader
//     == before         what stands before and after each script that follows, up to the next such section
//     == after
//     == file NAME      what the next script may import as NAME
//     == world none     the next script stands in no world
//     == script         is compiled as "m.tvl"; behind it stand its results:
//     == reports        what is reported; nothing may be where the section is absent
//     == code FUNCTION  the operations of a function
//     == program        the tables of the program
//     == run            what some ticks leave to be seen; the fast and the exact form of the code agree in it under
//     every
//                       small budget
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "core/script/compiler/build.h"
#include "core/script/program/listing.h"
#include "core/script/world/world_api.h"
#include "tests/observed_run.h"
#include "tests/process.h"

namespace tavrel::tests {

namespace {

namespace fs = std::filesystem;
using namespace core::script;

struct Section {
    std::string head;  // without its "== "
    std::string body;

    [[nodiscard]] bool Is(const std::string& word) const { return head.substr(0, head.find(' ')) == word; }
    [[nodiscard]] std::string Name() const { return head.substr(head.find(' ') + 1); }
};

std::vector<Section> SectionsOf(const std::string& text) {
    std::vector<Section> sections;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("== ")) {
            sections.push_back({line.substr(3), ""});
        } else if (!sections.empty()) {
            sections.back().body += line + "\n";
        }
    }
    return sections;
}

std::string Joined(const std::vector<Section>& sections) {
    std::string text;
    for (const Section& section : sections) text += "== " + section.head + "\n" + section.body;
    return text;
}

std::string Typed(const Program& program, const std::string& name, TypeId type, GlobalCategory category) {
    return name + ": " + program.types.Name(type) + " " + CategoryName(category);
}

std::string FieldsOf(const Program& program, const BehaviourInfo& info) {
    std::string text;
    for (std::size_t i = 0; i < info.fieldNames.size(); ++i) {
        text += "  " + Typed(program, info.fieldNames[i], info.fieldTypes[i], info.fieldCategories[i]) +
                (info.fieldPublished[i] ? " +" : "") + (info.fieldPrivate[i] ? " privado\n" : "\n");
    }
    for (std::size_t kind = 0; kind < info.hooks.size(); ++kind) {
        if (info.hooks[kind])
            text += "  hook " + std::to_string(kind) + " is " + std::to_string(info.hooks[kind].value) + "\n";
    }
    return text;
}

// A function's call instructions as "number/arguments". The number tells overloads of one name apart.
std::string CallsOf(const Function& function) {
    std::string text;
    for (const Instruction& instruction : function.code) {
        const Op op = static_cast<Op>(instruction.op);
        if (op != Op::Call && op != Op::CallNative && op != Op::CallHost) continue;
        text += " " + std::to_string(instruction.c) + "/" + std::to_string(instruction.a);
    }
    return text;
}

std::string FunctionsOf(const Program& program) {
    std::string text;
    for (const Function& each : program.functions) {
        text += "function " + each.name + " of file " + std::to_string(each.file.value) + ": " +
                std::to_string(each.params) + " params, " + std::to_string(each.locals) + " locals, " +
                program.types.Name(each.returnType) + ", calls" + CallsOf(each) + "\n";
    }
    for (std::size_t kind = 0; kind < program.hooks.size(); ++kind) {
        if (program.hooks[kind]) {
            text += "hook " + std::to_string(kind) + " is " + std::to_string(program.hooks[kind].value) + "\n";
        }
    }
    return text + "initializer " + std::to_string(program.initializer.value) + "\n";
}

std::string ActionsOf(const Program& program) {
    std::string text;
    for (const auto& action : program.actions) {
        text += "action " + action.name;
        for (const auto& binding : action.bindings) {
            text += " " + binding.source + " " + binding.code + (binding.negative ? " negative" : "");
        }
        text += "\n";
    }
    return text;
}

std::string CodeOf(const Program& program, const std::string& name) {
    for (const Function& function : program.functions) {
        if (function.name == name) return ListFunction(program, function);
    }
    return "no such function\n";
}

std::string TablesOf(const Program& program) {
    std::string text = FunctionsOf(program);
    for (const SourceFile& source : program.sources) text += "source " + source.name + "\n";
    for (const GlobalInfo& global : program.globals) {
        text +=
            "global " + Typed(program, global.name, global.type, global.category) + (global.published ? " +\n" : "\n");
    }
    constexpr std::size_t FirstDeclared = 12;  // behind the types of the language
    text += "types";
    for (std::size_t id = FirstDeclared; id < program.types.Size(); ++id) {
        text += (id == FirstDeclared ? " " : ", ") + program.types.Name(TypeId(id));
    }
    text += "\n";
    for (const BehaviourInfo& info : program.behaviours) {
        text += "behaviour " + info.name;
        const std::int32_t numbers[] = {info.parameterCount, info.stateFirst,   info.stateCount,
                                        info.ownerField,     info.record.value, info.initializer.value};
        for (const std::int32_t number : numbers) text += " " + std::to_string(number);
        text += "\n" + FieldsOf(program, info);
    }
    for (const auto& event : program.events)
        text += "event " + event.name + " " + std::to_string(event.seenGlobal.value) + "\n";
    text += ActionsOf(program) + "integers";
    for (const std::int64_t value : program.integers) text += " " + std::to_string(value);
    text += "\ntexts";
    for (const std::string& value : program.texts) text += " \"" + value + "\"";
    return text + "\nprogress \"" + program.progressKey + "\"\n";
}

// Plays the sections of a file and writes them down again, with the results that really came.
class Player {
public:
    void Play(const Section& section) {
        if (section.Is("before")) before = section.body;
        if (section.Is("after")) after = section.body;
        if (section.Is("file")) files[section.Name()] = section.body;
        if (section.Is("world")) api = nullptr;
        const bool isResult = section.Is("reports") || section.Is("code") || section.Is("program") || section.Is("run");
        if (!isResult) written.push_back(section);
        if (section.Is("script")) Compile(section.body);
        if (isResult && !section.Is("reports")) written.push_back({section.head, ResultOf(section)});
    }

    std::vector<Section> written;

private:
    void Compile(const std::string& script) {
        const auto loader = [this](const std::string& name, SourceFile& out) {
            const auto found = files.find(name);
            if (found != files.end()) out = SourceFile(name + ".tvl", found->second);
            return found != files.end();
        };
        Diagnostics diagnostics;
        program = Program();
        const bool good =
            BuildWithImports(SourceFile("m.tvl", before + script + after), loader, diagnostics, program, api);
        const std::string reports = diagnostics.Describe();
        EXPECT_EQ(good, diagnostics.errors == 0) << script;
        if (!reports.empty()) written.push_back({"reports", reports});
        files.clear();
        api = &WorldApi();
    }

    [[nodiscard]] std::string ResultOf(const Section& section) const {
        if (section.Is("program")) return TablesOf(program);
        if (section.Is("code")) return CodeOf(program, section.Name());
        const std::string fast = ObservedRun(program, false);
        EXPECT_EQ(ObservedRun(program, true), fast);
        for (std::uint64_t budget = 1; budget < 700; ++budget) {
            EXPECT_EQ(ObservedRun(program, true, budget), ObservedRun(program, false, budget)) << budget;
        }
        return fast;
    }

    std::string before;
    std::string after;
    std::map<std::string, std::string> files;
    const Api* api = &WorldApi();
    Program program;
};

class SnippetTest : public testing::TestWithParam<fs::path> {};

TEST_P(SnippetTest, ComesToWhatIsWritten) {
    const std::string text = ReadFile(GetParam());
    Player player;
    for (const Section& section : SectionsOf(text)) player.Play(section);
    const std::string written = Joined(player.written);
    if (std::getenv("UPDATE_CASES") != nullptr) WriteFile(GetParam(), written);
    EXPECT_EQ(written, ReadFile(GetParam()));
}

std::vector<fs::path> Files() {
    std::vector<fs::path> files;
    for (const auto& file : fs::directory_iterator(TAVREL_SNIPPETS)) files.push_back(file.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::string NameOf(const testing::TestParamInfo<fs::path>& info) {
    return info.param.filename().string();
}

INSTANTIATE_TEST_SUITE_P(Scripts, SnippetTest, testing::ValuesIn(Files()), NameOf);

}  // namespace

}  // namespace tavrel::tests
