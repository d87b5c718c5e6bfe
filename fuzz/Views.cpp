// Takes decks to the page and back: a page that nobody changed gives the deck back, unit by unit,
// also when a browser has parsed it and written it in its own way, and a page with a stranger on it
// still gives a deck. The decks are the bytes themselves or are made from them by the DTD.
//
//   fuzz_views -dict=fuzz/xml.dict -max_len=2000 CORPUS fuzz/corpus/deck

#include "fuzz/Pages.h"
#include "ravikit/Dtd.h"
#include "ravikit/convert/PageTree.h"
#include "tests/ravikit/DeckGenerator.h"
#include "tests/ravikit/PageElements.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace {

using fuzz::expect;

std::u16string literally(const std::u16string& page) {
    ravikit::PageTree tree;
    expect(ravikit::readLiterally(page, tree), "our own page is not read literally", page);
    return convert_test::serialise(*convert_test::elementsOf(tree), convert_test::Browser::Modern);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return -1;
    }
    static DeckGenerator generator(ravikit::Dtd::builtIn()->declarations());
    const bool isMade = data[0] < 0x20; // no text begins so
    const std::u16string deck =
        isMade ? generator.deck(data + 1, size - 1)
               : convert_test::fromUtf8({reinterpret_cast<const char*>(data), size});
    const auto page = fuzz::plainOf(deck);
    if (!page) {
        return 0;
    }
    expect(fuzz::markupOf(*page) == deck, "changed by the way there and back", deck, *page);
    const auto modern = fuzz::browsed(*page, false);
    const auto old = fuzz::browsed(*page, true);
    expect(modern && old, "no browser takes the page", deck, *page);
    expect(literally(*page) == *modern, "a browser reads the page in another way", *page, *modern);
    expect(fuzz::markupOf(*modern) == deck, "changed by a browser", deck, *page, *modern);
    expect(fuzz::markupOf(*old) == deck, "changed by an old browser", deck, *page, *old);

    const auto merged = fuzz::markupOf(u"<P>stray</P>" + *modern);
    expect(merged.has_value(), "refused with a stranger on it", deck, *page);
    const std::string fault = fuzz::faultOf(*merged, fuzz::faultOf(deck).empty());
    expect(fault.empty(), fault.c_str(), deck, *merged);
    expect(merged->find(u"stray") != std::u16string::npos, "the stranger is lost", deck, *merged);
    return 0;
}
