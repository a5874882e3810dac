#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace orvanta {

/// Processes, by their id.
using PIDSet = std::set<std::int32_t>;

/// What is kept for each process. One without an entry has the default that the map's owner names.
template <class Value>
using PIDMap = std::map<std::int32_t, Value>;

template <class Value>
[[nodiscard]] Value valueOr(const PIDMap<Value>& map, std::int32_t pid, Value otherwise) {
    const auto found = map.find(pid);
    return found == map.end() ? std::move(otherwise) : found->second;
}

template <class Value>
[[nodiscard]] std::optional<Value> entryOf(const PIDMap<Value>& map, std::int32_t pid) {
    const auto found = map.find(pid);
    return found == map.end() ? std::nullopt : std::optional<Value>(found->second);
}

} // namespace orvanta
