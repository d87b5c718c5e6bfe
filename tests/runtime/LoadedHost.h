#pragma once

#include "platform/TempFolder.h"
#include "platform/runtime/ComponentRuntime.h"
#include "tessaly.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

using namespace tessaly;

/// Writes down what it hears.
struct Shell : __clProject {
    std::vector<std::string> heard;

    void OnRefresh() override { heard.emplace_back("OnRefresh"); }
    void OnSetCurrentDocument() override { heard.emplace_back("OnSetCurrentDocument"); }
    void OnViewChange() override { heard.emplace_back("OnViewChange"); }
    void OnParseError(std::shared_ptr<ParseError>& err) override {
        heard.push_back("OnParseError " + std::to_string(err->line()));
    }
    void OnClearErrors() override { heard.emplace_back("OnClearErrors"); }
    void OnDocDirty() override { heard.emplace_back("OnDocDirty"); }
    void OnDocAdd(std::u16string& name) override {
        heard.push_back("OnDocAdd " + std::string(name.begin(), name.end()));
    }
    void OnUTag(std::u16string&) override { heard.emplace_back("OnUTag"); }
    void OnAdd2UndoStack(std::int32_t&, std::u16string& txt, std::u16string&,
                         std::int32_t&) override {
        heard.push_back("OnAdd2UndoStack " + std::string(txt.begin(), txt.end()));
    }
};

/// A text control of the host, which can break down.
struct TextBox : RichTextControl {
    std::u16string text;
    std::int32_t start = 0;
    std::int32_t length = 0;
    bool visible = false;
    bool broken = false;

    std::u16string Text() override {
        if (broken) {
            throw Failure(FailureCode::PermissionDenied, u"The control is locked");
        }
        return text;
    }
    void Text(const std::u16string& newText) override { text = newText; }
    bool Visible() override { return visible; }
    void Visible(bool nowVisible) override { visible = nowVisible; }
    std::int32_t SelStart() override { return start; }
    void SelStart(std::int32_t newStart) override { start = newStart; }
    std::int32_t SelLength() override { return length; }
    void SelLength(std::int32_t newLength) override { length = newLength; }
    std::u16string SelText() override {
        return text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(length));
    }
    void SelText(const std::u16string& newText) override {
        text.replace(static_cast<std::size_t>(start), static_cast<std::size_t>(length), newText);
    }
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
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
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
