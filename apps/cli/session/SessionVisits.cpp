// The decks that a path stands for, one by one. What cannot be read, or not be dealt with, is named
// and does not keep the others out.

#include "apps/cli/session/FileNotes.h"
#include "apps/cli/session/ReadAhead.h"
#include "apps/cli/session/Session.h"

#include "platform/files/PathName.h"
#include "ravikit/component/DtdCache.h"
#include "ravikit/component/RememberedTree.h"
#include "util/Attempt.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace cli {

namespace fs = std::filesystem;

namespace {

using Visit = std::function<void(const Deck&)>;

/// Calls `visit`; a failure is reported.
void visitSafely(Session& session, const std::string& file, const std::function<void()>& visit) {
    if (const auto failed = tessaly::attempt(visit)) {
        session.complain(ExitStatus::Unreadable, file, reasonOf(*failed));
    }
}

/// What lies directly in `folder`, sorted into decks and further folders. Links to folders are not
/// followed.
void sortEntries(Session& session, const std::string& folder, std::vector<std::string>& decks,
                 std::vector<std::string>& folders) {
    std::error_code failed;
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        const std::string path = entry->path().string();
        std::error_code unknown;
        if (fs::is_directory(entry->symlink_status(unknown))) {
            folders.push_back(path);
        } else if (isDeck(path)) {
            const fs::file_status status = entry->status(unknown);
            if (fs::is_regular_file(status)) {
                decks.push_back(path);
            } else if (!fs::exists(status)) {
                session.complain(ExitStatus::Unreadable, path, "is a link that leads nowhere");
            }
        }
    }
    if (failed) {
        session.complain(ExitStatus::Unreadable, folder, "cannot be read: " + failed.message());
    }
}

} // namespace

void Session::visitDeck(const std::string& file, const Visit& visit) {
    visitSafely(*this, file, [&] {
        if (auto text = readFile(file)) {
            visitText(file, *std::move(text), visit);
        }
    });
}

void Session::visitText(const std::string& file, tessaly::FileText text, const Visit& visit) {
    std::vector<Note> notes = notesIn(text);
    const std::u16string name = m_files->GetBaseName(tessaly::toComponentPath(file));
    m_decks->Documents()->Clear();
    auto document = m_decks->Documents()->Add(m_decks->AppPath(), name, text.text, nullptr, nullptr,
                                              nullptr, m_decks->Ravik());
    m_decks->Documents()->Clear();
    visit({file, std::move(document), std::move(notes)});
}

void Session::visitInput(const Visit& visit) {
    visitSafely(*this, m_inputName, [&] {
        const std::string bytes = readStandardInput();
        visitText(m_inputName, tessaly::decodeFile(bytes), [&](const Deck& read) {
            Deck deck = read;
            deck.bytes = bytes;
            visit(deck);
        });
    });
}

void Session::visitFiles(const std::vector<std::string>& files, const Visit& visit) {
    constexpr std::size_t fewest = 4; // for which a thread is worth its making
    if (files.size() < fewest) {
        for (const std::string& file : files) {
            visitPath(file, visit);
        }
        return;
    }
    const auto dtd = tessaly::dtdOfFile(*m_files, m_decks->AppPath() + u"\\DTD\\wml.dtd");
    const auto known = dtd ? dtd : tessaly::builtInDtd();
    ReadAhead ahead(files, known);
    for (const std::string& file : files) {
        ReadAhead::Read read;
        if (tessaly::attempt([&] { read = ahead.next(); })) {
            visitPath(file, visit); // which says why it cannot be read, or finds a folder
            continue;
        }
        visitSafely(*this, file, [&] {
            tessaly::rememberTree(std::move(read.tree), known);
            visitText(file, std::move(read.file), visit);
        });
    }
}

void Session::visitProject(const std::string& file, const Visit& visit) {
    const auto project = openProject(file);
    if (!project) {
        return;
    }
    std::vector<Deck> decks = decksOf(*project, file);
    for (Deck& deck : decks) {
        visitSafely(*this, deck.file, [&] {
            deck.notes = notesOf(deck);
            visit(deck);
        });
    }
    // The component stops at the first deck that it cannot load, which has been reported.
    const std::vector<std::u16string> names = listed(file);
    for (std::size_t i = decks.size() + 1; i < names.size(); ++i) {
        visitDeck(deckBeside(file, names[i]), visit);
    }
}

void Session::visitFolder(const std::string& folder, const Visit& visit) {
    std::vector<std::string> files;
    for (std::vector<std::string> folders = {folder}; !folders.empty();) {
        const std::string next = std::move(folders.back());
        folders.pop_back();
        sortEntries(*this, next, files, folders);
    }
    std::sort(files.begin(), files.end());
    visitFiles(files, visit);
}

void Session::visitDecks(const std::vector<std::string>& paths, const Visit& visit) {
    for (std::size_t i = 0; i < paths.size();) {
        std::vector<std::string> files;
        for (; i < paths.size() && isDeck(paths[i]); ++i) {
            files.push_back(paths[i]);
        }
        visitFiles(files, visit);
        if (i < paths.size()) {
            visitPath(paths[i++], visit);
        }
    }
}

void Session::visitPath(const std::string& path, const Visit& visit) {
    std::error_code unknown;
    if (path == "-") {
        visitInput(visit);
    } else if (fs::is_directory(path, unknown)) {
        visitFolder(path, visit);
    } else if (isProject(path)) {
        visitProject(path, visit);
    } else {
        visitDeck(path, visit);
    }
}

} // namespace cli
