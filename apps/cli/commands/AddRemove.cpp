#include "apps/cli/ProjectCommands.h"
#include "apps/cli/project/DeckNames.h"
#include "apps/cli/project/ProjectReport.h"
#include "apps/cli/project/ProjectWork.h"

#include "platform/files/TextCodec.h"
#include "util/Attempt.h"

#include <filesystem>
#include <ostream>
#include <system_error>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// A project that is being changed.
struct Changing {
    ProjectWork& work;
    tessaly::clProject& project;
    const std::string& file;

    std::shared_ptr<tessaly::WirelessDocument> find(const std::u16string& name) const {
        std::shared_ptr<tessaly::WirelessDocument> found;
        tessaly::attempt([&] { found = project.Documents()->Item(name); });
        return found;
    }
};

bool exists(const std::string& file) {
    std::error_code unknown;
    return fs::exists(file, unknown);
}

/// A deck may also be named by its file, as a shell completes it: then without the extension.
std::u16string withoutExtension(const std::string& typed) {
    return tessaly::decodeText(isDeck(typed) ? typed.substr(0, typed.size() - 4) : typed);
}

/// A path that leads to the project's folder, as a shell completes it: the rest of it. Any other
/// name as it was typed.
std::string inProjectFolder(const std::string& projectFile, const std::string& typed) {
    const fs::path path(typed);
    const fs::path folder = fs::path(projectFile).parent_path();
    std::error_code failed;
    const bool leadsThere =
        path.has_parent_path() &&
        fs::equivalent(path.parent_path(), folder.empty() ? fs::path(".") : folder, failed);
    return leadsThere ? path.filename().string() : typed;
}

/// What was done; empty if the name was refused, which has been reported.
std::string add(const Changing& to, const std::string& argument) {
    const std::string typed = inProjectFolder(to.file, argument);
    std::u16string name = tessaly::decodeText(typed);
    if (!exists(deckBeside(to.file, name))) {
        name = withoutExtension(typed);
    }
    const std::string deck = deckBeside(to.file, name);
    if (const std::string why = whyNotAName(name); !why.empty()) {
        to.work.refuse(typed, why);
    } else if (to.find(name)) {
        to.work.refuse(deck, "is a deck of the project already");
    } else if (!to.project.addDocument(name, true)) {
        to.work.fail(deck, exists(deck) ? "cannot be read" : "is not there");
    } else {
        return "added " + shownPath(deck);
    }
    return {};
}

std::string remove(const Changing& from, const std::string& argument) {
    const std::string typed = inProjectFolder(from.file, argument);
    auto document = from.find(tessaly::decodeText(typed));
    if (!document) {
        document = from.find(withoutExtension(typed));
    }
    if (!document) {
        from.work.refuse(typed, "is no deck of the project");
        return {};
    }
    from.project.removeDocument(document->Name());
    return "removed " + shownPath(utf8(document->Name())) + " from the project; its file stays: " +
           shownPath(deckBeside(from.file, document->Name()));
}

/// Changes the project by each of the names, and writes the project file. A name that is refused
/// does not keep the others out.
ExitStatus change(std::string (*one)(const Changing&, const std::string&), const std::string& file,
                  const std::vector<std::string>& names, const Manner& manner,
                  const Printer& printer) {
    ProjectWork work(manner.onConflict);
    if (!work.lock({file})) {
        return work.status();
    }
    const auto project = work.open(file);
    if (!project) {
        return work.status();
    }
    std::string done;
    for (const std::string& name : names) {
        const std::string what = one({work, *project, file}, name);
        done += what.empty() ? "" : what + '\n';
    }
    if (!done.empty()) {
        project->Save();
        if (!work.isOnDisk(*project, file)) {
            work.fail(file, "holds what it held before");
            return work.status();
        }
    }
    if (manner.json) {
        printProjectJson(*project, file, printer);
    } else {
        printer.out() << harmless(done);
    }
    return work.status();
}

} // namespace

ExitStatus addDecks(const std::string& project, const std::vector<std::string>& names,
                    const Manner& manner, const Printer& printer) {
    return change(add, project, names, manner, printer);
}

ExitStatus removeDecks(const std::string& project, const std::vector<std::string>& names,
                       const Manner& manner, const Printer& printer) {
    return change(remove, project, names, manner, printer);
}

} // namespace cli
