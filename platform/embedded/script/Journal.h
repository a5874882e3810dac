#pragma once

#include "core/platform/AudioHardware.h"
#include "platform/embedded/script/Operation.h"

#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace orvanta::embedded {

/// One call that a client made, and its result.
struct JournalEntry {
    Operation operation = Operation::getPropertyData;
    /// What the call was about; 0 for the creation of a tap or an aggregate.
    AudioObjectID object = kAudioObjectUnknown;
    std::optional<AudioObjectPropertyAddress> address = std::nullopt;
    OSStatus status = noErr;

    /// Id of the tap or aggregate that was created, 0 if none.
    AudioObjectID created = kAudioObjectUnknown;
    /// The IOProc given or, on creation, made.
    AudioDeviceIOProcID procID = nullptr;
    /// What a tap or aggregate was asked to be.
    std::optional<CATapDescription> tap = std::nullopt;
    std::optional<AggregateDeviceDescription> aggregate = std::nullopt;
    /// The value that was set, or the number answered to a yes-or-no question.
    std::optional<double> value = std::nullopt;
    /// Bytes given back or handed over.
    std::optional<std::uint32_t> bytes = std::nullopt;

    /// One line: "AudioObjectGetPropertyData 1 'dev#' 'glob' 0, 8 bytes -> noErr".
    [[nodiscard]] std::string text() const;
};

/// Every call in the order in which the server served it. Safe from all threads.
class Journal {
public:
    using Filter = std::function<bool(const JournalEntry&)>;

    /// Beyond `limit` entries the oldest are dropped.
    explicit Journal(std::size_t limit) : limit_(limit) {}

    void add(JournalEntry entry);
    void clear();

    /// All entries, or those that a filter takes.
    [[nodiscard]] std::vector<JournalEntry> entries(const Filter& filter = {}) const;
    [[nodiscard]] std::vector<std::string> lines(const Filter& filter = {}) const;
    /// Names of the operations alone.
    [[nodiscard]] std::vector<std::string> operations(const Filter& filter = {}) const;
    [[nodiscard]] std::size_t count(Operation operation) const;

    /// Filters: only what makes, ends, starts and stops; only what is about one object.
    static Filter lifecycle();
    static Filter of(Operation operation);
    static Filter about(AudioObjectID object);

private:
    mutable std::mutex mutex_;
    std::deque<JournalEntry> entries_;
    std::size_t limit_;
};

} // namespace orvanta::embedded
