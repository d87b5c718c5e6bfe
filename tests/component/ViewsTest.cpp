#include "Fakes.h"

using namespace fakes;

namespace {

constexpr char16_t deck[] = u"<wml>t</wml>";

Log operator+(Log a, const Log& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Log showsPage() {
    return {"rtb.Visible= False", "browser.Visible= True", "formats page"};
}
Log showsMarkup() {
    return {"rtb.Visible= True", "browser.Visible= False", "formats markup"};
}
Log refusal() {
    return {"lastError", "OnParseError refused"};
}

/// What each way to the plain view does first.
Log readsMarkup(const std::string& text) {
    return {"rtb.Text", "parseMarkup " + text + " True False", "rtb.Text",
            "convertText 1 0 " + text + " True"};
}

class Views : public Component {
protected:
    /// Sets the view and says what happened, then in which control the formatter works.
    Log switchTo(WirelessDocument& doc, int view) {
        world.take();
        doc.view(static_cast<enumView>(view));
        Log log = world.take();
        doc.Format()->exec(u"Bold");
        log.emplace_back(world.take().front() == "execCommand Bold" ? "formats page"
                                                                    : "formats markup");
        return log;
    }
    FakeElement& body() { return *browser->page->theBody; }
};

} // namespace

TEST_F(Views, TheFirstViewIsShownAndOnlyThePlainOneIsConverted) {
    auto doc = build(deck);
    doc->Content(u"<wml>newer</wml>"); // not in the control
    EXPECT_EQ(switchTo(*doc, vPLain),
              readsMarkup("<wml>t</wml>") + Log{"innerHTML= html:<wml>t</wml>"} + showsPage());
    EXPECT_EQ(doc->Content(), deck);
    EXPECT_EQ(doc->DOM()->xml(), deck);
    EXPECT_EQ(switchTo(*build(deck), vMarkup), showsMarkup());
}

TEST_F(Views, ARefusedWayToThePlainViewEndsInTheMarkupView) {
    const auto doc = build(u"<wml>REFUSED</wml>");
    sink.hooks["OnParseError"] = [&] { EXPECT_EQ(doc->view(), vPLain); };
    const Log refused = readsMarkup("<wml>REFUSED</wml>") + refusal() + showsMarkup();
    EXPECT_EQ(switchTo(*doc, vPLain), refused);
    EXPECT_EQ(doc->view(), vMarkup);
    rtb->text = u"<wml>REFUSED</wml>";
    EXPECT_EQ(switchTo(*doc, vPLain), refused); // tried again, from the markup view now

    rtb->text = u"ILLFORMED";
    EXPECT_EQ(switchTo(*doc, vPLain), readsMarkup("ILLFORMED") + refusal() + showsMarkup());
    EXPECT_EQ(doc->DOM()->xml(), u"");
    EXPECT_EQ(doc->Content(), u"ILLFORMED");
    EXPECT_EQ(body().html, u"");
}

TEST_F(Views, FromPlainToMarkup) {
    const auto doc = build(deck);
    doc->view(vPLain);
    body().html = u"x";
    body().text = u"x";
    const Log reads{"innerHTML", "innerText", "innerText", "getElementsByTagName div"};
    const Log wraps{"innerHTML", "innerHTML= <DIV>x</DIV>"};
    const Log converts{"outerHTML", "convertText 0 1 [<DIV>x</DIV>] False"};
    EXPECT_EQ(switchTo(*doc, vMarkup),
              reads + wraps + converts + Log({"rtb.Text= wml:[<DIV>x</DIV>]"}) + showsMarkup());
    EXPECT_EQ(doc->Content(), deck);
    EXPECT_EQ(doc->DOM()->xml(), deck);

    rtb->text = deck;
    doc->view(vPLain);
    body().html = u"REFUSED";
    browser->page->elements = {std::make_shared<FakeElement>(u"DIV")};
    sink.hooks["OnParseError"] = [&] { EXPECT_EQ(doc->view(), vMarkup); };
    EXPECT_EQ(switchTo(*doc, vMarkup), reads +
                                           Log({"outerHTML", "convertText 0 1 [REFUSED] False"}) +
                                           refusal() + showsPage());
    EXPECT_EQ(doc->view(), vPLain);
    EXPECT_EQ(rtb->text, deck);
}

TEST_F(Views, BlankTextsCrossAsFixedTexts) {
    for (const char16_t* blank : {u"", u"<wml></wml>", u"<other>text</other>"}) {
        const auto doc = build(blank);
        doc->Content(u"kept");
        doc->view(vPLain);
        EXPECT_EQ(body().html, u"<BODY text=#000000 bgColor=#ffffff><P><FONT face=Verdana></FONT>"
                               u"&nbsp;</P></BODY>");
        EXPECT_EQ(doc->Content(), u"kept");
        EXPECT_EQ(rtb->text, blank);
        body().html = {};
        EXPECT_EQ(switchTo(*doc, vMarkup),
                  Log({"innerHTML", "innerText",
                       "rtb.Text= <?xml version=\"1.0\" encoding=\"UTF-8\"?><wml></wml>"}) +
                      showsMarkup());
    }
}

TEST_F(Views, TheSameViewAndNoView) {
    const auto doc = build(deck);
    doc->view(vMarkup);
    doc->Format()->view(vPLain); // a formatter that thinks otherwise is told again
    EXPECT_EQ(switchTo(*doc, vMarkup), Log{"formats markup"});
    EXPECT_EQ(switchTo(*doc, 7),
              (Log{"rtb.Visible= False", "browser.Visible= False", "formats markup"}));
    EXPECT_EQ(doc->view(), 7);
    EXPECT_EQ(codeOf([&] { doc->view(static_cast<enumView>(70000)); }), FailureCode::Overflow);
    doc->DocType(dcXML);
    doc->view(vMarkup);
    EXPECT_EQ(doc->view(), vMarkup);
}

TEST_F(Views, AMissingControlFailsWithTheViewAlreadyChanged) {
    const auto doc = build(deck);
    doc->wbPlain(nullptr);
    EXPECT_EQ(codeOf([&] { doc->view(vPLain); }), FailureCode::ObjectNotSet);
    EXPECT_EQ(doc->view(), vPLain);
    EXPECT_EQ(world.take(), readsMarkup("<wml>t</wml>"));
    doc->view(static_cast<enumView>(7)); // nothing to convert, so nothing is missed
    EXPECT_EQ(world.take(), Log{"rtb.Visible= False"});
}

TEST_F(Views, AHandlerMaySwitchAgainDuringARefusal) {
    const auto doc = build(u"<wml>REFUSED</wml>");
    sink.hooks["OnParseError"] = [&] {
        rtb->text = deck;
        doc->view(vMarkup);
        doc->view(vPLain); // empty page so far: converts the deck and succeeds
        EXPECT_FALSE(rtb->visible);
    };
    doc->view(vPLain);
    EXPECT_EQ(doc->view(), vMarkup);
    EXPECT_TRUE(rtb->visible);
}

TEST_F(Views, WaitsForTheBrowserOnTheWayToThePlainViewOnly) {
    const auto doc = build(deck);
    int rounds = 0;
    world.onDoEvents = [&] {
        if (++rounds == 2) {
            browser->events().raise(&BrowserControlEvents::NavigateComplete2);
        }
    };
    browser->events().raise(&BrowserControlEvents::BeforeNavigate2);
    doc->view(vPLain);
    const Log firstThree(world.log.begin(), world.log.begin() + 3);
    EXPECT_EQ(firstThree, (Log{"DoEvents", "DoEvents", "rtb.Text"}));
    browser->events().raise(&BrowserControlEvents::BeforeNavigate2);
    doc->view(vMarkup);
    EXPECT_EQ(rounds, 2);
    doc->wbPlain(std::make_shared<FakeBrowser>());
    browser->events().raise(&BrowserControlEvents::NavigateComplete2); // no longer listened to
    world.onDoEvents = [] { throw std::logic_error("still waiting"); };
    EXPECT_THROW(doc->view(vPLain), std::logic_error);
}

TEST_F(Views, SelectsAllAndReloads) {
    const auto doc = build(deck);
    doc->selectAll();
    EXPECT_EQ(world.take(), Log{"execCommand Selectall"});
    doc->view(vMarkup);
    world.take();
    doc->selectAll();
    EXPECT_EQ(world.take(), (Log{"rtb.SelStart= 0", "rtb.Text", "rtb.SelLength= 12"}));

    const Log rebuilt{"rtb.Text= <wml>t</wml>", "selectNodes //card"};
    doc->reloadViewfromDOM();
    EXPECT_EQ(world.take(), rebuilt);
    doc->view(vPLain);
    const auto dom = doc->DOM();
    world.take();
    doc->reloadViewfromDOM();
    EXPECT_EQ(world.take(),
              rebuilt + readsMarkup("<wml>t</wml>") + Log{"innerHTML= html:<wml>t</wml>"});
    EXPECT_NE(doc->DOM(), dom);

    doc->DOM(std::make_shared<Node>(u"<wml>REFUSED</wml>"));
    doc->reloadViewfromDOM();
    EXPECT_EQ(world.take().back(), "OnParseError refused");
    EXPECT_EQ(doc->view(), vPLain);
    doc->Content(u"REFUSED");
    world.take();
    doc->reloadViewfromDOM();
    EXPECT_EQ(world.take(), Log{});
}
