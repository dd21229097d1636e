// SPDX-License-Identifier: Apache-2.0

#include <stdexcept>
#include <string>
#include <vector>

#include <kinovane/tooling.hpp>

#include "peer_process.hpp"
#include "peer_python.hpp"
#include "report.hpp"

/// Figures 9 to 12: the cost of running a program.
namespace kinovane::benchmarks {

namespace {

constexpr const char* program = "/bin/true";
constexpr std::size_t gibibyte = std::size_t{1} << 30U;

Timing running(std::size_t times) {
    return timedRepeatedly(times, [client = FilmToolClient(program)] { client.run({}).get(); });
}

/// Measures with 1 GiB more of resident memory; allocating it is not measured.
Timing besideBallast(Timing timing) {
    return [timing = std::move(timing)] {
        const Ballast ballast(gibibyte);
        return timing();
    };
}

void measureStart(const Settings& settings, Report& report, PythonPeer& python) {
    const std::size_t times = settings.quick ? 20 : 200;
    report.add(
        compare({9, "run of /bin/true"}, settings.rounds(15), running(times),
                {{"posix_spawn, no pipes", 0.80, timedRepeatedly(times, [] { spawnBare(program); })},
                 {"fork and exec, two pipes read", 1.3, timedRepeatedly(times, [] { forkAndRead(program); })},
                 {"Python's subprocess.run", 1.1, [&] { return python.run(times, {program}); }}}));
}

void measureStartBesideBallast(const Settings& settings, Report& report) {
    const std::size_t times = settings.quick ? 10 : 100;
    const std::size_t forks = settings.quick ? 1 : 5; // One fork takes 0.1 s.
    const Timing forking = besideBallast(timedRepeatedly(forks, [] { forkAndRead(program); }));
    report.add(compare({10, "run of /bin/true beside 1 GiB of resident memory"}, settings.rounds(11),
                       besideBallast(running(times)),
                       {{"without that memory", 0.95, running(times)},
                        {"fork and exec beside it", 45, [=] {
                             return forking() * static_cast<double>(times) / static_cast<double>(forks);
                         }}}));
}

void measureCapture(const Settings& settings, Report& report, PythonPeer& python) {
    const std::size_t size = settings.size(128'000'000);
    const std::vector<std::string> command{KINOVANE_WRITE_BYTES, std::to_string(size)};
    const FilmToolClient writer(command[0]);
    report.add(compare({11, "capture of 128 MB of output"}, settings.rounds(15), timed([&] {
                           if (writer.run({command[1]}).get().stdout.size() != size)
                               throw std::runtime_error("some output is missing");
                       }),
                       {{"posix_spawn and a read loop", 1.0, timed([&] { spawnAndRead(command, size); })},
                        {"Python's subprocess.run", 1.25, [&] { return python.run(1, command); }}}));
}

void measureTogether(const Settings& settings, Report& report) {
    constexpr std::size_t together = 64;
    constexpr double sleepTime = 0.1;
    report.add(compare({12, "64 runs of a 100 ms sleep, together"}, settings.rounds(15), timed([] {
                           const FilmToolClient sleeper("/bin/sleep");
                           std::vector<Task<ProcessResult>> sleeps;
                           for (std::size_t index = 0; index < together; ++index)
                               sleeps.push_back(sleeper.run({"0.1"}));
                           for (Task<ProcessResult>& task : sleeps)
                               task.get();
                       }),
                       {{"100 ms", 0.85, [] { return sleepTime; }}}));
}

} // namespace

void measureProcess(const Settings& settings, Report& report) {
    PythonPeer python;
    if (settings.wants(9))
        measureStart(settings, report, python);
    if (settings.wants(10))
        measureStartBesideBallast(settings, report);
    if (settings.wants(11))
        measureCapture(settings, report, python);
    if (settings.wants(12))
        measureTogether(settings, report);
}

} // namespace kinovane::benchmarks
