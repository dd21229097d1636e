// SPDX-License-Identifier: Apache-2.0

#include "tools/storyboard/browser.hpp"

#include <array>
#include <cerrno>
#include <chrono>
#include <stdexcept>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kinovane::test {

namespace json = boost::json;

namespace {

constexpr int milliseconds = 1000;
constexpr int patience = 120 * milliseconds;
constexpr int firstFree = 10; // Beyond the descriptors that the browser expects its pipes at.

struct Pipe {
    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::system_error(errno, std::generic_category(), "pipe");
        readEnd = ::fcntl(ends[0], F_DUPFD_CLOEXEC, firstFree);
        writeEnd = ::fcntl(ends[1], F_DUPFD_CLOEXEC, firstFree);
        ::close(ends[0]);
        ::close(ends[1]);
    }

    int readEnd;
    int writeEnd;
};

pid_t startChromium(const std::string& profile, int input, int output) {
    std::vector<std::string> words{"chromium",
                                   "--headless=new",
                                   "--no-sandbox", // Containers and root have none.
                                   "--disable-gpu",
                                   "--hide-scrollbars",
                                   "--disable-dev-shm-usage",
                                   "--disable-background-networking",
                                   "--no-first-run",
                                   "--remote-debugging-pipe",
                                   "--user-data-dir=" + profile,
                                   "about:blank"};
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    ::posix_spawn_file_actions_adddup2(&actions, input, 3);
    ::posix_spawn_file_actions_adddup2(&actions, output, 4);
    pid_t process = -1;
    const int error =
        ::posix_spawnp(&process, arguments.front(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error("chromium cannot be started; scripts/setup all installs it");
    return process;
}

std::string shortened(std::string url) {
    return url.starts_with("data:") ? url.substr(0, url.find(',')) : url;
}

} // namespace

Browser::Browser() {
    const Pipe commands;
    const Pipe replies;
    process_ = startChromium((profile_ / "profile").string(), commands.readEnd, replies.writeEnd);
    ::close(commands.readEnd);
    ::close(replies.writeEnd);
    input_ = commands.writeEnd;
    output_ = replies.readEnd;
    const json::object target = call("Target.createTarget", {{"url", "about:blank"}});
    const json::object attached =
        call("Target.attachToTarget", {{"targetId", target.at("targetId")}, {"flatten", true}});
    session_ = attached.at("sessionId").as_string();
    for (const char* domain : {"Page.enable", "Network.enable", "Runtime.enable", "Log.enable"})
        call(domain, {});
}

Browser::~Browser() {
    ::kill(process_, SIGTERM); // Chromium ends its own processes and stores its profile.
    ::waitpid(process_, nullptr, 0);
    ::close(input_);
    ::close(output_);
    // A process of the browser may still write to the profile.
    std::error_code error;
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::filesystem::remove_all(profile_ / "profile", error);
        if (!error)
            return;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void Browser::open(const std::filesystem::path& page, int width) {
    call("Emulation.setDeviceMetricsOverride",
         {{"width", width}, {"height", 900}, {"deviceScaleFactor", 1}, {"mobile", false}});
    isLoaded_ = false;
    requests_.clear();
    problems_.clear();
    call("Page.navigate", {{"url", "file://" + page.string()}});
    while (!isLoaded_)
        record(receive());
}

json::value Browser::evaluate(std::string_view expression) {
    const json::object reply = call(
        "Runtime.evaluate", {{"expression", expression}, {"awaitPromise", true}, {"returnByValue", true}});
    if (reply.contains("exceptionDetails"))
        throw std::runtime_error(json::serialize(reply.at("exceptionDetails")));
    const json::object& result = reply.at("result").as_object();
    return result.contains("value") ? result.at("value") : json::value();
}

json::object Browser::call(std::string_view method, const json::object& parameters) {
    json::object message{{"id", ++lastCall_}, {"method", method}, {"params", parameters}};
    if (!session_.empty())
        message["sessionId"] = session_;
    const std::string text = json::serialize(message) + '\0';
    for (std::size_t done = 0; done < text.size();) {
        const ssize_t count = ::write(input_, text.data() + done, text.size() - done);
        if (count < 0)
            throw std::runtime_error("the browser has ended");
        done += static_cast<std::size_t>(count);
    }
    for (;;) {
        const json::object reply = receive();
        if (reply.contains("id") && reply.at("id") == lastCall_) {
            if (reply.contains("error"))
                throw std::runtime_error(std::string(method) + ": " + json::serialize(reply.at("error")));
            return reply.at("result").as_object();
        }
        record(reply);
    }
}

json::object Browser::receive() {
    for (;;) {
        if (const std::size_t end = received_.find('\0'); end != std::string::npos) {
            const json::value message = json::parse(std::string_view(received_).substr(0, end));
            received_.erase(0, end + 1);
            return message.as_object();
        }
        pollfd ready{output_, POLLIN, 0};
        if (::poll(&ready, 1, patience) <= 0)
            throw std::runtime_error("the browser does not reply");
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(output_, buffer.data(), buffer.size());
        if (count <= 0)
            throw std::runtime_error("the browser has ended");
        received_.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

void Browser::record(const json::object& event) {
    if (!event.contains("method"))
        return;
    const std::string_view method = event.at("method").as_string();
    const json::object& parameters = event.at("params").as_object();
    if (method == "Page.loadEventFired")
        isLoaded_ = true;
    else if (method == "Network.requestWillBeSent")
        requests_.push_back(shortened(json::value_to<std::string>(parameters.at("request").at("url"))));
    else if (method == "Runtime.exceptionThrown" || method == "Runtime.consoleAPICalled" ||
             method == "Log.entryAdded" || method == "Page.javascriptDialogOpening")
        problems_.push_back(json::serialize(parameters));
}

} // namespace kinovane::test
