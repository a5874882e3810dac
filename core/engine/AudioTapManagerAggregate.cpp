// How a tap's aggregate device is composed, matched in rate and set up.

#include "core/engine/AudioTapManager.h"
#include "core/platform/AudioProperties.h"

#include <fmt/format.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string_view>

namespace orvanta {
namespace {

/// Rates that differ by no more than this count as the same.
constexpr double kRateTolerance = 1.0;

/// Any number but the largest: that one is never drawn.
std::uint32_t aggregateNumber(std::mt19937& random) {
    return std::uniform_int_distribution<std::uint32_t>(
        0, std::numeric_limits<std::uint32_t>::max() - 1)(random);
}

AggregateDeviceDescription describeAggregate(const std::string& tapUUID, std::int32_t pid,
                                             const std::string& outputUID, std::uint32_t number) {
    AggregateDeviceDescription description;
    description.uid = fmt::format("com.meridane.orvanta.agg.{}.{}", pid, number);
    description.name = fmt::format("Orvanta_{}", pid);
    description.taps = {tapUUID};
    description.subDevices = {outputUID};
    description.master = outputUID;
    return description;
}

/// A number as people write rates: 48000.0, 44100.5.
std::string rateText(double rate) {
    std::string text = fmt::format("{}", rate);
    return text.find_first_not_of("-0123456789") == std::string::npos ? text + ".0" : text;
}

std::string lowerCased(const std::string& text) {
    std::string lower;
    icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(lower);
    return lower;
}

/// Devices of these names keep their clock close enough to be driven like wired ones.
bool hasBluetoothNameMarker(const std::string& name) {
    constexpr std::array<std::string_view, 4> markers{"airpods", "beats", "homepod", "apple tv"};
    const std::string lower = lowerCased(name);
    for (const std::string_view marker : markers)
        if (lower.find(marker) != std::string::npos)
            return true;
    return false;
}

} // namespace

std::optional<AudioTapManager::AggregateBuild>
AudioTapManager::createAggregateDevice(const std::string& tapUUID, std::int32_t pid,
                                       const std::optional<std::string>& uid) {
    const auto outputUID = resolveOutputUID(uid);
    if (!outputUID) {
        logger_.error("Could not get default output device UID");
        return std::nullopt;
    }
    const AudioObjectID device = findDeviceID(hardware_, *outputUID);
    const bool isDecoupled = device != kAudioObjectUnknown && isDecoupledRoute(device, *outputUID);

    AggregateBuild build;
    const OSStatus status = hardware_.createAggregateDevice(
        describeAggregate(tapUUID, pid, *outputUID, aggregateNumber(random_)), build.aggregateID);
    if (status != noErr) {
        logger_.error("Audio device creation failed: %d", status);
        return std::nullopt;
    }
    matchRate(build.aggregateID, device, *outputUID, isDecoupled);
    build.btDeviceID = isDecoupled ? device : kAudioObjectUnknown;
    return build;
}

std::optional<std::string>
AudioTapManager::resolveOutputUID(const std::optional<std::string>& uid) const {
    if (uid)
        return uid;
    return defaultOutputUID();
}

/// Bluetooth outputs run on a clock of their own, and most of them are to be watched as such.
bool AudioTapManager::isDecoupledRoute(AudioObjectID device, const std::string& uid) const {
    const auto transport =
        readUInt32(hardware_, device, {kAudioDevicePropertyTransportType}).value_or(0);
    if (transport != kAudioDeviceTransportTypeBluetooth &&
        transport != kAudioDeviceTransportTypeBluetoothLE)
        return false;
    const std::string name =
        deviceStringProperty(device, kAudioObjectPropertyName).value_or(std::string());
    const bool isMarked = hasBluetoothNameMarker(name);
    logger_.composed(fmt::format("🎧 BT device: {} name=\"{}\" apple_product={} decoupled={}\n", uid,
                                 name, isMarked, !isMarked));
    if (!isMarked)
        logger_.composed(fmt::format("🔵 BT direct: output={} deviceID={}\n", uid, device));
    return !isMarked;
}

void AudioTapManager::matchRate(AudioObjectID aggregate, AudioObjectID device,
                                const std::string& uid, bool isDecoupled) {
    const AudioObjectPropertyAddress rate{kAudioDevicePropertyNominalSampleRate};
    const double aggregateRate = readFloat64(hardware_, aggregate, rate).value_or(0.0);
    if (device == kAudioObjectUnknown)
        return;
    const double outputRate = readFloat64(hardware_, device, rate).value_or(0.0);
    logger_.composed(fmt::format("🔬 rates: agg={}Hz out={}Hz uid={} bt={}\n",
                                 rateText(aggregateRate), rateText(outputRate), uid, isDecoupled));
    if (!(outputRate > 0.0) || !(std::fabs(outputRate - aggregateRate) > kRateTolerance))
        return;
    const OSStatus status =
        hardware_.setPropertyData(aggregate, rate, sizeof outputRate, &outputRate);
    logger_.composed(status == noErr ? std::string("  rate match: ✅\n")
                                     : fmt::format("  rate match: ⚠️ err {}\n", status));
}

void AudioTapManager::setDeviceVolumeToUnity(AudioObjectID device) {
    constexpr float unity = 1.0F;
    for (const AudioObjectPropertyElement element : {0U, 1U, 2U}) {
        const AudioObjectPropertyAddress volume{kAudioDevicePropertyVolumeScalar,
                                                kAudioObjectPropertyScopeOutput, element};
        bool isSettable = false;
        if (hardware_.isPropertySettable(device, volume, isSettable) == noErr && isSettable)
            hardware_.setPropertyData(device, volume, sizeof unity, &unity);
    }
}

void AudioTapManager::logStreamCounts(AudioObjectID device) const {
    const auto streams = [&](AudioObjectPropertyScope scope) {
        std::uint32_t size = 0;
        hardware_.getPropertyDataSize(device, {kAudioDevicePropertyStreams, scope}, size);
        return size / static_cast<std::uint32_t>(sizeof(AudioObjectID));
    };
    const std::uint32_t inputs = streams(kAudioObjectPropertyScopeInput);
    const std::uint32_t outputs = streams(kAudioObjectPropertyScopeOutput);
    logger_.debug("Audio device %u: %u input stream(s), %u output stream(s)", device, inputs,
                  outputs);
}

std::optional<std::string>
AudioTapManager::deviceStringProperty(AudioObjectID device,
                                      AudioObjectPropertySelector selector) const {
    return readString(hardware_, device, {selector});
}

} // namespace orvanta
