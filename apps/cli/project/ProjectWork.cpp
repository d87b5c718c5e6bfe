#include "apps/cli/project/ProjectWork.h"

#include "apps/cli/project/DeckNames.h"
#include "apps/cli/project/ProjectLines.h"

#include "platform/files/PathName.h"
#include "project/ProjectFile.h"
#include "util/Attempt.h"

#include <filesystem>
#include <system_error>

namespace cli {

namespace fs = std::filesystem;

std::optional<std::u16string> ProjectWork::fullPath(const std::string& file) {
    std::u16string path;
    const auto failed =
        tessaly::attempt([&] { path = tessaly::absolutePathOf(tessaly::toComponentPath(file)); });
    if (failed || file.empty()) {
        refuse(file, "is no path that can be used here");
        return std::nullopt;
    }
    m_platform->speakOf(tessaly::parentFolderOf(path));
    return path;
}

std::shared_ptr<tessaly::clProject> ProjectWork::open(const std::string& file, bool inPart) {
    const auto path = fullPath(file);
    if (!path || !m_session.readable(file)) {
        return nullptr;
    }
    const std::vector<std::u16string> names = m_session.listed(file);
    auto project = Session::newProject();
    bool opened = false;
    {
        const Watch::Operation operation(watch(), "opening", Watch::Counts::Reads, names.size());
        opened = project->init(*path);
    }
    if (opened) {
        return project;
    }
    if (watch().interrupt().isRequested()) {
        refuse(file, "interrupted, and left as it was");
        return nullptr;
    }
    m_session.tellWhyInPart(file, *project);
    return inPart && !isBlank(project->ProjectName()) ? project : nullptr;
}

bool ProjectWork::isOnDisk(tessaly::clProject& project, const std::string& file) {
    const std::u16string text = m_session.readText(file).value_or(u"");
    const std::vector<std::u16string> names = documentsIn(text);
    const auto documents = project.Documents()->NewEnum();
    bool same = names.size() == documents.size();
    for (std::size_t i = 0; same && i < names.size(); ++i) {
        same = names[i] == documents[i]->Name();
    }
    same = same && text.ends_with(tessaly::endOfProjectFile + std::u16string(u"\r\n"));
    if (!same) {
        const std::string why = obstacleTo(file);
        const std::string refusal = utf8(watch().refusal().why);
        fail(file, "the project file was not written in full" + (!why.empty()       ? ": it " + why
                                                                 : !refusal.empty() ? ": " + refusal
                                                                                    : ""));
    }
    return same;
}

tessaly::Found lookUp(const std::u16string& path) {
    tessaly::Found found;
    tessaly::attempt([&] { found = tessaly::lookUp(path); });
    return found;
}

std::string obstacleTo(const std::string& file) {
    constexpr fs::perms anyWrite =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    const fs::path path = fs::absolute(file);
    const fs::path folder = path.parent_path();
    std::error_code unknown;
    if (path.filename().string().size() > longestFileName) {
        return "has a name longer than 255 bytes";
    }
    if (!fs::exists(folder, unknown)) {
        return "lies in a folder that is not there: " + folder.string();
    }
    if (!fs::is_directory(folder, unknown)) {
        return "would lie in something that is no folder: " + folder.string();
    }
    const fs::file_status there = fs::status(path, unknown);
    if (fs::exists(there) && !fs::is_regular_file(there)) {
        return "is no file";
    }
    if (fs::exists(there) && (there.permissions() & anyWrite) == fs::perms::none) {
        return "is read-only";
    }
    if (!fs::exists(there) &&
        (fs::status(folder, unknown).permissions() & anyWrite) == fs::perms::none) {
        return "lies in a folder that is write-protected: " + folder.string();
    }
    return {};
}

std::string folderOf(const std::string& file) {
    const std::string folder = fs::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::string counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + ' ' + what + (count == 1 ? "" : "s");
}

} // namespace cli
