#include "Fakes.h"

using namespace fakes;

namespace {

constexpr char16_t one[] = u"html:<card>1</card>";
constexpr char16_t two[] = u"html:<card>2</card>";
constexpr char16_t noCard[] = u"No Document Element";
constexpr char16_t twoCards[] = u"<wml><card>1</card><CARD>x</CARD><p><card>2</card></p></wml>";

using Display = Component;

} // namespace

TEST_F(Display, WrapsAtBothEndsAndSaysWhereTheyAre) {
    const auto display = build(twoCards)->Display();
    EXPECT_EQ(display->currentDisplayNode(), one);
    EXPECT_TRUE(display->nextExists() && !display->previousExists());
    EXPECT_EQ(display->previousDisplayNode(), two);
    EXPECT_EQ(display->currentDisplayNodeIndex(), 1);
    EXPECT_TRUE(!display->nextExists() && display->previousExists());
    EXPECT_EQ(display->nextDisplayNode(), one);
    world.take();
    display->nextDisplayNode();
    EXPECT_EQ(world.take(), Log{"convertText 1 0 <card>2</card> True"}); // no new selection
}

TEST_F(Display, JumpsWithoutWrapping) {
    const auto display = build(twoCards)->Display();
    EXPECT_EQ(display->DisplayNode(2), noCard);
    EXPECT_EQ(display->currentDisplayNodeIndex(), 0);
    EXPECT_EQ(display->DisplayNode(1), two);
    EXPECT_EQ(display->DisplayNode(-2), noCard);
    EXPECT_EQ(display->currentDisplayNodeIndex(), -2);
    EXPECT_EQ(display->nextDisplayNode(), u"");
    EXPECT_EQ(display->nextDisplayNode(), one);
}

TEST_F(Display, NoCardsAndARefusedCard) {
    auto display = build(u"<wml></wml>")->Display();
    EXPECT_EQ(display->nextDisplayNode(), u"");
    EXPECT_EQ(display->currentDisplayNodeIndex(), 0);
    EXPECT_EQ(display->previousDisplayNode(), u"");
    EXPECT_EQ(display->currentDisplayNodeIndex(), -1);
    EXPECT_EQ(display->DisplayNode(0), noCard);
    EXPECT_FALSE(display->nextExists() || display->previousExists());

    display = build(u"<card>1</card><card>REFUSED</card>")->Display();
    EXPECT_EQ(display->nextDisplayNode(), u"");
    EXPECT_EQ(display->currentDisplayNodeIndex(), 1);
    EXPECT_EQ(display->nextDisplayNode(), one);
}

TEST_F(Display, KeepsItsPlaceInANewTree) {
    const auto display = build(u"<card>1</card><card>2</card><card>3</card>")->Display();
    display->DisplayNode(2);
    display->DOM(std::make_shared<Node>(u"<card>1</card>"));
    EXPECT_EQ(display->currentDisplayNode(), u"");
    EXPECT_TRUE(!display->nextExists() && display->previousExists());
    EXPECT_EQ(display->previousDisplayNode(), u"");
    EXPECT_EQ(display->previousDisplayNode(), one);
}

TEST_F(Display, FailsWithoutItsObjectsAndBeyondSixteenBits) {
    const auto doc = build(twoCards);
    const auto display = doc->Display();
    display->Tolmek(nullptr);
    EXPECT_EQ(codeOf([&] { display->currentDisplayNode(); }), FailureCode::ObjectNotSet);
    EXPECT_EQ(codeOf([&] { display->DOM(nullptr); }), FailureCode::ObjectNotSet);
    EXPECT_EQ(codeOf([&] { display->nextExists(); }), FailureCode::ObjectNotSet);

    display->Tolmek(doc->Tolmek());
    std::u16string manyCards;
    for (int count = 0; count <= 32768; ++count) {
        manyCards += u"<card></card>";
    }
    display->DOM(std::make_shared<Node>(manyCards));
    EXPECT_EQ(display->DisplayNode(32767), u"html:<card></card>");
    EXPECT_EQ(codeOf([&] { display->nextDisplayNode(); }), FailureCode::Overflow);
    EXPECT_EQ(display->currentDisplayNodeIndex(), 32767);
    for (const std::int16_t first : std::initializer_list<std::int16_t>{0, -32768}) {
        display->DisplayNode(first);
        EXPECT_EQ(codeOf([&] { display->previousDisplayNode(); }), FailureCode::Overflow);
    }
}
