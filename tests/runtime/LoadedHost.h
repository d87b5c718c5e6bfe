#pragma once

#include "platform/TempFolder.h"
#include "platform/runtime/ComponentRuntime.h"
#include "support/EventLog.h"
#include "support/Test.h"
#include "support/TextBox.h"
#include "tessaly.h"

#include <filesystem>

using namespace tessaly;

/// A text control of the host, which can be locked.
struct LockableBox : support::TextBox {
    void called(const std::string& name, const std::u16string& /*value*/) override {
        if (locked && name == "Text") {
            throw Failure(FailureCode::PermissionDenied, u"The control is locked");
        }
    }
    bool locked = false;
};

/// The library's platform with the host's message boxes.
struct Windows : ForwardingPlatform {
    using ForwardingPlatform::ForwardingPlatform;
    std::vector<std::u16string> boxes;

    MsgBoxAnswer MsgBox(const std::u16string& text, MsgBoxFlags /*flags*/,
                        const std::u16string& /*caption*/) override {
        boxes.push_back(text);
        return MsgBoxAnswer::Ok;
    }
};

inline bool isMapped(const std::string& library) {
    const std::string text = support::bytesOf("/proc/self/maps");
    return text.find(std::filesystem::canonical(library).string()) != std::string::npos;
}

/// The number and the description of the failure that `call` ends with.
template <class Call>
std::string failedWith(Call&& call) {
    const auto failure = attempt([&] { call(); });
    return failure ? failure->what() : "";
}

/// A host with a registry of its own, in which the library is registered.
class LoadedHost : public testing::Test {
protected:
    LoadedHost() {
        std::filesystem::copy(TESSALY_SOURCE_DIR "/examples/weather", folder.posix("weather"));
        registerLibrary(TESSALY_LIBRARY, registry);
    }
    ~LoadedHost() override {
        runtime.unloadUnused();
        EXPECT_FALSE(isMapped(TESSALY_LIBRARY)) << "something keeps the library loaded";
    }

    std::shared_ptr<clProject> newProject() {
        return std::static_pointer_cast<clProject>(runtime.create("Tessaly.clProject"));
    }
    std::shared_ptr<clProject> openWeather() {
        const auto project = newProject();
        project->AppPath(toComponentPath(TESSALY_SOURCE_DIR "/ravikit"));
        EXPECT_TRUE(project->init(folder.path("weather/Weather.cvp")));
        return project;
    }

    support::TempFolder folder;
    std::string registry = folder.posix("data/classes");
    ComponentRuntime runtime{registry};
};
