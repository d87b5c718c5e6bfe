#include "tests/platform/PageParts.h"

using namespace page_test;

namespace {

struct Case {
    std::u16string html;
    std::u16string from;
    std::u16string to;
    std::u16string once;
    std::u16string twice = html;
};

/// Runs the command twice over the text from `from` to `to`.
void expectCommand(const std::u16string& command, const std::vector<Case>& cases) {
    for (const Case& each : cases) {
        const auto page = selected(each.html, each.from, each.to);
        EXPECT_TRUE(page->execCommand(command));
        EXPECT_EQ(bodyOf(page), each.once);
        EXPECT_TRUE(page->execCommand(command));
        EXPECT_EQ(bodyOf(page), each.twice);
    }
}

} // namespace

TEST(PageCommand, BoldIsToggled) {
    expectCommand(
        u"Bold",
        {
            {u"<p>one <i>two</i><br>three</p>", u"ne", u"th",
             u"<p>o<b>ne <i>two</i><br>th</b>ree</p>"},
            {u"<p>one</p> <ul><li>two</li></ul> <p>three</p>", u"ne", u"th",
             u"<p>o<b>ne</b></p> <ul><li><b>two</b></li></ul> <p><b>th</b>ree</p>"},
            {u"<p><b id=x>one two</b></p>", u"one", u"", //
             u"<p><span id=\"x\">one<b> two</b></span></p>",
             u"<p><span id=\"x\"><b>one two</b></span></p>"},
            {u"<p style='color: red; font-weight: bold'>one two</p>", u"one", u"",
             u"<p style=\"color: red\">one<span style=\"font-weight: bold\"> two</span></p>",
             u"<p style=\"color: red\"><b>one</b>"
             u"<span style=\"font-weight: bold\"> two</span></p>"},
            {u"<h1>one two</h1>", u"one", u"",
             u"<h1><span style=\"font-weight: normal\">one</span> two</h1>"},
            {u"<b><ul><li>one</li><li>two</li></ul></b>", u"one", u"",
             u"<ul><li>one</li><li><b>two</b></li></ul>",
             u"<ul><li><b>one</b></li><li><b>two</b></li></ul>"},
        });
}

TEST(PageCommand, ItalicAndUnderlineAreToggled) {
    expectCommand(u"Italic",
                  {{u"<p>a <em>b c</em></p>", u"b", u"", u"<p>a b<em> c</em></p>",
                    u"<p>a <i>b</i><em> c</em></p>"},
                   {u"<p><cite>a</cite></p>", u"a", u"",
                    u"<p><cite><span style=\"font-style: normal\">a</span></cite></p>"}});
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
        {u"<font size=+2 color=red>one two</font>", u"one",
         u"<font color=\"red\">one<font size=\"+2\"> two</font></font>"},
        {u"<small>one</small>", u"ne", u"<small>o<font size=\"3\">ne</font></small>"},
        {u"<span style='font-size: 20px'>one</span>", u"one", u"one"},
    };
    for (const auto& each : cases) {
        const auto page = selected(each.html, each.text);
        EXPECT_TRUE(page->execCommand(u"FontSize", false, std::u16string(u"3")));
        EXPECT_EQ(bodyOf(page), each.result);
    }
    const auto page = selected(u"one", u"one");
    EXPECT_TRUE(page->execCommand(u"FontSize", false, std::int32_t{5}));
    EXPECT_EQ(bodyOf(page), u"<font size=\"5\">one</font>");
}

TEST(PageCommand, WithoutTextToActOnChangesNothing) {
    const std::u16string html = u"<p>one <img src=\"x\"> two</p>";
    const auto page = makePage(html);
    EXPECT_FALSE(page->execCommand(u"Bold"));
    page->placeCaret({page->body(), 2});
    EXPECT_TRUE(page->execCommand(u"Bold"));
    for (std::int32_t at = 0; at < 9; ++at) { // a selection of nothing, also at a picture's border
        const auto paragraph = first(page, u"p");
        page->select({paragraph, at}, {paragraph, at});
        page->execCommand(u"Bold");
        page->execCommand(u"FontSize", false, std::u16string(u"5"));
    }
    page->selectText(u"one");
    EXPECT_FALSE(page->execCommand(u"Embolden"));
    EXPECT_FALSE(page->execCommand(u"FontSize"));
    EXPECT_FALSE(page->execCommand(u"FontSize", false, std::u16string(u"8")));
    page->selectObject(page->getElementsByTagName(u"img")->item(0));
    EXPECT_FALSE(page->execCommand(u"Italic"));
    EXPECT_EQ(bodyOf(page), html);
}
