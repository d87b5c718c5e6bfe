#include "ravikit/ConvertSupport.h"
#include "support/Test.h"

#include "ravikit/WmlDtd.h"
#include "ravikit/path/LocationPath.h"

/// The decks beside this file are the test of all that reads decks: they must go on to hold every
/// element and attribute of WML, and what real decks do that a simple reader gets wrong.
namespace {

using namespace convert_test;
using ravikit::NodeKind;

std::vector<Deck> folder() {
    std::vector<Deck> decks = writtenDecks();
    std::erase_if(decks, [](const Deck& deck) { return deck.name[1] != '-'; });
    return decks;
}

TEST(DeckSet, UsesEveryElementAndAttribute) {
    std::set<std::u16string> used;
    for (const Deck& deck : folder()) {
        const auto tree = ravikit::parse(deck.text, &wmlDtd()->declarations());
        std::u16string element;
        for (ravikit::Tree::Id id = 1; id < tree->size(); ++id) {
            if (tree->kind(id) == NodeKind::Element) {
                used.insert(element = tree->name(id));
            } else if (tree->kind(id) == NodeKind::Attribute) {
                used.insert(element + u" " + std::u16string(tree->name(id)));
            }
        }
    }
    const ravikit::Declarations& wml = wmlDtd()->declarations();
    for (const auto& element : wml.elements) {
        EXPECT_TRUE(used.contains(element.name)) << toUtf8(element.name);
    }
    for (const auto& attribute : wml.attributes) {
        const std::u16string name = attribute.element + u" " + attribute.name;
        EXPECT_TRUE(used.contains(name)) << toUtf8(name);
    }
}

TEST(DeckSet, HoldsWhatRealDecksHold) {
    const std::vector<Deck> decks = folder();
    EXPECT_GE(decks.size(), 68U);
    // Places in the tree, and letters of the text.
    static constexpr std::array niceties{
        // Places in the tree.
        u"//p/do", u"//do[@type='vnd.own']", u"//do[@name='same'][2]", u"//card/a", u"//card/br",
        u"//card/select", u"//p//p", u"//a/b", u"//p/pre", u"//optgroup/optgroup",
        u"//template/do/a", u"//template/do/p", u"//h1", u"//form", u"//center", u"//ul",
        u"//textarea", u"//*[@selected]", u"//*[@checked]",

        // Letters of the text.
        u"<card id=\"c\" title=\"Card\">\n    loose", u"$x", u"$(x)", u"$(x:noesc)", u"$$",
        u"=\"$(", u"href=\"u?q=$(x:escape)&amp;r=$y\"", u"#run('$(x:noesc)', $y)\"", u"<?php",
        u"<!--\n  <card", u"-->\n<?pi x?>\n<!DOCTYPE", u"<card/>", u"='", u"&nbsp;", u"&shy;",
        u"&#8364;", u"&#xA0;", u"\r\r\n", u"<![CDATA[<b>", u"<!ENTITY"};
    for (const std::u16string_view what : niceties) {
        std::u16string reason;
        const auto path = ravikit::LocationPath::compile(what, reason);
        EXPECT_TRUE(std::any_of(decks.begin(), decks.end(), [&](const Deck& deck) {
            if (!path) {
                return deck.text.find(what) != deck.text.npos;
            }
            const auto tree = ravikit::parse(deck.text);
            return !path->select(*tree, ravikit::Tree::document).empty();
        })) << toUtf8(what);
    }
}

} // namespace
