#include "app/demo/DemoSystem.h"

#include "app/popover/AppSections.h"
#include "core/discovery/AudioProcessDiscovery.h"
#include "core/engine/AudioTapManager.h"
#include "core/platform/AudioProperties.h"
#include "tests/support/PlatformFakes.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"

#include <gmock/gmock.h>

#include <QImage>
#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::Not;
using testing::UnorderedElementsAre;

class Demo : public testing::Test {
protected:
    void SetUp() override {
        system = std::make_unique<DemoSystem>(fakes.runLoop, directory.path());
        discovery = std::make_unique<AudioProcessDiscovery>(platform());
    }

    [[nodiscard]] Platform platform() {
        const Platform rest = fakes.platformWith(system->hardware());
        return {.audioHardware = rest.audioHardware,
                .processTable = system->processes(),
                .workspace = system->workspace(),
                .systemLog = rest.systemLog,
                .mainRunLoop = rest.mainRunLoop,
                .serialQueues = rest.serialQueues,
                .wallClock = rest.wallClock,
                .audioFileWriter = rest.audioFileWriter,
                .userDefaults = rest.userDefaults,
                .hotKeyCenter = rest.hotKeyCenter,
                .notificationCenter = rest.notificationCenter,
                .fileViewer = rest.fileViewer,
                .userFolders = rest.userFolders};
    }

    [[nodiscard]] std::vector<std::string> playing() {
        std::vector<std::string> names;
        for (const AudioApp& app : discovery->discoverAudioApps())
            if (app.isPlaying)
                names.push_back(app.name);
        return names;
    }

    PlatformFakes fakes;
    TemporaryDirectory directory;
    std::unique_ptr<DemoSystem> system;
    std::unique_ptr<AudioProcessDiscovery> discovery;
};

TEST_F(Demo, ShowsSixApplicationsWithPicturesOfTheirOwn) {
    std::vector<std::string> names;
    std::set<std::string> keys;
    for (const AudioApp& app : discovery->discoverAudioApps()) {
        names.push_back(app.name);
        ASSERT_NE(app.icon, nullptr) << app.name;
        keys.insert(app.icon->cacheKey());
        for (const int pixels : {26, 32, 52, 64, 128}) {
            const auto file = app.icon->imageFile(pixels);
            ASSERT_TRUE(file) << app.name;
            const QImage image(QString::fromStdString(file->string()));
            EXPECT_GE(image.width(), pixels) << app.name;
            EXPECT_EQ(image.pixelColor(image.rect().center()).alpha(), 255) << app.name;
        }
    }
    EXPECT_THAT(names, UnorderedElementsAre("Forgotten Isles", "Meetly", "Podium", "Telly",
                                            "Tide Browser", "Vinyl"));
    EXPECT_EQ(keys.size(), 6U);
}

TEST_F(Demo, HasTwoDevicesOfWhichOneIsWireless) {
    std::vector<std::string> names;
    std::vector<std::uint32_t> transports;
    for (const AudioObjectID device : deviceList(system->hardware())) {
        names.push_back(readString(system->hardware(), device, {kAudioObjectPropertyName}).value());
        std::uint32_t transport = 0;
        std::uint32_t size = sizeof transport;
        EXPECT_EQ(system->hardware().getPropertyData(device, {kAudioDevicePropertyTransportType},
                                                     size, &transport),
                  noErr);
        transports.push_back(transport);
    }
    EXPECT_THAT(names, ElementsAre("Studio Monitors", "Tide Buds"));
    EXPECT_THAT(transports, ElementsAre(std::uint32_t{kAudioDeviceTransportTypeBuiltIn},
                                        std::uint32_t{kAudioDeviceTransportTypeBluetooth}));
    EXPECT_EQ(system->server().defaultOutput(),
              system->server().findDevice("demo-studio-monitors"));
}

TEST_F(Demo, HasItsProgramsPlayAndPauseByTurns) {
    EXPECT_THAT(playing(), ElementsAre("Forgotten Isles", "Meetly", "Tide Browser"));
    fakes.runLoop.advance(8s);
    EXPECT_THAT(playing(), ElementsAre("Forgotten Isles", "Podium", "Tide Browser"))
        << "the call is over";
    fakes.runLoop.advance(4s);
    EXPECT_THAT(playing(), Contains("Vinyl")) << "the first record";
    fakes.runLoop.advance(46s);
    EXPECT_THAT(playing(), Contains("Meetly")) << "another call";
    EXPECT_THAT(playing(), Not(Contains("Podium")));
    fakes.runLoop.advance(242s);
    EXPECT_THAT(playing(), Contains("Telly")) << "after five minutes";
}

TEST_F(Demo, FillsEachSectionOfThePanelForTheFirstMinutes) {
    PIDMap<Seconds> lastActive;
    for (Seconds now{0}; now < 300s; now += 1s) {
        std::set<AppSection> filled;
        for (const AudioApp& app : discovery->discoverAudioApps()) {
            if (app.isPlaying)
                lastActive[app.pid] = now;
            filled.insert(sectionOf(app, lastActive, now));
        }
        if (now >= 10s) {
            ASSERT_THAT(filled, ElementsAreArray(kAppSections)) << "at " << now.count() << " s";
        }
        fakes.runLoop.advance(1s);
    }
}

TEST_F(Demo, HasProcessesThatUseWhatSuchProgramsUse) {
    const auto before = system->processes().taskInfo(2105).value();
    fakes.runLoop.advance(10s);
    const auto after = system->processes().taskInfo(2105).value();
    const double share = static_cast<double>(after.totalUser - before.totalUser) / 10e9;
    EXPECT_GT(share, 0.3);
    EXPECT_LT(share, 1.0);
    EXPECT_GT(after.residentSize, 1000U << 20U);
    EXPECT_GT(after.threadCount, 1);
    const auto silentBefore = system->processes().taskInfo(2106).value();
    fakes.runLoop.advance(10s);
    const auto silentAfter = system->processes().taskInfo(2106).value();
    EXPECT_LT(silentAfter.totalUser - silentBefore.totalUser, 1e8) << "Telly is silent";
}

TEST_F(Demo, IsStillOnceItHasGone) {
    system.reset();
    EXPECT_EQ(fakes.runLoop.runUntilIdle(), 0U);
    fakes.runLoop.advance(60s);
}

TEST_F(Demo, PlaysInRealTimeWhileTheScriptGoesOn) {
    const AudioObjectID speakers = system->server().defaultOutput();
    EXPECT_EQ(system->server().cycles(speakers), 0U);
    system->startClock();
    EXPECT_TRUE(eventually(30s, [&] {
        fakes.runLoop.advance(60s);
        return system->server().cycles(speakers) > 10;
    }));
}

TEST_F(Demo, SoundsWhereItIsTapped) {
    AudioTapManager taps(platform());
    for (const AudioApp& app : discovery->discoverAudioApps())
        ASSERT_TRUE(taps.createTap(app.pid, app.audioObjectID)) << app.name;
    std::map<std::string, float> peaks;
    for (int step = 0; step < 40; ++step) {
        system->server().advance(50ms);
        for (const AudioApp& app : discovery->discoverAudioApps())
            peaks[app.name] = std::max(peaks[app.name], taps.getAudioLevel(app.pid).value().peak);
    }
    for (const AudioApp& app : discovery->discoverAudioApps()) {
        EXPECT_EQ(peaks[app.name] > 0.1F, app.isPlaying) << app.name;
        EXPECT_LT(peaks[app.name], 0.71F) << app.name;
    }
}

} // namespace
} // namespace orvanta::test
