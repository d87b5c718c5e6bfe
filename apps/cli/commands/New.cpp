#include "apps/cli/ProjectCommands.h"
#include "apps/cli/project/DeckNames.h"
#include "apps/cli/project/ProjectReport.h"
#include "apps/cli/project/ProjectWork.h"

#include "platform/files/PathName.h"
#include "platform/files/TextCodec.h"
#include "util/Attempt.h"

#include <unistd.h>

#include <filesystem>
#include <ostream>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// The new project's paths and texts as the component takes them.
struct Paths {
    std::u16string folder;
    std::u16string deck;
    std::u16string name;
};

std::string fileOf(const NewProject& wanted, const std::u16string& name) {
    return (fs::path(wanted.folder) / (utf8(name) + ".cvp")).string();
}

/// Says all that makes the project impossible, before anything is written.
std::optional<Paths> checked(ProjectWork& work, const NewProject& wanted) {
    const auto folder = work.fullPath(wanted.folder);
    const auto deck = work.fullPath(wanted.deck);
    if (!folder || !deck || !work.session().readable(wanted.deck)) {
        return std::nullopt;
    }
    const auto require = [&](const std::string& what, const std::string& why) {
        if (!why.empty()) {
            work.refuse(what, why);
        }
    };
    const std::u16string name = tessaly::decodeText(wanted.name);
    require("--name " + wanted.name, whyNotAName(name));
    require("--description", whyNotAValue(tessaly::decodeText(wanted.description)));
    require("--owner", whyNotAValue(tessaly::decodeText(wanted.owner)));
    require(wanted.deck, isDeck(wanted.deck) ? whyNotAName(tessaly::baseNameOf(*deck))
                                             : "is no deck: its name does not end in .wml");
    if (work.status() != ExitStatus::Fine) {
        return std::nullopt;
    }
    return Paths{*folder, *deck, name};
}

/// Settles what the component would not ask: it replaces a project file. False if it is to stay.
bool settleProjectFile(ProjectWork& work, const NewProject& wanted, Paths& paths) {
    const tessaly::Found there = lookUp(paths.folder + u"\\" + paths.name + u".cvp");
    if (!there.exists()) {
        return true;
    }
    const std::string file = (fs::path(wanted.folder) / fs::path(there.path).filename()).string();
    const OnConflict answer = work.platform().onConflict();
    if (tessaly::isReadOnly(there.status) &&
        (answer == OnConflict::Overwrite || answer == OnConflict::Ask)) {
        work.refuse(file, readOnly);
        return false;
    }
    switch (answer) {
    case OnConflict::Overwrite:
        return true;
    case OnConflict::Rename:
        paths.name = freeName(paths.name, paths.folder + u"\\" + paths.name + u".cvp");
        return true;
    case OnConflict::Ask:
        if (work.platform().confirm(u"A project file " + tessaly::decodeText(file) +
                                        u" is there already. Overwrite it?",
                                    u"Project Exists")) {
            return true;
        }
        work.refuse(file, "stays as it is; nothing was made");
        return false;
    case OnConflict::Stop:
        break;
    }
    work.refuse(file, takenAlready);
    return false;
}

/// False if no project was made, which has been reported.
bool create(ProjectWork& work, const NewProject& wanted, Paths& paths) {
    bool made = false;
    const std::string file = fileOf(wanted, paths.name);
    work.platform().keep(paths.deck);
    const auto failed = tessaly::attempt([&] {
        made = tessaly::isTrue(Session::newProject()->Create(
            paths.name, tessaly::decodeText(wanted.description), paths.folder, paths.deck,
            tessaly::decodeText(wanted.owner)));
    });
    if (failed) {
        const std::string why = obstacleTo(file);
        work.fail(file, why.empty() ? "cannot be made: " + utf8(failed->description()) : why);
        unlink(work.watch().lastCopy().c_str()); // its name would be taken at the next try
    } else if (const auto& obstacle = work.platform().obstacle()) {
        work.refuse(obstacle->file, obstacle->why);
    } else if (!made) {
        work.refuse(file, "was not made: no name was settled for the deck");
    }
    return made;
}

} // namespace

ExitStatus makeProject(const NewProject& wanted, const Manner& manner, const Printer& printer) {
    ProjectWork work(manner.onConflict);
    auto paths = checked(work, wanted);
    if (!paths || !work.lock({fileOf(wanted, paths->name)}) ||
        !settleProjectFile(work, wanted, *paths)) {
        return work.status();
    }
    const bool folderIsNew = !lookUp(paths->folder).exists();
    if (!create(work, wanted, *paths)) {
        if (folderIsNew) {
            rmdir(lookUp(paths->folder).path.c_str()); // unless something lies there
        }
        return work.status();
    }
    const std::string file = fileOf(wanted, paths->name);
    const auto project = work.open(file);
    if (!project || !work.isOnDisk(*project, file)) {
        return work.status();
    }
    if (manner.json) {
        printProjectJson(*project, file, printer);
        return work.status();
    }
    if (folderIsNew) {
        printer.out() << "made " << shownPath(wanted.folder) << '\n';
    }
    const std::string deck = utf8(project->Documents()->Item(1)->Name()) + ".wml";
    printer.out() << "made " << shownPath(file) << '\n'
                  << "made " << shownPath((fs::path(wanted.folder) / deck).string()) << " from "
                  << shownPath(wanted.deck) << '\n';
    return work.status();
}

} // namespace cli
