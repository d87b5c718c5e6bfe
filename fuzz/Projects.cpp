// Opens files with any bytes as projects, on a real disk. What is taken for a project, written and
// read again is the same.
//
//   fuzz_project -dict=fuzz/project.dict -max_len=400 CORPUS fuzz/corpus/project

#include "platform/DefaultPlatform.h"
#include "platform/files/TextCodec.h"
#include "tessaly.h"
#include "tests/platform/TempFolder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <vector>

namespace {

using tessaly::clProject;

/// Shows nothing to anybody.
class Unattended : public tessaly::DefaultPlatform {
public:
    tessaly::MsgBoxAnswer MsgBox(const std::u16string&, tessaly::MsgBoxFlags,
                                 const std::u16string&) override {
        return tessaly::MsgBoxAnswer::No;
    }
};

/// What a project file says.
struct Values {
    std::u16string name;
    std::u16string description;
    std::u16string owner;
    std::u16string notes;
    std::vector<std::u16string> documents;
    bool operator==(const Values&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Values& values) {
    const auto show = [&out](const char* name, const std::u16string& value) {
        out << "  " << name << ": " << tessaly::encodeUtf8(value) << "\n";
    };
    show("name", values.name);
    show("description", values.description);
    show("owner", values.owner);
    show("notes", values.notes);
    for (const std::u16string& document : values.documents) {
        show("document", document);
    }
    return out;
}

Values valuesOf(clProject& project) {
    Values values{
        project.ProjectName(), project.description(), project.Owner(), project.notes(), {}};
    for (std::int32_t i = 1; i <= project.Documents()->Count(); ++i) {
        values.documents.push_back(project.Documents()->Item(i)->Name());
    }
    return values;
}

template <class T>
void expectSame(const T& a, const T& b, const char* what, const std::string& bytes) {
    if (!(a == b)) {
        std::cerr << what << "\n---\n" << bytes << "\n---\n";
        if constexpr (requires { std::cerr << a; }) {
            std::cerr << a << "---\n" << b;
        }
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const support::TempFolder temp;
    static const bool isReady = [] {
        tessaly::Platform::install(std::make_shared<Unattended>());
        for (const char* name : {"a.wml", "b.wml", "c.wml"}) {
            temp.write(name, "<wml><card><p>x</p></card></wml>");
        }
        return true;
    }();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::u16string path = temp.path("p.cvp");
    temp.write("p.cvp", bytes);

    const auto project = std::make_shared<clProject>();
    const bool isGood = isReady && project->init(path);
    project->getFirstDocument(path);
    if (!isGood) {
        return 0;
    }
    project->Save();
    const std::string written = temp.read("p.cvp");
    const auto again = std::make_shared<clProject>();
    expectSame(again->init(path), true, "not opened again", written);
    expectSame(valuesOf(*again), valuesOf(*project), "changed by the way to the disk", written);
    again->Save();
    expectSame(temp.read("p.cvp"), written, "not written as before", bytes);
    return 0;
}
