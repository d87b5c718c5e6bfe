#include "platform/files/PathName.h"
#include "tessaly.h"

#include <iostream>

struct Shell : tessaly::__clProject {
    void OnRefresh() override { std::cout << "OnRefresh\n"; }
    void OnSetCurrentDocument() override { std::cout << "OnSetCurrentDocument\n"; }
    void OnViewChange() override { std::cout << "OnViewChange\n"; }
    void OnParseError(std::shared_ptr<tessaly::ParseError>& err) override {
        std::cout << "OnParseError " << err->line() << ':' << err->column() << '\n';
    }
    void OnClearErrors() override { std::cout << "OnClearErrors\n"; }
    void OnDocDirty() override { std::cout << "OnDocDirty\n"; }
    void OnDocAdd(std::u16string&) override { std::cout << "OnDocAdd\n"; }
    void OnUTag(std::u16string&) override { std::cout << "OnUTag\n"; }
    void OnAdd2UndoStack(std::int32_t&, std::u16string&, std::u16string&, std::int32_t&) override {}
};

int main(int argc, char** argv) {
    const auto project = std::make_shared<tessaly::clProject>();
    Shell shell;
    const auto listening = project->events().advise(shell);
    const bool opened = argc > 1 && project->init(tessaly::toComponentPath(argv[1]));
    for (const auto& document : project->Documents()->NewEnum()) {
        project->CurrentDocument(document);
        document->checkValidity();
    }
    return opened ? 0 : 1;
}
