#include "platform/page/PageElement.h"
#include "platform/page/dom/PageParser.h"
#include "platform/page/editing/Paste.h"
#include "platform/page/editing/StyleCommand.h"
#include "support/Test.h"

#include <span>

using namespace tessaly::page;

namespace {

constexpr std::size_t rounds = 2000;

/// The value of a text, found the slow way: the first of its ancestors that says something.
int valueOf(const Node& text, InlineStyle style) {
    const bool isSize = style == InlineStyle::FontSize;
    for (const Node* at = text.parent; at != nullptr; at = at->parent) {
        if (const std::u16string* const css = findAttribute(*at, u"style")) {
            if (css->find(isSize ? u"size" : u"weight") != std::u16string::npos) {
                return css->ends_with(u"bold") ? 1 : 0;
            }
        }
        if (const std::u16string* const size = findAttribute(*at, u"size"); size && isSize) {
            return size->front() - u'0';
        }
        if (isSize ? at->is(u"big") || at->is(u"h2")
                   : at->is(u"b") || at->is(u"strong") || at->is(u"h2")) {
            return isSize ? 0 : 1;
        }
    }
    return isSize ? 3 : 0;
}

struct Letter {
    char16_t letter;
    int value;
    bool operator==(const Letter&) const = default;
};

/// The letters of the page, blanks left out.
std::vector<Letter> lettersOf(const Dom& dom, InlineStyle style) {
    std::vector<Letter> letters;
    for (const Node* at = &dom.root(); at != nullptr; at = following(*at)) {
        if (at->isText()) {
            const int value = valueOf(*at, style);
            for (const char16_t unit : at->text) {
                if (unit != u' ') {
                    letters.push_back({unit, value});
                }
            }
        }
    }
    return letters;
}

/// A page of tag soup, and a selection in it.
struct RandomPage {
    explicit RandomPage(std::mt19937& random) {
        constexpr std::u16string_view pieces[] = {
            // Formats, blocks and text.
            u"<b>", u"</b>", u"<i>", u"</i>", u"<p>", u"</p>", u"<strong>", u"</strong>", u"<div>",
            u"</div>", u"ab ", u" c", u"<h2>", u"</h2>", u"<br>", u"d", u"<ul>", u"<li>", u"</ul>",
            u"<table><tr><td>", u"<td>", u"</table>",

            // Sizes and styles.
            u"<big>", u"</big>", u"<font size=5>", u"<font size=2>", u"</font>",
            u"<span style='font-weight: bold'>", u"<span style='font-weight: normal'>",
            u"<span style='font-size: 9px'>", u"</span>"};
        const auto below = [&random](std::size_t limit) { return random() % limit; };
        std::u16string html;
        for (std::size_t i = below(24); i > 0; --i) {
            html += pieces[below(std::size(pieces))];
        }
        dom.root(parsePage(dom, html + u"e"));
        std::vector<std::pair<Place, std::size_t>> places;
        std::size_t letters = 0;
        for (Node* at = dom.body(); at != nullptr; at = following(*at)) {
            for (std::size_t i = 0; at->isText() && i <= at->text.size(); ++i) {
                letters += static_cast<std::size_t>(i > 0 && at->text[i - 1] != u' ');
                places.emplace_back(Place::inText(*at, i), letters);
            }
        }
        const std::size_t from = below(places.size());
        const std::size_t to = from + below(places.size() - from);
        dom.select({places[from].first, places[to].first});
        start = places[from].second;
        end = places[to].second;
        before = outerHtml(*dom.body(), Writing::Modern);
    }

    Dom dom;
    std::size_t start; ///< how many letters stand in front of the selection
    std::size_t end;   ///< and in front of its end
    std::u16string before;
};

} // namespace

/// Whatever the page and the selection: the selected letters get one value, the others keep theirs,
/// and no letter is lost.
TEST(PageEdits, AStyleChangesTheSelectedLettersAlone) {
    std::mt19937 random(20);
    for (std::size_t round = 0; round < 2 * rounds; ++round) {
        const bool isBold = round % 2 == 0;
        const InlineStyle style = isBold ? InlineStyle::Bold : InlineStyle::FontSize;
        RandomPage page(random);
        std::vector<Letter> letters = lettersOf(page.dom, style);
        const std::span selected(letters.begin() + static_cast<std::ptrdiff_t>(page.start),
                                 page.end - page.start);
        int value = round % 4 == 1 ? 3 : 5;
        if (isBold) {
            value = std::ranges::count(selected, 0, &Letter::value) == 0 ? 0 : 1;
            toggleStyle(page.dom, style);
        } else {
            applyStyle(page.dom, style, value);
        }
        for (Letter& each : selected) {
            each.value = value;
        }
        ASSERT_TRUE(lettersOf(page.dom, style) == letters)
            << testing::PrintToString(page.before) << page.start << "-" << page.end
            << testing::PrintToString(outerHtml(*page.dom.body(), Writing::Modern));
    }
}

// A paste takes the selected letters away and no other, and stands where they stood.
TEST(PageEdits, PasteReplacesTheSelectedLettersAlone) {
    std::mt19937 random(22);
    for (std::size_t round = 0; round < rounds; ++round) {
        RandomPage page(random);
        const auto read = [&] {
            std::u16string letters;
            for (const Letter& each : lettersOf(page.dom, InlineStyle::Bold)) {
                letters += each.letter;
            }
            return letters;
        };
        std::u16string letters = read();
        letters.replace(page.start, page.end - page.start, u"XYZ");
        Span range = page.dom.selectedSpan();
        page.dom.track(range);
        paste(page.dom, range, u"X<i>Y</i>");
        paste(page.dom, range, u"Z");
        ASSERT_EQ(read(), letters) << testing::PrintToString(page.before);
        ASSERT_TRUE(range.start == range.end);
    }
}

// The nodes that edits leave over do not pile up.
TEST(PageEdits, FreeWhatNothingHolds) {
    const auto dom = std::make_shared<Dom>();
    dom->root(parsePage(*dom, u""));
    PageElement body({dom, Writing::Modern}, *dom->body());
    for (int i = 0; i < 2000; ++i) {
        body.innerHTML(u"<p>one</p><p>two</p><p>three</p>");
        dom->select({Place::atStartOf(*dom->body()), Place::atEndOf(*dom->body())});
    }
    EXPECT_LT(dom->size(), 10000U);
    for (int i = 0; i < 4000; ++i) {
        toggleStyle(*dom, InlineStyle::Bold);
    }
    EXPECT_LT(dom->size(), 10000U);
    for (int i = 0; i < 4000; ++i) {
        Span range{Place::atStartOf(*dom->body()), Place::atEndOf(*dom->body())};
        dom->track(range);
        paste(*dom, range, u"<p>new</p><p>text</p>");
        dom->untrack(range);
    }
    EXPECT_LT(dom->size(), 10000U);
    EXPECT_EQ(body.innerText(), u"new\n\ntext");
}
