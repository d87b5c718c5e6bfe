// Takes decks to the page and back. The decks are the bytes themselves or are made from them by the
// DTD.
//
//   fuzz_views -dict=fuzz/xml.dict -max_len=2000 CORPUS fuzz/corpus/deck

#include "tests/ravikit/convert/Pages.h"
#include "tests/ravikit/validity/DeckGenerator.h"
#include "tests/ravikit/validity/WmlDtd.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) {
        return -1;
    }
    static DeckGenerator generator(wmlDtd()->declarations());
    const bool isMade = data[0] < 0x20; // no text begins so
    const std::u16string deck =
        isMade ? generator.deck(data + 1, size - 1)
               : convert_test::fromUtf8({reinterpret_cast<const char*>(data), size});
    if (convert_test::pageOf(deck)) {
        convert_test::expectKept(deck);
    }
    return 0;
}
