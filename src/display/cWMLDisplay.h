#pragma once

#include "display/IDisplay.h"
#include "external/DOM.h"
#include "external/Ravikit.h"

#include <memory>

namespace tessaly {

/// The display of a WML document, made by the document alone.
class cWMLDisplay final : public IDisplay {
public:
    void DOM(const ObjectRef& domDOM) override;
    std::u16string nextDisplayNode() override;
    std::u16string previousDisplayNode() override;
    std::u16string currentDisplayNode() override;
    std::int16_t currentDisplayNodeIndex() override { return m_iIndex; }
    void Tolmek(const ObjectRef& objTolmek) override;
    void Ravik(const ObjectRef& objTolmek) override;
    std::u16string DisplayNode(std::int16_t iIdx) override;
    bool previousExists() override;
    bool nextExists() override;

private:
    friend class WirelessDocument;
    cWMLDisplay() = default;

    void selectCards();
    std::shared_ptr<IXMLDOMNode> displayNodeAt(std::int16_t iIdx);
    std::u16string render(IXMLDOMNode& node) const;
    /// The text of the card at the current index, empty if there is none.
    std::u16string renderCurrent() const;

    std::int16_t m_iIndex = 0; // may stand outside the list
    std::shared_ptr<IXMLDOMDocument2> m_DOM;
    std::shared_ptr<IXMLDOMNodeList> m_Cards;
    std::shared_ptr<tessaly::Tolmek> m_Tolmek;
    std::shared_ptr<tessaly::Ravik> m_Ravik; // held for later displays; nothing here needs it
};

} // namespace tessaly
