#include "ravikit/component/Objects.h"
#include "support/Test.h"

namespace {

using namespace tessaly;
using Texts = std::vector<std::u16string>;

std::shared_ptr<IXMLDOMDocument2> parse(const std::u16string& text) {
    return makeRavik(nullptr)->parseMarkup(text, true, false);
}

Texts texts(const std::shared_ptr<IXMLDOMNodeList>& list) {
    Texts all;
    for (std::int32_t i = 0; i < list->length(); ++i) {
        all.push_back(list->item(i)->xml());
    }
    return all;
}

constexpr char16_t deck[] = u"<?xml version='1.0'?>\r\n<!DOCTYPE wml>\n<wml><!-- c -->"
                            u"<card id=\"a\"><p>x&amp;y</p></card>\n<CARD/><card id='b'/></wml>\n";

TEST(Dom, GivesSlicesOfTheSource) {
    const auto document = parse(deck);
    EXPECT_EQ(document->xml(), deck);
    EXPECT_EQ(texts(document->selectNodes(u"//card")),
              (Texts{u"<card id=\"a\"><p>x&amp;y</p></card>", u"<card id='b'/>"}));
    EXPECT_EQ(texts(document->selectNodes(u"//@id | //p")),
              (Texts{u"id=\"a\"", u"<p>x&amp;y</p>", u"id='b'"}));
    EXPECT_EQ(texts(document->selectNodes(u"/")), (Texts{deck}));

    const auto card = document->selectNodes(u"//card")->item(0);
    EXPECT_EQ(texts(card->selectNodes(u"p/..")), (Texts{card->xml()}));
    EXPECT_EQ(texts(card->selectNodes(u"/wml/CARD")), (Texts{u"<CARD/>"}));
    EXPECT_EQ(texts(card->childNodes()), (Texts{u"<p>x&amp;y</p>"}));
    EXPECT_EQ(texts(document->getElementsByTagName(u"wml")->item(0)->childNodes()),
              (Texts{u"<!-- c -->", card->xml(), u"\n", u"<CARD/>", u"<card id='b'/>"}));
}

TEST(Dom, ListsElementsByTheirExactNameAndNothingOutside) {
    const auto document = parse(deck);
    const std::pair<const char16_t*, int> counts[] = {
        {u"card", 2}, {u"CARD", 1}, {u" card", 0}, {u"id", 0}, {u"*", 5}};
    for (const auto& [name, count] : counts) {
        EXPECT_EQ(document->getElementsByTagName(name)->length(), count);
    }
    const auto list = document->selectNodes(u"//card");
    for (const std::int32_t outside : {-1, 2, 0x7FFFFFFF}) {
        EXPECT_EQ(list->item(outside), nullptr);
    }
    const auto orphan = parse(deck)->selectNodes(u"//p")->item(0); // its document has gone
    EXPECT_EQ(orphan->selectNodes(u"..")->item(0)->xml(), list->item(0)->xml());
}

TEST(Dom, AnswersStayRightWhenManyQuestionsAreAsked) {
    const auto document = parse(u"<wml><a/><b/><a/></wml>");
    for (int round = 0; round < 3; ++round) {
        for (int i = 1; i < 30; ++i) {
            const std::string pattern = "/wml/*[" + std::to_string(i) + "]";
            const auto found = document->selectNodes(support::u16(pattern));
            ASSERT_EQ(found->length(), i <= 3 ? 1 : 0) << pattern;
        }
        EXPECT_EQ(document->selectNodes(u"//a")->length(), 2);
        EXPECT_EQ(document->getElementsByTagName(u"a")->length(), 2);
    }
}

TEST(Dom, IsEmptyForTextThatIsNotWellFormed) {
    for (const auto& document :
         {parse(u"<wml><card></wml>"), parse(u""), parse(u"text"), makeEmptyDOMDocument()}) {
        EXPECT_EQ(document->xml(), u"");
        EXPECT_EQ(document->childNodes()->length(), 0);
        EXPECT_EQ(document->selectNodes(u"//card")->length(), 0);
        EXPECT_EQ(document->getElementsByTagName(u"*")->length(), 0);
    }
    EXPECT_NE(parse(u"<nonsense/>")->xml(), u""); // invalid, but well-formed
}

TEST(Dom, FailsForAPatternThatItDoesNotKnow) {
    for (const auto& document : {parse(deck), makeEmptyDOMDocument()}) {
        try {
            document->selectNodes(u"//card[last()]");
            ADD_FAILURE() << "no failure";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code(), FailureCode::InvalidArgument);
            EXPECT_NE(failure.description().find(u"`last()]`"), std::u16string::npos);
        }
    }
}

} // namespace
