#include "ravikit/html/PageTree.h"
#include "ravikit/html/Style.h"
#include "ravikit/text/Chars.h"
#include "ravikit/text/Reference.h"
#include "ravikit/text/Scan.h"

#include <array>
#include <optional>

namespace ravikit {

namespace {

/// The entities that browsers write, whatever the age.
struct HtmlEntity {
    std::u16string_view name;
    char16_t character;
};
constexpr std::array entities{
    HtmlEntity{u"amp", u'&'},      HtmlEntity{u"lt", u'<'},        HtmlEntity{u"gt", u'>'},
    HtmlEntity{u"quot", u'"'},     HtmlEntity{u"apos", u'\''},     HtmlEntity{u"nbsp", u'\u00A0'},
    HtmlEntity{u"shy", u'\u00AD'}, HtmlEntity{u"copy", u'\u00A9'}, HtmlEntity{u"reg", u'\u00AE'},
};

struct TextStop {
    bool operator()(char16_t c) const { return c == u'<' || c == u'&' || c == u'\r'; }
#if defined(__SSE2__)
    scan::Bytes operator()(scan::Bytes u) const {
        using scan::either;
        using scan::equals;
        return either(either(equals(u, u'<'), equals(u, u'&')), equals(u, u'\r'));
    }
#endif
};

struct QuoteStop {
    char16_t quote;
    bool operator()(char16_t c) const { return c == quote || c == u'&' || c == u'\r'; }
#if defined(__SSE2__)
    scan::Bytes operator()(scan::Bytes u) const {
        using scan::either;
        using scan::equals;
        return either(equals(u, quote), either(equals(u, u'&'), equals(u, u'\r')));
    }
#endif
};

constexpr bool isTagBlank(char16_t c) {
    return isBlank(c) || c == u'\f';
}
constexpr bool isLetter(char16_t c) {
    return (c | 32) >= u'a' && (c | 32) <= u'z';
}

class LiteralReader {
public:
    LiteralReader(std::u16string_view html, PageTree& page)
        : m_page(page)
        , m_begin(html.data())
        , m_at(html.data())
        , m_end(html.data() + html.size()) {}

    bool read() {
        while (m_at != m_end) {
            if (*m_at != u'<' ? !readText() : !readMarkup()) {
                return false;
            }
        }
        return m_open.empty();
    }

private:
    bool readText() {
        const char16_t* const begin = m_at;
        m_at = scan::find(m_at, m_end, TextStop());
        if (m_at == m_end || *m_at == u'<') {
            m_page.addText(view(begin, m_at));
            return true;
        }
        m_at = begin;
        return decode(TextStop(), u'<') && (m_page.addText(m_page.keep(m_decoded)), true);
    }

    /// Decodes up to `last` into `m_decoded`. False at what only a browser's reader knows.
    template <class Stop>
    bool decode(const Stop& stop, char16_t last) {
        m_decoded.clear();
        for (;;) {
            const char16_t* const to = scan::find(m_at, m_end, stop);
            m_decoded.append(m_at, static_cast<std::size_t>(to - m_at));
            m_at = to;
            if (m_at == m_end || *m_at == last) {
                return true;
            }
            if (*m_at == u'\r') {
                m_decoded += u'\n';
                m_at += m_at + 1 != m_end && m_at[1] == u'\n' ? 2 : 1;
            } else if (*m_at != u'&' || !decodeReference()) {
                return false;
            }
        }
    }

    bool decodeReference() {
        const char16_t* semicolon = m_at + 1;
        while (semicolon != m_end && semicolon - m_at < 12 &&
               (isLetter(*semicolon) || *semicolon == u'#' ||
                (*semicolon >= u'0' && *semicolon <= u'9'))) {
            ++semicolon;
        }
        if (semicolon == m_at + 1) { // an ampersand by itself
            m_decoded += *m_at++;
            return true;
        }
        if (semicolon == m_end || *semicolon != u';') {
            return false;
        }
        const std::u16string_view name = view(m_at + 1, semicolon);
        if (name[0] == u'#') {
            const auto number = characterNumber(name.substr(1));
            // Those that HTML reads as other characters are left to a browser's reader.
            if (!number || !isChar(*number) || *number == u'\r' ||
                (*number >= 0x80 && *number < 0xA0)) {
                return false;
            }
            appendCodePoint(m_decoded, *number);
            m_at = semicolon + 1;
            return true;
        }
        for (const HtmlEntity& entity : entities) {
            if (entity.name == name) {
                m_decoded += entity.character;
                m_at = semicolon + 1;
                return true;
            }
        }
        return false;
    }

    bool readMarkup() {
        if (m_end - m_at < 3) {
            return false;
        }
        if (m_at[1] == u'/') {
            return readEndTag();
        }
        if (m_at[1] == u'!' || m_at[1] == u'?') {
            return skipUnseen();
        }
        return isLetter(m_at[1]) && readStartTag();
    }

    bool skipUnseen() {
        const std::u16string_view rest = view(m_at, m_end);
        const bool comment = rest.starts_with(u"<!--");
        if (comment && (rest.starts_with(u"<!-->") || rest.starts_with(u"<!--->"))) {
            return false;
        }
        const std::size_t end = comment ? rest.find(u"-->", 4) : rest.find(u'>');
        if (end == std::u16string_view::npos ||
            (comment && rest.substr(0, end).find(u"--!>") != std::u16string_view::npos)) {
            return false;
        }
        m_at += end + (comment ? 3 : 1);
        return true;
    }

