#pragma once

#include "util/Object.h"

#include <cstdint>
#include <string>

namespace tessaly {

/// Walks the cards of a document. Members that give a card give its display text: the card's markup
/// converted to the HTML of the plain view, empty where there is no card or the converter refuses
/// it. Card indexes are 0-based. Before the DOM is set every member that needs it fails with
/// ObjectNotSet, and so does a conversion before Tolmek is set.
class IDisplay : public virtual Object {
public:
    /// Takes an IXMLDOMDocument2 and finds its cards. The current index stays, even if there is no
    /// such card any more.
    virtual void DOM(const ObjectRef& domDOM) = 0;

    /// These two move, wrapping at the ends. Moving past what 16 bits hold fails with Overflow.
    virtual std::u16string nextDisplayNode() = 0;
    virtual std::u16string previousDisplayNode() = 0;

    virtual std::u16string currentDisplayNode() = 0;
    virtual std::int16_t currentDisplayNodeIndex() = 0;

    /// Take a tessaly::Tolmek and a tessaly::Ravik.
    virtual void Tolmek(const ObjectRef& objTolmek) = 0;
    virtual void Ravik(const ObjectRef& objTolmek) = 0;

    /// Jumps to card `iIdx`. Where there is none the text is "No Document Element", and an index
    /// after the last card leaves the current one alone.
    virtual std::u16string DisplayNode(std::int16_t iIdx) = 0;

    virtual bool previousExists() = 0;
    virtual bool nextExists() = 0;
};

} // namespace tessaly
