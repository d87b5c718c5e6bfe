#include "ravikit/CardHtml.h"

#include "ravikit/Wording.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace ravikit {

namespace {

/// How an element is shown: its HTML element, and the attributes of WML that speak to a reader.
struct Rule {
    std::u16string_view element = {};
    std::u16string_view html = {};      ///< empty: only what stands inside is shown
    std::u16string_view fixed = {};     ///< attributes that the HTML element always has
    std::u16string_view attribute = {}; ///< the HTML attribute that takes the value of `from`
    std::u16string_view from = {};
    /// The HTML element ahead of the content that shows the value of `captionFrom`.
    std::u16string_view caption = {};
    std::u16string_view captionFrom = {};
    bool isVoid = false;
};

constexpr std::array rules{
    Rule{u"a", u"a"},
    Rule{u"anchor", u"a"},
    Rule{u"b", u"b"},
    Rule{u"big", u"big"},
    Rule{.element = u"br", .html = u"br", .isVoid = true},
    Rule{.element = u"card",
         .html = u"div",
         .fixed = u" class=\"card\"",
         .caption = u"h2",
         .captionFrom = u"title"},
    Rule{.element = u"do",
         .html = u"button",
         .fixed = u" disabled",
         .caption = u"span",
         .captionFrom = u"label"},
    Rule{u"em", u"em"},
    Rule{
        .element = u"fieldset", .html = u"fieldset", .caption = u"legend", .captionFrom = u"title"},
    Rule{u"i", u"i"},
    Rule{.element = u"img", .html = u"img", .attribute = u"alt", .from = u"alt", .isVoid = true},
    Rule{.element = u"input",
         .html = u"input",
         .fixed = u" disabled",
         .attribute = u"value",
         .from = u"value",
         .isVoid = true},
    Rule{.element = u"optgroup", .html = u"optgroup", .attribute = u"label", .from = u"title"},
    Rule{u"option", u"option"},
    Rule{u"p", u"p"},
    Rule{u"pre", u"pre"},
    Rule{.element = u"select", .html = u"select", .fixed = u" disabled"},
    Rule{u"small", u"small"},
    Rule{u"strong", u"strong"},
    Rule{.element = u"table", .html = u"table", .caption = u"caption", .captionFrom = u"title"},
    Rule{u"td", u"td"},
    Rule{u"tr", u"tr"},
    Rule{u"u", u"u"},
};

const Rule& ruleOf(std::u16string_view element) {
    static constexpr Rule unseen{};
    const auto* const found = std::lower_bound(
        rules.begin(), rules.end(), element,
        [](const Rule& rule, std::u16string_view name) { return rule.element < name; });
    return found != rules.end() && found->element == element ? *found : unseen;
}

std::u16string_view insideCData(std::u16string_view source) {
    constexpr std::u16string_view open = u"<![CDATA[";
    source.remove_prefix(std::min(open.size(), source.size()));
    if (source.ends_with(u"]]>")) {
        source.remove_suffix(3);
    }
    return source;
}

std::u16string valueOf(const Tree& tree, Tree::Id element, std::u16string_view name) {
    const Tree::Id id = name.empty() ? Tree::none : tree.attribute(element, name);
    return id == Tree::none ? std::u16string() : tree.value(id);
}

class Writer {
public:
    /// Writes all that `tree` holds; `depth` entities are open.
    void write(const Tree& tree, int depth) {
        std::vector<Open> open;
        const auto closeUpTo = [&](Tree::Id id) {
            for (; !open.empty() && open.back().end <= id; open.pop_back()) {
                closeTag(open.back().html);
            }
        };
        for (Tree::Id id = Tree::document + 1; id < tree.size();) {
            closeUpTo(id);
            if (tree.kind(id) == NodeKind::Element) {
                const Rule& rule = openElement(tree, id);
                if (!rule.html.empty() && !rule.isVoid) {
                    open.push_back({tree[id].next, rule.html});
                }
                id = tree.firstContent(id);
            } else {
                writeLeaf(tree, id, depth);
                id = tree[id].next;
            }
        }
        closeUpTo(tree.size());
    }

