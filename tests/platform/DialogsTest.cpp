#include "platform/TerminalDialogs.h"
#include "platform/TerminalForm.h"
#include "support/Test.h"
#include "tests/platform/TempFolder.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

using namespace tessaly;

namespace {

constexpr auto question = MsgBoxFlags::ExclamationYesNo;

/// What has been written to a descriptor that does not wait.
std::string readWritten(int descriptor) {
    std::string text;
    std::array<char, 4096> part = {};
    for (ssize_t count = 0; (count = read(descriptor, part.data(), part.size())) > 0;) {
        text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::array<int, 2> makePipe() {
    std::array<int, 2> ends = {};
    EXPECT_EQ(pipe2(ends.data(), O_NONBLOCK), 0);
    return ends;
}

/// Nobody: an input with an answer that must not be taken, an output to look at.
class Unattended : public testing::Test {
protected:
    Unattended() { EXPECT_EQ(write(m_in[1], "y\ny\n", 4), 4); }
    ~Unattended() override {
        for (const int descriptor : {m_in[0], m_in[1], m_out[0], m_out[1]}) {
            close(descriptor);
        }
    }

    Terminal terminal() const { return Terminal(m_in[0], m_out[1]); }
    std::string written() const { return readWritten(m_out[0]); }

private:
    std::array<int, 2> m_in = makePipe();
    std::array<int, 2> m_out = makePipe();

protected:
    TerminalDialogs dialogs{terminal()};
};

/// Somebody who has typed ahead.
class Attended : public testing::Test {
protected:
    Attended() {
        grantpt(m_master);
        unlockpt(m_master);
        m_slave = open(ptsname(m_master), O_RDWR | O_NOCTTY);
        fcntl(m_master, F_SETFL, O_NONBLOCK);
        // The echo of what is typed would come in between at any place.
        termios settings = {};
        tcgetattr(m_slave, &settings);
        settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        tcsetattr(m_slave, TCSANOW, &settings);
    }
    ~Attended() override {
        close(m_slave);
        close(m_master);
    }

    void type(const std::string& keys) const {
        EXPECT_EQ(write(m_master, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
    }
    /// What the terminal has shown since the last call. It arrives late: a mark is sent after it.
    std::string shown() const {
        EXPECT_EQ(write(m_slave, "\x01", 1), 1);
        std::string text;
        pollfd awaited = {m_master, POLLIN, 0};
        while (!text.ends_with('\x01') && poll(&awaited, 1, 5'000) == 1) {
            text += readWritten(m_master);
        }
        return text;
    }
    Terminal terminal() const { return Terminal(m_slave, m_slave); }
    TerminalDialogs dialogs() const { return TerminalDialogs(terminal()); }

private:
    int m_master = posix_openpt(O_RDWR | O_NOCTTY);

protected:
    int m_slave = -1;
};

} // namespace

TEST_F(Unattended, BoxesAreShownAndQuestionsAreDeclined) {
    EXPECT_EQ(dialogs.MsgBox(u"a\nb\x1B[2J\u0085", MsgBoxFlags::Critical, u"Title"),
              MsgBoxAnswer::Ok);
    EXPECT_EQ(written(), "Title: a\nb\xEF\xBF\xBD[2J\xEF\xBF\xBD\n");
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(written(), "T: Overwrite?\n(nobody to ask: answered No)\n");
    EXPECT_EQ(dialogs.InputBox(u"Name?", u"T", u"default"), u"");
    EXPECT_EQ(written(), "T: Name?\n(nobody to ask: taken as cancelled)\n");
}

TEST_F(Unattended, OnlyTheQuestionBehindACancelledInputIsAccepted) {
    dialogs.InputBox(u"Name?", u"T", u"");
    EXPECT_EQ(dialogs.MsgBox(u"Give up?", question, u"T"), MsgBoxAnswer::Yes);
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    dialogs.InputBox(u"Name?", u"T", u"");
    dialogs.MsgBox(u"Note", MsgBoxFlags::Information, u"T");
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    dialogs.InputBox(u"Name?", u"T", u"");
    dialogs.workGoesOn();
    EXPECT_EQ(dialogs.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
}

TEST_F(Attended, AnswersAreReadLineByLine) {
    type("maybe\nYES\nn\n\nde\xC3\xA7k\n\n");
    TerminalDialogs dialog = dialogs();
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::Yes);
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No) << "Enter alone";
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"de\u00E7k");
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"old");
    const std::string seen = shown();
    std::size_t asked = 0;
    for (std::size_t at = 0; (at = seen.find("[y/N]", at)) != seen.npos; ++at) {
        ++asked;
    }
    EXPECT_EQ(asked, 4U) << "again after the first answer";
}

TEST_F(Attended, TheEndOfTheInputIsNoAnswer) {
    type("\x04\x04\x04");
    TerminalDialogs dialog = dialogs();
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"");
    EXPECT_EQ(dialog.MsgBox(u"Give up?", question, u"T"), MsgBoxAnswer::Yes);
}

namespace {

/// A form that asks to go ahead or, after No, for a name of more than two letters.
struct Question : ModalFormEvents {
    explicit Question(Terminal terminal)
        : form(layout(), terminal) {
        ask(true);
    }

