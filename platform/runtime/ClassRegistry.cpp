#include "platform/runtime/ClassRegistry.h"

#include "platform/runtime/RegistryFile.h"
#include "platform/runtime/RuntimeFailure.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace tessaly {

namespace {

constexpr std::string_view header =
    "# Classes that can be made by name: class, identifier, library.\n";

constexpr std::size_t npos = std::string_view::npos;

/// Calls `visit` with each line of `text`, its line end included.
template <class Visit>
void forEachLine(std::string_view text, Visit&& visit) {
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        visit(text.substr(0, length));
        text.remove_prefix(length);
    }
}

std::string_view nameOf(std::string_view line) {
    return line.substr(0, line.find_first_of("\t\n"));
}

std::optional<RegisteredClass> parse(std::string_view line) {
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    const std::size_t first = line.find('\t');
    const std::size_t second = first == npos ? npos : line.find('\t', first + 1);
    if (second == npos || first == 0 || second == first + 1 ||
        !line.substr(second + 1).starts_with('/')) {
        return std::nullopt;
    }
    return RegisteredClass{std::string(line.substr(0, first)),
                           std::string(line.substr(first + 1, second - first - 1)),
                           std::string(line.substr(second + 1))};
}

std::string lineOf(const RegisteredClass& entry) {
    std::string line = entry.name + '\t' + entry.id + '\t' + entry.library;
    if (parse(line) != entry || line.find('\n') != npos) {
        throw runtimeFailure(FailureCode::BadFileName,
                             "The class registry cannot hold " + entry.name + " of", entry.library);
    }
    return line;
}

/// `text` without the lines of `library`. The last line of a text may lack its line end, and so
/// may what is left.
std::string without(std::string_view text, const std::string& library) {
    std::string rest;
    forEachLine(text, [&](std::string_view line) {
        const auto entry = parse(line);
        if (!entry || entry->library != library) {
            rest += line;
        } else if (!line.ends_with('\n') && rest.ends_with('\n')) {
            rest.pop_back();
        }
    });
    return rest;
}

/// `text` with `line` at its end. If the last line of `text` has no line end, that of the result
/// has none either, which is how `without` finds its way back.
void append(std::string& text, const std::string& line) {
    const bool terminated = text.empty() || text.ends_with('\n');
    text += terminated ? line + '\n' : '\n' + line;
}

} // namespace

ClassRegistry::ClassRegistry(std::string file)
    : m_file(std::move(file)) {}

std::string ClassRegistry::userFile() {
    const auto variable = [](const char* name) {
        const char* value = std::getenv(name);
        return std::string(value == nullptr ? "" : value);
    };
    const std::string data = variable("XDG_DATA_HOME");
    if (data.starts_with('/')) { // a relative one is to be ignored
        return data + "/tessaly/classes";
    }
    const std::string home = variable("HOME");
    if (!home.starts_with('/')) {
        throw Failure(FailureCode::PathNotFound,
                      u"No place for the class registry: neither XDG_DATA_HOME nor HOME is set");
    }
    return home + "/.local/share/tessaly/classes";
}

std::optional<RegisteredClass> ClassRegistry::find(std::string_view name) const {
    const std::string text = readRegistryFile(m_file).value_or("");
    std::string_view last;
    std::size_t number = 0;
    std::size_t lastNumber = 0;
    forEachLine(text, [&](std::string_view line) {
        ++number;
        if (nameOf(line) == name) {
            last = line;
            lastNumber = number;
        }
    });
    if (last.empty()) {
        return std::nullopt;
    }
    auto entry = parse(last);
    if (!entry) {
        throw runtimeFailure(FailureCode::InvalidFileFormat,
                             "Line " + std::to_string(lastNumber) +
                                 " lacks the identifier or the library of " + std::string(name) +
                                 " in the class registry",
                             m_file);
    }
    return entry;
}

std::vector<RegisteredClass> ClassRegistry::classesOf(const std::string& library) const {
    const std::string text = readRegistryFile(m_file).value_or("");
    std::vector<RegisteredClass> classes;
    forEachLine(text, [&](std::string_view line) {
        if (auto entry = parse(line); entry && entry->library == library) {
            classes.push_back(std::move(*entry));
        }
    });
    return classes;
}

void ClassRegistry::add(const std::vector<RegisteredClass>& classes) {
    std::vector<std::string> lines;
    std::transform(classes.begin(), classes.end(), std::back_inserter(lines), lineOf);
    const FolderLock lock = lockRegistry(m_file);
    std::string text = readRegistryFile(m_file).value_or(std::string(header));
    for (const RegisteredClass& entry : classes) {
        text = without(text, entry.library);
    }
    for (const std::string& line : lines) {
        append(text, line);
    }
    replaceRegistryFile(m_file, text);
}

void ClassRegistry::remove(const std::string& library) {
    if (!readRegistryFile(m_file)) {
        return; // and no folder is made
    }
    const FolderLock lock = lockRegistry(m_file);
    const std::string text = readRegistryFile(m_file).value_or("");
    const std::string rest = without(text, library);
    if (rest == header) {
        removeRegistryFile(m_file);
    } else if (rest != text) {
        replaceRegistryFile(m_file, rest);
    }
}

} // namespace tessaly
