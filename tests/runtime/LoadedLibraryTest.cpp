#include "entry/EntryPoints.h"
#include "runtime/LoadedHost.h"
#include "support/Shell.h"

#include <cstdio>

TEST_F(LoadedHost, HearsTheEventsOfItsProject) {
    const auto project = openWeather();
    std::vector<std::string> heard;
    support::EventLog shell(heard);
    const auto listening = project->events().advise(shell);
    const auto deck = project->Documents()->Item(u"SETTINGS");
    project->CurrentDocument(deck);
    const auto box = std::make_shared<LockableBox>();
    deck->MuRtb(box);
    deck->view(vMarkup);
    box->text = u"<wml>\n<card></wml>";
    deck->Refresh();
    box->start = 0;
    deck->Format()->exec(u"Bold");
    EXPECT_EQ(heard, (std::vector<std::string>{
                         "OnSetCurrentDocument",
                         "OnParseError `card` is closed by `</wml>`; write `</card>` first",
                         "OnAdd2UndoStack 0 [<b></b>] [] 2"}));
}

TEST_F(LoadedHost, FailuresCrossTheBorderBothWays) {
    const auto project = openWeather();
    EXPECT_EQ(failedWith([&] { project->Documents()->Item(u"none"); }).substr(0, 2), "5:");
    EXPECT_EQ(failedWith([&] { project->MuRtb(std::make_shared<Windows>(nullptr)); }).substr(0, 3),
              "13:");

    const auto factory = runtime.classObject("Tessaly.clProject");
    const auto windows = std::make_shared<Windows>(factory->platform());
    factory->platform(windows);
    const auto deck = project->Documents()->Item(1);
    const auto box = std::make_shared<LockableBox>();
    deck->MuRtb(box);
    deck->view(vMarkup);
    box->locked = true;
    EXPECT_FALSE(deck->Save(folder.path("saved.wml")));
    EXPECT_EQ(windows->boxes, std::vector<std::u16string>{u"The control is locked"});
    factory->platform(nullptr);
}

TEST_F(LoadedHost, WhateverIsInUseKeepsTheLibraryLoaded) {
    ASSERT_NE(std::freopen("/dev/null", "r", stdin), nullptr); // nobody answers the dialog
    std::vector<std::string> heard;
    support::EventLog shell(heard);
    using Use = std::shared_ptr<void>;
    const std::map<std::string, std::function<Use()>> uses{
        {"project", [&] { return newProject(); }},
        {"document", [&] { return openWeather()->Documents()->Item(1); }},
        {"service", [&] { return openWeather()->Documents()->Item(1)->Display(); }},
        {"DOM", [&] { return openWeather()->Documents()->Item(1)->DOM()->selectNodes(u"//p"); }},
        {"subscription",
         [&] { return std::make_shared<Subscription>(newProject()->events().advise(shell)); }},
        {"class object", [&] { return runtime.classObject("Tessaly.clWMLFormat"); }},
        {"pictures",
         [&] { return runtime.classObject("Tessaly.clProject")->platform()->pictures(); }},
        {"dialog", [&] {
             auto project = openWeather();
             EXPECT_FALSE(project->SaveAs(folder.path("weather/Weather.cvp")));
             return project;
         }}};
    for (const auto& [name, use] : uses) {
        SCOPED_TRACE(name);
        Use used = use();
        EXPECT_EQ(runtime.unloadUnused(), 0U);
        used.reset();
        EXPECT_EQ(runtime.unloadUnused(), 1U);
        EXPECT_FALSE(isMapped(TESSALY_LIBRARY));
    }

    runtime.classObject("Tessaly.clProject")->LockServer(true);
    EXPECT_EQ(runtime.unloadUnused(), 0U);
    runtime.classObject("Tessaly.clWMLFormat")->LockServer(false); // the lock is the library's
    EXPECT_EQ(runtime.unloadUnused(), 1U);
}

TEST_F(LoadedHost, ExactlyTheCreatableClassesCanBeMade) {
    const SharedLibrary library(TESSALY_LIBRARY);
    const auto getClassObject =
        library.entryPoint<decltype(DllGetClassObject)>("DllGetClassObject");
    const auto ask = [&](const char* id) {
        std::shared_ptr<ClassFactory> factory;
        const auto answer = static_cast<EntryResult>(getClassObject(id, &factory));
        EXPECT_EQ(factory != nullptr, answer == EntryResult::Ok);
        EXPECT_EQ(factory != nullptr, factory && factory->CreateInstance());
        return answer;
    };
    for (const char* id :
         {"dc58f52f-bfe7-4884-97bf-b5bd421b90db", "903fd637-1b90-47e3-be96-64195aabd613",
          "b6ba2a47-2161-47d7-ab80-da5a313929ab", "ac6fb813-2a41-45fd-8c0b-ffd300e8a396",
          "c4cbf14f-b85a-42ac-ba50-1f182f9f7e2d"}) {
        EXPECT_EQ(ask(id), EntryResult::Ok) << id;
    }
    for (const char* id :
         {"836cca9b-6202-44a0-890e-c2511540bc20", "c9ace362-d4eb-44ad-8886-22cb61b0b647",
          "02695d31-0508-45f7-adea-251407fb0b58", "d499acf6-6068-4589-8183-46e0e4bd3476",
          "83d040eb-67df-459d-b986-28b51387b779", "50381690-4902-456d-a5bd-63dc8960351c",
          "53438dc5-83c4-4cf7-bf3a-f0bbaa943326"}) {
        EXPECT_EQ(ask(id), EntryResult::NotCreatable) << id;
    }
    EXPECT_EQ(ask("DC58F52F-bfe7-4884-97bf-b5bd421b90db"), EntryResult::UnknownClass);
    EXPECT_EQ(ask(""), EntryResult::UnknownClass);

    // By name the registered ones, and they are what the name says.
    const auto formats =
        std::static_pointer_cast<colWMLFormats>(runtime.create("Tessaly.colWMLFormats"));
    formats->Add(u"Bold", u"", {}, {});
    EXPECT_EQ(formats->Item(1)->Caption(), u"Bold");
    const auto document =
        std::static_pointer_cast<WirelessDocument>(runtime.create("Tessaly.WirelessDocument"));
    document->Name(u"deck");
    EXPECT_EQ(document->Name(), u"deck");
}

TEST(Exports, AreTheEntryPointsAlone) {
    EXPECT_EQ(
        support::shell("nm -D --defined-only --format=just-symbols " TESSALY_LIBRARY " | sort").out,
        "DllCanUnloadNow\nDllGetClassObject\nDllRegisterServer\nDllUnregisterServer\n");
}
