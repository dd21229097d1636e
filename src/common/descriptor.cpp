#include "common/descriptor.hpp"

#include <system_error>

#include <fcntl.h>

namespace kinovane {

namespace {

// Reading and writing such a descriptor fails as if it were closed.
#ifdef O_PATH
constexpr int reservedFlags = O_PATH | O_CLOEXEC;
#else
constexpr int reservedFlags = O_RDONLY | O_CLOEXEC;
#endif

bool isOpen(int number) { return ::fcntl(number, F_GETFD) >= 0; }

} // namespace

ReservedStandardDescriptors::ReservedStandardDescriptors() {
    // The system gives out the lowest free number, so each new descriptor fills the next gap.
    std::size_t taken = 0;
    while (taken < reserved_.size() &&
           !(isOpen(STDIN_FILENO) && isOpen(STDOUT_FILENO) && isOpen(STDERR_FILENO))) {
        Descriptor filler(retryInterrupted([] { return ::open("/", reservedFlags); }));
        if (!filler)
            throw std::system_error(errno, std::generic_category(), "cannot reserve a descriptor");
        if (isStandard(filler.get()))
            reserved_[taken++] = std::move(filler);
    }
}

} // namespace kinovane
