#include "platform/page/HeadlessPage.h"
#include "platform/page/PageParser.h"
#include "platform/page/PageWriter.h"
#include "platform/page/RenderedText.h"
#include "platform/page/StyleCommand.h"
#include "util/Failure.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

using namespace tessaly;

namespace {

struct Case {
    std::u16string html;
    std::u16string from;
    std::u16string to;
    std::u16string once;
    std::u16string twice;
};

/// Runs the command twice over the text from `from` to `to`.
void expectCommand(const std::u16string& command, const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        const auto page = makePage(each.html);
        ASSERT_TRUE(each.to.empty() ? page->selectText(each.from)
                                    : page->selectText(each.from, each.to));
        EXPECT_TRUE(page->execCommand(command));
        EXPECT_EQ(page->body()->innerHTML(), each.once);
        EXPECT_TRUE(page->execCommand(command));
        EXPECT_EQ(page->body()->innerHTML(), each.twice);
    }
}

} // namespace

TEST(PageCommand, BoldIsToggled) {
    expectCommand(
        u"Bold",
        {
            {u"<p>one two three</p>", u"two", u"", u"<p>one <b>two</b> three</p>",
             u"<p>one two three</p>"},
            {u"<p>one <i>two</i><br>three</p>", u"ne", u"th",
             u"<p>o<b>ne <i>two</i><br>th</b>ree</p>", u"<p>one <i>two</i><br>three</p>"},
            {u"<p>one</p> <ul><li>two</li></ul> <p>three</p>", u"ne", u"th",
             u"<p>o<b>ne</b></p> <ul><li><b>two</b></li></ul> <p><b>th</b>ree</p>",
             u"<p>one</p> <ul><li>two</li></ul> <p>three</p>"},
            {u"<b>one <i>two three</i> four</b>", u"two", u"",
             u"<b>one </b><i>two<b> three</b></i><b> four</b>",
             u"<b>one </b><i><b>two three</b></i><b> four</b>"},
            {u"<p>a <strong>one</strong> b</p>", u"a", u"b",
             u"<p><b>a </b><strong>one</strong><b> b</b></p>", u"<p>a one b</p>"},
            {u"<p><b id=x>one two</b></p>", u"one", u"", //
             u"<p><span id=\"x\">one<b> two</b></span></p>",
             u"<p><span id=\"x\"><b>one two</b></span></p>"},
            {u"<p style='color: red; font-weight: bold'>one two</p>", u"one", u"",
             u"<p style=\"color: red\">one<span style=\"font-weight: bold\"> two</span></p>",
             u"<p style=\"color: red\"><b>one</b>"
             u"<span style=\"font-weight: bold\"> two</span></p>"},
            {u"<h1>one two</h1>", u"one", u"",
             u"<h1><span style=\"font-weight: normal\">one</span> two</h1>", u"<h1>one two</h1>"},
            {u"<b><ul><li>one</li><li>two</li></ul></b>", u"one", u"",
             u"<ul><li>one</li><li><b>two</b></li></ul>",
             u"<ul><li><b>one</b></li><li><b>two</b></li></ul>"},
        });
}

TEST(PageCommand, ItalicAndUnderlineAreToggled) {
    expectCommand(u"Italic", {{u"<p>a <em>b c</em></p>", u"b", u"", u"<p>a b<em> c</em></p>",
                               u"<p>a <i>b</i><em> c</em></p>"},
                              {u"<p><cite>a</cite></p>", u"a", u"",
                               u"<p><cite><span style=\"font-style: normal\">a</span></cite></p>",
                               u"<p><cite>a</cite></p>"}});
    expectCommand(u"underline",
                  {{u"a <b>b</b> <span style='text-decoration:underline'>c</span>", u"a", u"c",
                    u"<u>a <b>b</b> </u>"
                    u"<span style=\"text-decoration:underline\">c</span>",
                    u"a <b>b</b> c"}});
}

TEST(PageCommand, NormalFontSize) {
    const struct {
        std::u16string html;
        std::u16string text;
        std::u16string result;
    } cases[] = {
        {u"<p>one</p>", u"one", u"<p>one</p>"},
        {u"<font size=5>one</font>", u"one", u"one"},
        {u"<font size=+2 color=red>one two</font>", u"one",
         u"<font color=\"red\">one<font size=\"+2\"> two</font></font>"},
        {u"<big>one two</big>", u"one", u"<big><font size=\"3\">one</font> two</big>"},
        {u"<small>one</small>", u"ne", u"<small>o<font size=\"3\">ne</font></small>"},
        {u"<span style='font-size: 20px'>one</span>", u"one", u"one"},
    };
    for (const auto& each : cases) {
        const auto page = makePage(each.html);
        ASSERT_TRUE(page->selectText(each.text));
        EXPECT_TRUE(page->execCommand(u"FontSize", false, std::u16string(u"3")));
        EXPECT_EQ(page->body()->innerHTML(), each.result);
    }
    const auto page = makePage(u"one");
    page->selectText(u"one");
    EXPECT_TRUE(page->execCommand(u"FontSize", false, std::int32_t{5}));
    EXPECT_EQ(page->body()->innerHTML(), u"<font size=\"5\">one</font>");
}

