// SPDX-License-Identifier: Apache-2.0

#include "terminal/progress_line.hpp"

#include <atomic>
#include <utility>

#include <unistd.h>

#include "json/json_output.hpp"
#include "terminal/progress_text.hpp"

namespace kinovane::tool {

namespace {

constexpr std::size_t usualColumns = 80;
constexpr auto intervalOfJSON = std::chrono::milliseconds(200);

// Erases to the end of the screen, not only of the line: after the terminal became narrower, the rest of the
// old line may be in the lines below.
constexpr const char* eraseToEnd = "\x1b[J";

std::atomic<unsigned> continuations = 0; // NOLINT(*-avoid-non-const-global-variables): for the signal handler
static_assert(std::atomic<unsigned>::is_always_lock_free);

extern "C" void onContinuation(int /*signal*/) { ++continuations; }

} // namespace

ActiveTime::ActiveTime(Clock clock)
    : clock_(std::move(clock)), last_(clock_()), continuations_(continuations) {
    struct sigaction action{};
    action.sa_handler = onContinuation; // NOLINT(*-union-access)
    action.sa_flags = SA_RESTART;
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGCONT, &action, &formerAction_);
}

ActiveTime::~ActiveTime() { ::sigaction(SIGCONT, &formerAction_, nullptr); }

double ActiveTime::seconds() {
    const auto now = clock_();
    if (const unsigned arrived = continuations; std::exchange(continuations_, arrived) == arrived)
        active_ += now - last_;
    last_ = now;
    return active_.count();
}

ProgressLine::ProgressLine(const Console& console, ActiveTime::Clock clock)
    : console_(console), clock_(std::move(clock)), time_(clock_) {}

std::function<void(const VerificationProgress&)> ProgressLine::callback() {
    return [this](const VerificationProgress& progress) { show(progress); };
}

void ProgressLine::show(const VerificationProgress& progress) {
    const std::lock_guard lock(mutex_);
    const double seconds = time_.seconds();
    if (console_.options().progress == ProgressMode::json && !console_.options().quiet)
        writeJSON(progress);
    else if (console_
                 .showsProgressLine()) // Asked each time: the process may have been moved to the background.
        draw(progress, seconds);
    else
        isDrawn_ = false;
}

void ProgressLine::draw(const VerificationProgress& progress, double seconds) {
    // The cursor is left at the beginning of the line. A terminal that becomes narrower wraps the line below
    // the cursor, so that the next drawing erases all of it.
    writeAll(STDERR_FILENO,
             "\r" + progressText(progress, seconds, terminalColumns(STDERR_FILENO, usualColumns)) +
                 eraseToEnd + "\r");
    isDrawn_ = true;
}

void ProgressLine::writeJSON(const VerificationProgress& progress) {
    const auto now = clock_();
    if (now < nextJSON_ && progress.filesDone != progress.filesTotal)
        return;
    nextJSON_ = now + intervalOfJSON;
    console_.message(boost::json::value(
        boost::json::object{{"progress", boost::json::object{{"filesDone", progress.filesDone},
                                                             {"filesTotal", progress.filesTotal},
                                                             {"bytesDone", progress.bytesDone},
                                                             {"bytesTotal", progress.bytesTotal},
                                                             {"path", progress.path}}}}));
}

void ProgressLine::eraseLine() {
    if (std::exchange(isDrawn_, false) && console_.showsProgressLine())
        writeAll(STDERR_FILENO, std::string("\r") + eraseToEnd);
}

void ProgressLine::erase() {
    const std::lock_guard lock(mutex_);
    eraseLine();
}

void ProgressLine::outside(const std::function<void()>& write) {
    const std::lock_guard lock(mutex_);
    eraseLine();
    write();
}

double ProgressLine::seconds() {
    const std::lock_guard lock(mutex_);
    return time_.seconds();
}

} // namespace kinovane::tool
