#include "tests/platform/PageParts.h"

using namespace page_test;

TEST(PageSelection, HasThreeTypes) {
    const auto page = makePage(u"<p>one <img src=x> two</p>");
    EXPECT_EQ(page->selection()->type(), u"None");
    EXPECT_EQ(rangeOf(page)->parentElement()->tagName(), u"BODY");
    page->placeCaret({first(page, u"p"), 2});
    EXPECT_EQ(page->selection()->type(), u"None");
    EXPECT_EQ(rangeOf(page)->parentElement()->tagName(), u"P");
    ASSERT_TRUE(page->selectText(u"ne"));
    EXPECT_EQ(page->selection()->type(), u"Text");

    page->selectObject(first(page, u"img"));
    EXPECT_EQ(page->selection()->type(), u"Control");
    const ObjectRef range = page->selection()->createRange();
    EXPECT_THROW(narrow<IHTMLTxtRange>(range), Failure);
    const auto picture = narrow<IHTMLControlRange>(range)->Item();
    EXPECT_EQ(picture->tagName(), u"IMG");
    EXPECT_EQ(picture->parentElement()->tagName(), u"P");
    EXPECT_EQ(narrow<IHTMLControlRange>(range)->Item(std::int32_t{1}), nullptr);

    page->body()->innerHTML(u"new");
    EXPECT_EQ(page->selection()->type(), u"None");
    EXPECT_TRUE(page->execCommand(u"Selectall"));
    EXPECT_EQ(rangeOf(page)->text(), u"new");
    page->clearSelection();
    EXPECT_EQ(page->selection()->type(), u"None");
}

TEST(PageSelection, IsSetByPlaceAndByText) {
    const auto page = makePage(u"<p>one <b>two</b> \U0001F600</p><p>three</p>");
    const auto paragraph = first(page, u"p");
    page->select({paragraph, 4}, {paragraph, 7});
    EXPECT_EQ(rangeOf(page)->text(), u"two");
    EXPECT_EQ(rangeOf(page)->parentElement()->tagName(), u"B");
    page->select({page->body(), 12}, {paragraph, 2}); // the wrong way round
    EXPECT_EQ(rangeOf(page)->text(), u"e two \U0001F600\n\nth");
    page->select({paragraph, 9}, {paragraph, 99}); // between two halves, and after the end
    EXPECT_EQ(rangeOf(page)->text(), u"\U0001F600");

    EXPECT_TRUE(page->selectText(u"e two", u"thr"));
    EXPECT_EQ(rangeOf(page)->parentElement()->tagName(), u"BODY");
    EXPECT_FALSE(page->selectText(u"\U0001F600three")); // not in one paragraph
    EXPECT_FALSE(page->selectText(u"three", u"one"));
    EXPECT_FALSE(page->selectText(u""));
    EXPECT_EQ(rangeOf(page)->text(), u"e two \U0001F600\n\nthr");

    EXPECT_THROW(page->select({paragraph, -1}, {paragraph, 2}), Failure);
    EXPECT_THROW(page->placeCaret({nullptr, 0}), Failure);
    EXPECT_THROW(page->selectContents(first(makePage(u"<p>x"), u"p")), Failure);
}

TEST(PagePaste, ReplacesTheRange) {
    const struct {
        std::u16string html;
        std::u16string from;
        std::u16string to;
        std::u16string result;
    } cases[] = {
        {u"<p>a one b</p>", u"one", u"", u"<p>a X<u>Y</u>| b</p>"},
        {u"<p>a <b>one <i>two</i></b> three b</p>", u"one", u"three", u"<p>a X<u>Y</u>| b</p>"},
        {u"<p><b>one</b> two <i>three</i></p>", u"ne", u"th",
         u"<p><b>oX<u>Y</u>|</b><i>ree</i></p>"},
        {u"<p>a one</p><p>mid</p><p>two <b>b</b></p><p>c</p>", u"one", u"two",
         u"<p>a X<u>Y</u>| <b>b</b></p><p>c</p>"},
        {u"<p>one</p><ul><li>two</li></ul>z", u"one", u"two", u"<p>X<u>Y</u>|</p>z"},
        {u"<table><tbody><tr><td>one</td><td>two</td></tr></tbody></table>", u"ne", u"tw",
         u"<table><tbody><tr><td>oX<u>Y</u>|</td><td>o</td></tr></tbody></table>"},
    };
    for (const auto& each : cases) {
        const auto page = selected(each.html, each.from, each.to);
        const auto range = rangeOf(page);
        range->pasteHTML(u"X<u>Y</u>");
        EXPECT_EQ(range->text(), u"");
        EXPECT_EQ(page->selection()->type(), u"None");
        range->pasteHTML(u"|"); // after what was pasted
        EXPECT_EQ(bodyOf(page), each.result);
    }
}

TEST(PagePaste, AtACaretPutsInWhatItIsGiven) {
    const auto page = makePage(u"<p>ab</p><p></p>");
    page->placeCaret({first(page, u"p"), 1});
    rangeOf(page)->pasteHTML(u"<big></big>");
    page->placeCaret({page->getElementsByTagName(u"p")->item(1), 0});
    rangeOf(page)->pasteHTML(u"<small></small>");
    EXPECT_EQ(bodyOf(page), u"<p>a<big></big>b</p><p><small></small></p>");
    page->clearSelection();
    rangeOf(page)->pasteHTML(u"x");
    EXPECT_EQ(bodyOf(page), u"x<p>a<big></big>b</p><p><small></small></p>");
}

TEST(PagePaste, RangeFollowsThePage) {
    const auto page = makePage(u"<p>one two three</p><p>four</p>");
    page->selectText(u"two");
    const auto two = rangeOf(page);
    page->selectText(u"four");
    const auto four = rangeOf(page);
    page->selectText(u"one");
    rangeOf(page)->pasteHTML(u"1 <b>1</b>");
    page->selectText(u"w");
    page->execCommand(u"Bold");
    EXPECT_EQ(two->text(), u"two");
    EXPECT_EQ(four->text(), u"four");
    page->body()->innerHTML(u"<p>new</p>");
    EXPECT_EQ(two->text(), u"");
    two->pasteHTML(u"x");
    EXPECT_EQ(bodyOf(page), u"<p>new</p>x");
    EXPECT_EQ(four->parentElement()->tagName(), u"BODY");
}

TEST(PagePaste, RangeOutlivesItsPage) {
    auto page = makePage(u"<p>one</p>");
    page->selectText(u"one");
    const auto range = rangeOf(page);
    page.reset();
    range->pasteHTML(u"two");
    EXPECT_EQ(range->parentElement()->outerHTML(), u"<p>two</p>");
}
