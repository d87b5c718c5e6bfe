#pragma once

#include "document/colDocuments.h"
#include "external/Controls.h"
#include "external/FileSystemObject.h"
#include "external/Ravikit.h"
#include "project/clProjectEvents.h"
#include "util/EventSource.h"
#include "util/clStringEx.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

struct ProjectRecord;
class Steps;

/// This object represents a Corvane project. A project consists of a grouping of WML decks. other
/// information associated with a project include the path, author etc.
///
/// Make one with std::make_shared; that fails if the platform cannot make its objects. Give it
/// AppPath and the controls, then `init` it on a project file. There is no close operation: drop
/// it.
class clProject : public Object,
                  public std::enable_shared_from_this<clProject>,
                  private __WirelessDocument {
public:
    clProject();
    ~clProject() override;
    clProject(const clProject&) = delete;
    clProject& operator=(const clProject&) = delete;
    clProject(clProject&&) = delete;
    clProject& operator=(clProject&&) = delete;

    virtual void description(const std::u16string& strDesc);
    virtual std::u16string description() const;

    virtual void notes(const std::u16string& strNotes);
    virtual std::u16string notes() const;

    /// The host application's folder, without trailing `\`; the DTD and the schema lie below it.
    /// Documents that are there already do not hear of it.
    virtual void AppPath(const std::u16string& strPath);
    virtual std::u16string AppPath() const;

    /// The one markup object, which all documents share.
    virtual std::shared_ptr<tessaly::Ravik> Ravik() const;

    /// The host's controls: a ListBarControl, a BrowserControl, a RichTextControl. Another object
    /// fails with TypeMismatch.
    virtual void Listbar(const ObjectRef& lb);
    virtual void wbPlain(const ObjectRef& wb);
    virtual void MuRtb(const ObjectRef& rtb);

    /// The document whose events are passed on; it need not be one of Documents. The first setter
    /// takes none as well, and ignores a document with the name of the current one. The second
    /// always takes the document and always raises OnSetCurrentDocument; none fails with
    /// ObjectNotSet once the current document has become none.
    virtual void CurrentDocument(const std::shared_ptr<WirelessDocument>& vData);
    virtual void CurrentDocumentEx(const std::shared_ptr<WirelessDocument>& vData);
    virtual std::shared_ptr<WirelessDocument> CurrentDocument() const;

    /// None is taken too; then Save does nothing, and members that need a document fail with
    /// ObjectNotSet.
    virtual void Documents(const std::shared_ptr<colDocuments>& vData);
    virtual std::shared_ptr<colDocuments> Documents() const;

    virtual void CreationDate(Date vData);
    virtual Date CreationDate() const;

    /// True if the project's path holds the word "templates" anywhere, in any case.
    virtual bool isTemplate() const;

    /// True if the project or one of its documents has changes that are not saved. The setter is
    /// there for hosts that call it and stores nothing: only the project's own operations count.
    virtual void NeedSave(bool bValue);
    virtual bool NeedSave() const;

    virtual void Owner(const std::u16string& vData);
    virtual std::u16string Owner() const;

    /// The full path of the project file.
    virtual void projectFile(const std::u16string& vData);
    virtual std::u16string projectFile() const;

    /// The project's folder. The getter takes trailing `\` off what is stored.
    virtual void ProjectPath(const std::u16string& vData);
    virtual std::u16string ProjectPath();

    /// This is the name of the project as given by the user. The setter takes trailing `\` off.
    virtual void ProjectName(const std::u16string& vData);
    virtual std::u16string ProjectName() const;

    /// Opens the project file at the full path `strProjectFilePath` with all its decks. False if
    /// there is no such file or it cannot be read, and the object is then as it was; if a deck
    /// could not be loaded (the rest of the file is then not read); or if the file gives no name or
    /// its path no folder, which the user hears of. What was read until then stays. No failure
    /// reaches the caller, and no current document is chosen.
    virtual bool init(const std::u16string& strProjectFilePath);

    /// Loads the deck `strName`, a file name without folder and extension, from the project's
    /// folder into Documents. `bTellApp` True raises OnDocAdd. False if it could not be loaded; the
    /// user hears of a missing file. No failure reaches the caller.
    virtual bool addDocument(const std::u16string& strName, const Value& bTellApp = {});

    /// Takes a document, given by name or by position from 1, out of Documents. Its file stays. One
    /// that is not there fails as colDocuments::Remove does.
    virtual void removeDocument(const Value& strDocName);

    /// The name of the first document that the project file lists, empty if it lists none, and
    /// "Cannot access document !" if it cannot be read. The file is not opened as a project.
    virtual std::u16string getFirstDocument(const std::u16string& strProjectFileName) const;

    /// Makes a new project on disk, and leaves this object as it is: to work with the project,
    /// `init` it afterwards. The folder `strPath` is made if it is missing (not its parent) and
    /// loses its trailing `\` in the caller's variable. The deck at the full path
    /// `strFullDocumentName` is copied into it; if its name is taken there, the user is asked. Then
    /// the project file `strName`.cvp is written, over an old one. A Boolean: False if the user
    /// gave up. Failures of the copy and of the project file reach the caller, and what was done
    /// stays.
    virtual Value Create(const std::u16string& strName, const std::u16string& strDescription,
                         std::u16string& strPath, const std::u16string& strFullDocumentName,
                         const std::u16string& strBy);

    /// Rewrites the project file in place, and no deck. The user hears of a file that cannot be
    /// written; NeedSave does not move.
    virtual void Save();

    /// Writes the deck of the document called `docName` into the project's folder, under the
    /// document's own name. True if it was written; a name that is not in Documents fails as
    /// colDocuments::Item does. The project file and the flags stay as they are.
    virtual bool SaveDocument(const std::u16string& docName);

    /// Writes every deck, changed or not, and then the project file. A document that was written
    /// loses isDirty and added. True if all were.
    virtual bool SaveAll();

    /// Writes the project under another name: `strNewFullpath` is the full path of a project file
    /// in a folder that exists. The decks go beside it, from memory. The user settles each name
    /// that is taken. True if all went well, and the object then stands for the new project; False
    /// if the user gave up or something failed: the object stands for the old one, unless the user
    /// heard of each failure, and what was written stays. A deck whose name is no file name ends
    /// it before anything is written. No failure reaches the caller.
    virtual bool SaveAs(const std::u16string& strNewFullpath);

    /// Removes the project from the disk: its decks, its `images` folder, its project file and its
    /// folder with whatever lies there. True if every deck and the project file were there. A step
    /// that fails is dropped, and a deck that lies elsewhere is left alone. The object stays as it
    /// was, and NeedSave becomes True. A project without a folder, one in the root of a drive, and
    /// one whose project file lies elsewhere is refused, and one of which that is not known: the
    /// result is False, nothing is removed and NeedSave does not move.
    virtual bool DeleteFiles();

    EventSource<__clProject>& events() { return m_events; }

private:
    void OnRefresh() override { mvarCurrentDocument_OnRefresh(); }
    void OnViewChange() override { mvarCurrentDocument_OnViewChange(); }
    void OnParseError(std::shared_ptr<ParseError>& err) override {
        mvarCurrentDocument_OnParseError(err);
    }
    void OnClearErrors() override { mvarCurrentDocument_OnClearErrors(); }
    void OnDocDirty() override { mvarCurrentDocument_OnDocDirty(); }
    void OnUTag(std::u16string& strTagName) override { mvarCurrentDocument_OnUTag(strTagName); }
    void OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt, std::u16string& delText,
                         std::int32_t& action) override {
        mvarCurrentDocument_OnAdd2UndoStack(lStart, txt, delText, action);
    }

    void mvarCurrentDocument_OnRefresh();
    void mvarCurrentDocument_OnViewChange();
    void mvarCurrentDocument_OnParseError(std::shared_ptr<ParseError>& err);
    void mvarCurrentDocument_OnClearErrors();
    void mvarCurrentDocument_OnDocDirty();
    void mvarCurrentDocument_OnUTag(std::u16string& strTagName);
    void mvarCurrentDocument_OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt,
                                             std::u16string& delText, std::int32_t& action);

    /// A reference for members that go on after host code has run: that may drop the last one.
    std::shared_ptr<clProject> keepAlive() { return weak_from_this().lock(); }

    void bindCurrentDocument(const std::shared_ptr<WirelessDocument>& document);

    /// `path` without trailing `\`.
    std::u16string withoutTrailingBackslash(std::u16string path) const;

    class Lines;

    /// Reads the lines of the project file to its end. False if a document could not be loaded, or
    /// the file not be read on.
    bool readLines(const std::shared_ptr<FileSystemObject>& fso, Lines& lines,
                   const std::u16string& strProjectFilePath);
    bool applyRecord(const ProjectRecord& record);

    void writeProjectFile();

    /// True if the deck of each of `documents` has a name of its own in the project's folder.
    /// Otherwise the user hears of the first that has none.
    static bool lieInFolder(const std::vector<std::shared_ptr<WirelessDocument>>& documents);

    /// One document's part of SaveAs, beside the project file `projectPath`. False if it was not
    /// saved.
    bool saveDocumentAs(Steps& step, const std::shared_ptr<WirelessDocument>& document,
                        const std::u16string& projectPath,
                        const std::shared_ptr<TextStream>& stream);

    /// Where the deck of `document` goes in `folder`, a path without trailing `\`.
    static std::u16string deckPath(const std::u16string& folder, const WirelessDocument& document);

    /// False where DeleteFiles would remove the root of a drive, or the folder of another project
    /// than the one in projectFile.
    bool hasFolderToDelete(const std::shared_ptr<FileSystemObject>& fso);

    /// Tells the user if name or path is blank. True if neither is.
    bool hasNameAndPath(const std::u16string& strProjectFilePath);

    std::u16string mvarProjectName;
    std::u16string mvarProjectPath;
    std::u16string mvarprojectFile;
    std::u16string mvarOwner;
    Date mvarCreationDate = 0;
    bool m_NeedSave = false;
    std::u16string m_notes;
    std::u16string m_description;
    std::shared_ptr<colDocuments> mvarDocuments;
    std::shared_ptr<RichTextControl> m_MuRtb;
    std::shared_ptr<BrowserControl> m_wbPlain;
    std::shared_ptr<ListBarControl> m_ListBar;
    std::u16string m_AppPath;
    std::shared_ptr<tessaly::Ravik> m_Ravik;
    std::unique_ptr<clStringEx> m_StringEx;
    std::shared_ptr<FileSystemObject> m_fso;
    std::shared_ptr<WirelessDocument> mvarCurrentDocument;

    EventSource<__clProject> m_events;
    Subscription m_currentDocumentEvents;
};

} // namespace tessaly
