#pragma once

#include "core/platform/Logger.h"
#include "core/platform/LoginItem.h"

namespace orvanta {

/// Lets the program start with the user's session, or no longer. What goes wrong is logged and
/// shown to nobody.
class LaunchAtLogin {
public:
    /// Both must outlive it.
    LaunchAtLogin(LoginItem& item, SystemLog& log);

    [[nodiscard]] bool isOn() const { return item_.isRegistered(); }

    void set(bool isOn);

private:
    LoginItem& item_;
    const Logger logger_;
};

} // namespace orvanta
