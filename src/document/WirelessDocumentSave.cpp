// Writing a deck. The file holds exactly what the markup library makes of the document's text.

#include "document/WirelessDocument.h"
#include "external/Platform.h"
#include "naming/dlgFileExists.h"
#include "util/Steps.h"

namespace tessaly {

bool WirelessDocument::Save(const std::u16string& strDocFullPath) {
    const auto alive = keepAlive();
    return runSteps([&](Steps& step) {
        writeDeck(step, strDocFullPath);
        return true;
    });
}

bool WirelessDocument::SaveAs(const std::u16string& strFullDocPath) {
    const auto alive = keepAlive();
    return runSteps([&](Steps& step) {
        std::u16string name;
        step([&] { name = dlgFileExists::shared().getUniqueFileName(strFullDocPath, false); });
        if (name.empty()) {
            step([&] {
                Platform::current()->MsgBox(
                    u"Document " + strFullDocPath +
                        u" has not been saved. \nYou must save this document in order to keep the "
                        u"changes.",
                    MsgBoxFlags::Information, defaultCaption);
            });
            m_isDirty = true; // no OnDocDirty: the text has not changed, it is not saved
            return false;
        }
        const std::shared_ptr<FileSystemObject> fso = writeDeck(step, name);
        step([&] { m_NewName = require(fso).GetBaseName(name); });
        return true;
    });
}

std::u16string WirelessDocument::NewName() const {
    return m_NewName;
}

std::shared_ptr<FileSystemObject> WirelessDocument::writeDeck(Steps& step,
                                                              const std::u16string& path) {
    if (m_MuRtb) {
        step([&] {
            if (m_View == vPLain) {
                plainToMarkup(); // if it is refused, the control's older text is saved
            }
        });
        step([&] { m_Content = require(m_MuRtb).Text(); });
    }
    std::shared_ptr<FileSystemObject> fso;
    std::shared_ptr<TextStream> stream;
    step([&] { fso = Platform::current()->newFileSystemObject(); });
    step([&] { stream = require(fso).OpenTextFile(path, IOMode::ForWriting, true, formatAnsi); });
    step([&] { m_Content = require(m_Ravik).exportText(m_Content); });
    step([&] { require(stream).Write(m_Content); });
    step([&] { require(stream).Close(); });
    return fso;
}

} // namespace tessaly
