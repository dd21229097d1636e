// SPDX-License-Identifier: Apache-2.0

#include "faults/fault_table.hpp"

#include <cerrno>

namespace kinovane::test {

const std::vector<FaultRow>& faultTable() {
    static const std::vector<FaultRow> rows{
        {Call::open, {EACCES, EMFILE, ENFILE, ENOMEM, EIO, ESTALE, ENOENT, ENOTDIR, ELOOP, EINTR}, {}},
        {Call::openat, {EACCES, EMFILE, ENFILE, ENOMEM, EIO, ESTALE, ENOENT, ENOTDIR, ELOOP, EINTR}, {}},
        {Call::create,
         {EEXIST, EACCES, EPERM, EMFILE, ENFILE, ENOMEM, ENOSPC, EDQUOT, EROFS, EIO, ESTALE, EINTR},
         {}},
        {Call::openat2,
         {EACCES, EPERM, EMFILE, ENFILE, ENOMEM, EIO, EXDEV, ELOOP, ENOENT, ENOSYS, E2BIG, EINVAL, EAGAIN,
          EINTR},
         {}},
        {Call::read, {EIO, EISDIR, ENOMEM, ESTALE, EINTR}, {}, true},
        {Call::write, {ENOSPC, EDQUOT, EIO, EFBIG, EPERM, ENOMEM, EINTR}, {}, true},
        // A descriptor is released even when close returns an error.
        {Call::close, {}, {EIO, ENOSPC, EDQUOT, EINTR}},
        {Call::fstat, {EIO, ENOMEM, EOVERFLOW, ESTALE}, {}},
        {Call::fstatat, {EACCES, EIO, ENOMEM, ESTALE}, {}},
        {Call::fstatfs, {EIO, ENOMEM, ENOSYS, EOVERFLOW, EINTR}, {}},
        {Call::stat, {EACCES, EIO, ENOMEM, EOVERFLOW, ESTALE}, {}},
        {Call::lstat, {EACCES, EIO, ENOMEM, ESTALE}, {}},
        {Call::faccessat, {EACCES, EIO, ENOMEM, EROFS}, {}},
        {Call::fchmod, {EPERM, EIO, EROFS}, {}},
        {Call::fsync, {EIO, ENOSPC, EDQUOT, EROFS, EINVAL, ENOTSUP, EINTR}, {EIO, ENOSPC}},
        {Call::renameat, {EACCES, EPERM, EIO, ENOSPC, EDQUOT, EROFS, ENOMEM}, {EIO}},
        {Call::unlinkat, {EACCES, EIO}, {EIO}},
        {Call::readlink, {EACCES, EIO, ENOMEM, ESTALE}, {}},
        {Call::readlinkat, {EACCES, EIO, ENOMEM, ESTALE}, {}},
        {Call::mkdir, {EACCES, EIO, ENOSPC, EDQUOT, EROFS, EMLINK, ENOMEM}, {}},
        {Call::getcwd, {ENOENT, EACCES, ENOMEM}, {}},
        {Call::realpath, {EACCES, EIO, ENOMEM, ESTALE}, {}},
        {Call::getentropy, {ENOSYS, EIO, EPERM}, {}},
        {Call::pipe2, {EMFILE, ENFILE}, {}},
        {Call::fcntl, {EBADF, EMFILE, EPERM, EBUSY, EINVAL}, {}},
        {Call::poll, {ENOMEM, EAGAIN, EINTR}, {}},
        // Another thread may have waited for the child.
        {Call::waitpid, {EINTR}, {ECHILD}},
        {Call::spawnSetup, {ENOMEM, EINVAL}, {}},
        {Call::posixSpawn,
         {EAGAIN, ENOMEM, EMFILE, ENOENT, EACCES, ENOEXEC, E2BIG, ETXTBSY, EPERM, EIO, ELOOP, ENOTDIR},
         {}},
        {Call::pthreadCreate, {EAGAIN, EPERM}, {}},
    };
    return rows;
}

std::vector<Fault> faultsAt(const CallCounts& counts) {
    std::vector<Fault> faults;
    for (const FaultRow& row : faultTable())
        for (std::size_t index = 0; index < counts[static_cast<std::size_t>(row.call)]; ++index) {
            for (const int error : row.refusals) {
                faults.push_back({row.call, index, Fault::Kind::refused, error});
                if (error == EINTR) // Several signals may arrive in a row.
                    faults.push_back({row.call, index, Fault::Kind::refused, error, 5});
            }
            for (const int error : row.lateReports)
                faults.push_back({row.call, index, Fault::Kind::reportedLate, error});
            if (row.canBeShort) {
                faults.push_back({row.call, index, Fault::Kind::shortened});
                faults.push_back({row.call, index, Fault::Kind::shortened, 0, 50});
            }
        }
    return faults;
}

} // namespace kinovane::test
