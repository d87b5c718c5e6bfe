#include "platform/page/HeadlessPage.h"
#include "support/Test.h"
#include "util/Failure.h"

using namespace tessaly;

using support::repeated;

TEST(PageHostile, WhatWouldTakeTheParserTooLongIsRefused) {
    const auto page = makePage(u"<p>kept</p>");
    std::u16string attributes;
    for (char16_t i = 0; i < 60000; ++i) {
        attributes += {u'a', static_cast<char16_t>(0x4E00 + i / 256),
                       static_cast<char16_t>(0x4E00 + i % 256), u' '};
    }
    EXPECT_THROW(page->body()->innerHTML(repeated(u"<div>", 1000000)), Failure);
    EXPECT_THROW(page->body()->innerHTML(u"<body x=y>" + repeated(u"<b>", 1000000)), Failure);
    page->selectText(u"kept");
    EXPECT_THROW(narrow<IHTMLTxtRange>(page->selection()->createRange())
                     ->pasteHTML(u"<p " + attributes + u">"),
                 Failure);
    EXPECT_EQ(page->body()->outerHTML(), u"<body><p>kept</p></body>");
}

// Deeper than any recursion could follow.
TEST(PageHostile, DepthIsNoLimitOfThePageItself) {
    const auto page = makePage(u"<i>");
    const auto all = page->getElementsByTagName(u"*");
    for (int i = 0; i < 40; ++i) {
        all->item(all->length() - 1)->innerHTML(u"x" + repeated(u"<i>", 5000));
    }
    EXPECT_EQ(all->length(), 200004);
    EXPECT_TRUE(page->execCommand(u"Selectall"));
    EXPECT_TRUE(page->execCommand(u"Bold"));
    EXPECT_TRUE(page->execCommand(u"Italic"));
    const std::u16string text = repeated(u"x", 40);
    const std::u16string html = u"<b>" + text + repeated(u"<i>", 5000);
    EXPECT_TRUE(page->body()->innerHTML().starts_with(html));
    EXPECT_EQ(page->body()->innerText(), text);
    EXPECT_TRUE(page->selectText(text));
    page->body()->innerHTML(u"");
    EXPECT_EQ(all->length(), 3);
}

TEST(PageHostile, MuchTextIsCarried) {
    const auto page = makePage(repeated(u"<p>one <b>two</b>", 50000));
    EXPECT_TRUE(page->execCommand(u"Selectall"));
    EXPECT_TRUE(page->execCommand(u"Bold"));
    EXPECT_TRUE(page->body()->innerHTML() == repeated(u"<p><b>one two</b></p>", 50000));
    page->body()->innerHTML(u"<p title='" + repeated(u"a", 1000000) + u"'>" +
                            std::u16string(1, u'\0') + u"\xD800|");
    EXPECT_EQ(page->body()->innerText(), u"\uFFFD|");
    page->body()->innerHTML(repeated(u"x", 20000000));
    EXPECT_EQ(page->body()->innerText().size(), 20000000U);
}
