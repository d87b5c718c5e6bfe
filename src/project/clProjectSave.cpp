// Saving a project in its place, and under another name.

#include "external/Platform.h"
#include "naming/dlgFileExists.h"
#include "project/ProjectFile.h"
#include "project/clProject.h"
#include "util/LetterCase.h"
#include "util/Steps.h"

namespace tessaly {

void clProject::Save() {
    const auto alive = keepAlive();
    writeProjectFile();
}

bool clProject::SaveDocument(const std::u16string& docName) {
    const auto alive = keepAlive();
    const auto document = require(mvarDocuments).Item(docName);
    return lieInFolder({document}) && document->Save(deckPath(ProjectPath(), *document));
}

bool clProject::SaveAll() {
    const auto alive = keepAlive();
    bool allSaved = true;
    for (std::int32_t i = 1; i <= require(mvarDocuments).Count(); ++i) {
        const auto document = mvarDocuments->Item(i);
        if (lieInFolder({document}) && document->Save(deckPath(ProjectPath(), *document))) {
            document->isDirty(false);
            document->added(false);
        } else {
            allSaved = false;
        }
    }
    writeProjectFile();
    m_NeedSave = false;
    return allSaved;
}

void clProject::writeProjectFile() {
    runSteps([&](Steps& step) {
        std::shared_ptr<TextStream> stream;
        step([&] { stream = require(m_fso).CreateTextFile(projectFile(), true, false); });
        step([&] { writeRecord(require(stream), keySite, ProjectName()); });
        step([&] { writeRecord(require(stream), keyDescription, description()); });
        step([&] { writeRecord(require(stream), keyPath, ProjectPath()); });
        step([&] { writeRecord(require(stream), keyOwner, Owner()); });
        step([&] { writeRecord(require(stream), keyNotes, notes()); });
        for (std::int32_t i = 1; i <= require(mvarDocuments).Count(); ++i) {
            step(
                [&] { writeRecord(require(stream), keyDocument, mvarDocuments->Item(i)->Name()); });
        }
        step([&] { writeEndOfProjectFile(require(stream)); });
        return true;
    });
}

bool clProject::SaveAs(const std::u16string& strNewFullpath) {
    const auto alive = keepAlive();
    return runSteps([&](Steps& step) {
        // Asked beforehand: nothing is begun that has to end at such a deck.
        if (!lieInFolder(require(mvarDocuments).NewEnum())) {
            return false;
        }
        std::u16string path;
        step([&] { path = dlgFileExists::shared().getUniqueFileName(strNewFullpath, true); });
        if (path.empty()) {
            return false;
        }
        FileSystemObject& fso = require(m_fso);
        std::shared_ptr<TextStream> stream;
        step([&] { stream = fso.CreateTextFile(path, true, false); });
        step([&] {
            TextStream& file = require(stream); // without it, nothing else is asked for
            writeRecord(file, keySite, fso.GetBaseName(path));
        });
        step([&] { writeRecord(require(stream), keyDescription, m_description); });
        step([&] {
            TextStream& file = require(stream);
            writeRecord(file, keyPath, fso.GetParentFolderName(path));
        });
        step([&] { writeRecord(require(stream), keyOwner, mvarOwner); });
        step([&] { writeRecord(require(stream), keyNotes, m_notes); });
        for (std::int32_t i = 1; i <= require(mvarDocuments).Count(); ++i) {
            if (!saveDocumentAs(step, mvarDocuments->Item(i), path, stream)) {
                return false;
            }
        }
        step([&] { writeEndOfProjectFile(require(stream)); });
        step([&] { mvarProjectPath = fso.GetParentFolderName(path); });
        step([&] { CreationDate(Platform::current()->now()); });
        projectFile(path);
        step([&] { mvarProjectName = fso.GetBaseName(path); });
        m_NeedSave = false;
        return true;
    });
}

bool clProject::saveDocumentAs(Steps& step, const std::shared_ptr<WirelessDocument>& document,
                               const std::u16string& projectPath,
                               const std::shared_ptr<TextStream>& stream) {
    std::u16string path;
    bool saved = false;
    step([&] {
        // Not of the path that was wished for: a name with a `\` may have led to another folder.
        const std::u16string folder = require(m_fso).GetParentFolderName(projectPath);
        path = deckPath(withoutTrailingBackslash(folder), require(document));
    });
    step([&] { saved = require(document).SaveAs(path); });
    if (!saved) {
        return false;
    }
    step([&] { document->Name(document->NewName()); });
    step([&] { writeRecord(require(stream), keyDocument, document->Name()); });
    step([&] { document->isDirty(false); });
    step([&] { document->added(false); });
    return true;
}

bool clProject::lieInFolder(const std::vector<std::shared_ptr<WirelessDocument>>& documents) {
    for (const auto& document : documents) {
        const std::u16string name = document->Name();
        if (!isBaseName(name)) {
            attempt([&] {
                Platform::current()->MsgBox(u"The document " + name +
                                                u" has not been saved. \nIts name is no file name, "
                                                u"and would lead out of the project's folder.",
                                            MsgBoxFlags::Critical, defaultCaption);
            });
            return false;
        }
    }
    return true;
}

std::u16string clProject::deckPath(const std::u16string& folder, const WirelessDocument& document) {
    // In small letters, as decks are looked for: one project is one set of files also where the
    // case of names counts.
    return folder + u"\\" + document.Name() + u"." + toLower(document.DocumentTypeName());
}

} // namespace tessaly
