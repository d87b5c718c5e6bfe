#include "ravikit/PageElements.h"

#include "ravikit/text/Chars.h"
#include "support/Iconv.h"
#include <algorithm>

namespace convert_test {

namespace {

void appendEscaped(std::u16string& out, std::u16string_view text, bool isValue) {
    for (const char16_t c : text) {
        out += c == u'&'              ? u"&amp;"
               : c == u'<'            ? u"&lt;"
               : c == u'>'            ? u"&gt;"
               : c == u'\u00A0'       ? u"&nbsp;"
               : c == u'"' && isValue ? u"&quot;"
                                      : std::u16string(1, c);
    }
}

std::u16string capitals(std::u16string_view text) {
    std::u16string result(text);
    for (char16_t& c : result) {
        c = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
    }
    return result;
}

// Where a browser's own line ends would show.
bool isInPre(const PageElement& node) {
    const PageElement* above = node.parent;
    while (above != nullptr && above->tag != u"pre") {
        above = above->parent;
    }
    return above != nullptr;
}

void write(const PageElement& node, Browser browser, std::u16string& out) {
    if (node.tag.empty()) {
        appendEscaped(out, node.text, false);
        return;
    }
    const std::u16string name = browser == Browser::Old ? capitals(node.tag) : node.tag;
    out += u'<' + name;
    auto attributes = node.attributes;
    if (browser == Browser::Old) {
        std::reverse(attributes.begin(), attributes.end());
    }
    for (const auto& [key, value] : attributes) {
        const bool isWord =
            !value.empty() && value.find_first_of(u" \t\n\"'<>&=`") == std::u16string::npos;
        out += u' ' + (browser == Browser::Old ? capitals(key) : key) + u'=';
        if (browser == Browser::Old && isWord) {
            out += value;
        } else {
            out += u'"';
            appendEscaped(out, browser == Browser::Old && key == u"style" ? capitals(value) : value,
                          true);
            out += u'"';
        }
    }
    out += u'>';
    if (node.tag == u"br" || node.tag == u"img" || node.tag == u"input") {
        return;
    }
    for (const auto& child : node.children) {
        write(*child, browser, out);
    }
    out += u"</" + name + u'>';
    if (browser == Browser::Old && name == u"P" && !isInPre(node)) {
        out += u"\r\n";
    }
}

} // namespace

std::u16string fromUtf8(const std::string& bytes) {
    static const support::Iconv decode("UTF-8");
    return decode(bytes).value_or(std::u16string(bytes.begin(), bytes.end()));
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else {
            constexpr const char* digits = "0123456789ABCDEF";
            bytes += "\\u";
            for (int shift = 12; shift >= 0; shift -= 4) {
                bytes += digits[c >> shift & 15];
            }
        }
    }
    return bytes;
}

const std::u16string* PageElement::attribute(std::u16string_view name) const {
    for (const auto& [key, value] : attributes) {
        if (key == name) {
            return &value;
        }
    }
    return nullptr;
}

void PageElement::set(std::u16string_view name, std::u16string_view value) {
    for (auto& [key, old] : attributes) {
        if (key == name) {
            old = value;
            return;
        }
    }
    attributes.emplace_back(name, value);
}

std::unique_ptr<PageElement> PageElement::clone() const {
    auto copy = std::make_unique<PageElement>();
    copy->tag = tag;
    copy->text = text;
    copy->attributes = attributes;
    for (const auto& child : children) {
        copy->insert(copy->children.size(), child->clone());
    }
    return copy;
}

std::size_t PageElement::index() const {
    std::size_t at = 0;
    while (parent->children[at].get() != this) {
        ++at;
    }
    return at;
}

std::unique_ptr<PageElement> PageElement::take() {
    const auto at = parent->children.begin() + static_cast<std::ptrdiff_t>(index());
    std::unique_ptr<PageElement> self = std::move(*at);
    parent->children.erase(at);
    parent = nullptr;
    return self;
}

PageElement* PageElement::insert(std::size_t at, std::unique_ptr<PageElement> child) {
    child->parent = this;
    return children.insert(children.begin() + static_cast<std::ptrdiff_t>(at), std::move(child))
        ->get();
}

std::u16string PageElement::innerText() const {
    std::u16string all = text;
    for (const char16_t* const shown : {u"alt", u"value", u"label"}) {
        const std::u16string* const value = attribute(shown);
        all += value != nullptr ? *value : u"";
    }
    for (const auto& child : children) {
        all += child->innerText();
    }
    return all;
}

void PageElement::collect(std::vector<PageElement*>& all) {
    for (const auto& child : children) {
        all.push_back(child.get());
        child->collect(all);
    }
}

std::unique_ptr<PageElement> makeElement(std::u16string_view tag) {
    auto element = std::make_unique<PageElement>();
    element->tag = tag;
    return element;
}

std::unique_ptr<PageElement> makeText(std::u16string_view text) {
    auto node = std::make_unique<PageElement>();
    node->text = text;
    return node;
}

std::unique_ptr<PageElement> elementsOf(const ravikit::PageTree& tree) {
    auto body = makeElement(u"body");
    std::vector<std::pair<PageElement*, std::uint32_t>> open{{body.get(), tree.size()}};
    for (std::uint32_t node = 0; node < tree.size(); ++node) {
        while (open.back().second <= node) {
            open.pop_back();
        }
        PageElement& parent = *open.back().first;
        if (tree[node].tag == ravikit::PageTag::None) {
            parent.insert(parent.children.size(), makeText(tree[node].text));
            continue;
        }
        PageElement* const element =
            parent.insert(parent.children.size(), makeElement(tree[node].text));
        for (std::uint32_t i = 0; i < tree[node].attributes; ++i) {
            const auto& [name, value] = tree.attributeAt(node, i);
            element->set(name, value);
        }
        open.emplace_back(element, tree[node].next);
    }
    return body;
}

std::u16string serialise(const PageElement& body, Browser browser) {
    std::u16string page;
    write(body, browser, page);
    return page;
}

std::u16string letters(std::u16string_view text) {
    std::u16string result;
    for (const char16_t c : text) {
        if (!ravikit::isBlank(c)) {
            result += c;
        }
    }
    return result;
}

} // namespace convert_test
