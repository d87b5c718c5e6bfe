#include "platform/page/StyleCommand.h"

#include "platform/page/Coverage.h"
#include "platform/page/ElementKinds.h"

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

/// Wraps the children of `container` that hold chosen texts only, each run in one element, and
/// puts those that hold others too into `open`.
void wrapRuns(Dom& dom, Node& container, InlineStyle style, int value, const Coverage& coverage,
              std::vector<Node*>& open) {
    std::vector<Node*> run;
    std::size_t upToText = 0;
    const auto endRun = [&] {
        if (upToText > 0) {
            if (Node* const carrier = newCarrier(dom, style, value)) {
                dom.put(*carrier, container, run.front());
                for (std::size_t i = 0; i < upToText; ++i) {
                    dom.put(*run[i], *carrier, nullptr);
                }
                joinWithNeighbours(dom, *carrier);
            }
        }
        run.clear();
        upToText = 0;
    };
    for (Node* child = container.first; child != nullptr;) {
        Node* const next = child->next;
        const Coverage::Cover cover = coverage.of(*child);
        const bool isWrappable = !cover.other && !cover.block && !cover.styled && !isBlock(*child);
        if (isWrappable && (cover.chosen || !run.empty())) {
            run.push_back(child);
            upToText = cover.chosen ? run.size() : upToText;
        } else {
            endRun();
            if (cover.chosen) {
                open.push_back(child);
            }
        }
        child = next;
    }
    endRun();
}

void wrapChosen(Dom& dom, Node& scope, InlineStyle style, int value,
                const std::unordered_set<const Node*>& chosen) {
    const Coverage coverage(scope, style, chosen);
    std::vector<Node*> open{&scope};
    while (!open.empty()) {
        Node& container = *open.back();
        open.pop_back();
        wrapRuns(dom, container, style, value, coverage, open);
    }
}

/// Gives `texts` the value; they are not empty.
void giveValue(Dom& dom, InlineStyle style, int value, const std::vector<Node*>& texts) {
    Node& scope = scopeOf(texts, style);
    dropFromChosen(dom, scope, style, value, textsUnlike(value, style, scope, texts));
    wrapChosen(dom, scope, style, value, textsUnlike(value, style, scope, texts));
    dom.select({Place::inText(*texts.front(), 0),
                Place::inText(*texts.back(), texts.back()->text.size())});
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
