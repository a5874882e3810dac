#pragma once

#include "core/model/PIDMap.h"
#include "core/publishing/Published.h"

/// Each is one assignment of a published set or map.
namespace orvanta {

inline void insertEntry(Published<PIDSet>& set, std::int32_t pid) {
    set.update([pid](PIDSet& pids) { pids.insert(pid); });
}

template <class Value>
void setEntry(Published<PIDMap<Value>>& map, std::int32_t pid, const Value& value) {
    map.update([&](PIDMap<Value>& entries) { entries.insert_or_assign(pid, value); });
}

/// For all of `changes`, pairs of a process and its value.
template <class Value, class Changes>
void setEntries(Published<PIDMap<Value>>& map, const Changes& changes) {
    map.update([&](PIDMap<Value>& entries) {
        for (const auto& [pid, value] : changes)
            entries.insert_or_assign(pid, value);
    });
}

/// Of a set or a map.
template <class Entries>
void removeEntry(Published<Entries>& published, std::int32_t pid) {
    published.update([pid](Entries& entries) { entries.erase(pid); });
}

} // namespace orvanta
