#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace orvanta::pipewire {

/// A value with the name of its type, as the server wants both back.
struct MetadataValue {
    std::string type;
    std::string value;

    [[nodiscard]] bool empty() const { return value.empty(); }

    friend bool operator==(const MetadataValue&, const MetadataValue&) = default;
};

/// Our own writes to one metadata object of which the server has not told us yet. It tells of every
/// change in their order, so that what it says of an earlier one of ours is out of date while a
/// later one is still on its way.
class WriteEchoes {
public:
    /// A write that changes the value, which the server will tell of; empty when it removes it.
    void expect(std::uint32_t subject, const std::string& key, const MetadataValue& value) {
        auto& values = awaited_[{subject, key}];
        // Of the same twice in a row the server tells once.
        if (values.empty() || values.back() != value)
            values.push_back(value);
    }

    /// The server tells of this value: whether a later write of ours will replace it. A value that
    /// we did not write is another program's, which one wants to know of in any case.
    [[nodiscard]] bool isOutdated(std::uint32_t subject, const std::string& key,
                                  const MetadataValue& value) {
        const auto writes = awaited_.find({subject, key});
        if (writes == awaited_.end())
            return false;
        auto& values = writes->second;
        const auto own = std::find(values.begin(), values.end(), value);
        if (own == values.end())
            return false;
        // Those before it were never told of: the server had the same value already.
        values.erase(values.begin(), std::next(own));
        if (!values.empty())
            return true;
        awaited_.erase(writes);
        return false;
    }

    void forget(std::uint32_t subject) {
        std::erase_if(awaited_, [=](const auto& entry) { return entry.first.first == subject; });
    }

    void clear() { awaited_.clear(); }

private:
    std::map<std::pair<std::uint32_t, std::string>, std::vector<MetadataValue>> awaited_;
};

} // namespace orvanta::pipewire
