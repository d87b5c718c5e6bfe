#include "tests/ravikit/convert/Decks.h"
#include "support/Test.h"

#include "support/File.h"
#include "tests/ravikit/validity/DeckGenerator.h"
#include "tests/ravikit/validity/WmlDtd.h"

namespace convert_test {

namespace {

const ravikit::Declarations& known() {
    return wmlDtd()->declarations();
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
        if (valid ? faultOf(deck).empty()
                  : deck.starts_with(u"<wml") && ravikit::parse(deck, &known())->wellFormed()) {
            return prologs[random() % prologs.size()] + deck;
        }
    }
}

} // namespace convert_test
