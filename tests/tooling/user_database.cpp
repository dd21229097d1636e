#include "tooling/user_database.hpp"

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

/// Stands before the C library's function of this name, which it asks when no test says otherwise.
extern "C" int getpwuid_r(uid_t user, passwd* entry, char* buffer, std::size_t size, passwd** found) {
    const kinovane::test::UserDatabase* const database = kinovane::test::current;
    if (database == nullptr) {
        using Function = int (*)(uid_t, passwd*, char*, std::size_t, passwd**);
        static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "getpwuid_r"));
        return next(user, entry, buffer, size, found);
    }
    *found = nullptr;
    if (database->error != 0)
        return database->error;
    if (!database->home)
        return 0;
    if (size < std::max(database->bufferNeeded, database->home->size() + 1))
        return ERANGE;
    std::memcpy(buffer, database->home->c_str(), database->home->size() + 1);
    *entry = passwd{};
    entry->pw_uid = user;
    entry->pw_dir = buffer;
    *found = entry;
    return 0;
}
