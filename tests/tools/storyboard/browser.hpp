// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

#include <boost/json.hpp>

#include "support/temporary_directory.hpp"

namespace kinovane::test {

/// A headless Chromium that is controlled through a pipe. Throws std::runtime_error when it cannot be started
/// or does not reply.
class Browser {
  public:
    Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;
    ~Browser();

    /// Opens a page in a window of this width, and waits until it is loaded.
    void open(const std::filesystem::path& page, int width = 1200);

    /// The value of an expression in the page; a promise is waited for.
    boost::json::value evaluate(std::string_view expression);

    /// What the page asked for, the page itself included. The data of an embedded file is left out.
    const std::vector<std::string>& requests() const { return requests_; }

    /// Errors, warnings, output to the console, and dialogs.
    const std::vector<std::string>& problems() const { return problems_; }

  private:
    boost::json::object call(std::string_view method, const boost::json::object& parameters);
    boost::json::object receive();
    void record(const boost::json::object& event);

    TemporaryDirectory profile_;
    int input_ = -1;
    int output_ = -1;
    pid_t process_ = -1;
    std::string received_;
    std::string session_;
    int lastCall_ = 0;
    bool isLoaded_ = false;
    std::vector<std::string> requests_;
    std::vector<std::string> problems_;
};

} // namespace kinovane::test
