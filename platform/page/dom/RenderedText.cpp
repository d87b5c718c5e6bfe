#include "platform/page/dom/RenderedText.h"

#include "platform/page/dom/ElementKinds.h"
#include "platform/page/dom/StyleAttribute.h"

#include <algorithm>
#include <vector>

namespace tessaly::page {

namespace {

bool isNotShown(const Node& element) {
    return isUnseenByName(element) || findAttribute(element, u"hidden") != nullptr ||
           styleProperty(element, u"display") == u"none";
}

bool isShownAsBlock(const Node& element) {
    const std::u16string display = styleProperty(element, u"display");
    return display.empty() ? isBlock(element) : display == u"block" || display == u"list-item";
}

bool isCell(const Node& element) {
    return element.is(u"td") || element.is(u"th");
}

/// Takes the nodes of a page in document order and gathers the text.
class Renderer {
public:
    /// What an element means for the text in it.
    struct Frame {
        bool shown = true;
        bool visible = true;
        bool preserved = false;
        std::size_t breaks = 0;
        /// The rows of a table and the cells of a row seen so far, and where their table is.
        std::size_t parts = 0;
        std::size_t table = 0;
    };

    /// Puts the elements around the text in place, without a break for them.
    void startIn(const Node& element) {
        std::vector<const Node*> path;
        for (const Node* at = &element; at != nullptr; at = at->parent) {
            path.push_back(at);
        }
        for (; !path.empty(); path.pop_back()) {
            m_frames.push_back(frameFor(*path.back()));
        }
    }

    bool isShown() const { return m_frames.back().shown; }

    void enter(const Node& element) {
        Frame frame = frameFor(element);
        if (frame.shown) {
            if (element.is(u"br")) {
                flushBreaks();
                breakLine(u'\n');
            } else if (isCell(element)) {
                separate(m_frames.back(), u'\t');
            } else if (element.is(u"tr") && frame.table > 0) {
                separate(m_frames[frame.table], u'\n');
            } else {
                needBreaks(frame.breaks);
            }
        }
        m_frames.push_back(frame);
    }

    void leave() {
        needBreaks(m_frames.back().breaks);
        m_frames.pop_back();
    }

    void text(std::u16string_view characters) {
        const Frame& frame = m_frames.back();
        if (!frame.shown || !frame.visible || characters.empty()) {
            return;
        }
        if (frame.preserved) {
            flushBreaks();
            writeSpace();
            m_out += characters;
            m_started = true;
            m_atLineStart = characters.back() == u'\n';
            return;
        }
        for (const char16_t unit : characters) {
            if (unit == u' ' || unit == u'\t' || unit == u'\n' || unit == u'\r' || unit == u'\f') {
                m_spaceWaits = true;
            } else {
                flushBreaks();
                writeSpace();
                m_out += unit;
                m_started = true;
                m_atLineStart = false;
            }
        }
    }

    std::u16string take() { return std::move(m_out); }

private:
    Frame frameFor(const Node& element) const {
        Frame frame = m_frames.empty() ? Frame() : m_frames.back();
        frame.parts = 0;
        frame.breaks = 0;
        frame.shown = frame.shown && !isNotShown(element);
        if (element.is(u"table")) {
            frame.table = m_frames.size();
        }
        if (const std::u16string seen = styleProperty(element, u"visibility"); !seen.empty()) {
            frame.visible = seen == u"visible";
        }
        if (element.is(u"pre") || element.is(u"listing") || element.is(u"plaintext") ||
            element.is(u"xmp")) {
            frame.preserved = true;
        }
        if (const std::u16string space = styleProperty(element, u"white-space"); !space.empty()) {
            frame.preserved = space == u"pre" || space == u"pre-wrap";
        }
        const bool separated = isCell(element) || element.is(u"tr") || element.is(u"tbody") ||
                               element.is(u"thead") || element.is(u"tfoot");
        if (frame.shown && !separated && isShownAsBlock(element)) {
            frame.breaks = element.is(u"p") ? 2 : 1;
        }
        return frame;
    }

