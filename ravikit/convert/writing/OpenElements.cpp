#include "ravikit/convert/writing/OpenElements.h"

#include "ravikit/html/Style.h"

#include <algorithm>

namespace ravikit {

namespace {

constexpr bool isInLine(Element e) {
    return isFormat(e) || isLink(e);
}

/// The effect of a style that takes this format off.
constexpr std::uint32_t takenOffBy(Element e) {
    switch (e) {
    case Element::Big:
    case Element::Small:
        return NormalSize;
    case Element::B:
    case Element::Strong:
        return NormalWeight;
    case Element::I:
    case Element::Em:
        return NormalSlant;
    default:
        return 0;
    }
}

constexpr bool holdsText(Element e) {
    return isInLine(e) || e == Element::P || e == Element::Td || e == Element::Fieldset ||
           e == Element::Pre || e == Element::Option || e == Element::Unknown ||
           e == Element::HtmlBlock;
}

/// What a text right in `e`, which holds none, lacks around it.
constexpr Element containerIn(Element e) {
    switch (e) {
    case Element::Wml:
        return Element::Card;
    case Element::Table:
        return Element::Tr;
    case Element::Tr:
        return Element::Td;
    case Element::Select:
    case Element::Optgroup:
        return Element::Option;
    default:
        return Element::P;
    }
}

Standing added(Element element, const Standing& in, std::size_t addedFor) {
    return {.element = element,
            .entry = in.entry,
            .isAdded = true,
            .addedFor = static_cast<std::uint32_t>(addedFor)};
}

/// After the innermost element that isn't loose.
std::size_t behindFixed(const Chain& chain) {
    std::size_t at = chain.size();
    while (at > 0 && chain[at - 1].isLoose) {
        --at;
    }
    return at;
}

/// Takes out the formats and links that the element around the text doesn't take.
void dropMisplaced(Chain& chain) {
    Element block = Element::Unknown;
    std::erase_if(chain, [&block](const Standing& one) {
        if (!isInLine(one.element)) {
            block = one.element;
        }
        const bool isFree =
            block == Element::Unknown || block == Element::HtmlBlock || block == Element::Card;
        return one.isLoose && !isFree && !accepts(block, one.element);
    });
}

} // namespace

OpenElements::Handle OpenElements::push(Entry entry) {
    if (m_entries.size() >= mostOpen) {
        return 0;
    }
    entry.handle = ++m_last;
    m_entries.push_back(std::move(entry));
    m_before = m_chain;
    add(m_entries.size() - 1);
    Entry& last = m_entries.back();
    last.isOnTop = m_chain.size() == m_before.size() + 1 &&
                   std::equal(m_before.begin(), m_before.end(), m_chain.begin());
    if (!last.isOnTop) {
        last.outer = m_before;
    }
    return m_last;
}

void OpenElements::pop() {
    if (m_entries.back().isOnTop) {
        m_chain.pop_back();
    } else {
        m_chain.swap(m_entries.back().outer);
    }
    m_entries.pop_back();
}

std::size_t OpenElements::find(Handle handle) const {
    for (std::size_t i = m_entries.size(); i-- > 0 && handle != 0;) {
        if (m_entries[i].handle == handle) {
            return i;
        }
    }
    return npos;
}

bool OpenElements::isInside(Element element) const {
    return std::any_of(m_entries.begin(), m_entries.end(),
                       [=](const Entry& one) { return one.opening.element == element; });
}

bool OpenElements::isInsideLink() const {
    return isInside(Element::A) || isInside(Element::Anchor);
}

bool OpenElements::hasFormat(Element element) const {
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        const Entry& entry = m_entries[i];
        const bool isNone = entry.takesOff != 0 ? (entry.takesOff & takenOffBy(element)) != 0
                                                : !isInLine(entry.opening.element);
        if (isNone) {
            return false;
        }
        if (entry.opening.element == element) {
            return true;
        }
    }
    return false;
}

bool OpenElements::isInsideLooseLink() const {
    for (std::size_t i = m_chain.size(); i-- > 0 && m_chain[i].isLoose;) {
        if (isLink(m_chain[i].element)) {
            return true;
        }
    }
    return false;
}

bool OpenElements::emptyFormats(std::uint32_t effects) {
    bool found = false;
    for (std::size_t i = m_entries.size(); i-- > 0;) {
        Entry& entry = m_entries[i];
        const Element e = entry.opening.element;
        if (entry.takesOff == 0 && !isInLine(e)) {
            break; // around a table a format can't be taken back for one cell
        }
        effects &= ~entry.takesOff;
        if ((effects & takenOffBy(e)) != 0) {
            entry.isEmptied = found = true;
        }
    }
    return found;
}

std::size_t OpenElements::innermost() const {
    const std::size_t at = behindFixed(m_chain);
    return at == 0 ? npos : m_chain[at - 1].entry;
}

std::size_t OpenElements::innermostBlock() const {
    for (std::size_t i = m_chain.size(); i-- > 0;) {
        if (!isInLine(m_chain[i].element)) {
            return m_chain[i].entry;
        }
    }
    return npos;
}

bool OpenElements::takesStructure(Element element) const {
    return spotFor(m_chain, element).at != npos;
}

