#include "app/shell/LaunchAtLogin.h"

namespace orvanta {

LaunchAtLogin::LaunchAtLogin(LoginItem& item, SystemLog& log)
    : item_(item), logger_(log, "appSetup") {}

void LaunchAtLogin::set(bool isOn) {
    const auto error = isOn ? item_.registerItem() : item_.unregisterItem();
    if (error)
        logger_.error("Launch at login error: %s", error->c_str());
}

} // namespace orvanta
