#include "ravikit/validity/Judge.h"

#include "ravikit/text/NearMiss.h"
#include "ravikit/text/Wording.h"

#include <algorithm>
#include <utility>

namespace ravikit {
namespace {

/// "`a`, `b` and `c`": `names` with `word` before the last; the end of a long list is counted.
std::u16string listed(const std::vector<std::u16string_view>& names, std::u16string_view word,
                      bool withText = false) {
    constexpr std::size_t most = 9;
    std::vector<std::u16string> parts;
    if (withText) {
        parts.emplace_back(u"text");
    }
    const std::size_t shown = names.size() <= most ? names.size() : most - 1;
    for (std::size_t i = 0; i < shown; ++i) {
        parts.push_back(quoted(names[i]));
    }
    if (shown < names.size()) {
        parts.push_back(decimal(static_cast<std::uint32_t>(names.size() - shown)) + u" more");
    }
    std::u16string list;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            list += i + 1 < parts.size() ? u", " : u" " + std::u16string(word) + u" ";
        }
        list += parts[i];
    }
    return list;
}

std::u16string didYouMean(std::u16string_view name) {
    return u"; did you mean " + quoted(name) + u"?";
}

std::vector<std::u16string_view> views(const std::vector<std::u16string>& texts) {
    return {texts.begin(), texts.end()};
}

std::u16string oneOf(const std::vector<std::u16string_view>& names) {
    if (names.size() != 1) {
        return listed(names, u"or");
    }
    const bool vowel =
        std::u16string_view(u"aeiouAEIOU").find(names[0][0]) != std::u16string_view::npos;
    return (vowel ? u"an " : u"a ") + quoted(names[0]);
}

std::u16string demanded(const AttributeDeclaration& declaration) {
    using Type = AttributeDeclaration::Type;
    switch (declaration.type) {
    case Type::Id:
    case Type::IdRef:
        return u"must be one word that begins with a letter and holds letters, digits, `-`, `_`, "
               u"`.` and `:` only";
    case Type::NmToken:
        return u"must be one word of letters, digits, `-`, `_`, `.` and `:`";
    case Type::NmTokens:
    case Type::IdRefs:
        return u"must be words of letters, digits, `-`, `_`, `.` and `:`";
    case Type::Entity:
    case Type::Entities:
        return u"must name an unparsed entity";
    default:
        return u"may be " + listed(views(declaration.values), u"or");
    }
}

} // namespace

void Judge::add(ProblemKind kind, Place place, std::u16string reason) {
    m_problems.add(kind, place.begin, place.end, std::move(reason));
}

// Whether the parser has a fault at this place already: two errors at one tag are one mistake.
bool Judge::isReported(const Walk& walk, Place place) const {
    const auto& list = m_tree.problems().list(); // in the order of their places
    const auto found = std::lower_bound(
        list.begin(), list.end(), place.begin,
        [](const Problem& problem, std::uint32_t begin) { return problem.begin < begin; });
    return walk.reference == nullptr && found != list.end() && found->begin == place.begin;
}

// Inside an entity's text the place is that of the reference in the deck, here and below.
Judge::Place Judge::placeOf(const Walk& walk, Id id) {
    const Node& node = walk.reference != nullptr ? *walk.reference : walk.tree[id];
    return {node.begin, node.end};
}

Judge::Place Judge::namePlace(const Walk& walk, Id id) {
    Place place = placeOf(walk, id);
    if (walk.reference == nullptr) {
        place.begin += walk.tree.kind(id) == NodeKind::Element ? 1U : 0U;
        place.end = place.begin + static_cast<std::uint32_t>(walk.tree.name(id).size());
    }
    return place;
}

Judge::Place Judge::valuePlace(const Walk& walk, Id attribute) {
    Place place = placeOf(walk, attribute);
    if (walk.reference == nullptr) {
        const std::u16string_view value = walk.tree.rawValue(attribute);
        place.begin = static_cast<std::uint32_t>(value.data() - walk.tree.text().data());
        place.end = place.begin + static_cast<std::uint32_t>(value.size());
    }
    return place;
}

