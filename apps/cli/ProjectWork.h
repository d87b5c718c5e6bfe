#pragma once

#include "apps/cli/CommandPlatform.h"
#include "apps/cli/Session.h"

#include "platform/FileLookup.h"

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

    /// The full path for the component; nothing for one that it cannot say, which has been told.
    std::optional<std::u16string> fullPath(const std::string& file);

    /// The project in `file`. None if it could not be read or is none. One that could not be opened
    /// in full comes with what was loaded only where `inPart`; nothing may be saved from it. All
    /// that has been told.
    std::shared_ptr<tessaly::clProject> open(const std::string& file, bool inPart = false);

    /// True if the project file holds what `project` has, to its last line. Otherwise that has been
    /// told: Save itself says nothing.
    bool isOnDisk(tessaly::clProject& project, const std::string& file);

    /// The names that a project file lists; none if it cannot be read, which has been told.
    std::vector<std::u16string> listed(const std::string& file);

private:
    void tellWhyInPart(const std::string& file, const std::vector<std::u16string>& names,
                       std::size_t loaded);

    std::shared_ptr<CommandPlatform> m_platform;
    Session m_session; // behind the platform, which it uses
};

inline constexpr char leadsOut[] =
    "is listed by the project but lies elsewhere; it is neither saved nor removed";
inline constexpr char notAProject[] = "is no project file: its name does not end in .cvp";

/// What the component finds at a path of its own, in whatever case; nothing where it cannot look.
tessaly::Found lookUp(const std::u16string& path);

/// Why no file can be written at `file`, as far as the disk shows it; empty if it shows nothing.
std::string obstacleTo(const std::string& file);

/// The file of the deck `name` beside a project file, as the person would name it.
std::string deckBeside(const std::string& projectFile, const std::u16string& name);

/// The folder of a file, `.` for a bare name.
std::string folderOf(const std::string& file);

/// "1 deck", "2 decks".
std::string counted(std::size_t count, const std::string& what);

} // namespace cli
