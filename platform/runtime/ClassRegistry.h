#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// A class that can be made, and the library that makes it.
struct RegisteredClass {
    std::string name;    ///< without tabs and line ends, as is the identifier
    std::string id;      ///< what the library knows the class by
    std::string library; ///< an absolute path of the system

    bool operator==(const RegisteredClass&) const = default;
};

/// The class registry in a text file: a line for each class, name, identifier and library with a
/// tab between them. Other lines (comments, whatever a later version writes) stay as they are. Of
/// several lines for one class the last one counts.
///
/// A change takes a lock on the file's folder, so that of two processes one waits for the other,
/// and puts a whole new file in the old one's place: who reads meanwhile sees the one or the other.
/// A file that cannot be read or written is a Failure that names it.
class ClassRegistry {
public:
    /// `file` is a path of the system. A file that is not there is an empty registry.
    explicit ClassRegistry(std::string file);

    /// The user's own: `tessaly/classes` in XDG_DATA_HOME or, without that, in ~/.local/share. No
    /// home folder is a Failure.
    static std::string userFile();

    const std::string& file() const { return m_file; }

    /// A line that begins like an entry of the class and is none fails with InvalidFileFormat.
    std::optional<RegisteredClass> find(std::string_view name) const;

    /// The classes that are registered with `library`, in the order of the file.
    std::vector<RegisteredClass> classesOf(const std::string& library) const;

    /// Puts the classes of one library at the end, in place of what the library had registered. A
    /// missing file is made, with its folder. A path or name that a line cannot hold fails with
    /// BadFileName.
    void add(const std::vector<RegisteredClass>& classes);

    /// Takes out the classes of `library`. What `add` made of an earlier state of the file becomes
    /// that state again, byte for byte; a file that `add` made is removed.
    void remove(const std::string& library);

private:
    std::string m_file;
};

} // namespace tessaly
