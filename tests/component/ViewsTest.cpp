#include "Fakes.h"

using namespace fakes;

namespace {

constexpr char16_t deck[] = u"<wml>t</wml>";
constexpr enumView none{};
constexpr enumView noView{7};

Log operator+(Log a, const Log& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const Log showsPage{"rtb.Visible= False", "browser.Visible= True", "formats page"};
const Log showsMarkup{"rtb.Visible= True", "browser.Visible= False", "formats markup"};
const Log showsNeither{"rtb.Visible= False", "browser.Visible= False", "formats markup"};
const Log refusal{"lastError", "OnParseError refused"};
const Log writesBlankDeck{R"(rtb.Text= <?xml version="1.0" encoding="UTF-8"?><wml></wml>)"};
const Log writesBlankPage{"innerHTML= <BODY text=#000000 bgColor=#ffffff><P><FONT face=Verdana>"
                          "</FONT>&nbsp;</P></BODY>"};

Log parsesMarkup(const std::string& text) {
    return {"rtb.Text", "parseMarkup " + text + " True False"};
}
Log convertsMarkup(const std::string& text) {
    return parsesMarkup(text) + Log{"rtb.Text", "convertText 1 0 " + text + " True"};
}
Log convertsPage(const std::string& html) {
    return {"outerHTML", "convertText 0 1 [" + html + "] False"};
}
const Log looksForDiv{"innerHTML", "innerText", "innerText", "getElementsByTagName div"};
const Log looksForDivAroundPictures{"innerHTML", "innerText", "innerText", "innerHTML",
                                    "getElementsByTagName div"};

/// What a document holds ahead of a switch.
struct Before {
    enumView view;
    std::u16string markup = deck;
    std::u16string html = {};
    std::u16string text = {};
    bool hasDiv = false;
};
/// What becomes of the text that the document holds: all stays, the deck is parsed into the DOM, or
/// that and the text becomes the Content.
enum Held : std::uint8_t { Kept, Parsed, Taken };
struct After {
    enumView set;
    enumView view; // then in force
    Held held;
};
struct Switch {
    const char* name;
    Before before;
    After after;
    Log log;
};

class Views : public Component {
protected:
    /// Brings a document into the state.
    std::shared_ptr<WirelessDocument> documentIn(const Before& before) {
        auto doc = build(deck);
        doc->view(before.view);
        rtb->text = before.markup;
        rtb->start = 0;
        body().html = before.html;
        body().text = before.text;
        browser->page->elements.clear();
        if (before.hasDiv) {
            browser->page->elements.push_back(std::make_shared<FakeElement>(u"DIV"));
        }
        doc->Content(u"old");
        doc->DOM(std::make_shared<Node>(u"old"));
        world.take();
        return doc;
    }
    /// Sets the view and says what happened, then in which control the formatter works.
    Log switchTo(WirelessDocument& doc, enumView view) {
        doc.view(view);
        Log log = world.take();
        log.push_back(formatsIn(doc));
        return log;
    }
    static std::string formatsIn(WirelessDocument& doc) {
        doc.Format()->exec(u"Bold");
        return world.take().front() == "execCommand Bold" ? "formats page" : "formats markup";
    }
    FakeElement& body() { return *browser->page->theBody; }
};

} // namespace

TEST_F(Views, EverySwitch) {
    const std::vector<Switch> table{
        {"none, none", {none}, {none, none, Kept}, {"formats markup"}},
        {"plain, plain", {vPLain}, {vPLain, vPLain, Kept}, {"formats page"}},
        {"markup, markup", {vMarkup}, {vMarkup, vMarkup, Kept}, {"formats markup"}},
        {"no view, no view", {noView}, {noView, noView, Kept}, {"formats markup"}},

        {"none, markup", {none}, {vMarkup, vMarkup, Kept}, showsMarkup},
        {"none, plain",
         {none},
         {vPLain, vPLain, Taken},
         convertsMarkup("<wml>t</wml>") + Log{"innerHTML= html:<wml>t</wml>"} + showsPage},
        {"none, plain, refused",
         {none, u"<wml>REFUSED</wml>"},
         {vPLain, vMarkup, Taken},
         convertsMarkup("<wml>REFUSED</wml>") + refusal + showsMarkup},
        {"none, plain, no text",
         {none, u""},
         {vPLain, vPLain, Parsed},
         parsesMarkup("") + writesBlankPage + showsPage},

        {"plain, markup",
         {vPLain, u"", u"<p>x</p>", u"x", true},
         {vMarkup, vMarkup, Kept},
         looksForDiv + convertsPage("<p>x</p>") + Log{"rtb.Text= wml:[<p>x</p>]"} + showsMarkup},
        {"plain, markup, no div",
         {vPLain, u"", u"x", u"x"},
         {vMarkup, vMarkup, Kept},
         looksForDiv + Log{"innerHTML", "innerHTML= <DIV>x</DIV>"} + convertsPage("<DIV>x</DIV>") +
             Log{"rtb.Text= wml:[<DIV>x</DIV>]"} + showsMarkup},
        {"plain, markup, pictures",
         {vPLain, u"", u"<img>", u"", true},
         {vMarkup, vMarkup, Kept},
         looksForDivAroundPictures + convertsPage("<img>") + Log{"rtb.Text= wml:[<img>]"} +
             showsMarkup},
        {"plain, markup, pictures, no div",
         {vPLain, u"", u"<img>"},
         {vMarkup, vMarkup, Kept},
         looksForDivAroundPictures + Log{"innerHTML", "innerHTML= <BODY><DIV><img></DIV></BODY>"} +
             convertsPage("<BODY><DIV><img></DIV></BODY>") +
             Log{"rtb.Text= wml:[<BODY><DIV><img></DIV></BODY>]"} + showsMarkup},
        {"plain, markup, empty",
         {vPLain, u"stale"},
         {vMarkup, vMarkup, Kept},
         Log{"innerHTML", "innerText"} + writesBlankDeck + showsMarkup},
        {"plain, markup, refused",
         {vPLain, u"stale", u"REFUSED", u"x"},
         {vMarkup, vPLain, Kept},
         looksForDiv + Log{"innerHTML", "innerHTML= <DIV>REFUSED</DIV>"} +
             convertsPage("<DIV>REFUSED</DIV>") + refusal + showsPage},

        {"markup, plain",
         {vMarkup},
         {vPLain, vPLain, Taken},
         convertsMarkup("<wml>t</wml>") + Log{"innerHTML= html:<wml>t</wml>"} + showsPage},
        {"markup, plain, refused",
         {vMarkup, u"<wml>REFUSED</wml>"},
         {vPLain, vMarkup, Taken},
         convertsMarkup("<wml>REFUSED</wml>") + refusal + showsMarkup},
        {"markup, plain, not well-formed",
         {vMarkup, u"ILLFORMED"},
         {vPLain, vMarkup, Taken},
         convertsMarkup("ILLFORMED") + refusal + showsMarkup},
        {"markup, plain, no text",
         {vMarkup, u""},
         {vPLain, vPLain, Parsed},
         parsesMarkup("") + writesBlankPage + showsPage},
        {"markup, plain, empty deck",
         {vMarkup, u"<wml></wml>"},
         {vPLain, vPLain, Parsed},
         parsesMarkup("<wml></wml>") + writesBlankPage + showsPage},
        {"markup, plain, no deck",
         {vMarkup, u"<other>x</other>"},
         {vPLain, vPLain, Parsed},
         parsesMarkup("<other>x</other>") + writesBlankPage + showsPage},
        {"markup, plain, second deck",
         {vMarkup, u"<wml></wml><wml>x</wml>"},
         {vPLain, vPLain, Parsed},
         parsesMarkup("<wml></wml><wml>x</wml>") + writesBlankPage + showsPage},

        {"none, no view", {none}, {noView, noView, Kept}, showsNeither},
        {"plain, no view", {vPLain}, {noView, noView, Kept}, showsNeither},
        {"markup, no view", {vMarkup}, {noView, noView, Kept}, showsNeither},
        {"plain, none", {vPLain}, {none, none, Kept}, showsNeither},
        {"no view, plain", {noView}, {vPLain, vPLain, Kept}, showsPage},
        {"no view, markup", {noView}, {vMarkup, vMarkup, Kept}, showsMarkup},
    };
    for (const Switch& row : table) {
        SCOPED_TRACE(row.name);
        const auto doc = documentIn(row.before);
        const auto dom = doc->DOM();
        const bool wasVisible = rtb->visible;
        sink.hooks["OnParseError"] = [&] { // nothing has gone back yet
            EXPECT_EQ(doc->view(), row.after.set);
            EXPECT_EQ(rtb->visible, wasVisible);
        };
        EXPECT_EQ(switchTo(*doc, row.after.set), row.log);
        EXPECT_EQ(doc->view(), row.after.view);
        EXPECT_EQ(doc->Content(), row.after.held == Taken ? row.before.markup : u"old");
        EXPECT_EQ(doc->DOM() == dom, row.after.held == Kept);
    }
}

TEST_F(Views, ARefusedSwitchIsTriedAgain) {
    const auto doc = documentIn({none, u"<wml>ILLFORMED</wml>"});
    const Log refused = convertsMarkup("<wml>ILLFORMED</wml>") + refusal + showsMarkup;
    EXPECT_EQ(switchTo(*doc, vPLain), refused);
    EXPECT_EQ(doc->DOM()->xml(), u"");
    rtb->text = u"<wml>ILLFORMED</wml>"; // without what the formatter did
    EXPECT_EQ(switchTo(*doc, vPLain), refused);
    EXPECT_EQ(body().html, u"");
}

TEST_F(Views, AMissingControlFailsWithTheViewAlreadyChanged) {
    const Before page{vPLain, u"", u"x", u"x", true};
    struct Row {
        Before before;
        enumView to;
        bool hasPage;
        bool hasMarkup;
        Log log;
        bool fails;
    };
    const std::vector<Row> table{
        {{none}, vPLain, false, true, convertsMarkup("<wml>t</wml>"), true},
        {{none, u""}, vPLain, false, true, parsesMarkup(""), true},
        {{vMarkup}, vPLain, true, false, {}, true},
        {page, vMarkup, true, false, looksForDiv + convertsPage("x"), true},
        {{vPLain}, vMarkup, true, false, {"innerHTML", "innerText"}, true},
        {page, vMarkup, false, true, {}, true},
        {{none}, vMarkup, true, false, {"browser.Visible= False"}, false},
        {{vMarkup}, noView, false, true, {"rtb.Visible= False"}, false},
        {{noView}, vPLain, false, false, {}, false},
    };
    for (const Row& row : table) {
        const auto doc = documentIn(row.before);
        if (!row.hasPage) {
            doc->wbPlain(nullptr);
        }
        if (!row.hasMarkup) {
            doc->MuRtb(nullptr);
        }
        world.take();
        EXPECT_EQ(codeOf([&] { doc->view(row.to); }),
                  row.fails ? FailureCode::ObjectNotSet : FailureCode{});
        EXPECT_EQ(world.take(), row.log);
        EXPECT_EQ(doc->view(), row.to);
    }
}

TEST_F(Views, TheFormatterIsToldLast) {
    for (const char* const call : {"rtb.Visible=", "browser.Visible="}) {
        const auto doc = documentIn({none});
        world.fails = {{call, FailureCode::ObjectNotSet}};
        EXPECT_THROW(doc->view(vPLain), Failure);
        world = {};
        EXPECT_EQ(formatsIn(*doc), "formats markup");
    }
    const auto doc = documentIn({none});
    EXPECT_EQ(codeOf([&] { doc->view(enumView{70000}); }), FailureCode::Overflow);
    doc->DocType(dcXML); // has no formatter
    doc->view(vMarkup);
    EXPECT_EQ(doc->view(), vMarkup);
}

TEST_F(Views, AHandlerMaySwitchDuringARefusal) {
    const auto doc = documentIn({none, u"<wml>REFUSED</wml>"});
    sink.hooks["OnParseError"] = [&] {
        doc->view(vMarkup); // from the refused view, with an empty page
        doc->view(vPLain);
    };
    const Log blankDeck = parsesMarkup(R"(<?xml version="1.0" encoding="UTF-8"?><wml></wml>)");
    const Log expected =
        convertsMarkup("<wml>REFUSED</wml>") + refusal + Log{"innerHTML", "innerText"} +
        writesBlankDeck + Log{"rtb.Visible= True", "browser.Visible= False"} + blankDeck +
        writesBlankPage + Log{"rtb.Visible= False", "browser.Visible= True"} + showsMarkup;
    EXPECT_EQ(switchTo(*doc, vPLain), expected);
    EXPECT_EQ(doc->view(), vMarkup);
}

TEST_F(Views, AHostMaySwitchWhileTheBrowserNavigates) {
    const auto doc = documentIn({none});
    world.onDoEvents = [&] {
        doc->view(vMarkup);
        browser->events().raise(&BrowserControlEvents::NavigateComplete2);
    };
    browser->events().raise(&BrowserControlEvents::BeforeNavigate2);
    const Log blankDeck = parsesMarkup(R"(<?xml version="1.0" encoding="UTF-8"?><wml></wml>)");
    const Log expected = Log({"DoEvents", "innerHTML", "innerText"}) + writesBlankDeck +
                         Log{"rtb.Visible= True", "browser.Visible= False"} + blankDeck +
                         writesBlankPage + showsMarkup;
    EXPECT_EQ(switchTo(*doc, vPLain), expected);
    EXPECT_EQ(doc->view(), vMarkup);
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
              rebuilt + convertsMarkup("<wml>t</wml>") + Log{"innerHTML= html:<wml>t</wml>"});
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
