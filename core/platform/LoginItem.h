#pragma once

#include <optional>
#include <string>

namespace orvanta {

/// SMAppService.mainApp: whether this program starts by itself when the user logs in.
class LoginItem {
public:
    LoginItem() = default;
    LoginItem(const LoginItem&) = delete;
    LoginItem& operator=(const LoginItem&) = delete;
    virtual ~LoginItem() = default;

    [[nodiscard]] virtual bool isRegistered() const = 0;

    /// registerAndReturnError: and unregisterAndReturnError:. What went wrong, for people to read;
    /// nothing when it is as asked for, also if it was so before.
    virtual std::optional<std::string> registerItem() = 0;
    virtual std::optional<std::string> unregisterItem() = 0;
};

} // namespace orvanta
