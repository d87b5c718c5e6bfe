#include "Fakes.h"

using namespace fakes;

namespace {

constexpr char16_t deck[] = u"<wml>t</wml>";
const std::string wrappedPicture = "<BODY><DIV><img></DIV></BODY>";
constexpr enumView none{};
constexpr enumView noView{7};

Log operator+(Log a, const Log& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const Log showsPage{"rtb.Visible= False", "browser.Visible= True", "formats page"};
const Log showsMarkup{"rtb.Visible= True", "browser.Visible= False", "formats markup"};
const Log showsNeither{"rtb.Visible= False", "browser.Visible= False", "formats markup"};
const Log seesNothing{"innerHTML", "innerText"};
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
Log givesPage(const std::string& text) {
    return convertsMarkup(text) + Log{"innerHTML= html:" + text} + showsPage;
}
Log givesBlankPage(const std::string& text) {
    return parsesMarkup(text) + writesBlankPage + showsPage;
}
Log isRefused(const std::string& text) {
    return convertsMarkup(text) + refusal + showsMarkup;
}
Log givesMarkup(const std::string& html) {
    return convertsPage(html) + Log{"rtb.Text= wml:[" + html + "]"} + showsMarkup;
}
Log wrapsPage(const std::string& html) {
    return {"innerHTML", "innerHTML= " + html};
}
Log givesWrapped(const std::string& html) {
    return wrapsPage(html) + givesMarkup(html);
}
/// What a handler sees that goes from an empty page to the markup and back.
Log goesToMarkupAndBack() {
    return seesNothing + writesBlankDeck + Log{"rtb.Visible= True", "browser.Visible= False"} +
           parsesMarkup(R"(<?xml version="1.0" encoding="UTF-8"?><wml></wml>)") + writesBlankPage;
}
const Log looksForDiv{"innerHTML", "innerText", "innerText", "getElementsByTagName div"};
const Log seesPicture{"innerHTML", "innerText", "innerText", "innerHTML",
                      "getElementsByTagName div"};

/// What a document holds before a switch.
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
constexpr After toPlain{vPLain, vPLain, Taken};
constexpr After toBlankPage{vPLain, vPLain, Parsed};
constexpr After backToMarkup{vPLain, vMarkup, Taken};
constexpr After toMarkup{vMarkup, vMarkup, Kept};
constexpr After toNoView{noView, noView, Kept};
struct Switch {
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
        {{none}, {none, none, Kept}, {"formats markup"}},
        {{vPLain}, {vPLain, vPLain, Kept}, {"formats page"}},
        {{vMarkup}, {vMarkup, vMarkup, Kept}, {"formats markup"}},
        {{noView}, {noView, noView, Kept}, {"formats markup"}},

        {{none}, toMarkup, showsMarkup},
        {{none}, toPlain, givesPage("<wml>t</wml>")},
        {{none, u"<wml>REFUSED</wml>"}, backToMarkup, isRefused("<wml>REFUSED</wml>")},
        {{none, u""}, toBlankPage, givesBlankPage("")},

        {{vPLain, u"", u"<p>x</p>", u"x", true}, toMarkup, looksForDiv + givesMarkup("<p>x</p>")},
        {{vPLain, u"", u"x", u"x"}, toMarkup, looksForDiv + givesWrapped("<DIV>x</DIV>")},
        {{vPLain, u"", u"<img>", u"", true}, toMarkup, seesPicture + givesMarkup("<img>")},
        {{vPLain, u"", u"<img>"}, toMarkup, seesPicture + givesWrapped(wrappedPicture)},
        {{vPLain, u"stale"}, toMarkup, seesNothing + writesBlankDeck + showsMarkup},
        {{vPLain, u"stale", u"REFUSED", u"x"},
         {vMarkup, vPLain, Kept},
         looksForDiv + wrapsPage("<DIV>REFUSED</DIV>") + convertsPage("<DIV>REFUSED</DIV>") +
             refusal + showsPage},

        {{vMarkup}, toPlain, givesPage("<wml>t</wml>")},
        {{vMarkup, u"<wml>REFUSED</wml>"}, backToMarkup, isRefused("<wml>REFUSED</wml>")},
        {{vMarkup, u"ILLFORMED"}, backToMarkup, isRefused("ILLFORMED")},
        {{vMarkup, u""}, toBlankPage, givesBlankPage("")},
        {{vMarkup, u"<wml></wml>"}, toBlankPage, givesBlankPage("<wml></wml>")},
        {{vMarkup, u"<other>x</other>"}, toBlankPage, givesBlankPage("<other>x</other>")},
        {{vMarkup, u"<wml></wml><wml>x</wml>"},
         toBlankPage,
         givesBlankPage("<wml></wml><wml>x</wml>")},

        {{none}, toNoView, showsNeither},
        {{vPLain}, toNoView, showsNeither},
        {{vMarkup}, toNoView, showsNeither},
        {{vPLain}, {none, none, Kept}, showsNeither},
        {{noView}, {vPLain, vPLain, Kept}, showsPage},
        {{noView}, toMarkup, showsMarkup},
    };
    for (const Switch& row : table) {
        SCOPED_TRACE("view " + std::to_string(row.before.view) + " to " +
                     std::to_string(row.after.set) + ", markup " + ascii(row.before.markup) +
                     ", page " + ascii(row.before.html) + (row.before.hasDiv ? ", div" : ""));
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
        {{vPLain}, vMarkup, true, false, seesNothing, true},
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
    const Log expected = convertsMarkup("<wml>REFUSED</wml>") + refusal + goesToMarkupAndBack() +
                         Log{"rtb.Visible= False", "browser.Visible= True"} + showsMarkup;
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
    EXPECT_EQ(switchTo(*doc, vPLain), Log{"DoEvents"} + goesToMarkupAndBack() + showsMarkup);
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
    EXPECT_TRUE(doc->view() == vMarkup && world.take().back() == "DoEvents");
    rtb->text = u"<wml>edited</wml>"; // goes out, and not the page that was not written
    world.folders = {u"D:"};
    EXPECT_TRUE(doc->Save(u"D:\\x.wml"));
    EXPECT_EQ(world.files[u"D:\\x.wml"], u"exported:<wml>edited</wml>");
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
