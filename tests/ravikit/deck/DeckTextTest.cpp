// Decks on their way in and out.

#include "ravikit/deck/DeckText.h"
#include "ravikit/xml/Parser.h"
#include "support/Test.h"

namespace {

using ravikit::exportDeck;
using namespace std::string_literals;

const std::u16string declaration = u"<?xml version=\"1.0\" encoding=\"UTF-8\"?>";
const std::u16string doctype = u"<!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.3//EN\" "
                               u"\"http://www.wapforum.org/DTD/wml13.dtd\">";

TEST(DeckText, GoesOutWithWhatADeckLacks) {
    EXPECT_TRUE(ravikit::parse(exportDeck(u"<!-- c --><wml><card/></wml>"))->wellFormed());
    EXPECT_EQ(exportDeck(u"<wml/>"), declaration + u"\n" + doctype + u"\n<wml/>");
    EXPECT_EQ(exportDeck(u"<?xml version='1.0'?>\r\n<!-- c -->\r\n<wml/>\n"),
              u"<?xml version='1.0'?>\r\n<!-- c -->\r\n" + doctype + u"\r\n<wml/>\n");
    EXPECT_EQ(exportDeck(u"<?xml version='1.0'?><?p?><wml/>"),
              u"<?xml version='1.0'?><?p?>\n" + doctype + u"\n<wml/>");
    EXPECT_EQ(exportDeck(u"<!-- c --> <!DOCTYPE wml SYSTEM 'own'><wml/>"),
              declaration + u"\n<!-- c --> <!DOCTYPE wml SYSTEM 'own'><wml/>");
    EXPECT_EQ(exportDeck(u"<?xml version = '1.0' encoding\n=\t'koi8-r' ?><html/>"),
              u"<?xml version = '1.0' encoding\n=\t'UTF-8' ?><html/>");
    EXPECT_EQ(exportDeck(u"\xFEFF<wml/>"), u"\xFEFF" + declaration + u"\n" + doctype + u"\n<wml/>");
    for (const std::u16string_view same :
         {u"", u"text", u"<html/>", u"<?xml version='1.0' encoding='utf-8'?><!DOCTYPE wml><wml/>",
          u" <?xml version='1.0' encoding='koi8-r'?><wml/>", u"stray <wml/>", u"</x><wml/>",
          u"<!-- <wml/>", u"<?xml version='1.0 encoding=koi8-r'?><html/>"}) {
        EXPECT_EQ(exportDeck(std::u16string(same)), same);
    }
}

/// Random texts of the pieces that a head is made of, broken ones too.
TEST(DeckText, GoesOutTheSameTheSecondTimeAndLosesNothing) {
    static constexpr std::u16string_view pieces[] = {
        // The head.
        u"<?xml version='1.0'?>", u"<?xml encoding='latin1'?>", u"<?xml", u"?>", u"<!--", u"-->",
        u"<wml>", u"<wml/>", u"</wml>", u"<html/>", u"<!DOCTYPE wml", u"<!DOCTYPE wml>",

        // What breaks it.
        u"[", u"]", u">", u" ", u"\r\n", u"\n", u"x", u"<?p q?>", u"\"", u"\xFEFF", u"\xD800",
        u"<![CDATA["};
    std::mt19937 random(3); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same texts each time
    int changed = 0;
    for (int i = 0; i < 20000; ++i) {
        std::u16string text;
        for (std::size_t count = random() % 8; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
        }
        const std::u16string out = exportDeck(text);
        ASSERT_EQ(exportDeck(out), out);
        const bool wasGood = ravikit::parse(text)->wellFormed();
        ASSERT_TRUE(!wasGood || ravikit::parse(out)->wellFormed());
        // Without what was put in, it is what it was.
        std::u16string without = out;
        const auto drop = [&](const std::u16string& added) {
            if (const std::size_t at = without.find(added);
                at != without.npos && text.find(added) == text.npos) {
                without.erase(at, added.size());
            }
        };
        drop(declaration);
        drop(doctype);
        const auto withoutBreaks = [](std::u16string s) {
            std::erase(s, u'\n');
            std::erase(s, u'\r');
            for (std::size_t at = s.find(u"latin1"); at != std::u16string::npos;) {
                s.replace(at, 6, u"UTF-8");
                at = s.find(u"latin1");
            }
            return s;
        };
        ASSERT_EQ(withoutBreaks(without), withoutBreaks(text));
        changed += out == text ? 0 : 1;
    }
    EXPECT_GT(changed, 1000);
}

} // namespace
