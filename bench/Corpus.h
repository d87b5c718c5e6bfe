#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace bench {

/// A text in the two forms that the measured programs take.
struct DeckText {
    std::string utf8;
    std::u16string utf16;
};

/// A set of decks that is measured as one piece of work.
struct Corpus {
    std::string name;
    std::vector<DeckText> decks;

    std::size_t bytes() const;
};

/// Decks of `bytes` bytes each, all different.
Corpus makeCorpus(const std::string& name, std::size_t count, std::size_t bytes);

/// One deck of `cards` cards.
DeckText makeCards(std::size_t cards);

/// Writes the decks of a corpus as files into a new folder, which goes with the object. They name
/// the DTD in the file `dtdPath`.
class DeckFolder {
public:
    DeckFolder(std::size_t count, std::size_t bytes, const std::string& dtdPath);
    ~DeckFolder();
    DeckFolder(const DeckFolder&) = delete;
    DeckFolder& operator=(const DeckFolder&) = delete;
    DeckFolder(DeckFolder&&) = delete;
    DeckFolder& operator=(DeckFolder&&) = delete;

    const std::vector<std::string>& files() const { return m_files; }

private:
    std::string m_folder;
    std::vector<std::string> m_files;
};

} // namespace bench
