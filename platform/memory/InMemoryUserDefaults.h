#pragma once

#include "core/platform/UserDefaults.h"

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <variant>

namespace orvanta {

/// A key-value domain that lasts as long as the object. For one thread at a time.
class InMemoryUserDefaults : public UserDefaults {
public:
    [[nodiscard]] bool has(std::string_view key) const override { return values_.contains(key); }

    [[nodiscard]] std::optional<std::string> data(std::string_view key) const override {
        const auto* const data = get<Data>(key);
        return data != nullptr ? std::optional(data->bytes) : std::nullopt;
    }

    void setData(std::string_view key, std::string_view bytes) override {
        set(key, Data{std::string(bytes)});
    }

    [[nodiscard]] bool boolean(std::string_view key) const override {
        const auto* const value = get<bool>(key);
        return value != nullptr && *value;
    }

    void setBoolean(std::string_view key, bool value) override { set(key, value); }

    [[nodiscard]] std::optional<std::string> string(std::string_view key) const override {
        const auto* const text = get<std::string>(key);
        return text != nullptr ? std::optional(*text) : std::nullopt;
    }

    void setString(std::string_view key, std::string_view text) override {
        set(key, std::string(text));
    }

private:
    struct Data {
        std::string bytes;
    };

    using Value = std::variant<bool, std::string, Data>;

    template <class Kind>
    [[nodiscard]] const Kind* get(std::string_view key) const {
        const auto found = values_.find(key);
        return found != values_.end() ? std::get_if<Kind>(&found->second) : nullptr;
    }

    void set(std::string_view key, Value value) {
        values_.insert_or_assign(std::string(key), std::move(value));
    }

    std::map<std::string, Value, std::less<>> values_;
};

} // namespace orvanta
