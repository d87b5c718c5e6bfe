#include "ravikit/html/AttributeCost.h"

#include <algorithm>

namespace ravikit {

namespace {

/// How much of a name is compared in a step.
constexpr std::size_t bytesPerStep = 32;

constexpr bool isTagBlank(char c) {
    return c == ' ' || c == '\n' || c == '\t' || c == '\f' || c == '\r';
}

constexpr bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// One tag as the parser's tokenizer takes it.
class TagScan {
public:
    TagScan(std::string_view html, std::size_t begin)
        : m_html(html)
        , m_at(begin) {
        skipUntil([](char c) { return isTagBlank(c) || c == '/' || c == '>'; });
        for (;;) {
            skipUntil([](char c) { return !isTagBlank(c) && c != '/'; });
            if (isAtEnd()) {
                return;
            }
            readAttribute();
        }
    }

    std::size_t end() const { return m_at; }
    std::size_t steps() const { return m_names * (m_names + m_nameBytes / bytesPerStep); }

private:
    bool isAtEnd() const { return m_at == m_html.size() || m_html[m_at] == '>'; }

    template <class Condition>
    void skipUntil(const Condition& condition) {
        while (m_at != m_html.size() && !condition(m_html[m_at])) {
            ++m_at;
        }
    }

    void readAttribute() {
        const std::size_t begin = m_at++;
        skipUntil([](char c) { return isTagBlank(c) || c == '/' || c == '>' || c == '='; });
        ++m_names;
        m_nameBytes += m_at - begin;
        skipUntil([](char c) { return !isTagBlank(c); });
        if (m_at == m_html.size() || m_html[m_at] != '=') {
            return;
        }
        ++m_at;
        skipUntil([](char c) { return !isTagBlank(c); });
        if (m_at != m_html.size() && (m_html[m_at] == '"' || m_html[m_at] == '\'')) {
            m_at = std::min(m_html.find(m_html[m_at], m_at + 1), m_html.size() - 1) + 1;
        } else {
            skipUntil([](char c) { return isTagBlank(c) || c == '>'; });
        }
    }

    std::string_view m_html;
    std::size_t m_at;
    std::size_t m_names = 0;
    std::size_t m_nameBytes = 0;
};

} // namespace

std::optional<std::size_t> costlyTag(std::string_view html, std::size_t allowed) {
    // Whether a < begins a tag or stands in a script, a comment or a value depends on all that is
    // before it, so that each is taken for one. Where they overlap often, that is no page either.
    std::size_t steps = 0;
    for (std::size_t at = 0; (at = html.find('<', at)) != html.npos; ++at) {
        const std::size_t name = at + (at + 1 < html.size() && html[at + 1] == '/' ? 2 : 1);
        if (name >= html.size() || !isLetter(html[name])) {
            continue;
        }
        const TagScan tag(html, name);
        steps += tag.steps() + tag.end() - at;
        if (steps > allowed) {
            return at;
        }
    }
    return std::nullopt;
}

} // namespace ravikit
