#include "support/Test.h"
#include "system/CommandRun.h"

#include <nlohmann/json.hpp>

using system_test::Outcome;

TEST(Registration, SaysWhatWasRegisteredWhere) {
    const support::TempFolder folder;
    const auto run = [&](const std::string& arguments) {
        return system_test::runIn(folder.posix(), arguments + " --registry data/classes", true);
    };
    const Outcome json = run("register --json");
    EXPECT_EQ(json.status, 0);
    const auto report = nlohmann::json::parse(json.out);
    const std::string library = report["library"];
    EXPECT_EQ(report["classes"].size(), 5U);
    const std::string lines = folder.read("data/classes");
    for (const auto& entry : report["classes"]) {
        const std::string line = entry["name"].get<std::string>() + '\t' +
                                 entry["id"].get<std::string>() + '\t' + library + '\n';
        EXPECT_NE(lines.find(line), std::string::npos) << line;
    }

    const std::string where = library + "\nfrom data/classes\n";
    EXPECT_EQ(run("unregister").out.substr(0, where.size() + 13), "Unregistered " + where);
    EXPECT_FALSE(folder.has("data/classes"));
    const Outcome again = run("unregister");
    EXPECT_EQ(again.out, "Was not registered: " + library + "\nin data/classes\n");
    EXPECT_EQ(again.status, 0);

    EXPECT_EQ(run("register").status, 0);
    folder.mode("data/classes", 0);
    EXPECT_EQ(run("unregister").status, 3);
}
