// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <string>

#include <dlfcn.h>

#include "faults/fault_plan.hpp"

namespace kinovane::test {

/// The function that would have been called if this program had not defined one of the same name. A sanitizer
/// that has its own must keep seeing the call, wherever its runtime is linked: in a library of its own, which
/// comes next, or in this program, where it gives way and is found under its other name only.
template <class Function>
Function* nextOf(const char* name) {
    void* next = ::dlsym(RTLD_DEFAULT, (std::string("__interceptor_") + name).c_str());
    if (next == nullptr)
        next = ::dlsym(RTLD_NEXT, name);
    return reinterpret_cast<Function*>(next);
}

/// For the calls that report through errno.
template <class Forward, class Failure = int>
auto callOrFail(Call call, Forward forward, Failure failure = -1) -> decltype(forward()) {
    const std::optional<Fault> fault = FaultPlan::atCall(call);
    if (!fault)
        return forward();
    if (fault->manner == Fault::Manner::reportedLate)
        static_cast<void>(forward());
    errno = fault->error;
    return failure;
}

/// For the calls that return their error.
template <class Forward>
int callOrError(Call call, Forward forward) {
    const std::optional<Fault> fault = FaultPlan::atCall(call);
    return fault ? fault->error : forward();
}

} // namespace kinovane::test
