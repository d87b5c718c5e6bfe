// Making a new project on disk.

#include "external/Platform.h"
#include "project/ProjectFile.h"
#include "project/clProject.h"
#include "project/modGeneral.h"

namespace tessaly {

Value clProject::Create(const std::u16string& strName, const std::u16string& strDescription,
                        std::u16string& strPath, const std::u16string& strFullDocumentName,
                        const std::u16string& strBy) {
    const auto alive = keepAlive();
    modGeneral::ensureFolder(strPath);
    FileSystemObject& fso = require(m_fso);
    const std::u16string fileName = fso.GetFileName(strFullDocumentName);
    std::u16string target = m_StringEx->trimCharacter(strPath, u"\\") + u"\\" + fileName;

    const std::u16string temporary = modGeneral::getTempPath();
    // No path at all would stand for the current folder, where nothing may be replaced unasked.
    const bool inTemporaryFolder =
        !temporary.empty() && fso.GetAbsolutePathName(temporary) == strPath;
    if (!inTemporaryFolder) {
        while (modGeneral::promptFileExists(target, strFullDocumentName)) {
            Platform::current()->DoEvents();
        }
    }
    if (target.empty()) {
        return false;
    }
    fso.CopyFile(strFullDocumentName, target, true);
    const auto stream = fso.CreateTextFile(strPath + u"\\" + strName + u".cvp", true, false);
    writeRecord(require(stream), keySite, strName);
    writeRecord(*stream, keyDescription, strDescription);
    writeRecord(*stream, keyPath, strPath);
    writeRecord(*stream, keyOwner, strBy);
    writeRecord(*stream, keyDocument, fso.GetBaseName(target));
    writeEndOfProjectFile(*stream);
    return true;
}

} // namespace tessaly
