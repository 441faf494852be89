// Times whole processes, from spawn to exit, and several commands against each other in one run.
// time_process ROUNDS COMMAND... [-- COMMAND...]...
// Every round runs each command once, in turn, so that a change of the machine's mood meets all of them alike. For each
// command one line: median processor time (user and system) and median wall time in microseconds, and the peak of
// resident memory in KiB. The commands' output is dropped; a command that fails ends the run.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

extern char** environ;

namespace {

struct Timing {
    double processor = 0;  // microseconds
    double wall = 0;
    long peak = 0;  // KiB
};

struct Command {
    std::vector<char*> words;  // ends in a null, as the system wants it
    std::vector<Timing> timings;
};

double Microseconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_usec);
}

// False when the command could not be started or did not exit with 0.
bool RunOnce(Command& command, const posix_spawn_file_actions_t& actions) {
    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, command.words[0], &actions, nullptr, command.words.data(), environ) != 0) return false;
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) return false;
    const std::chrono::duration<double, std::micro> wall = std::chrono::steady_clock::now() - start;
    command.timings.push_back(
        {Microseconds(usage.ru_utime) + Microseconds(usage.ru_stime), wall.count(), usage.ru_maxrss});
    return true;
}

double Median(const std::vector<Timing>& timings, double Timing::*field) {
    std::vector<double> values;
    for (const Timing& timing : timings) values.push_back(timing.*field);
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::vector<Command> Commands(int argc, char** argv) {
    std::vector<Command> commands(1);
    for (int at = 2; at < argc; ++at) {
        if (std::string_view(argv[at]) == "--") {
            commands.emplace_back();
        } else {
            commands.back().words.push_back(argv[at]);
        }
    }
    for (Command& command : commands) command.words.push_back(nullptr);
    return commands;
}

}  // namespace

int main(int argc, char** argv) {
    const int rounds = argc > 2 ? std::atoi(argv[1]) : 0;
    std::vector<Command> commands = Commands(argc, argv);
    const bool empty =
        std::any_of(commands.begin(), commands.end(), [](const Command& c) { return c.words.size() < 2; });
    if (rounds < 1 || empty) {
        std::fprintf(stderr, "usage: time_process ROUNDS COMMAND... [-- COMMAND...]...\n");
        return 2;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    for (int round = 0; round <= rounds; ++round) {
        for (Command& command : commands) {
            if (!RunOnce(command, actions)) {
                std::fprintf(stderr, "failed: %s\n", command.words[0]);
                return 1;
            }
            if (round == 0) command.timings.clear();  // the first round only warms the caches
        }
    }
    for (const Command& command : commands) {
        std::printf("%.0f %.0f %ld\n", Median(command.timings, &Timing::processor),
                    Median(command.timings, &Timing::wall), command.timings.front().peak);
    }
    return 0;
}
