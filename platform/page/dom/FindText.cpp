#include "platform/page/dom/FindText.h"

#include "platform/files/TextCodec.h"
#include "platform/page/dom/ElementKinds.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tessaly::page {

namespace {

/// A character that no text of a parsed page holds.
constexpr char16_t border = u'\0';

/// The texts of a page in one string, and where each begins in it.
class AllText {
public:
    explicit AllText(Node& root) {
        Node* at = &root;
        while (true) {
            take(*at);
            if (at->first != nullptr) {
                at = at->first;
                continue;
            }
            while (at != &root && at->next == nullptr) {
                at = at->parent;
                endLineAt(*at);
            }
            if (at == &root) {
                return;
            }
            at = at->next;
        }
    }

    /// Where `sought` begins from `from` on; nothing if it is empty or not there.
    std::optional<std::size_t> find(const std::u16string& sought, std::size_t from) const {
        if (sought.empty() || sought.find(border) != std::u16string::npos) {
            return std::nullopt;
        }
        const std::size_t at = m_text.find(sought, from);
        return at == std::u16string::npos ? std::nullopt : std::optional(at);
    }

    Place place(std::size_t at, bool atEnd) const {
        auto behind = std::upper_bound(
            m_starts.begin(), m_starts.end(), at,
            [atEnd](std::size_t sought, const std::pair<std::size_t, Node*>& start) {
                return atEnd ? sought <= start.first : sought < start.first;
            });
        const auto& [start, node] = *std::prev(behind);
        return Place::inText(*node, at - start);
    }

private:
    void take(Node& node) {
        endLineAt(node);
        if (node.isText() && !isApartFromFlow(*node.parent)) {
            m_starts.emplace_back(m_text.size(), &node);
            m_text += node.text;
        }
    }

    void endLineAt(const Node& node) {
        if (isBlock(node) || node.is(u"br")) {
            m_text += border;
        }
    }

    std::u16string m_text;
    std::vector<std::pair<std::size_t, Node*>> m_starts;
};

} // namespace

Place placeInText(Node& element, std::size_t units, bool atEnd) {
    Node* last = nullptr;
    std::size_t left = units;
    for (Node* at = &element; at != nullptr; at = following(*at, &element)) {
        if (!at->isText() || at->text.empty()) {
            continue;
        }
        if (left < at->text.size() || (atEnd && left == at->text.size())) {
            const bool isHalf = left > 0 && left < at->text.size() &&
                                isHighSurrogate(at->text[left - 1]) &&
                                isLowSurrogate(at->text[left]);
            return Place::inText(*at, isHalf ? left - 1 : left);
        }
        left -= at->text.size();
        last = at;
    }
    return last != nullptr ? Place::inText(*last, last->text.size()) : Place::atStartOf(element);
}

std::optional<Span> findText(Node& root, const std::u16string& first, const std::u16string& last) {
    const AllText all(root);
    const auto start = all.find(first, 0);
    const auto end = start ? all.find(last, *start + first.size()) : std::nullopt;
    if (!end) {
        return std::nullopt;
    }
    return Span{all.place(*start, false), all.place(*end + last.size(), true)};
}

std::optional<Span> findText(Node& root, const std::u16string& text) {
    const AllText all(root);
    const auto start = all.find(text, 0);
    if (!start) {
        return std::nullopt;
    }
    return Span{all.place(*start, false), all.place(*start + text.size(), true)};
}

} // namespace tessaly::page
