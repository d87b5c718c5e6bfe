#include "platform/files/PathName.h"
#include "tessaly.h"

#include <iostream>

namespace {

std::shared_ptr<tessaly::clProject> project; // ends when the process does

} // namespace

int main(int, char** argv) {
    project = std::make_shared<tessaly::clProject>();
    const bool opened = project->init(tessaly::toComponentPath(argv[1]));
    std::cout << "linked: " << project->Documents()->Count() << " decks\n";
    return opened ? 0 : 1;
}
