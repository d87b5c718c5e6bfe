#include "platform/page/dom/Place.h"

#include "platform/page/dom/ElementKinds.h"

namespace tessaly::page {

Place Place::atStartOf(Node& element) {
    return element.first != nullptr ? before(*element.first) : atEndOf(element);
}

Place Place::behind(Node& node) {
    return node.next != nullptr ? before(*node.next) : atEndOf(*node.parent);
}

Node* nodeFrom(const Place& place) {
    const bool atNode = place.kind == Place::Kind::Before ||
                        (place.kind == Place::Kind::InText && place.offset == 0);
    return atNode ? place.node : followingOutside(*place.node);
}

bool isInOrder(const Place& a, const Place& b) {
    if (a.node == b.node && a.kind == b.kind) {
        return a.offset <= b.offset;
    }
    if (a.kind == Place::Kind::InText && a.node == b.node) {
        return a.offset == 0; // b stands in front of the text
    }
    const Node* const goal = nodeFrom(b);
    const Node* at = nodeFrom(a);
    const bool endsInside = b.kind == Place::Kind::InText && b.offset > 0;
    while (at != nullptr && at != goal && !(endsInside && at == b.node)) {
        at = following(*at);
    }
    return at == goal || (endsInside && at == b.node);
}

bool isEmpty(const Span& span) {
    if (span.start.kind == Place::Kind::InText) {
        const Node& text = *span.start.node;
        const std::size_t end = span.end.kind == Place::Kind::InText && span.end.node == &text
                                    ? span.end.offset
                                    : text.text.size();
        if (span.start.offset < end) {
            return false;
        }
    }
    const Node* const goal = nodeFrom(span.end);
    for (const Node* at = nodeFrom(span.start); at != nullptr && at != goal; at = following(*at)) {
        const bool cut = span.end.kind == Place::Kind::InText && at == span.end.node;
        const std::size_t units = cut ? span.end.offset : at->text.size();
        if ((at->isText() && units > 0) || (at->isElement() && isVoid(*at))) {
            return false;
        }
        if (cut) {
            break;
        }
    }
    return true;
}

Node& holderOf(const Span& span) {
    return *commonAncestor(span.start.element(), span.end.element());
}

} // namespace tessaly::page
