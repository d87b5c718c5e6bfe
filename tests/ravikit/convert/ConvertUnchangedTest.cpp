#include "support/Test.h"
#include "tests/ravikit/convert/Decks.h"

/// A page that nobody changed gives the deck back, byte for byte.
namespace {

using namespace convert_test;

unsigned switches = 0;

void expectSwitched(const std::string& name, const std::u16string& deck) {
    SCOPED_TRACE(name);
    expectKept(deck);
    // With a stranger in it, the deck is as it was up to there.
    const std::u16string merged = markupOf(plainOf(deck) + u"<p>stray</p>");
    const std::size_t begin = deck.size() > 300 ? 200 : deck.find(u'>');
    EXPECT_EQ(toUtf8(merged.substr(0, begin)), toUtf8(deck.substr(0, begin)));
    switches += 4;
}

TEST(ConvertUnchanged, WrittenDecks) {
    const auto decks = writtenDecks();
    for (const Deck& deck : decks) {
        expectSwitched(deck.name, deck.text);
        if (deck.name.starts_with("v-")) {
            EXPECT_EQ(faultOf(deck.text), "") << deck.name;
        }
    }
    std::cout << "tried: " << switches << " switches of " << decks.size() << " written decks\n";
}

TEST(ConvertUnchanged, GeneratedDecks) {
    switches = 0;
    for (unsigned seed = 1; seed <= 600 && !::testing::Test::HasFailure(); ++seed) {
        std::mt19937 random(seed);
        const std::u16string deck = generatedDeck(random, seed % 2 == 0);
        expectSwitched("seed " + std::to_string(seed) + ": " + toUtf8(deck), deck);
        EXPECT_TRUE(seed % 2 == 1 || faultOf(deck).empty()) << seed << toUtf8(deck);
    }
    std::cout << "tried: " << switches << " switches of generated decks\n";
}

/// The page loads nothing, runs nothing and leads nowhere, whatever the deck holds.
TEST(ConvertUnchanged, PagesAreInert) {
    for (const Deck& deck : writtenDecks()) {
        const auto dom = browse(plainOf(deck.text));
        for (const Node* node = dom->body(); node != nullptr; node = following(*node)) {
            for (const char16_t* const tag :
                 {u"script", u"style", u"iframe", u"object", u"form", u"link"}) {
                EXPECT_FALSE(node->is(tag)) << deck.name;
            }
            for (const auto& [name, value] : node->attributes) {
                EXPECT_FALSE(name.starts_with(u"on") || name == u"href" || name == u"src")
                    << deck.name;
            }
        }
    }
}

TEST(ConvertUnchanged, ATableShowsHowItsColumnsStand) {
    const std::u16string page =
        plainOf(u"<wml><card><p><table columns=\"5\" align=\"LDRC\"><tr><td/>"
                u"<td/><td/><td/><td/></tr></table></p></card></wml>");
    std::string shown;
    for (std::size_t at = page.find(u"<td "); at != page.npos; at = page.find(u"<td ", at + 1)) {
        const bool isAligned = page.substr(at + 4, 7) == u"align=\"";
        shown += isAligned ? static_cast<char>(page[at + 11]) : '-';
    }
    EXPECT_EQ(shown, "l-rc-");
}

TEST(ConvertUnchanged, StrictRefuses) {
    const auto refuses = [](const std::u16string& text, ravikit::ProblemKind kind) {
        ravikit::Problems problems;
        EXPECT_FALSE(ravikit::markupToPlain(text, true, nullptr, problems)) << toUtf8(text);
        ASSERT_FALSE(problems.empty());
        EXPECT_EQ(problems.list().front().kind, kind);
        const auto page = ravikit::markupToPlain(text, false, nullptr, problems);
        ASSERT_TRUE(page.has_value());
        for (const char16_t c : letters(u"seen")) {
            EXPECT_NE(page->find(c), std::u16string::npos);
        }
    };
    refuses(u"<wml><card><p>seen</card></wml>", ravikit::ProblemKind::UnclosedElement);
    refuses(u"<html>seen</html>", ravikit::ProblemKind::NotConvertible);
    refuses(u"seen", ravikit::ProblemKind::TextOutsideRoot);
    refuses(u"<wml><card><p>seen &what;</p></card></wml>", ravikit::ProblemKind::UnknownEntity);
    EXPECT_NE(plainOf(u"<card><p>&what;</p></card>").find(u"&amp;what;"), std::u16string::npos);
}

/// Text that has no deck around it, such as an author's selection.
TEST(ConvertUnchanged, AnyPieceIsShownIfNotStrict) {
    for (const char16_t* const name :
         {u"td", u"tr", u"table", u"p", u"pre", u"a", u"anchor", u"do", u"select", u"option",
          u"fieldset", u"img", u"br", u"head", u"template", u"other"}) {
        const std::u16string open = std::u16string(u"<") + name + u">";
        const std::u16string close = std::u16string(u"</") + name + u">";
        const std::u16string inside = open + u" a <td>b</td>" + close;
        for (const std::u16string& text :
             {inside, u" \n" + inside + u" seen", open + u" " + open}) {
            ravikit::Problems problems;
            const auto page = ravikit::markupToPlain(text, false, nullptr, problems);
            ASSERT_TRUE(page.has_value());
            EXPECT_TRUE(ravikit::plainToMarkup(*page, false, nullptr, problems));
        }
    }
}

} // namespace
