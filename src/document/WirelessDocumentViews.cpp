// The two views of a document. Only one is shown, and only the shown one is current; text crosses
// from one control to the other when the view is switched, through a conversion that may refuse it.

#include "document/WirelessDocument.h"
#include "document/modTessaly.h"
#include "external/Platform.h"
#include "util/Integers.h"

namespace tessaly {

namespace {

constexpr char16_t blankDeck[] = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?><wml></wml>";
constexpr char16_t blankPage[] = u"<BODY text=#000000 bgColor=#ffffff><P><FONT face=Verdana>"
                                 u"</FONT>&nbsp;</P></BODY>";

} // namespace

void WirelessDocument::view(enumView vView) {
    const auto alive = keepAlive();
    m_PrevView = m_View;
    m_View = vView;
    syncViews();
    if (m_Format) {
        m_Format->view(toInteger<std::int16_t>(m_View));
    }
}

void WirelessDocument::syncViews() {
    if (m_PrevView == m_View) {
        return;
    }
    // A handler of the error still reads the refused view: the value goes back after the event.
    if (m_View == vMarkup && m_PrevView == vPLain) {
        if (!plainToMarkup()) {
            raiseParseError();
            m_View = vPLain;
        }
    } else if (m_View == vPLain && (m_PrevView == vMarkup || m_PrevView == 0)) {
        if (!markupToPlain(m_PrevView)) {
            raiseParseError();
            m_View = vMarkup;
        }
    }
    if (m_MuRtb) {
        m_MuRtb->Visible(m_View == vMarkup);
    }
    if (m_wbPlain) {
        m_wbPlain->Visible(m_View == vPLain);
    }
}

bool WirelessDocument::plainToMarkup() {
    const std::u16string html = require(body()).innerHTML();
    const std::u16string text = require(body()).innerText();
    if (html.empty() && text.empty()) {
        require(m_MuRtb).Text(blankDeck);
        return true;
    }
    wrapPlainBody();
    std::u16string deck = require(body()).outerHTML();
    if (!modTessaly::convertToMarkup(m_Tolmek, deck, false)) {
        return false;
    }
    require(m_MuRtb).Text(deck);
    return true;
}

void WirelessDocument::wrapPlainBody() {
    const auto hasDiv = [&] {
        return require(require(page()).getElementsByTagName(u"div")).length() > 0;
    };
    if (!require(body()).innerText().empty()) {
        if (!hasDiv()) {
            require(body()).innerHTML(u"<DIV>" + require(body()).innerHTML() + u"</DIV>");
        }
    } else if (!require(body()).innerHTML().empty()) { // pictures or empty tags alone
        if (!hasDiv()) {
            require(body()).innerHTML(u"<BODY><DIV>" + require(body()).innerHTML() +
                                      u"</DIV></BODY>");
        }
    }
}

bool WirelessDocument::markupToPlain(std::int32_t shown) {
    waitWhileNavigating(shown);
    if (isBlankMarkup()) {
        require(body()).innerHTML(blankPage);
        return true;
    }
    m_Content = require(m_MuRtb).Text();
    std::u16string html = m_Content;
    if (!modTessaly::convertToPlain(m_Tolmek, html)) {
        return false;
    }
    require(body()).innerHTML(html);
    return true;
}

bool WirelessDocument::isBlankMarkup() {
    const std::u16string text = require(m_MuRtb).Text();
    DOM(require(m_Ravik).parseMarkup(text, true, false));
    // Text that did not parse is not blank: the converter is to refuse it.
    if (!text.empty() && require(m_DOM).xml().empty()) {
        return false;
    }
    const std::shared_ptr<IXMLDOMNodeList> decks = require(m_DOM).getElementsByTagName(u"wml");
    if (require(decks).length() == 0) {
        return true;
    }
    return require(require(decks->item(0)).childNodes()).length() == 0;
}

void WirelessDocument::waitWhileNavigating(std::int32_t shown) {
    try {
        while (m_Navigating) {
            Platform::current()->DoEvents();
        }
    } catch (...) {
        // The page was not written: in the plain view the next save would take its old text.
        m_View = m_View == vPLain ? shown : m_View;
        throw;
    }
}

void WirelessDocument::selectAll() {
    if (m_View == vMarkup) {
        require(m_MuRtb).SelStart(0);
        require(m_MuRtb).SelLength(toInteger<std::int32_t>(require(m_MuRtb).Text().size()));
    } else {
        require(page()).execCommand(u"Selectall");
    }
}

void WirelessDocument::reloadViewfromDOM() {
    const auto alive = keepAlive();
    if (!m_isValidXML) {
        return;
    }
    require(m_MuRtb).Text(require(m_DOM).xml());
    require(m_Display).DOM(m_DOM);
    if (m_View == vPLain || m_View == 0) {
        if (!markupToPlain(m_View)) {
            raiseParseError();
        }
    }
}

std::shared_ptr<HTMLDocument> WirelessDocument::page() const {
    return require(m_wbPlain).Document();
}

std::shared_ptr<IHTMLElement> WirelessDocument::body() const {
    return require(page()).body();
}

} // namespace tessaly
