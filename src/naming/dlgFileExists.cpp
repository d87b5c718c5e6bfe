#include "naming/dlgFileExists.h"

#include "external/Platform.h"
#include "naming/FileExistsLayout.h"
#include "util/Lasting.h"
#include "util/LetterCase.h"
#include "util/Steps.h"

namespace tessaly {

namespace {

/// Sets a flag for as long as it lives.
class Raised {
public:
    explicit Raised(bool& flag)
        : m_flag(flag) {
        m_flag = true;
    }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;
    Raised(Raised&&) = delete;
    Raised& operator=(Raised&&) = delete;
    ~Raised() { m_flag = false; }

private:
    bool& m_flag;
};

} // namespace

/// What a state shows. Yes and No stand together, and OK with the text box.
struct dlgFileExists::State {
    std::u16string reason;
    bool asksToOverwrite; ///< otherwise it asks for a name
    bool offersCancel;
};

dlgFileExists& dlgFileExists::shared() {
    static auto& dialog = lasting<dlgFileExists>();
    return dialog;
}

std::u16string dlgFileExists::getUniqueFileName(const std::u16string& strFileName, bool bProject) {
    if (m_up) {
        // One conflict at a time: Yes must never delete another file than the one it was asked for.
        throw Failure(FailureCode::PermissionDenied, u"Another file name is being asked for");
    }
    if (!m_fso) {
        m_fso = Platform::current()->newFileSystemObject();
    }
    m_strFileName = strFileName;
    m_bProject = bProject;
    std::u16string name = strFileName;
    std::shared_ptr<File> file;
    const std::u16string taken = existingForm(m_strFileName);
    if (!taken.empty()) {
        file = require(m_fso).GetFile(taken);
        const bool readOnly = (require(file).Attributes() & File::readOnly) != 0;
        if (readOnly) {
            m_iMode = m_bProject ? modeProjectReadOnly : modeDocumentReadOnly;
        } else {
            m_iMode = m_bProject ? modeProjectExists : modeDocumentExists;
        }
        name = askUser();
        if (!name.empty() && !equalIgnoringCase(name, m_strFileName)) {
            name = getUniqueFileName(name, m_bProject);
        }
    }
    m_fso.reset();
    return name;
}

std::u16string dlgFileExists::existingForm(const std::u16string& path) {
    // Where letters of either case are names of their own, the small ones may lead to another file
    // than the one that would be written over.
    const std::u16string lowerCase = toLower(path);
    const std::u16string& form = require(m_fso).isSameFile(lowerCase, path) ? lowerCase : path;
    return require(m_fso).FileExists(form) ? form : std::u16string();
}

std::u16string dlgFileExists::askUser() {
    m_iAnswer = answerCancel;
    load();
    enter(stateOfMode());
    showModally();
    return chosenFileName();
}

std::u16string dlgFileExists::chosenFileName() {
    switch (m_iAnswer) {
    case answerYes:
        return m_strFileName;
    case answerOk:
        return require(m_fso).GetParentFolderName(m_strFileName) + u"\\" +
               require(m_form).text(u"txtName") + (m_bProject ? u".cvp" : u".wml");
    case answerNo:
    case answerCancel:
        break;
    }
    return {};
}

dlgFileExists::State dlgFileExists::stateOfMode() {
    const auto readOnly = [&](const std::u16string& kind) {
        return u"The " + kind + u" " + m_strFileName + u" is READ-ONLY.\nPlease choose another " +
               kind + u" name ";
    };
    const auto exists = [&](const std::u16string& kind) {
        const std::u16string file = require(m_fso).GetFileName(m_strFileName);
        const std::u16string folder = require(m_fso).GetParentFolderName(m_strFileName);
        return u"The " + kind + u" " + file + u" already exists in the directory " + folder +
               u"\nOverwrite? ";
    };
    switch (m_iMode) {
    case modeProjectReadOnly:
        return {readOnly(u"project"), false, true};
    case modeProjectExists:
        return {exists(u"project"), true, true};
    case modeDocumentReadOnly:
        return {readOnly(u"document"), false, false};
    case modeDocumentExists:
        break;
    }
    return {exists(u"document"), true, false};
}

dlgFileExists::State dlgFileExists::entryState() {
    const std::u16string kind = m_bProject ? u"project " : u"document ";
    return {u"Please enter a new name for the " + kind + require(m_fso).GetFileName(m_strFileName),
            false, false};
}

void dlgFileExists::enter(const State& state) {
    ModalForm& form = require(m_form);
    form.text(u"lblReason", state.reason);
    form.visible(u"cmdYes", state.asksToOverwrite);
    form.visible(u"cmdNo", state.asksToOverwrite);
    form.visible(u"cmdOk", !state.asksToOverwrite);
    form.visible(u"cmdCancel", state.offersCancel);
    form.visible(u"lblEnterNewName", !state.asksToOverwrite);
    form.visible(u"txtName", !state.asksToOverwrite);
    if (!state.asksToOverwrite) {
        form.enabled(u"cmdOk", false);
        form.text(u"txtName", require(m_fso).GetBaseName(m_strFileName));
    }
}

void dlgFileExists::showModally() {
    m_hidden = false;
    const std::shared_ptr<ModalForm> form = m_form; // a handler may unload it
    {
        const Raised up(m_up);
        require(form).show();
    }
    if (!m_hidden) {
        unload();
    }
}

void dlgFileExists::hide() {
    m_hidden = true;
    require(m_form).hide();
}

void dlgFileExists::load() {
    if (!m_form) {
        m_form = Platform::current()->newModalForm(fileExistsLayout());
        m_formEvents = require(m_form).events().advise(*this);
        Form_Load();
    }
}

void dlgFileExists::unload() {
    const std::shared_ptr<ModalForm> form = std::move(m_form);
    m_formEvents.end();
    Form_Unload();
    if (form && m_up) {
        form->hide();
    }
}

void dlgFileExists::OnClick(const std::u16string& control) {
    if (control == u"cmdYes") {
        cmdYes_Click();
    } else if (control == u"cmdNo") {
        cmdNo_Click();
    } else if (control == u"cmdOk") {
        cmdOk_Click();
    } else if (control == u"cmdCancel") {
        cmdCancel_Click();
    }
}

void dlgFileExists::OnChange(const std::u16string& control) {
    if (control == u"txtName") {
        txtName_Change();
    }
}

void dlgFileExists::cmdYes_Click() {
    // A file that cannot be deleted leaves the dialog open, for another answer.
    const auto failure = attempt([&] { require(m_fso).DeleteFile(m_strFileName, true); });
    if (failure) {
        showFailure(*failure);
        return;
    }
    m_iAnswer = answerYes;
    hide();
}

void dlgFileExists::cmdNo_Click() {
    m_iAnswer = answerNo;
    enter(entryState());
}

void dlgFileExists::cmdOk_Click() {
    m_iAnswer = answerOk;
    hide();
}

void dlgFileExists::cmdCancel_Click() {
    m_iAnswer = answerCancel;
    hide();
}

void dlgFileExists::txtName_Change() {
    const std::u16string name = require(m_form).text(u"txtName");
    const bool isNew =
        !name.empty() && !equalIgnoringCase(name, require(m_fso).GetBaseName(m_strFileName));
    require(m_form).enabled(u"cmdOk", isNew);
}

void dlgFileExists::Form_Load() {
    m_fso = Platform::current()->newFileSystemObject();
}

void dlgFileExists::Form_Unload() {
    m_fso.reset();
}

} // namespace tessaly
