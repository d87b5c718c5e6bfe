#include "platform/page/editing/PageSelection.h"

#include "platform/page/dom/RenderedText.h"
#include "platform/page/editing/Paste.h"

#include <utility>

namespace tessaly::page {

PageTextRange::PageTextRange(PageState page, const Span& span)
    : m_page(std::move(page))
    , m_span(span) {
    m_page.dom->track(m_span);
}

PageTextRange::~PageTextRange() {
    m_page.dom->untrack(m_span);
}

std::u16string PageTextRange::text() {
    return renderedText(m_span);
}

void PageTextRange::pasteHTML(const std::u16string& html) {
    paste(*m_page.dom, m_span, html);
}

std::shared_ptr<IHTMLElement> PageTextRange::parentElement() {
    return elementFor(m_page, &holderOf(m_span));
}

PageControlRange::PageControlRange(std::shared_ptr<IHTMLElement> element)
    : m_element(std::move(element)) {}

std::shared_ptr<IHTMLElement> PageControlRange::Item(const Value& index) {
    return !isGiven(index) || index == Value(std::int32_t{0}) ? m_element : nullptr;
}

std::u16string PageSelection::type() {
    const Dom& dom = *m_page.dom;
    if (dom.selected() == Dom::Selected::Object) {
        return u"Control";
    }
    const bool isText = dom.selected() == Dom::Selected::Span && !isEmpty(dom.selectedSpan());
    return isText ? u"Text" : u"None";
}

ObjectRef PageSelection::createRange() {
    Dom& dom = *m_page.dom;
    if (dom.selected() == Dom::Selected::Object) {
        return std::make_shared<PageControlRange>(elementFor(m_page, dom.selectedObject()));
    }
    if (dom.selected() == Dom::Selected::Nothing) {
        const Place start = Place::atStartOf(dom.body() != nullptr ? *dom.body() : dom.root());
        return std::make_shared<PageTextRange>(m_page, Span{start, start});
    }
    return std::make_shared<PageTextRange>(m_page, dom.selectedSpan());
}

} // namespace tessaly::page
