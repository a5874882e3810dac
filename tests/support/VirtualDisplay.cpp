#include "tests/support/VirtualDisplay.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace orvanta::test {

namespace {

constexpr Seconds kStartBound(60);

/// Where nothing is said of keys, openbox has many.
constexpr auto kWindowManagerSettings = R"(<openbox_config xmlns="http://openbox.org/3.4/rc">
  <focus><focusNew>yes</focusNew></focus>
  <keyboard/>
</openbox_config>
)";

ChildProcess::Launch serverLaunch(int screens) {
    // The server chooses a free number and says so on standard output. Without being told otherwise
    // it starts anew whenever its last program goes.
    ChildProcess::Launch launch{
        .command = {"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-noreset"}, .isTalkedTo = true};
    for (int screen = 0; screen < screens; ++screen)
        launch.command.insert(launch.command.end(),
                              {"-screen", std::to_string(screen), "640x480x24"});
    return launch;
}

} // namespace

VirtualDisplay::VirtualDisplay(int screens)
    : server_(std::make_unique<ChildProcess>(serverLaunch(screens))) {
    const auto number = server_->readLine(kStartBound);
    if (!number)
        throw std::runtime_error("Xvfb does not start");
    name_ = ":" + *number;
    const auto settings = directory_.path() / "rc.xml";
    std::ofstream(settings) << kWindowManagerSettings;
    const auto ready = directory_.path() / "ready";
    windowManager_ = std::make_unique<ChildProcess>(ChildProcess::Launch{
        .command = {"env", "DISPLAY=" + name_, "openbox", "--sm-disable", "--config-file",
                    settings.string(), "--startup", "touch " + ready.string()}});
    if (!eventually(kStartBound, [&] { return std::filesystem::exists(ready); }))
        throw std::runtime_error("openbox does not start");
}

void VirtualDisplay::xdotool(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), {"env", "DISPLAY=" + name_, "xdotool"});
    runToEnd(arguments, Seconds(60));
}

void VirtualDisplay::kill() {
    server_->kill();
}

} // namespace orvanta::test