    std::u16string page() && { return std::move(m_html); }

private:
    struct Open {
        Tree::Id end;
        std::u16string_view html;
    };

    void writeLeaf(const Tree& tree, Tree::Id id, int depth) {
        switch (tree.kind(id)) {
        case NodeKind::Text:
        case NodeKind::Blank:
        case NodeKind::Junk:
            appendEscaped(tree.source(id));
            break;
        case NodeKind::CData:
            appendEscaped(insideCData(tree.source(id)));
            break;
        case NodeKind::Reference:
            writeReference(tree, id, depth);
            break;
        default:
            break;
        }
    }

    void writeReference(const Tree& tree, Tree::Id id, int depth) {
        const Tree* const content = tree.entityTree(id);
        if (content == nullptr) {
            const std::u16string text = tree.referenceText(id);
            appendEscaped(text.empty() ? tree.source(id) : text);
        } else if (depth < deepest && content->text().size() <= m_budget) {
            m_budget -= content->text().size();
            write(*content, depth + 1);
        } else {
            appendEscaped(tree.source(id));
        }
    }

    const Rule& openElement(const Tree& tree, Tree::Id id) {
        const Rule& rule = ruleOf(tree.name(id));
        if (rule.html.empty()) {
            return rule;
        }
        m_html += u'<';
        m_html += rule.html;
        m_html += rule.fixed;
        if (rule.html == u"input" && valueOf(tree, id, u"type") == u"password") {
            m_html += u" type=\"password\"";
        }
        if (const std::u16string value = valueOf(tree, id, rule.from); !value.empty()) {
            m_html += u' ';
            m_html += rule.attribute;
            m_html += u"=\"";
            appendEscaped(value);
            m_html += u'"';
        }
        m_html += u'>';
        if (rule.html == u"pre") {
            m_html += u'\n'; // a reader of HTML drops the first line end
        }
        if (const std::u16string value = valueOf(tree, id, rule.captionFrom); !value.empty()) {
            m_html += u'<';
            m_html += rule.caption;
            m_html += u'>';
            appendEscaped(value);
            closeTag(rule.caption);
        }
        return rule;
    }

    void closeTag(std::u16string_view html) {
        m_html += u"</";
        m_html += html;
        m_html += u'>';
    }

    void appendEscaped(std::u16string_view text) {
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = std::min(text.find_first_of(u"&<>\"", at), text.size());
            m_html += text.substr(at, end - at);
            if (end < text.size()) {
                m_html += text[end] == u'&'   ? u"&amp;"
                          : text[end] == u'<' ? u"&lt;"
                          : text[end] == u'>' ? u"&gt;"
                                              : u"&quot;";
            }
            at = end + 1;
        }
    }

    static constexpr int deepest = 32;

    std::u16string m_html;
    std::size_t m_budget = 0x400000; ///< units that entities may still expand to
};

} // namespace

std::optional<std::u16string> cardHtml(const Tree& tree, bool strict, Problems& problems) {
    const Tree::Id root = tree.documentElement();
    const std::u16string_view name = root == Tree::none ? std::u16string_view() : tree.name(root);
    for (const Problem& problem : tree.problems().list()) {
        if (name != u"card" || problem.kind != ProblemKind::UnknownEntity) {
            problems.add(problem.kind, problem.begin, problem.end, problem.reason);
        }
    }
    if (problems.empty() && name != u"wml" && name != u"card") {
        const Node& element = tree[root];
        problems.add(ProblemKind::NotConvertible, element.begin, element.end,
                     quoted(name) + u" is neither a deck, `wml`, nor a card, `card`");
    }
    if (strict && !problems.empty()) {
        return std::nullopt;
    }
    Writer writer;
    writer.write(tree, 0);
    return std::move(writer).page();
}

} // namespace ravikit
