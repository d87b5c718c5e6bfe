#include "platform/page/editing/Paste.h"

#include "platform/page/dom/ElementKinds.h"
#include "platform/page/dom/PageParser.h"

#include <unordered_set>

namespace tessaly::page {

namespace {

bool isEmptyText(const Node& node) {
    return node.isText() && node.text.empty();
}

bool isAtStart(const Place& place) {
    if (place.kind == Place::Kind::InText && place.offset > 0) {
        return false;
    }
    const Node* at = place.kind == Place::Kind::AtEndOf ? place.node->last : place.node->previous;
    while (at != nullptr && isEmptyText(*at)) {
        at = at->previous;
    }
    return at == nullptr;
}

bool isAtEnd(const Place& place) {
    if (place.kind == Place::Kind::AtEndOf) {
        return true;
    }
    const bool inText = place.kind == Place::Kind::InText;
    if (inText && place.offset < place.node->text.size()) {
        return false;
    }
    const Node* at = inText ? place.node->next : place.node;
    while (at != nullptr && isEmptyText(*at)) {
        at = at->next;
    }
    return at == nullptr;
}

/// An inline element that the range holds from end to end is a part of it.
void takeInWholeElements(Span& range) {
    const Node& holder = holderOf(range);
    while (&range.start.element() != &holder && !isBlock(range.start.element()) &&
           isAtStart(range.start)) {
        range.start = Place::before(range.start.element());
    }
    while (&range.end.element() != &holder && !isBlock(range.end.element()) && isAtEnd(range.end)) {
        range.end = Place::behind(range.end.element());
    }
}

/// Cuts the text around `place`, so that it stands between two nodes.
Place betweenNodes(Dom& dom, const Place& place) {
    if (place.kind != Place::Kind::InText) {
        return place;
    }
    if (place.offset == 0) {
        return Place::before(*place.node);
    }
    if (place.offset < place.node->text.size()) {
        return Place::before(dom.split(*place.node, place.offset));
    }
    return Place::behind(*place.node);
}

Node* paragraphAround(Node& element, const Node& holder) {
    Node* at = &element;
    while (at != &holder && !isBlock(*at)) {
        at = at->parent;
    }
    return at != &holder && isParagraph(*at) ? at : nullptr;
}

bool holdsBlock(const Node& element) {
    const Node* at = element.first;
    while (at != nullptr && !isBlock(*at)) {
        at = at->next;
    }
    return at != nullptr;
}

bool isCell(const Node& element) {
    return element.is(u"td") || element.is(u"th");
}

const Node* cellAround(const Node& element) {
    const Node* at = &element;
    while (at != nullptr && !isCell(*at)) {
        at = at->parent;
    }
    return at;
}

/// Moves what is left of the paragraph that the range ended in to the one it started in.
void joinParagraphs(Dom& dom, Node* first, Node* second, const Node& holder) {
    if (first == nullptr || second == nullptr || first == second || holdsBlock(*second) ||
        cellAround(*first) != cellAround(*second)) {
        return;
    }
    while (second->first != nullptr) {
        dom.put(*second->first, *first, nullptr);
    }
    for (Node* emptied = second;
         emptied != &holder && emptied->first == nullptr && !isCell(*emptied);) {
        Node* const parent = emptied->parent;
        dom.remove(*emptied);
        emptied = parent;
    }
}

/// Removes what stands in the range, whose ends stand between nodes. What holds an end stays.
void removeBetween(Dom& dom, const Span& range) {
    std::unordered_set<const Node*> staying;
    for (const Node* at = &range.end.element(); at != nullptr; at = at->parent) {
        staying.insert(at);
    }
    const Node* const goal = nodeFrom(range.end);
    Node* at = nodeFrom(range.start);
    while (at != nullptr && at != goal) {
        if (staying.count(at) > 0) {
            at = following(*at);
        } else {
            Node* const next = followingOutside(*at);
            dom.remove(*at);
            at = next;
        }
    }
}

} // namespace

void paste(Dom& dom, Span& range, const std::u16string& html) {
    Node& fragment = parseFragment(dom, html, range.start.element());
    const bool wasSelected = dom.selected() == Dom::Selected::Span && dom.selectedSpan() == range;

    takeInWholeElements(range);
    range.end = betweenNodes(dom, range.end);
    range.start = betweenNodes(dom, range.start);
    const Node& holder = holderOf(range);
    Node* const first = paragraphAround(range.start.element(), holder);
    Node* const second = paragraphAround(range.end.element(), holder);
    removeBetween(dom, range);

    const Place& place = range.start;
    Node& anchor = dom.newText({});
    dom.put(anchor, place.element(), place.kind == Place::Kind::Before ? place.node : nullptr);
    while (fragment.first != nullptr) {
        dom.put(*fragment.first, *anchor.parent, &anchor);
    }
    joinParagraphs(dom, first, second, holder);

    range = {Place::before(anchor), Place::before(anchor)};
    if (wasSelected) {
        dom.select(range);
    }
    dom.remove(anchor);
    dom.collect();
}

} // namespace tessaly::page
