#include "platform/pipewire/AudioSystem.h"

#include <algorithm>
#include <cstring>

namespace orvanta::pipewire {
namespace {

constexpr std::chrono::milliseconds kFirstAnswerBound{2000};
constexpr std::chrono::milliseconds kAnswerBound{2000};

} // namespace

AudioSystem::Parts::Parts(AudioSystem& system, PipeWireOptions options)
    : mirror([&system] { system.scheduleUpdate(); }),
      processes(system.loop_, system.ids_, system.listeners_,
                [&system] { system.scheduleUpdate(); }),
      devices(mirror, system.ids_, system.listeners_),
      connection(system.loop_, std::move(options.remoteName), std::move(options.applicationName),
                 system, system.logger_),
      staleTargets(mirror, system.logger_),
      surroundings{system.loop_,
                   connection,
                   mirror,
                   processes,
                   devices,
                   system.listeners_,
                   system.ids_,
                   system.logger_,
                   [&system] {
                       system.scheduleUpdate();
                   }},
      taps(surroundings),
      aggregates(surroundings, taps) {}

AudioSystem::AudioSystem(PipeWireOptions options, SystemLog& log)
    : logger_(log, "pipewire"),
      firstAnswerDeadline_(std::chrono::steady_clock::now() + kFirstAnswerBound) {
    if (!loop_.isUsable()) {
        logger_.error("PipeWire's client configuration is not installed");
        return;
    }
    updateTimer_ = std::make_unique<ControlTimer>(loop_, [this] { update(); });
    parts_ = std::make_unique<Parts>(*this, std::move(options));
    if (!updateTimer_->isUsable() || !parts_->connection.isUsable() ||
        !parts_->aggregates.isUsable())
        logger_.error("No descriptors are left to reach the PipeWire server with");
    if (!loop_.start())
        logger_.error("The control thread does not start");
}

AudioSystem::~AudioSystem() {
    if (parts_ == nullptr)
        return;
    {
        const ControlLoop::Lock lock(loop_);
        parts_->taps.releaseAll();
        parts_->aggregates.destroyAll();
        parts_->taps.destroyAll();
    }
    loop_.stop();
    parts_->mirror.detach();
    parts_.reset();
    updateTimer_.reset();
}

void AudioSystem::serverConnected(pw_core* core) {
    parts_->mirror.attach(core);
}

// At once: whoever sees that there is a server must find its objects known.
void AudioSystem::serverAnswered() {
    update();
}

/// Whoever has asked for a list meanwhile got none, and does not ask again unless it has changed.
void AudioSystem::serverAnswersAgain() {
    for (const AudioObjectPropertySelector list :
         {kAudioHardwarePropertyDevices, kAudioHardwarePropertyDefaultOutputDevice,
          kAudioHardwarePropertyProcessObjectList})
        listeners_.notify(kAudioObjectSystemObject, {list});
}

void AudioSystem::serverLost() {
    parts_->taps.serverLost();
    parts_->mirror.detach();
    parts_->devices.forgetAll();
    scheduleUpdate();
}

/// Everything that changes only asks for this: the server's own calls into this program must be
/// over before objects of theirs are destroyed, and a burst of them is one update.
void AudioSystem::scheduleUpdate() {
    updateTimer_->set(std::chrono::milliseconds(0));
}

void AudioSystem::update() {
    parts_->processes.update(parts_->mirror, parts_->connection.hasAnswered());
    if (parts_->connection.hasAnswered())
        parts_->devices.update(graphRate());
    parts_->taps.update();
    parts_->aggregates.update();
    // Last: a tapped program that opens a stream must not be heard before it is claimed.
    if (parts_->connection.hasAnswered())
        parts_->staleTargets.remove();
    everAnswered_ = everAnswered_ || parts_->connection.hasAnswered();
    loop_.changed();
}

void AudioSystem::waitForFirstAnswer() {
    if (firstAnswerIsOver_)
        return;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        firstAnswerDeadline_ - std::chrono::steady_clock::now());
    loop_.waitFor([this] { return parts_->connection.isSettled(); },
                  std::max(left, std::chrono::milliseconds(0)));
    firstAnswerIsOver_ = true;
}

