#include "runtime/LoadedHost.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cmath>
#include <cstdlib>

#include <dlfcn.h>

namespace {

const std::string library = std::filesystem::canonical(TESSALY_LIBRARY).string();

std::string entryOf(const std::string& path) {
    return "Tessaly.clProject\tdc58f52f-bfe7-4884-97bf-b5bd421b90db\t" + path;
}

class Registry : public testing::Test {
protected:
    std::string failureOfCreating(const std::string& text) {
        folder.write("classes", text);
        ComponentRuntime runtime(file);
        return failedWith([&] { runtime.create("Tessaly.clProject"); });
    }

    support::TempFolder folder;
    std::string file = folder.posix("classes");
    ClassRegistry registry{file};
};

} // namespace

TEST_F(Registry, UnregisteringRestoresEveryByte) {
    const std::string others[] = {
        "",
        "\n",
        "# mine\r\n\n",
        "no line end",
        "unknown\tline\t\n" + entryOf("/opt/other/libtessaly.so") + "\n\xFF\x01\n# end",
    };
    for (const std::string& before : others) {
        folder.write("classes", before);
        folder.mode("classes", 0640);
        registerLibrary(library, file);
        const std::string registered = folder.read("classes");
        EXPECT_TRUE(registered.starts_with(before));
        EXPECT_EQ(registry.classesOf(library).size(), 5U);
        EXPECT_EQ(registry.find("Tessaly.clProject")->library, library);
        EXPECT_EQ(registry.find("Tessaly.colDocuments"), std::nullopt);

        registerLibrary(library, file);
        EXPECT_EQ(folder.read("classes"), registered);
        unregisterLibrary(library, file);
        EXPECT_EQ(folder.read("classes"), before);
        unregisterLibrary(library, file);
        EXPECT_EQ(folder.read("classes"), before);
        EXPECT_EQ(std::filesystem::status(file).permissions(), std::filesystem::perms{0640});
    }
}

TEST_F(Registry, AFileThatRegistrationMadeGoesAgain) {
    const std::string deeper = folder.posix("new/folder/classes");
    unregisterLibrary(library, deeper);
    EXPECT_FALSE(folder.has("new"));
    registerLibrary(library, deeper);
    EXPECT_TRUE(folder.has("new/folder/classes"));
    unregisterLibrary(library, deeper);
    EXPECT_TRUE(std::filesystem::is_empty(folder.posix("new/folder")));

    folder.write("target", "# kept\n");
    std::filesystem::create_symlink("target", file);
    registerLibrary(library, file);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    unregisterLibrary(library, file);
    EXPECT_EQ(folder.read("target"), "# kept\n");
}

TEST_F(Registry, OfTwoLibrariesTheLastOneServesAndEachLeavesTheOther) {
    const std::string twin = folder.posix("twin library.so");
    std::filesystem::copy(library, twin);
    registerLibrary(library, file);
    registerLibrary(twin, file);
    EXPECT_EQ(registry.find("Tessaly.clProject")->library, twin);
    EXPECT_TRUE(ComponentRuntime(file).create("Tessaly.clProject") != nullptr);
    unregisterLibrary(library, file);
    EXPECT_EQ(registry.find("Tessaly.clProject")->library, twin);
    unregisterLibrary(twin, file);
    EXPECT_FALSE(folder.has("classes"));
}

TEST_F(Registry, FailuresNameTheFile) {
    EXPECT_EQ(failedWith([&] { ComponentRuntime(file).create("Tessaly.clProject"); }),
              "429: Tessaly.clProject is not registered in the class registry " + file);
    for (const char* cut : {"", "\t", "\tid", "\tid\t", "\tid\tlib.so", "\t\t/lib.so"}) {
        EXPECT_EQ(failureOfCreating("#\n" + entryOf(library) + "\nTessaly.clProject" + cut + "\n"),
                  "321: Line 3 lacks the identifier or the library of Tessaly.clProject in the "
                  "class registry " +
                      file)
            << cut;
    }

    Dl_info math = {};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(static_cast<double (*)(double)>(&std::cbrt)), &math),
              0);
    const auto startsWith = [](const std::string& text, const std::string& start) {
        EXPECT_EQ(text.substr(0, start.size()), start);
    };
    const std::pair<std::string, std::string> entries[] = {
        {"Tessaly.clPro", "429: Tessaly.clProject is not registered in the class registry " + file},
        {entryOf("/gone.so"), "48: Cannot load the library /gone.so: "},
        {entryOf(file), "48: Cannot load the library " + file + ": "},
        {entryOf(std::filesystem::canonical(math.dli_fname)),
         "453: There is no DllGetClassObject in the library /"},
        {"Tessaly.clProject\tno-such-id\t" + library,
         "429: Tessaly.clProject (no-such-id) is unknown to the library " + library},
    };
    for (const auto& [entry, failure] : entries) {
        startsWith(failureOfCreating(entry), failure);
    }

    startsWith(failedWith([&] { registerLibrary(library, folder.posix("classes/below")); }),
               "76: Cannot lock the folder of the class registry " + folder.posix("classes/below"));
    folder.folder("folder");
    startsWith(failedWith([&] { ClassRegistry(folder.posix("folder")).find("x"); }),
               "53: Cannot read the class registry " + folder.posix("folder"));
    EXPECT_EQ(failedWith([&] {
                  registry.add({{"class", "id", "/new\nline.so"}});
              }),
              "52: The class registry cannot hold class of /new\nline.so");
}

TEST_F(Registry, ProcessesTakeTurns) {
    constexpr int processes = 4;
    constexpr int rounds = 25;
    const auto pathOf = [](int process) { return "/lib/" + std::to_string(process) + ".so"; };
    folder.write("classes", "# start");
    for (int process = 0; process < processes; ++process) {
        if (fork() == 0) {
            for (int round = 0; round < rounds; ++round) {
                registry.add({{"a", "1", pathOf(process)}, {"b", "2", pathOf(process)}});
                if (registry.classesOf(pathOf(process)).size() != 2) {
                    _exit(1);
                }
                registry.remove(pathOf(process));
            }
            registry.add({{"a", "1", pathOf(process)}});
            _exit(0);
        }
    }
    for (int process = 0; process < processes; ++process) {
        int status = -1;
        wait(&status);
        EXPECT_EQ(status, 0);
    }
    for (int process = 0; process < processes; ++process) {
        EXPECT_EQ(registry.classesOf(pathOf(process)).size(), 1U);
        registry.remove(pathOf(process));
    }
    EXPECT_EQ(folder.read("classes"), "# start");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.posix()), {}), 1);
}

TEST(UserRegistry, LiesInTheUsersDataFolder) {
    const auto at = [](const char* data, const char* home) {
        setenv("XDG_DATA_HOME", data, 1);
        setenv("HOME", home, 1);
        return ClassRegistry::userFile();
    };
    EXPECT_EQ(at("/data", "/home/ann"), "/data/tessaly/classes");
    EXPECT_EQ(at("relative", "/home/ann"), "/home/ann/.local/share/tessaly/classes");
    EXPECT_EQ(failedWith([&] { at("", ""); }).substr(0, 3), "76:");
}
