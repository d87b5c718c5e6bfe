#pragma once

// A disk in memory. Its calls are counted, and each of them can be made to fail; the ones that move
// bytes are logged as well.

#include "World.h"

namespace fakes {

class FakeStream : public TextStream {
public:
    explicit FakeStream(Text& text)
        : m_text(text) {}
    ~FakeStream() override { world.log.emplace_back("stream gone"); }
    bool AtEndOfStream() override {
        diskCall("AtEndOfStream");
        return m_at >= m_text.size();
    }
    Text ReadLine() override {
        diskCall("ReadLine");
        const std::size_t end = std::min(m_text.find(u"\r\n", m_at), m_text.size());
        const std::size_t start = std::exchange(m_at, end + 2);
        return m_text.substr(start, end - start);
    }
    Text ReadAll() override {
        diskCall("ReadAll");
        return m_text.substr(std::exchange(m_at, m_text.size()));
    }
    void Write(const Text& text) override {
        diskCall("Write", text);
        m_text += text;
    }
    void WriteLine(const Text& text) override {
        diskCall("WriteLine", text);
        m_text += text + u"\r\n";
    }
    void Close() override { diskCall("Close"); }

private:
    Text& m_text;
    std::size_t m_at = 0;
};

class FakeFile : public File {
public:
    explicit FakeFile(Text path)
        : m_path(std::move(path)) {}
    /// The archive bit, and the lowest one for a file that is read-only.
    std::int32_t Attributes() override {
        return counted("Attributes", world.readOnly.contains(m_path) ? 33 : 32);
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
    Text m_path;
};

class FakeFileSystem : public FileSystemObject {
public:
    bool FileExists(const Text& path) override {
        return counted("FileExists", world.files.contains(path));
    }
    bool FolderExists(const Text& path) override {
        return counted("FolderExists", world.folders.contains(trimmed(path)));
    }
    bool isSameFile(const Text& a, const Text& b) override {
        return world.files.contains(a) && equalIgnoringCase(a, b);
    }
    std::shared_ptr<File> GetFile(const Text& path) override {
        diskCall("GetFile", path);
        requireFile(path);
        return std::make_shared<FakeFile>(path);
    }
    std::shared_ptr<TextStream> OpenTextFile(const Text& path, IOMode mode, bool create,
                                             std::int32_t format) override {
        diskCall("OpenTextFile", path, static_cast<std::int32_t>(mode), create, format);
        return openEmptied(path);
    }
    std::shared_ptr<TextStream> CreateTextFile(const Text& path, bool overwrite,
                                               bool unicode) override {
        diskCall("CreateTextFile", path, overwrite, unicode);
        return openEmptied(path);
    }
    void CopyFile(const Text& from, const Text& to, bool overwrite) override {
        diskCall("CopyFile", from, to, overwrite);
        requireFile(from);
        requireFolderOf(to);
        world.files[to] = world.files[from];
    }
    void DeleteFile(const Text& path, bool force) override {
        diskCall("DeleteFile", path, force);
        requireFile(path);
        if (!force && world.readOnly.contains(path)) {
            throw Failure(FailureCode::PermissionDenied);
        }
        world.files.erase(path);
    }
    void CreateFolder(const Text& path) override {
        diskCall("CreateFolder", path);
        requireFolderOf(trimmed(path));
        world.folders.insert(trimmed(path));
    }
    void DeleteFolder(const Text& path, bool force) override {
        diskCall("DeleteFolder", path, force);
        const Text inside = toLower(path) + u"\\";
        std::erase_if(world.files,
                      [&](const auto& file) { return toLower(file.first).starts_with(inside); });
        std::erase_if(world.folders, [&](const Text& folder) {
            return (toLower(folder) + u"\\").starts_with(inside);
        });
    }
    Text GetFileName(const Text& path) override {
        return counted("GetFileName", path.substr(path.rfind(u'\\') + 1));
    }
    Text GetBaseName(const Text& path) override {
        countDiskCall("GetBaseName");
        const Text name = path.substr(path.rfind(u'\\') + 1);
        return name.substr(0, name.rfind(u'.'));
    }
    Text GetExtensionName(const Text& path) override {
        const std::size_t dot = std::min(path.rfind(u'.'), path.size());
        return counted("GetExtensionName", path.substr(std::min(dot + 1, path.size())));
    }
    Text GetParentFolderName(const Text& path) override {
        return counted("GetParentFolderName", folderOf(path));
    }
    Text GetAbsolutePathName(const Text& path) override {
        return counted("GetAbsolutePathName", trimmed(path));
    }

private:
    static Text trimmed(Text path) {
        while (path.ends_with(u'\\')) {
            path.pop_back();
        }
        return path;
    }
    static Text folderOf(const Text& path) {
        const std::size_t cut = path.rfind(u'\\');
        return cut == path.npos ? u"" : path.substr(0, cut);
    }
    static void requireFile(const Text& path) {
        if (!world.files.contains(path)) {
            throw Failure(FailureCode::FileNotFound);
        }
    }
    static void requireFolderOf(const Text& path) {
        if (!world.folders.contains(folderOf(path))) {
            throw Failure(FailureCode::PathNotFound);
        }
    }
    static std::shared_ptr<TextStream> openEmptied(const Text& path) {
        if (world.readOnly.contains(path)) {
            throw Failure(FailureCode::PermissionDenied);
        }
        requireFolderOf(path);
        world.files[path].clear();
        return std::make_shared<FakeStream>(world.files[path]);
    }
};

} // namespace fakes
