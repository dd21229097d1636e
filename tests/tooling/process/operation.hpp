// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <exception>
#include <future>
#include <memory>
#include <string>
#include <system_error>
#include <thread>

#include "tooling/process/start_task.hpp"

namespace kinovane::test {

/// Holds operations back until a test opens it.
class Gate {
  public:
    void open() { opened_.set_value(); }

    /// A future that is ready once the gate is open, for an operation to wait for.
    std::shared_future<void> pass() const { return opening_; }

  private:
    std::promise<void> opened_;
    std::shared_future<void> opening_ = opened_.get_future().share();
};

/// Starts an operation that returns `value` once the gate is open.
template <class T>
Task<T> startBehind(const Gate& gate, T value) {
    return startTask<T>([passed = gate.pass(), value = std::move(value)] {
        passed.wait();
        return value;
    });
}

/// Waits without taking the result. There is nothing to block on.
template <class T>
void waitUntilDone(const Task<T>& task) {
    while (!task.done())
        std::this_thread::yield();
}

/// The type and the text of an exception.
inline std::string describe(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const FilmToolError& known) {
        return "FilmToolError: " + known.errorDescription();
    } catch (const std::system_error& known) {
        return "system_error " + std::to_string(known.code().value()) + ": " + known.what();
    } catch (const std::logic_error& known) {
        return std::string("logic_error: ") + known.what();
    } catch (const std::exception& known) {
        return std::string("exception: ") + known.what();
    } catch (int number) {
        return "int: " + std::to_string(number);
    }
}

/// Records the thread on which it is destroyed.
class DestructionRecorder {
  public:
    explicit DestructionRecorder(std::thread::id& destroyedOn) : destroyedOn_(&destroyedOn) {}
    DestructionRecorder(const DestructionRecorder&) = delete;
    DestructionRecorder& operator=(const DestructionRecorder&) = delete;
    ~DestructionRecorder() { *destroyedOn_ = std::this_thread::get_id(); }

  private:
    std::thread::id* destroyedOn_;
};

} // namespace kinovane::test
