// One editor for all decks of a project: it edits a deck in the plain view and another one in the
// markup view, and saves both. A host with a screen lends its own controls in the same way.

#include "platform/controls/HeadlessBrowser.h"
#include "platform/controls/HeadlessRichText.h"
#include "platform/files/PathName.h"
#include "platform/page/HeadlessPage.h"
#include "tessaly.h"

#include <iostream>

using namespace tessaly;

class Editor {
public:
    Editor() { m_browser->Document(m_page); }

    /// Shows `next` in `view`, and lets go of the deck that was shown. False if that one cannot
    /// leave the plain view: it stays, and has raised OnParseError.
    bool show(const std::shared_ptr<WirelessDocument>& next, enumView view) {
        if (m_shown) {
            m_shown->view(vMarkup); // the page's text goes to the text control
            if (m_shown->view() != vMarkup) {
                return false;
            }
            m_shown->Refresh(); // and from there into the document
            m_shown->MuRtb(nullptr);
            m_shown->wbPlain(nullptr);
        }
        m_shown = next;
        m_shown->wbPlain(m_browser);
        m_shown->MuRtb(m_text);
        m_shown->view(view);
        return m_shown->view() == view;
    }

    /// Makes `words` bold on the page.
    bool embolden(const std::u16string& words) {
        return m_page->selectText(words) && (m_shown->Format()->exec(u"Bold"), true);
    }

    /// Replaces `words` in the markup.
    bool replace(const std::u16string& words, const std::u16string& others) {
        const std::size_t at = m_text->Text().find(words);
        if (at == std::u16string::npos) {
            return false;
        }
        m_text->SelStart(static_cast<std::int32_t>(at));
        m_text->SelLength(static_cast<std::int32_t>(words.size()));
        m_text->SelText(others);
        return true;
    }

private:
    std::shared_ptr<HeadlessBrowser> m_browser =
        std::make_shared<HeadlessBrowser>(std::make_shared<MessageLoop>());
    std::shared_ptr<HeadlessRichText> m_text = std::make_shared<HeadlessRichText>();
    std::shared_ptr<HeadlessPage> m_page = makePage(u"<p></p>");
    std::shared_ptr<WirelessDocument> m_shown;
};

int main(int argc, char** argv) {
    const auto project = std::make_shared<clProject>();
    if (argc != 2 || !project->init(toComponentPath(argv[1]))) {
        std::cerr << "use: editor PROJECT.cvp, with the decks index and settings\n";
        return 2;
    }
    const auto index = project->Documents()->Item(u"index");
    const auto settings = project->Documents()->Item(u"settings");
    Editor editor;
    const bool edited = editor.show(index, vPLain) && editor.embolden(u"Good day") &&
                        editor.show(settings, vMarkup) && editor.replace(u"Your name:", u"Name:") &&
                        editor.show(index, vPLain) && editor.embolden(u"would") &&
                        project->SaveAll();
    std::cout << (edited ? "Both decks were edited and saved\n" : "The edits failed\n");
    return edited ? 0 : 1;
}
