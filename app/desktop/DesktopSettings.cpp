#include "app/desktop/DesktopSettings.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <xcb/xcb.h>

namespace orvanta {
namespace {

const QString kPortal = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kSettings = QStringLiteral("org.freedesktop.portal.Settings");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kContrast = QStringLiteral("contrast");
const QString kInterface = QStringLiteral("org.gnome.desktop.interface");
const QString kAnimations = QStringLiteral("enable-animations");

template <class Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

/// A compositing manager owns a selection of its screen.
bool hasX11Compositor(xcb_connection_t& display) {
    const std::string name = "_NET_WM_CM_S0";
    const Answer<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(
            &display,
            xcb_intern_atom(&display, 1, static_cast<std::uint16_t>(name.size()), name.data()),
            nullptr),
        &std::free);
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const Answer<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(&display, xcb_get_selection_owner(&display, atom->atom),
                                      nullptr),
        &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

bool hasCompositor() {
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        return true;
    const auto* const application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    const auto* const x11 = application != nullptr
                                ? application->nativeInterface<QNativeInterface::QX11Application>()
                                : nullptr;
    return x11 != nullptr && x11->connection() != nullptr && hasX11Compositor(*x11->connection());
}

/// The portal wraps values once more when it is asked.
QVariant unwrapped(QVariant value) {
    while (value.canConvert<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

} // namespace

DesktopSettings::DesktopSettings(QDBusConnection sessionBus,
                                 std::function<void(const DesktopLook&)> changed)
    : bus_(std::move(sessionBus)),
      changed_(std::move(changed)),
      look_{.hasCompositor = hasCompositor()} {
    // What the signal brings must be known to the toolkit, or it connects nothing.
    qRegisterMetaType<QDBusVariant>();
    bus_.connect(kPortal, kPath, kSettings, QStringLiteral("SettingChanged"), this,
                 SLOT(settingChanged(QString, QString, QDBusVariant)));
    read(kAppearance, kContrast);
    read(kInterface, kAnimations);
    changed_(look_);
}

void DesktopSettings::read(const QString& group, const QString& key) {
    auto question =
        QDBusMessage::createMethodCall(kPortal, kPath, kSettings, QStringLiteral("Read"));
    question << group << key;
    auto* const watcher = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, group, key] {
        const QDBusPendingReply<QDBusVariant> reply = *watcher;
        if (reply.isValid())
            take(group, key, reply.value().variant());
        watcher->deleteLater();
    });
}

void DesktopSettings::settingChanged(const QString& group, const QString& key,
                                     const QDBusVariant& value) {
    take(group, key, value.variant());
}

void DesktopSettings::take(const QString& group, const QString& key, const QVariant& value) {
    DesktopLook look = look_;
    if (group == kAppearance && key == kContrast)
        look.isHighContrast = unwrapped(value).toUInt() == 1;
    else if (group == kInterface && key == kAnimations)
        look.isMotionReduced = !unwrapped(value).toBool();
    become(look);
}

void DesktopSettings::lookForCompositor() {
    DesktopLook look = look_;
    look.hasCompositor = hasCompositor();
    become(look);
}

void DesktopSettings::become(const DesktopLook& look) {
    if (std::exchange(look_, look) != look)
        changed_(look_);
}

} // namespace orvanta
