// Holds our verdict on whether a deck is valid against libxml2's by the same DTD. The decks are
// made from the bytes, so that most are valid or nearly so. A disagreement ends the run with the
// deck and both verdicts.
//
//   fuzz_valid -max_len=2000 CORPUS

#include "tests/ravikit/validity/DeckGenerator.h"
#include "tests/ravikit/validity/LibXmlValidity.h"
#include "tests/ravikit/validity/WmlDtd.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static DeckGenerator generator(wmlDtd()->declarations());
    const std::string fault = libxml::validityFault(generator.deck(data, size));
    if (!fault.empty()) {
        std::cerr << fault << "\n";
        std::abort();
    }
    return 0;
}
