#pragma once

#include <QObject>
#include <QString>
#include <QUrl>
#include <string>
#include <vector>

namespace orvanta::test {

/// Stands in for the desktop's programs: keeps what the toolkit is asked to open.
class OpenedAddresses final : public QObject {
    Q_OBJECT

public:
    /// Of these kinds, for as long as it lives.
    explicit OpenedAddresses(const std::vector<std::string>& schemes);
    ~OpenedAddresses() override;

    Q_SLOT void keep(const QUrl& address);

    std::vector<std::string> all;

private:
    std::vector<QString> schemes_;
};

} // namespace orvanta::test
