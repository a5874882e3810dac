#include "platform/embedded/script/Journal.h"

#include <algorithm>
#include <cstdio>

namespace orvanta::embedded {

namespace {

std::string quoted(FourCharCode code) {
    return "'" + fourCharText(code) + "'";
}

std::string numberText(double value) {
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%g", value);
    return buffer;
}

std::string statusText(OSStatus status) {
    if (status == noErr)
        return "noErr";
    const auto code = static_cast<FourCharCode>(status);
    const std::string letters = fourCharText(code);
    const bool hasLetters = letters.find('.') == std::string::npos;
    return hasLetters ? "'" + letters + "'" : std::to_string(status);
}

std::string tapText(const CATapDescription& tap) {
    std::string text = " \"" + tap.name() + "\" of";
    for (const AudioObjectID process : tap.processes())
        text += " " + std::to_string(process);
    return text;
}

std::string aggregateText(const AggregateDeviceDescription& aggregate) {
    std::string text = " \"" + aggregate.name + "\" on";
    for (const std::string& uid : aggregate.subDevices)
        text += " " + uid;
    return text;
}

} // namespace

std::string JournalEntry::text() const {
    std::string text(operationName(operation));
    if (object != kAudioObjectUnknown)
        text += " " + std::to_string(object);
    if (address) {
        text += " " + quoted(address->mSelector) + " " + quoted(address->mScope) + " " +
                std::to_string(address->mElement);
    }
    if (tap)
        text += tapText(*tap);
    if (aggregate)
        text += aggregateText(*aggregate);
    if (procID != nullptr)
        text += " proc " + std::to_string(reinterpret_cast<std::uintptr_t>(procID));
    if (value)
        text += " = " + numberText(*value);
    if (bytes)
        text += ", " + std::to_string(*bytes) + " bytes";
    text += " -> " + statusText(status);
    if (created != kAudioObjectUnknown)
        text += " " + std::to_string(created);
    return text;
}

void Journal::add(JournalEntry entry) {
    const std::scoped_lock guard(mutex_);
    entries_.push_back(std::move(entry));
    while (entries_.size() > limit_)
        entries_.pop_front();
}

void Journal::clear() {
    const std::scoped_lock guard(mutex_);
    entries_.clear();
}

std::vector<JournalEntry> Journal::entries(const Filter& filter) const {
    const std::scoped_lock guard(mutex_);
    std::vector<JournalEntry> taken;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(taken),
                 [&](const JournalEntry& entry) { return !filter || filter(entry); });
    return taken;
}

std::vector<std::string> Journal::lines(const Filter& filter) const {
    std::vector<std::string> lines;
    for (const JournalEntry& entry : entries(filter))
        lines.push_back(entry.text());
    return lines;
}

std::vector<std::string> Journal::operations(const Filter& filter) const {
    std::vector<std::string> names;
    for (const JournalEntry& entry : entries(filter))
        names.emplace_back(operationName(entry.operation));
    return names;
}

std::size_t Journal::count(Operation operation) const {
    return entries(of(operation)).size();
}

Journal::Filter Journal::lifecycle() {
    return [](const JournalEntry& entry) {
        return isLifecycleOperation(entry.operation);
    };
}

Journal::Filter Journal::of(Operation operation) {
    return [=](const JournalEntry& entry) {
        return entry.operation == operation;
    };
}

Journal::Filter Journal::about(AudioObjectID object) {
    return [=](const JournalEntry& entry) {
        return entry.object == object;
    };
}

} // namespace orvanta::embedded
