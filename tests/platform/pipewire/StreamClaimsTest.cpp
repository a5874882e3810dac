#include "platform/pipewire/StreamClaims.h"

#include "platform/pipewire/ServerConnection.h"
#include "platform/pipewire/TapName.h"
#include "tests/platform/pipewire/support/PipeWireTest.h"

#include <gmock/gmock.h>

namespace orvanta::test {
namespace {

using namespace std::chrono_literals;
using pipewire::ControlLoop;
using pipewire::NodeRef;

/// Claims for a tap whose node is not there: the session manager leaves every stream on the
/// speakers, and time passes only as the test says.
class StreamClaims : public PipeWireTest, private pipewire::ConnectionListener {
protected:
    void SetUp() override {
        PipeWireTest::SetUp();
        pipewire::ConnectionListener& self = *this;
        connection_ =
            std::make_unique<pipewire::ServerConnection>(loop_, "", "Claims", self, logger_);
        ASSERT_TRUE(loop_.start());
        ASSERT_TRUE(eventuallyHere([&] { return mirror_.defaults().isBound(); }));
    }

    void TearDown() override {
        loop_.stop();
        mirror_.detach();
        connection_.reset();
        PipeWireTest::TearDown();
    }

    /// Asks again and again, with the lock held.
    bool eventuallyHere(const std::function<bool()>& isSo) {
        return eventually(soon, [&] {
            const ControlLoop::Lock lock(loop_);
            return isSo();
        });
    }

    /// Waits until the stream plays on the speakers.
    NodeRef awaitStream(const std::string& name) {
        NodeRef found;
        EXPECT_TRUE(eventuallyHere([&] {
            for (const pipewire::ServerNode* node : mirror_.playback())
                if (node->properties.text("node.name") == name) {
                    found = node->ref;
                    return mirror_.feedsDevice(found.id);
                }
            return false;
        }));
        return found;
    }

    void update(const std::vector<NodeRef>& streams, std::chrono::milliseconds time) {
        const ControlLoop::Lock lock(loop_);
        claims_.update(streams, start_ + time);
    }

    /// The ids of the streams that are claimed after the late ones were given up.
    std::vector<std::uint32_t> leaveStragglers(std::chrono::milliseconds time) {
        const ControlLoop::Lock lock(loop_);
        claims_.leaveStragglers(start_ + time);
        std::vector<std::uint32_t> claimed;
        for (const auto& [id, target] : mirror_.defaults().all(pipewire::kTargetKey))
            if (target.value == tap_)
                claimed.push_back(id);
        return claimed;
    }

    [[nodiscard]] bool haveArrived() {
        const ControlLoop::Lock lock(loop_);
        return claims_.haveArrived();
    }

    [[nodiscard]] bool hasStragglers() {
        const ControlLoop::Lock lock(loop_);
        return claims_.hasStragglers();
    }

    /// Another program wants the stream elsewhere, and the claims have seen it.
    void moveAway(const NodeRef& stream, const std::string& target) {
        graph().await("the stream is claimed", [&] {
            return graph().metadata("default", stream.id, pipewire::kTargetKey) == tap_;
        });
        graph().setMetadata("default", stream.id, pipewire::kTargetKey, "Spa:String", target);
        ASSERT_TRUE(eventuallyHere([&] {
            return mirror_.defaults().value(stream.id, pipewire::kTargetKey).value == target;
        }));
        update({stream}, 0ms);
    }

    const std::string tap_ = pipewire::makeTapName(pipewire::currentTapOwner(), 904);
    const pipewire::StreamClaims::Time start_ = std::chrono::steady_clock::now();
    const Logger logger_{log_, "test"};
    ControlLoop loop_;
    pipewire::ServerMirror mirror_{[this] {
        loop_.changed();
    }};
    pipewire::StreamClaims claims_{mirror_, tap_, logger_};

private:
    void serverConnected(pw_core* core) override { mirror_.attach(core); }

    void serverAnswered() override {}

    void serverAnswersAgain() override {}

    void serverLost() override { mirror_.detach(); }

    std::unique_ptr<pipewire::ServerConnection> connection_;
};

TEST_F(StreamClaims, GiveEveryStreamTheSameTimeToCome) {
    const OwnStream early(Properties{{"node.name", "early"}});
    const OwnStream late(Properties{{"node.name", "late"}});
    const NodeRef first = awaitStream("early");
    const NodeRef second = awaitStream("late");
    update({first}, 0ms);
    update({first, second}, 1990ms);
    EXPECT_THAT(leaveStragglers(1999ms), testing::UnorderedElementsAre(first.id, second.id));
    EXPECT_THAT(leaveStragglers(2000ms), testing::ElementsAre(second.id));
    EXPECT_TRUE(hasStragglers());
    EXPECT_THAT(leaveStragglers(3989ms), testing::ElementsAre(second.id));
    EXPECT_THAT(leaveStragglers(3990ms), testing::IsEmpty());
    EXPECT_FALSE(hasStragglers());
    EXPECT_FALSE(haveArrived());
}

TEST_F(StreamClaims, DoNotCountTheTimeInWhichNobodyCouldCome) {
    const OwnStream stream(Properties{{"node.name", "stream"}});
    const NodeRef ref = awaitStream("stream");
    update({ref}, 0ms);
    {
        const ControlLoop::Lock lock(loop_);
        claims_.excuseStragglers();
    }
    update({ref}, 5000ms);
    EXPECT_THAT(leaveStragglers(6999ms), testing::ElementsAre(ref.id));
    {
        const ControlLoop::Lock lock(loop_);
        claims_.metadataLost();
    }
    update({ref}, 7000ms);
    EXPECT_THAT(leaveStragglers(8999ms), testing::ElementsAre(ref.id));
    EXPECT_THAT(leaveStragglers(9000ms), testing::IsEmpty());
}

TEST_F(StreamClaims, AreNotFulfilledByAStreamThatIsLostToAnotherProgram) {
    const OwnStream stream(Properties{{"node.name", "stream"}});
    const NodeRef ref = awaitStream("stream");
    update({ref}, 0ms);
    for (int time = 0; time < 4; ++time)
        moveAway(ref, "elsewhere");
    EXPECT_TRUE(log_.has(LogLevel::error, "Stream " + std::to_string(ref.id) +
                                              " is moved away again and again, leaving it alone"));
    EXPECT_FALSE(hasStragglers());
    EXPECT_FALSE(haveArrived());
}

TEST_F(StreamClaims, MayBeMadeOnceMoreOfWhatWasLeftAlone) {
    const OwnStream stream(Properties{{"node.name", "stream"}});
    const NodeRef ref = awaitStream("stream");
    update({ref}, 0ms);
    ASSERT_THAT(leaveStragglers(2000ms), testing::IsEmpty());
    update({ref}, 2001ms);
    EXPECT_FALSE(hasStragglers());
    {
        const ControlLoop::Lock lock(loop_);
        claims_.tryAgain();
    }
    update({ref}, 2002ms);
    EXPECT_TRUE(hasStragglers());
    EXPECT_THAT(leaveStragglers(4001ms), testing::ElementsAre(ref.id));
}

} // namespace
} // namespace orvanta::test
