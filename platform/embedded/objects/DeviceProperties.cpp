#include "platform/embedded/objects/DeviceProperties.h"

#include "core/platform/StreamConfiguration.h"

namespace orvanta::embedded {

namespace {

const std::string kNoManufacturer;

/// What devices and aggregates keep in different places.
struct Description {
    const std::string& uid;
    const std::string& name;
    const std::string& manufacturer;
    FourCharCode transport;
    bool sampleRateSettable;
};

std::optional<Property> readStreams(const DeviceRecord& record, AudioObjectPropertyScope scope) {
    switch (scope) {
    case kAudioObjectPropertyScopeInput:
        return Property{record.inputStreams};
    case kAudioObjectPropertyScopeOutput:
        return Property{record.outputStreams};
    case kAudioObjectPropertyScopeGlobal: {
        std::vector<AudioObjectID> both = record.inputStreams;
        both.insert(both.end(), record.outputStreams.begin(), record.outputStreams.end());
        return Property{both};
    }
    default:
        return std::nullopt;
    }
}

/// Streams of one side share its channels alike: one stream with all, or all with one.
std::vector<std::byte> configurationOf(std::size_t streams, std::uint32_t channels) {
    const auto each = streams == 0 ? 0 : channels / static_cast<std::uint32_t>(streams);
    return streamConfiguration(std::vector<std::uint32_t>(streams, each));
}

std::optional<Property> readStreamConfiguration(const DeviceRecord& record,
                                                AudioObjectPropertyScope scope) {
    switch (scope) {
    case kAudioObjectPropertyScopeInput:
        return Property{configurationOf(record.inputStreams.size(), record.inputChannels)};
    case kAudioObjectPropertyScopeOutput:
        return Property{configurationOf(record.outputStreams.size(), record.outputChannels)};
    default:
        return std::nullopt;
    }
}

std::optional<Property> readVolume(const DeviceRecord& record,
                                   const AudioObjectPropertyAddress& address) {
    const VolumeElement* volume = record.volume(address.mElement);
    if (volume == nullptr || address.mScope != kAudioObjectPropertyScopeOutput)
        return std::nullopt;
    return Property{volume->scalar, volume->settable};
}

std::optional<Property> readAnyDevice(const DeviceRecord& record, const Description& description,
                                      const AudioObjectPropertyAddress& address) {
    if (address.mSelector == kAudioDevicePropertyVolumeScalar)
        return readVolume(record, address);
    if (address.mElement != kAudioObjectPropertyElementMain)
        return std::nullopt;
    if (address.mSelector == kAudioDevicePropertyStreams)
        return readStreams(record, address.mScope);
    if (address.mSelector == kAudioDevicePropertyStreamConfiguration)
        return readStreamConfiguration(record, address.mScope);
    if (address.mScope != kAudioObjectPropertyScopeGlobal)
        return std::nullopt;
    switch (address.mSelector) {
    case kAudioDevicePropertyDeviceUID:
        return Property{description.uid};
    case kAudioObjectPropertyName:
        return Property{description.name};
    case kAudioObjectPropertyManufacturer:
        return Property{description.manufacturer};
    case kAudioDevicePropertyTransportType:
        return Property{description.transport};
    case kAudioDevicePropertyNominalSampleRate:
        return Property{record.sampleRate, description.sampleRateSettable};
    default:
        return std::nullopt;
    }
}

} // namespace

std::optional<Property> readDevice(const Device& device,
                                   const AudioObjectPropertyAddress& address) {
    const DeviceSettings& settings = device.settings;
    return readAnyDevice(device,
                         {settings.uid, settings.name, settings.manufacturer, settings.transport,
                          settings.sampleRateSettable},
                         address);
}

std::optional<Property> readAggregate(const ObjectSpace& space, const Aggregate& aggregate,
                                      const AudioObjectPropertyAddress& address) {
    if (address.mSelector == kAudioAggregateDevicePropertyActiveSubDeviceList &&
        address.mElement == kAudioObjectPropertyElementMain)
        return Property{space.activeSubDevices(aggregate)};
    const AggregateDeviceDescription& description = aggregate.description;
    return readAnyDevice(aggregate,
                         {description.uid, description.name, kNoManufacturer,
                          kAudioDeviceTransportTypeAggregate,
                          space.settings().aggregateSampleRateSettable},
                         address);
}

} // namespace orvanta::embedded
