#include "ravikit/component/DtdCache.h"

#include "util/Attempt.h"
#include "util/Lasting.h"

#include <map>
#include <mutex>
#include <utility>

namespace tessaly {

namespace {

using DtdRef = std::shared_ptr<const ravikit::Dtd>;

struct Entry {
    Date stamp = 0;
    DtdRef dtd; ///< none for a file that is no DTD
};

DtdRef compile(File& file) {
    std::u16string text = require(file.OpenAsTextStream(IOMode::ForReading, formatAnsi)).ReadAll();
    if (text.starts_with(u'\xFEFF')) {
        text.erase(0, 1);
    }
    ravikit::Problems problems;
    return ravikit::Dtd::compile(text, problems);
}

} // namespace

DtdRef dtdOfFile(FileSystemObject& files, const std::u16string& path) {
    static std::mutex mutex;
    static auto& entries = lasting<std::map<std::u16string, Entry>>();
    constexpr std::size_t mostEntries = 16;

    DtdRef dtd;
    attempt([&] {
        const std::shared_ptr<File> file = files.GetFile(path);
        const Date stamp = require(file).DateLastModified();
        const std::lock_guard lock(mutex);
        const auto known = entries.find(path);
        if (known != entries.end() && known->second.stamp == stamp) {
            dtd = known->second.dtd;
            return;
        }
        dtd = compile(*file);
        if (entries.size() == mostEntries) {
            entries.clear();
        }
        entries.insert_or_assign(path, Entry{stamp, dtd});
    });
    return dtd;
}

DtdRef builtInDtd() {
    static const auto& dtd = lasting<DtdRef>(ravikit::Dtd::compileBuiltIn());
    return dtd;
}

} // namespace tessaly
