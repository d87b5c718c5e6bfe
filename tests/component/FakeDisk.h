#pragma once

// A disk in memory. Its calls are counted, and each of them can be made to fail; the ones that move
// bytes are logged as well.

#include "World.h"

#include <memory>

namespace fakes {

class FakeStream : public TextStream {
public:
    explicit FakeStream(std::u16string& text)
        : m_text(text) {}
    ~FakeStream() override { world.log.emplace_back("stream gone"); }
    bool AtEndOfStream() override {
        diskCall("AtEndOfStream");
        return m_at >= m_text.size();
    }
    std::u16string ReadLine() override {
        diskCall("ReadLine");
        const std::size_t end = std::min(m_text.find(u"\r\n", m_at), m_text.size());
        const std::size_t start = std::exchange(m_at, end + 2);
        return m_text.substr(start, end - start);
    }
    std::u16string ReadAll() override {
        diskCall("ReadAll");
        return m_text.substr(std::exchange(m_at, m_text.size()));
    }
    void Write(const std::u16string& text) override {
        diskCall("Write", text);
        m_text += text;
    }
    void WriteLine(const std::u16string& text) override {
        diskCall("WriteLine", text);
        m_text += text + u"\r\n";
    }
    void Close() override { diskCall("Close"); }

private:
    std::u16string& m_text;
    std::size_t m_at = 0;
};

class FakeFile : public File {
public:
    explicit FakeFile(std::u16string path)
        : m_path(std::move(path)) {}
    std::int32_t Attributes() override {
        countDiskCall("Attributes");
        return world.readOnly.contains(m_path) ? 33 : 32; // the archive bit beside the lowest one
    }
    Date DateCreated() override {
        diskCall("DateCreated");
        return 36526.5;
    }
    Date DateLastModified() override { return 0; }
    std::shared_ptr<TextStream> OpenAsTextStream(IOMode mode, std::int32_t format) override {
        diskCall("OpenAsTextStream", static_cast<std::int32_t>(mode), format);
        return std::make_shared<FakeStream>(world.files.at(m_path));
    }

private:
    std::u16string m_path;
};

class FakeFileSystem : public FileSystemObject {
    using Path = std::u16string;

public:
    bool FileExists(const Path& path) override {
        countDiskCall("FileExists");
        return world.files.contains(path);
    }
    bool FolderExists(const Path& path) override {
        countDiskCall("FolderExists");
        return world.folders.contains(trimmed(path));
    }
    bool isSameFile(const Path& a, const Path& b) override {
        return world.files.contains(a) && equalIgnoringCase(a, b);
    }
    std::shared_ptr<File> GetFile(const Path& path) override {
        diskCall("GetFile", path);
        requireFile(path);
        return std::make_shared<FakeFile>(path);
    }
    std::shared_ptr<TextStream> OpenTextFile(const Path& path, IOMode mode, bool create,
                                             std::int32_t format) override {
        diskCall("OpenTextFile", path, static_cast<std::int32_t>(mode), create, format);
        return openEmptied(path);
    }
    std::shared_ptr<TextStream> CreateTextFile(const Path& path, bool overwrite,
                                               bool unicode) override {
        diskCall("CreateTextFile", path, overwrite, unicode);
        return openEmptied(path);
    }
    void CopyFile(const Path& from, const Path& to, bool overwrite) override {
        diskCall("CopyFile", from, to, overwrite);
        requireFile(from);
        requireFolderOf(to);
        world.files[to] = world.files[from];
    }
    void DeleteFile(const Path& path, bool force) override {
        diskCall("DeleteFile", path, force);
        requireFile(path);
        if (!force && world.readOnly.contains(path)) {
            throw Failure(FailureCode::PermissionDenied);
        }
        world.files.erase(path);
    }
    void CreateFolder(const Path& path) override {
        diskCall("CreateFolder", path);
        requireFolderOf(trimmed(path));
        world.folders.insert(trimmed(path));
    }
    void DeleteFolder(const Path& path, bool force) override {
        diskCall("DeleteFolder", path, force);
        const Path inside = toLower(path) + u"\\";
        std::erase_if(world.files,
                      [&](const auto& file) { return toLower(file.first).starts_with(inside); });
        std::erase_if(world.folders, [&](const Path& folder) {
            return (toLower(folder) + u"\\").starts_with(inside);
        });
    }
    Path GetFileName(const Path& path) override {
        countDiskCall("GetFileName");
        return path.substr(path.rfind(u'\\') + 1);
    }
    Path GetBaseName(const Path& path) override {
        countDiskCall("GetBaseName");
        const Path name = path.substr(path.rfind(u'\\') + 1);
        return name.substr(0, name.rfind(u'.'));
    }
    Path GetExtensionName(const Path& path) override {
        countDiskCall("GetExtensionName");
        const std::size_t dot = path.rfind(u'.');
        return dot == path.npos ? u"" : path.substr(dot + 1);
    }
    Path GetParentFolderName(const Path& path) override {
        countDiskCall("GetParentFolderName");
        return folderOf(path);
    }
    Path GetAbsolutePathName(const Path& path) override {
        countDiskCall("GetAbsolutePathName");
        return trimmed(path);
    }

private:
    static Path trimmed(Path path) {
        while (path.ends_with(u'\\')) {
            path.pop_back();
        }
        return path;
    }
    static Path folderOf(const Path& path) {
        const std::size_t cut = path.rfind(u'\\');
        return cut == path.npos ? u"" : path.substr(0, cut);
    }
    static void requireFile(const Path& path) {
        if (!world.files.contains(path)) {
            throw Failure(FailureCode::FileNotFound);
        }
    }
    static void requireFolderOf(const Path& path) {
        if (!world.folders.contains(folderOf(path))) {
            throw Failure(FailureCode::PathNotFound);
        }
    }
    static std::shared_ptr<TextStream> openEmptied(const Path& path) {
        if (world.readOnly.contains(path)) {
            throw Failure(FailureCode::PermissionDenied);
        }
        requireFolderOf(path);
        world.files[path].clear();
        return std::make_shared<FakeStream>(world.files[path]);
    }
};

} // namespace fakes