std::u16string_view Judge::nearElement(std::u16string_view written) {
    constexpr std::size_t mostComparisons = 1000000; // what ten thousand errors may cost
    if (m_comparisons > mostComparisons) {
        return {};
    }
    NearMiss near(written);
    for (const std::u16string_view name : nextIn(top(), false)) {
        near.offer(name);
    }
    for (const ElementRules& rules : m_dtd.elements) {
        if (rules.declared) {
            near.offer(rules.name);
        }
    }
    m_comparisons += m_dtd.elements.size();
    return near.best();
}

// What a model holds, in the order in which the DTD puts it.
std::vector<Symbol> Judge::childrenOf(const ElementRules& rules) const {
    std::vector<Symbol> children(rules.content.width - 1);
    for (std::size_t symbol = 0; symbol < m_dtd.elements.size(); ++symbol) {
        if (rules.content.holds(static_cast<Symbol>(symbol))) {
            children[rules.content.columns[symbol] - 1U] = static_cast<Symbol>(symbol);
        }
    }
    return children;
}

// "`a` may hold text, `br` and `img`"
std::u16string Judge::mayHold(const ElementRules& rules) const {
    std::vector<std::u16string_view> names;
    for (const Symbol child : childrenOf(rules)) {
        names.push_back(m_dtd.elements[child].name);
    }
    if (names.empty()) {
        return quoted(rules.name) + (rules.holdsText ? u" may hold text only" : u" must be empty");
    }
    return quoted(rules.name) + u" may hold " + listed(names, u"and", rules.holdsText);
}

// What can come next in an element; if `onlyMissing`, only that with which it gets complete.
std::vector<std::u16string_view> Judge::nextIn(const Open& open, bool onlyMissing) const {
    const ContentTable& content = open.rules->content;
    std::vector<std::u16string_view> names;
    for (const Symbol child : childrenOf(*open.rules)) {
        const std::uint16_t next = content.step(open.state, child);
        if (next != ContentTable::dead &&
            (!onlyMissing || content.missing[next] < content.missing[open.state])) {
            names.push_back(m_dtd.elements[child].name);
        }
    }
    return names;
}

void Judge::tellWrongRoot(const Walk& walk, Id id) {
    std::vector<std::u16string_view> roots;
    for (const Symbol root : m_dtd.roots) {
        roots.push_back(m_dtd.elements[root].name);
    }
    add(ProblemKind::WrongRoot, namePlace(walk, id),
        u"the deck begins with " + quoted(walk.tree.name(id)) + u"; it must begin with " +
            listed(roots, u"or"));
}

void Judge::tellUnknownElement(const Walk& walk, Id id) {
    const std::u16string_view name = walk.tree.name(id);
    const std::u16string_view near = nearElement(name);
    std::u16string reason = quoted(name) + u" is no " + m_dtd.kindOfElement;
    if (!near.empty()) {
        reason += didYouMean(near);
    } else if (top().rules != &m_dtd.anything) {
        reason += u"; " + mayHold(*top().rules);
    }
    add(ProblemKind::UnknownElement, namePlace(walk, id), std::move(reason));
}

void Judge::tellMisplacedElement(const Walk& walk, Id id, Symbol symbol) {
    const Open& parent = top();
    std::u16string reason = quoted(m_dtd.elements[symbol].name) + u" cannot stand ";
    if (parent.rules->content.holds(symbol)) {
        const auto names = nextIn(parent, false);
        reason += u"here in " + quoted(parent.rules->name) +
                  (names.empty() ? u"; nothing more may follow"
                                 : u"; here may follow " + listed(names, u"or"));
    } else {
        reason += u"in " + quoted(parent.rules->name) + u"; " + mayHold(*parent.rules);
    }
    add(ProblemKind::MisplacedElement, namePlace(walk, id), std::move(reason));
}

void Judge::tellMisplacedText(const Walk& walk, Id id) {
    const ElementRules& rules = *top().rules;
    const bool isReference = walk.tree.kind(id) == NodeKind::Reference;
    const std::u16string what = isReference ? quoted(walk.tree.source(id)) : u"text";
    Place place = placeOf(walk, id);
    if (walk.reference == nullptr && walk.tree.kind(id) == NodeKind::Text) {
        const std::u16string_view text = walk.tree.source(id);
        const std::u16string_view blanks = u" \t\r\n";
        place.end = place.begin + static_cast<std::uint32_t>(text.find_last_not_of(blanks) + 1);
        place.begin += static_cast<std::uint32_t>(text.find_first_not_of(blanks));
    }
    const bool isMark = walk.reference == nullptr &&
                        walk.tree.text().substr(place.begin, place.end - place.begin) == u"\xFEFF";
    add(ProblemKind::MisplacedText, place,
        isMark ? u"a byte-order mark (U+FEFF) in the middle of the text; take it out"
               : what + u" cannot stand in " + quoted(rules.name) + u"; " + whereTextGoes(rules));
}

