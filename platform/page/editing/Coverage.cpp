#include "platform/page/editing/Coverage.h"

#include "platform/page/dom/ElementKinds.h"

#include <algorithm>

namespace tessaly::page {

namespace {

bool endsLine(const Node* neighbour) {
    return neighbour == nullptr || isBlock(*neighbour);
}

/// Children come before their parents, `scope` last.
std::vector<Node*> nodesBackwards(Node& scope) {
    std::vector<Node*> nodes;
    for (Node* at = &scope; at != nullptr; at = following(*at, &scope)) {
        nodes.push_back(at);
    }
    std::reverse(nodes.begin(), nodes.end());
    return nodes;
}

} // namespace

bool isBlank(const Node& text) {
    return text.text.find_first_not_of(u" \t\r\n\f") == std::u16string::npos;
}

bool takesFormat(const Node& text) {
    if (!text.isText() || text.text.empty() || text.parent == nullptr ||
        isApartFromFlow(*text.parent)) {
        return false;
    }
    const bool isBetweenBlocks =
        isBlock(*text.parent) && (endsLine(text.previous) || endsLine(text.next));
    return !isBlank(text) || !(isBetweenBlocks || holdsNoText(*text.parent));
}

std::vector<Node*> isolateTexts(Dom& dom, const Span& span) {
    const auto cut = [&dom](const Place& place) {
        if (place.kind == Place::Kind::InText && place.offset > 0 &&
            place.offset < place.node->text.size()) {
            dom.split(*place.node, place.offset);
        }
    };
    cut(span.end); // first, so that the start keeps its offset
    cut(span.start);
    std::vector<Node*> texts;
    const Node* const goal = nodeFrom(span.end);
    for (Node* at = nodeFrom(span.start); at != nullptr && at != goal; at = following(*at)) {
        if (takesFormat(*at)) {
            texts.push_back(at);
        }
    }
    return texts;
}

Coverage::Coverage(Node& scope, InlineStyle style, const std::unordered_set<const Node*>& chosen) {
    for (const Node* at : nodesBackwards(scope)) {
        const Node& node = *at;
        Cover& cover = m_covers[&node];
        if (chosen.count(&node) > 0) {
            cover.chosen = true;
        } else if (takesFormat(node)) {
            cover.other = true;
        }
        cover.styled |= valueGivenBy(node, style).has_value();
        const Cover own = cover;
        if (&node != &scope) {
            Cover& around = m_covers[node.parent];
            around.chosen |= own.chosen;
            around.other |= own.other;
            around.block |= own.block || isBlock(node);
            around.styled |= own.styled;
        }
    }
}

Coverage::Cover Coverage::of(const Node& node) const {
    const auto found = m_covers.find(&node);
    return found == m_covers.end() ? Cover() : found->second;
}

std::unordered_set<const Node*> textsUnlike(int wanted, InlineStyle style, const Node& scope,
                                            const std::vector<Node*>& texts) {
    std::unordered_map<const Node*, int> values;
    int outside = initialValue(style);
    for (const Node* at = scope.parent; at != nullptr; at = at->parent) {
        if (const auto value = valueGivenBy(*at, style)) {
            outside = *value;
            break;
        }
    }
    const std::unordered_set<const Node*> chosen(texts.begin(), texts.end());
    std::unordered_set<const Node*> unlike;
    for (const Node* at = &scope; at != nullptr; at = following(*at, &scope)) {
        const int around = at == &scope ? outside : values[at->parent];
        if (at->isElement()) {
            values[at] = valueGivenBy(*at, style).value_or(around);
        } else if (around != wanted && chosen.count(at) > 0) {
            unlike.insert(at);
        }
    }
    return unlike;
}

} // namespace tessaly::page
