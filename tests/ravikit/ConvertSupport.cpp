#include "ravikit/ConvertSupport.h"

#include "ravikit/DeckGenerator.h"
#include "support/File.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace convert_test {

namespace {

const ravikit::Declarations& known() {
    return ravikit::Dtd::builtIn()->declarations();
}

std::string reasons(const ravikit::Problems& problems) {
    return problems.empty() ? std::string() : toUtf8(problems.list().front().reason);
}

} // namespace

std::vector<Deck> writtenDecks() {
    std::vector<Deck> decks;
    for (const char* folder : {"/tests/ravikit/decks", "/examples/weather"}) {
        for (const auto& entry :
             std::filesystem::directory_iterator(std::string(TESSALY_SOURCE_DIR) + folder)) {
            if (entry.path().extension() == ".wml") {
                decks.push_back(
                    {entry.path().filename().string(), fromUtf8(support::bytesOf(entry.path()))});
            }
        }
    }
    std::sort(decks.begin(), decks.end(),
              [](const Deck& a, const Deck& b) { return a.name < b.name; });
    return decks;
}

std::u16string generatedDeck(std::mt19937& random, bool valid) {
    static DeckGenerator generator(known());
    static constexpr std::array prologs{
        u"", u"<?xml version='1.0'?>\r\n", u"<!-- first -->\n",
        u"<?xml version=\"1.0\"?><!DOCTYPE wml PUBLIC \"-//WAPFORUM//DTD WML 1.2//EN\" \"x\">\n"};
    for (;;) {
        std::vector<std::uint8_t> bytes(200 + random() % 1000);
        std::generate(bytes.begin(), bytes.end(), [&random] { return random() & 0xFFU; });
        bytes[0] = 0; // no entities
        const std::u16string deck = generator.deck(bytes.data(), bytes.size());
        if (valid ? isValid(deck)
                  : deck.starts_with(u"<wml") && ravikit::parse(deck, &known())->wellFormed()) {
            return prologs[random() % prologs.size()] + deck;
        }
    }
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
