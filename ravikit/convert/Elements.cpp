#include "ravikit/convert/Elements.h"

#include "ravikit/text/Chars.h"

#include <algorithm>
#include <array>

namespace ravikit {

namespace {

struct Named {
    std::u16string_view name;
    Element element;
};

constexpr std::array named{
    Named{u"wml", Element::Wml},
    Named{u"card", Element::Card},
    Named{u"p", Element::P},
    Named{u"pre", Element::Pre},
    Named{u"table", Element::Table},
    Named{u"tr", Element::Tr},
    Named{u"td", Element::Td},
    Named{u"fieldset", Element::Fieldset},
    Named{u"select", Element::Select},
    Named{u"optgroup", Element::Optgroup},
    Named{u"option", Element::Option},
    Named{u"input", Element::Input},
    Named{u"do", Element::Do},
    Named{u"img", Element::Img},
    Named{u"br", Element::Br},
    Named{u"a", Element::A},
    Named{u"anchor", Element::Anchor},
    Named{u"b", Element::B},
    Named{u"i", Element::I},
    Named{u"u", Element::U},
    Named{u"em", Element::Em},
    Named{u"strong", Element::Strong},
    Named{u"big", Element::Big},
    Named{u"small", Element::Small},
    Named{u"head", Element::Unseen},
    Named{u"template", Element::Unseen},
    Named{u"access", Element::Unseen},
    Named{u"meta", Element::Unseen},
    Named{u"onevent", Element::Unseen},
    Named{u"timer", Element::Unseen},
    Named{u"go", Element::Unseen},
    Named{u"prev", Element::Unseen},
    Named{u"refresh", Element::Unseen},
    Named{u"noop", Element::Unseen},
    Named{u"setvar", Element::Unseen},
    Named{u"postfield", Element::Unseen},
    Named{u"script", Element::Unseen},
    Named{u"style", Element::Unseen},
    Named{u"h1", Element::HtmlBlock},
    Named{u"h2", Element::HtmlBlock},
    Named{u"h3", Element::HtmlBlock},
    Named{u"h4", Element::HtmlBlock},
    Named{u"h5", Element::HtmlBlock},
    Named{u"h6", Element::HtmlBlock},
    Named{u"div", Element::HtmlBlock},
    Named{u"center", Element::HtmlBlock},
    Named{u"form", Element::HtmlBlock},
    Named{u"ul", Element::HtmlBlock},
    Named{u"ol", Element::HtmlBlock},
    Named{u"li", Element::HtmlBlock},
    Named{u"body", Element::HtmlBlock},
    Named{u"html", Element::HtmlBlock},
    Named{u"blockquote", Element::HtmlBlock},
};

constexpr auto byName = [] {
    auto sorted = named;
    std::sort(sorted.begin(), sorted.end(),
              [](const Named& a, const Named& b) { return a.name < b.name; });
    return sorted;
}();

/// For each small letter the place of the first name in `byName` that begins with it or a later
/// one.
constexpr auto placeByInitial = [] {
    std::array<std::uint8_t, 27> places{};
    for (std::size_t letter = 0; letter < places.size(); ++letter) {
        while (places[letter] < byName.size() &&
               byName[places[letter]].name.front() < u'a' + static_cast<char16_t>(letter)) {
            ++places[letter];
        }
    }
    return places;
}();

constexpr bool isBlock(Element e) {
    return e == Element::HtmlBlock || (e >= Element::Wml && e <= Element::Fieldset);
}

/// Shown even if there is nothing in it: an author can type there, or it has a box of its own.
constexpr bool isShownEmpty(Element e) {
    return (e >= Element::Wml && e <= Element::Img) || e == Element::HtmlBlock;
}

bool isBlankText(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), isBlank);
}

/// Whether what a reference stands for is elements and blanks, as it may be among elements.
bool isWithoutText(const Tree& tree, Tree::Id reference) {
    const Tree* const content = tree.entityTree(reference);
    if (content == nullptr) {
        return isBlankText(tree.referenceText(reference));
    }
    for (Tree::Id id = 1; id < content->size(); id = (*content)[id].next) {
        const NodeKind kind = content->kind(id);
        const bool isText = kind == NodeKind::CData ||
                            (kind == NodeKind::Text && !isBlankText(content->source(id))) ||
                            (kind == NodeKind::Reference && !isWithoutText(*content, id));
        if (isText) {
            return false;
        }
    }
    return true;
}

} // namespace

