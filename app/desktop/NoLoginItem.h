#pragma once

#include "core/platform/LoginItem.h"

namespace orvanta {

/// Of a program that no session is to start.
class NoLoginItem final : public LoginItem {
public:
    [[nodiscard]] bool isRegistered() const override { return false; }

    std::optional<std::string> registerItem() override {
        return "this program is not started with the session";
    }

    std::optional<std::string> unregisterItem() override { return std::nullopt; }
};

} // namespace orvanta
