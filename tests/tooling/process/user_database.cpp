// SPDX-License-Identifier: Apache-2.0

#include "tooling/process/user_database.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

#include <dlfcn.h>
#include <pwd.h>
#include <sys/types.h>

namespace kinovane::test {

namespace {

std::atomic<const UserDatabase*> current = nullptr;

} // namespace

UserDatabase::UserDatabase(std::optional<std::string> homeDirectory) : home(std::move(homeDirectory)) {
    current = this;
}

UserDatabase::~UserDatabase() { current = nullptr; }

} // namespace kinovane::test

namespace {

using kinovane::test::UserDatabase;

int query(const UserDatabase& database, passwd* entry, char* buffer, std::size_t size, passwd** found) {
    *found = nullptr;
    if (database.interruptions > 0) {
        --database.interruptions;
        return EINTR;
    }
    if (database.error != 0)
        return database.error;
    if (!database.home) {
        errno = database.silentError;
        return 0;
    }
    if (size < std::max(database.bufferNeeded, database.home->size() + 1))
        return ERANGE;
    std::memcpy(buffer, database.home->c_str(), database.home->size() + 1);
    *entry = passwd{};
    entry->pw_dir = buffer;
    *found = entry;
    return 0;
}

} // namespace

// These replace the C library's functions of the same names, and call them while there is no UserDatabase.

extern "C" int getpwuid_r(uid_t user, passwd* entry, char* buffer, std::size_t size, passwd** found) {
    if (const UserDatabase* const database = kinovane::test::current)
        return query(*database, entry, buffer, size, found);
    static const auto next = reinterpret_cast<decltype(&::getpwuid_r)>(::dlsym(RTLD_NEXT, "getpwuid_r"));
    return next(user, entry, buffer, size, found);
}

extern "C" int getpwnam_r(const char* user, passwd* entry, char* buffer, std::size_t size, passwd** found) {
    if (const UserDatabase* const database = kinovane::test::current)
        return query(*database, entry, buffer, size, found);
    static const auto next = reinterpret_cast<decltype(&::getpwnam_r)>(::dlsym(RTLD_NEXT, "getpwnam_r"));
    return next(user, entry, buffer, size, found);
}
