// Measures the markup library and the command beside their peers, in one run and on the same
// texts, and prints what was aimed at as ratios. Nothing is measured before all have agreed that
// its input is valid.

#include "bench/Command.h"
#include "bench/Conversion.h"
#include "bench/ConversionPeers.h"
#include "bench/Corpus.h"
#include "bench/Measure.h"
#include "bench/Peers.h"
#include "bench/Results.h"

#include "ravikit/component/DomObjects.h"
#include "ravikit/component/Objects.h"
#include "ravikit/xml/Parser.h"
#include "tessaly.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iostream>
#include <span>
#include <string>
#include <vector>

namespace {

using namespace bench;

constexpr std::size_t kilobyte = 1024;
constexpr std::size_t megabyte = 1024 * kilobyte;

constexpr char explanation[] =
    R"(judge: we parse UTF-16 and judge; libxml2 does the same from UTF-8, with the DTD parsed
beforehand; pugixml parses UTF-8 with parse_full and judges nothing.
to plain: from a deck's text to the text of its page; libxslt with a stylesheet of the same mapping,
which knows neither digests nor a carried source, parsed beforehand.
to markup: from the text of a page, as a browser writes it, to that of a deck; libtidy to XHTML;
libxml2 to a tree, from which texts and names are collected. Unchanged and edited are pages of our
own with all that they carry, foreign is the page that libxslt makes, tag soup the same in capitals
and without half of its end tags.
Times are medians of 9 repetitions, of this process's processor time, and for check of wall-clock
time.
)";

constexpr char byPugi[] = "|pugixml, white space kept";
constexpr char byPugiFull[] = "|pugixml, white space dropped";

void checkInput(const LibXml& libXml, tessaly::Tolmek& tolmek, const DeckText& deck) {
    if (!tolmek.isValidText(deck.utf16)) {
        const auto error = tolmek.lastError();
        std::string reason;
        for (const char16_t unit : error->reason()) {
            reason += static_cast<char>(unit);
        }
        require(false, "tessaly refuses a deck, line " + std::to_string(error->line()) + ": " +
                           reason + '\n' + deck.utf8.substr(0, 4000));
    }
    require(libXml.parseAndJudge(deck.utf8), "libxml2 refuses a deck");
    require(Pugi::parse(deck.utf8, Pugi::Kept::Full) != nullptr, "pugixml refuses a deck");
}

void measureJudging(const Corpus& corpus, const LibXml& libXml, tessaly::Tolmek& tolmek) {
    const std::string name = "judge " + corpus.name;
    const auto overAll = [&corpus](const auto& work) {
        return [&corpus, work](benchmark::State& state) {
            tidyHeap();
            for (auto _ : state) {
                for (const DeckText& deck : corpus.decks) {
                    benchmark::DoNotOptimize(work(deck));
                }
            }
        };
    };
    measure(name + ours,
            overAll([&](const DeckText& deck) { return tolmek.isValidText(deck.utf16); }));
    measure(name + byLibXml,
            overAll([&](const DeckText& deck) { return libXml.parseAndJudge(deck.utf8); }));
    measure(name + byPugi, overAll([](const DeckText& deck) {
                return Pugi::parse(deck.utf8, Pugi::Kept::FullAndBlanks);
            }));
    measure(name + byPugiFull,
            overAll([](const DeckText& deck) { return Pugi::parse(deck.utf8, Pugi::Kept::Full); }));
}

/// A new DOM a round: it remembers its answers.
std::size_t cardsMarkup(const std::shared_ptr<const ravikit::Tree>& tree) {
    const auto cards = tessaly::makeDOMDocument(tree)->selectNodes(u"//card");
    const std::int32_t count = cards->length();
    std::size_t units = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        units += cards->item(i)->xml().size();
    }
    return units;
}

void measureSelecting(const Corpus& corpus) {
    const DeckText& deck = corpus.decks.front();
    const auto tree = ravikit::parse(deck.utf16);
    const auto document = LibXml::parse(deck.utf8);
    require(cardsMarkup(tree) * 10 > deck.utf16.size() * 9, "no cards found");
    require(LibXml::cardsMarkup(document.get()) * 10 > deck.utf8.size() * 9, "no cards found");
    measure("cards of " + corpus.name + ours, [tree](benchmark::State& state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(cardsMarkup(tree));
        }
    });
    measure("cards of " + corpus.name + byLibXml, [document](benchmark::State& state) {
        for (auto _ : state) {
            benchmark::DoNotOptimize(LibXml::cardsMarkup(document.get()));
        }
    });
}

/// Walks as a host does: asks for a next card, and goes there. Gives the number of cards.
std::size_t walk(tessaly::IDisplay& display) {
    display.DisplayNode(0);
    std::size_t cards = 1;
    while (display.nextExists()) {
        benchmark::DoNotOptimize(display.nextDisplayNode());
        ++cards;
    }
    return cards;
}

constexpr std::array<std::size_t, 3> walks{100, 1000, 10000};

std::string walkName(std::size_t cards) {
    return "walk " + std::to_string(cards) + " cards" + ours;
}

void measureWalking(const std::shared_ptr<tessaly::Ravik>& ravik) {
    for (const std::size_t cards : walks) {
        const DeckText deck = makeCards(cards);
        auto document = std::make_shared<tessaly::WirelessDocument>();
        document->Ravik(ravik);
        document->DOM(ravik->parseMarkup(deck.utf16, true, false));
        document->DocType(tessaly::DocumentType::dcWML);
        require(walk(*document->Display()) == cards, "the walk misses cards");
        measure(walkName(cards), [document](benchmark::State& state) {
            for (auto _ : state) {
                benchmark::DoNotOptimize(walk(*document->Display()));
            }
        });
    }
}

