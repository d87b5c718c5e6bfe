#include "bench/Conversion.h"

#include "bench/Measure.h"

#include "platform/controls/HeadlessBrowser.h"
#include "platform/controls/HeadlessRichText.h"
#include "platform/files/TextCodec.h"
#include "platform/page/HeadlessPage.h"
#include "ravikit/component/DtdCache.h"
#include "ravikit/component/Objects.h"
#include "ravikit/convert/Convert.h"
#include "ravikit/xml/Parser.h"
#include "tessaly.h"

#include <algorithm>

namespace bench {

namespace {

constexpr char byXslt[] = "|libxslt";
constexpr char byTidy[] = "|libtidy";
constexpr char byLibXmlHtml[] = "|libxml2 and a walk";

constexpr char unchanged[] = ", unchanged";
constexpr char edited[] = ", edited";
constexpr char foreign[] = ", foreign";
constexpr char soup[] = ", tag soup";

constexpr std::u16string_view addition = u"Typed by hand. ";

const ravikit::Declarations& known() {
    return tessaly::builtInDtd()->declarations();
}

std::u16string toPlain(const std::u16string& text) {
    ravikit::Problems problems;
    return ravikit::markupToPlain(text, true, &known(), problems).value_or(u"");
}

std::u16string toMarkup(std::u16string_view text) {
    ravikit::Problems problems;
    return ravikit::plainToMarkup(text, false, &known(), problems).value_or(u"");
}

bool isValid(const std::u16string& markup) {
    const auto tree = ravikit::parse(markup, &known());
    ravikit::Problems problems = tree->problems();
    tessaly::builtInDtd()->judge(*tree, problems);
    return problems.empty();
}

/// `html` as a browser has it after parsing.
std::u16string throughBrowser(const std::u16string& html, tessaly::PageWriting writing) {
    const auto page = tessaly::makePage(u"", writing);
    page->body()->innerHTML(html);
    return page->body()->outerHTML();
}

DeckText inBothForms(std::u16string text) {
    return {tessaly::encodeUtf8(text), std::move(text)};
}

/// `page` with some words more in the first plain paragraph of its second half.
std::u16string withAddition(std::u16string page) {
    const std::size_t tag = page.find(u"<p data-mark", page.size() / 2);
    require(tag != std::u16string::npos, "no paragraph to edit");
    return page.insert(page.find(u'>', tag) + 1, addition);
}

std::u16string withoutAddition(std::u16string deck) {
    const std::size_t at = deck.find(addition);
    return at == std::u16string::npos ? deck : deck.erase(at, addition.size());
}

std::u16string without(const std::u16string& page,
                       std::initializer_list<std::u16string_view> tags) {
    std::u16string left;
    for (std::size_t at = 0; at < page.size();) {
        const std::u16string_view rest = std::u16string_view(page).substr(at);
        const auto* const tag = std::find_if(
            tags.begin(), tags.end(), [rest](const auto& one) { return rest.starts_with(one); });
        if (tag != tags.end()) {
            at += tag->size();
        } else {
            left += page[at++];
        }
    }
    return left;
}

std::string lettersOf(const std::string& page) {
    std::string text = HtmlWalk(page).text;
    text.erase(
        std::remove_if(text.begin(), text.end(),
                       [](char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }),
        text.end());
    return text;
}

std::shared_ptr<tessaly::WirelessDocument> withControls(const std::u16string& deck) {
    auto document = std::make_shared<tessaly::WirelessDocument>();
    document->Ravik(tessaly::makeRavik(nullptr));
    document->DocType(tessaly::DocumentType::dcWML);
    document->Content(deck);
    const auto browser =
        std::make_shared<tessaly::HeadlessBrowser>(std::make_shared<tessaly::MessageLoop>());
    browser->Document(tessaly::makePage(u""));
    document->wbPlain(browser);
    document->MuRtb(std::make_shared<tessaly::HeadlessRichText>());
    document->view(tessaly::vMarkup);
    return document;
}

void switchThereAndBack(tessaly::WirelessDocument& document) {
    document.view(tessaly::vPLain);
    document.view(tessaly::vMarkup);
}

} // namespace

Conversion::Conversion(std::span<const Corpus> corpora)
    : m_stylesheet(BENCH_STYLESHEET) {
    for (const Corpus& corpus : corpora) {
        m_pages.push_back(std::make_unique<const Pages>(makePages(corpus)));
        const Pages& pages = *m_pages.back();
        check(pages);
        measureToPlain(pages);
        measureToMarkup(pages, unchanged, pages.unchanged);
        measureToMarkup(pages, edited, pages.edited);
        measureToMarkup(pages, foreign, pages.foreign);
        measureToMarkup(pages, soup, pages.soup);
    }
    measureSwitch(*m_pages.front());
}

Conversion::Pages Conversion::makePages(const Corpus& corpus) const {
    using tessaly::PageWriting;
    const DeckText& deck = corpus.decks.front();
    const std::u16string page = throughBrowser(toPlain(deck.utf16), PageWriting::Modern);
    const std::u16string alien = tessaly::decodeUtf8(m_stylesheet.apply(deck.utf8)).value();
    return {.size = corpus.name,
            .deck = &deck,
            .unchanged = inBothForms(page),
            .edited = inBothForms(withAddition(page)),
            .foreign = inBothForms(throughBrowser(alien, PageWriting::Modern)),
            .soup = inBothForms(without(throughBrowser(alien, PageWriting::Older),
                                        {u"</P>", u"</TD>", u"</TR>", u"</TBODY>"}))};
}

/// Ends the run if someone does something else than the others.
void Conversion::check(const Pages& pages) const {
    const std::u16string& deck = pages.deck->utf16;
    require(lettersOf(m_stylesheet.apply(pages.deck->utf8)) == lettersOf(pages.unchanged.utf8),
            "the stylesheet shows another text");
    require(toMarkup(pages.unchanged.utf16) == deck, "the unchanged page gives another deck");
    const std::u16string changed = toMarkup(pages.edited.utf16);
    require(changed != deck && withoutAddition(changed) == deck,
            "the edited page gives another deck");
    for (const DeckText* const page : {&pages.foreign, &pages.soup}) {
        require(isValid(toMarkup(page->utf16)), "a foreign page gives no valid deck");
        require(lettersOf(page->utf8) == lettersOf(pages.unchanged.utf8),
                "a foreign page has another text");
        require(!tidied(page->utf8).empty(), "libtidy refuses a page");
    }
}

void Conversion::measureToPlain(const Pages& pages) const {
    const std::string name = "to plain " + pages.size;
    measureCalls(name + ours, [&pages] { return toPlain(pages.deck->utf16); });
    measureCalls(name + byXslt, [this, &pages] { return m_stylesheet.apply(pages.deck->utf8); });
}

void Conversion::measureToMarkup(const Pages& pages, const std::string& kind,
                                 const DeckText& page) {
    const std::string name = "to markup " + pages.size + kind;
    measureCalls(name + ours, [&page] { return toMarkup(page.utf16); });
    measureCalls(name + byTidy, [&page] { return tidied(page.utf8); });
    if (kind != soup) {
        measureCalls(name + byLibXmlHtml, [&page] { return HtmlWalk(page.utf8); });
    }
}

void Conversion::measureSwitch(const Pages& pages) {
    const auto document = withControls(pages.deck->utf16);
    switchThereAndBack(*document);
    require(document->MuRtb()->Text() == pages.deck->utf16, "a switch changes the deck");
    measure("switch" + std::string(ours), [document](benchmark::State& state) {
        for (auto _ : state) {
            switchThereAndBack(*document);
        }
    });
}

void Conversion::addTo(Table& table, const Medians& medians) const {
    for (const auto& pages : m_pages) {
        addSpeed(table, medians, "to plain " + pages->size, byXslt, 12);
    }
    for (const auto& pages : m_pages) {
        const std::string name = "to markup " + pages->size;
        for (const char* const kind : {unchanged, edited, foreign}) {
            addSpeed(table, medians, name + kind, byTidy, 12);
            addSpeed(table, medians, name + kind, byLibXmlHtml, 5);
        }
        addSpeed(table, medians, name + soup, byTidy, 1);
    }
    addGrowth(table, medians, "to plain ", "");
    for (const char* const kind : {unchanged, edited, foreign, soup}) {
        addGrowth(table, medians, "to markup ", kind);
    }
    const std::string& size = m_pages.front()->size;
    const double whole = medians.of("switch" + std::string(ours));
    const double there = medians.of("to plain " + size + ours);
    const double back = medians.of("to markup " + size + unchanged + ours);
    if (whole > 0) {
        table.addFact("view switch there and back, " + size, asTime(whole));
    }
    if (whole > 0 && there > 0 && back > 0) {
        const double conversions = there + back;
        table.addFact("  of it the two conversions",
                      asTime(conversions) + ", " + asNumber(100 * conversions / whole) + " %");
    }
}

/// Adds how much longer a unit of the largest text takes than one of the text before.
void Conversion::addGrowth(Table& table, const Medians& medians, const std::string& before,
                           const std::string& behind) const {
    const auto perUnit = [&](const Pages& pages) {
        const std::string name = before + pages.size;
        return medians.of(name + behind + ours) / static_cast<double>(pages.deck->utf16.size());
    };
    const Pages& most = *m_pages.back();
    const Pages& fewer = *m_pages[m_pages.size() - 2];
    const double atMost = perUnit(most);
    const double atFewer = perUnit(fewer);
    if (atMost > 0 && atFewer > 0) {
        std::string what = before;
        what += most.size + behind + ": time a unit, of that at " + fewer.size;
        table.add(what, asTime(atMost), asTime(atFewer), atMost / atFewer, 1.5, true);
    }
}

} // namespace bench
