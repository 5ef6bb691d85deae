#include "updater/checked_plan.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

#include <cerrno>

#include "updater/bench.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::readFile;
using test::writeFile;

class CheckedPlanTest : public ::testing::Test {
  protected:
    Fault read(const fs::path& path) {
        const PlanPolicy policy{"com.dovu.velmorandix", ownTeam_, bench_.result().string()};
        return readPlan(bench_.files, path.string(), policy, plan_);
    }
    Fault read() { return read(bench_.plan()); }
    Fault readText(const std::string& text) {
        fs::remove(bench_.plan());
        writeFile(bench_.plan(), text);
        return read();
    }
    Fault readWith(const std::string& field, const std::string& value) {
        bench_.writePlan({{field, value}});
        return read();
    }
    void setMode(mode_t mode) const { ASSERT_EQ(chmod(bench_.plan().c_str(), mode), 0); }

    static constexpr const char* refused = "the install plan cannot be used: ";

    test::Bench bench_;
    std::string ownTeam_ = "TEAM123456";
    CheckedPlan plan_;
};

TEST_F(CheckedPlanTest, readsAPlan) {
    ASSERT_EQ(read(), std::nullopt);
    EXPECT_EQ(plan_.folderPath, (bench_.folder / "cache").string());
    EXPECT_EQ(plan_.imageName, "update.dmg");
    EXPECT_EQ(plan_.targetPath, bench_.target().string());
    EXPECT_EQ(plan_.version, "1.1.0");
    EXPECT_EQ(plan_.build, "2");
    EXPECT_EQ(plan_.team, "TEAM123456");
    EXPECT_EQ(plan_.digest.size(), 64u);
    UniqueFd image;
    EXPECT_EQ(bench_.files.openFile(plan_.folder.get(), plan_.imageName, image), 0);
}

TEST_F(CheckedPlanTest, refusedPlansLeaveNothingBehind) {
    ASSERT_NE(readWith("statusPath", "/elsewhere"), std::nullopt);
    EXPECT_EQ(plan_.targetPath, "");
    EXPECT_EQ(plan_.version, "");
    EXPECT_FALSE(plan_.folder);
}

TEST_F(CheckedPlanTest, everyFieldHasItsRule) {
    const std::string digest(64, 'a');
    const struct {
        const char* field;
        std::string value;
    } cases[] = {
        {"dmgPath", ""},
        {"dmgPath", "update.dmg"},
        {"dmgPath", bench_.target().string() + "/Contents/Info.plist"},
        {"dmgPath", bench_.image().string() + "/"},
        {"dmgPath", (bench_.folder / "cache/../cache/update.dmg").string()},
        {"dmgPath", "/update.dmg"},
        {"targetAppPath", ""},
        {"targetAppPath", "Velmorandix Orlix.app"},
        {"targetAppPath", "/Velmorandix Orlix.app"},
        {"targetAppPath", bench_.target().string() + "/"},
        {"targetAppPath", bench_.target().parent_path().string()},
        {"targetAppPath", bench_.folder.path().string() + "/Applications/.app"},
        {"targetAppPath", bench_.folder.path().string() + "/Applications/../Applications/A.app"},
        {"targetAppPath", bench_.folder.path().string() + "/A\\u0000.app"},
        {"targetAppPath", bench_.folder.path().string() + "/A\\n.app"},
        {"expectedBundleIdentifier", ""},
        {"expectedBundleIdentifier", "com.dovu.velmorandix2"},
        {"expectedBundleIdentifier", "COM.DOVU.VELMORANDIX"},
        {"expectedTeamIdentifier", ""},
        {"expectedTeamIdentifier", "TEAM123457"},
        {"expectedTeamIdentifier", "team123456"},
        {"expectedVersion", ""},
        {"expectedVersion", "1\\n2"},
        {"expectedVersion", std::string(101, '1')},
        {"expectedBuild", ""},
        {"expectedBuild", "1\\u007f"},
        {"expectedSHA256", ""},
        {"expectedSHA256", digest.substr(1)},
        {"expectedSHA256", digest + 'a'},
        {"expectedSHA256", digest.substr(1) + 'A'},
        {"expectedSHA256", digest.substr(1) + 'g'},
        {"statusPath", ""},
        {"statusPath", "/elsewhere/last-install.json"},
        {"statusPath", bench_.result().string() + "2"},
    };
    for (const auto& [field, value] : cases)
        EXPECT_EQ(readWith(field, value), refused + std::string(field)) << value;
}

