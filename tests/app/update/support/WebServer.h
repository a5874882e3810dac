#pragma once

#include <QByteArray>
#include <QSslCertificate>
#include <QSslKey>
#include <QTcpServer>
#include <QTcpSocket>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace orvanta::test {

/// What a server of this machine shows that it is, made by nobody whom others trust.
struct WebIdentity {
    QSslCertificate certificate;
    QSslKey key;

    /// The same for the whole test program.
    static const WebIdentity& ofThisMachine();
};

/// Trusts the identity, for as long as it lives.
class TrustInThisMachine {
public:
    TrustInThisMachine();
    TrustInThisMachine(const TrustInThisMachine&) = delete;
    TrustInThisMachine& operator=(const TrustInThisMachine&) = delete;
    ~TrustInThisMachine();
};

/// A web server of the test's own on this machine, which answers from the event loop.
class WebServer {
public:
    enum class Kind { plain, secure };

    explicit WebServer(Kind kind);

    [[nodiscard]] std::string url(const std::string& path) const;

    /// All that is sent for a path, head included. Nothing is said of others.
    std::map<std::string, QByteArray> answers;
    /// After that the connection ends; or it stays, in silence.
    bool endsConnections = true;

    /// The heads of what was asked.
    std::vector<std::string> requests;
    int connections = 0;

private:
    void receive(QTcpSocket& visitor);

    const Kind kind_;
    std::unique_ptr<QTcpServer> server_;
};

/// An answer with this content.
[[nodiscard]] QByteArray webPage(const QByteArray& content, const QByteArray& headers = {});

/// An answer that leads elsewhere.
[[nodiscard]] QByteArray webRedirect(const std::string& url);

} // namespace orvanta::test
