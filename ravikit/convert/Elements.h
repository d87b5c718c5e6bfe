#pragma once

#include "ravikit/xml/Tree.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace ravikit {

/// The elements of WML, as far as the conversion tells them apart.
enum class Element : std::uint8_t {
    Unknown,
    HtmlBlock, ///< no WML, but authors know it from HTML as a block of its own
    Wml,
    Card,
    P,
    Pre,
    Table,
    Tr,
    Td,
    Fieldset,
    Select,
    Optgroup,
    Option,
    Input,
    Do,
    Img,
    Br,
    A,
    Anchor,
    B,
    I,
    U,
    Em,
    Strong,
    Big,
    Small,
    Unseen, ///< one that a page has nothing to show for, such as `timer`
};

Element elementOf(std::u16string_view name);
std::u16string_view nameOf(Element element);

constexpr bool isFormat(Element e) {
    return e >= Element::B && e <= Element::Small;
}
constexpr bool isLink(Element e) {
    return e == Element::A || e == Element::Anchor;
}
/// One that the page shows as the text of one of its attributes, in a box.
constexpr bool isBox(Element e) {
    return e == Element::Img || e == Element::Input || e == Element::Do;
}
/// Whether it may hold nothing but elements, so that blanks in it mean nothing.
constexpr bool holdsElementsOnly(Element e) {
    return e == Element::Wml || e == Element::Card || e == Element::Table || e == Element::Tr ||
           e == Element::Select || e == Element::Optgroup;
}
/// Whether WML allows `child` right inside `parent`, text and the invisible aside.
bool accepts(Element parent, Element child);

/// What the conversion knows of a deck beyond its tree. All of it follows from the tree.
class Outline {
public:
    explicit Outline(const Tree& tree);

    /// What `id`, an element, counts as: a `br` or `img` that holds something is none.
    Element element(Tree::Id id) const;

    /// Whether `id` (any node inside the document element) is an element of the page. All else is
    /// text there, or, if it isn't to be seen, stays in the source alone.
    bool isShown(Tree::Id id) const { return (m_flags[id] & Shown) != 0; }

    /// A `br` that is a line break and nothing more: on the page it counts as text.
    bool isBreak(Tree::Id id) const {
        return m_tree->kind(id) == NodeKind::Element && element(id) == Element::Br;
    }

    /// Whether an HTML paragraph could not hold what is in this element.
    bool holdsBlock(Tree::Id id) const { return (m_flags[id] & HoldsBlock) != 0; }

    /// Whether an HTML table, row, cell, choice or option could not stand for this one.
    bool isIrregular(Tree::Id id) const { return (m_flags[id] & Irregular) != 0; }

    /// Whether text or inline elements stand, against the rules, right in this one.
    bool isBare(Tree::Id id) const { return (m_flags[id] & Bare) != 0; }

    /// The depth at which what an element holds is shown as one text: deeper than any author goes,
    /// and as deep as browsers follow.
    static constexpr std::size_t deepest = 200;
    bool isFlat(Tree::Id id) const { return (m_flags[id] & Flat) != 0; }

    /// Whether a reference stands for no text of its own where none belongs.
    bool isUnseen(Tree::Id reference) const { return (m_flags[reference] & Hidden) != 0; }

private:
    enum Flag : std::uint8_t {
        Shown = 1,
        HoldsBlock = 2,
        Irregular = 4,
        Bare = 8,
        Flat = 16,
        Hidden = 32
    };
    struct Open {
        Tree::Id id = Tree::none;
        Element element = Element::Unknown;
    };
    void enter(Tree::Id id, Element element);
    void noteText(Tree::Id id);
    void mark(Flag flag);
    void markIrregular();
    void markChoiceIrregular();

    const Tree* m_tree;
    std::vector<Element> m_byName;
    std::vector<std::uint8_t> m_flags;
    std::vector<Open> m_open;
};

/// How long the mark is with which a CDATA section begins.
inline constexpr std::uint32_t cdataBegin = 9;

/// The text in a CDATA section, which need not have its end.
std::u16string_view insideCData(std::u16string_view source);

/// The attribute that an element shows as a text of its own: `title` of a card, `alt` of a picture.
/// Empty if there is none.
std::u16string_view shownAttribute(Element element);

/// What the page shows for that attribute; where it is empty, a word in its stead for those that
/// have nothing else to show.
std::u16string shownText(const Tree& tree, Tree::Id id, Element element);

} // namespace ravikit
