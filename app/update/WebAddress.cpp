#include "app/update/WebAddress.h"

#include <QString>
#include <QUrl>

namespace orvanta {

std::string safeWebAddress(std::string_view text) {
    const QUrl address(
        QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())).trimmed(),
        QUrl::StrictMode);
    const bool isSafe = address.isValid() && address.scheme() == QLatin1String("https") &&
                        !address.host().isEmpty();
    return isSafe ? address.toString(QUrl::FullyEncoded).toStdString() : std::string();
}

} // namespace orvanta
