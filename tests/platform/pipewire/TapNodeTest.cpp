#include "platform/pipewire/TapNode.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <optional>

namespace orvanta::pipewire {
namespace {

/// The node as the server calls it, with cycles of a tenth of a second.
class TapNodeTest : public testing::Test {
protected:
    TapNodeTest() {
        position_.clock.duration = 4800;
        position_.clock.rate = {1, 48000};
        loop_.start();
        link();
    }

    ~TapNodeTest() override { loop_.stop(); }

    void link() {
        const ControlLoop::Lock lock(loop_);
        methods().set_io(&node_, SPA_IO_Position, &position_, sizeof position_);
        methods().port_set_io(&node_, SPA_DIRECTION_INPUT, 0, SPA_IO_Buffers, &io_, sizeof io_);
    }

    void unlink() {
        const ControlLoop::Lock lock(loop_);
        methods().port_set_io(&node_, SPA_DIRECTION_INPUT, 0, SPA_IO_Buffers, nullptr, 0);
    }

    void giveBuffers() {
        data_.type = SPA_DATA_MemPtr;
        data_.data = samples_.data();
        data_.maxsize = sizeof samples_;
        data_.chunk = &chunk_;
        buffer_.n_datas = 1;
        buffer_.datas = &data_;
        spa_buffer* buffers = &buffer_;
        const ControlLoop::Lock lock(loop_);
        ASSERT_EQ(methods().port_use_buffers(&node_, SPA_DIRECTION_INPUT, 0, 0, &buffers, 1), 0);
    }

    void run(int cycles) {
        for (int cycle = 0; cycle < cycles; ++cycle)
            methods().process(&node_);
    }

    /// How many times the node has told that it starves, by now.
    int timesStarved() {
        // What was signalled before has been told when this has.
        std::promise<void> turned;
        std::optional<ControlEvent> turn;
        {
            const ControlLoop::Lock lock(loop_);
            turn.emplace(loop_, [&] { turned.set_value(); });
        }
        turn->signal();
        turned.get_future().wait();
        const ControlLoop::Lock lock(loop_);
        turn.reset();
        return starved_;
    }

    const spa_node_methods& methods() {
        return *static_cast<const spa_node_methods*>(node_.interface()->iface.cb.funcs);
    }

    ControlLoop loop_;
    TapCycle cycle_;
    SilentCycles silentCycles_{loop_, cycle_};
    int starved_ = 0;
    TapNode node_{loop_, cycle_, silentCycles_, [this] {
                      ++starved_;
                  }};
    spa_io_position position_{};
    spa_io_buffers io_{SPA_STATUS_OK, SPA_ID_INVALID};
    std::array<float, kMaxFrames> samples_{};
    spa_chunk chunk_{};
    spa_data data_{};
    spa_buffer buffer_{};
};

TEST_F(TapNodeTest, TellsAgainAndAgainWhileALinkedPortGetsNoBuffers) {
    run(2);
    EXPECT_EQ(timesStarved(), 0);
    run(1);
    EXPECT_EQ(timesStarved(), 1);
    run(3);
    EXPECT_EQ(timesStarved(), 2);
}

TEST_F(TapNodeTest, HasNoNeedOfBuffersWhereNothingIsLinked) {
    unlink();
    run(10);
    EXPECT_EQ(timesStarved(), 0);
}

TEST_F(TapNodeTest, IsContentWithBuffersThatComeLate) {
    run(2);
    giveBuffers();
    run(10);
    EXPECT_EQ(timesStarved(), 0);
}

TEST_F(TapNodeTest, BeginsAnewInTheNextServer) {
    run(2);
    {
        const ControlLoop::Lock lock(loop_);
        node_.reset();
    }
    link();
    run(2);
    EXPECT_EQ(timesStarved(), 0);
}

} // namespace
} // namespace orvanta::pipewire