TEST(PageCommand, WithoutTextToActOnChangesNothing) {
    const std::u16string html = u"<p>one <img src=\"x\"> two</p>";
    const auto page = makePage(html);
    EXPECT_FALSE(page->execCommand(u"Bold"));
    page->placeCaret({page->body(), 2});
    EXPECT_TRUE(page->execCommand(u"Bold"));
    page->selectText(u"one");
    EXPECT_FALSE(page->execCommand(u"Embolden"));
    EXPECT_FALSE(page->execCommand(u"FontSize"));
    EXPECT_FALSE(page->execCommand(u"FontSize", false, std::u16string(u"8")));
    page->selectObject(page->getElementsByTagName(u"img")->item(0));
    EXPECT_FALSE(page->execCommand(u"Italic"));
    EXPECT_EQ(page->body()->innerHTML(), html);
}

namespace {

/// Every character of the page that shows, and whether it is bold, found the slow way.
std::vector<std::pair<char16_t, bool>> lettersOf(const page::Dom& dom) {
    std::vector<std::pair<char16_t, bool>> letters;
    for (const page::Node* at = &dom.root(); at != nullptr; at = page::following(*at)) {
        bool isBold = false;
        for (const page::Node* up = at->parent; at->isText() && up != nullptr; up = up->parent) {
            const std::u16string* const style = page::findAttribute(*up, u"style");
            isBold = up->is(u"b") || up->is(u"strong") || up->is(u"h2") ||
                     (style != nullptr && style->ends_with(u"bold"));
            if (isBold || style != nullptr) {
                break;
            }
        }
        for (const char16_t unit : at->isText() ? at->text : std::u16string()) {
            if (unit != u' ') {
                letters.emplace_back(unit, isBold);
            }
        }
    }
    return letters;
}

} // namespace

// Whatever the page and the selection: the selected letters get the one value, the others keep
// theirs, and no letter is lost.
TEST(PageCommand, BoldChangesTheSelectedLettersAlone) {
    constexpr std::u16string_view pieces[] = {u"<b>",
                                              u"</b>",
                                              u"<i>",
                                              u"</i>",
                                              u"<p>",
                                              u"</p>",
                                              u"<strong>",
                                              u"</strong>",
                                              u"<div>",
                                              u"</div>",
                                              u"ab ",
                                              u" c",
                                              u"<h2>",
                                              u"</h2>",
                                              u"<br>",
                                              u"d",
                                              u"<ul>",
                                              u"<li>",
                                              u"</ul>",
                                              u"<table><tr><td>",
                                              u"</table>",
                                              u"<span style='font-weight: bold'>",
                                              u"<span style='font-weight: normal'>",
                                              u"</span>"};
    std::mt19937 random(20);
    const auto below = [&random](std::size_t end) { return random() % end; };
    for (int round = 0; round < 3000; ++round) {
        std::u16string html;
        for (std::size_t i = below(24); i > 0; --i) {
            html += pieces[below(std::size(pieces))];
        }
        page::Dom dom;
        dom.root(page::parsePage(dom, html + u"e"));
        std::vector<page::Place> places;
        for (page::Node* at = dom.body(); at != nullptr; at = page::following(*at)) {
            for (std::size_t i = 0; at->isText() && i <= at->text.size(); ++i) {
                places.push_back(page::Place::inText(*at, i));
            }
        }
        const std::size_t from = below(places.size());
        dom.select({places[from], places[from + below(places.size() - from)]});
        const std::u16string before = page::outerHtml(*dom.body(), page::Writing::Modern);
        const auto lettersIn = [](const page::Span& span) {
            std::u16string letters = page::renderedText(span);
            std::erase_if(letters, [](char16_t unit) { return unit < u'a'; });
            return letters;
        };
        const std::u16string chosen = lettersIn(dom.selectedSpan());
        const std::size_t start =
            lettersIn({page::Place::atStartOf(*dom.body()), dom.selectedSpan().start}).size();
        auto letters = lettersOf(dom);
        bool wasAllBold = true;
        for (std::size_t i = start; i < start + chosen.size(); ++i) {
            wasAllBold = wasAllBold && letters[i].second;
        }
        for (std::size_t i = start; i < start + chosen.size(); ++i) {
            letters[i].second = !wasAllBold;
        }
        page::toggleStyle(dom, page::InlineStyle::Bold);
        ASSERT_EQ(lettersOf(dom), letters) << testing::PrintToString(before);
        ASSERT_EQ(lettersIn(dom.selectedSpan()), chosen);
    }
}
