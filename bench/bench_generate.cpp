// The whole `quillmark generate` process, as a user or a build script runs it: start-up, font
// look-up, measuring, rendering, packing, PNG encoding and the descriptor. Each iteration runs
// the program once; the reported time is wall time, and the counters give the child's CPU time
// (user + system) and its peak resident memory.
//
// Workloads (plain fill, no outline, BMFont text):
//   W1  DejaVu Sans 32 px, ASCII
//   W2  DejaVu Sans 64 px, ASCII + Latin-1 + Latin Extended-A + Greek + Cyrillic
//   W2s W2 with a 2 px outline and a drop shadow
//   W3  WenQuanYi Micro Hei 32 px, ASCII + the 3000 ideographs U+4E00-U+59B7
// Run with the other programs of the machine quiet; compare the medians. Goals on the reference
// machine: W1 <= 60 ms, W2 <= 300 ms, W3 <= 1 s and <= 200 MB.

#include <QByteArray>
#include <QDir>
#include <QList>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <string>
#include <vector>

extern char** environ;

namespace {

struct ChildUsage
{
    bool ok = false;
    double cpuSeconds = 0;
    double peakMegabytes = 0;
};

/// Runs the program with the arguments, output to /dev/null, and reports what the child used.
ChildUsage runProgram(const std::vector<std::string>& args)
{
    std::vector<char*> argv;
    std::string program = QUILLMARK_PROGRAM;
    argv.push_back(program.data());
    std::string command = "generate";
    argv.push_back(command.data());
    std::vector<std::string> copy = args;
    for (std::string& a : copy)
        argv.push_back(a.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    ChildUsage usage;
    if (posix_spawn(&pid, program.c_str(), &actions, nullptr, argv.data(), environ) == 0) {
        int status = 0;
        rusage ru{};
        if (wait4(pid, &status, 0, &ru) == pid) {
            usage.ok = WIFEXITED(status) && WEXITSTATUS(status) == 0;
            usage.cpuSeconds = double(ru.ru_utime.tv_sec + ru.ru_stime.tv_sec) +
                               double(ru.ru_utime.tv_usec + ru.ru_stime.tv_usec) * 1e-6;
            usage.peakMegabytes = double(ru.ru_maxrss) / 1024.0; // kilobytes on Linux
        }
    }
    posix_spawn_file_actions_destroy(&actions);
    return usage;
}

void generate(benchmark::State& state, std::vector<std::string> args)
{
    QTemporaryDir dir;
    args.push_back("--out");
    args.push_back(QDir(dir.path()).filePath(QStringLiteral("font")).toStdString());
    double cpu = 0, peak = 0;
    for (auto _ : state) {
        const ChildUsage usage = runProgram(args);
        if (!usage.ok) {
            state.SkipWithError("quillmark generate failed");
            return;
        }
        cpu += usage.cpuSeconds;
        peak = std::max(peak, usage.peakMegabytes);
    }
    state.counters["cpu_ms"] = benchmark::Counter(cpu * 1000.0 / double(state.iterations()));
    state.counters["peak_MB"] = benchmark::Counter(peak);
}

const std::vector<std::string> plain = {"--fill", "color", "--no-outline", "--format", "fnt"};

std::vector<std::string> with(std::vector<std::string> base, const std::vector<std::string>& more)
{
    base.insert(base.end(), more.begin(), more.end());
    return base;
}

const std::string w2Ranges = "20-7E,80-FF,100-17F,370-3FF,400-4FF";

} // namespace

BENCHMARK_CAPTURE(generate, W1_DejaVu32_Ascii,
                  with(plain, {"--font", "DejaVu Sans", "--size", "32", "--range", "20-7E"}))
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0)
    ->Repetitions(5)
    ->DisplayAggregatesOnly(true);
BENCHMARK_CAPTURE(generate, W2_DejaVu64_Latin_Greek_Cyrillic,
                  with(plain, {"--font", "DejaVu Sans", "--size", "64", "--range", w2Ranges}))
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0)
    ->Repetitions(5)
    ->DisplayAggregatesOnly(true);
BENCHMARK_CAPTURE(generate, W2s_WithOutlineAndShadow,
                  with(plain, {"--font", "DejaVu Sans", "--size", "64", "--range", w2Ranges, "--outline", "2",
                               "--shadow"}))
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(1.0)
    ->Repetitions(5)
    ->DisplayAggregatesOnly(true);
BENCHMARK_CAPTURE(generate, W3_WenQuanYi32_Ascii_3000Ideographs,
                  with(plain,
                       {"--font", "WenQuanYi Micro Hei", "--size", "32", "--range", "20-7E,4E00-59B7"}))
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->MinTime(2.0)
    ->Repetitions(5)
    ->DisplayAggregatesOnly(true);

BENCHMARK_MAIN();