/// Where in `chain` an element of this kind can stand, as far inside as possible.
OpenElements::Spot OpenElements::spotFor(const Chain& chain, Element element) {
    const bool goesIntoFormats = isInLine(element) || element == Element::Img;
    std::size_t inLoose = npos; // in the innermost format or link that takes it
    for (std::size_t i = chain.size(); i-- > 0;) {
        const Element e = chain[i].element;
        if (chain[i].isLoose) {
            const bool takes = goesIntoFormats && accepts(e, element);
            inLoose = takes && inLoose == npos ? i + 1 : inLoose;
            continue;
        }
        if (accepts(e, element)) {
            return {.at = inLoose != npos ? inLoose : i + 1};
        }
        inLoose = npos;
        if (e == Element::Card || e == Element::Wml) {
            if (element == Element::Card) {
                return {.at = i > 0 ? i : npos}; // beside the one at hand
            }
            const bool fits = accepts(Element::Card, element) || accepts(Element::P, element);
            return {.at = fits ? i + 1 : npos,
                    .needsCard = e == Element::Wml,
                    .needsParagraph = !accepts(Element::Card, element)};
        }
        // A cell or an option is left for nothing; what doesn't fit is turned into text.
        if (e == Element::Option || (e == Element::Td && element != Element::Card)) {
            break;
        }
    }
    return {};
}

/// Leaves of `chain` what is around the spot, with what the spot needs.
void OpenElements::takeSpot(Chain& chain, const Spot& spot, std::size_t structure) {
    chain.resize(spot.at);
    if (spot.needsCard) {
        chain.push_back(added(Element::Card, chain.back(), structure));
    }
    if (spot.needsParagraph) {
        chain.push_back(added(Element::P, chain.back(), structure));
    }
}

/// Puts a format or link around the text at hand, which has each but once, and one link.
void OpenElements::addLoose(Chain& chain, Standing loose) {
    std::size_t at = chain.size();
    for (std::size_t i = at; i-- > 0 && isInLine(chain[i].element);) {
        const Element e = chain[i].element;
        if (e == loose.element || (isLink(e) && isLink(loose.element))) {
            return;
        }
        if (isLink(e)) {
            at = i; // a link may not hold a format, but it may stand in one
        }
    }
    loose.isLoose = true;
    chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(at), loose);
}

void OpenElements::addInPlace(const Standing& standing) {
    // What the page has around it that the source has not goes into it.
    const std::size_t at = isInLine(standing.element) ? m_chain.size() : behindFixed(m_chain);
    m_chain.insert(m_chain.begin() + static_cast<std::ptrdiff_t>(at), standing);
}

void OpenElements::addStructure(const Standing& standing) {
    const Spot spot = spotFor(m_chain, standing.element);
    if (spot.at == npos) {
        return;
    }
    const Chain inside(m_chain.begin() + static_cast<std::ptrdiff_t>(spot.at), m_chain.end());
    takeSpot(m_chain, spot, standing.entry);
    m_chain.push_back(standing);
    for (const Standing& one : inside) {
        if (isInLine(one.element)) {
            addLoose(m_chain, one);
        }
    }
}

void OpenElements::add(std::size_t index) {
    const Entry& entry = m_entries[index];
    const Standing standing{.element = entry.opening.element,
                            .entry = static_cast<std::uint32_t>(index)};
    if (entry.takesOff != 0) {
        for (std::size_t i = m_chain.size(); i-- > 0 && isInLine(m_chain[i].element);) {
            if ((entry.takesOff & takenOffBy(m_chain[i].element)) != 0) {
                m_chain.erase(m_chain.begin() + static_cast<std::ptrdiff_t>(i));
            }
        }
    } else if (entry.isInPlace) {
        addInPlace(standing);
    } else if (isInLine(standing.element)) {
        addLoose(m_chain, standing);
    } else {
        addStructure(standing);
    }
}

void OpenElements::findForText(bool bare, Chain& chain) const {
    chain = m_chain;
    std::size_t at = behindFixed(chain);
    while (!bare && at > 0 && !holdsText(chain[at - 1].element)) {
        const Standing container = added(containerIn(chain[at - 1].element), chain[at - 1], npos);
        chain.insert(chain.begin() + static_cast<std::ptrdiff_t>(at++), container);
    }
    dropMisplaced(chain);
}

bool OpenElements::findInside(std::size_t entry, Chain& chain) const {
    const auto isIt = [entry](const Standing& one) { return !one.isAdded && one.entry == entry; };
    chain = m_chain;
    if (const auto it = std::find_if(chain.begin(), chain.end(), isIt);
        it != chain.end() && it->isLoose) {
        findForText(false, chain);
    }
    const auto it = std::find_if(chain.begin(), chain.end(), isIt);
    if (it == chain.end()) {
        return false;
    }
    chain.erase(it + 1, chain.end());
    dropMisplaced(chain);
    return !chain.empty() && isIt(chain.back());
}

bool OpenElements::findForLeaf(Element element, Tree::Id parent, bool inLine, Chain& chain) const {
    const std::size_t holder = innermost();
    const bool isInSource =
        holder != npos && parent != Tree::none && m_entries[holder].opening.source == parent;
    const bool isText = inLine || isInLine(element) || element == Element::Img;
    if (isText && !isInSource) {
        findForText(false, chain);
    } else {
        chain = m_chain;
    }
    if (!isInSource) {
        const Spot spot = spotFor(chain, element);
        if (spot.at == npos) {
            return false;
        }
        takeSpot(chain, spot, npos);
    }
    while (isInSource && chain.back().isLoose &&
           !(isText && accepts(chain.back().element, element))) {
        chain.pop_back();
    }
    dropMisplaced(chain);
    return true;
}

} // namespace ravikit