    static FormLayout layout() {
        using enum FormControlKind;
        FormLayout layout{u"Title", 0, 0, {}};
        layout.controls = {
            {u"reason", Label, 0, 0, 900, 200, u"Go \u001B[2J\nahead?", u"", nullptr},
            {u"yes", Button, 500, 300, 90, 50, u"Yes", u"Clicking \"yes\" goes ahead.", nullptr},
            {u"no", Button, 600, 300, 90, 50, u"No", u"Asks for a name.", nullptr},
            {u"name", TextBox, 200, 300, 90, 50, u"ab", u"", nullptr},
            {u"caption", Label, 100, 310, 90, 50, u"Name:", u"", nullptr},
            {u"ok", Button, 500, 300, 90, 50, u"OK", u"", nullptr},
            {u"none", Button, 700, 300, 90, 50, u"None", u"Clicking \"none\" stops.", nullptr},
        };
        return layout;
    }

    void ask(bool yesOrNo) {
        for (const auto* button : {u"yes", u"no"}) {
            form.visible(button, yesOrNo);
        }
        for (const auto* control : {u"name", u"caption", u"ok", u"none"}) {
            form.visible(control, !yesOrNo);
        }
        form.enabled(u"ok", false);
    }
    void OnClick(const std::u16string& control) override {
        heard += control + u' ';
        if (control == u"no") {
            ask(false);
        } else {
            form.hide();
        }
    }
    void OnChange(const std::u16string& control) override {
        heard += u'*' + control + u' ';
        form.enabled(u"ok", form.text(u"name").size() > 2);
    }

    TerminalForm form;
    std::u16string heard;
    Subscription bond = form.events().advise(*this);
};

} // namespace

TEST_F(Unattended, AFormIsSaidAndKeepsItsState) {
    Question asked(terminal());
    asked.form.text(u"name", u"deck");
    asked.form.text(u"name", u"deck");
    asked.form.text(u"reason", u"Overwrite?");
    asked.form.show();
    EXPECT_EQ(written(), "Title: Overwrite?\n(nobody to ask: taken as closed)\n");
    EXPECT_EQ(asked.heard, u"*name ");
    EXPECT_EQ(asked.form.text(u"name"), u"deck");
    EXPECT_TRUE(asked.form.isEnabled(u"ok") && !asked.form.isVisible(u"ok"));
    EXPECT_EQ(support::failureOf([&] { asked.form.text(u"Name"); }), 5);
}

TEST_F(Attended, AFormIsAnsweredInWords) {
    const struct {
        const char* typed;
        const char16_t* heard;
        const char* shown;
    } cases[] = {
        {"y\n", u"yes ",
         "  yes: Typing \"yes\" goes ahead.\r\n  no: Asks for a name.\r\nyes or no? "},
        {"YES\n", u"yes ", "Title: Go \xEF\xBF\xBD[2J\r\nahead?\r\n"},
        {"maybe\n\nnone\ny\n", u"yes ", "yes or no? yes or no? yes or no? yes or no? "},
        {"n\nabc\n", u"no *name ok ", "  /none: Typing \"/none\" stops.\r\nName: [ab] "},
        {"n\n\na\n\nlonger\n", u"no *name *name ok ",
         "\"ab\" cannot be taken here; please type another.\r\nName: [ab] \"a\" cannot"},
        {"n\nno\n/y\n/n\n", u"no *name none ", "Name: [no] Name: [no] "},
        {"\x04", u"", "yes or no? \r\n"},
        {"n\n\x04", u"no ", "Name: [ab] \r\n"},
    };
    for (const auto& one : cases) {
        Question asked(terminal());
        type(one.typed);
        asked.form.show();
        EXPECT_EQ(asked.heard, one.heard) << one.typed;
        const std::string seen = shown();
        EXPECT_NE(seen.find(one.shown), std::string::npos) << one.typed << " showed\n" << seen;
    }
}

TEST_F(Attended, WhoeverHasLeftAnswersNothing) {
    const std::array<int, 2> leaving = makePipe();
    type("y\n");
    EXPECT_EQ(write(leaving[1], "x", 1), 1);
    TerminalDialogs dialog(Terminal(m_slave, m_slave, leaving[0]));
    EXPECT_EQ(dialog.MsgBox(u"Overwrite?", question, u"T"), MsgBoxAnswer::No);
    EXPECT_EQ(dialog.InputBox(u"Name?", u"T", u"old"), u"");
    close(leaving[0]);
    close(leaving[1]);
}
