#include "tests/app/update/support/WebServer.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/FileContent.h"
#include "tests/support/TemporaryDirectory.h"

#include <QHostAddress>
#include <QSslConfiguration>
#include <QSslServer>
#include <QSslSocket>
#include <stdexcept>

namespace orvanta::test {

namespace {

WebIdentity makeIdentity() {
    const TemporaryDirectory directory;
    const auto key = directory.path() / "key.pem";
    const auto certificate = directory.path() / "certificate.pem";
    runToEnd({"openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
              "-nodes", "-days", "30", "-subj", "/CN=localhost", "-addext",
              "subjectAltName=DNS:localhost", "-keyout", key.string(), "-out",
              certificate.string()},
             Seconds(60));
    return {.certificate =
                QSslCertificate(QByteArray::fromStdString(fileContent(certificate)), QSsl::Pem),
            .key = QSslKey(QByteArray::fromStdString(fileContent(key)), QSsl::Ec)};
}

std::unique_ptr<QTcpServer> makeServer(WebServer::Kind kind) {
    if (kind == WebServer::Kind::plain)
        return std::make_unique<QTcpServer>();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(WebIdentity::ofThisMachine().certificate);
    configuration.setPrivateKey(WebIdentity::ofThisMachine().key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(configuration);
    return server;
}

} // namespace

const WebIdentity& WebIdentity::ofThisMachine() {
    static const WebIdentity identity = makeIdentity();
    return identity;
}

TrustInThisMachine::TrustInThisMachine() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({WebIdentity::ofThisMachine().certificate});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

TrustInThisMachine::~TrustInThisMachine() {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates({});
    QSslConfiguration::setDefaultConfiguration(configuration);
}

WebServer::WebServer(Kind kind) : kind_(kind), server_(makeServer(kind)) {
    QObject::connect(server_.get(), &QTcpServer::pendingConnectionAvailable, server_.get(), [this] {
        while (QTcpSocket* const visitor = server_->nextPendingConnection()) {
            ++connections;
            QObject::connect(visitor, &QTcpSocket::readyRead, visitor,
                             [this, visitor] { receive(*visitor); });
            receive(*visitor);
        }
    });
    if (!server_->listen(QHostAddress::LocalHost))
        throw std::runtime_error("no port is free");
}

std::string WebServer::url(const std::string& path) const {
    return (kind_ == Kind::plain ? "http://localhost:" : "https://localhost:") +
           std::to_string(server_->serverPort()) + path;
}

void WebServer::receive(QTcpSocket& visitor) {
    const QByteArray head = visitor.peek(1 << 16);
    if (!head.contains("\r\n\r\n"))
        return;
    visitor.skip(head.size());
    requests.push_back(head.toStdString());
    const auto answer = answers.find(head.split(' ').value(1).toStdString());
    if (answer == answers.end())
        return;
    visitor.write(answer->second);
    if (endsConnections)
        visitor.disconnectFromHost();
}

QByteArray webPage(const QByteArray& content, const QByteArray& headers) {
    return "HTTP/1.1 200 OK\r\nConnection: close\r\n" + headers + "\r\n" + content;
}

QByteArray webRedirect(const std::string& url) {
    return "HTTP/1.1 302 Found\r\nConnection: close\r\nContent-Length: 0\r\nLocation: " +
           QByteArray::fromStdString(url) + "\r\n\r\n";
}

} // namespace orvanta::test