TEST_F(CheckedPlanTest, aPlanHasEightTextsAndNothingElse) {
    const std::string text = readFile(bench_.plan());
    const std::string fault = std::string(refused) + "it does not have the fields of a plan";
    for (const auto& [name, value] : bench_.planFields()) {
        std::string other = text;
        other.replace(other.find('"' + name + '"'), name.size() + 2, "\"other\"");
        EXPECT_EQ(readText(other), fault) << "without " << name;
        other = text;
        other.replace(other.find('"' + value + '"'), value.size() + 2, "7");
        EXPECT_EQ(readText(other), fault) << "a number for " << name;
    }
    for (const std::string& other :
         {std::string(), std::string("{"), std::string("[]"), std::string("{}"), std::string("null"),
          std::string("\"text\""), "[" + text + "]", text + text, std::string("\xff\xfe"),
          "{\"more\": \"x\", " + text.substr(1), "{\"dmgPath\": null, " + text.substr(text.find(',') + 1)})
        EXPECT_EQ(readText(other), fault) << other;
    EXPECT_EQ(readText(text), std::nullopt);
}

TEST_F(CheckedPlanTest, aPlanIsAFileOfItsOwn) {
    fs::rename(bench_.plan(), bench_.folder / "elsewhere.json");
    EXPECT_EQ(read(), refused + std::string("No such file or directory"));
    fs::create_symlink(bench_.folder / "elsewhere.json", bench_.plan());
    EXPECT_EQ(read(), refused + std::string("Too many levels of symbolic links"));
    fs::remove(bench_.plan());
    fs::create_hard_link(bench_.folder / "elsewhere.json", bench_.plan());
    EXPECT_EQ(read(), refused + std::string("it has a second name"));
    fs::remove(bench_.plan());
    fs::create_directory(bench_.plan());
    EXPECT_EQ(read(), refused + std::string("Invalid argument"));
    fs::remove(bench_.plan());
    ASSERT_EQ(mkfifo(bench_.plan().c_str(), 0600), 0);
    EXPECT_EQ(read(), refused + std::string("Invalid argument"));
}

TEST_F(CheckedPlanTest, noFolderOnTheWayToAPlanMayBeALink) {
    fs::create_directory_symlink("cache", bench_.folder / "link");
    EXPECT_NE(read(bench_.folder / "link/install-plan.json"), std::nullopt);
    EXPECT_EQ(read(bench_.folder / "cache/../cache/install-plan.json"),
              refused + std::string("its path is not plain"));
    EXPECT_EQ(read("install-plan.json"), refused + std::string("its path is not plain"));
    EXPECT_EQ(read("/install-plan.json"), refused + std::string("its path is not plain"));
}

TEST_F(CheckedPlanTest, theImagesFolderMayBeNamedThroughALink) {
    fs::create_directory_symlink("cache", bench_.folder / "link");
    EXPECT_EQ(readWith("dmgPath", (bench_.folder / "link/update.dmg").string()), std::nullopt);
    EXPECT_EQ(plan_.imageName, "update.dmg");
}

TEST_F(CheckedPlanTest, othersMayReadAPlanAndNotWriteToIt) {
    for (const mode_t mode : {0600u, 0644u, 0640u, 0400u}) {
        setMode(mode);
        EXPECT_EQ(read(), std::nullopt) << std::oct << mode;
    }
    for (const mode_t mode : {0620u, 0602u, 0666u}) {
        setMode(mode);
        EXPECT_EQ(read(), refused + std::string("other users may write to it")) << std::oct << mode;
    }
}

TEST_F(CheckedPlanTest, aPlanBelongsToTheUser) {
    bench_.files.disguise(bench_.plan(), [](FileStatus& status) { ++status.owner; });
    EXPECT_EQ(read(), refused + std::string("it belongs to another user"));
}

TEST_F(CheckedPlanTest, aPlanIsSmall) {
    const std::string text = readFile(bench_.plan());
    EXPECT_EQ(readText(text + std::string(64 * 1024 - text.size(), ' ')), std::nullopt);
    EXPECT_EQ(readText(text + std::string(64 * 1024 + 1 - text.size(), ' ')),
              refused + std::string("File too large"));
}

TEST_F(CheckedPlanTest, aProgramWithoutATeamTakesNoPlan) {
    const char* const text = "automatic updates require a Developer ID signed application";
    ownTeam_ = "";
    EXPECT_EQ(readWith("expectedTeamIdentifier", ""), text);
    ownTeam_ = "TEAM\" or anchor trusted";
    EXPECT_EQ(readWith("expectedTeamIdentifier", "TEAM\\\" or anchor trusted"), text)
        << "it would become a part of a requirement";
}

}  // namespace
}  // namespace orlix
