#include "platform/page/editing/StyleCommand.h"

#include "platform/page/dom/ElementKinds.h"
#include "platform/page/editing/Coverage.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace tessaly::page {

namespace {

/// The innermost block around the texts and around the outermost element that styles them.
Node& scopeOf(const std::vector<Node*>& texts, InlineStyle style) {
    Node* scope = commonAncestor(*texts.front(), *texts.back());
    for (Node* at = scope->parent; at != nullptr; at = at->parent) {
        if (at->parent != nullptr && canDropStyle(*at, style)) {
            scope = at;
        }
    }
    while (scope->parent != nullptr && !isBlock(*scope)) {
        scope = scope->parent;
    }
    return *scope;
}

/// Takes the style of `element` away from the chosen texts and leaves it with the others.
void pushDown(Dom& dom, Node& element, InlineStyle style, const Coverage& coverage) {
    std::vector<Node*> open{&element};
    while (!open.empty()) {
        Node& container = *open.back();
        open.pop_back();
        Node* carrier = nullptr;
        for (Node* child = container.first; child != nullptr;) {
            Node* const next = child->next;
            const Coverage::Cover cover = coverage.of(*child);
            const bool isMixed = cover.chosen && cover.other;
            const bool goesDeeper =
                isMixed || (cover.other && child->isElement() && holdsNoText(container));
            if (goesDeeper) {
                if (!valueGivenBy(*child, style)) {
                    open.push_back(child);
                }
                carrier = nullptr;
            } else if (cover.chosen) {
                carrier = nullptr;
            } else if (cover.other || carrier != nullptr) {
                if (carrier == nullptr) {
                    carrier = &carrierOf(dom, element, style);
                    dom.put(*carrier, container, child);
                }
                dom.put(*child, *carrier, nullptr);
            }
            child = next;
        }
    }
}

void dropFromChosen(Dom& dom, Node& scope, InlineStyle style, int value,
                    const std::unordered_set<const Node*>& chosen) {
    const Coverage coverage(scope, style, chosen);
    std::vector<Node*> sources;
    for (Node* at = &scope; at != nullptr; at = following(*at, &scope)) {
        if (coverage.of(*at).chosen && at->isElement() && canDropStyle(*at, style) &&
            valueGivenBy(*at, style) != value) {
            sources.push_back(at);
        }
    }
    for (Node* source : sources) {
        if (coverage.of(*source).other) {
            pushDown(dom, *source, style, coverage);
        }
        dropStyle(dom, *source, style);
    }
}

void moveChildren(Dom& dom, Node& from, Node& to) {
    while (from.first != nullptr) {
        dom.put(*from.first, to, nullptr);
    }
}

/// Two neighbours that differ in nothing become one.
void joinWithNeighbours(Dom& dom, Node& element) {
    const auto isTwin = [&element](const Node* other) {
        return other != nullptr && other->isElement() && other->text == element.text &&
               other->foreign == element.foreign && other->attributes == element.attributes;
    };
    if (isTwin(element.next)) {
        Node& next = *element.next;
        moveChildren(dom, next, element);
        dom.remove(next);
    }
    if (isTwin(element.previous)) {
        moveChildren(dom, element, *element.previous);
        dom.remove(element);
    }
}

/// Children of one element side by side that are to be wrapped together.
struct Run {
    Node* first = nullptr;
    /// The last that holds text: what stands after it is left outside.
    Node* last = nullptr;
};

/// The runs among the children of `container` that hold chosen texts only. Children that hold
/// other texts too go into `open`.
std::vector<Run> runsIn(const Node& container, const Coverage& coverage, std::vector<Node*>& open) {
    std::vector<Run> runs;
    bool isRunning = false;
    for (Node* child = container.first; child != nullptr; child = child->next) {
        const Coverage::Cover cover = coverage.of(*child);
        const bool isWrappable = !cover.other && !cover.block && !cover.styled && !isBlock(*child);
        if (isWrappable && cover.chosen) {
            if (!isRunning) {
                runs.push_back({child, child});
            }
            runs.back().last = child;
            isRunning = true;
        } else if (!isWrappable) {
            isRunning = false;
            if (cover.chosen) {
                open.push_back(child);
            }
        }
    }
    return runs;
}

void wrap(Dom& dom, const Run& run, Node& carrier) {
    dom.put(carrier, *run.first->parent, run.first);
    const Node* const behind = run.last->next;
    while (carrier.next != behind) {
        dom.put(*carrier.next, carrier, nullptr);
    }
}

void wrapChosen(Dom& dom, Node& scope, InlineStyle style, int value,
                const std::unordered_set<const Node*>& chosen) {
    const Coverage coverage(scope, style, chosen);
    std::vector<Node*> carriers;
    std::vector<Node*> open{&scope};
    while (!open.empty()) {
        const Node& container = *open.back();
        open.pop_back();
        for (const Run& run : runsIn(container, coverage, open)) {
            if (Node* const carrier = newCarrier(dom, style, value)) {
                wrap(dom, run, *carrier);
                carriers.push_back(carrier);
            }
        }
    }
    for (Node* carrier : carriers) { // only now, since joining moves what was still open
        if (carrier->parent != nullptr) {
            joinWithNeighbours(dom, *carrier);
        }
    }
}

/// Gives `texts` the value; they are not empty.
void giveValue(Dom& dom, InlineStyle style, int value, const std::vector<Node*>& texts) {
    Node& scope = scopeOf(texts, style);
    dropFromChosen(dom, scope, style, value, textsUnlike(value, style, scope, texts));
    wrapChosen(dom, scope, style, value, textsUnlike(value, style, scope, texts));
    dom.select({Place::inText(*texts.front(), 0),
                Place::inText(*texts.back(), texts.back()->text.size())});
    dom.collect();
}

} // namespace

void applyStyle(Dom& dom, InlineStyle style, int value) {
    const std::vector<Node*> texts = isolateTexts(dom, dom.selectedSpan());
    if (!texts.empty()) {
        giveValue(dom, style, value, texts);
    }
}

void toggleStyle(Dom& dom, InlineStyle style) {
    const std::vector<Node*> texts = isolateTexts(dom, dom.selectedSpan());
    if (texts.empty()) {
        return;
    }
    // Blanks beside a word do not count against it.
    std::vector<Node*> counted;
    std::copy_if(texts.begin(), texts.end(), std::back_inserter(counted),
                 [](const Node* text) { return !isBlank(*text); });
    const std::vector<Node*>& judged = counted.empty() ? texts : counted;
    const bool isOnEverywhere = textsUnlike(1, style, scopeOf(texts, style), judged).empty();
    giveValue(dom, style, isOnEverywhere ? 0 : 1, texts);
}

} // namespace tessaly::page
