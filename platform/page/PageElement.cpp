#include "platform/page/PageElement.h"

#include "platform/page/dom/ElementKinds.h"
#include "platform/page/dom/PageParser.h"
#include "platform/page/dom/RenderedText.h"
#include "util/Failure.h"
#include "util/LetterCase.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessaly::page {

namespace {

std::u16string fromAscii(std::string_view text) {
    return {text.begin(), text.end()};
}

std::u16string numberText(double number) {
    std::string text = std::to_string(number);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') {
        text.pop_back();
    }
    return fromAscii(text);
}

std::u16string textOf(const Value& value) {
    if (const auto* text = std::get_if<std::u16string>(&value)) {
        return *text;
    }
    if (const auto* flag = std::get_if<bool>(&value)) {
        return *flag ? u"true" : u"false";
    }
    if (const auto* number = std::get_if<std::int32_t>(&value)) {
        return fromAscii(std::to_string(*number));
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return numberText(*number);
    }
    if (isGiven(value)) {
        throw Failure(FailureCode::TypeMismatch);
    }
    return {};
}

std::u16string inCapitals(std::u16string name) {
    for (char16_t& unit : name) {
        if (unit >= u'a' && unit <= u'z') {
            unit -= u'a' - u'A';
        }
    }
    return name;
}

bool beginsWithBodyTag(std::u16string_view html) {
    html.remove_prefix(std::min(html.find_first_not_of(u" \t\r\n\f"), html.size()));
    constexpr std::u16string_view tag = u"<body";
    return html.size() > tag.size() && equalIgnoringCase(html.substr(0, tag.size()), tag) &&
           std::u16string_view(u" \t\r\n\f/>").find(html[tag.size()]) != std::u16string_view::npos;
}

void replaceChildren(Dom& dom, Node& element, Node& holder) {
    dom.removeChildren(element);
    while (holder.first != nullptr) {
        dom.put(*holder.first, element, nullptr);
    }
}

} // namespace

PageElement::PageElement(const PageState& page, Node& node)
    : m_pin(page.dom, node)
    , m_writing(page.writing) {}

std::u16string PageElement::tagName() {
    return node().foreign ? node().text : inCapitals(node().text);
}

void PageElement::setAttribute(const std::u16string& name, const Value& value, std::int32_t flags) {
    constexpr std::u16string_view unwritable = u" \t\r\n\f\"'<>/=";
    if (name.empty() || name.find_first_of(unwritable) != std::u16string::npos) {
        throw Failure(FailureCode::InvalidArgument);
    }
    const std::u16string text = textOf(value);
    const bool isExact = (flags & 1) != 0;
    for (Attribute& each : node().attributes) {
        if (isExact ? each.name == name : equalIgnoringCase(each.name, name)) {
            each.value = text;
            return;
        }
    }
    writeAttribute(node(), isExact || node().foreign ? name : toLower(name), text);
}

std::u16string PageElement::uniqueID() {
    return u"element" + fromAscii(std::to_string(node().id));
}

std::shared_ptr<IHTMLElementCollection> PageElement::all() {
    return std::make_shared<PageElements>(state(), node(), PageElements::Root::Excluded,
                                          std::nullopt);
}

std::shared_ptr<IHTMLElement> PageElement::parentElement() {
    return elementFor(state(), node().parent);
}

std::u16string PageElement::innerText() {
    return renderedText(node());
}

std::u16string PageElement::innerHTML() {
    return innerHtml(node(), m_writing);
}

void PageElement::innerHTML(const std::u16string& html) {
    if (node().is(u"body") && beginsWithBodyTag(html)) {
        // A page without a document type would be parsed by the rules of old pages, which a
        // fragment never is.
        const Node& page = parsePage(dom(), u"<!DOCTYPE html>" + html);
        Node& body = *findChild(page, u"body");
        for (const Attribute& each : body.attributes) {
            writeAttribute(node(), each.name, each.value);
        }
        replaceChildren(dom(), node(), body);
    } else {
        replaceChildren(dom(), node(), parseFragment(dom(), html, node()));
    }
    dom().collect();
}

std::u16string PageElement::outerHTML() {
    return outerHtml(node(), m_writing);
}

PageElements::PageElements(const PageState& page, Node& node, Root root,
                           std::optional<std::u16string> name)
    : m_root(page.dom, node)
    , m_writing(page.writing)
    , m_withRoot(root)
    , m_name(std::move(name)) {}

const std::vector<Node*>& PageElements::members() {
    if (m_version != m_root.dom().version()) {
        m_members.clear();
        Node& root = m_root.node();
        Node* const first = m_withRoot == Root::Included ? &root : root.first;
        for (Node* at = first; at != nullptr; at = following(*at, &root)) {
            if (at->isElement() && (!m_name || equalIgnoringCase(at->text, *m_name))) {
                m_members.push_back(at);
            }
        }
        m_version = m_root.dom().version();
    }
    return m_members;
}

std::int32_t PageElements::length() {
    return static_cast<std::int32_t>(members().size());
}

std::shared_ptr<IHTMLElement> PageElements::item(std::int32_t index) {
    const bool isMember = index >= 0 && static_cast<std::size_t>(index) < members().size();
    return elementFor({m_root.sharedDom(), m_writing},
                      isMember ? m_members[static_cast<std::size_t>(index)] : nullptr);
}

std::shared_ptr<IHTMLElement> elementFor(const PageState& page, Node* node) {
    return node == nullptr ? nullptr : std::make_shared<PageElement>(page, *node);
}

} // namespace tessaly::page
