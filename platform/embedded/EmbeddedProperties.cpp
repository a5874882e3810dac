#include "platform/embedded/ServeCall.h"
#include "platform/embedded/objects/Properties.h"

#include <algorithm>
#include <cstring>

namespace orvanta {

using embedded::Changes;
using embedded::Fault;
using embedded::FaultEffect;
using embedded::JournalEntry;
using embedded::Listener;
using embedded::ObjectSpace;
using embedded::Operation;
using embedded::PropertyValue;

namespace {

using Struck = std::optional<Fault>;

bool has(const Struck& fault, FaultEffect effect) {
    return fault && fault->effect == effect;
}

OSStatus statusOfMissing(const ObjectSpace& objects, AudioObjectID object) {
    return objects.contains(object) ? kAudioHardwareUnknownPropertyError
                                    : kAudioHardwareBadObjectError;
}

/// The first number of the data, for the journal.
std::optional<double> numberIn(const PropertyValue& value, std::span<const std::byte> data) {
    if (data.size() != embedded::sizeOf(value))
        return std::nullopt;
    return std::visit(
        [&](auto held) -> std::optional<double> {
            if constexpr (std::is_arithmetic_v<decltype(held)>) {
                std::memcpy(&held, data.data(), sizeof held);
                return static_cast<double>(held);
            } else {
                return std::nullopt;
            }
        },
        value);
}

} // namespace

bool EmbeddedAudioServer::hasProperty(AudioObjectID object,
                                      const AudioObjectPropertyAddress& address) {
    bool found = false;
    serve({.operation = Operation::hasProperty, .object = object, .address = address},
          [&](JournalEntry& entry, Changes&, const Struck&) {
              found = embedded::readProperty(objects_, object, address).has_value();
              entry.value = found ? 1 : 0;
              return noErr;
          });
    return found;
}

OSStatus EmbeddedAudioServer::isPropertySettable(AudioObjectID object,
                                                 const AudioObjectPropertyAddress& address,
                                                 bool& outSettable) {
    return serve({.operation = Operation::isPropertySettable, .object = object, .address = address},
                 [&](JournalEntry& entry, Changes&, const Struck&) {
                     const auto property = embedded::readProperty(objects_, object, address);
                     if (!property)
                         return statusOfMissing(objects_, object);
                     outSettable = property->settable;
                     entry.value = outSettable ? 1 : 0;
                     return noErr;
                 });
}

OSStatus EmbeddedAudioServer::getPropertyDataSize(AudioObjectID object,
                                                  const AudioObjectPropertyAddress& address,
                                                  std::uint32_t& outSize) {
    return serve(
        {.operation = Operation::getPropertyDataSize, .object = object, .address = address},
        [&](JournalEntry& entry, Changes&, const Struck& fault) {
            const auto property = embedded::readProperty(objects_, object, address);
            if (!property)
                return statusOfMissing(objects_, object);
            outSize = has(fault, FaultEffect::givesBytes) ? fault->bytes
                                                          : embedded::sizeOf(property->value);
            entry.bytes = outSize;
            return noErr;
        });
}

OSStatus EmbeddedAudioServer::getPropertyData(AudioObjectID object,
                                              const AudioObjectPropertyAddress& address,
                                              std::uint32_t& ioSize, void* outData) {
    return serve({.operation = Operation::getPropertyData, .object = object, .address = address},
                 [&](JournalEntry& entry, Changes&, const Struck& fault) {
                     const auto property = embedded::readProperty(objects_, object, address);
                     if (!property)
                         return statusOfMissing(objects_, object);
                     const auto bytes = embedded::bytesOf(property->value);
                     if (std::holds_alternative<std::string>(property->value) ||
                         ioSize < bytes.size())
                         return kAudioHardwareBadPropertySizeError;
                     std::size_t count = bytes.size();
                     if (has(fault, FaultEffect::givesBytes))
                         count = std::min<std::size_t>(count, fault->bytes);
                     if (outData == nullptr && count > 0)
                         return kAudioHardwareIllegalOperationError;
                     if (count > 0)
                         std::memcpy(outData, bytes.data(), count);
                     ioSize = static_cast<std::uint32_t>(count);
                     entry.bytes = ioSize;
                     return noErr;
                 });
}

OSStatus EmbeddedAudioServer::getStringProperty(AudioObjectID object,
                                                const AudioObjectPropertyAddress& address,
                                                std::optional<std::string>& outText) {
    return serve({.operation = Operation::getPropertyData, .object = object, .address = address},
                 [&](JournalEntry& entry, Changes&, const Struck& fault) {
                     const auto property = embedded::readProperty(objects_, object, address);
                     if (!property)
                         return statusOfMissing(objects_, object);
                     const auto* text = std::get_if<std::string>(&property->value);
                     if (text == nullptr)
                         return kAudioHardwareBadPropertySizeError;
                     outText = *text;
                     if (has(fault, FaultEffect::nullString))
                         outText.reset();
                     entry.bytes = embedded::sizeOf(property->value);
                     return noErr;
                 });
}

OSStatus EmbeddedAudioServer::setPropertyData(AudioObjectID object,
                                              const AudioObjectPropertyAddress& address,
                                              std::uint32_t size, const void* data) {
    return serve({.operation = Operation::setPropertyData, .object = object, .address = address},
                 [&](JournalEntry& entry, Changes& changes, const Struck&) {
                     entry.bytes = size;
                     if (data == nullptr)
                         return kAudioHardwareIllegalOperationError;
                     const std::span bytes(static_cast<const std::byte*>(data), size);
                     if (const auto property = embedded::readProperty(objects_, object, address))
                         entry.value = numberIn(property->value, bytes);
                     return embedded::writeProperty(objects_, object, address, bytes, changes);
                 });
}

OSStatus EmbeddedAudioServer::addPropertyListener(AudioObjectID object,
                                                  const AudioObjectPropertyAddress& address,
                                                  AudioObjectPropertyListenerProc listener,
                                                  void* clientData) {
    return serve(
        {.operation = Operation::addPropertyListener, .object = object, .address = address},
        [&](JournalEntry&, Changes&, const Struck&) {
            if (!embedded::readProperty(objects_, object, address))
                return statusOfMissing(objects_, object);
            if (listener == nullptr)
                return kAudioHardwareIllegalOperationError;
            listeners_.add({{object, address}, listener, clientData});
            return noErr;
        });
}

OSStatus EmbeddedAudioServer::removePropertyListener(AudioObjectID object,
                                                     const AudioObjectPropertyAddress& address,
                                                     AudioObjectPropertyListenerProc listener,
                                                     void* clientData) {
    const Listener removed{{object, address}, listener, clientData};
    const OSStatus status = serve(
        {.operation = Operation::removePropertyListener, .object = object, .address = address},
        [&](JournalEntry&, Changes&, const Struck&) {
            // Also of an object that is gone: its listeners are forgotten only after its going.
            const bool listened = listeners_.remove(removed);
            if (!objects_.contains(object))
                return kAudioHardwareBadObjectError;
            return listened ? noErr : kAudioHardwareIllegalOperationError;
        });
    listeners_.waitUntilReturned(removed);
    return status;
}

} // namespace orvanta
