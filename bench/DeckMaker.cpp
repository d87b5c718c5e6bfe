#include "bench/DeckMaker.h"

#include <array>
#include <random>

namespace bench {

namespace {

constexpr std::array words{
    "weather", "today",   "the",         "line",    "is",      "from",
    "city",    "to",      "train",       "station", "at",      "market",
    "price",   "of",      "a",           "ticket",  "and",     "news",
    "sport",   "results", "caf\xC3\xA9", "for",     "evening", "M\xC3\xBCnchen",
    "your",    "account", "balance",     "call",    "us",      "on",
    "next",    "stop",    "delayed",     "minutes", "gate",    "\xE2\x82\xAC 12",
    "fresh",   "menu",    "more",        "help",    "search",  "result",
    "page"};

class DeckMaker {
public:
    explicit DeckMaker(unsigned seed)
        : m_random(seed) {}

    std::string make(std::size_t cards, std::size_t bytes, const std::string& doctype) {
        m_text = "<?xml version=\"1.0\"?>\n<!DOCTYPE wml " + doctype + ">\n";
        m_text +=
            "<!-- Made for measuring. -->\n<wml>\n  <head>\n"
            "    <meta name=\"author\" content=\"bench\"/>\n"
            "    <meta http-equiv=\"Cache-Control\" content=\"max-age=600\"/>\n  </head>\n"
            "  <template>\n    <do type=\"prev\" label=\"Back\"><prev/></do>\n  </template>\n";
        for (std::size_t count = 0; count < cards || m_text.size() < bytes; ++count) {
            card(count);
        }
        m_text += "</wml>\n";
        return std::move(m_text);
    }

private:
    unsigned below(unsigned n) { return static_cast<unsigned>(m_random() % n); }
    bool chance(unsigned oneIn) { return below(oneIn) == 0; }

    void add(const std::string& text) { m_text += text; }
    void addNumber(std::size_t number) { m_text += std::to_string(number); }

    /// Running text of `count` words.
    void prose(unsigned count) {
        for (unsigned i = 0; i < count; ++i) {
            add(i == 0 ? "" : " ");
            add(words[below(words.size())]);
            if (chance(40)) {
                add(chance(2) ? " &amp;" : " &#233;t&#xE9;");
            } else if (chance(30)) {
                add(" $(name)");
            }
        }
    }

    void card(std::size_t number) {
        add("\n  <card id=\"c");
        addNumber(number);
        add("\" title=\"");
        prose(1 + below(3));
        add("\">\n");
        if (chance(8)) {
            add("    <onevent type=\"onenterforward\"><refresh><setvar name=\"unit\" "
                "value=\"C\"/></refresh></onevent>\n");
        }
        if (chance(12)) {
            add("    <timer value=\"30\"/>\n");
        }
        if (chance(3)) {
            softKey(number);
        }
        const unsigned blocks = 2 + below(3);
        for (unsigned i = 0; i < blocks; ++i) {
            block(number);
        }
        add("  </card>\n");
        if (chance(20)) {
            add("  <!-- "), prose(6), add(" -->\n");
        }
    }

    void softKey(std::size_t number) {
        add("    <do type=\"accept\" label=\"Send\">\n      <go href=\"take.php?c=");
        addNumber(number);
        add("&amp;v=2\" method=\"post\">\n        <postfield name=\"name\" value=\"$(name)\"/>\n"
            "        <setvar name=\"seen\" value=\"yes\"/>\n      </go>\n    </do>\n");
    }

    void block(std::size_t number) {
        switch (below(10)) {
        case 0:
            table();
            break;
        case 1:
            choice();
            break;
        case 2:
            form();
            break;
        case 3:
            links(number);
            break;
        case 4:
            add("    <pre>\n"), prose(12), add("\n   "), prose(5), add("</pre>\n");
            break;
        default:
            paragraph();
        }
    }

    void paragraph() {
        constexpr std::array styles{"b", "i", "u", "em", "strong", "big", "small"};
        add(chance(3) ? "    <p align=\"center\">\n      " : "    <p>\n      ");
        const unsigned runs = 1 + below(4);
        for (unsigned i = 0; i < runs; ++i) {
            const std::string style = styles[below(styles.size())];
            prose(4 + below(12));
            add(" <" + style + ">"), prose(2), add("</" + style + ">");
            add(chance(2) ? "<br/>\n      " : " ");
        }
        if (chance(6)) {
            add(R"(<img src="images/logo.wbmp" alt=")"), prose(2), add("\"/>");
        }
        if (chance(15)) {
            add("<![CDATA[a < b & c]]>");
        }
        add("\n    </p>\n");
    }

    void table() {
        add("    <p>\n      <table columns=\"3\" title=\""), prose(2), add("\">\n");
        const unsigned rows = 2 + below(4);
        for (unsigned row = 0; row < rows; ++row) {
            add("        <tr>");
            for (int column = 0; column < 3; ++column) {
                add("<td>"), prose(1 + below(2)), add("</td>");
            }
            add("</tr>\n");
        }
        add("      </table>\n    </p>\n");
    }

    void choice() {
        add("    <p>\n      "), prose(3), add("\n      <select name=\"town\" title=\"Town\">\n");
        const unsigned options = 2 + below(5);
        for (unsigned i = 0; i < options; ++i) {
            add("        <option value=\"");
            addNumber(i);
            add("\">"), prose(2), add("</option>\n");
        }
        add("      </select>\n    </p>\n");
    }

    void form() {
        add("    <p>\n      <fieldset title=\""), prose(2), add("\">\n        "), prose(2);
        add(": <input name=\"name\" type=\"text\" maxlength=\"20\" emptyok=\"true\"/><br/>\n       "
            " ");
        prose(2);
        add(": <input name=\"pin\" type=\"password\" format=\"4N\"/>\n      </fieldset>\n    "
            "</p>\n");
    }

    void links(std::size_t number) {
        add("    <p mode=\"nowrap\">\n");
        const unsigned count = 2 + below(4);
        for (unsigned i = 0; i < count; ++i) {
            add("      <a href=\"deck.wml#c");
            addNumber(number + i);
            add(R"(" title="Go">)"), prose(2), add("</a><br/>\n");
        }
        add("      <anchor>"), prose(2), add(R"(<go href="#c0"/></anchor>)"), add("\n    </p>\n");
    }

    std::mt19937 m_random;
    std::string m_text;
};

} // namespace

std::string makeDeck(unsigned seed, std::size_t cards, std::size_t bytes,
                     const std::string& doctype) {
    return DeckMaker(seed).make(cards, bytes, doctype);
}

} // namespace bench
