#include "platform/qt/desktop/DesktopURLOpener.h"

#include <QByteArray>
#include <QDesktopServices>
#include <QUrl>
#include <algorithm>
#include <array>

namespace orvanta {
namespace {

constexpr std::array kOpenedSchemes{QLatin1String("https"), QLatin1String("http"),
                                    QLatin1String("mailto")};

} // namespace

bool DesktopURLOpener::open(const std::string& url) {
    const QUrl address = QUrl::fromEncoded(QByteArray::fromStdString(url), QUrl::StrictMode);
    const bool isOpened = std::any_of(kOpenedSchemes.begin(), kOpenedSchemes.end(),
                                      [&](QLatin1String each) { return address.scheme() == each; });
    return address.isValid() && isOpened && QDesktopServices::openUrl(address);
}

} // namespace orvanta
