#pragma once

#include "core/platform/Logger.h"
#include "platform/pipewire/RateLimit.h"
#include "platform/pipewire/ServerMirror.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace orvanta::pipewire {

/// The streams that one tap has had moved to its node, by the note in the session's metadata that
/// says where a stream should play. All of it with the lock held.
///
/// Another program that moves such a stream away (a mixer where the user picks a device, say)
/// does not get its way, but neither do two programs fight for ever: after three times in ten
/// seconds the stream is left to the other one.
class StreamClaims {
public:
    using Time = std::chrono::steady_clock::time_point;

    /// `node` is the name of the tap's node. A name and no number: a number the session manager
    /// would take for the user's lasting choice for this program.
    StreamClaims(ServerMirror& mirror, std::string node, const Logger& logger);

    /// Leaves these streams where they play until `claimAll`.
    void defer(std::set<NodeRef> streams) { deferred_ = std::move(streams); }

    void claimAll() { deferred_.clear(); }

    /// Lets the next `update` claim also those that were left alone.
    void tryAgain();

    /// Claims the given streams, all that the tapped processes have now, and gives back others.
    void update(const std::vector<NodeRef>& streams, Time now);

    /// Whether the tap has all of them: none is heard beside it that has not come or was left
    /// alone. The session manager moves them a moment after the claim, or not at all: encoded sound
    /// cannot come to a tap, and a link that was made by hand stays.
    [[nodiscard]] bool haveArrived() const;

    /// Whether there are streams that may yet come and are heard beside the tap meanwhile.
    [[nodiscard]] bool hasStragglers() const;

    /// Gives up those that were heard beside the tap for as long as this, by the times of `update`.
    static constexpr std::chrono::milliseconds kLatestArrival{2000};
    void leaveStragglers(Time now);

    /// Those that have not come were not able to: their time begins anew with the next `update`.
    void excuseStragglers();

    /// The session manager has lost all notes: the next `update` writes them again.
    void metadataLost();

    /// Puts back where every stream was to play before, or what another program has wanted since.
    void release();

private:
    struct Claim {
        MetadataValue previous;
        RateLimit takeBacks{3, std::chrono::seconds(10)};
        bool hasArrived = false;
        bool isLeftAlone = false;
        /// Since when it is heard beside the tap.
        std::optional<Time> besideSince;
    };

    Claim& claim(const NodeRef& stream);
    void notice(const NodeRef& stream, Claim& claim, Time now) const;
    void defend(const NodeRef& stream, Claim& claim, Time now);
    [[nodiscard]] bool feedsTap(const NodeRef& stream) const;
    [[nodiscard]] bool isHeardBeside(const NodeRef& stream) const;
    [[nodiscard]] bool isStraggler(const NodeRef& stream, const Claim& claim) const;
    void giveBack(const NodeRef& stream, const Claim& claim);
    void remindOfChoice(const NodeRef& stream);
    [[nodiscard]] MetadataValue chosenDevice(const NodeRef& stream) const;

    ServerMirror& mirror_;
    MetadataMirror& metadata_;
    MetadataValue ours_;
    const Logger& logger_;
    std::set<NodeRef> deferred_;
    std::map<NodeRef, Claim> claims_;
    bool isStale_ = false;
};

/// The metadata key under which a stream's target stands.
inline constexpr const char* kTargetKey = "target.object";

/// The same in an older form: where the session manager notes the device that the user once chose
/// for the program. It only counts where there is no target.
inline constexpr const char* kChoiceKey = "target.node";

} // namespace orvanta::pipewire
