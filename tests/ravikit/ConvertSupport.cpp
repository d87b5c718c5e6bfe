#include "ravikit/ConvertSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace convert_test {

namespace {

const ravikit::Declarations& known() {
    return ravikit::Dtd::builtIn()->declarations();
}

std::string reasons(const ravikit::Problems& problems) {
    return problems.empty() ? std::string() : toUtf8(problems.list().front().reason);
}

/// Writes a deck at random; what it may hold where follows the DTD unless it is to be invalid.
class Generator {
public:
    Generator(std::mt19937& random, bool valid)
        : m_random(random)
        , m_valid(valid) {}

    std::u16string deck() {
        m_out = pick({u"", u"<?xml version='1.0'?>\r\n", u"<!-- first -->\n",
                      u"<?xml version=\"1.0\"?><!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML "
                      u"1.2//EN\" \"x\">\n"});
        m_out += pick({u"<wml>", u"<wml >\n", u"<wml>\r\n  "});
        m_out += pick({u"", u"<head><meta name=\"a\" content='b'/></head>\n",
                       u"<template><do type=\"prev\"><prev/></do></template>"});
        for (unsigned cards = 1 + below(3); cards > 0; --cards) {
            card();
            between();
        }
        return m_out + pick({u"</wml>", u"</wml\n>\n", u"</wml><!-- last -->\r\n"});
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(m_random()) % limit; }
    std::u16string pick(std::initializer_list<const char16_t*> texts) {
        return *(texts.begin() + below(static_cast<unsigned>(texts.size())));
    }
    void between() {
        m_out += pick({u"", u"\n", u"\n    ", u"\r\n\t", u"<!-- c -->", u"\n <?p i?>\n "});
    }
    void id() {
        if (below(4) == 0) {
            const std::string number = std::to_string(++m_ids);
            m_out += u" id=\"n" + std::u16string(number.begin(), number.end()) + u"\"";
        }
    }

    void card() {
        m_out += u"<card";
        id();
        m_out += pick({u"", u" title=\"T &amp; u\"", u"\n title = 'x'"}) + u'>';
        m_out +=
            pick({u"", u"<onevent type=\"ontimer\"><noop/></onevent>\n", u"<timer value='5'/>"});
        for (unsigned blocks = below(5); blocks > 0; --blocks) {
            between();
            if (!m_valid && below(4) == 0) {
                inlines(2);
                continue;
            }
            const unsigned kind = below(8);
            if (kind == 0) {
                m_out += u"<do type=\"accept\" label='go &lt;'><go href=\"#x\"/></do>";
            } else if (kind == 1) {
                m_out += u"<pre>" + pick({u"", u"\n", u" a\n  b"}) + u"x <b>y</b>\n</pre>";
            } else {
                m_out += u"<p";
                id();
                m_out += pick({u"", u" align=\"center\"", u" mode='nowrap' align='right'"}) + u'>';
                inlines(3);
                m_out += pick({u"</p>", u"</p >"});
            }
        }
        between();
        m_out += u"</card>";
    }

    void inlines(unsigned depth) {
        for (unsigned count = below(6); count > 0; --count) {
            one(depth);
        }
    }

    void words() {
        m_out += pick({u"word", u" two words ", u"x &#x41;&lt;", u"$(v)", u"\n    ", u"&nbsp;",
                       u"<![CDATA[<c>]]>", u"<!-- k -->", u"\u0416\u65E5", u"<?php q ?>", u" "});
    }

    void one(unsigned depth) {
        const unsigned kind = depth == 0 ? 0 : below(14);
        static constexpr const char16_t* formats[] = {u"b",   u"i",     u"u",     u"em",
                                                      u"big", u"small", u"strong"};
        if (kind < 5) {
            words();
        } else if (kind < 8) {
            const std::u16string name = formats[below(7)];
            m_out += u'<' + name;
            id();
            m_out += u'>';
            const bool field = m_inFormat;
            m_inFormat = true;
            inlines(depth - 1);
            m_inFormat = field;
            m_out += u"</" + name + u'>';
        } else if (kind == 8) {
            m_out += u"<a href=\"u?a&amp;b\">";
            if (m_valid) {
                m_out += pick({u"link", u"<img src='s' alt=\"x\"/>t", u"l<br/>m"});
            } else {
                inlines(depth - 1);
            }
            m_out += u"</a>";
        } else if (kind == 9) {
            m_out += pick({u"<br/>", u"<br />\n", u"<img alt='pic' src=\"p\"/>"});
        } else if (kind == 10) {
            m_out += u"<anchor>do<go href='g'><setvar name=\"v\" value=\"1\"/></go></anchor>";
        } else if (kind == 11 && (!m_inFormat || !m_valid)) {
            m_out +=
                pick({u"<input name=\"n\" value='v'/>", u"<do type=\"x\"><noop/></do>",
                      u"<select>\n<option>a</option><option value='2'>b &gt;</option></select>",
                      u"<fieldset title=\"f\">in</fieldset>"});
        } else if (kind == 12) {
            m_out += u"<table columns=\"1\">\n<tr><td>c <b>d</b></td></tr> </table>";
        } else if (!m_valid) {
            m_out +=
                pick({u"<p>nested</p>", u"<pre> x</pre>", u"<foo a='1'>?</foo>", u"<td>t</td>"});
        }
    }

    std::mt19937& m_random;
    bool m_valid;
    bool m_inFormat = false;
    unsigned m_ids = 0;
    std::u16string m_out;
};

} // namespace

std::vector<Deck> writtenDecks() {
    std::vector<Deck> decks;
    for (const char* folder : {"/tests/ravikit/decks", "/examples/weather"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(TESSALY_SOURCE_DIR) + folder)) {
            if (entry.path().extension() == ".wml") {
                std::ostringstream bytes;
                bytes << std::ifstream(entry.path(), std::ios::binary).rdbuf();
                decks.push_back({entry.path().filename().string(), fromUtf8(bytes.str())});
            }
        }
    }
    std::sort(decks.begin(), decks.end(),
              [](const Deck& a, const Deck& b) { return a.name < b.name; });
    return decks;
}

std::u16string generatedDeck(std::mt19937& random, bool valid) {
    return Generator(random, valid).deck();
}

std::u16string plainOf(const std::u16string& deck) {
    std::u16string text = deck;
    ravikit::Problems problems;
    EXPECT_TRUE(ravikit::markupToPlain(text, true, &known(), problems)) << reasons(problems);
    return text;
}

std::u16string markupOf(const std::u16string& page) {
    std::u16string text = page;
    ravikit::Problems problems;
    EXPECT_TRUE(ravikit::plainToMarkup(text, false, &known(), problems)) << reasons(problems);
    return text;
}

bool isValid(const std::u16string& deck, std::string* why) {
    const auto tree = ravikit::parse(deck, &known());
    ravikit::Problems problems = tree->problems();
    ravikit::Dtd::builtIn()->judge(*tree, problems);
    if (why != nullptr) {
        *why = reasons(problems);
    }
    return problems.empty();
}

std::unique_ptr<PageElement> browse(const std::u16string& page) {
    ravikit::PageTree tree;
    ravikit::Problems problems;
    EXPECT_TRUE(ravikit::readAsBrowser(page, tree, problems)) << reasons(problems);
    return elementsOf(tree);
}

} // namespace convert_test
