#include "support/Test.h"
#include "tests/ravikit/convert/Decks.h"

/// Pages that were made to take for ever, or to end in a crash.
namespace {

using namespace convert_test;
using support::repeated;

/// How many x the deck of `page` has, which is valid; -1 if the page is refused.
std::ptrdiff_t keptOf(const std::u16string& page) {
    ravikit::Problems problems;
    const auto deck = ravikit::plainToMarkup(page, false, nullptr, problems);
    EXPECT_NE(deck.has_value(), !problems.empty());
    if (!deck) {
        return -1;
    }
    EXPECT_EQ(faultOf(*deck), "");
    return std::count(deck->begin() + static_cast<std::ptrdiff_t>(deck->find(u"<card")),
                      deck->end(), u'x');
}

constexpr std::size_t many = 50000;
constexpr auto each = static_cast<std::ptrdiff_t>(many);

/// What a page nests as it is written is followed to any depth.
TEST(ConvertHostile, NestedAndClosed) {
    EXPECT_EQ(keptOf(repeated(u"<div>", many) + u"x" + repeated(u"</div>", many)), 1);
    EXPECT_EQ(keptOf(repeated(u"<b>x", many) + repeated(u"</b>", many)), each);
    EXPECT_EQ(keptOf(repeated(u"<pre>x", many) + repeated(u"</pre>", many)), each);
    EXPECT_EQ(keptOf(repeated(u"<table><tr><td>x", many) + repeated(u"</td></tr></table>", many)),
              each);
    EXPECT_EQ(keptOf(repeated(u"<select><option>x", many) + repeated(u"</option></select>", many)),
              each);
    EXPECT_EQ(keptOf(repeated(u"<fieldset>x", 1000) + repeated(u"<b>x</b><i>x</i>", many) +
                     repeated(u"</fieldset>", 1000)),
              2 * each + 1000);
}

/// What only a browser's rules can read is read if it stays flat, or else refused.
TEST(ConvertHostile, Unclosed) {
    for (const char16_t* const piece :
         {u"<p>x", u"<a href=u>x", u"<li>x", u"<option>x", u"<h1>x", u"<select><option>x",
          u"<nobr>x", u"<hr>x<input name=n><img src=s>", u"<td>x", u"</p>x", u"</div>x"}) {
        EXPECT_EQ(keptOf(repeated(piece, many / 5)), each / 5) << toUtf8(piece);
    }
    for (const char16_t* const piece :
         {u"<div>", u"<div>x", u"<b><i><u>x", u"<table><tr><td>x", u"<ul><li>x", u"<foo>x",
          u"<x1></y><object></div>", u"<big><font size=3>x"}) {
        EXPECT_EQ(keptOf(repeated(piece, many)), -1) << toUtf8(piece);
    }
}

TEST(ConvertHostile, TextsAndAttributes) {
    EXPECT_EQ(keptOf(repeated(u"x", 2000000)), 2000000);
    EXPECT_EQ(keptOf(repeated(std::u16string_view(u"\0x", 2), many)), each);
    EXPECT_EQ(keptOf(repeated(u"\xD800x<b>\xDC00</b>", many)), each);
    EXPECT_EQ(keptOf(repeated(u"x&#&#xD800;<!---->", many)), each);
    EXPECT_EQ(keptOf(u"<!--" + repeated(u"--!<", many) + u"-->x"), 1);
    EXPECT_EQ(keptOf(repeated(u"<i>x</i><br>", many)), each);
    for (const char16_t* const name : {u"title", u"style", u"data-mark", u"data-deck"}) {
        EXPECT_EQ(
            keptOf(u"<p " + std::u16string(name) + u"=\"" + repeated(u"a;", 1 << 19) + u"\">x</p>"),
            1);
    }
    EXPECT_EQ(keptOf(u"<p " + repeated(u"a=b ", many) + u">x</p>"), 1);
    EXPECT_EQ(keptOf(u"<p " + repeated(u"a=b ", many) + u"<p>"), -1);
    EXPECT_EQ(keptOf(repeated(u"<a ", many)), -1);
    EXPECT_EQ(keptOf(repeated(u"<p title=\"", many)), -1);
    std::u16string attributes;
    std::u16string fonts;
    for (char16_t c = 0x4E00; c < 0x9E00; ++c) {
        attributes += {u'a', c, u' '};
    }
    EXPECT_EQ(keptOf(u"<p " + attributes + u"<p>"), -1);
    for (unsigned i = 0; i < 20000; ++i) {
        fonts += u"<font color=" + std::u16string(1, static_cast<char16_t>(u'a' + i % 26)) +
                 std::u16string(i / 26 % 50, u'b') + u"><p>";
    }
    EXPECT_EQ(keptOf(fonts), -1);
}

/// Our own page, with what it knows of its deck there many times.
TEST(ConvertHostile, MarksDoubled) {
    const std::u16string own = plainOf(u"<wml><card id=\"c\"><p id=\"p\">x</p></card></wml>");
    const std::size_t card = own.find(u"<div class=\"card\"");
    const std::u16string open = own.substr(0, own.size() - 12);
    EXPECT_EQ(keptOf(open + repeated(own.substr(card, own.size() - 6 - card), 5000) + u"</div>"),
              5001);
    EXPECT_EQ(keptOf(repeated(own, 5000)), 5000);
    EXPECT_EQ(keptOf(repeated(open, 100)), 100);
}

} // namespace
