#include "platform/files/PathName.h"
#include "platform/runtime/ComponentRuntime.h"
#include "tessaly.h"

#include <iostream>

namespace {

std::shared_ptr<tessaly::clProject> project; // ends when the process does

} // namespace

int main(int, char** argv) {
    tessaly::ComponentRuntime runtime;
    bool wentWell = true;
    for (const bool isLast : {false, true}) {
        project = std::static_pointer_cast<tessaly::clProject>(runtime.create("Tessaly.clProject"));
        wentWell = project->init(tessaly::toComponentPath(argv[1])) && wentWell;
        if (!isLast) {
            std::cout << "loaded: " << project->Documents()->Count() << " decks\n";
            project.reset();
            wentWell = runtime.unloadUnused() == 1 && wentWell;
        }
    }
    return wentWell ? 0 : 1;
}
