#pragma once

#include "entry/ClassFactory.h"
#include "platform/runtime/ClassRegistry.h"
#include "platform/runtime/SharedLibrary.h"
#include "util/Object.h"

#include <cstddef>
#include <list>
#include <memory>
#include <string>

namespace tessaly {

/// Makes objects by the names of their classes, from the libraries that are registered for them. A
/// host that makes its objects so links tessaly::host alone and none of the component's code.
///
/// Every failure names the file that it is about: a class that is not registered, or that its
/// library does not make, fails with CannotCreateObject, a library as SharedLibrary does, the
/// registry as ClassRegistry does.
class ComponentRuntime {
public:
    /// `registryFile` is a path of the system.
    explicit ComponentRuntime(std::string registryFile = ClassRegistry::userFile());

    /// Unloads what can be unloaded, unless the runtime ends because of a Failure that is under
    /// way: it may be a library's own. What is left loaded stays to the end of the process.
    ~ComponentRuntime();
    ComponentRuntime(const ComponentRuntime&) = delete;
    ComponentRuntime& operator=(const ComponentRuntime&) = delete;
    ComponentRuntime(ComponentRuntime&&) = delete;
    ComponentRuntime& operator=(ComponentRuntime&&) = delete;

    /// A new object of the class `className`, such as "Tessaly.clProject". The caller knows its
    /// type: std::static_pointer_cast<clProject>(runtime.create("Tessaly.clProject")).
    ObjectRef create(const std::string& className);

    /// The class object, for a host that lends its platform or locks the library.
    std::shared_ptr<ClassFactory> classObject(const std::string& className);

    /// Unloads the libraries of which nothing is in use. How many were unloaded. Not to be called
    /// while a Failure of theirs is being handled.
    std::size_t unloadUnused();

private:
    const SharedLibrary& load(const std::string& path);

    ClassRegistry m_registry;
    std::list<SharedLibrary> m_libraries;
};

/// Let the library at `library`, a path of the system, enter its classes into the registry or take
/// them out, by its own DllRegisterServer and DllUnregisterServer.
void registerLibrary(const std::string& library, const std::string& registryFile);
void unregisterLibrary(const std::string& library, const std::string& registryFile);

} // namespace tessaly
