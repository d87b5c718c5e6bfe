// Removing a project from the disk. A failed step is dropped and the next one runs.

#include "external/Platform.h"
#include "project/ProjectFile.h"
#include "project/clProject.h"
#include "util/Attempt.h"

namespace tessaly {

bool clProject::DeleteFiles() {
    const auto alive = keepAlive();
    std::shared_ptr<FileSystemObject> fso;
    attempt([&] { fso = Platform::current()->newFileSystemObject(); });
    if (!hasFolderToDelete(fso)) {
        return false;
    }
    bool result = true;
    const auto deleteFile = [&](const std::u16string& path) {
        if (require(fso).FileExists(path)) {
            fso->DeleteFile(path, false);
        } else {
            result = false;
        }
    };
    const auto deleteFolder = [&](const std::u16string& path) {
        if (require(fso).FolderExists(path)) {
            fso->DeleteFolder(path, true);
        }
    };
    const std::int32_t count = mvarDocuments ? mvarDocuments->Count() : 0;
    for (std::int32_t i = 1; i <= count; ++i) {
        attempt([&] {
            const std::u16string name = mvarDocuments->Item(i)->Name();
            if (isBaseName(name)) {
                deleteFile(ProjectPath() + u"\\" + name + u".wml");
            } else {
                result = false; // it lies elsewhere, and stays
            }
        });
    }
    attempt([&] { deleteFolder(ProjectPath() + u"\\images"); });
    attempt([&] { deleteFile(projectFile()); });
    attempt([&] { deleteFolder(ProjectPath()); });
    m_NeedSave = true;
    return result;
}

bool clProject::hasFolderToDelete(const std::shared_ptr<FileSystemObject>& fso) {
    bool below = false;
    attempt([&] {
        const std::u16string folder = require(fso).GetAbsolutePathName(ProjectPath());
        below = !ProjectPath().empty() && !fso->GetParentFolderName(folder).empty();
        if (below && !projectFile().empty()) {
            // Of a file that held no line, or of one whose first deck is missing, init leaves the
            // folder of the project before it.
            const std::u16string home =
                fso->GetAbsolutePathName(fso->GetParentFolderName(projectFile()));
            below = home == folder || fso->isSameFile(home, folder);
        }
    });
    return below;
}

} // namespace tessaly
