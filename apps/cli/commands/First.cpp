#include "apps/cli/ProjectCommands.h"
#include "apps/cli/project/ProjectWork.h"

#include "project/ProjectFile.h"

#include <nlohmann/json.hpp>

#include <ostream>

namespace cli {

ExitStatus firstDeck(const std::string& file, bool json, const Printer& printer) {
    ProjectWork work(OnConflict::Stop);
    const auto path = work.fullPath(file);
    if (!path || !work.session().readable(file)) {
        return work.status();
    }
    const std::u16string name = Session::newProject()->getFirstDocument(*path);
    if (name == tessaly::cannotAccessDocument) {
        work.fail(file, utf8(name));
    } else if (name.empty()) {
        work.refuse(file, "lists no deck");
    } else if (json) {
        printer.out() << nlohmann::ordered_json{{"first", utf8(name)}}.dump() << '\n';
    } else {
        printer.out() << harmless(utf8(name)) << '\n';
    }
    return work.status();
}

} // namespace cli
