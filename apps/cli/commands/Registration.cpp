#include "apps/cli/commands/Registration.h"

#include "platform/runtime/ComponentRuntime.h"
#include "util/Attempt.h"

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <iostream>
#include <memory>
#include <vector>

namespace cli {

namespace {

namespace fs = std::filesystem;
using tessaly::ClassRegistry;
using tessaly::RegisteredClass;

struct Request {
    std::string library;
    std::string registry;
    bool json = false;
};

/// What was entered or taken out, and where.
struct Change {
    std::string library;
    std::string registry;
    std::vector<RegisteredClass> classes;
};

/// As the library itself says its path.
std::string ownPathOf(const std::string& library) {
    std::error_code failed;
    const fs::path path = fs::canonical(library, failed);
    return failed ? library : path.string();
}

Change enter(const Request& request) {
    const ClassRegistry registry(request.registry);
    const std::string library = ownPathOf(request.library);
    tessaly::registerLibrary(library, request.registry);
    return {library, request.registry, registry.classesOf(library)};
}

Change takeOut(const Request& request) {
    const ClassRegistry registry(request.registry);
    const std::string library = ownPathOf(request.library);
    auto classes = registry.classesOf(library);
    tessaly::unregisterLibrary(library, request.registry);
    return {library, request.registry, std::move(classes)};
}

void printJson(const Change& change, const Printer& printer) {
    nlohmann::ordered_json classes = nlohmann::ordered_json::array();
    for (const RegisteredClass& entry : change.classes) {
        classes.push_back({{"name", entry.name}, {"id", entry.id}});
    }
    const nlohmann::ordered_json report = {
        {"registry", change.registry}, {"library", change.library}, {"classes", classes}};
    printer.out() << report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
}

void printText(const Change& change, bool entering, const Printer& printer) {
    const bool none = change.classes.empty();
    printer.out() << (none       ? "Was not registered: "
                      : entering ? "Registered "
                                 : "Unregistered ")
                  << printer.styled(Style::Plain, change.library) << '\n'
                  << (entering || none ? "in " : "from ")
                  << printer.styled(Style::Plain, change.registry) << '\n';
    for (const RegisteredClass& entry : change.classes) {
        printer.out() << "  " << printer.styled(Style::Faint, entry.id) << "  "
                      << printer.styled(Style::Strong, entry.name) << '\n';
    }
}

ExitStatus run(Request request, bool entering, const Printer& printer) {
    const auto failure = tessaly::attempt([&] {
        if (request.registry.empty()) {
            request.registry = ClassRegistry::userFile();
        }
        const Change change = entering ? enter(request) : takeOut(request);
        if (request.json) {
            printJson(change, printer);
        } else {
            printText(change, entering, printer);
        }
    });
    if (failure) {
        std::cerr << "tessaly: " << harmless(utf8(failure->description())) << '\n';
        return ExitStatus::Unreadable;
    }
    return ExitStatus::Fine;
}

} // namespace

std::function<std::optional<ExitStatus>(const Printer&)> addRegistration(CLI::App& app) {
    const auto request = std::make_shared<Request>();
    request->library = (fs::path(installationFolder()) / TESSALY_LIBRARY_FILE).string();
    const auto declare = [&](const char* name, const char* what) {
        CLI::App* command = app.add_subcommand(name, what);
        command->add_option("--library", request->library,
                            "The library; the one that belongs to this command if not given");
        command->add_option("--registry", request->registry,
                            "The class registry; the user's own if not given");
        command->add_flag("--json", request->json, "Print JSON instead of text");
        return command;
    };
    const CLI::App* enters =
        declare("register", "Enter the component's classes, for hosts that load it");
    const CLI::App* takesOut = declare("unregister", "Take the component's classes out again");
    return [=](const Printer& printer) -> std::optional<ExitStatus> {
        if (!enters->parsed() && !takesOut->parsed()) {
            return std::nullopt;
        }
        return run(*request, enters->parsed(), printer);
    };
}

} // namespace cli
