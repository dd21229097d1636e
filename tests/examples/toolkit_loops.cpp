// SPDX-License-Identifier: Apache-2.0

#include "examples/toolkit_loops.hpp"

#include <cstdlib>

#include "event_loop.hpp"
#ifdef KINOVANE_WITH_QT
#include <QCoreApplication>

#include "executors/qt_executor.hpp"
#endif
#ifdef KINOVANE_WITH_GLIB
#include <glib.h>

#include "executors/glib_executor.hpp"
#endif
#ifdef KINOVANE_WITH_ASIO
#include <boost/asio/io_context.hpp>

#include "executors/asio_executor.hpp"
#endif

namespace kinovane::test {

namespace {

class ExampleLoop final : public ToolkitLoop {
  public:
    Executor executor() override { return loop_.executor(); }
    void run() override { loop_.run(); }
    void quit() override { loop_.quit(EXIT_SUCCESS); }

  private:
    EventLoop loop_;
};

#ifdef KINOVANE_WITH_QT
class QtLoop final : public ToolkitLoop {
  public:
    Executor executor() override { return executor_.executor(); }
    void run() override { QCoreApplication::exec(); }
    void quit() override { QCoreApplication::quit(); }

  private:
    std::string name_ = "examples_test";
    std::vector<char*> arguments_{name_.data(), nullptr};
    int count_ = 1;
    QCoreApplication application_{count_, arguments_.data()};
    QtExecutor executor_;
};
#endif

#ifdef KINOVANE_WITH_GLIB
class GLibLoop final : public ToolkitLoop {
  public:
    Executor executor() override { return executor_.executor(); }
    void run() override { g_main_loop_run(loop_.get()); }
    void quit() override { g_main_loop_quit(loop_.get()); }

  private:
    std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context_{g_main_context_new(),
                                                                            g_main_context_unref};
    std::unique_ptr<GMainLoop, decltype(&g_main_loop_unref)> loop_{g_main_loop_new(context_.get(), 0),
                                                                   g_main_loop_unref};
    GLibExecutor executor_{context_.get()};
};
#endif

#ifdef KINOVANE_WITH_ASIO
class AsioLoop final : public ToolkitLoop {
  public:
    Executor executor() override { return executor_.executor(); }
    void run() override { context_.run(); }
    void quit() override { context_.stop(); }

  private:
    boost::asio::io_context context_;
    AsioExecutor executor_{context_};
};
#endif

template <class Loop>
std::unique_ptr<ToolkitLoop> make() {
    return std::make_unique<Loop>();
}

} // namespace

std::vector<ToolkitRow> toolkitLoops() {
    return {
        {"EventLoop", make<ExampleLoop>, ""},
#ifdef KINOVANE_WITH_QT
        {"Qt", make<QtLoop>, "qt_main_loop"},
#endif
#ifdef KINOVANE_WITH_GLIB
        {"GLib", make<GLibLoop>, "glib_main_loop"},
#endif
#ifdef KINOVANE_WITH_ASIO
        {"Boost.Asio", make<AsioLoop>, "asio_main_loop"},
#endif
    };
}

std::vector<ToolkitRow> toolkitsWithExample() {
    std::vector<ToolkitRow> rows = toolkitLoops();
    std::erase_if(rows, [](const ToolkitRow& row) { return row.example.empty(); });
    return rows;
}

} // namespace kinovane::test
