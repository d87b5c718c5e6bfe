#include "platform/runtime/ComponentRuntime.h"

#include "entry/EntryPoints.h"
#include "platform/runtime/RuntimeFailure.h"
#include "util/Attempt.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <optional>
#include <utility>

namespace tessaly {

namespace {

bool canUnload(const SharedLibrary& library) {
    const auto answer = library.entryPoint<decltype(DllCanUnloadNow)>("DllCanUnloadNow")();
    return static_cast<EntryResult>(answer) == EntryResult::Ok;
}

/// Has a library that is loaded for this alone do `entry` to the registry.
void haveRegistered(const std::string& library, const char* entry,
                    const std::string& registryFile) {
    std::optional<Failure> failure;
    {
        // A bare file name would be looked for in the system's folders.
        const SharedLibrary loaded(std::filesystem::absolute(library).string());
        const auto run = loaded.entryPoint<decltype(DllRegisterServer)>(entry);
        failure = attempt([&] { run(registryFile.c_str()); });
    }
    if (failure) { // thrown again, since the library's own exception cannot outlive it
        throw Failure(*failure);
    }
}

} // namespace

ComponentRuntime::ComponentRuntime(std::string registryFile)
    : m_registry(std::move(registryFile)) {}

ComponentRuntime::~ComponentRuntime() {
    if (std::uncaught_exceptions() == 0) {
        attempt([this] { unloadUnused(); });
    }
    for (SharedLibrary& library : m_libraries) {
        library.leaveLoaded();
    }
}

ObjectRef ComponentRuntime::create(const std::string& className) {
    return classObject(className)->CreateInstance();
}

std::shared_ptr<ClassFactory> ComponentRuntime::classObject(const std::string& className) {
    const auto entry = m_registry.find(className);
    if (!entry) {
        throw runtimeFailure(FailureCode::CannotCreateObject,
                             className + " is not registered in the class registry",
                             m_registry.file());
    }
    const SharedLibrary& library = load(entry->library);
    std::shared_ptr<ClassFactory> factory;
    const auto getClassObject =
        library.entryPoint<decltype(DllGetClassObject)>("DllGetClassObject");
    switch (static_cast<EntryResult>(getClassObject(entry->id.c_str(), &factory))) {
    case EntryResult::Ok:
        return factory;
    case EntryResult::NotCreatable:
        throw runtimeFailure(FailureCode::CannotCreateObject,
                             className + " is made by the component alone, says the library",
                             library.path());
    default:
        throw runtimeFailure(FailureCode::CannotCreateObject,
                             className + " (" + entry->id + ") is unknown to the library",
                             library.path());
    }
}

std::size_t ComponentRuntime::unloadUnused() {
    return std::erase_if(m_libraries, canUnload);
}

const SharedLibrary& ComponentRuntime::load(const std::string& path) {
    const auto known =
        std::find_if(m_libraries.begin(), m_libraries.end(),
                     [&](const SharedLibrary& library) { return library.path() == path; });
    if (known != m_libraries.end()) {
        return *known;
    }
    SharedLibrary loaded(path);
    for (const char* entry : {"DllGetClassObject", "DllCanUnloadNow"}) {
        loaded.entryPoint<void()>(entry);
    }
    return m_libraries.emplace_back(std::move(loaded));
}

void registerLibrary(const std::string& library, const std::string& registryFile) {
    haveRegistered(library, "DllRegisterServer", registryFile);
}

void unregisterLibrary(const std::string& library, const std::string& registryFile) {
    haveRegistered(library, "DllUnregisterServer", registryFile);
}

} // namespace tessaly
