#include "platform/pipewire/Tap.h"

#include <algorithm>

namespace orvanta::pipewire {
namespace {

/// A program whose tap nobody plays falls silent after this at the latest.
constexpr std::chrono::milliseconds kLatestClaim{100};

/// How long a tap that nobody plays keeps its links.
constexpr std::chrono::milliseconds kLatestUnlink{100};

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
      unlinkTimer_(surroundings.loop, [this] { playOn({}); }),
      retryTimer_(surroundings.loop, [this] { surroundings_.changed(); }),
      exports_(5, std::chrono::seconds(10)),
      silentCycles_(surroundings.loop, cycle_),
      node_(surroundings.loop, cycle_, silentCycles_),
      links_(surroundings.changed) {
    const auto playing = streams();
    claims_.defer({playing.begin(), playing.end()});
    if (description_.muteBehavior() == CATapMuteBehavior::muted)
        claimTimer_.set(kLatestClaim);
}

Tap::~Tap() {
    links_.clear();
    exported_.reset();
}

bool Tap::isUsable() const {
    return claimTimer_.isUsable() && unlinkTimer_.isUsable() && retryTimer_.isUsable() &&
           silentCycles_.isUsable();
}

void Tap::update() {
    updateExport();
    updateClaims();
    updateLinks();
}

void Tap::updateExport() {
    const bool isWanted =
        surroundings_.connection.hasAnswered() && !surroundings_.devices.isEmpty();
    if (exported_ != nullptr && (!isWanted || exported_->isLost())) {
        links_.clear();
        exported_.reset();
    }
    if (exported_ != nullptr || !isWanted || isReleased_)
        return;
    if (!exports_.allow(std::chrono::steady_clock::now())) {
        retryTimer_.set(kRetry);
        return;
    }
    exported_ = std::make_unique<ExportedTap>(surroundings_.connection.core(), node_, nodeName_,
                                              description_.name(), surroundings_.changed);
}

void Tap::updateClaims() {
    if (!surroundings_.mirror.defaults().isBound())
        claims_.metadataLost();
    else if (exported_ != nullptr && !isReleased_)
        claims_.update(streams(), std::chrono::steady_clock::now());
}

void Tap::updateLinks() {
    if (exported_ == nullptr || !exported_->id())
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
    claims_.metadataLost();
}

void Tap::claimStreams() {
    claimTimer_.cancel();
    claims_.claimAll();
    updateClaims();
}

void Tap::release() {
    claimTimer_.cancel();
    isReleased_ = true;
    claims_.release();
}

std::vector<NodeRef> Tap::streams() const {
    const auto& processes = description_.processes();
    std::vector<NodeRef> found;
    for (const ServerNode* stream : surroundings_.mirror.nodes(NodeKind::outputStream)) {
        const AudioObjectID owner = surroundings_.processes.ownerOf(stream->ref);
        if (std::find(processes.begin(), processes.end(), owner) != processes.end())
            found.push_back(stream->ref);
    }
    return found;
}

bool Tap::isFed() const {
    if (exported_ == nullptr || !exported_->id())
        return false;
    const auto& links = surroundings_.mirror.links();
    return std::any_of(links.begin(), links.end(), [this](const auto& link) {
        return link.second.inputNode == *exported_->id();
    });
}

bool Tap::isPresent() const {
    if (surroundings_.devices.isEmpty())
        return true;
    if (exported_ == nullptr || !exported_->id())
        return false;
    const auto ports = surroundings_.mirror.portsOf(*exported_->id());
    const auto inputs =
        std::count_if(ports.begin(), ports.end(), [](const auto* port) { return port->isInput; });
    return inputs == kChannels && ports.size() == 2 * kChannels;
}

} // namespace orvanta::pipewire
