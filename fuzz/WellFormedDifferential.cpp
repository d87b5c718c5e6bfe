// Holds our verdict on whether a text is well-formed against libxml2's, and looks whether the tree
// is the whole text. A disagreement ends the run with the text and both verdicts.
//
//   fuzz_wellformed -dict=fuzz/xml.dict CORPUS fuzz/corpus/deck

#include "ravikit/Chars.h"
#include "ravikit/Parser.h"
#include "tests/ravikit/LibXml.h"
#include "tests/ravikit/Tiling.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>

namespace {

/// The text of `bytes`; none if they are no UTF-8, which is not what this target is about.
std::optional<std::u16string> decoded(std::string_view bytes) {
    std::u16string text;
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if ((lead >= 0x80 && lead < 0xC2) || lead > 0xF4 || i + length > bytes.size()) {
            return std::nullopt;
        }
        char32_t c = length == 1 ? lead : lead & (0x7FU >> length);
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0U) != 0x80) {
                return std::nullopt;
            }
            c = (c << 6) | (next & 0x3FU);
        }
        static constexpr char32_t least[] = {0, 0, 0x80, 0x800, 0x10000};
        if (c < least[length] || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
            return std::nullopt;
        }
        if (c >= 0x10000) {
            text.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            c = 0xDC00 + ((c - 0x10000) & 0x3FF);
        }
        text.push_back(static_cast<char16_t>(c));
        i += length;
    }
    return text;
}

/// Where a disagreement says nothing about us, and why.
bool isExcused(const ravikit::Tree& tree, const libxml::Verdict& peer) {
    // Where a parameter entity or an external subset may declare more, an unknown entity is no
    // breach. libxml2 forgets that inside an entity's text, and behind a reference to a parameter
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
    // It asks for no digit behind the point of a version, and for no blank behind <!DOCTYPE.
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
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<std::u16string> text = decoded(bytes);
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
