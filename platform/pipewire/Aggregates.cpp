#include "platform/pipewire/Aggregates.h"

#include "core/platform/StreamConfiguration.h"

#include <algorithm>
#include <array>

namespace orvanta::pipewire {
namespace {

/// How long to wait for the links to the device. Without them the program would play into nothing.
constexpr std::chrono::milliseconds kLinkBound{2000};

/// How long to wait until the programs' streams come to the tap.
constexpr std::chrono::milliseconds kArrivalBound{2000};

/// How long devices may take to come back after a restart.
constexpr std::chrono::milliseconds kReturnBound{1000};

} // namespace

struct Aggregates::IOProc {
    AudioDeviceIOProcID id = nullptr;
    CycleClient client;
};

struct Aggregates::Aggregate {
    AudioObjectID id = kAudioObjectUnknown;
    AggregateDeviceDescription description;
    std::string deviceUID;
    std::shared_ptr<Tap> tap;
    std::vector<std::unique_ptr<IOProc>> procs;
    AudioDeviceIOProcID started = nullptr;
    AudioObjectID inputStream = kAudioObjectUnknown;
    AudioObjectID outputStream = kAudioObjectUnknown;
    AudioObjectID activeDevice = kAudioObjectUnknown;
    bool isListed = true;
};

Aggregates::Aggregates(Surroundings& surroundings, Taps& taps)
    : surroundings_(surroundings),
      taps_(taps),
      generation_(surroundings.generation()),
      returnTimer_(surroundings.loop, surroundings.changed) {}

Aggregates::~Aggregates() = default;

OSStatus Aggregates::create(const AggregateDeviceDescription& description,
                            AudioObjectID& outDevice) {
    if (description.taps.size() != 1 || description.subDevices.size() != 1)
        return kAudioHardwareIllegalOperationError;
    surroundings_.connection.ask();
    if (!surroundings_.connection.isAnswering())
        return kAudioHardwareNotRunningError;
    const std::shared_ptr<Tap> tap = taps_.withUUID(description.taps[0]);
    if (tap == nullptr)
        return kAudioHardwareBadObjectError;
    const std::string& uid = description.subDevices[0];
    const AudioObjectID device = surroundings_.devices.deviceWithUID(uid);
    if (device == kAudioObjectUnknown)
        return kAudioHardwareBadDeviceError;
    const auto plays = [&](const auto& entry) {
        return entry.second->tap == tap;
    };
    if (std::any_of(aggregates_.begin(), aggregates_.end(), plays))
        return kAudioHardwareIllegalOperationError;

    auto aggregate = std::make_unique<Aggregate>();
    aggregate->id = surroundings_.ids.next();
    aggregate->description = description;
    aggregate->deviceUID = uid;
    aggregate->tap = tap;
    aggregate->inputStream = surroundings_.ids.next();
    aggregate->outputStream = surroundings_.ids.next();
    aggregate->activeDevice = device;
    const AudioObjectID id = aggregate->id;
    aggregates_[id] = std::move(aggregate);
    tap->playOn(uid);
    const auto isDecided = [&] {
        return tap->isLinked() || !tap->hasDevice() || !surroundings_.connection.isAnswering();
    };
    surroundings_.loop.waitFor(isDecided, kLinkBound);
    if (!tap->isLinked()) {
        surroundings_.logger.error("The tap is not linked to the device '%s'", uid.c_str());
        tap->playNowhere();
        aggregates_.erase(id);
        // The tap may have been destroyed meanwhile.
        taps_.update();
        return surroundings_.connection.isAnswering() ? kAudioHardwareBadDeviceError
                                                      : kAudioHardwareNotRunningError;
    }
    outDevice = id;
    tellOfDevices();
    return noErr;
}

OSStatus Aggregates::destroy(AudioObjectID device) {
    Aggregate* aggregate = find(device);
    if (aggregate == nullptr)
        return kAudioHardwareBadObjectError;
    stop(*aggregate);
    aggregate->tap->playNowhere();
    aggregates_.erase(device);
    // The tap may have been destroyed before, and then goes now.
    taps_.update();
    tellOfDevices();
    return noErr;
}

void Aggregates::destroyAll() {
    while (!aggregates_.empty())
        destroy(aggregates_.begin()->first);
}

OSStatus Aggregates::createIOProc(AudioObjectID device, const AudioDeviceIOClient& client,
                                  AudioDeviceIOProcID& outProcID) {
    Aggregate* aggregate = find(device);
    if (aggregate == nullptr)
        return kAudioHardwareBadObjectError;
    if (client.proc == nullptr)
        return kAudioHardwareIllegalOperationError;
    auto proc = std::make_unique<IOProc>();
    proc->id = reinterpret_cast<AudioDeviceIOProcID>(&procTokens_.emplace_back());
    proc->client = {device, client};
    outProcID = proc->id;
    aggregate->procs.push_back(std::move(proc));
    return noErr;
}

OSStatus Aggregates::destroyIOProc(AudioObjectID device, AudioDeviceIOProcID procID) {
    Aggregate* aggregate = find(device);
    if (aggregate == nullptr)
        return kAudioHardwareBadObjectError;
    if (find(*aggregate, procID) == nullptr)
        return kAudioHardwareIllegalOperationError;
    if (const OSStatus status = stop(device, procID); status != noErr)
        return status;
    std::erase_if(aggregate->procs, [&](const auto& proc) { return proc->id == procID; });
    return noErr;
}

OSStatus Aggregates::start(AudioObjectID device, AudioDeviceIOProcID procID) {
    Aggregate* aggregate = find(device);
    if (aggregate == nullptr)
        return kAudioHardwareBadObjectError;
    const IOProc* proc = find(*aggregate, procID);
    if (proc == nullptr)
        return kAudioHardwareIllegalOperationError;
    Tap& tap = *aggregate->tap;
    if (aggregate->started == procID) {
        tap.silentCycles().wake();
        return noErr;
    }
    if (aggregate->started != nullptr)
        return kAudioHardwareIllegalOperationError;
    surroundings_.connection.ask();
    if (!surroundings_.connection.isAnswering())
        return kAudioHardwareNotRunningError;
    aggregate->started = procID;
    tap.cycle().start(&proc->client);
    tap.silentCycles().wake();
    tap.claimStreams();
    return awaitStreams(device, procID, aggregate->tap);
}

/// A tap that does not get what its program plays must not pass for one. The aggregate may be gone
/// after the wait.
OSStatus Aggregates::awaitStreams(AudioObjectID device, AudioDeviceIOProcID procID,
                                  const std::shared_ptr<Tap>& tap) {
    const auto isReachable = [this] {
        return surroundings_.connection.isAnswering() && surroundings_.mirror.defaults().isBound();
    };
    const auto isDecided = [&] {
        return tap->isProven() || tap->hasItsStreams() || tap->isReleased() || !isReachable();
    };
    surroundings_.loop.waitFor(isDecided, kArrivalBound);
    // Without the session manager's notes nothing was claimed, so nothing that is missing tells.
    const bool isClaimed = surroundings_.mirror.defaults().isBound();
    if (tap->isProven() || (isClaimed && tap->hasItsStreams())) {
        tap->prove();
        return noErr;
    }
    const OSStatus reason =
        isReachable() ? kAudioHardwareIllegalOperationError : kAudioHardwareNotRunningError;
    surroundings_.logger.error("The streams of the tap '%s' do not come to it",
                               tap->description().name().c_str());
    taps_.standDown(tap);
    stop(device, procID);
    return reason;
}

OSStatus Aggregates::stop(AudioObjectID device, AudioDeviceIOProcID procID) {
    Aggregate* aggregate = find(device);
    if (aggregate == nullptr)
        return kAudioHardwareBadObjectError;
    if (find(*aggregate, procID) == nullptr)
        return kAudioHardwareIllegalOperationError;
    if (aggregate->started == procID)
        stop(*aggregate);
    return noErr;
}

void Aggregates::stop(Aggregate& aggregate) {
    if (std::exchange(aggregate.started, nullptr) == nullptr)
        return;
    aggregate.tap->cycle().stop([&] {
        surroundings_.logger.error("An IOProc of device %u does not return, waiting for it",
                                   aggregate.id);
    });
}

void Aggregates::update() {
    const bool areReturning = areDevicesReturning();
    const bool wereReturning = std::exchange(wereReturning_, areReturning);
    bool anyChanged = false;
    for (const auto& [id, aggregate] : aggregates_) {
        const AudioObjectID device = aggregate->tap->hasDevice()
                                         ? surroundings_.devices.deviceWithUID(aggregate->deviceUID)
                                         : kAudioObjectUnknown;
        if (std::exchange(aggregate->activeDevice, device) != device)
            surroundings_.listeners.notify(id, {kAudioAggregateDevicePropertyActiveSubDeviceList});
        const bool isListed = device != kAudioObjectUnknown || areReturning;
        anyChanged = std::exchange(aggregate->isListed, isListed) != isListed || anyChanged;
    }
    // Any other change of this list comes with one of the devices, which has been told.
    if (anyChanged && wereReturning && !areReturning)
        tellOfDevices();
}

bool Aggregates::areDevicesReturning() {
    if (std::exchange(generation_, surroundings_.generation()) != surroundings_.generation())
        returnTimer_.set(kReturnBound);
    return !surroundings_.connection.hasAnswered() || returnTimer_.isSet();
}

/// Not while nobody could read the list: who tried would take every device for gone. When it can be
/// read again its listeners are told anyway.
void Aggregates::tellOfDevices() const {
    if (!surroundings_.connection.isAnswering())
        return;
    surroundings_.listeners.notify(kAudioObjectSystemObject, {kAudioHardwarePropertyDevices});
}

std::vector<AudioObjectID> Aggregates::list() const {
    std::vector<AudioObjectID> ids;
    for (const auto& [id, aggregate] : aggregates_)
        if (aggregate->isListed)
            ids.push_back(id);
    return ids;
}

bool Aggregates::contains(AudioObjectID object) const {
    return aggregates_.contains(object);
}

std::optional<PropertyAnswer> Aggregates::read(AudioObjectID object,
                                               const AudioObjectPropertyAddress& address,
                                               double rate) const {
    const Aggregate* aggregate = find(object);
    if (aggregate == nullptr)
        return std::nullopt;
    using List = std::vector<AudioObjectID>;
    switch (address.mSelector) {
    case kAudioDevicePropertyDeviceUID:
        return PropertyAnswer::of(aggregate->description.uid);
    case kAudioObjectPropertyName:
        return PropertyAnswer::of(aggregate->description.name);
    case kAudioDevicePropertyTransportType:
        return PropertyAnswer::of(kAudioDeviceTransportTypeAggregate);
    case kAudioDevicePropertyNominalSampleRate: {
        const std::uint32_t lastRate = aggregate->tap->cycle().rate();
        return PropertyAnswer::of(lastRate != 0 ? static_cast<double>(lastRate) : rate);
    }
    case kAudioDevicePropertyStreams:
        if (address.mScope == kAudioObjectPropertyScopeInput)
            return PropertyAnswer::of(List{aggregate->inputStream});
        if (address.mScope == kAudioObjectPropertyScopeOutput)
            return PropertyAnswer::of(List{aggregate->outputStream});
        return PropertyAnswer::of(List{aggregate->inputStream, aggregate->outputStream});
    case kAudioDevicePropertyStreamConfiguration:
        if (address.mScope == kAudioObjectPropertyScopeGlobal)
            return PropertyAnswer{};
        return PropertyAnswer::of(streamConfiguration(std::array<std::uint32_t, 1>{kChannels}));
    case kAudioObjectPropertyManufacturer:
        return PropertyAnswer::of(std::string());
    case kAudioAggregateDevicePropertyActiveSubDeviceList:
        if (aggregate->activeDevice == kAudioObjectUnknown)
            return PropertyAnswer::of(List{});
        return PropertyAnswer::of(List{aggregate->activeDevice});
    default:
        return PropertyAnswer{};
    }
}

Aggregates::Aggregate* Aggregates::find(AudioObjectID device) const {
    const auto found = aggregates_.find(device);
    return found == aggregates_.end() ? nullptr : found->second.get();
}

Aggregates::IOProc* Aggregates::find(const Aggregate& aggregate, AudioDeviceIOProcID procID) {
    const auto found = std::find_if(aggregate.procs.begin(), aggregate.procs.end(),
                                    [&](const auto& proc) { return proc->id == procID; });
    return found == aggregate.procs.end() ? nullptr : found->get();
}

} // namespace orvanta::pipewire
