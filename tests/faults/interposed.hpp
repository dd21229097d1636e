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

/// The same for a function that has file sizes or offsets among its parameters or in its structures. On
/// 32-bit systems the variant with 64-bit offsets has a name of its own.
template <class Function>
Function* nextWithOffsets(std::string name) {
#if defined(__USE_FILE_OFFSET64) && !defined(__LP64__)
    name += "64";
#endif
    return nextOf<Function>(name.c_str());
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
