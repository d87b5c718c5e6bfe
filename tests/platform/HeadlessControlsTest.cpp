#include "platform/DefaultPlatform.h"
#include "platform/controls/HeadlessBrowser.h"
#include "platform/controls/HeadlessRichText.h"
#include "platform/page/HeadlessPage.h"
#include "support/Test.h"

using namespace tessaly;

TEST(HeadlessRichText, TheSelectionStaysInsideTheText) {
    HeadlessRichText box;
    box.Text(u"abcdef");
    box.SelStart(4);
    box.SelLength(99);
    EXPECT_EQ(box.SelText(), u"ef");
    box.SelText(u"XYZ");
    EXPECT_EQ(box.Text(), u"abcdXYZ");
    EXPECT_EQ(box.SelStart(), 7);
    EXPECT_EQ(box.SelLength(), 0);
    box.SelStart(-5);
    box.SelLength(-5);
    box.SelText(u">");
    EXPECT_EQ(box.Text(), u">abcdXYZ");
    box.SelStart(3);
    box.SelLength(2);
    box.SelStart(99);
    EXPECT_EQ(box.SelStart(), 8);
    EXPECT_EQ(box.SelLength(), 0);
    box.Text(u"x");
    EXPECT_EQ(box.SelStart(), 0);
}

TEST(HeadlessRichText, ASelectionTakesInWholeCharacters) {
    HeadlessRichText box;
    box.Text(u"a\xD83D\xDE00z");
    box.SelStart(2);
    EXPECT_EQ(box.SelStart(), 1);
    box.SelLength(1);
    EXPECT_EQ(box.SelText(), u"\xD83D\xDE00");
    box.SelText(u"");
    EXPECT_EQ(box.Text(), u"az");
    box.Text(u"\xDE00z");
    box.SelText(u"\xD83D");
    EXPECT_EQ(box.SelStart(), 2) << "not between halves that came together";
}

TEST(MessageLoop, RunsWhatIsPendingInOrderAndAlwaysReturns) {
    MessageLoop loop;
    std::vector<int> ran;
    loop.post([&] {
        ran.push_back(1);
        loop.post([&] { ran.push_back(3); });
    });
    loop.post([&] { ran.push_back(2); });
    loop.DoEvents();
    EXPECT_EQ(ran, (std::vector{1, 2, 3}));

    int runs = 0;
    std::function<void()> again = [&] {
        ++runs;
        loop.post(again);
        loop.post([&] { loop.DoEvents(); });
    };
    loop.post(again);
    loop.DoEvents();
    EXPECT_GT(runs, 1);
}

TEST(MessageLoop, AFailingTaskLeavesTheOthers) {
    MessageLoop loop;
    int runs = 0;
    loop.post([] { throw std::runtime_error("task"); });
    loop.post([&] { ++runs; });
    EXPECT_THROW(loop.DoEvents(), std::runtime_error);
    loop.DoEvents();
    EXPECT_EQ(runs, 1);
}

namespace {

struct Navigations : BrowserControlEvents {
    void BeforeNavigate2() override { heard += "start "; }
    void NavigateComplete2() override { heard += "end "; }
    std::string heard;
};

} // namespace

TEST(HeadlessBrowser, ANavigationEndsInTheMessageLoop) {
    DefaultPlatform platform;
    auto browser = std::make_shared<HeadlessBrowser>(platform.messageLoop());
    const auto first = makePage(u"");
    const auto second = makePage(u"");
    Navigations navigations;
    const auto bond = browser->events().advise(navigations);
    browser->Document(first);
    browser->navigate(second);
    EXPECT_EQ(navigations.heard, "start ");
    EXPECT_EQ(browser->Document(), first);
    platform.DoEvents();
    EXPECT_EQ(navigations.heard, "start end ");
    EXPECT_EQ(browser->Document(), second);

    browser->navigate(first);
    browser.reset();
    platform.DoEvents();
    EXPECT_EQ(navigations.heard, "start end start ");
}
