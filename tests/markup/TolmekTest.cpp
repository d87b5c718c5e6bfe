#include "ravikit/component/Objects.h"
#include "ravikit/text/Problem.h"
#include "support/Test.h"

namespace {

using namespace tessaly;
using ravikit::ProblemKind;

std::int32_t numberOf(ProblemKind kind) {
    return static_cast<std::int32_t>(kind);
}

TEST(Tolmek, NamesAllErrorsInTheOrderOfTheirPlaces) {
    const auto tolmek = makeTolmek(nullptr);
    EXPECT_EQ(tolmek->lastError(), nullptr);
    EXPECT_TRUE(tolmek->isValidText(u"<wml><card><p>&nbsp;</p></card></wml>"));
    EXPECT_EQ(tolmek->lastError(), nullptr);

    // Lines end in CR LF, LF and CR; faults of both sorts, one at the very end.
    const std::u16string text =
        u"<wml>\r\n<card>\n<p>a<crad/></p>\r<p>&who;</p></card>\r\n\r\n</wml>";
    EXPECT_FALSE(tolmek->isValidText(text + u"x"));
    std::vector<std::shared_ptr<ParseError>> errors;
    using Place = std::tuple<std::int32_t, std::int32_t, std::int32_t, std::u16string>;
    std::vector<Place> places;
    for (auto error = tolmek->lastError(); error; error = error->next()) {
        errors.push_back(error);
        places.emplace_back(error->number(), error->line(), error->column(), error->sourceLine());
        EXPECT_EQ(error->position() >= 0 && error->length() >= 0, true);
        EXPECT_FALSE(error->reason().empty());
    }
    ASSERT_EQ(places.size(), 3U);
    EXPECT_EQ(places[0], Place(numberOf(ProblemKind::UnknownElement), 3, 6, u"<p>a<crad/></p>"));
    EXPECT_EQ(places[1], Place(numberOf(ProblemKind::UnknownEntity), 4, 4, u"<p>&who;</p></card>"));
    EXPECT_EQ(std::get<3>(places[2]), u"</wml>x");
    EXPECT_EQ(text.substr(static_cast<std::size_t>(errors[1]->position()),
                          static_cast<std::size_t>(errors[1]->length())),
              u"&who;");

    // A verdict of True leaves the last error; the chain stays good without its maker.
    EXPECT_TRUE(tolmek->isValidText(u"<wml><card/></wml>"));
    EXPECT_EQ(tolmek->lastError()->line(), 3);
    EXPECT_FALSE(tolmek->isValidText(u""));
    EXPECT_EQ(tolmek->lastError()->line(), 1);
    EXPECT_EQ(tolmek->lastError()->column(), 1);
    EXPECT_EQ(tolmek->lastError()->sourceLine(), u"");
    EXPECT_EQ(errors[0]->next()->line(), 4);
}

/// The page of `markup`, or the empty string if it was refused.
std::u16string page(std::u16string markup, bool strict = true) {
    return makeTolmek(nullptr)->convertText(kindMarkup, kindPlain, markup, strict) ? markup : u"";
}

TEST(Conversion, GoesBothWaysOrLeavesTheText) {
    const std::u16string deck = u"<wml><card title='A &lt; B'><p>1&nbsp;&lt;</p></card></wml>";
    const auto tolmek = makeTolmek(nullptr);
    std::u16string text = deck;
    ASSERT_TRUE(tolmek->convertText(kindMarkup, kindPlain, text, true));
    EXPECT_NE(text, deck);
    ASSERT_TRUE(tolmek->convertText(kindPlain, kindMarkup, text, false));
    EXPECT_EQ(text, deck);

    const std::tuple<std::int32_t, std::u16string, std::int32_t> refused[] = {
        {kindPlain, u"<P>typed<SCRIPT>x</SCRIPT>", 1},
        {kindMarkup, u"<wml>\n <card>\n</wml>", 2},
        {kindMarkup, u"\n<html/>", 2},
    };
    for (const auto& [kind, given, line] : refused) {
        text = given;
        EXPECT_FALSE(tolmek->convertText(kind, kindMarkup + kindPlain - kind, text, true));
        EXPECT_EQ(text, given);
        EXPECT_EQ(tolmek->lastError()->line(), line);
    }
    EXPECT_EQ(tolmek->lastError()->number(), numberOf(ProblemKind::NotConvertible));
    text = std::get<1>(refused[0]);
    EXPECT_TRUE(tolmek->convertText(kindPlain, kindMarkup, text, false));
    EXPECT_TRUE(tolmek->isValidText(text));
    EXPECT_NE(page(u"plain <b>text</x>", false).find(u">text<"), std::u16string::npos);
}

/// A card alone does not carry the declarations of its deck.
TEST(Conversion, TakesACardWithItsDecksEntities) {
    EXPECT_NE(page(u"<card><p>&mine;</p></card>").find(u">&amp;mine;</p>"), std::u16string::npos);
    EXPECT_EQ(page(u"<wml><card><p>&mine;</p></card></wml>"), u"");
}

TEST(Conversion, KnowsTwoKindsOfText) {
    const auto tolmek = makeTolmek(nullptr);
    std::u16string text = u"<not well-formed";
    EXPECT_TRUE(tolmek->convertText(kindMarkup, kindMarkup, text, true));
    EXPECT_TRUE(tolmek->convertText(kindPlain, kindPlain, text, true));
    EXPECT_EQ(text, u"<not well-formed");
    EXPECT_THROW(tolmek->convertText(2, kindPlain, text, true), Failure);
    EXPECT_THROW(tolmek->convertText(kindPlain, -1, text, true), Failure);
}

} // namespace
