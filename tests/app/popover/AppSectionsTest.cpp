#include "app/popover/AppSections.h"

#include "tests/support/ScriptedProcesses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvanta {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Seconds kNow{5000.0};

class AppSectionsTest : public testing::Test {
protected:
    void add(std::int32_t pid, bool isPlaying) {
        apps_.emplace_back(workspace_, AudioObjectID(pid), pid, "app " + std::to_string(pid),
                           std::nullopt, isPlaying);
    }

    [[nodiscard]] std::vector<std::int32_t> pidsIn(AppSection section) const {
        std::vector<std::int32_t> pids;
        for (const AudioApp& app : apps_)
            if (sectionOf(app, lastActiveTime_, kNow) == section)
                pids.push_back(app.pid);
        return pids;
    }

    test::ScriptedWorkspace workspace_;
    std::vector<AudioApp> apps_;
    PIDMap<Seconds> lastActiveTime_;
};

TEST_F(AppSectionsTest, AreEmptyWithoutApplications) {
    for (const AppSection section : kAppSections)
        EXPECT_THAT(pidsIn(section), IsEmpty());
}

TEST_F(AppSectionsTest, HoldEachApplicationOnce) {
    for (const std::int32_t pid : {7, 3, 9, 1, 8})
        add(pid, pid == 9 || pid == 8);
    lastActiveTime_[7] = kNow - Seconds(10.0);
    lastActiveTime_[1] = kNow;
    lastActiveTime_[9] = kNow - Seconds(400.0);
    EXPECT_THAT(pidsIn(AppSection::playing), ElementsAre(9, 8));
    EXPECT_THAT(pidsIn(AppSection::recentlyActive), ElementsAre(7, 1));
    EXPECT_THAT(pidsIn(AppSection::idle), ElementsAre(3));
}

TEST_F(AppSectionsTest, CallAnApplicationRecentForLessThanAMinute) {
    add(1, false);
    add(2, false);
    lastActiveTime_[1] = kNow - Seconds(59.0);
    lastActiveTime_[2] = kNow - Seconds(60.0);
    EXPECT_THAT(pidsIn(AppSection::recentlyActive), ElementsAre(1));
    EXPECT_THAT(pidsIn(AppSection::idle), ElementsAre(2));
}

TEST_F(AppSectionsTest, CallAnApplicationIdleThatNeverPlayed) {
    add(1, false);
    EXPECT_THAT(pidsIn(AppSection::idle), ElementsAre(1));
}

TEST_F(AppSectionsTest, HaveTitles) {
    EXPECT_EQ(titleOf(AppSection::playing), "Playing");
    EXPECT_EQ(titleOf(AppSection::recentlyActive), "Recently Active");
    EXPECT_EQ(titleOf(AppSection::idle), "Idle");
}

} // namespace
} // namespace orvanta
