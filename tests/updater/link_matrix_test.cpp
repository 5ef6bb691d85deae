// Links take the place of files and folders while an installation runs: at every step in turn, and in a race.
// They lead nowhere: what they point to is not changed, and one complete application is at the target.
#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>

#include "updater/bench.h"
#include "updater/private_folder.h"

namespace orlix {
namespace {

namespace fs = std::filesystem;
using test::Bench;

// A place in the tree that changes its meaning for the time of one step.
struct Swapped {
    const char* name;
    const char* path;         // from the bench's folder; "*" stands for the private folder's name
    const char* destination;  // of the link, from the bench's folder
};

void PrintTo(const Swapped& swapped, std::ostream* stream) {
    *stream << swapped.name;
}

// A file or folder that is away, with a link in its place. Bound to the open folder that it is in, wherever
// that is moved meanwhile: whoever swaps the same things back cannot break what others moved.
class Swap {
  public:
    Swap(const fs::path& path, const fs::path& destination) : name_(path.filename().string()) {
        if (files_.openKnownFolder(path.parent_path().string(), folder_) != 0) return;
        isAway_ = files_.move(folder_.get(), name_, folder_.get(), aside()) == 0;
        if (isAway_) files_.makeLink(folder_.get(), name_, destination.string());
    }
    ~Swap() { undo(); }
    Swap(const Swap&) = delete;
    Swap& operator=(const Swap&) = delete;

    /// As far as the place is still the link, or nothing.
    void undo() {
        if (!isAway_) return;
        isAway_ = false;
        FileStatus status;
        if (files_.statusOf(folder_.get(), name_, status) == 0 && status.kind == FileKind::link)
            files_.removeFile(folder_.get(), name_);
        files_.move(folder_.get(), aside(), folder_.get(), name_);
    }

  private:
    std::string aside() const { return name_ + ".aside"; }

    PosixFileOperations files_;
    UniqueFd folder_;
    const std::string name_;
    bool isAway_ = false;
};

class LinkMatrixTest : public ::testing::TestWithParam<Swapped> {
  protected:
    // The place as a path; nothing while there is no such place.
    static std::optional<fs::path> find(const Bench& bench) {
        std::string path = GetParam().path;
        if (const std::size_t star = path.find('*'); star != std::string::npos) {
            std::string name;
            for (const std::string& leftover : bench.leftovers()) {
                if (leftover.rfind(PrivateFolder::prefix, 0) == 0 &&
                    leftover.find(".aside") == std::string::npos)
                    name = leftover;
            }
            if (name.empty()) return std::nullopt;
            path.replace(star, 1, name);
        }
        const fs::path found = bench.folder / path;
        std::error_code error;
        return fs::exists(fs::symlink_status(found, error)) ? std::optional(found) : std::nullopt;
    }
    static fs::path linkDestination(const Bench& bench) { return bench.folder / GetParam().destination; }
    // The steps of an undisturbed installation before which there is such a place.
    static std::vector<int> stepsWithThePlace() {
        const auto bench = makeBenchWithBait();
        std::vector<int> steps;
        bench->steps.before = [&](int number) {
            if (find(*bench)) steps.push_back(number);
            return 0;
        };
        bench->install();
        return steps;
    }
    static void expectSafe(const Bench& bench) {
        EXPECT_TRUE(bench.isOldInstalled() || bench.isNewInstalled());
        EXPECT_EQ(test::treeDigest(bench.folder / "outside"), outsideDigest_);
    }
    static std::unique_ptr<Bench> makeBenchWithBait() {
        auto bench = std::make_unique<Bench>(Bench::Size::small);
        // A folder and files of the names that somebody would have to fall for.
        test::makeBundle(bench->folder / "outside/Velmorandix Orlix.app", {});
        test::writeFile(bench->folder / "outside/update.dmg", "not the image");
        test::writeFile(bench->folder / "outside/last-install.json", "not a result");
        test::writeFile(bench->folder / "outside/Updates/last-install.json", "not a result");
        test::writeFile(bench->result(), "an earlier result");
        outsideDigest_ = test::treeDigest(bench->folder / "outside");
        return bench;
    }

    static std::uint64_t outsideDigest_;
};

std::uint64_t LinkMatrixTest::outsideDigest_ = 0;

const Swapped places[] = {
    {"plan", "cache/install-plan.json", "outside/file"},
    {"image", "cache/update.dmg", "outside/update.dmg"},
    {"cacheFolder", "cache", "outside"},
    {"applicationOnTheVolume", "mounts/Volume/Velmorandix Orlix.app", "outside/Velmorandix Orlix.app"},
    {"fileOnTheVolume", "mounts/Volume/Velmorandix Orlix.app/Contents/Info.plist", "outside/file"},
    {"privateFolder", "Applications/*", "outside"},
    {"copy", "Applications/*/Velmorandix Orlix.app", "outside/Velmorandix Orlix.app"},
    {"folderOfTheCopy", "Applications/*/Velmorandix Orlix.app/Contents", "outside"},
    {"fileOfTheCopy", "Applications/*/Velmorandix Orlix.app/Contents/Info.plist", "outside/file"},
    {"target", "Applications/Velmorandix Orlix.app", "outside/Velmorandix Orlix.app"},
    {"folderOfTheTarget", "Applications/Velmorandix Orlix.app/Contents",
     "outside/Velmorandix Orlix.app/Contents"},
    {"folderWithTheTarget", "Applications", "outside"},
    {"resultFolder", "support/com.dovu.velmorandix", "outside"},
    {"result", "support/com.dovu.velmorandix/Updates/last-install.json", "outside/last-install.json"},
};

INSTANTIATE_TEST_SUITE_P(, LinkMatrixTest, ::testing::ValuesIn(places),
                         [](const auto& place) { return std::string(place.param.name); });

TEST_P(LinkMatrixTest, aLinkForTheTimeOfAnyStepLeadsNowhere) {
    int swaps = 0;
    for (const int step : stepsWithThePlace()) {
        SCOPED_TRACE("at step " + std::to_string(step));
        const auto bench = makeBenchWithBait();
        std::optional<Swap> swapped;
        bench->steps.before = [&](int number) {
            if (number != step) return 0;
            if (const auto place = find(*bench)) swapped.emplace(*place, linkDestination(*bench));
            return 0;
        };
        bench->steps.after = [&](int number) {
            if (swapped && number == step) swapped->undo();
        };
        bench->install();
        expectSafe(*bench);
        if (swapped) ++swaps;
        if (HasFailure()) return;
    }
    EXPECT_GT(swaps, 0);
}

TEST_P(LinkMatrixTest, aLinkThatComesAndGoesLeadsNowhere) {
    for (int round = 0; round < 10; ++round) {
        const auto bench = makeBenchWithBait();
        std::atomic<bool> isOver{false};
        auto racer = std::async(std::launch::async, [&] {
            while (!isOver) {
                const std::optional<fs::path> place = find(*bench);
                if (!place) continue;
                const Swap swap(*place, linkDestination(*bench));
                std::this_thread::yield();
            }
        });
        bench->install();
        isOver = true;
        racer.get();
        expectSafe(*bench);
        if (HasFailure()) return;
    }
}

}  // namespace
}  // namespace orlix
