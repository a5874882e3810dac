#include "platform/pipewire/ServerConnection.h"

#include "tests/e2e/support/Waiting.h"
#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>
#include <pipewire/pipewire.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace orvanta::test {
namespace {

/// Takes connections and never says a word.
class SilentServer {
public:
    explicit SilentServer(const std::string& path)
        : socket_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
        EXPECT_EQ(::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(::listen(socket_, 16), 0);
    }

    ~SilentServer() { ::close(socket_); }

    SilentServer(const SilentServer&) = delete;
    SilentServer& operator=(const SilentServer&) = delete;

private:
    int socket_;
};

struct Told : pipewire::ConnectionListener {
    std::atomic<int> connected{0};
    std::atomic<int> lost{0};

    void serverConnected(pw_core*) override { ++connected; }

    void serverAnswered() override {}

    void serverAnswersAgain() override {}

    void serverLost() override { ++lost; }
};

TEST(ServerConnection, IsLostWhenTheServerIsSilentAfterAnError) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "silent").string();
    const SilentServer server(path);
    RecordingLog log;
    const Logger logger(log, "test");
    Told told;
    pipewire::ControlLoop loop;
    ASSERT_TRUE(loop.isUsable());
    auto connection =
        std::make_unique<pipewire::ServerConnection>(loop, path, "test", told, logger);
    ASSERT_TRUE(loop.start());
    ASSERT_TRUE(eventually(Seconds(10), [&] { return told.connected == 1; }));
    // Silence alone means nothing: the server may be stopped or busy.
    letTimePass(Seconds(2.0));
    EXPECT_EQ(told.lost, 0);
    {
        const pipewire::ControlLoop::Lock lock(loop);
        auto* proxy = reinterpret_cast<pw_proxy*>(connection->core());
        // The cast is the macro's own.
        // NOLINTNEXTLINE(modernize-use-auto)
        pw_proxy_notify(proxy, pw_core_events, error, 0, PW_ID_CORE, 0, -ECONNRESET, "reset");
    }
    EXPECT_TRUE(eventually(Seconds(10), [&] { return told.lost == 1; }));
    EXPECT_TRUE(eventually(Seconds(10), [&] { return told.connected == 2; }));
    loop.stop();
    connection.reset();
}

TEST(ServerConnection, KnowsWhichOfSeveralQuestionsIsAnswered) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "silent").string();
    const SilentServer server(path);
    RecordingLog log;
    const Logger logger(log, "test");
    Told told;
    pipewire::ControlLoop loop;
    ASSERT_TRUE(loop.isUsable());
    auto connection =
        std::make_unique<pipewire::ServerConnection>(loop, path, "test", told, logger);
    ASSERT_TRUE(loop.start());
    ASSERT_TRUE(eventually(Seconds(10), [&] { return told.connected == 1; }));
    {
        const pipewire::ControlLoop::Lock lock(loop);
        const int sequence = pw_core_sync(connection->core(), PW_ID_CORE, 0);
        const auto first = connection->askAnew();
        const auto second = connection->askAnew();
        const auto answer = [&](int question) {
            auto* proxy = reinterpret_cast<pw_proxy*>(connection->core());
            // The cast is the macro's own.
            // NOLINTNEXTLINE(modernize-use-auto)
            pw_proxy_notify(proxy, pw_core_events, done, 0, PW_ID_CORE, question);
        };
        answer(sequence);
        EXPECT_FALSE(connection->isAnswered(first));
        answer(sequence + 1);
        EXPECT_TRUE(connection->isAnswered(first));
        EXPECT_FALSE(connection->isAnswered(second));
        answer(sequence + 2);
        EXPECT_TRUE(connection->isAnswered(second));
    }
    loop.stop();
    connection.reset();
}

} // namespace
} // namespace orvanta::test
