#pragma once

#include <string>

namespace tessaly {

/// A library that is loaded as long as this object lives, or until the process ends.
class SharedLibrary {
public:
    /// `path` is an absolute path of the system. A library that cannot be loaded fails with
    /// LibraryNotLoaded; the description names it and gives the system's reason.
    explicit SharedLibrary(std::string path);
    ~SharedLibrary();
    SharedLibrary(SharedLibrary&& other) noexcept;
    SharedLibrary& operator=(SharedLibrary&&) = delete;
    SharedLibrary(const SharedLibrary&) = delete;
    SharedLibrary& operator=(const SharedLibrary&) = delete;

    const std::string& path() const { return m_path; }

    /// The exported function `name` of the type `Function`; one that is not there fails with
    /// EntryPointNotFound.
    template <class Function>
    Function* entryPoint(const char* name) const {
        return reinterpret_cast<Function*>(address(name));
    }

    /// Leaves the library loaded for good: objects of it are still in use.
    void leaveLoaded() { m_handle = nullptr; }

private:
    void* address(const char* name) const;

    std::string m_path;
    void* m_handle;
};

} // namespace tessaly
