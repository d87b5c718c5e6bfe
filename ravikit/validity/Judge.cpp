#include "ravikit/validity/Judge.h"

#include "ravikit/text/NearMiss.h"
#include "ravikit/text/Reference.h"

#include <algorithm>

namespace ravikit {

Judge::Judge(const DtdTables& dtd, const Tree& tree, Problems& problems)
    : m_dtd(dtd)
    , m_tree(tree)
    , m_problems(problems) {}

void Judge::run() {
    if (m_tree.documentElement() == Tree::none) {
        return; // which is no matter of validity
    }
    const Source& source = sourceOf(m_tree);
    judgeRoot({source, m_tree, nullptr});
    checkReferredIds();
}

// The numbers that the DTD gives to the names of `tree`. They are looked up once.
const Judge::Source& Judge::sourceOf(const Tree& tree) {
    Source* source = &m_deck;
    if (&tree != &m_tree) {
        auto& known = m_entities[&tree];
        if (known) {
            return *known;
        }
        known = std::make_unique<Source>();
        source = known.get();
    }
    if (tree.names().base() != nullptr && tree.names().base() == m_dtd.declarations.names.get()) {
        source->meanings = m_dtd.meanings;
    }
    source->meanings.learn(tree.names(), m_dtd);
    return *source;
}

void Judge::judgeRoot(const Walk& walk) {
    const Id root = walk.tree.documentElement();
    const Symbol symbol = walk.source.element(walk.tree[root]);
    if (std::find(m_dtd.roots.begin(), m_dtd.roots.end(), symbol) == m_dtd.roots.end()) {
        // Where tags are broken, what stands first may well be what should stand inside.
        const bool isKnownFault =
            symbol != unknown ? !m_tree.wellFormed() : isReported(walk, namePlace(walk, root));
        if (!isKnownFault) {
            tellWrongRoot(walk, root);
        }
        NearMiss near(walk.tree.name(root));
        for (const Symbol candidate : m_dtd.roots) {
            near.offer(m_dtd.elements[candidate].name);
        }
        if (symbol == unknown && near.best().empty()) {
            return; // it is another language, of which every element would be reported
        }
    }
    // The document is like an element in which anything can stand.
    push().rules = &m_dtd.anything;
    walkContent(walk, root, walk.tree[root].next);
}

void Judge::walkContent(const Walk& walk, Id from, Id behind) {
    const Tree& tree = walk.tree;
    const std::size_t outside = m_depth;
    for (Id id = from; id < behind && !m_problems.full();) {
        while (m_depth > outside && top().behind == id) {
            closeElement(walk);
        }
        const NodeKind kind = tree.kind(id);
        if (kind == NodeKind::Element) {
            id = openElement(walk, id);
        } else {
            content(walk, id, kind);
            id = tree[id].next;
        }
    }
    while (m_depth > outside) {
        closeElement(walk);
    }
}

// Gives where the element's content begins.
Judge::Id Judge::openElement(const Walk& walk, Id id) {
    const Node& node = walk.tree[id];
    const Symbol symbol = walk.source.element(node);
    placeElement(walk, id, symbol);
    const ElementRules& rules = symbol == unknown ? m_dtd.anything : m_dtd.elements[symbol];
    const Id inside = symbol == unknown ? walk.tree.firstContent(id) : attributes(walk, id, rules);
    // Field by field: copying the whole would wait for the stores of its parts.
    Open& open = push();
    open.rules = &rules;
    open.element = id;
    open.behind = node.next;
    open.state = 0;
    open.mended = (node.flags & Recovered) != 0;
    open.loose = open.mended;
    open.inMisplaced = false;
    if (inside == node.next) {
        closeElement(walk);
    }
    return inside;
}

Judge::Open& Judge::push() {
    if (m_depth == m_open.size()) {
        m_open.resize(2 * m_depth + 16);
    }
    return m_open[m_depth++];
}

void Judge::placeElement(const Walk& walk, Id id, Symbol symbol) {
    Open& parent = top();
    if (symbol == unknown) {
        parent.loose = true;
        parent.inMisplaced = false;
        if (parent.element != Tree::document && !isReported(walk, namePlace(walk, id))) {
            tellUnknownElement(walk, id);
        }
        return;
    }
    const std::uint16_t next = parent.rules->content.step(parent.state, symbol);
    if (next != ContentTable::dead) {
        parent.state = next;
        parent.inMisplaced = false;
        return;
    }
    const bool isAlien = !parent.rules->content.holds(symbol);
    if (!parent.mended && !(parent.loose && parent.rules->holdsNothing) &&
        !(isAlien && parent.inMisplaced)) {
        tellMisplacedElement(walk, id, symbol);
    }
    parent.inMisplaced = isAlien;
    parent.loose = true;
}

void Judge::closeElement(const Walk& walk) {
    const Open& open = top();
    if (!open.loose && open.rules->content.missing[open.state] != 0) {
        tellIncomplete(walk, open);
    }
    --m_depth;
}

// Anything in an element but another element.
void Judge::content(const Walk& walk, Id id, NodeKind kind) {
    Open& open = top();
    if (kind == NodeKind::Junk) {
        return;
    }
    if (open.rules->holdsNothing) {
        if (!open.loose) {
            tellNotEmpty(walk, id);
        }
        open.loose = true;
    } else if (kind == NodeKind::Reference) {
        reference(walk, id);
    } else if ((kind == NodeKind::Text || kind == NodeKind::CData) && !open.rules->holdsText) {
        misplacedText(walk, id);
    }
}

// Blanks between elements must be written as such: a reference to one is text. But an entity
// stands for all that it holds.
void Judge::reference(const Walk& walk, Id id) {
    const Tree* const entity = walk.tree.entityTree(id);
    if (entity != nullptr) {
        const Node* const place = walk.reference != nullptr ? walk.reference : &walk.tree[id];
        const Walk inner = {sourceOf(*entity), *entity, place};
        walkContent(inner, Tree::document + 1, entity->size());
        return;
    }
    const bool isText =
        walk.tree.source(id).starts_with(u"&#") || predefinedEntity(walk.tree.name(id)) != 0;
    if (isText && !top().rules->holdsText) {
        misplacedText(walk, id);
    }
}

void Judge::misplacedText(const Walk& walk, Id id) {
    Open& open = top();
    if (!open.mended && !open.inMisplaced) {
        tellMisplacedText(walk, id);
    }
    open.inMisplaced = true;
}

} // namespace ravikit
