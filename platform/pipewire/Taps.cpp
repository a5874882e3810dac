#include "platform/pipewire/Taps.h"

#include <algorithm>
#include <atomic>

namespace orvanta::pipewire {
namespace {

constexpr std::chrono::milliseconds kCreationBound{2000};
constexpr std::chrono::milliseconds kReleaseBound{500};

/// Counts for the whole program, for the names must differ between several objects of this kind.
std::uint32_t nextNumber() {
    static std::atomic<std::uint32_t> number{0};
    return ++number;
}

AudioStreamBasicDescription stereoFormat(double rate) {
    AudioStreamBasicDescription format;
    format.mSampleRate = rate;
    format.mFormatID = kAudioFormatLinearPCM;
    format.mFormatFlags =
        kAudioFormatFlagIsFloat | kAudioFormatFlagIsPacked | kAudioFormatFlagIsNonInterleaved;
    format.mBytesPerPacket = sizeof(float);
    format.mFramesPerPacket = 1;
    format.mBytesPerFrame = sizeof(float);
    format.mChannelsPerFrame = kChannels;
    format.mBitsPerChannel = 8 * sizeof(float);
    return format;
}

} // namespace

Taps::Taps(Surroundings& surroundings) : surroundings_(surroundings), owner_(currentTapOwner()) {}

OSStatus Taps::check(const CATapDescription& description) const {
    // A tap that only listens would leave the program on its device and get its sound a second
    // time; nothing here needs that.
    if (description.processes().empty() || description.muteBehavior() == CATapMuteBehavior::unmuted)
        return kAudioHardwareIllegalOperationError;
    for (const AudioObjectID process : description.processes()) {
        if (!surroundings_.processes.contains(process))
            return kAudioHardwareBadObjectError;
        for (const auto& tap : taps_) {
            const auto& tapped = tap->description().processes();
            if (!tap->isReleased() &&
                std::find(tapped.begin(), tapped.end(), process) != tapped.end())
                return kAudioHardwareIllegalOperationError;
        }
    }
    return noErr;
}

OSStatus Taps::checkStreams(const CATapDescription& description) const {
    const StreamChoice choice = surroundings_.chooseStreams(description.processes());
    if (choice.toLeave.empty())
        return noErr;
    surroundings_.logger.error("Stream %u cannot be moved, so there is no tap '%s'",
                               choice.toLeave.front().id, description.name().c_str());
    return kAudioHardwareIllegalOperationError;
}

OSStatus Taps::create(const CATapDescription& description, AudioObjectID& outTap) {
    // A server that was reached a moment ago may still be telling what it has.
    ServerConnection& connection = surroundings_.connection;
    surroundings_.loop.waitFor([&] { return connection.isSettled(); }, kCreationBound);
    connection.ask();
    if (!connection.isAnswering() || !surroundings_.mirror.defaults().isBound())
        return kAudioHardwareNotRunningError;
    if (const OSStatus status = check(description); status != noErr)
        return status;
    if (const OSStatus status = checkStreams(description); status != noErr)
        return status;
    auto tap = std::make_shared<Tap>(surroundings_, surroundings_.ids.next(), description,
                                     makeTapName(owner_, nextNumber()));
    if (!tap->isUsable()) {
        surroundings_.logger.error("No descriptors are left for the tap '%s'",
                                   description.name().c_str());
        return kAudioHardwareUnspecifiedError;
    }
    taps_.push_back(tap);
    tap->update();
    const auto isDecided = [&] {
        return tap->isPresent() || !connection.isAnswering();
    };
    if (!surroundings_.loop.waitFor(isDecided, kCreationBound) || !tap->isPresent()) {
        surroundings_.logger.error("The session manager does not accept the tap '%s'",
                                   description.name().c_str());
        tap->release();
        tap.reset();
        removeUnused();
        return kAudioHardwareNotRunningError;
    }
    outTap = tap->id();
    return noErr;
}

OSStatus Taps::destroy(AudioObjectID id) {
    std::shared_ptr<Tap> tap = withId(id);
    if (tap == nullptr)
        return kAudioHardwareBadObjectError;
    tap->release();
    waitUntilUnfed({tap});
    tap.reset();
    removeUnused();
    return noErr;
}

void Taps::standDown(const std::shared_ptr<Tap>& tap) {
    tap->standDown();
    waitUntilUnfed({tap});
}

void Taps::releaseAll() {
    for (const auto& tap : taps_)
        tap->release();
    waitUntilUnfed(taps_);
}

void Taps::destroyAll() {
    const auto haveLeft = [this] {
        const auto left =
            std::ranges::count_if(taps_, [](const auto& tap) { return tap->leaveServer(); });
        return !surroundings_.connection.isAnswering() || left == std::ssize(taps_);
    };
    surroundings_.loop.waitFor(haveLeft, kReleaseBound);
    taps_.clear();
}

void Taps::waitUntilUnfed(const std::vector<std::shared_ptr<Tap>>& taps) {
    const auto isUnfed = [&] {
        return !surroundings_.mirror.defaults().isBound() ||
               !surroundings_.connection.isAnswering() ||
               std::none_of(taps.begin(), taps.end(), [](const auto& tap) { return tap->isFed(); });
    };
    surroundings_.loop.waitFor(isUnfed, kReleaseBound);
}

void Taps::removeUnused() {
    std::erase_if(taps_, [](const auto& tap) {
        return tap->isReleased() && tap.use_count() == 1 && tap->leaveServer();
    });
}

void Taps::update() {
    removeUnused();
    for (const auto& tap : taps_)
        tap->update();
}

void Taps::serverLost() {
    for (const auto& tap : taps_)
        tap->serverLost();
}

std::shared_ptr<Tap> Taps::withId(AudioObjectID id) const {
    for (const auto& tap : taps_)
        if (tap->id() == id && !tap->isReleased())
            return tap;
    return nullptr;
}

std::shared_ptr<Tap> Taps::withUUID(const std::string& uuid) const {
    for (const auto& tap : taps_)
        if (tap->description().UUID() == uuid && !tap->isReleased())
            return tap;
    return nullptr;
}

std::optional<PropertyAnswer>
Taps::read(AudioObjectID object, const AudioObjectPropertyAddress& address, double rate) const {
    const std::shared_ptr<Tap> tap = withId(object);
    if (tap == nullptr)
        return std::nullopt;
    if (address.mSelector != kAudioTapPropertyFormat)
        return PropertyAnswer{};
    const std::uint32_t lastRate = tap->cycle().rate();
    return PropertyAnswer::of(stereoFormat(lastRate != 0 ? lastRate : rate));
}

} // namespace orvanta::pipewire
