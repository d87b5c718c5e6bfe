#include "entry/EntryPoints.h"

#include "entry/ClassTable.h"
#include "naming/dlgFileExists.h"

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

std::int32_t serverLocks = 0;

class Factory final : public ClassFactory {
public:
    explicit Factory(const ClassRecord& record)
        : m_record(record) {}

    ObjectRef CreateInstance() override { return m_record.make(); }

    void LockServer(bool bLock) override {
        serverLocks = std::max(0, serverLocks + (bLock ? 1 : -1));
    }

    std::shared_ptr<Platform> platform() override { return Platform::current(); }
    void platform(std::shared_ptr<Platform> platform) override {
        Platform::install(std::move(platform));
    }

private:
    const ClassRecord& m_record;
};

EntryResult getClassObject(std::string_view classId, std::shared_ptr<ClassFactory>& factory) {
    const auto classes = publicClasses();
    const auto found = std::find_if(classes.begin(), classes.end(), [&](const ClassRecord& record) {
        return record.id == classId;
    });
    if (found == classes.end()) {
        return EntryResult::UnknownClass;
    }
    if (found->make == nullptr) {
        return EntryResult::NotCreatable;
    }
    factory = std::make_shared<Factory>(*found);
    return EntryResult::Ok;
}

bool canUnloadNow() {
    dlgFileExists& dialog = dlgFileExists::shared();
    if (serverLocks > 0 || dialog.isUp()) {
        return false;
    }
    // What the component keeps for itself does not keep it loaded.
    dialog.unload();
    Platform::dropIdleDefault();
    return Object::liveCount() == 0;
}

} // namespace

} // namespace tessaly

std::int32_t DllGetClassObject(const char* classId,
                               std::shared_ptr<tessaly::ClassFactory>* factory) {
    return static_cast<std::int32_t>(tessaly::getClassObject(classId, *factory));
}

std::int32_t DllCanUnloadNow() {
    return static_cast<std::int32_t>(tessaly::canUnloadNow() ? tessaly::EntryResult::Ok
                                                             : tessaly::EntryResult::No);
}
