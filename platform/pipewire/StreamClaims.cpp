#include "platform/pipewire/StreamClaims.h"

#include "platform/pipewire/TapName.h"

#include <pipewire/keys.h>

#include <algorithm>

namespace orvanta::pipewire {

StreamClaims::StreamClaims(ServerMirror& mirror, std::string node, const Logger& logger)
    : mirror_(mirror),
      metadata_(mirror.defaults()),
      ours_{"Spa:String", std::move(node)},
      logger_(logger) {}

void StreamClaims::update(const std::vector<NodeRef>& streams, Time now) {
    if (!metadata_.isBound())
        return;
    for (auto entry = claims_.begin(); entry != claims_.end();) {
        const auto& [stream, claim] = *entry;
        if (std::find(streams.begin(), streams.end(), stream) != streams.end()) {
            ++entry;
            continue;
        }
        // A stream may outlive the process that it belonged to.
        if (mirror_.node(stream) != nullptr)
            giveBack(stream, claim);
        entry = claims_.erase(entry);
    }
    for (const NodeRef& stream : streams) {
        if (deferred_.contains(stream))
            continue;
        const auto found = claims_.find(stream);
        if (found == claims_.end()) {
            notice(stream, claim(stream), now);
            continue;
        }
        notice(stream, found->second, now);
        defend(stream, found->second, now);
    }
    isStale_ = false;
}

void StreamClaims::tryAgain() {
    std::erase_if(claims_, [](const auto& entry) { return entry.second.isLeftAlone; });
}

void StreamClaims::metadataLost() {
    isStale_ = true;
    excuseStragglers();
}

StreamClaims::Claim& StreamClaims::claim(const NodeRef& stream) {
    Claim claim;
    claim.previous = metadata_.value(stream.id, kTargetKey);
    // A tap is no place to go back to.
    if (isTapName(claim.previous.value))
        claim.previous = {};
    metadata_.set(stream.id, kTargetKey, ours_);
    remindOfChoice(stream);
    return claims_.emplace(stream, std::move(claim)).first->second;
}

void StreamClaims::notice(const NodeRef& stream, Claim& claim, Time now) const {
    if (!isHeardBeside(stream)) {
        claim.besideSince.reset();
        claim.hasArrived = claim.hasArrived || feedsTap(stream);
    } else if (!claim.besideSince) {
        claim.besideSince = now;
    }
}

/// The session manager takes every new target for the user's will, and has just forgotten which
/// device the user wants for this program. Noting it once more makes it remember, without moving
/// anything.
void StreamClaims::remindOfChoice(const NodeRef& stream) {
    const MetadataValue choice = metadata_.value(stream.id, kChoiceKey);
    if (chosenDevice(stream).empty())
        return;
    metadata_.set(stream.id, kChoiceKey, {});
    metadata_.set(stream.id, kChoiceKey, choice);
}

/// What to note as the stream's target for it to go, and to be remembered to go, to the device that
/// the user chose for its program; empty if there is no such choice.
MetadataValue StreamClaims::chosenDevice(const NodeRef& stream) const {
    const auto id = parseNumber(metadata_.value(stream.id, kChoiceKey).value);
    const ServerNode* device = id ? mirror_.nodeWithId(*id) : nullptr;
    if (device == nullptr || device->kind != NodeKind::device)
        return {};
    return {"Spa:Id", device->properties.text(PW_KEY_OBJECT_SERIAL)};
}

void StreamClaims::defend(const NodeRef& stream, Claim& claim, Time now) {
    const MetadataValue current = metadata_.value(stream.id, kTargetKey);
    if (claim.isLeftAlone || current.value == ours_.value)
        return;
    if (isStale_ && current.empty()) {
        metadata_.set(stream.id, kTargetKey, ours_);
        return;
    }
    if (!isTapName(current.value))
        claim.previous = current;
    if (!claim.takeBacks.allow(now)) {
        claim.isLeftAlone = true;
        logger_.error("Stream %u is moved away again and again, leaving it alone", stream.id);
        return;
    }
    logger_.info("Stream %u was moved to '%s', taking it back", stream.id, current.value.c_str());
    metadata_.set(stream.id, kTargetKey, ours_);
    remindOfChoice(stream);
}

bool StreamClaims::feedsTap(const NodeRef& stream) const {
    const auto targets = mirror_.targetsOf(stream.id);
    return std::any_of(targets.begin(), targets.end(), [this](const ServerNode* target) {
        return target->properties.text(PW_KEY_NODE_NAME) == ours_.value;
    });
}

bool StreamClaims::isHeardBeside(const NodeRef& stream) const {
    const auto targets = mirror_.targetsOf(stream.id);
    return std::any_of(targets.begin(), targets.end(), [this](const ServerNode* target) {
        return mayBeHeard(*target) && target->properties.text(PW_KEY_NODE_NAME) != ours_.value;
    });
}

bool StreamClaims::isStraggler(const NodeRef& stream, const Claim& claim) const {
    return !claim.hasArrived && !claim.isLeftAlone && isHeardBeside(stream);
}

bool StreamClaims::haveArrived() const {
    return std::none_of(claims_.begin(), claims_.end(), [this](const auto& entry) {
        const auto& [stream, claim] = entry;
        return (claim.isLeftAlone || !claim.hasArrived) && isHeardBeside(stream);
    });
}

bool StreamClaims::hasStragglers() const {
    return std::any_of(claims_.begin(), claims_.end(), [this](const auto& entry) {
        return isStraggler(entry.first, entry.second);
    });
}

void StreamClaims::leaveStragglers(Time now) {
    for (auto& [stream, claim] : claims_) {
        if (!isStraggler(stream, claim) || !claim.besideSince ||
            now - *claim.besideSince < kLatestArrival)
            continue;
        logger_.error("Stream %u does not come to the tap, leaving it alone", stream.id);
        giveBack(stream, claim);
        claim.isLeftAlone = true;
    }
}

void StreamClaims::excuseStragglers() {
    for (auto& [stream, claim] : claims_)
        claim.besideSince.reset();
}

void StreamClaims::release() {
    for (const auto& [stream, claim] : claims_)
        giveBack(stream, claim);
    claims_.clear();
    deferred_.clear();
}

void StreamClaims::giveBack(const NodeRef& stream, const Claim& claim) {
    if (metadata_.value(stream.id, kTargetKey).value == ours_.value)
        metadata_.set(stream.id, kTargetKey,
                      claim.previous.empty() ? chosenDevice(stream) : claim.previous);
}

} // namespace orvanta::pipewire