double AudioSystem::graphRate() const {
    const MetadataMirror& settings = parts_->mirror.settings();
    for (const char* key : {"clock.force-rate", "clock.rate"})
        if (const auto rate = parseNumber(settings.value(0, key).value); rate && *rate != 0)
            return *rate;
    const std::uint32_t rate = parts_->connection.defaultRate();
    return rate != 0 ? rate : 48000;
}

PropertyAnswer AudioSystem::read(AudioObjectID object, const AudioObjectPropertyAddress& address) {
    waitForFirstAnswer();
    if (object == kAudioObjectSystemObject)
        return readSystem(address);
    if (auto answer = parts_->processes.read(object, address))
        return *answer;
    if (auto answer = parts_->devices.read(object, address, graphRate())) {
        parts_->connection.ask();
        return hasServer() ? *answer : PropertyAnswer::failure(kAudioHardwareNotRunningError);
    }
    if (auto answer = parts_->aggregates.read(object, address, graphRate()))
        return *answer;
    if (auto answer = parts_->taps.read(object, address, graphRate()))
        return *answer;
    return PropertyAnswer::failure(kAudioHardwareBadObjectError);
}

PropertyAnswer AudioSystem::readSystem(const AudioObjectPropertyAddress& address) {
    parts_->connection.ask();
    switch (address.mSelector) {
    case kAudioHardwarePropertyProcessObjectList:
        // Processes outlive the server, so this list is good without one.
        if (!everAnswered_)
            return PropertyAnswer::failure(kAudioHardwareNotRunningError);
        return PropertyAnswer::of(parts_->processes.list());
    case kAudioHardwarePropertyDevices: {
        if (!hasServer())
            return PropertyAnswer::failure(kAudioHardwareNotRunningError);
        std::vector<AudioObjectID> devices = parts_->devices.list();
        const std::vector<AudioObjectID> aggregates = parts_->aggregates.list();
        devices.insert(devices.end(), aggregates.begin(), aggregates.end());
        return PropertyAnswer::of(std::move(devices));
    }
    case kAudioHardwarePropertyDefaultOutputDevice:
        if (!hasServer())
            return PropertyAnswer::failure(kAudioHardwareNotRunningError);
        return PropertyAnswer::of(parts_->devices.defaultDevice());
    default:
        return PropertyAnswer{};
    }
}

OSStatus AudioSystem::isSettable(AudioObjectID object, const AudioObjectPropertyAddress& address,
                                 bool& outSettable) {
    if (const OSStatus status = read(object, address).status; status != noErr)
        return status;
    if (const auto settable = parts_->devices.isSettable(object, address))
        outSettable = *settable;
    else
        outSettable = parts_->aggregates.contains(object) &&
                      address.mSelector == kAudioDevicePropertyNominalSampleRate;
    return noErr;
}

OSStatus AudioSystem::write(AudioObjectID object, const AudioObjectPropertyAddress& address,
                            const void* data, std::uint32_t size) {
    bool settable = false;
    if (const OSStatus status = isSettable(object, address, settable); status != noErr)
        return status;
    if (!settable)
        return kAudioHardwareIllegalOperationError;
    if (address.mSelector == kAudioDevicePropertyNominalSampleRate) {
        double rate = 0;
        if (data == nullptr || size != sizeof rate)
            return kAudioHardwareBadPropertySizeError;
        std::memcpy(&rate, data, sizeof rate);
        // The whole graph has one rate, which is not any one device's to change.
        const PropertyAnswer current = read(object, address);
        const auto* currentRate = std::get_if<double>(&current.value);
        return currentRate != nullptr && *currentRate == rate ? noErr
                                                              : kAudioHardwareIllegalOperationError;
    }
    float volume = 0;
    if (data == nullptr || size != sizeof volume)
        return kAudioHardwareBadPropertySizeError;
    std::memcpy(&volume, data, sizeof volume);
    const OSStatus status = parts_->devices.setVolume(object, address, volume);
    scheduleUpdate();
    if (status != noErr)
        return status;
    // The answer to a question that was asked before the volume was set says nothing about it.
    const ServerConnection& connection = parts_->connection;
    const ServerConnection::Question question = parts_->connection.askAnew();
    loop_.waitFor([&] { return connection.isAnswered(question) || !hasServer(); }, kAnswerBound);
    return connection.isAnswered(question) ? noErr : kAudioHardwareNotRunningError;
}

} // namespace orvanta::pipewire