Element elementOf(std::u16string_view name) {
    if (name.empty() || name.front() < u'a' || name.front() > u'z') {
        return Element::Unknown;
    }
    const auto letter = static_cast<std::size_t>(name.front() - u'a');
    for (std::size_t place = placeByInitial[letter]; place < placeByInitial[letter + 1]; ++place) {
        if (byName[place].name == name) {
            return byName[place].element;
        }
    }
    return Element::Unknown;
}

std::u16string_view nameOf(Element element) {
    for (const Named& one : named) {
        if (one.element == element) {
            return one.name;
        }
    }
    return {};
}

bool accepts(Element parent, Element child) {
    const bool inlined = isFormat(child) || isLink(child) || child == Element::Img;
    switch (parent) {
    case Element::Wml:
        return child == Element::Card;
    case Element::Card:
        return child == Element::P || child == Element::Pre || child == Element::Do;
    case Element::P:
    case Element::Fieldset:
        return inlined || child == Element::Br || child == Element::Table ||
               child == Element::Fieldset || child == Element::Input || child == Element::Select ||
               child == Element::Do;
    case Element::Td:
        return inlined || child == Element::Br;
    case Element::Pre:
        return isLink(child) || (isFormat(child) && child < Element::Big) || child == Element::Br ||
               child == Element::Input || child == Element::Select || child == Element::Do;
    case Element::Table:
        return child == Element::Tr;
    case Element::Tr:
        return child == Element::Td;
    case Element::Select:
    case Element::Optgroup:
        return child == Element::Option || child == Element::Optgroup;
    case Element::A:
    case Element::Anchor:
        return child == Element::Img || child == Element::Br;
    default:
        return isFormat(parent) && (inlined || child == Element::Br || child == Element::Table);
    }
}

Outline::Outline(const Tree& tree)
    : m_tree(&tree)
    , m_byName(tree.names().size())
    , m_flags(tree.size()) {
    for (NameTable::Id name = 0; name < tree.names().size(); ++name) {
        m_byName[name] = elementOf(tree.names().text(name));
    }
    const Tree::Id root = tree.documentElement();
    if (root == Tree::none) {
        return;
    }
    for (Tree::Id id = root; id < tree[root].next;) {
        while (!m_open.empty() && tree[m_open.back().id].next <= id) {
            m_open.pop_back();
        }
        const NodeKind kind = tree.kind(id);
        if (kind != NodeKind::Element) {
            noteText(id);
            id = tree[id].next;
            continue;
        }
        const Element e = element(id);
        if (e != Element::Unseen || id == root) {
            enter(id, e);
        }
        id = m_open.empty() || m_open.back().id != id ? tree[id].next : id + 1;
    }
}

Element Outline::element(Tree::Id id) const {
    const Node& node = (*m_tree)[id];
    if (node.name == NameTable::none) {
        return Element::Unknown;
    }
    const Element e = m_byName[node.name];
    const bool holdsNothing = e == Element::Br || e == Element::Img || e == Element::Input;
    return holdsNothing && m_tree->firstContent(id) != node.next ? Element::Unknown : e;
}

void Outline::enter(Tree::Id id, Element e) {
    const auto [parent, above] = m_open.empty() ? Open() : m_open.back();
    if (parent != Tree::none) {
        if (isShownEmpty(e) || e == Element::Br) {
            mark(Shown);
        }
        if (isBlock(e)) {
            mark(HoldsBlock);
        }
        if ((above == Element::Table && e != Element::Tr) ||
            (above == Element::Tr && e != Element::Td)) {
            markIrregular();
        }
        if ((e == Element::Tr && above != Element::Table) ||
            (e == Element::Td && above != Element::Tr)) {
            m_flags[id] |= Irregular;
        }
        if ((above == Element::Select && e != Element::Option && e != Element::Optgroup) ||
            (above == Element::Optgroup && e != Element::Option) || above == Element::Option) {
            markChoiceIrregular();
        }
        const bool isChoice = above == Element::Select || above == Element::Optgroup;
        if ((e == Element::Option || e == Element::Optgroup) && !isChoice) {
            m_flags[id] |= Irregular;
        }
        if ((above == Element::Wml && e != Element::Card) ||
            (above == Element::Card && !accepts(Element::Card, e))) {
            m_flags[parent] |= Bare;
        }
    }
    if (e == Element::Br) {
        return; // a break is text
    }
    if (parent == Tree::none || isShownEmpty(e)) {
        m_flags[id] |= Shown;
    }
    if (isBox(e)) {
        return; // what stands inside is not on the page
    }
    if (m_open.size() == deepest) {
        m_flags[id] |= Flat | Shown;
        mark(Shown);
        return;
    }
    m_open.push_back({id, e});
}

