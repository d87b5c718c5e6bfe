// Holds our verdict on whether a text is well-formed against libxml2's, and looks whether the tree
// is the whole text. A disagreement ends the run with the text and both verdicts.
//
//   fuzz_wellformed -dict=fuzz/xml.dict CORPUS fuzz/corpus/deck

#include "ravikit/text/Chars.h"
#include "ravikit/xml/Parser.h"
#include "tests/ravikit/xml/LibXml.h"
#include "tests/ravikit/xml/Tiling.h"
#include "tests/support/Iconv.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace {

/// Where a disagreement says nothing about us, and why.
bool isExcused(const ravikit::Tree& tree, const libxml::Verdict& peer) {
    // Where a parameter entity or an external subset may declare more, an unknown entity is no
    // breach. libxml2 forgets that inside an entity's text, and after a reference to a parameter
    // entity that it does not fetch.
    if (tree.wellFormed()) {
        return peer.onlyComplainsOf(XML_ERR_UNDECLARED_ENTITY);
    }
    const ravikit::Problem& first = tree.problems().list().front();
    const bool isLonely = tree.problems().list().size() == 1;
    const auto says = [&first](std::u16string_view words) {
        return first.reason.find(words) != std::u16string::npos;
    };
    // libxml2 looks for a fragment in the address of an entity only if the address is one.
    if (says(u"`#`") && peer.onlyComplainsOf(XML_ERR_INVALID_URI)) {
        return isLonely;
    }
    // It asks for no digit after the point of a version, and for no blank after <!DOCTYPE.
    const std::u16string_view ahead = tree.text().substr(0, first.begin);
    return isLonely && (says(u"`1.`") ||
                        ahead.substr(std::max<std::size_t>(ahead.size(), 9) - 9) == u"<!DOCTYPE");
}

void complain(std::string_view bytes, const ravikit::Tree& tree, const libxml::Verdict& peer,
              const std::string& fault) {
    std::cerr << "text: " << bytes << "\n";
    if (!fault.empty()) {
        std::cerr << "tree: " << fault << "\n";
    }
    std::cerr << "libxml2: " << (peer.wellFormed ? "well-formed" : "not well-formed") << ", "
              << peer.message << "\n";
    std::cerr << "we: " << (tree.wellFormed() ? "well-formed" : "not well-formed") << "\n";
    for (const ravikit::Problem& problem : tree.problems().list()) {
        std::cerr << "  " << problem.begin << " " << static_cast<int>(problem.kind) << " "
                  << libxml::utf8(problem.reason) << "\n";
    }
    std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const support::Iconv decode("UTF-8");
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<std::u16string> text = decode(bytes);
    if (!text || text->find(u'\0') != std::u16string::npos) {
        return -1; // libxml2 takes a NUL for the end of the text
    }
    const auto tree = ravikit::parse(*text);
    const libxml::Verdict peer = libxml::verdict(bytes);
    const std::string fault = tiling::faultOf(*tree);
    if (!fault.empty() || (tree->wellFormed() != peer.wellFormed && !isExcused(*tree, peer))) {
        complain(bytes, *tree, peer, fault);
    }
    return 0;
}
