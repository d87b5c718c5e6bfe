#include "apps/cli/ProjectCommands.h"
#include "apps/cli/project/DeckNames.h"
#include "apps/cli/project/ProjectReport.h"
#include "apps/cli/project/ProjectWork.h"

#include "platform/files/FileLookup.h"
#include "platform/files/PathName.h"
#include "project/ProjectFile.h"
#include "util/Attempt.h"

#include <filesystem>
#include <ostream>
#include <system_error>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// The project file that came about, as the person named the one they wished for.
std::string named(const std::string& wished, const std::u16string& path) {
    return (fs::path(wished).parent_path() / utf8(tessaly::fileNameOf(path))).string();
}

/// A deck that is read from elsewhere has no name beside the new project file. False if there is
/// one, and reported.
bool lieInFolder(ProjectWork& work, const std::string& project,
                 const std::vector<std::u16string>& decks) {
    for (const std::u16string& deck : decks) {
        if (!tessaly::isBaseName(deck)) {
            work.refuse(deckBeside(project, deck), leadsOut);
        }
    }
    return work.status() == ExitStatus::Fine;
}

/// An answer given beforehand may have an end to it from the start: then nothing is begun. False
/// if so, and reported.
bool canSettle(ProjectWork& work, const std::string& file,
               const std::vector<std::u16string>& decks) {
    const OnConflict answer = work.platform().onConflict();
    std::vector<std::string> targets = {file};
    for (const std::u16string& deck : decks) {
        targets.push_back(deckBeside(file, deck));
    }
    for (const std::string& target : targets) {
        const tessaly::Found found =
            lookUp(tessaly::absolutePathOf(tessaly::toComponentPath(target)));
        const bool stops = found.isFile() && answer == OnConflict::Stop;
        const bool closed =
            found.isFile() && answer == OnConflict::Overwrite && tessaly::isReadOnly(found.status);
        if (stops || closed) {
            work.refuse(target, stops ? takenAlready : readOnly);
            return false;
        }
    }
    return true;
}

/// Ends a project file that Ctrl-C left without its last line, so that it is a whole one: of the
/// decks that were saved.
void finish(ProjectWork& work, const std::u16string& begun) {
    const auto failed = tessaly::attempt([&] {
        const auto stream = work.platform().newFileSystemObject()->OpenTextFile(
            begun, tessaly::IOMode::ForAppending, false, tessaly::formatAnsi);
        tessaly::writeEndOfProjectFile(*stream);
        stream->Close();
    });
    if (failed) {
        work.fail(tessaly::toPosixPath(begun), utf8(failed->description()));
    }
}

/// Tells why `decks` were not all saved, and what of them lies on the disk.
void explain(ProjectWork& work, const std::string& file, const std::vector<std::u16string>& decks) {
    const std::u16string& begun = work.watch().lastBegun();
    const std::string written = named(file, begun);
    const std::size_t saved = begun.empty() ? 0 : work.session().listed(written).size();
    const bool interrupted = work.watch().interrupt().isRequested();
    if (interrupted) {
        work.refuse(file, "interrupted");
    } else if (const auto& obstacle = work.platform().obstacle()) {
        work.refuse(obstacle->file, obstacle->why);
    } else if (const Watch::Refusal& refusal = work.watch().refusal(); !refusal.file.empty()) {
        const std::string closed = named(file, refusal.file);
        const std::string why = obstacleTo(closed);
        work.fail(closed, why.empty() ? "cannot be written: " + utf8(refusal.why) : why);
    } else if (begun.empty() || work.platform().hasGivenUp() || saved >= decks.size()) {
        work.refuse(file, "was not saved");
    } else {
        std::error_code unknown;
        const std::string deck = deckBeside(file, decks[saved]);
        work.fail(fs::exists(deck, unknown) ? deck : written, "could not be written in full");
    }
    if (interrupted && !begun.empty()) {
        finish(work, begun);
    }
    if (!begun.empty()) {
        work.refuse(written, "lists the " + std::to_string(saved) + " of " +
                                 counted(decks.size(), "deck") + " that were saved");
    }
}

void tell(tessaly::clProject& project, const std::vector<std::u16string>& before,
          const std::string& file, const Printer& printer) {
    const auto documents = project.Documents()->NewEnum();
    printer.out() << "saved " << shownPath(file) << " with " << counted(documents.size(), "deck")
                  << '\n';
    for (std::size_t i = 0; i < documents.size(); ++i) {
        if (documents[i]->Name() != before[i]) {
            printer.out() << "renamed " << shownPath(utf8(before[i])) << " to "
                          << shownPath(utf8(documents[i]->Name())) << '\n';
        }
    }
}

} // namespace

ExitStatus saveProjectAs(const std::string& project, const std::string& file, const Manner& manner,
                         const Printer& printer) {
    ProjectWork work(manner.onConflict);
    const auto path = work.fullPath(file);
    if (!path) {
        return work.status();
    }
    const std::string why = isProject(file) ? whyNotAName(tessaly::baseNameOf(*path)) : notAProject;
    if (!why.empty()) {
        work.refuse(file, why);
        return work.status();
    }
    if (!work.lock({project, file})) {
        return work.status();
    }
    const auto opened = work.open(project);
    if (!opened) {
        return work.status();
    }
    std::vector<std::u16string> before;
    for (const auto& document : opened->Documents()->NewEnum()) {
        before.push_back(document->Name());
    }
    if (!lieInFolder(work, project, before) || !canSettle(work, file, before)) {
        return work.status();
    }
    bool saved = false;
    {
        const Watch::Operation operation(work.watch(), "saving", Watch::Counts::Writes,
                                         before.size());
        saved = opened->SaveAs(*path);
    }
    const std::string written = named(file, opened->projectFile());
    if (!saved) {
        explain(work, file, before);
    } else if (work.isOnDisk(*opened, written)) {
        if (manner.json) {
            printProjectJson(*opened, written, printer);
        } else {
            tell(*opened, before, written, printer);
        }
    }
    return work.status();
}

} // namespace cli
