#include "tests/platform/qt/support/OpenedAddresses.h"

#include <QDesktopServices>

namespace orvanta::test {

OpenedAddresses::OpenedAddresses(const std::vector<std::string>& schemes) {
    for (const std::string& scheme : schemes) {
        schemes_.push_back(QString::fromStdString(scheme));
        QDesktopServices::setUrlHandler(schemes_.back(), this, "keep");
    }
}

OpenedAddresses::~OpenedAddresses() {
    for (const QString& scheme : schemes_)
        QDesktopServices::unsetUrlHandler(scheme);
}

void OpenedAddresses::keep(const QUrl& address) {
    all.push_back(address.toString(QUrl::FullyEncoded).toStdString());
}

} // namespace orvanta::test
