#include "platform/page/dom/PageWriter.h"

#include "platform/page/dom/ElementKinds.h"

#include <algorithm>
#include <string_view>

namespace tessaly::page {

namespace {

class Writer {
public:
    explicit Writer(Writing writing)
        : m_older(writing == Writing::Older) {}

    /// Writes `root`, or only what stands inside it.
    void write(const Node& root, bool withRoot) {
        const Node* at = &root;
        bool entering = true;
        while (true) {
            const bool isPart = withRoot || at != &root;
            if (entering) {
                if (isPart) {
                    open(*at);
                }
                if (at->first != nullptr && !isVoid(*at)) {
                    at = at->first;
                    continue;
                }
            }
            if (isPart) {
                close(*at);
            }
            if (at == &root) {
                return;
            }
            entering = at->next != nullptr;
            at = entering ? at->next : at->parent;
        }
    }

    std::u16string take() { return std::move(m_out); }

private:
    void open(const Node& node) {
        if (node.isText()) {
            if (node.parent != nullptr && holdsRawText(*node.parent)) {
                m_out += node.text;
            } else {
                escape(node.text, false);
            }
            return;
        }
        if (node.kind == NodeKind::Comment) {
            m_out += u"<!--" + node.text + u"-->";
            return;
        }
        if (node.is(u"pre")) {
            ++m_preDepth;
        }
        if (m_older && isBlock(node) && !m_out.empty() && m_preDepth == 0) {
            m_out += u"\r\n";
        }
        m_out += u'<';
        name(node);
        for (const Attribute& attribute : node.attributes) {
            m_out += u' ';
            m_out += attribute.name;
            m_out += u'=';
            value(attribute.value);
        }
        m_out += u'>';
    }

    void close(const Node& node) {
        if (!node.isElement() || isVoid(node)) {
            return;
        }
        if (node.is(u"pre")) {
            --m_preDepth;
        }
        m_out += u"</";
        name(node);
        m_out += u'>';
    }

    void name(const Node& element) {
        const std::size_t start = m_out.size();
        m_out += element.text;
        if (m_older && !element.foreign) {
            std::transform(m_out.begin() + static_cast<std::ptrdiff_t>(start), m_out.end(),
                           m_out.begin() + static_cast<std::ptrdiff_t>(start), [](char16_t unit) {
                               return unit >= u'a' && unit <= u'z'
                                          ? static_cast<char16_t>(unit - u'a' + u'A')
                                          : unit;
                           });
        }
    }

    void value(const std::u16string& text) {
        if (m_older && standsWithoutQuotes(text)) {
            m_out += text;
            return;
        }
        m_out += u'"';
        escape(text, true);
        m_out += u'"';
    }

    static bool standsWithoutQuotes(const std::u16string& text) {
        return !text.empty() && std::all_of(text.begin(), text.end(), [](char16_t unit) {
            return (unit >= u'0' && unit <= u'9') || (unit >= u'A' && unit <= u'Z') ||
                   (unit >= u'a' && unit <= u'z') || unit == u'#' || unit == u'%' || unit == u'-' ||
                   unit == u'_' || unit == u'.';
        });
    }

    /// Browsers leave `<` and `>` in attributes as they are.
    void escape(std::u16string_view text, bool inAttribute) {
        const std::u16string_view special = inAttribute ? u"&\u00A0\"" : u"&\u00A0<>";
        std::size_t from = 0;
        while (true) {
            const std::size_t at = text.find_first_of(special, from);
            m_out += text.substr(from, at - from);
            if (at == std::u16string_view::npos) {
                return;
            }
            switch (text[at]) {
            case u'&':
                m_out += u"&amp;";
                break;
            case u'"':
                m_out += u"&quot;";
                break;
            case u'<':
                m_out += u"&lt;";
                break;
            case u'>':
                m_out += u"&gt;";
                break;
            default:
                m_out += u"&nbsp;";
            }
            from = at + 1;
        }
    }

    std::u16string m_out;
    bool m_older;
    std::size_t m_preDepth = 0;
};

std::u16string written(const Node& element, Writing writing, bool withRoot) {
    Writer writer(writing);
    writer.write(element, withRoot);
    return writer.take();
}

} // namespace

std::u16string outerHtml(const Node& element, Writing writing) {
    return written(element, writing, true);
}

std::u16string innerHtml(const Node& element, Writing writing) {
    return written(element, writing, false);
}

} // namespace tessaly::page
