#include "apps/cli/Commands.h"
#include "apps/cli/Interrupt.h"
#include "apps/cli/ProjectOptions.h"
#include "apps/cli/Registration.h"

#include <CLI/CLI.hpp>

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace {

using cli::CardForm;
using cli::ExitStatus;

struct Options {
    std::vector<std::string> paths;
    std::string deck;
    CardForm form = CardForm::Text;
    std::string color = "auto";
    std::string tags;
    std::string to;
    std::string out;
    bool json = false;
    bool strict = false;
    bool views = false;
};

bool wantsColours(const std::string& color, bool terminal) {
    if (color != "auto") {
        return color == "always";
    }
    const char* noColor = std::getenv("NO_COLOR");
    return terminal && (noColor == nullptr || *noColor == '\0');
}

void addJson(CLI::App* command, Options& options) {
    command->add_flag("--json", options.json, "Print JSON instead of text");
}

/// The exit status for `status`, once all that was printed has arrived.
int ended(int status) {
    std::cout.flush();
    if (!std::cout) {
        std::cerr << "tessaly: standard output: cannot be written\n";
        return static_cast<int>(ExitStatus::Unreadable);
    }
    const int signal = cli::Interrupt::signal();
    return status != 0 && signal != 0 ? 128 + signal : status; // as a shell tells it
}

/// Prints what the command line has wrong, or the help that it asks for, and gives the exit status.
int reportUsage(const CLI::App& app, const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) {
        return app.exit(error);
    }
    // Of a command that isn't there the library says no more than that one is required.
    const std::vector<std::string> unknown = app.remaining();
    if (app.get_subcommands().empty() && !unknown.empty()) {
        const std::string& word = unknown.front();
        std::cerr << "tessaly: `" << word << "` is no " << (word[0] == '-' ? "option" : "command")
                  << "; `tessaly --help` lists them\n";
    } else {
        app.exit(error);
    }
    return static_cast<int>(ExitStatus::Usage);
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Looks after projects and decks of WML from a terminal.", "tessaly");
    app.set_version_flag("--version", "tessaly " TESSALY_VERSION);
    app.add_option("--color", options.color, "Colours: auto, always or never; NO_COLOR is heeded")
        ->check(CLI::IsMember({"auto", "always", "never"}));
    app.require_subcommand(1);
    app.fallthrough();
    app.footer(
        "Exit status: 0 fine, 1 something is invalid or was refused, 2 usage, 3 a file could "
        "not be read or written, 130 stopped by Ctrl-C.");

    CLI::App* info = app.add_subcommand("info", "Tell what a project holds");
    info->add_option("PROJECT", options.paths, "A project file (.cvp)")->required()->expected(1);
    addJson(info, options);

    CLI::App* check = app.add_subcommand("check", "Judge decks and name each error at its place");
    check
        ->add_option("PATH", options.paths,
                     "Decks, project files (.cvp), or folders: every .wml file below them")
        ->required();
    check->add_flag("--views", options.views,
                    "Take each deck to the page and back, and tell what did not survive");
    addJson(check, options);

    CLI::App* cards = app.add_subcommand("cards", "Walk the cards of decks");
    cards->add_option("PATH", options.paths, "A deck, a project file (.cvp) or a folder")
        ->required()
        ->expected(1);
    cards->add_option("--deck", options.deck, "Only the deck of this name");
    const std::map<std::string, CardForm> forms = {
        {"text", CardForm::Text}, {"plain", CardForm::Plain}, {"markup", CardForm::Markup}};
    cards->add_option("--as", options.form, "text (what a reader sees), plain (HTML) or markup")
        ->transform(CLI::CheckedTransformer(forms).description(""))
        ->type_name("FORM");
    addJson(cards, options);

    CLI::App* convert =
        app.add_subcommand("convert", "Turn a deck into a page, or a page into a deck");
    convert->add_option("FILE", options.paths, "A file; - is standard input")
        ->required()
        ->expected(1);
    convert->add_option("--to", options.to, "plain (the HTML page) or markup (the deck)")
        ->required()
        ->check(CLI::IsMember({"plain", "markup"}));
    convert->add_flag("--strict", options.strict, "Refuse what cannot be taken over as it is");
    convert->add_option("-o", options.out, "Write to this file instead of standard output");

    CLI::App* tags = app.add_subcommand("tags", "Find the tags of a list in decks");
    tags->add_option("LIST", options.tags, "Tag names joined by commas")->required();
    tags->add_option("PATH", options.paths, "Decks, project files or folders")->required();
    addJson(tags, options);

    const auto runProjectCommand = cli::addProjectCommands(app);
    const auto runRegistration = cli::addRegistration(app);

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return reportUsage(app, error);
    }

    const bool terminal = isatty(STDOUT_FILENO) == 1;
    const bool colours = wantsColours(options.color, terminal);
    const cli::Printer printer(std::cout, terminal || options.color == "always", colours);
    ExitStatus status = ExitStatus::Fine;
    if (const auto changed = runProjectCommand(printer)) {
        status = *changed;
    } else if (const auto registered = runRegistration(printer)) {
        status = *registered;
    } else if (info->parsed()) {
        status = cli::info(options.paths.front(), options.json, printer);
    } else if (check->parsed()) {
        status = cli::check(options.paths, options.views, options.json, printer);
    } else if (convert->parsed()) {
        status =
            cli::convert(options.paths.front(), options.to == "plain", options.strict, options.out);
    } else if (tags->parsed()) {
        status = cli::tags(options.tags, options.paths, options.json, printer);
    } else {
        status =
            cli::cards(options.paths.front(), options.deck, options.form, options.json, printer);
    }
    return static_cast<int>(status);
}

} // namespace

int main(int argc, char** argv) {
    std::ios::sync_with_stdio(false);
    (void)std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is a failure of the write
    try {
        return ended(run(argc, argv));
    } catch (const std::exception& failure) {
        std::cerr << "tessaly: " << failure.what() << '\n';
        return static_cast<int>(ExitStatus::Invalid);
    }
}
