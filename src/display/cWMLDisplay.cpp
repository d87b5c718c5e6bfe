#include "display/cWMLDisplay.h"

#include "document/modTessaly.h"
#include "util/Integers.h"

namespace tessaly {

void cWMLDisplay::DOM(const ObjectRef& domDOM) {
    m_DOM = narrow<IXMLDOMDocument2>(domDOM);
    selectCards();
}

std::u16string cWMLDisplay::nextDisplayNode() {
    m_iIndex = toInteger<std::int16_t>(m_iIndex + 1);
    const std::int32_t n = require(m_Cards).length();
    if (m_iIndex > n - 1) {
        m_iIndex = 0;
    }
    return renderCurrent();
}

std::u16string cWMLDisplay::previousDisplayNode() {
    m_iIndex = toInteger<std::int16_t>(m_iIndex - 1);
    if (m_iIndex < 0) {
        const std::int32_t n = require(m_Cards).length();
        m_iIndex = toInteger<std::int16_t>(n - 1);
    }
    return renderCurrent();
}

std::u16string cWMLDisplay::currentDisplayNode() {
    const std::int32_t n = require(m_Cards).length();
    if (n <= 0) {
        return {};
    }
    return renderCurrent();
}

void cWMLDisplay::Tolmek(const ObjectRef& objTolmek) {
    m_Tolmek = narrow<tessaly::Tolmek>(objTolmek);
}

void cWMLDisplay::Ravik(const ObjectRef& objTolmek) {
    m_Ravik = narrow<tessaly::Ravik>(objTolmek);
}

std::u16string cWMLDisplay::DisplayNode(std::int16_t iIdx) {
    const std::shared_ptr<IXMLDOMNode> node = displayNodeAt(iIdx);
    return node ? render(*node) : u"No Document Element";
}

bool cWMLDisplay::previousExists() {
    selectCards();
    return m_iIndex > 0;
}

bool cWMLDisplay::nextExists() {
    selectCards();
    const std::int32_t n = require(m_Cards).length();
    return m_iIndex < n - 1;
}

void cWMLDisplay::selectCards() {
    m_Cards = require(m_DOM).selectNodes(u"//card");
}

std::shared_ptr<IXMLDOMNode> cWMLDisplay::displayNodeAt(std::int16_t iIdx) {
    selectCards();
    const std::int32_t n = require(m_Cards).length();
    if (iIdx >= n) {
        return nullptr;
    }
    // An index below 0 passes: the list has no node for it, but the display stands there now.
    std::shared_ptr<IXMLDOMNode> node = m_Cards->item(iIdx);
    m_iIndex = iIdx;
    return node;
}

std::u16string cWMLDisplay::render(IXMLDOMNode& node) const {
    std::u16string text = node.xml();
    if (!modTessaly::convertToPlain(m_Tolmek, text)) {
        return {};
    }
    return text;
}

std::u16string cWMLDisplay::renderCurrent() const {
    const std::shared_ptr<IXMLDOMNode> node = require(m_Cards).item(m_iIndex);
    return node ? render(*node) : std::u16string();
}

} // namespace tessaly
