#include "apps/cli/Commands.h"
#include "apps/cli/project/ProjectReport.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <ostream>
#include <utility>

namespace cli {

namespace {

/// "2026-11-22 18:05" in local time; empty for no date.
std::string dateText(tessaly::Date date) {
    if (date == 0) {
        return {};
    }
    constexpr double daysToUnixEpoch = 25569;
    const auto seconds = static_cast<std::time_t>(std::llround((date - daysToUnixEpoch) * 86400));
    std::tm parts{};
    // The date is local time already, so that it is taken apart without a shift.
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M", &parts);
    return {text.data(), length};
}

struct Row {
    const char* key;
    const char* label;
    std::string value;
};

std::string folderOf(const std::string& file) {
    const std::string folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

std::vector<Row> rowsOf(tessaly::clProject& project, const std::string& file) {
    return {{"name", "Name", utf8(project.ProjectName())},
            {"description", "Description", utf8(project.description())},
            {"file", "File", file},
            {"path", "Folder", folderOf(file)},
            {"owner", "Owner", utf8(project.Owner())},
            {"notes", "Notes", utf8(project.notes())},
            {"date", "Date", dateText(project.CreationDate())}};
}

std::string padded(std::string text, std::size_t width, bool right) {
    const std::string blanks(text.size() < width ? width - text.size() : 0, ' ');
    return right ? blanks + text : std::move(text) + blanks;
}

void printText(tessaly::clProject& project, const std::string& file, const Printer& printer) {
    for (const Row& row : rowsOf(project, file)) {
        printer.out() << printer.styled(Style::Faint, padded(row.label, 12, false))
                      << printer.styled(Style::Plain, shownPath(row.value)) << '\n';
    }
    const std::vector<Deck> decks = Session::decksOf(project, file);
    printer.out() << printer.styled(Style::Faint, padded("Decks", 12, false)) << decks.size()
                  << '\n';
    std::size_t width = 0;
    for (const Deck& deck : decks) {
        width = std::max(width, utf8(deck.document->Name()).size());
    }
    for (const Deck& deck : decks) {
        const bool valid = deck.document->isValidXML();
        printer.out() << "  "
                      << printer.styled(Style::Strong,
                                        padded(utf8(deck.document->Name()), width, false))
                      << padded(std::to_string(deck.document->size()), 10, true) << " characters"
                      << padded(std::to_string(cardCount(*deck.document)), 6, true) << " cards   "
                      << printer.styled(valid ? Style::Plain : Style::Error,
                                        valid ? "valid" : "invalid")
                      << '\n';
    }
}

void deckInfo(Session& session, const std::string& file, bool json, const Printer& printer) {
    session.visitDecks({file}, [&](const Deck& deck) {
        const bool valid = deck.document->isValidXML();
        const std::int32_t cards = cardCount(*deck.document);
        session.raiseStatus(valid ? ExitStatus::Fine : ExitStatus::Invalid);
        if (json) {
            const nlohmann::ordered_json report = {{"file", file},
                                                   {"size", deck.document->size()},
                                                   {"cards", cards},
                                                   {"valid", valid}};
            printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace)
                          << '\n';
            return;
        }
        const Row rows[] = {{"", "Deck", shownPath(file)},
                            {"", "Size", std::to_string(deck.document->size()) + " characters"},
                            {"", "Cards", std::to_string(cards)},
                            {"", "Verdict", valid ? "valid" : "invalid; `tessaly check` says why"}};
        for (const Row& row : rows) {
            printer.out() << printer.styled(Style::Faint, padded(row.label, 12, false))
                          << printer.styled(Style::Plain, row.value) << '\n';
        }
    });
}

} // namespace

void printProjectJson(tessaly::clProject& project, const std::string& file,
                      const Printer& printer) {
    nlohmann::ordered_json report;
    for (const Row& row : rowsOf(project, file)) {
        report[row.key] = row.value;
    }
    report["decks"] = nlohmann::ordered_json::array();
    for (const Deck& deck : Session::decksOf(project, file)) {
        report["decks"].push_back({{"name", utf8(deck.document->Name())},
                                   {"file", deck.file},
                                   {"size", deck.document->size()},
                                   {"cards", cardCount(*deck.document)},
                                   {"valid", deck.document->isValidXML()}});
    }
    printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

ExitStatus info(const std::string& project, bool json, const Printer& printer) {
    Session session;
    if (isDeck(project)) {
        deckInfo(session, project, json, printer);
        return session.status();
    }
    const auto opened = session.openProject(project);
    if (!opened) {
        return session.status();
    }
    (json ? printProjectJson : printText)(*opened, project, printer);
    for (const Deck& deck : Session::decksOf(*opened, project)) {
        if (!deck.document->isValidXML()) {
            session.raiseStatus(ExitStatus::Invalid);
        }
    }
    return session.status();
}

} // namespace cli
