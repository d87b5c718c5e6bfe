#include "apps/cli/project/ConflictForm.h"

#include "apps/cli/project/CommandPlatform.h"
#include "apps/cli/project/DeckNames.h"
#include "platform/files/TextCodec.h"

namespace cli {

void ConflictForm::show() {
    m_platform.watch().clearLine();
    switch (m_platform.onConflict()) {
    case OnConflict::Ask:
        TerminalForm::show();
        break;
    case OnConflict::Overwrite:
        overwrite();
        break;
    case OnConflict::Rename:
        rename();
        break;
    case OnConflict::Stop:
        stop();
        break;
    }
}

void ConflictForm::text(const std::u16string& control, const std::u16string& text) {
    TerminalForm::text(control, m_platform.spoken(text));
}

std::u16string ConflictForm::objection(const std::u16string& text) {
    return tessaly::decodeText(whyNotAName(text));
}

void ConflictForm::overwrite() {
    const bool offered = isVisible(u"cmdYes");
    open();
    click(u"cmdYes");
    if (isUp()) {
        m_platform.stopAtLastAsked(offered ? "cannot be overwritten" : readOnly);
    }
}

void ConflictForm::rename() {
    open();
    click(u"cmdNo"); // hidden where the file is read-only, and the name asked for at once
    text(u"txtName", freeName(text(u"txtName"), m_platform.watch().lastAsked()));
    click(u"cmdOk");
}

void ConflictForm::stop() {
    m_platform.stopAtLastAsked(takenAlready);
    open();
    click(u"cmdCancel"); // not offered for a deck: left open, the form counts as closed
}

} // namespace cli
