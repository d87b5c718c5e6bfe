#include "project/modGeneral.h"

#include "external/Platform.h"
#include "util/Steps.h"
#include "util/clStringEx.h"

namespace tessaly::modGeneral {

namespace {

constexpr std::size_t temporaryFolderBuffer = 512;

/// A new base name from the user. Empty if the user gave up; any other empty answer is asked again,
/// since a file needs a name.
std::u16string askForName(const clStringEx& stringEx) {
    const auto ask = [] {
        return Platform::current()->InputBox(u"Please enter a new value for the filename",
                                             u"Select File name", u"");
    };
    for (;;) {
        std::u16string answer = ask();
        if (answer.empty()) {
            const MsgBoxAnswer cancel = Platform::current()->MsgBox(
                u"You are about to cancel this operation.\nAre you sure?",
                MsgBoxFlags::ExclamationYesNo, defaultCaption);
            if (cancel == MsgBoxAnswer::Yes) {
                return {};
            }
        } else if (stringEx.validFileName(answer)) {
            return answer;
        }
    }
}

} // namespace

std::u16string getTempPath() {
    std::u16string folder = Platform::current()->temporaryFolder();
    return folder.size() < temporaryFolderBuffer ? folder : std::u16string();
}

void ensureFolder(const std::u16string& path) {
    runSteps([&](Steps& step) {
        std::shared_ptr<FileSystemObject> fso;
        step([&] { fso = Platform::current()->newFileSystemObject(); });
        step([&] {
            if (!require(fso).FolderExists(path)) {
                fso->CreateFolder(path);
            }
        });
        return true;
    });
}

bool promptFileExists(std::u16string& strFile, const std::u16string& strKeep) {
    const clStringEx stringEx;
    return runSteps([&](Steps& steps) {
        // A failure that was shown has also taken the name away.
        const auto step = [&](auto&& action) {
            if (!steps(action)) {
                strFile.clear();
            }
        };
        std::shared_ptr<FileSystemObject> fso;
        step([&] { fso = Platform::current()->newFileSystemObject(); });

        bool exists = true;
        step([&] { exists = require(fso).FileExists(strFile); });
        if (!exists) {
            return false;
        }
        MsgBoxAnswer overwrite = MsgBoxAnswer::No;
        step([&] {
            const std::u16string file = require(fso).GetFileName(strFile);
            const std::u16string folder = fso->GetParentFolderName(strFile);
            overwrite = Platform::current()->MsgBox(
                u"A file named " + file + u" already exists in the directory " + folder +
                    u"\nThis could be part of another project in the same directory. Overwrite?",
                MsgBoxFlags::ExclamationYesNo, u"File Exists");
        });
        if (overwrite == MsgBoxAnswer::Yes) {
            step([&] {
                if (!require(fso).isSameFile(strFile, strKeep)) {
                    fso->DeleteFile(strFile, true);
                }
            });
            return false;
        }
        std::u16string extension;
        std::u16string name;
        step([&] { extension = require(fso).GetExtensionName(strFile); });
        step([&] { name = askForName(stringEx); });
        if (name.empty()) {
            strFile.clear();
            return false;
        }
        step([&] {
            std::u16string folder = stringEx.pathFromFileName(strFile);
            strFile = stringEx.trimCharacter(folder, u"\\") + u"\\" + name + u"." + extension;
        });
        return true;
    });
}

} // namespace tessaly::modGeneral
