#include "project/clProject.h"

#include "external/Platform.h"
#include "util/LetterCase.h"

#include <utility>

namespace tessaly {

clProject::clProject()
    : mvarDocuments(new colDocuments)
    , m_Ravik(Platform::current()->newRavik())
    , m_StringEx(std::make_unique<clStringEx>())
    , m_fso(Platform::current()->newFileSystemObject()) {}

clProject::~clProject() {
    m_currentDocumentEvents.end();
    mvarDocuments.reset();
    m_StringEx.reset();
    m_fso.reset();
}

void clProject::description(const std::u16string& strDesc) {
    m_description = strDesc;
}

std::u16string clProject::description() const {
    return m_description;
}

void clProject::notes(const std::u16string& strNotes) {
    m_notes = strNotes;
}

std::u16string clProject::notes() const {
    return m_notes;
}

void clProject::AppPath(const std::u16string& strPath) {
    m_AppPath = strPath;
    require(m_Ravik).setDtdPath(kindMarkup, strPath + u"\\DTD\\wml.dtd");
    require(m_Ravik).setSchemaPath(kindMarkup, strPath + u"\\DTD\\wml.xdr");
}

std::u16string clProject::AppPath() const {
    return m_AppPath;
}

std::shared_ptr<Ravik> clProject::Ravik() const {
    return m_Ravik;
}

void clProject::Listbar(const ObjectRef& lb) {
    m_ListBar = narrow<ListBarControl>(lb);
}

void clProject::wbPlain(const ObjectRef& wb) {
    m_wbPlain = narrow<BrowserControl>(wb);
}

void clProject::MuRtb(const ObjectRef& rtb) {
    m_MuRtb = narrow<RichTextControl>(rtb);
}

void clProject::CurrentDocument(const std::shared_ptr<WirelessDocument>& vData) {
    if (!vData) {
        bindCurrentDocument(nullptr);
        return;
    }
    if (mvarCurrentDocument && mvarCurrentDocument->Name() == vData->Name()) {
        return;
    }
    CurrentDocumentEx(vData);
}

void clProject::CurrentDocumentEx(const std::shared_ptr<WirelessDocument>& vData) {
    bindCurrentDocument(vData);
    m_MuRtb = require(mvarCurrentDocument).MuRtb();
    m_events.raise(&__clProject::OnSetCurrentDocument);
}

std::shared_ptr<WirelessDocument> clProject::CurrentDocument() const {
    return mvarCurrentDocument;
}

void clProject::bindCurrentDocument(const std::shared_ptr<WirelessDocument>& document) {
    m_currentDocumentEvents = document ? document->events().advise(*this) : Subscription();
    mvarCurrentDocument = document;
}

void clProject::Documents(const std::shared_ptr<colDocuments>& vData) {
    mvarDocuments = vData;
}

std::shared_ptr<colDocuments> clProject::Documents() const {
    return mvarDocuments;
}

void clProject::CreationDate(Date vData) {
    mvarCreationDate = vData;
}

Date clProject::CreationDate() const {
    return mvarCreationDate;
}

bool clProject::isTemplate() const {
    return toLower(mvarProjectPath).find(u"templates") != std::u16string::npos;
}

void clProject::NeedSave(bool /*bValue*/) {}

bool clProject::NeedSave() const {
    if (m_NeedSave) {
        return true;
    }
    const colDocuments& documents = require(mvarDocuments);
    for (std::int32_t i = 1; i <= documents.Count(); ++i) {
        if (documents.Item(i)->isDirty()) {
            return true;
        }
    }
    return false;
}

void clProject::Owner(const std::u16string& vData) {
    mvarOwner = vData;
}

std::u16string clProject::Owner() const {
    return mvarOwner;
}

void clProject::projectFile(const std::u16string& vData) {
    mvarprojectFile = vData;
}

std::u16string clProject::projectFile() const {
    return mvarprojectFile;
}

void clProject::ProjectPath(const std::u16string& vData) {
    mvarProjectPath = vData;
}

std::u16string clProject::ProjectPath() {
    return m_StringEx->trimCharacter(mvarProjectPath, u"\\");
}

void clProject::ProjectName(const std::u16string& vData) {
    mvarProjectName = withoutTrailingBackslash(vData);
}

std::u16string clProject::ProjectName() const {
    return mvarProjectName;
}

void clProject::removeDocument(const Value& strDocName) {
    require(mvarDocuments).Remove(strDocName);
    m_NeedSave = true;
}

std::u16string clProject::withoutTrailingBackslash(std::u16string path) const {
    return m_StringEx->trimCharacter(path, u"\\");
}

void clProject::mvarCurrentDocument_OnRefresh() {
    m_events.raise(&__clProject::OnRefresh);
}

void clProject::mvarCurrentDocument_OnViewChange() {
    m_events.raise(&__clProject::OnViewChange);
}

void clProject::mvarCurrentDocument_OnParseError(std::shared_ptr<ParseError>& err) {
    m_events.raise(&__clProject::OnParseError, err);
}

void clProject::mvarCurrentDocument_OnClearErrors() {
    m_events.raise(&__clProject::OnClearErrors);
}

void clProject::mvarCurrentDocument_OnDocDirty() {
    m_events.raise(&__clProject::OnDocDirty);
}

void clProject::mvarCurrentDocument_OnUTag(std::u16string& strTagName) {
    m_events.raise(&__clProject::OnUTag, strTagName);
}

void clProject::mvarCurrentDocument_OnAdd2UndoStack(std::int32_t& lStart, std::u16string& txt,
                                                    std::u16string& delText, std::int32_t& action) {
    m_events.raise(&__clProject::OnAdd2UndoStack, lStart, txt, delText, action);
}

} // namespace tessaly
