// Writing a deck. The file holds exactly what the markup library makes of the document's text.

#include "document/WirelessDocument.h"
#include "external/Platform.h"
#include "naming/dlgFileExists.h"
#include "util/Steps.h"

namespace tessaly {

bool WirelessDocument::Save(const std::u16string& strDocFullPath) {
    const auto alive = keepAlive();
    return runSteps([&](Steps& step) {
        DeckFile file; // open until the routine ends
        writeDeck(step, strDocFullPath, file);
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
        DeckFile file;
        writeDeck(step, name, file);
        step([&] { m_NewName = require(file.fso).GetBaseName(name); });
        return true;
    });
}

std::u16string WirelessDocument::NewName() const {
    return m_NewName;
}

void WirelessDocument::writeDeck(Steps& step, const std::u16string& path, DeckFile& file) {
    if (m_MuRtb) {
        step([&] {
            if (m_View == vPLain) {
                plainToMarkup(); // if it is refused, the control's older text is saved
            }
        });
        step([&] { m_Content = require(m_MuRtb).Text(); });
    }
    step([&] { file.fso = Platform::current()->newFileSystemObject(); });
    step([&] {
        file.stream = require(file.fso).OpenTextFile(path, IOMode::ForWriting, true, formatAnsi);
    });
    step([&] { m_Content = require(m_Ravik).exportText(m_Content); });
    step([&] { require(file.stream).Write(m_Content); });
    step([&] { require(file.stream).Close(); });
}

} // namespace tessaly
