#include "platform/pipewire/ServerConnection.h"

#include "tests/support/RecordingLog.h"
#include "tests/support/TemporaryDirectory.h"
#include "tests/support/Waiting.h"

#include <gtest/gtest.h>
#include <pipewire/pipewire.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string>
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

/// A connection to a server that is reached and says nothing.
class ServerConnection : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(loop_.isUsable());
        connection_ =
            std::make_unique<pipewire::ServerConnection>(loop_, path_, "test", told_, logger_);
        ASSERT_TRUE(loop_.start());
        ASSERT_TRUE(eventually(Seconds(10), [&] { return told_.connected == 1; }));
    }

    void TearDown() override { loop_.stop(); }

    /// Where what the server says comes in.
    [[nodiscard]] pw_proxy* core() const {
        return reinterpret_cast<pw_proxy*>(connection_->core());
    }

    TemporaryDirectory directory_;
    std::string path_ = (directory_.path() / "silent").string();
    SilentServer server_{path_};
    RecordingLog log_;
    Logger logger_{log_, "test"};
    Told told_;
    pipewire::ControlLoop loop_;
    std::unique_ptr<pipewire::ServerConnection> connection_;
};

TEST_F(ServerConnection, IsLostWhenTheServerIsSilentAfterAnError) {
    // Silence alone means nothing: the server may be stopped or busy.
    letTimePass(Seconds(2.0));
    EXPECT_EQ(told_.lost, 0);
    {
        const pipewire::ControlLoop::Lock lock(loop_);
        // The cast is the macro's own.
        // NOLINTNEXTLINE(modernize-use-auto)
        pw_proxy_notify(core(), pw_core_events, error, 0, PW_ID_CORE, 0, -ECONNRESET, "reset");
    }
    EXPECT_TRUE(eventually(Seconds(10), [&] { return told_.lost == 1; }));
    EXPECT_TRUE(eventually(Seconds(10), [&] { return told_.connected == 2; }));
}

TEST_F(ServerConnection, KnowsWhichOfSeveralQuestionsIsAnswered) {
    const pipewire::ControlLoop::Lock lock(loop_);
    const int sequence = pw_core_sync(connection_->core(), PW_ID_CORE, 0);
    const auto first = connection_->askAnew();
    const auto second = connection_->askAnew();
    const auto answer = [&](int question) {
        // The cast is the macro's own.
        // NOLINTNEXTLINE(modernize-use-auto)
        pw_proxy_notify(core(), pw_core_events, done, 0, PW_ID_CORE, question);
    };
    answer(sequence);
    EXPECT_FALSE(connection_->isAnswered(first));
    answer(sequence + 1);
    EXPECT_TRUE(connection_->isAnswered(first));
    EXPECT_FALSE(connection_->isAnswered(second));
    answer(sequence + 2);
    EXPECT_TRUE(connection_->isAnswered(second));
}

} // namespace
} // namespace orvanta::test
