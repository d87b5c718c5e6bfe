#include "platform/files/PathName.h"

#include "platform/files/Drives.h"
#include "platform/files/FileErrors.h"
#include "platform/files/TextCodec.h"
#include "util/Failure.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>
#include <utility>

namespace tessaly {

namespace {

constexpr std::size_t longestPath = 32767;

bool isSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

bool startsWithDrive(std::u16string_view path) {
    return path.size() >= 2 && path[1] == u':' && isDriveLetter(path[0]);
}

/// How many units of `path` are its root: `C:\`, `C:`, `\`, or none.
std::size_t rootLength(std::u16string_view path) {
    const std::size_t drive = startsWithDrive(path) ? 2 : 0;
    const bool separator = path.size() > drive && isSeparator(path[drive]);
    return drive + static_cast<std::size_t>(separator);
}

/// The last component of a path, without the separators after it; empty in a bare root.
struct LastName {
    explicit LastName(std::u16string_view path)
        : root(rootLength(path))
        , begin(path.size())
        , end(path.size()) {
        while (end > root && isSeparator(path[end - 1])) {
            --end;
        }
        begin = end;
        while (begin > root && !isSeparator(path[begin - 1])) {
            --begin;
        }
    }

    std::size_t root;
    std::size_t begin;
    std::size_t end;
};

void addName(PathParts& parts, std::u16string_view name) {
    if (name.empty() || name == u".") {
        return;
    }
    const bool isUp = name == u"..";
    if (isUp && !parts.names.empty() && parts.names.back() != u"..") {
        parts.names.pop_back();
    } else if (!isUp || !parts.rooted) {
        parts.names.emplace_back(name);
    }
}

void addNames(PathParts& parts, std::u16string_view path) {
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t found = path.find_first_of(u"\\/", begin);
        const std::size_t end = std::min(found, path.size());
        addName(parts, path.substr(begin, end - begin));
        begin = end + 1;
    }
}

std::u16string componentPathOf(const PathParts& parts) {
    std::u16string path;
    if (parts.drive != 0) {
        path = {parts.drive, u':'};
    }
    path += u'\\';
    for (std::size_t i = 0; i < parts.names.size(); ++i) {
        if (i > 0) {
            path += u'\\';
        }
        path += parts.names[i];
    }
    return path;
}

std::string currentFolder() {
    std::error_code failed;
    const std::filesystem::path folder = std::filesystem::current_path(failed);
    if (failed) {
        throw failureOf(failed.value(), FailureCode::PathNotFound);
    }
    return folder.string();
}

} // namespace

std::u16string toComponentPath(const std::string& posixPath) {
    auto decoded = decodeUtf8(posixPath);
    if (!decoded || decoded->find_first_of(std::u16string_view(u"\\\0", 2)) != decoded->npos) {
        throw Failure(FailureCode::BadFileName);
    }
    std::u16string path = std::move(*decoded);
    const bool bareName =
        path.find(u'/') == path.npos && !path.empty() && path != u"." && path != u"..";
    if (bareName || startsWithDrive(path)) {
        path.insert(0, u"./");
    }
    std::replace(path.begin(), path.end(), u'/', u'\\');
    return path;
}

std::string toPosixPath(const std::u16string& path) {
    return path.empty() ? std::string() : posixPathOf(splitPath(path));
}

std::u16string fileNameOf(const std::u16string& path) {
    const LastName name(path);
    return path.substr(name.begin, name.end - name.begin);
}

std::u16string baseNameOf(const std::u16string& path) {
    std::u16string name = fileNameOf(path);
    name.resize(std::min(name.rfind(u'.'), name.size()));
    return name;
}

std::u16string extensionOf(const std::u16string& path) {
    const std::u16string name = fileNameOf(path);
    const std::size_t dot = name.rfind(u'.');
    return dot == name.npos ? std::u16string() : name.substr(dot + 1);
}

std::u16string parentFolderOf(const std::u16string& path) {
    const LastName name(path);
    if (name.begin == name.end) {
        return {};
    }
    std::size_t end = name.begin;
    while (end > name.root && isSeparator(path[end - 1])) {
        --end;
    }
    return path.substr(0, end);
}

std::u16string absolutePathOf(const std::u16string& path) {
    PathParts parts = splitPath(path.empty() ? std::u16string(u".") : path);
    if (parts.rooted) {
        return componentPathOf(parts);
    }
    PathParts full = splitPath(toComponentPath(currentFolder()));
    for (const std::u16string& name : parts.names) {
        addName(full, name);
    }
    return componentPathOf(full);
}

PathParts splitPath(std::u16string_view path) {
    if (path.empty() || path.size() > longestPath || path.find(u'\0') != path.npos ||
        hasUnpairedSurrogate(path)) {
        throw Failure(FailureCode::BadFileName);
    }
    PathParts parts;
    parts.drive = startsWithDrive(path) ? path[0] : char16_t{0};
    const std::size_t root = rootLength(path);
    parts.rooted = root > 0;
    parts.namesFolder = isSeparator(path.back());
    addNames(parts, path.substr(root));
    return parts;
}

std::string startOf(const PathParts& parts) {
    if (parts.drive != 0) {
        return driveFolder(parts.drive);
    }
    return parts.rooted ? "/" : "";
}

std::string joinPosix(const std::string& folder, std::string_view name) {
    std::string path = folder;
    if (!path.empty() && path.back() != '/') {
        path += '/';
    }
    return path += name;
}

std::string posixPathOf(const PathParts& parts) {
    std::string path = startOf(parts);
    for (const std::u16string& name : parts.names) {
        if (!path.empty() && path.back() != '/') {
            path += '/';
        }
        path += encodeUtf8(name);
    }
    return path.empty() ? "." : path;
}

} // namespace tessaly
