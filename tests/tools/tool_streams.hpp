// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <csignal>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "common/files/descriptor.hpp"
#include "support/pipe.hpp"
#include "tools/command_line_tool.hpp"

namespace kinovane::test {

/// A run of the command-line tool whose progress a test follows while it goes on.
class RunningTool {
  public:
    explicit RunningTool(std::vector<std::string> arguments)
        : process_(startCommandLineTool(std::move(arguments), out_.writeEnd.get(), err_.writeEnd.get())) {
        out_.writeEnd = Descriptor();
        err_.writeEnd = Descriptor();
    }

    /// Reads standard error up to a text. Returns whether it was found.
    bool waitFor(const std::string& text) {
        while (errText_.find(text) == std::string::npos)
            if (!readSome(err_, errText_))
                return false;
        return true;
    }

    void send(int signal) const { ::kill(process_, signal); }

    Outcome end() {
        std::string out;
        while (readSome(out_, out)) {
        }
        while (readSome(err_, errText_)) {
        }
        return {exitStatusOf(process_), out, errText_};
    }

  private:
    static bool readSome(Pipe& pipe, std::string& text) {
        std::vector<char> buffer(4096);
        const ssize_t count = ::read(pipe.readEnd.get(), buffer.data(), buffer.size());
        if (count > 0)
            text.append(buffer.data(), static_cast<std::size_t>(count));
        return count > 0;
    }

    Pipe out_, err_;
    std::string errText_;
    pid_t process_;
};

} // namespace kinovane::test
