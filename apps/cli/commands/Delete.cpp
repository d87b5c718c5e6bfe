#include "apps/cli/ProjectCommands.h"
#include "apps/cli/project/ProjectWork.h"

#include "platform/files/TextCodec.h"
#include "project/ProjectFile.h"

#include <nlohmann/json.hpp>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <system_error>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// Where the content of `folder` can be named also when `folder`, which may be a link, is gone.
std::string lastingPath(const std::string& folder) {
    std::error_code failed;
    const bool isLink = fs::is_symlink(fs::symlink_status(folder, failed));
    const std::string target = isLink ? fs::canonical(folder, failed).string() : "";
    return target.empty() ? folder : target;
}

/// Everything below `folder`, links inside not followed, and the folder itself after it.
std::vector<std::string> contentOf(const std::string& folder) {
    std::vector<std::string> paths;
    std::error_code failed;
    for (fs::recursive_directory_iterator entry(lastingPath(folder), failed), end;
         !failed && entry != end; entry.increment(failed)) {
        paths.push_back(entry->path().string());
    }
    std::sort(paths.begin(), paths.end());
    paths.push_back(folder);
    return paths;
}

bool isThere(const std::string& path) {
    std::error_code unknown;
    return fs::exists(fs::symlink_status(path, unknown));
}

/// The decks that the project lists in other folders: they are left alone.
std::vector<std::string> decksElsewhere(tessaly::clProject& project, const std::string& file) {
    std::vector<std::string> decks;
    for (const auto& document : project.Documents()->NewEnum()) {
        if (!tessaly::isBaseName(document->Name())) {
            decks.push_back(deckBeside(file, document->Name()));
        }
    }
    return decks;
}

/// What a person should hear before they say yes: the folder goes with all that lies there.
std::string question(tessaly::clProject& project, const std::string& file,
                     const std::vector<std::string>& content) {
    constexpr std::size_t mostShown = 10;
    const std::string folder = folderOf(file);
    const fs::path lasting = lastingPath(folder);
    // As it stands on the disk: a file that differs from a deck in case alone is another file.
    const auto inFolder = [&](const std::u16string& path) {
        return (lasting / fs::path(lookUp(path).path).filename()).string();
    };
    std::vector<std::string> own = {inFolder(project.projectFile())};
    for (const auto& document : project.Documents()->NewEnum()) {
        if (tessaly::isBaseName(document->Name())) {
            own.push_back(inFolder(project.ProjectPath() + u"\\" + document->Name() + u".wml"));
        }
    }
    std::sort(own.begin(), own.end());
    std::string stayingElsewhere;
    for (const std::string& deck : decksElsewhere(project, file)) {
        stayingElsewhere += "\nIts deck " + shownPath(deck) + " lies elsewhere and stays.";
    }
    std::string others;
    std::size_t count = 0;
    for (const std::string& path : content) {
        std::error_code unknown;
        if (path != folder && !fs::is_directory(fs::symlink_status(path, unknown)) &&
            !std::binary_search(own.begin(), own.end(), path)) {
            others += ++count <= mostShown ? "\n  " + shownPath(path) : "";
        }
    }
    return "This removes the folder " + shownPath(folder) + " with its project file, " +
           counted(own.size() - 1, "deck") + " and " +
           (count == 0 ? "nothing else." : counted(count, "other file") + ":" + others) +
           (count > mostShown ? "\n  ..." : "") + stayingElsewhere + "\nRemove all that?";
}

bool isAgreed(ProjectWork& work, const std::string& asked, const std::string& file) {
    const bool agreed = work.platform().confirm(tessaly::decodeText(asked), u"Delete Project");
    if (!agreed) {
        work.refuse(file, "nothing was removed; --yes removes without asking");
    }
    return agreed;
}

void report(ProjectWork& work, const std::vector<std::string>& content, bool json,
            const Printer& printer) {
    std::vector<std::string> removed;
    std::vector<std::string> left;
    for (const std::string& path : content) {
        (isThere(path) ? left : removed).push_back(path);
    }
    if (json) {
        const nlohmann::ordered_json lists = {{"removed", removed}, {"left", left}};
        printer.out() << lists.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                      << '\n';
    } else {
        for (const std::string& path : removed) {
            printer.out() << "removed " << shownPath(path) << '\n';
        }
    }
    for (const std::string& path : left) {
        work.refuse(path, "could not be removed");
    }
}

} // namespace

ExitStatus deleteProject(const std::string& file, bool sure, bool json, const Printer& printer) {
    ProjectWork work(OnConflict::Stop);
    if (!isProject(file)) {
        work.refuse(file, notAProject);
        return work.status();
    }
    if (!work.lock({file})) {
        return work.status();
    }
    const auto project = work.open(file, true);
    if (!project) {
        return work.status();
    }
    const std::vector<std::string> content = contentOf(folderOf(file));
    if (!sure && !isAgreed(work, question(*project, file, content), file)) {
        return work.status();
    }
    bool complete = false;
    {
        const Watch::Operation operation(work.watch(), "removing", Watch::Counts::Deletions,
                                         static_cast<std::size_t>(project->Documents()->Count()));
        complete = project->DeleteFiles();
    }
    if (work.watch().interrupt().isRequested()) {
        work.refuse(file, "interrupted");
    }
    report(work, content, json, printer);
    for (const std::string& deck : decksElsewhere(*project, file)) {
        work.refuse(deck, leadsOut);
    }
    if (!complete) {
        work.session().raiseStatus(ExitStatus::Invalid);
    }
    return work.status();
}

} // namespace cli
