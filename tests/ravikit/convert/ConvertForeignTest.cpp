#include "support/Test.h"
#include "tests/ravikit/convert/Decks.h"
#include "tests/ravikit/convert/PageMaker.h"

/// Pages that were made from no deck, or that nobody should have to read.
namespace {

using namespace convert_test;

/// The inside of the deck's only card, without the indentation.
std::string cardOf(const std::u16string& page) {
    const std::u16string deck = markupOf(page);
    EXPECT_EQ(faultOf(deck), "") << toUtf8(deck);
    const std::size_t begin = deck.find(u"<card>") + 6;
    std::u16string inside = deck.substr(begin, deck.rfind(u"</card>") - begin);
    for (std::size_t at = 0; (at = inside.find(u"\n    ")) != std::u16string::npos;) {
        inside.erase(at, 5);
    }
    while (!inside.empty() && (inside.back() == u' ' || inside.back() == u'\n')) {
        inside.pop_back();
    }
    return toUtf8(inside);
}

/// The node below the body to which these places among its siblings, from 0, lead.
Node& nodeAt(const Dom& page, std::initializer_list<int> path) {
    Node* node = page.body();
    for (int place : path) {
        for (node = node->first; place > 0; --place) {
            node = node->next;
        }
    }
    return *node;
}

/// Puts a copy of `node`, which may be of another page, into `parent`.
void put(Dom& page, const Node& node, Node& parent, Node* before) {
    Node& copy = node.isText() ? page.newText(node.text) : page.newElement(node.text);
    copy.attributes = node.attributes;
    page.put(copy, parent, before);
    for (const Node* child = node.first; child != nullptr; child = child->next) {
        put(page, *child, copy, nullptr);
    }
}

TEST(ConvertForeign, WhatPeopleTypeAndPaste) {
    const std::array<std::pair<const char16_t*, const char*>, 25> cases{{
        {u"", ""},
        {u"<BODY text=#000000 bgColor=#ffffff><P><FONT face=Verdana></FONT>&nbsp;</P></BODY>",
         "<p>&#160;</p>"},
        {u"just text &amp; <b>bold</b>", "<p>just text &amp; <b>bold</b></p>"},
        {u"<DIV>one<BR>two</DIV><DIV align=right>three</DIV>",
         "<p>one<br/>two</p><p align=\"right\">three</p>"},
        {u"<p>a<p style='text-align: CENTER'>b", "<p>a</p><p align=\"center\">b</p>"},
        {u"<P>out <P>in</P> out</P>", "<p>out</p><p>in</p><p>out</p>"},
        {u"<FONT size=5>L</FONT><FONT size=-1>s</FONT><FONT size=3>n</FONT>",
         "<p><big>L</big><small>s</small>n</p>"},
        {u"<BIG>x<FONT size=3>n</FONT>y</BIG>", "<p><big>x</big>n<big>y</big></p>"},
        {u"<span style='font-weight:700;font-style:italic'>x</span><em>e</em><STRONG>s</STRONG>",
         "<p><b><i>x</i></b><em>e</em><strong>s</strong></p>"},
        {u"<a href='u?a=1&amp;b'>x <b>y</b></a>",
         "<p><a href=\"u?a=1&amp;b\">x </a><b><a href=\"u?a=1&amp;b\">y</a></b></p>"},
        {u"<a href='javascript:x()'>j</a><a name=n>k</a>", "<p>jk</p>"},
        {u"<h1>T</h1><h3>s</h3>text", "<p><b><big>T</big></b></p><p><b>s</b></p><p>text</p>"},
        {u"<ul><li>a<li>b</ul><ol><li>c<li>d</ol>", "<p>- a</p><p>- b</p><p>1. c</p><p>2. d</p>"},
        {u"<script>a<b</script><style>p{}</style>x<title>no</title>", "<p>x</p>"},
        {u"<table><tr><th>h<td>a<p>b<p>c<tr><td><ul><li>l</ul></table>",
         "<p><table columns=\"2\"><tr><td><b>h</b></td><td>a<br/>b<br/>c</td></tr>"
         "<tr><td>- l</td></tr></table></p>"},
        {u"<table><tr><td>x<table><tr><td>in<td>side</table></table>",
         "<p><table columns=\"1\"><tr><td>x<br/>in<br/>side</td></tr></table></p>"},
        {u"<pre>\n a  <big>b</big>\n c</pre>d", "<pre> a  b\n c</pre><p>d</p>"},
        {u"<select><option>a<option selected><b>b</b></select>",
         "<p><select><option>a</option><option>b</option></select></p>"},
        {u"<input name=q value='1\"'><input type=checkbox>",
         "<p><input name=\"q\" value=\"1&quot;\"/></p>"},
        {u"<img src=i.gif alt='A&B'><img alt=only>",
         "<p><img alt=\"A&amp;B\" src=\"i.gif\"/>only</p>"},
        {u"<b>x<p>y</b>z", "<p><b>x</b></p><p><b>y</b>z</p>"},
        {u"<b><input name=n>t</b>", "<p><input name=\"n\"/><b>t</b></p>"},
        {u"<center>m</center><textarea>t <b></textarea>",
         "<p align=\"center\">m</p><p>t &lt;b&gt;</p>"},
        {u"<div><div>a</div>b</div>c &eacute; \U0001F600 \xD800 \x0001",
         "<p>a</p><p>b</p><p>c \\u00E9 \\uD83D\\uDE00 \\uFFFD \\uFFFD</p>"},
        {u"<u>a<hr>b</u>", "<p><u>a</u></p><p><u>b</u></p>"},
    }};
    for (const auto& [page, card] : cases) {
        EXPECT_EQ(cardOf(page), card) << toUtf8(page);
    }
}

/// What the marks of a page say is believed only of the deck that it carries, and only once.
TEST(ConvertForeign, MarksThatDoNotHold) {
    const std::u16string deck = u"<wml><card id=\"a\" title=\"A\"><p id=\"p\">one</p></card></wml>";
    const std::u16string other =
        u"<wml><card><p id=\"p\"><b>two</b></p><timer value=\"1\"/></card></wml>";
    const auto dom = browse(plainOf(deck));
    Node& card = nodeAt(*dom, {0, 0});
    put(*dom, card, *card.parent, &card); // a card copied, ids and all
    const auto from = browse(plainOf(other));
    put(*dom, nodeAt(*from, {0, 0, 2}), card, nullptr);
    EXPECT_EQ(toUtf8(markupOf(written(*dom, Writing::Modern))),
              "<wml><card id=\"a\" title=\"A\"><p id=\"p\">one</p></card>"
              "<card title=\"A\"><p>one</p><p><b>two</b></p></card></wml>");

    // A deck in a deck, in which a card stands twice and hides another that looks the same.
    const auto nested = browse(plainOf(u"<wml><card id=\"c\"/><card/></wml>"));
    Node& outer = nodeAt(*nested, {0});
    nested->remove(*outer.last);
    put(*nested, *outer.first, outer, nullptr);
    const auto inner = browse(written(*nested, Writing::Modern));
    nested->removeChildren(outer);
    put(*nested, nodeAt(*inner, {0}), outer, nullptr);
    EXPECT_EQ(faultOf(markupOf(written(*nested, Writing::Modern))), "");

    // A source that was tampered with is none.
    std::u16string page = plainOf(deck);
    page.replace(page.find(u"]one["), 5, u"]uno[");
    EXPECT_NE(markupOf(page).find(u"<p>one</p>"), std::u16string::npos);
}

TEST(ConvertForeign, TitlesLabelsAndTexts) {
    const std::u16string deck =
        u"<wml>\n  <card title='T'>\n    <do type=\"prev\" label=\"Back\"><prev/></do>\n"
        u"    <p><img src=\"s\" alt=\"old\"/> <input name='n'/></p>\n  </card>\n</wml>";
    std::u16string page = plainOf(deck);
    const auto change = [&page](std::u16string_view from, std::u16string_view to) {
        const std::size_t at = page.find(from, page.find(u'>'));
        ASSERT_NE(at, std::u16string::npos);
        page.replace(at, from.size(), to);
    };
    change(u">T<", u">New &quot;T&quot;<");
    change(u">Back<", u">Home<");
    change(u"alt=\"old\"", u"alt=\"new\"");
    change(u"value=\"\"", u"value=\"preset\"");
    EXPECT_EQ(toUtf8(markupOf(page)), "<wml>\n  <card title=\"New &quot;T&quot;\">\n    <do "
                                      "type=\"prev\" label=\"Home\"><prev/></do>\n"
                                      "    <p><img src=\"s\" alt=\"new\"/> <input name='n' "
                                      "value=\"preset\"/></p>\n  </card>\n</wml>");
}

TEST(ConvertForeign, MovesAndUnseenThings) {
    const std::u16string deck = u"<wml>\n  <card id=\"a\">\n    <timer value=\"5\"/>\n    "
                                u"<p>one</p>\n    <!-- two -->\n    <p >two</p>\n  </card>\n"
                                u"  <card id=\"b\">\n    <p>three</p>\n  </card>\n</wml>";
    const auto dom = browse(plainOf(deck));
    Node& root = nodeAt(*dom, {0});
    Node& second = *root.last;
    dom->put(nodeAt(*dom, {0, 0, 2}), second, nodeAt(*dom, {0, 1, 1}).next);
    EXPECT_EQ(toUtf8(markupOf(written(*dom, Writing::Older))),
              "<wml>\n  <card id=\"a\">\n    <timer value=\"5\"/>\n    <!-- two -->\n    <p "
              ">two</p>\n  </card>\n"
              "  <card id=\"b\">\n    <p>one</p>\n    <p>three</p>\n  </card>\n</wml>");
    dom->put(second, root, root.first);
    EXPECT_EQ(toUtf8(markupOf(written(*dom, Writing::Modern))),
              "<wml>\n  <card id=\"b\">\n    <p>one</p>\n    <p>three</p>\n  </card>\n"
              "  <card id=\"a\">\n    <timer value=\"5\"/>\n    <!-- two -->\n    <p >two</p>\n  "
              "</card>\n</wml>");
}

TEST(ConvertForeign, StrictRefusesWhatItWouldDrop) {
    // The place as what stands there; the second page is read as a browser does.
    const auto refused = [](const std::u16string& page) {
        ravikit::Problems problems;
        const bool good = ravikit::plainToMarkup(page, true, nullptr, problems).has_value();
        EXPECT_EQ(good, problems.empty());
        return good ? u"nothing" : page.substr(problems.list().front().begin, 6);
    };
    for (const std::u16string before : {u"<p>\u20AC \U0001F327 ", u"<p>\u20AC \U0001F327<p>"}) {
        for (const std::u16string lost :
             {u"<script>y</script>", u"<style>b{}</style>", u"<a href='javascript:y'>z</a>",
              u"<video src=v></video>", u"<audio>", u"<canvas></canvas>", u"<object></object>",
              u"<input type=file name=f>", u"<input type=range name=r>", u"<input>", u"<img/>",
              u"<embed>", u"<progress>"}) {
            EXPECT_EQ(refused(before + lost + u"</p>"), lost.substr(0, 6));
        }
    }
    EXPECT_EQ(refused(u"<p>x <b>y</b><input name='n'><img src=i></p>"), u"nothing");
    for (const std::u16string lost : {u"<iframe></iframe>", u"<svg><text>t</text></svg>"}) {
        EXPECT_EQ(refused(u"<p>\u20AC</p>" + lost), lost.substr(0, 6));
    }
    EXPECT_NE(refused(u"<p>\x0001</p>"), u"nothing");
}

TEST(ConvertForeign, Soup) {
    unsigned count = 0;
    for (unsigned seed = 1; seed <= 3000; ++seed) {
        std::mt19937 random(seed);
        std::vector<std::uint8_t> bytes(random() % 120);
        std::generate(bytes.begin(), bytes.end(), [&random] { return random() & 0xFFU; });
        const MadePage made = makePage(bytes.data(), bytes.size());
        if (deckOf(made.html)) {
            expectTaken(made.html, made.isOfValidDeck);
            ++count;
        }
    }
    EXPECT_GT(count, 2900U) << "too many are refused";
    std::cout << "tried: " << count << " pages of soup\n";
}

/// Pages that once gave a deck that was not valid, or lost a text: each is the page of a deck in
/// which one thing was put in the place of another.
TEST(ConvertForeign, WhatFuzzingFound) {
    struct Case {
        const char16_t* deck;
        const char16_t* from;
        const char16_t* to;
        const char* expected;
    };
    const std::array<Case, 11> cases{{
        {u"<wml><card><timer value=\"1\"/><p>a</p><p>b</p></card></wml>", u">a</p>",
         u" data-mark=x>c</p>", "<wml><card><timer value=\"1\"/><p>c</p><p>b</p></card></wml>"},
        {u"<wml><head><meta name=\"n\" content=\"c\"/></head><card><p>a</p></card></wml>",
         u"<div class=\"card\"", u"<p>b</p><div class=\"card\" data-mark=x",
         "<wml><head><meta name=\"n\" content=\"c\"/></head><card><p>b</p><p>a</p></card></wml>"},
        {u"<wml><card><p>a</p></card></wml>", u">a<", u"><object>b</object><",
         "<wml><card><p>b</p></card></wml>"},
        {u"<wml><card><p>a</p></card></wml>", u">a<", u"><math><div>b<br>c<",
         "<wml><card><p>b<br/>c</p></card></wml>"},
        {u"<wml><card><p>a<br/>b</p></card></wml>", u"a<br>b",
         u"<select><option>a<br>b</option></select>",
         "<wml><card><p><select><option>a b</option></select></p></card></wml>"},
        {u"<!DOCTYPE wml [<!ENTITY s ' '>]><wml>&s;<card><p>a</p></card></wml>",
         u"<div class=\"card\"", u"b<div class=\"card\"",
         "<!DOCTYPE wml [<!ENTITY s ' "
         "'>]><wml>&s;<card><p>b</p></card><card><p>a</p></card></wml>"},
        {u"<!DOCTYPE wml [<!ENTITY q '<p/>'>]><wml><card>&q;<p>a</p></card></wml>", u"<p ", u"b<p ",
         "<!DOCTYPE wml [<!ENTITY q '<p/>'>]><wml><card>&q;<p>b</p><p>a</p></card></wml>"},
        {u"<wml><card><p>a<table columns=\"1\"><!-- c --><tr><!-- d "
         u"--><td>b</td></tr></table></p></card></wml>",
         u"b</td>", u"</td><td>b</td>",
         "<wml><card><p>a<table columns=\"1\"><!-- c --><tr><!-- d "
         "--><td></td><td>b</td></tr></table></p></card></wml>"},
        {u"<wml><card><p>a<table columns=\"1\"><!-- c "
         u"--><tr><td>b</td></tr></table></p></card></wml>",
         u"<tbody>", u"</table></p></div></div>",
         "<wml><card><p>a</p></card><card><p>b</p></card></wml>"},
        {u"<wml><card id=\"c\"><p id=\"p\">a</p></card></wml>", u"</div></div>", u"",
         "<wml><card><p>a</p></card><card id=\"c\"><p id=\"p\">a</p></card></wml>"},
        {u"<wml><card><pre>a<anchor><prev id=\"i\"/></anchor>&#98;</pre></card></wml>",
         u"</pre></div></div>", u"",
         "<wml><card><pre>a&#98;</pre></card><card><pre>a<anchor><prev "
         "id=\"i\"/></anchor>&#98;</pre></card></wml>"},
    }};
    for (const auto& [deck, from, to, expected] : cases) {
        std::u16string page = plainOf(deck);
        const std::size_t at = page.find(from, *from == u'<' ? 0 : page.find(u'>'));
        ASSERT_NE(at, std::u16string::npos) << toUtf8(page);
        page.replace(at, std::u16string_view(from).size(), to);
        page = *to == 0 ? page + page : page;
        const std::u16string found = markupOf(page);
        EXPECT_EQ(faultOf(found), "");
        EXPECT_EQ(toUtf8(found), expected) << toUtf8(page);
    }
}

} // namespace