    std::u16string_view readName() {
        const char16_t* const begin = m_at;
        while (m_at != m_end && !isTagBlank(*m_at) && *m_at != u'>' && *m_at != u'/') {
            ++m_at;
        }
        return view(begin, m_at);
    }

    bool readEndTag() {
        m_at += 2;
        const std::u16string_view name = readName();
        skipTagBlanks();
        if (m_open.empty() || m_at == m_end || *m_at != u'>') {
            return false;
        }
        ++m_at;
        const std::u16string_view open = m_page[m_open.back()].text;
        if (open != name && !sameName(open, name)) {
            return false;
        }
        m_page.close(m_open.back());
        m_open.pop_back();
        return true;
    }

    static bool sameName(std::u16string_view a, std::u16string_view b) {
        if (a.size() != b.size()) {
            return false;
        }
        for (std::size_t i = 0; i < a.size(); ++i) {
            if (a[i] != b[i] && ((a[i] | 32) != (b[i] | 32) || !isLetter(a[i]))) {
                return false;
            }
        }
        return true;
    }

    bool readStartTag() {
        const char16_t* const tagBegin = m_at++;
        const std::u16string_view name = readName();
        const auto [tag, isVoid] = knownTag(name);
        if (tag == PageTag::NeedsHtml) {
            return false;
        }
        const auto begin = static_cast<std::uint32_t>(tagBegin - m_begin);
        const std::uint32_t node = m_page.open(tag, name, begin);
        if (!readAttributes()) {
            return false;
        }
        if (tag == PageTag::RawText) {
            m_page.close(node);
            return skipRawText(name);
        }
        const bool alone = m_at[-2] == u'/'; // a slash that HTML takes no notice of
        if (!isVoid) {
            if (alone) {
                return false;
            }
            m_open.push_back(node);
        }
        if (tag == PageTag::Pre) {
            m_at += m_at != m_end && *m_at == u'\r' ? 1 : 0;
            m_at += m_at != m_end && *m_at == u'\n' ? 1 : 0;
        }
        return true;
    }

    void skipTagBlanks() {
        while (m_at != m_end && isTagBlank(*m_at)) {
            ++m_at;
        }
    }

    bool readAttributes() {
        for (;;) {
            while (m_at != m_end && (isTagBlank(*m_at) || *m_at == u'/')) {
                ++m_at;
            }
            if (m_at == m_end) {
                return false;
            }
            if (*m_at == u'>') {
                ++m_at;
                return true;
            }
            const char16_t* const begin = m_at;
            while (m_at != m_end && !isTagBlank(*m_at) && *m_at != u'>' && *m_at != u'/' &&
                   *m_at != u'=' && *m_at != u'<' && *m_at != u'"') {
                ++m_at;
            }
            const std::u16string_view name = view(begin, m_at);
            skipTagBlanks();
            if (name.empty() || m_at == m_end || *m_at == u'<' || *m_at == u'"') {
                return false;
            }
            if (*m_at != u'=') {
                m_page.addAttribute(name, {});
                continue;
            }
            ++m_at;
            skipTagBlanks();
            if (!readValue(name)) {
                return false;
            }
        }
    }

    bool readValue(std::u16string_view name) {
        if (m_at == m_end) {
            return false;
        }
        if (*m_at != u'"' && *m_at != u'\'') {
            const char16_t* const begin = m_at;
            while (m_at != m_end && !isTagBlank(*m_at) && *m_at != u'>') {
                if (*m_at == u'&') {
                    return false;
                }
                ++m_at;
            }
            m_page.addAttribute(name, view(begin, m_at));
            return begin != m_at;
        }
        const QuoteStop stop{*m_at++};
        const char16_t* const begin = m_at;
        m_at = scan::find(m_at, m_end, stop);
        if (m_at != m_end && *m_at != stop.quote) {
            m_at = begin;
            if (!decode(stop, stop.quote)) {
                return false;
            }
            m_page.addAttribute(name, m_page.keep(m_decoded));
        } else {
            m_page.addAttribute(name, view(begin, m_at));
        }
        return m_at != m_end && (++m_at, true);
    }

    bool skipRawText(std::u16string_view name) {
        const std::u16string_view rest = view(m_at, m_end);
        for (std::size_t at = rest.find(u"</"); at != std::u16string_view::npos;
             at = rest.find(u"</", at + 2)) {
            if (sameName(rest.substr(at + 2, name.size()), name)) {
                if (rest.substr(0, at).find(u"<!--") != std::u16string_view::npos) {
                    return false; // a script may hide its end in there
                }
                const std::size_t end = rest.find(u'>', at);
                m_at = end == std::u16string_view::npos ? m_end : m_at + end + 1;
                return end != std::u16string_view::npos;
            }
        }
        return false;
    }

    static std::u16string_view view(const char16_t* begin, const char16_t* end) {
        return {begin, static_cast<std::size_t>(end - begin)};
    }

    PageTree& m_page;
    const char16_t* m_begin;
    const char16_t* m_at;
    const char16_t* m_end;
    std::u16string m_decoded;
    std::vector<std::uint32_t> m_open;
};

} // namespace

bool readLiterally(std::u16string_view html, PageTree& page) {
    page.clear();
    page.reserve(html.size() / 16);
    return LiteralReader(html, page).read();
}

} // namespace ravikit
