// SPDX-License-Identifier: Apache-2.0

#pragma once

#include <cerrno>
#include <string>

#include <dlfcn.h>

#include "faults/fault_plan.hpp"

namespace kinovane::test {

/// The function of this name that the program would call without its own definition. A sanitizer's
/// interceptor must still be called: it is the next definition when the runtime is a shared library, and is
/// found under
/// "__interceptor_" when it is linked statically.
template <class Function>
Function* nextOf(const char* name) {
    void* next = ::dlsym(RTLD_DEFAULT, (std::string("__interceptor_") + name).c_str());
    if (next == nullptr)
        next = ::dlsym(RTLD_NEXT, name);
    return reinterpret_cast<Function*>(next);
}

/// For calls that set errno.
template <class Forward, class Failure = int>
auto callOrFail(Call call, Forward forward, Failure failure = -1) -> decltype(forward()) {
    const std::optional<Fault> fault = FaultPlan::atCall(call);
    if (!fault)
        return forward();
    if (fault->kind == Fault::Kind::reportedLate)
        static_cast<void>(forward());
    errno = fault->error;
    return failure;
}

/// For calls that return an error number.
template <class Forward>
int callOrError(Call call, Forward forward) {
    const std::optional<Fault> fault = FaultPlan::atCall(call);
    return fault ? fault->error : forward();
}

} // namespace kinovane::test
