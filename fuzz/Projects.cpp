// Opens files with any bytes as projects, on a real disk. What is read is what the format says, by
// a reading of it as plain as can be, and what is written and read again is the same.
//
//   fuzz_project -dict=fuzz/project.dict -max_len=400 CORPUS fuzz/corpus/project

#include "platform/DefaultPlatform.h"
#include "platform/TextCodec.h"
#include "tessaly.h"
#include "tests/platform/TempFolder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <optional>
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

struct Reading {
    Values values;
    bool isGood = false;
    std::u16string firstDocument;
};

/// Whether the folder has a deck of this name; unknown for a name that a disk may take in its own
/// way.
std::optional<bool> hasDeck(const std::u16string& name) {
    if (name == u"a" || name == u"b" || name == u"c") {
        return true;
    }
    const bool isPlain = name.find_first_not_of(u"defghijklmnop0123456789") == name.npos;
    return isPlain ? std::optional(false) : std::nullopt;
}

/// Reads a project file line by line; nothing if it depends on the disk what comes of it.
std::optional<Reading> read(std::u16string text) {
    Reading reading;
    bool hasFirst = false;
    bool hasPath = false;
    bool isOpen = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(u'\n'), text.size());
        const bool isEnded = end < text.size();
        std::u16string line = text.substr(0, end);
        text.erase(0, end + 1);
        if (isEnded && line.ends_with(u'\r')) { // without a line feed it is part of the value
            line.pop_back();
        }
        std::vector<std::u16string> pieces(1);
        for (const char16_t unit : line) {
            unit == u'=' ? pieces.emplace_back() : pieces.back() += unit;
        }
        if (pieces.size() > 1) {
            const std::u16string& key = pieces[0];
            const std::u16string& value = pieces[1];
            if (key == u"Document" && !hasFirst) {
                hasFirst = true;
                reading.firstDocument = value;
            }
            Values& values = reading.values;
            if (key == u"Document" && isOpen) {
                const auto known = hasDeck(value);
                if (!known) {
                    return std::nullopt;
                }
                bool isThere = false;
                for (const std::u16string& other : values.documents) {
                    isThere = isThere || other == value;
                }
                isOpen = *known && !isThere && hasPath;
                if (isOpen) {
                    values.documents.push_back(value);
                }
            } else if (isOpen && key == u"Site") {
                values.name = value.substr(0, value.find_last_not_of(u'\\') + 1);
            } else if (isOpen && key == u"Description") {
                values.description = value;
            } else if (isOpen && key == u"Owner") {
                values.owner = value;
            } else if (isOpen && key == u"Notes") {
                values.notes = value;
            }
        }
        hasPath = true;
    }
    const bool hasName = reading.values.name.find_first_not_of(u' ') != std::u16string::npos;
    reading.isGood = isOpen && hasName && hasPath;
    return reading;
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
    const auto expected = read(tessaly::decodeText(bytes));
    if (expected) {
        expectSame(valuesOf(*project), expected->values, "other values than the file's", bytes);
        expectSame(isGood, expected->isGood, "taken for good, or not", bytes);
        expectSame(tessaly::encodeUtf8(project->getFirstDocument(path)),
                   tessaly::encodeUtf8(expected->firstDocument), "another first document", bytes);
    }
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
