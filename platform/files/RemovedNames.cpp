#include "platform/files/RemovedNames.h"

#include "util/Lasting.h"

#include <mutex>
#include <set>

namespace tessaly {

namespace {

/// Whoever uses the names holds the mutex.
std::set<std::string>& names() {
    static auto& removed = lasting<std::set<std::string>>();
    return removed;
}

std::mutex& namesMutex() {
    static std::mutex mutex;
    return mutex;
}

} // namespace

void nameRemoved(const std::string& path) {
    const std::lock_guard lock(namesMutex());
    // What was in a folder went with it: `0` comes directly after `/`.
    names().erase(names().lower_bound(path + '/'), names().lower_bound(path + '0'));
    names().insert(path);
}

void nameMade(const std::string& path) {
    const std::lock_guard lock(namesMutex());
    names().erase(path);
}

bool wasRemoved(const std::string& path) {
    const std::lock_guard lock(namesMutex());
    return names().contains(path);
}

} // namespace tessaly
