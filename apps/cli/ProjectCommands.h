#pragma once

#include "apps/cli/project/CommandPlatform.h"
#include "apps/cli/session/Session.h"

#include <optional>
#include <string>
#include <vector>

namespace cli {

/// What a new project is to be.
struct NewProject {
    std::string folder; ///< made if it is missing; its parent must be there
    std::string name;
    std::string deck; ///< the file that becomes its first deck, by a copy
    std::string description;
    std::string owner;
};

/// How a command that writes reports and decides.
struct Manner {
    std::optional<OnConflict> onConflict; ///< none: ask on a terminal, otherwise stop
    bool json = false;
};

/// The commands of `tessaly` that make, change and remove projects. Each prints what it did to
/// standard output and gives the exit status.
ExitStatus makeProject(const NewProject& wanted, const Manner& manner, const Printer& printer);
ExitStatus addDecks(const std::string& project, const std::vector<std::string>& names,
                    const Manner& manner, const Printer& printer);
ExitStatus removeDecks(const std::string& project, const std::vector<std::string>& names,
                       const Manner& manner, const Printer& printer);
ExitStatus saveProjectAs(const std::string& project, const std::string& file, const Manner& manner,
                         const Printer& printer);

/// Asks first, unless `sure`.
ExitStatus deleteProject(const std::string& project, bool sure, bool json, const Printer& printer);

/// Prints the name of the first deck that the project file lists, without opening the project.
ExitStatus firstDeck(const std::string& project, bool json, const Printer& printer);

} // namespace cli
