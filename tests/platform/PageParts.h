#pragma once

#include "platform/page/HeadlessPage.h"
#include "support/Test.h"
#include "util/Failure.h"

/// What the tests of the page look at.
namespace page_test {

using namespace tessaly;
using Page = std::shared_ptr<HeadlessPage>;

inline std::u16string bodyOf(const Page& page) {
    return page->body()->innerHTML();
}

inline std::shared_ptr<IHTMLElement> first(const Page& page, const std::u16string& name) {
    return page->getElementsByTagName(name)->item(0);
}

inline std::shared_ptr<IHTMLTxtRange> rangeOf(const Page& page) {
    return narrow<IHTMLTxtRange>(page->selection()->createRange());
}

/// A page of which the text from `from` to `to` is selected; `from` alone if `to` is empty.
inline Page selected(const std::u16string& html, const std::u16string& from,
                     const std::u16string& to = {}) {
    Page page = makePage(html);
    EXPECT_TRUE(to.empty() ? page->selectText(from) : page->selectText(from, to));
    return page;
}

} // namespace page_test