    /// Blocks that meet share their breaks.
    void needBreaks(std::size_t count) {
        if (count > 0) {
            m_breaks = std::max(m_breaks, count);
            m_spaceWaits = false;
        }
    }

    void flushBreaks() {
        if (m_breaks > 0) {
            if (m_started) {
                m_out.append(m_breaks, u'\n');
            }
            m_breaks = 0;
            m_atLineStart = true;
        }
    }

    void writeSpace() {
        if (m_spaceWaits && !m_atLineStart) {
            m_out += u' ';
        }
        m_spaceWaits = false;
    }

    void breakLine(char16_t by) {
        m_out += by;
        m_started = true;
        m_atLineStart = true;
        m_spaceWaits = false;
    }

    void separate(Frame& parts, char16_t by) {
        if (parts.parts++ > 0) {
            flushBreaks();
            breakLine(by);
        }
    }

    std::u16string m_out;
    std::vector<Frame> m_frames;
    std::size_t m_breaks = 0;
    bool m_started = false;
    bool m_atLineStart = true;
    bool m_spaceWaits = false;
};

std::u16string allCharacters(const Node& element) {
    std::u16string all;
    for (const Node* at = &element; at != nullptr; at = following(*at, &element)) {
        if (at->isText()) {
            all += at->text;
        }
    }
    return all;
}

/// Where the feeding of a renderer starts and ends: a text that is taken only from `from` on, one
/// that is taken only up to `to`, and the first node that has no part in it.
struct Limits {
    const Node* firstText = nullptr;
    std::size_t from = 0;
    const Node* lastText = nullptr;
    std::size_t to = 0;
    const Node* goal = nullptr;
};

/// The node after `at` inside `root`, having left the elements that end in between.
const Node* stepPast(Renderer& renderer, const Node* at, const Node* root) {
    while (at->next == nullptr) {
        at = at->parent;
        if (at == nullptr || at == root) {
            return nullptr;
        }
        renderer.leave();
    }
    return at->next;
}

void feed(Renderer& renderer, const Node* at, const Limits& limits, const Node* root) {
    while (at != nullptr && at != limits.goal) {
        if (at->isElement()) {
            renderer.enter(*at);
            if (at->first != nullptr) {
                at = at->first;
                continue;
            }
            renderer.leave();
        } else if (at->isText()) {
            const std::size_t from = at == limits.firstText ? limits.from : 0;
            const std::size_t to = at == limits.lastText ? limits.to : at->text.size();
            renderer.text(std::u16string_view(at->text).substr(from, to - from));
            if (at == limits.lastText) {
                return;
            }
        }
        at = stepPast(renderer, at, root);
    }
}

} // namespace

std::u16string renderedText(const Node& element) {
    Renderer renderer;
    renderer.startIn(element);
    if (!renderer.isShown()) {
        return allCharacters(element);
    }
    if (element.first != nullptr) {
        feed(renderer, element.first, {}, &element);
    }
    return renderer.take();
}

std::u16string renderedText(const Span& span) {
    Renderer renderer;
    renderer.startIn(span.start.element());
    Limits limits;
    const Node* at = span.start.node;
    if (span.start.kind == Place::Kind::InText) {
        limits.firstText = span.start.node;
        limits.from = span.start.offset;
    } else if (span.start.kind == Place::Kind::AtEndOf) {
        renderer.leave();
        at = stepPast(renderer, at, nullptr);
    }
    if (span.end.kind == Place::Kind::InText) {
        limits.lastText = span.end.node;
        limits.to = span.end.offset;
    } else {
        limits.goal = nodeFrom(span.end);
    }
    feed(renderer, at, limits, nullptr);
    return renderer.take();
}

} // namespace tessaly::page
