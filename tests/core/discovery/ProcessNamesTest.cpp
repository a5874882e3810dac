#include "core/discovery/ProcessNames.h"

#include <gtest/gtest.h>

#include <string>

namespace orvanta::test {
namespace {

TEST(ExcludedProcessNames, AreTheseAndNoOthers) {
    std::string names;
    for (const std::string& name : excludedProcessNames())
        names += name + "\n";
    EXPECT_EQ(names, R"(AMPArtworkAgent
AMPDeviceDiscoveryAgent
AMPDevicesAgent
AMPLibraryAgent
AXVisualSupportAgent
AudioMixerCLI
ContinuityCaptureAgent
Control Center
Dock
Finder
Logi Options+
LogiRightSight
MTLCompilerService
NotificationCenter
Orvanta
OrvantaDesk
PerfPowerServices
PowerChime
ScreenSaverAgent
ScreenSaverEngine
SecurityAgent
Siri
SiriNCService
SpeechSynthesisServer
SystemUIServer
TouchBarServer
UserEventAgent
VoiceOver
WindowServer
accessibility_inspector
airplayd
assistantd
audioaccessoryd
audioclipd
audiomxd
avconferenced
bluetoothd
callservicesd
coreaudiod
coreautha
corespeechd
diagnosticd
distnoted
heard
loginwindow
mediaanalysisd
mediaremoted
rapportd
sharingd
symptomsd
systemsoundserverd
systemstats
universalaccessd
usernoted
)");
}

TEST(ExcludedProcessNames, AreWholeNamesInTheirCase) {
    EXPECT_TRUE(excludedProcessNames().contains("Finder"));
    for (const char* name : {"finder", "Finder ", "Find", "orvanta", "", "Music"})
        EXPECT_FALSE(excludedProcessNames().contains(name)) << name;
}

TEST(HelperNameMarkers, AreFoundAnywhereInTheirCase) {
    for (const char* name :
         {"Foo Helper", "Foo Helper (Renderer)", "GPU Process", "xRendererx",
          "Safe Graphics and Media", "Networking", "PluginHost", "Isolated Web Content"})
        EXPECT_TRUE(hasHelperNameMarker(name)) << name;
    for (const char* name : {"Foo", "helper", "GPU", "Web", ""})
        EXPECT_FALSE(hasHelperNameMarker(name)) << name;
}

TEST(HelperNameMarkers, AreTakenOutOfANameOneAfterTheOther) {
    EXPECT_EQ(withoutHelperNameMarkers("Foo Helper"), "Foo");
    EXPECT_EQ(withoutHelperNameMarkers("Some Browser Helper (Renderer)"), "Some Browser  ()");
    EXPECT_EQ(withoutHelperNameMarkers("\t Helper Foo Helper \t"), "Foo");
    EXPECT_EQ(withoutHelperNameMarkers("HelperHelper"), "");
    EXPECT_EQ(withoutHelperNameMarkers("RendHelpererer"), "") << "made by an earlier one";
    EXPECT_EQ(withoutHelperNameMarkers("HelpRendererer"), "Helper") << "made by a later one";
}

} // namespace
} // namespace orvanta::test
