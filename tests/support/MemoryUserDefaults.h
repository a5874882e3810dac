#pragma once

#include "platform/memory/InMemoryUserDefaults.h"

namespace orvanta::test {

/// A key-value domain without a disk, which counts how often each value is read and set.
class MemoryUserDefaults final : public InMemoryUserDefaults {
public:
    mutable std::map<std::string, int, std::less<>> reads;
    std::map<std::string, int, std::less<>> writes;

    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override {
        ++reads[std::string(key)];
        return InMemoryUserDefaults::data(key);
    }

    void setData(std::string_view key, std::string_view bytes) override {
        ++writes[std::string(key)];
        InMemoryUserDefaults::setData(key, bytes);
    }

    void setBoolean(std::string_view key, bool value) override {
        ++writes[std::string(key)];
        InMemoryUserDefaults::setBoolean(key, value);
    }

    void setString(std::string_view key, std::string_view text) override {
        ++writes[std::string(key)];
        InMemoryUserDefaults::setString(key, text);
    }
};

} // namespace orvanta::test
