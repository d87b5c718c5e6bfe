#pragma once

#include "platform/page/PageElement.h"

namespace tessaly::page {

/// A text range that a page hands out. It stays right while the page changes; when the text that
/// it stood in has gone, it is the place where that was.
class PageTextRange : public IHTMLTxtRange {
public:
    PageTextRange(PageState page, const Span& span);
    PageTextRange(const PageTextRange&) = delete;
    PageTextRange& operator=(const PageTextRange&) = delete;
    PageTextRange(PageTextRange&&) = delete;
    PageTextRange& operator=(PageTextRange&&) = delete;
    ~PageTextRange() override;

    std::u16string text() override;
    void pasteHTML(const std::u16string& html) override;
    std::shared_ptr<IHTMLElement> parentElement() override;

private:
    PageState m_page;
    Span m_span;
};

/// The one element that was selected as an object.
class PageControlRange : public IHTMLControlRange {
public:
    explicit PageControlRange(std::shared_ptr<IHTMLElement> element);

    /// None for an index that is not 0.
    std::shared_ptr<IHTMLElement> Item(const Value& index) override;

private:
    std::shared_ptr<IHTMLElement> m_element;
};

/// The selection of a page, as it is at each call.
class PageSelection : public IHTMLSelectionObject {
public:
    explicit PageSelection(PageState page)
        : m_page(std::move(page)) {}

    std::u16string type() override;
    /// With nothing selected a range at the start of the body.
    ObjectRef createRange() override;

private:
    PageState m_page;
};

} // namespace tessaly::page
