#include "platform/pipewire/Tap.h"

#include <algorithm>
#include <utility>

namespace orvanta::pipewire {
namespace {

/// A program whose tap nobody plays falls silent after this at the latest.
constexpr std::chrono::milliseconds kLatestClaim{100};

/// How often to look whether streams that may yet come are late.
constexpr std::chrono::milliseconds kArrivalCheck{500};

/// How long a tap that nobody plays keeps its links.
constexpr std::chrono::milliseconds kLatestUnlink{100};

/// How long the server has to take a node out.
constexpr std::chrono::milliseconds kLatestLeave{1000};

/// What the server has refused several times within moments is tried again after this.
constexpr std::chrono::milliseconds kRetry{1000};

} // namespace

Tap::Tap(Surroundings& surroundings, AudioObjectID id, CATapDescription description,
         std::string nodeName)
    : surroundings_(surroundings),
      id_(id),
      description_(std::move(description)),
      nodeName_(std::move(nodeName)),
      claims_(surroundings.mirror, nodeName_, surroundings.logger),
      claimTimer_(surroundings.loop, [this] { claimStreams(); }),
      arrivalTimer_(surroundings.loop, [this] { checkArrivals(); }),
      unlinkTimer_(surroundings.loop, [this] { playOn({}); }),
      retryTimer_(surroundings.loop, [this] { surroundings_.changed(); }),
      leaveTimer_(surroundings.loop, [this] { surroundings_.changed(); }),
      exports_(5, std::chrono::seconds(10)),
      silentCycles_(surroundings.loop, cycle_),
      node_(surroundings.loop, cycle_, silentCycles_, [this] { standAnew(); }),
      repairs_(3, std::chrono::minutes(10)),
      links_(surroundings.changed) {
    const auto playing = chooseStreams().toClaim;
    claims_.defer({playing.begin(), playing.end()});
    if (description_.muteBehavior() == CATapMuteBehavior::muted)
        claimTimer_.set(kLatestClaim);
}

Tap::~Tap() {
    links_.clear();
    exported_.reset();
}

bool Tap::isUsable() const {
    return claimTimer_.isUsable() && arrivalTimer_.isUsable() && unlinkTimer_.isUsable() &&
           retryTimer_.isUsable() && leaveTimer_.isUsable() && silentCycles_.isUsable() &&
           node_.isUsable();
}

void Tap::update() {
    updateExport();
    updateClaims();
    updateLinks();
}

void Tap::updateExport() {
    const bool isWanted =
        surroundings_.connection.hasAnswered() && !surroundings_.devices.isEmpty();
    if (exported_ != nullptr && hasLeft()) {
        wasTakenOut_ = !exported_->isLeaving();
        links_.clear();
        exported_.reset();
    } else if (exported_ != nullptr && !isWanted) {
        leaveServer();
    }
    if (exported_ != nullptr || !isWanted || isReleased_)
        return;
    // Whoever takes nodes out is not fought for ever; devices may come and go as they like.
    if (wasTakenOut_ && !exports_.allow(std::chrono::steady_clock::now())) {
        if (!std::exchange(isKeptOut_, true))
            surroundings_.logger.error("The tap '%s' was taken out of the server again and again; "
                                       "its program is heard beside it for some seconds",
                                       description_.name().c_str());
        retryTimer_.set(kRetry);
        return;
    }
    isKeptOut_ = false;
    exported_ = std::make_unique<ExportedTap>(surroundings_.connection.core(), node_, nodeName_,
                                              description_.name(), surroundings_.changed);
    if (exported_->isLost())
        retryTimer_.set(kRetry);
}

/// The links look sound to everybody else, so nobody else makes new ones, and setting them up once
/// more can go wrong in the same way. A new node is heard beside the tap until the streams have
/// come to it, a few cycles, but then it is heard through the tap.
void Tap::standAnew() {
    if (!isInServer() || !repairs_.allow(std::chrono::steady_clock::now()))
        return;
    surroundings_.logger.error("The links of the tap '%s' have no buffers, so its node comes anew",
                               description_.name().c_str());
    leaveServer();
}

bool Tap::leaveServer() {
    links_.clear();
    if (exported_ == nullptr)
        return true;
    if (!exported_->isLeaving())
        leaveTimer_.set(kLatestLeave);
    exported_->leave(surroundings_.mirror);
    return hasLeft();
}

bool Tap::hasLeft() const {
    return exported_->isLost() || (exported_->isLeaving() && !leaveTimer_.isSet());
}

void Tap::updateClaims() {
    if (!surroundings_.mirror.defaults().isBound()) {
        claims_.metadataLost();
        arrivalTimer_.cancel();
    } else if (exported_ != nullptr && !isReleased_ && !isStoodDown_) {
        const StreamChoice choice = chooseStreams();
        leave(choice.toLeave);
        claims_.update(choice.toClaim, std::chrono::steady_clock::now());
        if (!claims_.hasStragglers())
            arrivalTimer_.cancel();
        else if (!arrivalTimer_.isSet())
            watchArrivals();
    }
}

void Tap::watchArrivals() {
    // A server that stands still is not asked more and more.
    if (!arrivalQuestion_ || surroundings_.connection.isAnswered(*arrivalQuestion_))
        arrivalQuestion_ = surroundings_.connection.askAnew();
    arrivalTimer_.set(kArrivalCheck);
}

/// A server that stands still moves nothing, and only its answer tells that it does not. Nor does
/// anything come to a tap whose node is out of the server.
void Tap::checkArrivals() {
    if (exported_ != nullptr && surroundings_.connection.isAnswered(*arrivalQuestion_))
        claims_.leaveStragglers(std::chrono::steady_clock::now());
    else
        claims_.excuseStragglers();
    updateClaims();
    surroundings_.loop.changed();
}

/// Nobody is to wonder why a tapped program is heard at its own volume.
void Tap::leave(const std::vector<NodeRef>& streams) {
    for (const NodeRef& stream : streams)
        if (!left_.contains(stream))
            surroundings_.logger.error("Stream %u cannot be moved and is heard beside the tap '%s'",
                                       stream.id, description_.name().c_str());
    left_ = {streams.begin(), streams.end()};
}

void Tap::updateLinks() {
    if (!isInServer())
        return;
    const ServerMirror& mirror = surroundings_.mirror;
    const ServerNode* device = deviceToLink();
    LinkPlan plan;
    if (device != nullptr)
        plan = planLinks(*exported_->id(), mirror.portsOf(*exported_->id()), device->ref.id,
                         mirror.portsOf(device->ref.id));
    cycle_.setMono(plan.isMono);
    if (!links_.follow(surroundings_.connection.core(), plan))
        retryTimer_.set(kRetry);
}

/// A device that somebody pulled out and put back is another node in the same generation.
bool Tap::mayLinkTo(const ServerNode& device) const {
    return !linkedDevice_ || *linkedDevice_ == device.ref ||
           linkedGeneration_ != surroundings_.generation();
}

bool Tap::hasDevice() const {
    const ServerNode* device = surroundings_.devices.nodeWithUID(deviceUID_);
    return device != nullptr && mayLinkTo(*device);
}

/// Null while there is none to link to.
const ServerNode* Tap::deviceToLink() {
    const ServerNode* device = surroundings_.devices.nodeWithUID(deviceUID_);
    if (device == nullptr || !mayLinkTo(*device))
        return nullptr;
    linkedDevice_ = device->ref;
    linkedGeneration_ = surroundings_.generation();
    return device;
}

void Tap::playOn(const std::string& deviceUID) {
    unlinkTimer_.cancel();
    linkedDevice_.reset();
    deviceUID_ = deviceUID;
    updateLinks();
}

void Tap::playNowhere() {
    unlinkTimer_.set(kLatestUnlink);
}

void Tap::serverLost() {
    links_.clear();
    exported_.reset();
    leaveTimer_.cancel();
    wasTakenOut_ = false;
    isKeptOut_ = false;
    claims_.metadataLost();
    arrivalTimer_.cancel();
    arrivalQuestion_.reset();
}

void Tap::claimStreams() {
    claimTimer_.cancel();
    isStoodDown_ = isReleased_;
    claims_.claimAll();
    // What a tap in use has lost to another program is not fought over at every re-route.
    if (!isProven_)
        claims_.tryAgain();
    updateClaims();
}

void Tap::standDown() {
    claimTimer_.cancel();
    arrivalTimer_.cancel();
    isStoodDown_ = true;
    claims_.release();
}

void Tap::release() {
    standDown();
    isReleased_ = true;
}

StreamChoice Tap::chooseStreams() const {
    return surroundings_.chooseStreams(description_.processes());
}

bool Tap::isInServer() const {
    return exported_ != nullptr && exported_->id().has_value();
}

bool Tap::isFed() const {
    if (!isInServer())
        return false;
    const auto& links = surroundings_.mirror.links();
    return std::any_of(links.begin(), links.end(), [this](const auto& link) {
        return link.second.inputNode == *exported_->id();
    });
}

bool Tap::isPresent() const {
    if (surroundings_.devices.isEmpty())
        return true;
    if (!isInServer())
        return false;
    const auto ports = surroundings_.mirror.portsOf(*exported_->id());
    const auto inputs =
        std::count_if(ports.begin(), ports.end(), [](const auto* port) { return port->isInput; });
    return inputs == kChannels && ports.size() == 2 * kChannels;
}

} // namespace orvanta::pipewire
