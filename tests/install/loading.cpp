#include "platform/PathName.h"
#include "platform/runtime/ComponentRuntime.h"
#include "tessaly.h"

#include <iostream>

int main(int, char** argv) {
    tessaly::ComponentRuntime runtime;
    auto project =
        std::static_pointer_cast<tessaly::clProject>(runtime.create("Tessaly.clProject"));
    const bool opened = project->init(tessaly::toComponentPath(argv[1]));
    std::cout << "loaded: " << project->Documents()->Count() << " decks\n";
    project.reset();
    return opened && runtime.unloadUnused() == 1 ? 0 : 1;
}
