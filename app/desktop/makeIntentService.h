#pragma once

#include "core/platform/SystemLog.h"
#include "platform/qt/automation/IntentService.h"

#include <QDBusConnection>
#include <memory>
#include <string>

namespace orvanta {

/// Offers the program's intents on the session bus, under the program's domain. They find the mixer
/// as soon as `OrvantaIntentBridge::shared` leads to one.
[[nodiscard]] std::unique_ptr<IntentService>
makeIntentService(QDBusConnection sessionBus, const std::string& domain, SystemLog& log);

} // namespace orvanta
