#include "platform/qt/desktop/DesktopURLOpener.h"

#include "tests/platform/qt/support/EventLoop.h"
#include "tests/platform/qt/support/OpenedAddresses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orvanta::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DesktopURLOpenerTest : public testing::Test {
protected:
    DesktopURLOpenerTest() { startQt(); }

    OpenedAddresses opened_{{"https", "http", "mailto", "file", "javascript"}};
    DesktopURLOpener opener_;
};

TEST_F(DesktopURLOpenerTest, OpensPagesAndLettersAsTheyAreWritten) {
    const std::string letter =
        "mailto:help@example.org?subject=Orvanta%20report&body=a%26b%0Ac%23d%2Be";
    EXPECT_TRUE(opener_.open("https://example.org/a%2Fb?x=%20#top"));
    EXPECT_TRUE(opener_.open(letter));
    EXPECT_THAT(opened_.all, ElementsAre("https://example.org/a%2Fb?x=%20#top", letter));
}

TEST_F(DesktopURLOpenerTest, RefusesWhateverElseThereIs) {
    for (const char* const url :
         {"", "file:///etc/passwd", "javascript:alert(1)", "example.org", "https://exa mple.org",
          "https://example.org/%zz", "/usr/bin/true"})
        EXPECT_FALSE(opener_.open(url)) << url;
    EXPECT_THAT(opened_.all, IsEmpty());
}

} // namespace
} // namespace orvanta::test
