#include "platform/controls/HeadlessBrowser.h"
#include "platform/controls/HeadlessRichText.h"
#include "platform/page/HeadlessPage.h"
#include "support/EventLog.h"
#include "support/Test.h"
#include "tessaly.h"

using namespace tessaly;

namespace {

const std::u16string head = u"<wml>\n  <card>\n    <do type='prev'><prev/></do>\n    ";
const std::u16string tail = u"\n    <p>more &#65;</p>\n  </card>\n</wml>\n";
const std::u16string line = u"<p>one <b>two</b> <big>three</big> &nbsp;four</p>";

/// A deck in both controls, as a host has it.
class NineKeys : public testing::Test {
protected:
    NineKeys() {
        browser->Document(page);
        document->wbPlain(browser);
        document->MuRtb(text);
        document->view(vPLain);
    }

    std::u16string deck = head + line + tail;
    std::shared_ptr<clProject> project = std::make_shared<clProject>();
    std::shared_ptr<WirelessDocument> document =
        project->Documents()->Add(u"", u"deck", deck, nullptr, nullptr, nullptr, project->Ravik());
    std::shared_ptr<HeadlessBrowser> browser =
        std::make_shared<HeadlessBrowser>(std::make_shared<MessageLoop>());
    std::shared_ptr<HeadlessPage> page = makePage(u"");
    std::shared_ptr<HeadlessRichText> text = std::make_shared<HeadlessRichText>();
    std::vector<std::string> heard;
    support::EventLog log{heard};
    Subscription subscription = document->events().advise(log);
};

} // namespace

TEST_F(NineKeys, OnThePageChangeTheLineAndNothingElse) {
    struct Case {
        std::u16string key;
        std::u16string selected;
        std::u16string part;
        std::u16string becomes;
        std::u16string line = ::line;
    };
    const std::u16string rich =
        u"<p><b>bo<!--c-->ld</b> <strong id=\"s\" class=\"k\">a <i>str</i> ong</strong></p>";
    const Case cases[] = {
        {u"Bold", u"four", u"four", u"<b>four</b>"},
        {u"Bold", u"two", u"<b>two</b>", u"two"},
        {u"Italic", u"two", u"<b>two</b>", u"<i><b>two</b></i>"},
        {u"Underline", u"ne", u"one", u"o<u>ne</u>"},
        {u"Align Left", u"one", u"<p>", u"<p align=\"left\">"},
        {u"Align Center", u"two", u"<p>", u"<p align=\"center\">"},
        {u"Align Right", u"four", u"<p>", u"<p align=\"right\">"},
        {u"Big Font", u"one", u"one", u"<big>one</big>"},
        {u"Small Font", u"two", u"two", u"<small>two</small>"},
        {u"Normal Font", u"three", u"<big>three</big>", u"three"},
        {u"Bold", u"ld", u"ld</b>", u"</b>ld", rich},
        {u"Bold", u"bo", u"<b>bo", u"bo<b>", rich},
        {u"Bold", u"str", u"<i>str</i>", u"</strong><i>str</i><strong>", rich},
        {u"Bold", u"ng", u"ng</strong>", u"</strong>ng", rich},
    };
    for (const Case& each : cases) {
        document->view(vMarkup);
        text->Text(head + each.line + tail);
        document->view(vPLain);
        ASSERT_TRUE(page->selectText(each.selected));
        document->Format()->exec(each.key);
        document->view(vMarkup);
        std::u16string expected = each.line;
        expected.replace(expected.find(each.part), each.part.size(), each.becomes);
        EXPECT_EQ(text->Text(), head + expected + tail);
        EXPECT_TRUE(document->Tolmek()->isValidText(text->Text()));
    }
    EXPECT_EQ(heard, std::vector<std::string>{});
    EXPECT_FALSE(document->isDirty());
}

TEST_F(NineKeys, InTheMarkupAreShownOnThePage) {
    const std::pair<std::u16string, std::u16string> tags[] = {
        {u"Bold", u"<b>"},
        {u"Italic", u"<i>"},
        {u"Underline", u"<u>"},
        {u"Align Left", u"<p align=\"left\">"},
        {u"Align Center", u"<p align=\"center\">"},
        {u"Align Right", u"<p align=\"right\">"},
        {u"Big Font", u"<big>"},
        {u"Small Font", u"<small>"},
    };
    log.hooks["OnAdd2UndoStack"] = [&] { EXPECT_EQ(text->SelText(), u"more"); };
    document->view(vMarkup);
    for (const auto& [key, tag] : tags) {
        text->Text(deck);
        const auto at = static_cast<std::int32_t>(deck.find(u"more"));
        text->SelStart(at);
        text->SelLength(4);
        heard.clear();
        document->Format()->exec(key);
        std::u16string txt = tag + u"more</";
        txt += tag.substr(1, tag.find_first_of(u" >") - 1) + u">";
        EXPECT_EQ(heard, std::vector{"OnAdd2UndoStack " + std::to_string(at) + " [" +
                                     support::ascii(txt) + "] [more] 2"});
        const std::u16string written = text->Text();
        EXPECT_EQ(written.find(txt + u" &#65;"), deck.find(u"more"));
        document->view(vPLain);
        EXPECT_TRUE(page->selectText(u"more"));
        document->view(vMarkup);
        EXPECT_EQ(text->Text(), written);
    }
}

TEST_F(NineKeys, OnThePageWithoutSelectedText) {
    const std::u16string picture = u"<img src=\"a\" alt=\"b\"/></p>";
    const std::tuple<std::u16string, std::u16string, std::u16string> cases[] = {
        {u"Align Left", u"", u"<p>one "},
        {u"Big Font", u"picture", u"<p>one "},
        {u"Align Right", u"picture", u"<p align=\"right\">one "},
        {u"Big Font", u"caret", u"<p>one "}, // an empty format does not come back
    };
    for (const auto& [key, selected, becomes] : cases) {
        document->view(vMarkup);
        text->Text(head + u"<p>one " + picture + tail);
        document->view(vPLain);
        const auto shown = page->getElementsByTagName(u"img")->item(1); // after the page's own
        if (selected == u"picture") {
            page->selectObject(shown);
        } else if (selected == u"caret") {
            page->placeCaret({shown->parentElement(), 1});
        }
        document->Format()->exec(key);
        const std::u16string html = page->body()->innerHTML();
        EXPECT_EQ(html.find(u">o<big></big>ne") != html.npos, selected == u"caret");
        document->view(vMarkup);
        EXPECT_EQ(text->Text(), head + becomes + picture + tail);
    }
}
