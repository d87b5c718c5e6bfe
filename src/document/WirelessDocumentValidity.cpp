// How a document's text is taken over and judged.

#include "document/WirelessDocument.h"
#include "document/modTessaly.h"

namespace tessaly {

void WirelessDocument::Content(const std::u16string& strContent) {
    const auto alive = keepAlive();
    m_Content = strContent;
    m_isDirty = false;
    checkValidity();
}

std::u16string WirelessDocument::Content() const {
    return m_Content;
}

void WirelessDocument::isDirty(bool bDirty) {
    m_isDirty = bDirty;
    if (m_isDirty) {
        m_events.raise(&__WirelessDocument::OnDocDirty);
    }
}

bool WirelessDocument::isDirty() const {
    return m_isDirty;
}

bool WirelessDocument::isValidXML() const {
    return m_isValidXML;
}

void WirelessDocument::Update() {
    if (!m_updatePending) {
        return;
    }
    const auto alive = keepAlive();
    if (m_View == vMarkup) {
        m_Content = require(m_MuRtb).Text();
    } else {
        modTessaly::convertToMarkup(m_Tolmek, m_Content, true);
    }
    m_updatePending = false;
    m_isDirty = false;
    checkValidity();
    m_events.raise(&__WirelessDocument::OnRefresh);
}

void WirelessDocument::Refresh() {
    const auto alive = keepAlive();
    if (!m_MuRtb) {
        return;
    }
    if (m_View == vPLain && plainToMarkup()) {
        m_Content = require(m_MuRtb).Text();
    }
    if (require(m_MuRtb).Visible()) {
        m_Content = require(m_MuRtb).Text();
    }
    checkValidity();
    if (m_isValidXML) {
        DOM(require(m_Ravik).parseMarkup(m_Content, true, false));
        require(m_Display).DOM(m_DOM);
    }
}

void WirelessDocument::checkValidity() {
    if (require(m_Tolmek).isValidText(m_Content)) {
        m_isValidXML = true;
        m_events.raise(&__WirelessDocument::OnClearErrors);
    } else {
        m_isValidXML = false;
        raiseParseError();
    }
}

void WirelessDocument::raiseParseError() {
    std::shared_ptr<ParseError> err = require(m_Tolmek).lastError();
    m_events.raise(&__WirelessDocument::OnParseError, err);
}

} // namespace tessaly
