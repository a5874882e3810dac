#include "app/update/NetworkFetcher.h"

#include "tests/app/update/support/WebServer.h"
#include "tests/platform/qt/support/EventLoop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

namespace orvanta::test {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr Seconds kFetchBound{60.0};
constexpr std::int64_t kEnough = 1 << 20;
constexpr NetworkFetcher::Patience kMuch{.silence = kFetchBound, .whole = kFetchBound};

class ANetworkFetcher : public testing::Test {
protected:
    ANetworkFetcher() {
        startQt();
        trust_.emplace();
        server_.emplace(WebServer::Kind::secure);
        patientWith(kMuch);
    }

    void patientWith(const NetworkFetcher::Patience& patience) { fetcher_.emplace(patience); }

    /// What comes of a fetch.
    Fetched get(const std::string& url, std::int64_t maxBytes = kEnough) {
        std::optional<Fetched> fetched;
        const auto fetch =
            fetcher_->get(url, maxBytes, [&](Fetched result) { fetched = std::move(result); });
        EXPECT_FALSE(fetched) << "from within";
        EXPECT_TRUE(eventuallyInEventLoop(kFetchBound, [&] { return fetched.has_value(); }));
        return fetched.value_or(Fetched());
    }

    void expectRefused(const std::string& url) {
        const Fetched fetched = get(url);
        EXPECT_THAT(fetched.failure, Not(IsEmpty())) << url;
        EXPECT_THAT(fetched.content, IsEmpty()) << url;
    }

    std::optional<TrustInThisMachine> trust_;
    std::optional<WebServer> server_;
    std::optional<NetworkFetcher> fetcher_;
};

TEST_F(ANetworkFetcher, GetsAFileByHTTPS) {
    const QByteArray content("a\0b\r\n\r\nc", 8);
    server_->answers["/file"] = webPage(content, "Content-Length: 8\r\n");
    const Fetched fetched = get(server_->url("/file"));
    EXPECT_EQ(fetched.failure, "");
    EXPECT_EQ(fetched.content, content.toStdString());
    EXPECT_THAT(server_->requests.at(0), HasSubstr("Accept-Encoding: identity\r\n"));
}

TEST_F(ANetworkFetcher, GetsAsMuchAsItIsToldToAndNoMore) {
    server_->answers["/told"] = webPage("12345678", "Content-Length: 8\r\n");
    server_->answers["/untold"] = webPage("12345678");
    server_->answers["/long"] = webPage(QByteArray(5'000'000, 'x'));
    for (const char* const path : {"/told", "/untold"}) {
        EXPECT_EQ(get(server_->url(path), 8).content, "12345678") << path;
        EXPECT_EQ(get(server_->url(path), 7).failure, "It is larger than it should be.") << path;
    }
    EXPECT_EQ(get(server_->url("/long"), 5'000'000).content.size(), 5'000'000U);
    EXPECT_EQ(get(server_->url("/long"), 4'999'999).failure, "It is larger than it should be.");
}

TEST_F(ANetworkFetcher, WaitsForNothingThatWillBeTooLong) {
    server_->answers["/announced"] = webPage("1", "Content-Length: 8\r\n");
    server_->endsConnections = false;
    EXPECT_EQ(get(server_->url("/announced"), 7).failure, "It is larger than it should be.");
}

TEST_F(ANetworkFetcher, AsksNobodyByAnyOtherWay) {
    WebServer plain(WebServer::Kind::plain);
    plain.answers["/file"] = webPage("plain");
    expectRefused(plain.url("/file"));
    EXPECT_EQ(plain.connections, 0);
    for (const char* const url :
         {"", "file:///etc/passwd", "data:,text", "example.org", "https://"})
        expectRefused(url);
}

TEST_F(ANetworkFetcher, BelievesNobodyWhomNobodyKnows) {
    server_->answers["/file"] = webPage("forged");
    trust_.reset();
    patientWith(kMuch);
    expectRefused(server_->url("/file"));
    EXPECT_THAT(server_->requests, IsEmpty());
}

TEST_F(ANetworkFetcher, GoesWhereItIsLedWithinHTTPS) {
    WebServer other(WebServer::Kind::secure);
    server_->answers["/old"] = webRedirect(server_->url("/new"));
    server_->answers["/new"] = webRedirect(other.url("/file"));
    other.answers["/file"] = webPage("moved");
    EXPECT_EQ(get(server_->url("/old")).content, "moved");
}

TEST_F(ANetworkFetcher, IsNotLedOutOfHTTPS) {
    WebServer plain(WebServer::Kind::plain);
    plain.answers["/file"] = webPage("plain");
    server_->answers["/old"] = webRedirect(plain.url("/file"));
    expectRefused(server_->url("/old"));
    EXPECT_EQ(plain.connections, 0);
}

TEST_F(ANetworkFetcher, IsNotLedInCircles) {
    server_->answers["/circle"] = webRedirect(server_->url("/circle"));
    expectRefused(server_->url("/circle"));
    EXPECT_LT(server_->requests.size(), 10U);
}

TEST_F(ANetworkFetcher, TakesNoErrorAndNoPieceForTheFile) {
    server_->answers["/missing"] =
        "HTTP/1.1 404 Not Found\r\nConnection: close\r\nContent-Length: 4\r\n\r\ngone";
    server_->answers["/cut"] = webPage("1234", "Content-Length: 8\r\n");
    expectRefused(server_->url("/missing"));
    expectRefused(server_->url("/cut"));
}

TEST_F(ANetworkFetcher, KeepsNoCookies) {
    server_->answers["/file"] = webPage("x", "Set-Cookie: visitor=7; Path=/\r\n");
    get(server_->url("/file"));
    get(server_->url("/file"));
    ASSERT_EQ(server_->requests.size(), 2U);
    EXPECT_THAT(server_->requests[1], Not(HasSubstr("ookie")));
}

TEST_F(ANetworkFetcher, GivesASilentServerUp) {
    patientWith({.silence = Seconds(0.2), .whole = kFetchBound});
    EXPECT_EQ(get(server_->url("/silence")).failure, "The server does not answer.");
}

TEST_F(ANetworkFetcher, GivesAnEndlessFileUp) {
    patientWith({.silence = kFetchBound, .whole = Seconds(0.2)});
    server_->answers["/endless"] = webPage("the first of many");
    server_->endsConnections = false;
    EXPECT_EQ(get(server_->url("/endless")).failure, "It took too long.");
}

TEST_F(ANetworkFetcher, SaysNothingOfAFetchThatWasGivenUp) {
    server_->answers["/file"] = webPage("x");
    bool isTold = false;
    for (const std::string& url : {server_->url("/file"), std::string("http://localhost")}) {
        auto fetch = fetcher_->get(url, kEnough, [&](const Fetched&) { isTold = true; });
        fetch.reset();
    }
    EXPECT_EQ(get(server_->url("/file")).content, "x");
    EXPECT_TRUE(eventLoopComesToRest());
    EXPECT_FALSE(isTold);
}

TEST_F(ANetworkFetcher, LetsTheCompletionEndTheFetch) {
    server_->answers["/file"] = webPage("x");
    for (const std::string& url : {server_->url("/file"), std::string("http://localhost")}) {
        std::unique_ptr<Fetch> fetch;
        fetch = fetcher_->get(url, kEnough, [&](const Fetched&) { fetch.reset(); });
        EXPECT_TRUE(eventuallyInEventLoop(kFetchBound, [&] { return fetch == nullptr; })) << url;
    }
}

} // namespace
} // namespace orvanta::test