void measureCommand(const DeckFolder& folder) {
    const auto times = [&](const std::string& name, std::vector<std::string> words) {
        words.insert(words.end(), folder.files().begin(), folder.files().end());
        require(runProgram(words) == 0, words[0] + " refuses a deck");
        measure(name,
                [words = std::move(words)](benchmark::State& state) {
                    for (auto _ : state) {
                        runProgram(words);
                    }
                })
            ->UseRealTime()
            ->Iterations(1);
    };
    times(std::string("check 500 files") + ours, {BENCH_COMMAND, "check"});
    times("check 500 files|xmllint", {BENCH_XMLLINT, "--noout", "--valid"});
}

/// The bytes of heap that what `make` gives holds on to, for each of `bytes`.
template <class Make>
double heapHeld(std::size_t bytes, const Make& make) {
    const auto used = [] {
        const auto info = mallinfo2();
        return info.uordblks + info.hblkhd;
    };
    const std::size_t before = used();
    const auto kept = make();
    require(kept != nullptr, "a deck is refused");
    return static_cast<double>(used() - before) / static_cast<double>(bytes);
}

void addMemory(Table& table, const DeckText& deck) {
    const std::size_t bytes = deck.utf8.size();
    const double tree = heapHeld(bytes, [&] { return ravikit::parse(deck.utf16); });
    const double libXml = heapHeld(bytes, [&] { return LibXml::parse(deck.utf8); });
    const double pugi =
        heapHeld(bytes, [&] { return Pugi::parse(deck.utf8, Pugi::Kept::FullAndBlanks); });
    table.add("bytes held for a byte of a 16 MB deck (libxml2)", asNumber(tree), asNumber(libXml),
              tree, 6, true);
    table.add("  (pugixml with white space)", asNumber(tree), asNumber(pugi), tree, 6, true);
}

void addWalks(Table& table, const Medians& medians) {
    std::vector<double> perCard;
    std::string times;
    for (const std::size_t cards : walks) {
        perCard.push_back(medians.of(walkName(cards)) / static_cast<double>(cards));
        times += (times.empty() ? "" : ", ") + asTime(perCard.back());
    }
    const auto [least, most] = std::minmax_element(perCard.begin(), perCard.end());
    if (*least > 0) {
        table.add("walk: time a card with 100, 1,000, 10,000 cards", times, "-", *most / *least,
                  1.5, true);
    }
}

void run() {
    const LibXml libXml(BENCH_DTD);
    const auto tolmek = tessaly::makeTolmek(nullptr);
    const std::array corpora{makeCorpus("10 KB", 1, 10 * kilobyte), makeCorpus("1 MB", 1, megabyte),
                             makeCorpus("16 MB", 1, 16 * megabyte),
                             makeCorpus("500 decks of 10 KB", 500, 10 * kilobyte)};
    for (const Corpus& corpus : corpora) {
        for (const DeckText& deck : corpus.decks) {
            checkInput(libXml, *tolmek, deck);
        }
    }
    const DeckFolder folder(500, 10 * kilobyte, BENCH_DTD);

    for (const Corpus& corpus : corpora) {
        measureJudging(corpus, libXml, *tolmek);
    }
    measureSelecting(corpora[0]);
    measureSelecting(corpora[1]);
    measureWalking(tessaly::makeRavik(nullptr));
    measureCommand(folder);
    const Conversion conversion(std::span<const Corpus>(corpora).first(3));

    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    benchmark::ClearRegisteredBenchmarks();

    Table table;
    for (const Corpus& corpus : corpora) {
        addSpeed(table, medians, "judge " + corpus.name, byLibXml, 8);
        addSpeed(table, medians, "judge " + corpus.name, byPugi, 1);
        addSpeed(table, medians, "judge " + corpus.name, byPugiFull, 1);
    }
    addSpeed(table, medians, "cards of " + corpora[0].name, byLibXml, 6);
    addSpeed(table, medians, "cards of " + corpora[1].name, byLibXml, 6);
    addMemory(table, corpora[2].decks.front());
    addWalks(table, medians);
    addSpeed(table, medians, "check 500 files", "|xmllint", 8);
    conversion.addTo(table, medians);

    std::cout << "\nmachine:  " << machine() << "\nbuild:    " << BENCH_BUILD_TYPE << ", "
              << BENCH_COMPILER << "\npeers:    libxml2 " << LibXml::version() << ", pugixml "
              << Pugi::version() << ", libxslt " << Stylesheet::version() << ", libtidy "
              << tidyVersion() << "\n\n"
              << explanation << '\n';
    table.print(std::cout);
}

} // namespace

int main(int argc, char** argv) {
    // With the repetitions mixed, a slow spell of the machine hits all measurements alike. What the
    // user says comes after and wins.
    std::array<std::string, 2> ownFlags{"--benchmark_enable_random_interleaving=true",
                                        "--benchmark_min_time=0.05"};
    std::vector<char*> arguments(argv, argv + argc);
    for (std::string& flag : ownFlags) {
        arguments.insert(arguments.begin() + 1, flag.data());
    }
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) {
        return 2;
    }
    try {
        run();
        return 0;
    } catch (const std::exception& failure) {
        std::cerr << "tessaly_bench: " << failure.what() << '\n';
        return 1;
    }
}