void Outline::noteText(Tree::Id id) {
    const NodeKind kind = m_tree->kind(id);
    if (m_open.empty() || (kind != NodeKind::Text && kind != NodeKind::Blank &&
                           kind != NodeKind::CData && kind != NodeKind::Reference)) {
        return;
    }
    const auto [parent, e] = m_open.back();
    if (kind == NodeKind::Blank && holdsElementsOnly(e)) {
        return;
    }
    if (kind == NodeKind::Reference && holdsElementsOnly(e) && isWithoutText(*m_tree, id)) {
        m_flags[id] |= Hidden;
        return;
    }
    mark(Shown);
    if (holdsElementsOnly(e)) {
        m_flags[parent] |= Bare;
    }
    if (e == Element::Table || e == Element::Tr) {
        markIrregular();
    }
    if (e == Element::Select || e == Element::Optgroup) {
        markChoiceIrregular();
    }
}

/// Notes that the innermost open element is out of order. If it is a row, so is its table.
void Outline::markIrregular() {
    m_flags[m_open.back().id] |= Irregular;
    if (m_open.back().element == Element::Tr && m_open.size() > 1) {
        const Open& above = m_open[m_open.size() - 2];
        m_flags[above.id] |= above.element == Element::Table ? Irregular : 0;
    }
}

/// The same of the choice around it, and of all that is open in that.
void Outline::markChoiceIrregular() {
    for (std::size_t i = m_open.size(); i-- > 0;) {
        const Open& open = m_open[i];
        const bool isPart = open.element == Element::Option || open.element == Element::Optgroup;
        if (!isPart && open.element != Element::Select) {
            break;
        }
        m_flags[open.id] |= Irregular;
    }
}

/// Notes `flag` of all open elements. Above one that has it all have it already.
void Outline::mark(Flag flag) {
    for (auto open = m_open.rbegin(); open != m_open.rend() && (m_flags[open->id] & flag) == 0;
         ++open) {
        m_flags[open->id] |= flag;
    }
}

std::u16string_view insideCData(std::u16string_view source) {
    source.remove_prefix(std::min<std::size_t>(cdataBegin, source.size()));
    if (source.ends_with(u"]]>")) {
        source.remove_suffix(3);
    }
    return source;
}

std::u16string_view shownAttribute(Element element) {
    switch (element) {
    case Element::Card:
    case Element::Fieldset:
    case Element::Optgroup:
    case Element::Table:
        return u"title";
    case Element::Img:
        return u"alt";
    case Element::Input:
        return u"value";
    case Element::Do:
        return u"label";
    default:
        return {};
    }
}

std::u16string shownText(const Tree& tree, Tree::Id id, Element element) {
    const auto value = [&](std::u16string_view name) {
        const Tree::Id attribute = tree.attribute(id, name);
        return attribute == Tree::none ? std::u16string() : tree.value(attribute);
    };
    const auto orElse = [](const std::u16string& text, std::u16string_view instead) {
        const bool isBlank = text.find_first_not_of(u" \t\r\n") == std::u16string::npos;
        return isBlank ? std::u16string(instead) : text;
    };
    std::u16string text = value(shownAttribute(element));
    switch (element) {
    case Element::Img:
        return orElse(text, orElse(value(u"src"), u"image"));
    case Element::Input:
        return text;
    case Element::Do:
        return orElse(text, orElse(value(u"type"), u"do"));
    default:
        return text;
    }
}

} // namespace ravikit
