#pragma once

#include "external/FileSystemObject.h"
#include "external/ModalForm.h"

#include <cstdint>
#include <memory>
#include <string>

namespace tessaly {

/// The dialog in which the user settles a file-name conflict: a project or a document is to be
/// written to a name that is taken. There is one for the whole component; its window is loaded at
/// the first use and stays, hidden, until a document ends.
class dlgFileExists final : private ModalFormEvents {
public:
    static dlgFileExists& shared();
    ~dlgFileExists() override = default;

    dlgFileExists(const dlgFileExists&) = delete;
    dlgFileExists& operator=(const dlgFileExists&) = delete;
    dlgFileExists(dlgFileExists&&) = delete;
    dlgFileExists& operator=(dlgFileExists&&) = delete;

    /// The full path to write to instead of `strFileName`, a full path too: the same where it is
    /// free, or where the user agreed to overwrite it (the old file is then deleted); another one
    /// in the same folder where the user typed a name, which was tested in its turn; empty if the
    /// user gave up. `bProject`: the file is a project file, not a document.
    ///
    /// Returns when the user has answered. Failures of the file service reach the caller; while the
    /// dialog is up already, PermissionDenied does.
    std::u16string getUniqueFileName(const std::u16string& strFileName, bool bProject);

    /// Loads the window if it is not loaded. Fails if the platform cannot make it.
    void load();

    /// Drops the window. One that is up is closed, as if by the user.
    void unload();

    /// True while the window waits for an answer.
    bool isUp() const { return m_up; }

private:
    enum Mode : std::int32_t {
        modeProjectReadOnly,
        modeProjectExists,
        modeDocumentReadOnly,
        modeDocumentExists,
    };
    enum Answer : std::int32_t { answerYes, answerNo, answerOk, answerCancel };

    struct State;

    dlgFileExists() = default;
    template <class T, class... Arguments>
    friend T& lasting(Arguments&&... arguments);

    void OnClick(const std::u16string& control) override;
    void OnChange(const std::u16string& control) override;

    /// The path under which the file at `path` is found, in small letters if it can be; empty if
    /// there is no such file.
    std::u16string existingForm(const std::u16string& path);
    std::u16string askUser();
    std::u16string chosenFileName();

    State stateOfMode();
    State entryState();
    void enter(const State& state);
    void showModally();
    void hide();

    void cmdYes_Click();
    void cmdNo_Click();
    void cmdOk_Click();
    void cmdCancel_Click();
    void txtName_Change();
    void Form_Load();
    void Form_Unload();

    Answer m_iAnswer = answerYes;
    Mode m_iMode = modeProjectReadOnly;
    std::shared_ptr<FileSystemObject> m_fso;
    std::u16string m_strFileName;
    bool m_bProject = false;

    std::shared_ptr<ModalForm> m_form; ///< the loaded window
    Subscription m_formEvents;
    bool m_up = false;     ///< the window is shown
    bool m_hidden = false; ///< a handler has hidden it since it was last shown
};

} // namespace tessaly
