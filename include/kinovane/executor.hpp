// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <functional>

#include <kinovane/export.hpp>

/// How an application receives the results of asynchronous operations on a thread of its own.
namespace kinovane {

/// A function of the application that posts a job to its main loop. The loop then runs the job once.
///
/// The library calls the executor once for each operation, on any thread. The executor must not throw: an
/// exception ends the process (std::terminate).
///
/// The executor may move, copy and store the job. The first call of any copy of the job runs the handler and
/// destroys it on that thread; later calls do nothing. If no copy is ever called, the handler is destroyed
/// with the last copy that the executor stored, on the thread that destroys that copy. If the executor stores
/// no copy, the thread that calls the executor destroys the handler.
///
/// The executor must stay callable until the operation is done, even after the main loop has ended. It may
/// then store or drop the job. The library destroys its copy of the executor on the thread that finished the
/// operation.
using Executor = std::function<void(std::function<void()>)>;

} // namespace kinovane
