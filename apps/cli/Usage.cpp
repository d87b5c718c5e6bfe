#include "apps/cli/Usage.h"

#include "apps/cli/session/Session.h"

#include "platform/files/TextCodec.h"
#include "ravikit/text/NearMiss.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>

namespace cli {

namespace {

/// The columns that help may fill; none where there is no terminal to say so.
std::size_t columns() {
    const char* const set = std::getenv("COLUMNS");
    const long wanted = set == nullptr ? 0 : std::strtol(set, nullptr, 10);
    winsize size{};
    if (wanted > 0) {
        return static_cast<std::size_t>(wanted);
    }
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

/// Where the rest of a broken line begins: below its second column, if that leaves room.
std::size_t indentOf(const std::string& line, std::size_t width) {
    const std::size_t start = line.find_first_not_of(' ');
    const std::size_t gap = line.find("  ", start);
    const std::size_t second = line.find_first_not_of(' ', gap);
    const std::size_t indent = second == std::string::npos ? start + 2 : second;
    return indent <= width / 2 ? indent : 4;
}

/// `text` with its lines broken between words, so that no terminal breaks one inside.
std::string wrapped(const std::string& text, std::size_t width) {
    constexpr std::size_t narrowest = 10;
    if (width < narrowest) {
        return text;
    }
    std::string result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t indent = line.size() > width ? indentOf(line, width) : 0;
        while (line.size() > width) {
            std::size_t at = line.rfind(' ', width);
            if (at == std::string::npos || line.find_first_not_of(' ') > at) {
                at = line.find(' ', line.find_first_not_of(' ')); // one word fills the line
            }
            if (at == std::string::npos) {
                break;
            }
            const std::size_t next = std::min(line.find_first_not_of(' ', at), line.size());
            result += line.substr(0, line.find_last_not_of(' ', at) + 1) + '\n';
            line = std::string(indent, ' ') + line.substr(next);
        }
        result += line + '\n';
    }
    return result;
}

std::string helpOf(const CLI::App& app) {
    const bool isWhole = app.get_parent() == nullptr;
    return wrapped(app.get_formatter()->make_help(&app,
                                                  isWhole ? "tessaly" : "tessaly " + app.get_name(),
                                                  CLI::AppFormatMode::Normal),
                   columns());
}

/// `hint`: what was meant perhaps; else the help is pointed to.
int complain(const std::string& what, const std::string& command, const std::string& hint = {}) {
    const std::string help = command.empty() ? "`tessaly help` lists the commands"
                                             : "`tessaly help " + command + "` says how it is used";
    std::cerr << "tessaly: " << harmless(what) << "; " << (hint.empty() ? help : hint) << '\n';
    return static_cast<int>(ExitStatus::Usage);
}

/// "did you mean ...?" where one of `names` is near `word`.
std::string suggestion(const std::string& word, const std::vector<std::string>& names) {
    const std::u16string written = tessaly::decodeText(word);
    std::vector<std::u16string> offered;
    offered.reserve(names.size());
    for (const std::string& name : names) {
        offered.push_back(tessaly::decodeText(name));
    }
    ravikit::NearMiss near(written);
    for (const std::u16string& name : offered) {
        near.offer(name);
    }
    return near.best().empty() ? "" : "did you mean `" + utf8(near.best()) + "`?";
}

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        names.push_back(command->get_name());
    }
    return names;
}

std::vector<std::string> optionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options([](const CLI::Option*) { return true; })) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

int complainOfCommand(const CLI::App& app, const std::string& word) {
    return complain('`' + word + "` is no command", "", suggestion(word, commandNames(app)));
}

/// What of `error`'s text comes before its colon: the option's or the argument's name.
std::string subjectOf(const CLI::ParseError& error) {
    const std::string text = error.what();
    return text.substr(0, std::min(text.find(": "), text.find(" is required")));
}

int complainOfWord(const CLI::App& app, const CLI::App& used, const std::string& word) {
    const std::string command = &used == &app ? "" : used.get_name();
    if (word[0] != '-' && command.empty()) {
        return complainOfCommand(app, word);
    }
    if (word[0] != '-') {
        return complain("`" + word + "` is one argument too many", command);
    }
    std::vector<std::string> names = optionNames(used);
    const std::vector<std::string> common = optionNames(app);
    names.insert(names.end(), common.begin(), common.end());
    const std::string bare = word.substr(0, word.find('='));
    return complain('`' + bare + "` is no option", command, suggestion(bare, names));
}

} // namespace

int reportUsage(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<CLI::App*> parsed = app.get_subcommands();
    const CLI::App& used = parsed.empty() ? app : *parsed.back();
    const std::string command = parsed.empty() ? "" : used.get_name();
    if (error.get_name() == "CallForHelp") {
        std::cout << helpOf(used);
        return 0;
    }
    if (error.get_exit_code() == 0) {
        std::cout << error.what() << '\n';
        return 0;
    }
    // A word that nobody takes is why something else is missing.
    const std::vector<std::string> unknown = app.remaining(true);
    const auto option = std::find_if(unknown.begin(), unknown.end(),
                                     [](const std::string& word) { return word[0] == '-'; });
    if (option != unknown.end() || !unknown.empty()) {
        return complainOfWord(app, used, option != unknown.end() ? *option : unknown.front());
    }
    const std::string subject = subjectOf(error);
    if (error.get_name() == "RequiredError") {
        return complain(parsed.empty() ? "a command is missing" : '`' + subject + "` is missing",
                        command);
    }
    if (error.get_name() == "ArgumentMismatch") {
        return complain('`' + subject + "` takes one value", command);
    }
    if (error.get_name() == "ConversionError") { // only of a flag: all else is text
        return complain("a value follows an option that takes none", command);
    }
    return complain(error.what(), command);
}

int printHelp(CLI::App& app, const std::string& topic) {
    if (topic.empty()) {
        std::cout << helpOf(app);
        return 0;
    }
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (command->get_name() == topic) {
            std::cout << helpOf(*command);
            return 0;
        }
    }
    return complainOfCommand(app, topic);
}

CLI::Validator oneOf(const std::vector<std::string>& words) {
    return {[words](const std::string& value) {
                if (std::find(words.begin(), words.end(), value) != words.end()) {
                    return std::string();
                }
                std::string list;
                for (const std::string& word : words) {
                    list += (list.empty() ? "`" : ", `") + word + '`';
                }
                return '`' + value + "` is none of " + list;
            },
            ""};
}

} // namespace cli
