#include "ravikit/html/GumboGuard.h"
#include "ravikit/html/PageTree.h"
#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"

namespace ravikit {

namespace {

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size() + text.size() / 8);
    const auto put = [&bytes](char32_t byte) { bytes += static_cast<char>(byte); };
    for (std::size_t at = 0; at < text.size();) {
        char32_t c = codePointAt(text, at);
        at += unitsOf(c);
        c = (c >= 0xD800 && c <= 0xDFFF) || c == 0 ? 0xFFFD : c;
        if (c < 0x80) {
            put(c);
        } else if (c < 0x800) {
            put(0xC0 | c >> 6);
            put(0x80 | (c & 63));
        } else if (c < 0x10000) {
            put(0xE0 | c >> 12);
            put(0x80 | (c >> 6 & 63));
            put(0x80 | (c & 63));
        } else {
            put(0xF0 | c >> 18);
            put(0x80 | (c >> 12 & 63));
            put(0x80 | (c >> 6 & 63));
            put(0x80 | (c & 63));
        }
    }
    return bytes;
}

class BrowserReader {
public:
    explicit BrowserReader(PageTree& page)
        : m_page(page) {}

    /// All that is inside `root`.
    void read(const GumboNode& root) {
        std::vector<Open> open{{&root, 0, 0, false}};
        while (!open.empty()) {
            Open& top = open.back();
            const GumboVector& children = top.element->v.element.children;
            if (top.child == children.length) {
                if (top.isNode) {
                    m_page.close(top.node);
                }
                open.pop_back();
                continue;
            }
            const auto& child = *static_cast<const GumboNode*>(children.data[top.child++]);
            if (child.type == GUMBO_NODE_ELEMENT || child.type == GUMBO_NODE_TEMPLATE) {
                if (const auto node = openElement(child.v.element); node != skipped) {
                    // In MathML and the like a `br` may hold what belongs after it.
                    const bool holds = !m_isVoid;
                    if (!holds) {
                        m_page.close(node);
                    }
                    open.push_back({&child, 0, node, holds});
                }
            } else if (child.type != GUMBO_NODE_COMMENT && child.type != GUMBO_NODE_DOCUMENT) {
                m_page.addText(kept(child.v.text.text));
            }
        }
    }

private:
    struct Open {
        const GumboNode* element;
        unsigned child;
        std::uint32_t node;
        bool isNode;
    };
    static constexpr std::uint32_t skipped = 0xFFFFFFFF;

    std::uint32_t openElement(const GumboElement& element) {
        GumboStringPiece piece = element.original_tag;
        std::u16string_view name;
        if (element.tag != GUMBO_TAG_UNKNOWN) {
            name = kept(gumbo_normalized_tagname(element.tag));
        } else {
            gumbo_tag_from_original_text(&piece);
            name = kept(std::string_view(piece.data, piece.length));
        }
        const auto [tag, isVoid] = knownTag(name);
        m_isVoid = isVoid;
        if (tag == PageTag::RawText || element.tag == GUMBO_TAG_TITLE ||
            element.tag == GUMBO_TAG_IFRAME || element.tag == GUMBO_TAG_NOFRAMES ||
            element.tag == GUMBO_TAG_NOEMBED) {
            m_page.noteDropped(name, element.start_pos.offset);
            return skipped;
        }
        const std::uint32_t node = m_page.open(tag, name, element.start_pos.offset);
        for (unsigned i = 0; i < element.attributes.length; ++i) {
            const auto& one = *static_cast<const GumboAttribute*>(element.attributes.data[i]);
            m_page.addAttribute(kept(one.name), kept(one.value));
        }
        return node;
    }

    std::u16string_view kept(std::string_view utf8) {
        m_buffer.clear();
        for (std::size_t at = 0; at < utf8.size();) {
            const auto lead = static_cast<unsigned char>(utf8[at]);
            const unsigned length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
            char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
            for (unsigned i = 1; i < length && at + i < utf8.size(); ++i) {
                c = c << 6 | (static_cast<unsigned char>(utf8[at + i]) & 63U);
            }
            appendCodePoint(m_buffer, c);
            at += length;
        }
        return m_page.keep(m_buffer);
    }

    PageTree& m_page;
    bool m_isVoid = false; ///< the element that was opened last
    std::u16string m_buffer;
};

} // namespace

bool readAsBrowser(std::u16string_view html, PageTree& page, Problems& problems) {
    page.clear();
    page.countBytes();
    const std::string bytes = toUtf8(html);
    try {
        const GumboGuard parsed(bytes, GUMBO_TAG_BODY, GUMBO_NAMESPACE_HTML);
        BrowserReader(page).read(parsed.root());
        return true;
    } catch (const PageTooCostly& refusal) {
        const auto offset = static_cast<std::uint32_t>(refusal.offset());
        const std::uint32_t at = page.placeOf(offset, html);
        problems.add(ProblemKind::TooDeep, at, at + 1,
                     u"too much stands open at this tag: the page cannot be read");
        return false;
    }
}

} // namespace ravikit
