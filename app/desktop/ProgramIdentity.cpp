#include "app/desktop/ProgramIdentity.h"

#include "core/platform/SystemLog.h"
#include "platform/linux/LinuxHost.h"
#include "platform/linux/defaults/SQLiteUserDefaults.h"
#include "platform/linux/desktop/DesktopFolders.h"
#include "platform/linux/desktop/UserFolders.h"

#include <cstdlib>

namespace orvanta {
namespace {

BundleInfo thisBundle() {
    return {.shortVersion = ORVANTA_VERSION, .version = ORVANTA_BUILD};
}

UpdateFeed thisFeed() {
    return {.url = ORVANTA_FEED_URL, .publicKey = ORVANTA_FEED_KEY};
}

} // namespace

ProgramIdentity ProgramIdentity::ofMixer() {
    const auto home = userHomeDirectory();
    return {.domain = std::string(kLogSubsystem),
            .bundle = thisBundle(),
            .settingsFile = userDefaultsFile(home, std::getenv("XDG_CONFIG_HOME")),
            .home = home,
            .folders = userFoldersOf(DesktopFolders::fromEnvironment()),
            .updateFeed = thisFeed(),
            .instanceName = "orvanta"};
}

ProgramIdentity ProgramIdentity::ofDemo() {
    const auto folder = DesktopFolders::fromEnvironment().dataHome / "orvanta-demo";
    return {.domain = std::string(kLogSubsystem) + ".demo",
            .bundle = thisBundle(),
            .settingsFile = folder / "settings.db",
            .home = folder,
            .folders = {.music = folder / "Music",
                        .documents = folder / "Documents",
                        .downloads = folder / "Downloads",
                        .temporary = std::filesystem::temp_directory_path()},
            .updateFeed = thisFeed(),
            .instanceName = "orvanta-demo",
            .ownsSession = false,
            .canLaunchAtLogin = false};
}

} // namespace orvanta
