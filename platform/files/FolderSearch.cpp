#include "platform/files/FolderSearch.h"

#include "platform/files/RemovedNames.h"
#include "platform/files/TextCodec.h"
#include "util/Lasting.h"
#include "util/LetterCase.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace tessaly {

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};
using OpenFolder = std::unique_ptr<DIR, CloseFolder>;

/// What distinguishes one state of a folder from another: every change of its entries moves the
/// change time, which nobody can set back.
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

using Clock = std::chrono::steady_clock;

/// The index of a folder that was searched. Without it, looking for each of n decks whose
/// names differ in case from those on disk would read n entries n times.
struct KnownFolder {
    FolderState state;
    Index index;
    Clock::time_point readAt;
    Clock::duration readingTook = {};
    bool wasAtRest = false;

    bool describes(const FolderState& now) const;
};

constexpr std::size_t largestIndex = 100'000;

/// Change times tick in steps, and within a step a folder can change again without showing it. So
/// an index holds for as long as the state only if the folder had been at rest for more than a step
/// when it was read: 20 ms cover every system that counts parts of seconds, 2 s the others.
constexpr std::chrono::milliseconds fineStep(20);
constexpr std::chrono::milliseconds coarseStep(2000);

/// Where reading is slow, an index read too early is used all the same for a little longer than
/// the reading took. Otherwise making n entries one after the other would read n times n.
constexpr std::chrono::microseconds slowReading(250);
constexpr int youngFor = 20;

/// The folders that were searched last: a path can lead through several that are written in
/// another case. Whoever uses them holds the mutex. They are not one set a thread, since a thread
/// that has to end them keeps the library loaded.
std::array<KnownFolder, 8>& knownFolders() {
    static auto& folders = lasting<std::array<KnownFolder, 8>>();
    return folders;
}

std::mutex& knownFoldersMutex() {
    static std::mutex mutex;
    return mutex;
}

/// What is known of the folder, or else the place of what is known longest.
KnownFolder& placeOf(const FolderState& state) {
    auto& folders = knownFolders();
    const auto same = std::find_if(folders.begin(), folders.end(), [&](const KnownFolder& folder) {
        return folder.state.device == state.device && folder.state.inode == state.inode;
    });
    if (same != folders.end()) {
        return *same;
    }
    return *std::min_element(
        folders.begin(), folders.end(),
        [](const KnownFolder& a, const KnownFolder& b) { return a.readAt < b.readAt; });
}

bool KnownFolder::describes(const FolderState& now) const {
    const bool isYoung =
        readingTook >= slowReading && Clock::now() - readAt < youngFor * readingTook;
    return now == state && (wasAtRest || isYoung);
}

std::optional<FolderState> stateOf(const std::string& folder) {
    struct stat status = {};
    if (stat(folder.empty() ? "." : folder.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FolderState{status.st_dev, status.st_ino, status.st_ctim};
}

bool atRest(const FolderState& state) {
    using namespace std::chrono;
    const auto changed = seconds(state.changed.tv_sec) + nanoseconds(state.changed.tv_nsec);
    const auto elapsed = system_clock::now().time_since_epoch() - changed;
    return elapsed > (state.changed.tv_nsec == 0 ? coarseStep : fineStep);
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

KnownFolder readFolder(DIR* folder, const FolderState& state) {
    const Clock::time_point start = Clock::now();
    KnownFolder known = {state, makeIndex(folder), start, {}, atRest(state)};
    known.readingTook = Clock::now() - start;
    return known;
}

} // namespace

std::optional<std::string> findIgnoringCase(const std::string& folder, std::u16string_view name) {
    // The state is taken first: a change that comes while the entries are read then shows.
    const auto state = stateOf(folder);
    const OpenFolder open(state ? opendir(folder.empty() ? "." : folder.c_str()) : nullptr);
    if (!open) {
        return std::nullopt;
    }
    const std::lock_guard lock(knownFoldersMutex());
    KnownFolder& known = placeOf(*state);
    if (!known.describes(*state)) {
        known = readFolder(open.get(), *state);
    }
    std::string found;
    if (known.index.size() <= largestIndex) {
        found = findInIndex(known.index, name);
    } else {
        rewinddir(open.get());
        found = findByReading(open.get(), name);
    }
    return found.empty() ? std::nullopt : std::optional(std::move(found));
}

NewEntry::NewEntry(const std::string& path)
    : m_folder(path, 0, path.rfind('/') + 1)
    , m_name(path, path.rfind('/') + 1) {
    const auto state = stateOf(m_folder);
    const std::lock_guard lock(knownFoldersMutex());
    m_wasKnown = state && placeOf(*state).describes(*state);
}

void NewEntry::made() const {
    nameMade(m_folder + m_name);
    const auto state = stateOf(m_folder);
    const auto text = decodeUtf8(m_name);
    if (m_wasKnown && state && text) {
        const std::lock_guard lock(knownFoldersMutex());
        KnownFolder& known = placeOf(*state);
        keepFirst(known.index[toLower(*text)], m_name);
        known.state = *state;
        known.wasAtRest = false;
    }
}

} // namespace tessaly
