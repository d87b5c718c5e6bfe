#include "entry/ClassTable.h"
#include "entry/EntryPoints.h"
#include "platform/runtime/ClassRegistry.h"

#include <dlfcn.h>

#include <filesystem>

namespace tessaly {

namespace {

ClassRegistry registryOf(const char* file) {
    return ClassRegistry(file == nullptr ? ClassRegistry::userFile() : file);
}

/// The file that this code was loaded from, without links, so that it has one name for ever.
std::string ownPath() {
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void*>(&DllRegisterServer), &info) == 0) {
        throw Failure(FailureCode::FileNotFound, u"The system does not say the library's path");
    }
    std::error_code failed;
    const auto path = std::filesystem::canonical(info.dli_fname, failed);
    return failed ? std::filesystem::absolute(info.dli_fname).string() : path.string();
}

std::vector<RegisteredClass> ownClasses() {
    const std::string library = ownPath();
    std::vector<RegisteredClass> classes;
    for (const ClassRecord& record : publicClasses()) {
        if (record.make != nullptr) {
            classes.push_back({std::string(record.name), std::string(record.id), library});
        }
    }
    return classes;
}

} // namespace

} // namespace tessaly

std::int32_t DllRegisterServer(const char* registryFile) {
    tessaly::registryOf(registryFile).add(tessaly::ownClasses());
    return static_cast<std::int32_t>(tessaly::EntryResult::Ok);
}

std::int32_t DllUnregisterServer(const char* registryFile) {
    tessaly::registryOf(registryFile).remove(tessaly::ownPath());
    return static_cast<std::int32_t>(tessaly::EntryResult::Ok);
}