// Into which child a text belongs, if one takes it.
std::u16string Judge::whereTextGoes(const ElementRules& rules) const {
    for (const Symbol child : childrenOf(rules)) {
        if (m_dtd.elements[child].holdsText) {
            return u"put it into a " + quoted(m_dtd.elements[child].name);
        }
    }
    return mayHold(rules);
}

void Judge::tellNotEmpty(const Walk& walk, Id id) {
    const std::u16string_view name = top().rules->name;
    add(ProblemKind::MisplacedText, placeOf(walk, id),
        quoted(name) + u" must be empty: between its tags not even a blank may stand");
}

void Judge::tellIncomplete(const Walk& walk, const Open& open) {
    Place place = namePlace(walk, open.element);
    if (walk.reference == nullptr && !walk.tree.has(open.element, EmptyTag)) {
        place = {walk.tree.endTagBegin(open.element), walk.tree[open.element].end};
    }
    std::u16string reason = quoted(open.rules->name) + u" ends here, but needs ";
    const auto names = nextIn(open, true);
    reason += names.empty() ? u"what cannot be" : oneOf(names);
    add(ProblemKind::IncompleteContent, place, std::move(reason));
}

// Gives the attribute that may have been meant; empty if there is none.
std::u16string_view Judge::tellUnknownAttribute(const Walk& walk, Id id,
                                                const ElementRules& rules) {
    const std::u16string_view name = walk.tree.name(id);
    NearMiss near(name);
    std::vector<std::u16string_view> names;
    for (const AttributeRules& attribute : rules.attributes) {
        near.offer(attribute.declaration->name);
        names.push_back(attribute.declaration->name);
    }
    std::u16string reason = quoted(name) + u" is no attribute of " + quoted(rules.name);
    if (!near.best().empty()) {
        reason += didYouMean(near.best());
    } else if (names.empty()) {
        reason += u", which has none";
    } else {
        reason += u"; it may have " + listed(names, u"and");
    }
    add(ProblemKind::UnknownAttribute, namePlace(walk, id), std::move(reason));
    return near.best();
}

void Judge::tellMissingAttributes(const Walk& walk, Id element, const ElementRules& rules,
                                  const std::vector<std::u16string_view>& meant) {
    std::vector<std::u16string_view> names;
    for (const AttributeRules& attribute : rules.attributes) {
        const std::u16string_view name = attribute.declaration->name;
        if (attribute.required && walk.tree.attribute(element, name) == Tree::none &&
            std::find(meant.begin(), meant.end(), name) == meant.end()) {
            names.push_back(name);
        }
    }
    if (!names.empty()) {
        add(ProblemKind::MissingAttribute, namePlace(walk, element),
            quoted(rules.name) + u" must have " + listed(names, u"and"));
    }
}

void Judge::tellBadValue(const Walk& walk, Id id, const AttributeDeclaration& declaration,
                         std::u16string_view value) {
    const bool isFixed = declaration.defaultKind == AttributeDeclaration::Default::Fixed;
    add(ProblemKind::BadAttributeValue, valuePlace(walk, id),
        quoted(declaration.name) + u" of " + quoted(declaration.element) + u" " +
            (isFixed ? u"can only be " + quoted(declaration.defaultValue) : demanded(declaration)) +
            u", not " + (value.empty() ? u"empty" : quoted(value)));
}

void Judge::tellSecondId(const Walk& walk, Id id, std::u16string_view value, std::uint32_t first) {
    if (!m_lines) {
        m_lines.emplace(m_tree.text());
    }
    add(ProblemKind::DuplicateId, valuePlace(walk, id),
        u"the id " + quoted(value) + u" already stands on line " +
            decimal(m_lines->at(first).line));
}

void Judge::tellUnknownId(const ReferredId& referred) {
    add(ProblemKind::UnknownId, referred.place, u"no element has the id " + quoted(referred.value));
}

} // namespace ravikit
