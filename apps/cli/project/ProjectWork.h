#pragma once

#include "apps/cli/project/CommandPlatform.h"
#include "apps/cli/session/Session.h"

#include "platform/files/FileLookup.h"
#include "platform/runtime/FolderLock.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What the commands that change projects share: the platform that answers for the person, a
/// session on it, and a look at the disk for what the component keeps silent about.
class ProjectWork {
public:
    explicit ProjectWork(std::optional<OnConflict> answer)
        : m_platform(CommandPlatform::install(answer)) {}

    CommandPlatform& platform() { return *m_platform; }
    Watch& watch() { return m_platform->watch(); }
    Session& session() { return m_session; }
    ExitStatus status() const { return m_session.status(); }

    void refuse(const std::string& file, const std::string& why) {
        m_session.complain(ExitStatus::Invalid, file, why);
    }
    void fail(const std::string& file, const std::string& why) {
        m_session.complain(ExitStatus::Unreadable, file, why);
    }

    /// The full path for the component; nothing for one that it cannot say, which has been
    /// reported.
    std::optional<std::u16string> fullPath(const std::string& file);

    /// Waits until no other command changes anything in the folders of `files`, and keeps them to
    /// this one as long as it lives: what is read from now on stays true. A folder that is not
    /// there yet is waited for at its parent; one that cannot be locked is not waited for. False
    /// if the person gave up waiting, which has been reported.
    bool lock(const std::vector<std::string>& files);

    /// The project in `file`. None if it could not be read or is none. One that could not be opened
    /// in full comes with what was loaded only where `inPart`; nothing may be saved from it. All
    /// that has been reported.
    std::shared_ptr<tessaly::clProject> open(const std::string& file, bool inPart = false);

    /// True if the project file holds what `project` has, to its last line. Otherwise that has been
    /// reported: Save itself says nothing.
    bool isOnDisk(tessaly::clProject& project, const std::string& file);

private:
    bool tryLock(const std::string& folder);
    std::shared_ptr<CommandPlatform> m_platform;
    std::vector<tessaly::FolderLock> m_locks;
    Session m_session; // after the platform, which it uses
};

inline constexpr char leadsOut[] =
    "is listed by the project but lies elsewhere; it is neither saved nor removed";
inline constexpr char notAProject[] = "is no project file: its name does not end in .cvp";

/// What the component finds at a path of its own, in whatever case; nothing where it cannot look.
tessaly::Found lookUp(const std::u16string& path);

/// Why no file can be written at `file`, as far as the disk shows it; empty if it shows nothing.
std::string obstacleTo(const std::string& file);

/// The folder of a file, `.` for a bare name.
std::string folderOf(const std::string& file);

/// "1 deck", "2 decks".
std::string counted(std::size_t count, const std::string& what);

} // namespace cli
