#include "platform/pipewire/TapName.h"

#include "platform/pipewire/ProcessIdentity.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

namespace orvanta::pipewire {
namespace {

TEST(TapName, CarriesItsOwner) {
    const TapOwner owner{4711, 123456789};
    const std::string name = makeTapName(owner, 3);
    EXPECT_TRUE(isTapName(name));
    EXPECT_EQ(tapOwner(name), owner);
    EXPECT_NE(name, makeTapName(owner, 4));
}

TEST(TapName, OfAnythingElseHasNoOwner) {
    const std::string prefix = "orvanta-tap-";
    for (const std::string& name :
         {std::string(), std::string("speakers"), prefix, prefix + "12", prefix + "12-",
          prefix + "12-34", prefix + "x-34-1", prefix + "12-x-1", prefix + "-12-34-1",
          prefix + "0-34-1", prefix + "99999999999999999999-34-1"})
        EXPECT_EQ(tapOwner(name), std::nullopt) << name;
}

TEST(TapOwner, IsAliveInThisProcess) {
    EXPECT_TRUE(isAlive(currentTapOwner()));
}

TEST(TapOwner, IsDeadWhenItsProcessIdBelongsToALaterProcess) {
    TapOwner owner = currentTapOwner();
    owner.startTime -= 1;
    EXPECT_FALSE(isAlive(owner));
}

TEST(TapOwner, IsDeadAfterItsProcessHasEnded) {
    const pid_t child = ::fork();
    if (child == 0)
        ::pause();
    const TapOwner owner{child, processStartTime(child).value_or(0)};
    EXPECT_TRUE(isAlive(owner));
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_FALSE(isAlive(owner));
}

TEST(ProcessStartTime, IsFoundBehindAnyProgramName) {
    const std::string rest = " S 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 4242 20 21";
    EXPECT_EQ(startTimeInStat("17 (player)" + rest), 4242U);
    EXPECT_EQ(startTimeInStat("17 (a) b (c) 1 2 3)" + rest), 4242U);
    EXPECT_EQ(startTimeInStat("17 (player) S 1 2 3"), std::nullopt);
    EXPECT_EQ(startTimeInStat("no process"), std::nullopt);
    EXPECT_EQ(startTimeInStat(""), std::nullopt);
}

} // namespace
} // namespace orvanta::pipewire
