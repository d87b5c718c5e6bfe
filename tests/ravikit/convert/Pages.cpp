#include "tests/ravikit/convert/Pages.h"

#include "platform/page/dom/PageParser.h"

#include "ravikit/convert/Convert.h"
#include "ravikit/html/PageTree.h"
#include "ravikit/text/Chars.h"
#include "ravikit/xml/Parser.h"
#include "support/Iconv.h"
#include "tests/ravikit/validity/WmlDtd.h"

#include <map>
#include <stdexcept>

namespace convert_test {

namespace {

const ravikit::Declarations& known() {
    return wmlDtd()->declarations();
}

/// What a conversion made of `text`, which must have a reason if it refused, and only then.
std::optional<std::u16string> outcome(std::optional<std::u16string> other,
                                      const std::u16string& text,
                                      const ravikit::Problems& problems) {
    expect(problems.empty() == other.has_value(), "a problem, or a refusal without one", text);
    return other;
}

/// How often each character is shown that a deck can hold.
std::map<char16_t, std::size_t> lettersShown(const std::u16string& page) {
    ravikit::PageTree tree;
    ravikit::Problems problems;
    expect(ravikit::readLiterally(page, tree) || ravikit::readAsBrowser(page, tree, problems),
           "not read again", page);
    std::map<char16_t, std::size_t> counts;
    for (std::uint32_t node = 0; node < tree.size(); ++node) {
        const bool isText = tree[node].tag == ravikit::PageTag::None;
        for (const char16_t c : isText ? tree[node].text : ravikit::shownOnPage(tree, node)) {
            const bool isSurrogate = c >= 0xD800 && c < 0xE000;
            if (ravikit::isChar(c) && !ravikit::isBlank(c) && !isSurrogate) {
                ++counts[c];
            }
        }
    }
    return counts;
}

} // namespace

void expect(bool holds, const std::string& what, const std::u16string& a, const std::u16string& b,
            const std::u16string& c) {
    if (!holds) {
        std::string told = what;
        for (const std::u16string* const text : {&a, &b, &c}) {
            told += text->empty() ? "" : "\n---\n" + toUtf8(*text);
        }
        throw std::runtime_error(told);
    }
}

std::optional<std::u16string> pageOf(const std::u16string& deck) {
    ravikit::Problems problems;
    auto page = ravikit::markupToPlain(deck, true, &known(), problems);
    return outcome(std::move(page), deck, problems);
}

std::optional<std::u16string> deckOf(const std::u16string& page) {
    ravikit::Problems problems;
    auto deck = ravikit::plainToMarkup(page, false, &known(), problems);
    return outcome(std::move(deck), page, problems);
}

std::u16string plainOf(const std::u16string& deck) {
    const auto page = pageOf(deck);
    expect(page.has_value(), "refused: " + faultOf(deck), deck);
    return *page;
}

std::u16string markupOf(const std::u16string& page) {
    const auto deck = deckOf(page);
    expect(deck.has_value(), "refused", page);
    return *deck;
}

std::string faultOf(const std::u16string& deck, bool valid) {
    const auto tree = ravikit::parse(deck, &known());
    ravikit::Problems problems = tree->problems();
    if (problems.empty() && valid) {
        wmlDtd()->judge(*tree, problems);
    }
    return problems.empty() ? std::string() : toUtf8(problems.list().front().reason);
}

std::unique_ptr<Dom> browse(const std::u16string& page) try {
    auto dom = std::make_unique<Dom>();
    dom->root(parsePage(*dom, page));
    return dom;
} catch (const std::exception&) {
    return nullptr;
}

std::u16string written(const Dom& page, Writing writing) {
    return outerHtml(*page.body(), writing);
}

std::u16string shownText(const Node& root) {
    std::u16string all;
    for (const Node* node = &root; node != nullptr; node = following(*node, &root)) {
        all += node->isText() ? node->text : u"";
        for (const auto& [name, value] : node->attributes) {
            all += name == u"alt" || name == u"value" || name == u"label" ? value : u"";
        }
    }
    return all;
}

std::u16string fromUtf8(const std::string& bytes) {
    static const support::Iconv decode("UTF-8");
    return decode(bytes).value_or(std::u16string(bytes.begin(), bytes.end()));
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    for (const char16_t c : text) {
        if (c < 0x80) {
            bytes += static_cast<char>(c);
        } else {
            constexpr const char* digits = "0123456789ABCDEF";
            bytes += "\\u";
            for (int shift = 12; shift >= 0; shift -= 4) {
                bytes += digits[c >> shift & 15];
            }
        }
    }
    return bytes;
}

std::u16string letters(std::u16string_view text) {
    std::u16string result;
    for (const char16_t c : text) {
        if (!ravikit::isBlank(c)) {
            result += c;
        }
    }
    return result;
}

void expectKept(const std::u16string& deck) {
    const std::u16string page = plainOf(deck);
    expect(markupOf(page) == deck, "changed by the way there and back", deck, page);
    const auto dom = browse(page);
    expect(dom != nullptr, "no browser takes the page", deck, page);
    const std::u16string modern = written(*dom, Writing::Modern);
    const std::u16string old = written(*dom, Writing::Older);

    ravikit::PageTree tree;
    ravikit::PageTree read;
    ravikit::Problems problems;
    expect(ravikit::readLiterally(page, tree) && ravikit::readAsBrowser(page, read, problems),
           "our own page is not read", page);
    expect(std::equal(tree.nodes().begin(), tree.nodes().end(), read.nodes().begin(),
                      read.nodes().end(),
                      [](const ravikit::PageNode& a, const ravikit::PageNode& b) {
                          return a.tag == b.tag && a.text == b.text && a.next == b.next &&
                                 a.attributes == b.attributes;
                      }),
           "a browser reads the page in another way", page, modern);
    expect(markupOf(modern) == deck, "changed by a browser", deck, page, modern);
    expect(markupOf(old) == deck, "changed by an old browser", deck, page, old);

    // Something beside the deck makes each element be looked at by itself.
    const std::u16string merged = markupOf(u"<P>stray</P>" + modern);
    expect(merged.find(u"stray") != merged.npos, "the stranger is lost", deck, merged);
    const std::string fault = faultOf(merged, faultOf(deck).empty());
    expect(fault.empty(), fault, deck, merged);
}

void expectTaken(const std::u16string& page, bool isOfValidDeck) {
    const std::u16string deck = markupOf(page);
    const std::string fault = faultOf(deck, isOfValidDeck);
    expect(fault.empty(), fault, page, deck);
    const std::u16string shown = plainOf(deck);
    const auto after = lettersShown(shown);
    for (const auto& [letter, count] : lettersShown(page)) {
        const auto found = after.find(letter);
        expect(found != after.end() && found->second >= count, "text is lost",
               std::u16string(1, letter), page, deck);
    }
    expect(markupOf(shown) == deck, "not the same again", deck, shown);
}

} // namespace convert_test
