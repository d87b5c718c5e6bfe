#include "apps/cli/ProjectOptions.h"

#include "apps/cli/Usage.h"

#include <map>

namespace cli {

namespace {

struct ProjectOptions {
    NewProject wanted;
    std::string project;
    std::vector<std::string> names;
    std::string newFile;
    std::string onConflict;
    bool json = false;
    bool yes = false;

    Manner manner() const {
        const std::map<std::string, OnConflict> answers = {{"overwrite", OnConflict::Overwrite},
                                                           {"rename", OnConflict::Rename},
                                                           {"stop", OnConflict::Stop}};
        Manner manner{std::nullopt, json};
        if (!onConflict.empty()) {
            manner.onConflict = answers.at(onConflict);
        }
        return manner;
    }
};

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     ProjectOptions& options) {
    CLI::App* command = app.add_subcommand(name, description);
    command->add_flag("--json", options.json, "Print JSON instead of text");
    return command;
}

void addProject(CLI::App* command, ProjectOptions& options) {
    command->add_option("PROJECT", options.project, "A project file (.cvp)")->required();
}

void addNames(CLI::App* command, ProjectOptions& options) {
    command
        ->add_option("NAME", options.names,
                     "Decks in the project's folder, by name or by file; one that begins with a "
                     "hyphen goes after --")
        ->required();
}

void addOnConflict(CLI::App* command, ProjectOptions& options) {
    command
        ->add_option("--on-conflict", options.onConflict,
                     "Where a file's name is taken: overwrite it, rename (name-2, name-3, ...) or "
                     "stop, instead of asking; without a terminal stop is the default")
        ->check(oneOf({"overwrite", "rename", "stop"}));
}

} // namespace

std::function<std::optional<ExitStatus>(const Printer&)> addProjectCommands(CLI::App& app) {
    const auto options = std::make_shared<ProjectOptions>();

    CLI::App* make = addCommand(app, "new", "Make a project from a deck", *options);
    make->add_option("FOLDER", options->wanted.folder, "Its folder; made if it is missing")
        ->required();
    make->add_option("--name", options->wanted.name, "Its name")->required();
    make->add_option("--from", options->wanted.deck, "The deck that is copied into it")->required();
    make->add_option("--description", options->wanted.description, "What it is about");
    make->add_option("--owner", options->wanted.owner, "Whose it is");
    addOnConflict(make, *options);

    CLI::App* add = addCommand(app, "add", "Add decks to a project", *options);
    addProject(add, *options);
    addNames(add, *options);

    CLI::App* remove =
        addCommand(app, "remove", "Take decks out of a project; their files stay", *options);
    addProject(remove, *options);
    addNames(remove, *options);

    CLI::App* saveAs = addCommand(app, "save-as",
                                  "Save a project with all its decks under another name", *options);
    addProject(saveAs, *options);
    saveAs->add_option("NEW", options->newFile, "The new project file, in a folder that is there")
        ->required();
    addOnConflict(saveAs, *options);

    CLI::App* erase =
        addCommand(app, "delete",
                   "Remove a project from the disk: its folder with all that lies there", *options);
    addProject(erase, *options);
    erase->add_flag("--yes", options->yes, "Do not ask");

    CLI::App* first = addCommand(app, "first", "Tell a project's first deck", *options);
    addProject(first, *options);

    return [=](const Printer& printer) -> std::optional<ExitStatus> {
        if (make->parsed()) {
            return makeProject(options->wanted, options->manner(), printer);
        }
        if (add->parsed()) {
            return addDecks(options->project, options->names, options->manner(), printer);
        }
        if (remove->parsed()) {
            return removeDecks(options->project, options->names, options->manner(), printer);
        }
        if (saveAs->parsed()) {
            return saveProjectAs(options->project, options->newFile, options->manner(), printer);
        }
        if (erase->parsed()) {
            return deleteProject(options->project, options->yes, options->json, printer);
        }
        return first->parsed() ? std::optional(firstDeck(options->project, options->json, printer))
                               : std::nullopt;
    };
}

} // namespace cli
