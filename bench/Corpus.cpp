#include "bench/Corpus.h"

#include "bench/DeckMaker.h"
#include "platform/files/TextCodec.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace bench {

namespace {

constexpr char publicDoctype[] =
    R"(PUBLIC "-//WAPFORUM//DTD WML 1.3//EN" "http://www.wapforum.org/DTD/wml13.dtd")";

DeckText inBothForms(std::string utf8) {
    std::u16string utf16 = tessaly::decodeUtf8(utf8).value();
    return {std::move(utf8), std::move(utf16)};
}

} // namespace

std::size_t Corpus::bytes() const {
    std::size_t sum = 0;
    for (const DeckText& deck : decks) {
        sum += deck.utf8.size();
    }
    return sum;
}

Corpus makeCorpus(const std::string& name, std::size_t count, std::size_t bytes) {
    Corpus corpus{name, {}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto seed = static_cast<unsigned>(i + 1);
        corpus.decks.push_back(inBothForms(makeDeck(seed, 1, bytes, publicDoctype)));
    }
    return corpus;
}

DeckText makeCards(std::size_t cards) {
    return inBothForms(makeDeck(7, cards, 0, publicDoctype));
}

DeckFolder::DeckFolder(std::size_t count, std::size_t bytes, const std::string& dtdPath)
    : m_folder(std::filesystem::temp_directory_path() /
               ("tessaly-bench-" + std::to_string(getpid()))) {
    std::filesystem::create_directory(m_folder);
    for (std::size_t i = 0; i < count; ++i) {
        m_files.push_back(m_folder + "/deck" + std::to_string(i) + ".wml");
        std::ofstream(m_files.back(), std::ios::binary)
            << makeDeck(static_cast<unsigned>(i + 1), 1, bytes, "SYSTEM \"" + dtdPath + "\"");
    }
}

DeckFolder::~DeckFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_folder, ignored);
}

} // namespace bench
