#include "apps/cli/Commands.h"
#include "apps/cli/Interrupt.h"
#include "apps/cli/ProjectOptions.h"
#include "apps/cli/Usage.h"
#include "apps/cli/commands/Registration.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

using cli::CardForm;
using cli::ExitStatus;

struct Options {
    std::vector<std::string> paths;
    std::string deck;
    std::string formName = "text";
    std::string color = "auto";
    std::string tags;
    std::string to;
    std::string out;
    std::string inputName;
    std::string topic;
    bool json = false;
    bool strict = false;
    bool views = false;
};

bool wantsColours(const std::string& color) {
    if (color != "auto") {
        return color == "always";
    }
    const char* const noColor = std::getenv("NO_COLOR");
    return cli::isSmartTerminal(STDOUT_FILENO) && (noColor == nullptr || *noColor == '\0');
}

CardForm formOf(const std::string& name) {
    return name == "plain" ? CardForm::Plain : name == "markup" ? CardForm::Markup : CardForm::Text;
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
    return status != 0 && signal != 0 ? 128 + signal : status; // as a shell reports it
}

int run(int argc, char** argv) {
    Options options;
    CLI::App app("Looks after projects and decks of WML from a terminal.", "tessaly");
    app.set_version_flag("-V,--version", "tessaly " TESSALY_VERSION);
    app.add_option("--color", options.color, "Colours: auto, always or never; NO_COLOR is heeded")
        ->check(cli::oneOf({"auto", "always", "never"}));
    app.require_subcommand(1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("Subcommands", "Commands");
    app.fallthrough();
    app.footer(
        "Exit status: 0 fine, 1 something is invalid or was refused, 2 usage, 3 a file could "
        "not be read or written, 130 stopped by Ctrl-C.");

    CLI::App* info = app.add_subcommand("info", "Tell what a project, or a deck, holds");
    info->add_option("FILE", options.paths, "A project file (.cvp) or a deck")
        ->required()
        ->expected(1);
    addJson(info, options);

    CLI::App* check = app.add_subcommand("check", "Judge decks and name each error at its place");
    check
        ->add_option("PATH", options.paths,
                     "Decks, project files (.cvp), or folders: every .wml file below them; - is "
                     "a deck from standard input")
        ->required();
    check->add_option("--stdin-filename", options.inputName, "What - is called in what is printed");
    check->add_flag("--views", options.views,
                    "Take each deck to the page and back, and report what did not survive");
    addJson(check, options);

    CLI::App* cards = app.add_subcommand("cards", "Walk the cards of decks");
    cards->add_option("PATH", options.paths, "A deck, a project file (.cvp) or a folder")
        ->required()
        ->expected(1);
    cards->add_option("--deck", options.deck, "Only the deck of this name");
    cards->add_option("--as", options.formName, "text (what a reader sees), plain (HTML) or markup")
        ->check(cli::oneOf({"text", "plain", "markup"}))
        ->type_name("FORM");
    addJson(cards, options);

    CLI::App* convert =
        app.add_subcommand("convert", "Turn a deck into a page, or a page into a deck");
    convert->add_option("FILE", options.paths, "A file; - is standard input")
        ->required()
        ->expected(1);
    convert->add_option("--to", options.to, "plain (the HTML page) or markup (the deck)")
        ->required()
        ->check(cli::oneOf({"plain", "markup"}));
    convert->add_flag("--strict", options.strict, "Refuse what cannot be taken over as it is");
    convert->add_option("-o", options.out,
                        "Write to this file instead of standard output, which is -");

    CLI::App* tags = app.add_subcommand("tags", "Find the tags of a list in decks");
    tags->add_option("LIST", options.tags, "Tag names joined by commas")->required();
    tags->add_option("PATH", options.paths, "Decks, project files or folders")->required();
    addJson(tags, options);

    CLI::App* help = app.add_subcommand("help", "Tell how a command is used");
    help->add_option("COMMAND", options.topic, "One of the commands; all if there is none");

    const auto runProjectCommand = cli::addProjectCommands(app);
    const auto runRegistration = cli::addRegistration(app);

    for (CLI::App* const command : app.get_subcommands({})) {
        command->group("Commands");
    }

    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return cli::reportUsage(app, error);
    }

    if (help->parsed()) {
        return cli::printHelp(app, options.topic);
    }
    const bool terminal = isatty(STDOUT_FILENO) == 1;
    const bool colours = wantsColours(options.color);
    const cli::Printer printer(std::cout, terminal || options.color == "always", colours);
    ExitStatus status = ExitStatus::Fine;
    if (const auto changed = runProjectCommand(printer)) {
        status = *changed;
    } else if (const auto registered = runRegistration(printer)) {
        status = *registered;
    } else if (info->parsed()) {
        status = cli::info(options.paths.front(), options.json, printer);
    } else if (check->parsed()) {
        status = cli::check(options.paths, options.inputName, options.views, options.json, printer);
    } else if (convert->parsed()) {
        status =
            cli::convert(options.paths.front(), options.to == "plain", options.strict, options.out);
    } else if (tags->parsed()) {
        status = cli::tags(options.tags, options.paths, options.json, printer);
    } else {
        status = cli::cards(options.paths.front(), options.deck, formOf(options.formName),
                            options.json, printer);
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
