#include "platform/runtime/SharedLibrary.h"

#include "platform/files/TextCodec.h"
#include "platform/runtime/RuntimeFailure.h"

#include <dlfcn.h>

#include <utility>

namespace tessaly {

namespace {

std::u16string systemsReason() {
    const char* reason = dlerror();
    return decodeText(reason == nullptr ? "" : reason);
}

} // namespace

SharedLibrary::SharedLibrary(std::string path)
    : m_path(std::move(path))
    // Nothing of it is lent to other libraries: two versions of it can be loaded side by side.
    , m_handle(dlopen(m_path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (m_handle == nullptr) {
        throw runtimeFailure(FailureCode::LibraryNotLoaded, "Cannot load the library", m_path,
                             systemsReason());
    }
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : m_path(std::move(other.m_path))
    , m_handle(std::exchange(other.m_handle, nullptr)) {}

SharedLibrary::~SharedLibrary() {
    if (m_handle != nullptr) {
        dlclose(m_handle);
    }
}

void* SharedLibrary::address(const char* name) const {
    void* found = dlsym(m_handle, name);
    if (found == nullptr) {
        throw runtimeFailure(FailureCode::EntryPointNotFound,
                             std::string("There is no ") + name + " in the library", m_path);
    }
    return found;
}

} // namespace tessaly
