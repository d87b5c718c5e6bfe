#include "ravikit/Chars.h"
#include "ravikit/Reference.h"
#include "ravikit/convert/PageTree.h"

#include <gumbo.h>

#include <cstring>
#include <memory>
#include <unordered_map>

namespace ravikit {

namespace {

/// What reading as a browser may cost at most. Browsers mend broken nesting in ways that take time
/// in line with how much stands open, so that hostile pages could take for ever.
constexpr std::size_t deepest = 8000;
constexpr std::size_t mostAttributes = 2000;
constexpr std::uint64_t mostSteps = 500'000'000;

constexpr bool isAlpha(char16_t c) {
    return (c | 32) >= u'a' && (c | 32) <= u'z';
}

/// Closed by their likes without an end tag, and inside what is counted anyway.
constexpr bool isImplied(PageTag tag) {
    return tag == PageTag::P || tag == PageTag::Li || tag == PageTag::Dd || tag == PageTag::Dt ||
           tag == PageTag::Tr || tag == PageTag::Td || tag == PageTag::Th ||
           tag == PageTag::Tbody || tag == PageTag::Body || tag == PageTag::Html;
}

/// Estimates from the tags alone how deep and how long the reading would be.
class Guard {
public:
    explicit Guard(std::u16string_view html)
        : m_html(html) {}

    /// The offset of the tag at which it is too much; npos if it never is.
    std::size_t tooMuchAt() {
        for (std::size_t at = m_html.find(u'<'); at != std::u16string_view::npos;
             at = m_html.find(u'<', at + 1)) {
            const bool isEnd = at + 1 < m_html.size() && m_html[at + 1] == u'/';
            const std::size_t begin = at + (isEnd ? 2 : 1);
            if (begin >= m_html.size() || !isAlpha(m_html[begin])) {
                continue;
            }
            std::size_t end = begin;
            std::uint64_t name = 0xCBF29CE484222325U;
            for (; end < m_html.size() && (isAlpha(m_html[end]) || isDigit(m_html[end])); ++end) {
                name = (name ^ (m_html[end] | 32U)) * 0x100000001B3U;
            }
            const std::u16string_view word = m_html.substr(begin, end - begin);
            if (isImplied(pageTagOf(word)) || isVoidTag(word)) {
                m_steps += m_depth;
            } else {
                count(name, isEnd);
            }
            if (m_depth > deepest || m_steps > mostSteps + 100 * m_html.size() ||
                hasTooManyAttributes(end)) {
                return at;
            }
        }
        return std::u16string_view::npos;
    }

private:
    static constexpr bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

    void count(std::uint64_t name, bool isEnd) {
        std::size_t& open = m_open[name];
        if (!isEnd) {
            ++open;
            ++m_depth;
        } else if (open > 0) {
            --open;
            --m_depth;
        }
        m_steps += m_depth;
    }

    /// Blanks and signs of equality tell, in whatever way the attributes are written.
    bool hasTooManyAttributes(std::size_t at) const {
        std::size_t signs = 0;
        std::size_t gaps = 0;
        char16_t quote = 0;
        for (; at < m_html.size() && (quote != 0 || m_html[at] != u'>'); ++at) {
            const char16_t c = m_html[at];
            if (quote != 0) {
                quote = c == quote ? u'\0' : quote;
            } else if (c == u'"' || c == u'\'') {
                quote = c;
            } else {
                signs += c == u'=' ? 1U : 0U;
                gaps += isBlank(c) || c == u'/' ? 1U : 0U;
            }
            if (signs + gaps > 2 * mostAttributes) {
                return true;
            }
        }
        return false;
    }

    std::u16string_view m_html;
    std::unordered_map<std::uint64_t, std::size_t> m_open;
    std::size_t m_depth = 0;
    std::uint64_t m_steps = 0;
};

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
                    open.push_back({&child, 0, node, true});
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
        const PageTag tag = pageTagOf(name);
        if (tag == PageTag::RawText || element.tag == GUMBO_TAG_TITLE ||
            element.tag == GUMBO_TAG_IFRAME || element.tag == GUMBO_TAG_NOFRAMES ||
            element.tag == GUMBO_TAG_NOEMBED) {
            m_page.noteDropped();
            return skipped;
        }
        const std::uint32_t node = m_page.open(tag, name);
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
    std::u16string m_buffer;
};

} // namespace

bool readAsBrowser(std::u16string_view html, PageTree& page, Problems& problems) {
    page.clear();
    const std::size_t tooMuch = Guard(html).tooMuchAt();
    if (tooMuch != std::u16string_view::npos) {
        const auto at = static_cast<std::uint32_t>(tooMuch);
        problems.add(ProblemKind::TooDeep, at, at + 1,
                     u"too much stands open at this tag: the page cannot be read");
        return false;
    }
    const std::string bytes = toUtf8(html);
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    options.fragment_context = GUMBO_TAG_BODY;
    GumboOutput* const output = gumbo_parse_with_options(&options, bytes.data(), bytes.size());
    BrowserReader(page).read(*output->root);
    gumbo_destroy_output(&options, output);
    return true;
}

} // namespace ravikit
