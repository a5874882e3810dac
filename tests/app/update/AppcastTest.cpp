#include "app/update/Appcast.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvanta {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string feed(const std::string& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Mixer</title><link>https://mixer.example/</link>)" +
           items + "</channel></rss>";
}

std::string item(const std::string& version, const std::string& more = "") {
    return "<item><title>New</title><sparkle:version>" + version + "</sparkle:version>" + more +
           R"(<enclosure url="https://mixer.example/mixer.tar.gz" length="4096"
               type="application/octet-stream" sparkle:edSignature="c2lnbmF0dXJl"/></item>)";
}

std::vector<std::string> versionsIn(const std::string& document) {
    const std::vector<AppcastItem> items = readAppcast(document).value();
    std::vector<std::string> versions;
    for (const AppcastItem& each : items)
        versions.push_back(each.version);
    return versions;
}

TEST(Appcast, TellsAllThatAnItemSays) {
    const auto items = readAppcast(feed(
        item("12", "<sparkle:shortVersionString>1.2</sparkle:shortVersionString>"
                   "<link>https://mixer.example/news</link><description><![CDATA[<b>News</b>]]>"
                   "</description>")));
    ASSERT_TRUE(items);
    EXPECT_THAT(*items, ElementsAre(AppcastItem{.version = "12",
                                                .shortVersion = "1.2",
                                                .page = "https://mixer.example/news",
                                                .file = "https://mixer.example/mixer.tar.gz",
                                                .fileSize = 4096,
                                                .signature = "c2lnbmF0dXJl"}));
}

TEST(Appcast, TakesTheVersionsOfOlderFeeds) {
    const auto items =
        readAppcast(feed(R"(<item><enclosure url="https://mixer.example/m" sparkle:version="7"
                sparkle:shortVersionString="0.7" sparkle:edSignature="c2ln"/></item>)"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1U);
    EXPECT_EQ(items->front().version, "7");
    EXPECT_EQ(items->front().shortVersion, "0.7");
    EXPECT_EQ(items->front().fileSize, 0);
    EXPECT_EQ(items->front().signature, "c2ln");
}

TEST(Appcast, OffersNoFileThatNobodyHasSigned) {
    const std::string unsignedFile = R"(<enclosure url="https://mixer.example/m"/></item>)";
    EXPECT_THAT(versionsIn(feed("<item><sparkle:version>5</sparkle:version>" + unsignedFile)),
                IsEmpty());
    const auto items = readAppcast(feed("<item><sparkle:version>5</sparkle:version>"
                                        "<link>https://mixer.example/get</link>" +
                                        unsignedFile));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1U);
    EXPECT_EQ(items->front().file, "");
    EXPECT_EQ(items->front().page, "https://mixer.example/get");
}

TEST(Appcast, TakesTheFirstFileForThisSystem) {
    const auto file = [](const std::string& system, const std::string& name) {
        return "<enclosure sparkle:os=\"" + system + "\" url=\"https://mixer.example/" + name +
               "\" sparkle:edSignature=\"" + name + "\"/>";
    };
    const auto items =
        readAppcast(feed("<item><sparkle:version>5</sparkle:version>" + file("macos", "a") +
                         file("linux", "b") + file("linux", "c") + "</item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1U);
    EXPECT_EQ(items->front().file, "https://mixer.example/b");
    EXPECT_EQ(items->front().signature, "b");
}

TEST(Appcast, OffersAPageWhereThereIsNoFile) {
    const auto items = readAppcast(feed("<item><sparkle:version>3</sparkle:version>"
                                        "<link>https://mixer.example/get</link></item>"));
    ASSERT_TRUE(items);
    ASSERT_EQ(items->size(), 1U);
    EXPECT_EQ(items->front().page, "https://mixer.example/get");
    EXPECT_EQ(items->front().file, "");
}

TEST(Appcast, LeavesOutWhatIsForOthers) {
    EXPECT_THAT(versionsIn(feed(item("1") + item("2", "<sparkle:channel>beta</sparkle:channel>"))),
                ElementsAre("1"));
    const auto forSystem = [](const std::string& system) {
        return feed(R"(<item><sparkle:version>5</sparkle:version><enclosure sparkle:os=")" +
                    system +
                    R"(" url="https://mixer.example/m" sparkle:edSignature="c2ln"/></item>)");
    };
    EXPECT_THAT(versionsIn(forSystem("linux")), ElementsAre("5"));
    EXPECT_THAT(versionsIn(forSystem("macos")), IsEmpty());
}

TEST(Appcast, LeavesOutWhatCannotBeGot) {
    for (const std::string address : {"file:///etc/passwd", "javascript:alert(1)",
                                      "http://mixer.example/m", "mixer.tar.gz", "https:///m", ""}) {
        EXPECT_THAT(versionsIn(feed("<item><sparkle:version>5</sparkle:version><enclosure "
                                    "sparkle:edSignature=\"c2ln\" url=\"" +
                                    address + "\"/></item>")),
                    IsEmpty())
            << address;
    }
    EXPECT_THAT(versionsIn(feed("<item><link>https://mixer.example/get</link></item>")), IsEmpty())
        << "no version";
}

TEST(Appcast, IsNothingWhenItIsMalformed) {
    for (const std::string& document :
         {std::string(), std::string("not found"), std::string("<rss><channel><item>"),
          feed(item("1")).substr(0, 300), feed(item("1")) + "<more/>"})
        EXPECT_EQ(readAppcast(document), std::nullopt) << document;
    EXPECT_THAT(versionsIn(feed("")), IsEmpty());
    EXPECT_THAT(versionsIn("<html><body>Moved</body></html>"), IsEmpty());
}

TEST(Appcast, DoesNotGrowWhatIsNestedInEntities) {
    std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE rss [<!ENTITY a0 \"aaaaaaaaaa\">";
    for (int level = 1; level < 10; ++level) {
        const std::string inner = "&a" + std::to_string(level - 1) + ";";
        bomb += "<!ENTITY a" + std::to_string(level) + " \"";
        for (int times = 0; times < 10; ++times)
            bomb += inner;
        bomb += "\">";
    }
    bomb += "]><rss><item><link>&a9;</link></item></rss>";
    EXPECT_EQ(readAppcast(bomb), std::nullopt);
}

TEST(Appcast, OffersTheNewestOfWhatIsNewer) {
    const auto items = readAppcast(feed(item("1.9") + item("1.10") + item("1.2"))).value();
    EXPECT_EQ(updateFor("1.9", items).value().version, "1.10");
    EXPECT_EQ(updateFor("0.1", items).value().version, "1.10");
    EXPECT_EQ(updateFor("1.10", items), std::nullopt);
    EXPECT_EQ(updateFor("1.10.0", items), std::nullopt);
    EXPECT_EQ(updateFor("2", items), std::nullopt);
    EXPECT_EQ(updateFor("1.0", {}), std::nullopt);
}

} // namespace
} // namespace orvanta
