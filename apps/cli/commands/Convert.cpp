#include "apps/cli/Commands.h"

#include "platform/files/FileText.h"
#include "platform/files/PathName.h"
#include "platform/runtime/FileReplacement.h"
#include "ravikit/deck/DeckText.h"
#include "util/Attempt.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <optional>
#include <ostream>
#include <utility>

namespace cli {

namespace fs = std::filesystem;

namespace {

/// What a document would hold for `text` as it was read, with its byte-order mark if it has one: a
/// document does without, the page carries it.
std::u16string imported(tessaly::Ravik& ravik, const std::u16string& text) {
    const bool isMarked = text.starts_with(u'\xFEFF');
    const std::u16string held = text.find(u"DOCTYPE") == text.npos ? ravik.importBareText(text)
                                                                   : ravik.importDoctypedText(text);
    return isMarked ? u'\xFEFF' + held : held;
}

void tellErrors(const std::string& file, tessaly::Tolmek& tolmek) {
    for (auto error = tolmek.lastError(); error; error = error->next()) {
        std::cerr << shownPath(file) << ':' << error->line() << ':' << error->column()
                  << ": error: " << harmless(utf8(error->reason())) << '\n';
    }
}

/// Why the text could not be written; empty if it was.
std::string write(const std::string& out, const std::u16string& text) {
    const std::string bytes = utf8(text);
    if (out.empty() || out == "-") {
        std::cout << bytes; // whether it arrives shows at the end
        return {};
    }
    std::error_code unknown;
    if (fs::exists(out, unknown) && !fs::is_regular_file(out, unknown)) { // a device, or a pipe
        const bool written(std::ofstream(out, std::ios::binary) << bytes << std::flush);
        return written ? "" : "cannot be written";
    }
    const auto failed = tessaly::attempt([&] {
        tessaly::FileReplacement file(out);
        file.write(bytes);
        file.commit();
    });
    return failed ? "cannot be written: " + utf8(failed->description()) : "";
}

ExitStatus convert(Session& session, const std::string& file, bool toPlain, bool strict,
                   const std::string& out) {
    const bool isInput = file == "-";
    std::optional<tessaly::FileText> read =
        isInput ? tessaly::decodeFile(readStandardInput()) : session.readFile(file);
    if (!read) {
        return session.status();
    }
    std::u16string text = std::move(read->text);
    const auto project = session.newProject();
    const auto tolmek = tessaly::Platform::current()->newTolmek();
    tolmek->loadDtd(tessaly::kindMarkup, project->AppPath() + u"\\DTD\\wml.dtd");
    if (toPlain) {
        text = imported(*project->Ravik(), text);
    }
    const std::int32_t from = toPlain ? tessaly::kindMarkup : tessaly::kindPlain;
    const std::int32_t to = toPlain ? tessaly::kindPlain : tessaly::kindMarkup;
    if (!tolmek->convertText(from, to, text, strict)) {
        tellErrors(isInput ? standardInput : file, *tolmek);
        return ExitStatus::Invalid;
    }
    if (!toPlain) {
        text = ravikit::declareUtf8(std::move(text)); // as it is written, whatever it was read as
    }
    if (const std::string why = write(out, text); !why.empty()) {
        session.complain(ExitStatus::Unreadable, out, why);
    }
    return session.status();
}

} // namespace

ExitStatus convert(const std::string& file, bool toPlain, bool strict, const std::string& out) {
    Session session;
    ExitStatus status = ExitStatus::Fine;
    const auto failed =
        tessaly::attempt([&] { status = convert(session, file, toPlain, strict, out); });
    if (failed) {
        session.complain(ExitStatus::Unreadable, file, reasonOf(*failed));
    }
    return failed ? session.status() : status;
}

} // namespace cli
