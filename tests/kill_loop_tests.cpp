// Ends "formatar" at random moments of its work on one file. Whatever the moment, the file must hold all of its old
// bytes or all of the new ones. TAVREL_KILLS sets how many kills to reach.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

#include "tests/process.h"
#include "tests/temporary_folder.h"

namespace tavrel::tests {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Microseconds = std::chrono::microseconds;

// Out of format on every line, and large enough that reading, writing and flushing it each take a while.
std::string UntidyScript() {
    std::string text = "modulo  Grande\n";
    for (int i = 0; i < 20'000; ++i) {
        const std::string number = std::to_string(i);
        text += "funcao f" + number + "( a:inteiro ):inteiro\nretorne a+  " + number + "\nfim\n";
    }
    return text;
}

int KillsWanted() {
    const char* text = std::getenv("TAVREL_KILLS");
    return text != nullptr ? std::atoi(text) : 50;
}

pid_t StartFormat(const fs::path& script) {
    const pid_t child = fork();
    if (child != 0) return child;
    const int nowhere = open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nowhere, stream);
    execl(TAVREL_TOOL, TAVREL_TOOL, "formatar", script.c_str(), nullptr);
    _exit(127);
}

// Whether the kill came before the process had ended by itself.
bool KillAfter(pid_t child, Microseconds delay) {
    std::this_thread::sleep_for(delay);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
}

struct Counts {
    int rounds = 0;
    int killed = 0;
    int killedAfterExchange = 0;
    int temporariesLeft = 0;
};

TEST(KillLoop, TheFileHoldsTheOldBytesOrTheNewOnes) {
    const TemporaryFolder folder;
    const fs::path script = folder.path / "grande.tvl";
    const fs::path temporary = folder.path / "grande.tvl.tmp";
    const std::string before = UntidyScript();
    WriteFile(script, before);
    const Clock::time_point start = Clock::now();
    ASSERT_EQ(RunTool({"formatar", script.string()}, folder.path).code, 0);
    auto longest = std::chrono::duration_cast<Microseconds>(Clock::now() - start);
    const std::string after = ReadFile(script);
    ASSERT_NE(after, before);

    Counts counts;
    std::mt19937 random(1);
    const int wanted = KillsWanted();
    for (; counts.killed < wanted && counts.rounds < 20 * wanted; ++counts.rounds) {
        WriteFile(script, before);
        std::uniform_int_distribution<Microseconds::rep> moment(0, longest.count());
        const bool killed = KillAfter(StartFormat(script), Microseconds(moment(random)));
        // Follows how long a run takes just now, so that two kills of three come before its end.
        longest += killed ? longest / 50 + Microseconds(1) : -longest / 25;
        const std::string found = ReadFile(script);
        ASSERT_TRUE(found == before || found == after) << "round " << counts.rounds << ": " << found.size() << " bytes";
        if (killed) ++counts.killed;
        if (killed && found == after) ++counts.killedAfterExchange;
        if (fs::exists(temporary)) ++counts.temporariesLeft;
    }
    std::cout << counts.killed << " kills in " << counts.rounds << " rounds, " << counts.killedAfterExchange
              << " of them behind the exchange, " << counts.temporariesLeft << " temporaries left behind\n";
    EXPECT_EQ(counts.killed, wanted);

    // What the last kill left behind is in nobody's way.
    WriteFile(script, before);
    WriteFile(temporary, after + after);
    EXPECT_EQ(RunTool({"formatar", script.string()}, folder.path).code, 0);
    EXPECT_EQ(ReadFile(script), after);
    EXPECT_FALSE(fs::exists(temporary));
}

}  // namespace
}  // namespace tavrel::tests
