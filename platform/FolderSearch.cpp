#include "platform/FolderSearch.h"

#include "platform/TextCodec.h"
#include "util/LetterCase.h"

#include <dirent.h>
#include <sys/stat.h>

#include <cstddef>
#include <ctime>
#include <memory>
#include <unordered_map>
#include <utility>

namespace tessaly {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// What tells one state of a folder from another: every change of its entries moves the change
/// time, which nobody can set back.
struct FolderState {
    dev_t device = 0;
    ino_t inode = 0;
    timespec changed = {};

    bool operator==(const FolderState& other) const {
        return device == other.device && inode == other.inode &&
               changed.tv_sec == other.changed.tv_sec && changed.tv_nsec == other.changed.tv_nsec;
    }
};

/// The entries of one folder by their names in small letters.
using Index = std::unordered_map<std::u16string, std::string>;

/// The index of the folder that was searched last. Without it, looking for each of n decks whose
/// names differ in case from those on disk would read n entries n times.
struct KnownFolder {
    FolderState state;
    Index index;
};

constexpr std::size_t largestIndex = 100'000;

/// Change times tick in steps of up to two seconds. Within a step a folder may change again without
/// showing it, so that an index is kept only of a folder that has been at rest for longer.
constexpr std::time_t restSeconds = 2;

bool stateOf(DIR* folder, FolderState& state) {
    struct stat status = {};
    if (fstat(dirfd(folder), &status) != 0) {
        return false;
    }
    state = {status.st_dev, status.st_ino, status.st_ctim};
    return true;
}

bool atRest(const FolderState& state) {
    return std::time(nullptr) - state.changed.tv_sec > restSeconds;
}

template <class Visit>
void forEachEntry(DIR* folder, Visit&& visit) {
    while (const dirent* entry = readdir(folder)) {
        visit(std::string_view(entry->d_name));
    }
}

void keepFirst(std::string& kept, std::string_view entry) {
    if (kept.empty() || entry < kept) {
        kept = entry;
    }
}

Index makeIndex(DIR* folder) {
    Index index;
    forEachEntry(folder, [&](std::string_view entry) {
        if (const auto text = decodeUtf8(entry); text && index.size() <= largestIndex) {
            keepFirst(index[toLower(*text)], entry);
        }
    });
    return index;
}

std::string findByReading(DIR* folder, std::u16string_view name) {
    std::string found;
    forEachEntry(folder, [&](std::string_view entry) {
        // A unit takes one to three bytes: most entries need no decoding.
        if (entry.size() < name.size() || entry.size() > 3 * name.size()) {
            return;
        }
        if (const auto text = decodeUtf8(entry); text && equalIgnoringCase(*text, name)) {
            keepFirst(found, entry);
        }
    });
    return found;
}

std::string findInIndex(const Index& index, std::u16string_view name) {
    const auto found = index.find(toLower(name));
    return found == index.end() ? std::string() : found->second;
}

std::string find(DIR* folder, std::u16string_view name) {
    thread_local KnownFolder known;
    FolderState state;
    if (!stateOf(folder, state) || !atRest(state)) {
        return findByReading(folder, name);
    }
    if (!(state == known.state)) {
        known = {state, makeIndex(folder)};
    }
    if (known.index.size() > largestIndex) {
        rewinddir(folder);
        return findByReading(folder, name);
    }
    return findInIndex(known.index, name);
}

} // namespace

std::optional<std::string> findIgnoringCase(const std::string& folder, std::u16string_view name) {
    const OpenFolder open(opendir(folder.empty() ? "." : folder.c_str()));
    if (!open) {
        return std::nullopt;
    }
    std::string found = find(open.get(), name);
    if (found.empty()) {
        return std::nullopt;
    }
    return found;
}

} // namespace tessaly
