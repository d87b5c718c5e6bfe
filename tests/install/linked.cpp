#include "platform/PathName.h"
#include "tessaly.h"

#include <iostream>

int main(int, char** argv) {
    const auto project = std::make_shared<tessaly::clProject>();
    const bool opened = project->init(tessaly::toComponentPath(argv[1]));
    std::cout << "linked: " << project->Documents()->Count() << " decks\n";
    return opened ? 0 : 1;
}
