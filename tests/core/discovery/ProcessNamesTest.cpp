#include "core/discovery/ProcessNames.h"

#include <gtest/gtest.h>

namespace orvanta::test {
namespace {

TEST(ExcludedProcessNames, AreWholeNamesInTheirCase) {
    EXPECT_EQ(excludedProcessNames().size(), 54U);
    for (const char* name : {"audioaccessoryd", "Control Center", "Logi Options+", "Finder",
                             "symptomsd", "Orvanta", "OrvantaDesk", "AudioMixerCLI"})
        EXPECT_TRUE(excludedProcessNames().contains(name)) << name;
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
