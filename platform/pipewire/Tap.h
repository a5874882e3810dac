#pragma once

#include "core/platform/TapDescription.h"
#include "platform/pipewire/DeviceLinks.h"
#include "platform/pipewire/ExportedTap.h"
#include "platform/pipewire/SilentCycles.h"
#include "platform/pipewire/StreamChoice.h"
#include "platform/pipewire/StreamClaims.h"
#include "platform/pipewire/Surroundings.h"
#include "platform/pipewire/TapCycle.h"
#include "platform/pipewire/TapNode.h"

#include <memory>
#include <optional>
#include <set>
#include <string>

namespace orvanta::pipewire {

/// One process tap: its node in the server, the streams that were moved there, the links to the
/// device it plays on. All of it with the lock held, but the cycles.
///
/// The node is in the server only while there is a device: were it the only sink, the session
/// manager would make it everybody's default.
class Tap {
public:
    Tap(Surroundings& surroundings, AudioObjectID id, CATapDescription description,
        std::string nodeName);
    ~Tap();
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;

    [[nodiscard]] AudioObjectID id() const { return id_; }

    /// False where the system had no descriptors left for its timers: then it is of no use.
    [[nodiscard]] bool isUsable() const;

    [[nodiscard]] const CATapDescription& description() const { return description_; }

    /// Brings the server to what this tap should be, as far as it is possible now.
    void update();

    /// The server is gone: forgets what belonged to it, keeps everything else for the next.
    void serverLost();

    /// From here on the processes' streams come to the tap, also those that play already. Until
    /// then only new ones do: playing ones would fall silent for no use before somebody listens.
    void claimStreams();

    /// Whether the streams have left their devices for the tap.
    [[nodiscard]] bool hasItsStreams() const {
        return !isStoodDown_ && isInServer() && claims_.haveArrived();
    }

    /// Whether it was said once that the tap has its streams. Those that open later do not undo it.
    [[nodiscard]] bool isProven() const { return isProven_; }

    void prove() { isProven_ = true; }

    /// Gives the streams back and claims none until `claimStreams`, although the tap still is one.
    void standDown();

    /// The same for a tap that nobody has any use for.
    void release();

    [[nodiscard]] bool isReleased() const { return isReleased_; }

    /// Has the node leave the server, and says whether it has, or was not let go for a second.
    /// `Surroundings::changed` is called when it has become so.
    bool leaveServer();

    /// Whether a stream still plays into the tap's node.
    [[nodiscard]] bool isFed() const;

    /// Names the device to play on by its UID. When the device goes, the tap stays silent until it
    /// is named again, also if the device comes back; only if server or session manager were
    /// started anew meanwhile, which takes all devices away, the tap returns to it.
    void playOn(const std::string& deviceUID);

    /// Nobody plays the tap any more. It keeps its place on the device for a moment, for whoever
    /// re-routes it: the links then go over to the next device without a cycle between them.
    void playNowhere();

    /// Whether the node stands in the server with its ports, or there is no device to stand it for.
    [[nodiscard]] bool isPresent() const;

    /// Whether its device is there and has not been away: one that somebody pulled out and put back
    /// is not played on again before `playOn` says so.
    [[nodiscard]] bool hasDevice() const;

    /// Whether the tap's sound reaches its device as soon as there is any.
    [[nodiscard]] bool isLinked() const { return links_.areReady(); }

    [[nodiscard]] TapCycle& cycle() { return cycle_; }

    [[nodiscard]] const TapCycle& cycle() const { return cycle_; }

    [[nodiscard]] SilentCycles& silentCycles() { return silentCycles_; }

private:
    [[nodiscard]] StreamChoice chooseStreams() const;
    void leave(const std::vector<NodeRef>& streams);
    void watchArrivals();
    void checkArrivals();
    [[nodiscard]] bool mayLinkTo(const ServerNode& device) const;
    [[nodiscard]] const ServerNode* deviceToLink();
    void updateExport();
    void standAnew();
    [[nodiscard]] bool hasLeft() const;
    /// Whether the server has given the node an id and is to keep it.
    [[nodiscard]] bool isInServer() const;
    void updateLinks();
    void updateClaims();

    Surroundings& surroundings_;
    AudioObjectID id_;
    CATapDescription description_;
    std::string nodeName_;
    std::string deviceUID_;
    /// The device's node that the tap was last linked to since `playOn`, and when that was.
    std::optional<NodeRef> linkedDevice_;
    std::uint64_t linkedGeneration_ = 0;
    bool isReleased_ = false;
    bool isStoodDown_ = false;
    bool isProven_ = false;
    StreamClaims claims_;
    /// Streams that play beside the tap; the log has a line on each.
    std::set<NodeRef> left_;
    ControlTimer claimTimer_;
    ControlTimer arrivalTimer_;
    /// Asked when `arrivalTimer_` was set.
    std::optional<ServerConnection::Question> arrivalQuestion_;
    ControlTimer unlinkTimer_;
    ControlTimer retryTimer_;
    ControlTimer leaveTimer_;
    bool wasTakenOut_ = false;
    bool isKeptOut_ = false;
    RateLimit exports_;
    TapCycle cycle_;
    SilentCycles silentCycles_;
    TapNode node_;
    RateLimit repairs_;
    std::unique_ptr<ExportedTap> exported_;
    DeviceLinks links_;
};

} // namespace orvanta::pipewire
