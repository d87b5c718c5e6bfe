#include "ravikit/convert/ParagraphJoins.h"

#include "ravikit/text/Chars.h"

#include <algorithm>

namespace ravikit {

namespace {

void appendLetters(std::u16string& letters, std::u16string_view text) {
    std::copy_if(text.begin(), text.end(), std::back_inserter(letters),
                 [](char16_t c) { return !isBlank(c) && c != u'\u00A0'; });
}

/// The text of an element of the page without its blanks.
std::u16string lettersOf(const PageTree& page, std::uint32_t node) {
    std::u16string letters;
    for (std::uint32_t at = node + 1; at < page[node].next; ++at) {
        appendLetters(letters, page[at].tag == PageTag::None ? page[at].text : u"");
    }
    return letters;
}

/// The same of the nodes [first, end) of the source, siblings all, up to `limit` letters or a few
/// more.
std::u16string lettersOf(const Tree& tree, Tree::Id first, Tree::Id end, std::size_t limit) {
    std::u16string letters;
    for (Tree::Id id = first; id < end && letters.size() < limit;) {
        switch (tree.kind(id)) {
        case NodeKind::Element:
            id = tree.firstContent(id);
            continue;
        case NodeKind::Text:
            appendLetters(letters, tree.source(id));
            break;
        case NodeKind::CData:
            appendLetters(letters, insideCData(tree.source(id)));
            break;
        case NodeKind::Reference:
            appendLetters(letters, tree.referenceText(id));
            break;
        default:
            break;
        }
        id = tree[id].next;
    }
    return letters;
}

/// So many letters of one text at the end or begin of another say that it stands there.
constexpr std::size_t enough = 8;

/// The break of `paragraph` up to which it went to the end of the text `before`, while `after`,
/// what is left of it, does not begin with that; none if there is no such.
Tree::Id breakAfterHead(const Tree& tree, const Outline& outline, Tree::Id paragraph,
                        const std::u16string& before, const std::u16string& after) {
    const Tree::Id end = tree[paragraph].next;
    std::u16string head;
    Tree::Id from = tree.firstContent(paragraph);
    for (Tree::Id id = from; id < end; id = tree[id].next) {
        if (!outline.isBreak(id)) {
            continue;
        }
        head += lettersOf(tree, from, id, std::u16string::npos);
        from = tree[id].next;
        const std::size_t shown = std::min(head.size(), enough);
        const bool isThere =
            shown > 0 && before.ends_with(std::u16string_view(head).substr(head.size() - shown));
        if (isThere && !after.starts_with(std::u16string_view(head).substr(0, shown))) {
            return id;
        }
    }
    return Tree::none;
}

} // namespace

ParagraphJoins::ParagraphJoins(const PageTree& page, const Tree& tree, const Outline& outline,
                               const std::vector<KnownElement>& elements,
                               std::vector<Tree::Id>& parents) {
    std::map<Tree::Id, const KnownElement*> onPage; // the paragraphs, the first of each
    const auto isParagraph = [&](Tree::Id id) {
        return tree.kind(id) == NodeKind::Element && outline.element(id) == Element::P &&
               !outline.holdsBlock(id);
    };
    for (const KnownElement& element : elements) {
        if (element.source != Tree::none && isParagraph(element.source)) {
            onPage.emplace(element.source, &element);
        }
    }
    for (const auto& [paragraph, element] : onPage) {
        if (element->isCopy || element->isUnchanged) {
            continue;
        }
        const Tree::Id end = tree[parents[paragraph]].next;
        for (Tree::Id id = tree[paragraph].next; id < end; id = tree[id].next) {
            if (tree.kind(id) != NodeKind::Element) {
                continue;
            }
            if (!isParagraph(id)) {
                break;
            }
            const auto other = onPage.find(id);
            if (other == onPage.end()) {
                move(id, paragraph, tree[id].next, tree, parents);
                continue;
            }
            const Tree::Id cut =
                other->second->isUnchanged || other->second->isCopy
                    ? Tree::none
                    : breakAfterHead(tree, outline, id, lettersOf(page, element->page),
                                     lettersOf(page, other->second->page));
            if (cut != Tree::none) {
                m_breaks[id] = cut;
                move(id, paragraph, cut, tree, parents);
            }
            break;
        }
    }
}

/// Notes that the content of `paragraph` before `end` stands in `to`.
void ParagraphJoins::move(Tree::Id paragraph, Tree::Id to, Tree::Id end, const Tree& tree,
                          std::vector<Tree::Id>& parents) {
    m_joined[to].push_back(paragraph);
    for (Tree::Id in = tree.firstContent(paragraph); in < end; in = tree[in].next) {
        parents[in] = to;
    }
}

std::vector<Tree::Id> ParagraphJoins::joinedTo(Tree::Id paragraph) const {
    const auto joined = m_joined.find(paragraph);
    return joined == m_joined.end() ? std::vector<Tree::Id>() : joined->second;
}

Tree::Id ParagraphJoins::contentBegin(Tree::Id paragraph, const Tree& tree) const {
    const auto cut = m_breaks.find(paragraph);
    return cut == m_breaks.end() ? tree.firstContent(paragraph) : tree[cut->second].next;
}

Tree::Id ParagraphJoins::headEnd(Tree::Id paragraph, const Tree& tree) const {
    const auto cut = m_breaks.find(paragraph);
    return cut == m_breaks.end() ? tree[paragraph].next : cut->second;
}

} // namespace ravikit
