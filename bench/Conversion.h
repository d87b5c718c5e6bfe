#pragma once

#include "bench/ConversionPeers.h"
#include "bench/Corpus.h"
#include "bench/Results.h"

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace bench {

/// Measures the ways between a deck and its page, and a switch of the view that takes both.
class Conversion {
public:
    /// Registers the measurements for the first deck of each of `corpora`, which stand in the order
    /// of their size. The texts are kept as long as this object.
    explicit Conversion(std::span<const Corpus> corpora);

    void addTo(Table& table, const Medians& medians) const;

private:
    /// A deck and what an author or a browser makes of its page.
    struct Pages {
        std::string size; ///< as the corpus is named
        const DeckText* deck = nullptr;
        DeckText unchanged;
        DeckText edited;  ///< with a few words more in one paragraph
        DeckText foreign; ///< the same text from elsewhere, without anything that is ours
        DeckText soup;    ///< that in old style: in capitals, end tags left out
    };

    Pages makePages(const Corpus& corpus) const;
    void check(const Pages& pages) const;
    void measureToPlain(const Pages& pages) const;
    static void measureToMarkup(const Pages& pages, const std::string& kind, const DeckText& page);
    static void measureSwitch(const Pages& pages);
    void addGrowth(Table& table, const Medians& medians, const std::string& before,
                   const std::string& behind) const;

    Stylesheet m_stylesheet;
    std::vector<std::unique_ptr<const Pages>> m_pages;
};

} // namespace bench
