#include "platform/terminal/TerminalDialogs.h"
#include "support/Test.h"

#include <fcntl.h>
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
