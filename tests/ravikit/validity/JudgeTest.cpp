// Judging by the WML DTD: what is told of a fault, what is not told twice, and libxml2's verdict on
// the same decks.

#include "ravikit/validity/Dtd.h"
#include "ravikit/xml/Parser.h"
#include "support/Test.h"
#include "tests/ravikit/validity/DeckGenerator.h"
#include "tests/ravikit/validity/LibXmlValidity.h"
#include "tests/ravikit/validity/WmlDtd.h"

namespace {

using ravikit::ProblemKind;
using ravikit::Problems;
using Lines = std::vector<std::string>;

/// What stands against `deck`, each as the piece of the deck, a colon and the reason.
Lines told(const std::u16string& deck) {
    const auto& dtd = wmlDtd();
    const auto tree = ravikit::parse(deck, &dtd->declarations());
    Problems problems = tree->problems();
    dtd->judge(*tree, problems);
    problems.sort();
    Lines lines;
    for (const ravikit::Problem& problem : problems.list()) {
        lines.push_back(libxml::utf8(deck.substr(problem.begin, problem.end - problem.begin) +
                                     u": " + problem.reason));
    }
    return lines;
}

std::u16string inCard(const std::u16string& content) {
    return u"<wml><card>" + content + u"</card></wml>";
}

TEST(Judge, SaysWhatStandsThereWhatCouldAndTheNearMiss) {
    const std::pair<std::u16string, std::string> table[] = {
        {u"<wml><crad/><card/></wml>", "crad: `crad` is no WML element; did you mean `card`?"},
        {u"<wml><CARD/></wml>", "CARD: `CARD` is no WML element; did you mean `card`?"},
        {inCard(u"<p><a href=''><p/></a></p>"),
         "p: `p` cannot stand in `a`; `a` may hold text, `br` and `img`"},
        {inCard(u"<marquee/>"), "marquee: `marquee` is no WML element; `card` may hold `onevent`, "
                                "`timer`, `do`, `p` and `pre`"},
        {inCard(u"<p/><timer value='1'/>"),
         "timer: `timer` cannot stand here in `card`; here may follow `do`, `p` or `pre`"},
        {inCard(u"<do type='a'><prev/><noop/></do>"),
         "noop: `noop` cannot stand here in `do`; nothing more may follow"},
        {inCard(u"\n some text <p/>"), "some text: text cannot stand in `card`; put it into a `p`"},
        {inCard(u"<p><br> </br></p>"),
         " : `br` must be empty: between its tags not even a blank may stand"},
        {u"<wml><head/><card/></wml>", "head: `head` ends here, but needs `access` or `meta`"},
        {u"<wml><template/></wml>", "</wml>: `wml` ends here, but needs a `card`"},
        {inCard(u"<p colour='red'/>"), "colour: `colour` is no attribute of `p`; it may have "
                                       "`align`, `mode`, `xml:lang`, `id` and `class`"},
        {inCard(u"<p aling='left'/>"),
         "aling: `aling` is no attribute of `p`; did you mean `align`?"},
        {inCard(u"<p align='middle'/>"),
         "middle: `align` of `p` may be `left`, `right` or `center`, not `middle`"},
        {inCard(u"<p><img align='top'/></p>"), "img: `img` must have `alt` and `src`"},
        {inCard(u"<pre xml:space='default'/>"),
         "default: `xml:space` of `pre` can only be `preserve`, not `default`"},
        {u"<wml>\r\n<card id='x'/>\r\n<card id='x'/></wml>",
         "x: the id `x` already stands on line 2"},
        {u"<html><body/></html>", "html: the deck begins with `html`; it must begin with `wml`"},
        {inCard(u"<p><strog/></p>"), "strog: `strog` is no WML element; did you mean `strong`?"},
        {inCard(u"<p><card/></p>"), "card: `card` cannot stand in `p`; `p` may hold text, `em`, "
                                    "`strong`, `b`, `i`, `u`, `big`, `small`, `br` and 8 more"},
    };
    for (const auto& [deck, line] : table) {
        EXPECT_EQ(told(deck), Lines{line});
    }
}

TEST(Judge, TellsAFaultOnceAndJudgesTheRestByItself) {
    // Of an unknown element neither the attributes nor that its parent lacks something.
    EXPECT_EQ(told(u"<wml><crad a='1' a2='2'>text<p align='x'/></crad></wml>").size(), 2U);
    // A misspelt attribute is not missing as well.
    EXPECT_EQ(told(inCard(u"<do tpye='a'><prev/></do>")),
              Lines{"tpye: `tpye` is no attribute of `do`; did you mean `type`?"});
    // What recovery had a part in: the bold text swallowed what was not meant to be in it.
    EXPECT_EQ(told(inCard(u"<p>a<b>c</p><p>d</p>")).size(), 1U);
    EXPECT_EQ(told(inCard(u"<p>x</p><do type='a'>")).size(), 1U);
}

TEST(Judge, SeesWhatEntitiesStandFor) {
    const std::u16string head =
        u"<!DOCTYPE wml [<!ENTITY s ' '><!ENTITY c '&#38;#32;'><!ENTITY t 't'>"
        u"<!ENTITY m '<p><a>x</a></p>'><!ENTITY left 'left'>]>";
    EXPECT_EQ(told(head + inCard(u"&s;<p align='&left;'>&t;&nbsp;</p>&s;")), Lines{});
    // The place is that of the reference; a character reference is no blank between elements.
    EXPECT_EQ(told(head + inCard(u"&c;")).size(), 1U);
    EXPECT_EQ(told(head + inCard(u"&t;")).size(), 1U);
    EXPECT_EQ(told(head + inCard(u"&m;<p>&m;</p>")),
              (Lines{"&m;: `a` must have `href`",
                     "&m;: `p` cannot stand in `p`; `p` may hold text, `em`, `strong`, `b`, `i`, "
                     "`u`, `big`, `small`, `br` and 8 more",
                     "&m;: `a` must have `href`"}));
    // The DOCTYPE's own elements change nothing.
    EXPECT_EQ(told(u"<!DOCTYPE x [<!ELEMENT wml EMPTY>]>" + inCard(u"")), Lines{});
}

TEST(Judge, AgreesWithLibXml) {
    DeckGenerator generator(wmlDtd()->declarations());
    std::mt19937 random(20011); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same decks each time
    std::vector<std::uint8_t> bytes;
    int valid = 0;
    constexpr int decks = 3000;
    for (int i = 0; i < decks; ++i) {
        bytes.resize(random() % 300);
        for (std::uint8_t& byte : bytes) {
            byte = static_cast<std::uint8_t>(random());
        }
        bool isValid = false;
        ASSERT_EQ(libxml::validityFault(generator.deck(bytes.data(), bytes.size()), &isValid), "");
        valid += isValid ? 1 : 0;
    }
    // Were they all the one or all the other, agreeing would mean little.
    EXPECT_GT(valid, decks / 10);
    EXPECT_LT(valid, decks * 9 / 10);
}

TEST(Judge, TenThousandFaultsEndInBoundedWork) {
    std::u16string deck = u"<wml><card>";
    for (int i = 0; i < 30000; ++i) {
        deck += u"<crad><p aling='left' id='same'>x</p>\n</crad>";
    }
    const Lines lines = told(deck + u"</card></wml>");
    EXPECT_EQ(lines.size(), Problems::limit + 1);
}

TEST(Judge, OtherDtdsKnowIdsAndWhatRefersToThem) {
    Problems none;
    const auto dtd = ravikit::Dtd::compile(
        u"<!ELEMENT list (item)*><!ELEMENT item ANY><!ELEMENT other EMPTY>"
        u"<!ATTLIST item id ID #IMPLIED to IDREFS #IMPLIED words NMTOKENS #IMPLIED "
        u"picture ENTITY #IMPLIED>",
        none);
    ASSERT_NE(dtd, nullptr);
    const auto kinds = [&dtd](const std::u16string& text) {
        const auto tree = ravikit::parse(text, &dtd->declarations());
        Problems problems;
        dtd->judge(*tree, problems);
        std::vector<ProblemKind> list;
        for (const ravikit::Problem& problem : problems.list()) {
            list.push_back(problem.kind);
        }
        return list;
    };
    using Kinds = std::vector<ProblemKind>;
    EXPECT_EQ(kinds(u"<list><item to=' b a '/><item id='a'/><item id=' b'/></list>"), Kinds{});
    EXPECT_EQ(kinds(u"<list><item to='a b' id='a'/></list>"), Kinds{ProblemKind::UnknownId});
    EXPECT_EQ(kinds(u"<list><item words=''/><item id='1'/><item words='1 2'/></list>"),
              (Kinds{ProblemKind::BadAttributeValue, ProblemKind::BadAttributeValue}));
    EXPECT_EQ(kinds(u"<!DOCTYPE list [<!ENTITY p SYSTEM 's' NDATA n><!ENTITY q 'x'>]>"
                    u"<list><item picture='p'/><item picture='q'/></list>"),
              Kinds{ProblemKind::BadAttributeValue});
    EXPECT_EQ(kinds(u"<list><item>text<other/><item/><no/></item></list>"),
              Kinds{ProblemKind::UnknownElement});
    // Any element that no other one holds can be the first.
    EXPECT_EQ(kinds(u"<other/>"), Kinds{});
}

} // namespace
