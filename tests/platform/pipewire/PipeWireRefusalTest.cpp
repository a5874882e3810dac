#include "tests/platform/pipewire/support/PipeWireTest.h"
#include "tests/support/ChildProcess.h"

#include <algorithm>
#include <unistd.h>

namespace orvanta::test {
namespace {

/// As the server counts them.
constexpr std::uint32_t mayRead = 0400;
constexpr std::uint32_t mayEverything = 0710;

/// A server that answers what is asked of it with errors, because this program may not ask for it:
/// what a policy for sandboxed programs does.
class PipeWireRefusal : public PipeWireTest {
protected:
    void SetUp() override {
        PipeWireTest::SetUp();
        stream_ = std::make_unique<OwnStream>();
        process_ = ownProcess();
        awaitDevice("speakers");
        awaitPlaysTo(::getpid(), "speakers");
    }

    /// What our connections may do with one object of the server.
    void permit(std::uint32_t permissions, std::uint32_t object) const {
        graph().synchronise();
        for (const GraphObject& client : graph().objects())
            if (client.type == "Client" && client.get("application.name") == "Orvanta")
                runToEnd({"pw-cli", "permissions", std::to_string(client.id),
                          std::to_string(object), std::to_string(permissions)});
    }

    [[nodiscard]] std::uint32_t object(const std::string& type, const std::string& key,
                                       const std::string& value) const {
        for (const GraphObject& each : graph().objects())
            if (each.type == type && each.get(key) == value)
                return each.id;
        throw std::runtime_error("no object with " + key + " " + value);
    }

    void expectUntouched() {
        EXPECT_TRUE(eventually(soon, [&] { return tapNodes().empty(); }));
        awaitPlaysTo(::getpid(), "speakers");
    }

    void expectTappable() {
        EXPECT_TRUE(eventually(soon, [&] { return hardware().isServerReachable(); }));
        awaitDevice("speakers");
        const PlayedTap tap(hardware(), process_, "speakers");
        awaitTapped(::getpid(), "speakers");
    }

    std::unique_ptr<OwnStream> stream_;
    AudioObjectID process_ = kAudioObjectUnknown;
};

TEST_F(PipeWireRefusal, OfNotesLeavesTheProgramAsItWas) {
    const std::uint32_t metadata = object("Metadata", "metadata.name", "default");
    permit(mayRead, metadata);
    EXPECT_THROW(PlayedTap(hardware(), process_, "speakers"), std::runtime_error);
    expectUntouched();
    permit(mayEverything, metadata);
    expectTappable();
}

TEST_F(PipeWireRefusal, OfNodesLeavesTheProgramAsItWas) {
    const std::uint32_t factory = object("Factory", "factory.name", "client-node");
    permit(0, factory);
    EXPECT_THROW(PlayedTap(hardware(), process_, "speakers"), std::runtime_error);
    expectUntouched();
    permit(mayEverything, factory);
    expectTappable();
}

TEST_F(PipeWireRefusal, OfLinksLeavesTheProgramAsItWas) {
    const std::uint32_t factory = object("Factory", "factory.name", "link-factory");
    permit(0, factory);
    EXPECT_THROW(PlayedTap(hardware(), process_, "speakers"), std::runtime_error);
    expectUntouched();
    permit(mayEverything, factory);
    expectTappable();
}

TEST_F(PipeWireRefusal, OfEverythingLeavesTheProgramAsItWas) {
    permit(mayRead, 0);
    EXPECT_THROW(PlayedTap(hardware(), process_, "speakers"), std::runtime_error);
    expectUntouched();
    permit(mayEverything, 0);
    expectTappable();
}

} // namespace
} // namespace orvanta::test
