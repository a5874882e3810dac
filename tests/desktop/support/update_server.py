"""A server of the test's own that announces versions, and the one who signs them."""

import base64
import http.server
import ssl
import subprocess
import threading

NAMESPACE = "http://www.andymatuschak.org/xml-namespaces/sparkle"
KEY_BYTES = 32


class Signer:
    """Has an Ed25519 key."""

    def __init__(self, folder, name):
        self._folder = folder
        self._key = folder / f"{name}.pem"
        subprocess.run(["openssl", "genpkey", "-algorithm", "ed25519", "-out", self._key],
                       check=True, capture_output=True)

    def public_key(self):
        written = subprocess.run(["openssl", "pkey", "-in", self._key, "-pubout",
                                  "-outform", "DER"],
                                 check=True, capture_output=True).stdout
        return base64.b64encode(written[-KEY_BYTES:]).decode()

    def sign(self, content):
        file = self._folder / "content"
        file.write_bytes(content)
        signature = subprocess.run(["openssl", "pkeyutl", "-sign", "-rawin", "-inkey", self._key,
                                    "-in", file], check=True, capture_output=True).stdout
        return base64.b64encode(signature).decode()


class UpdateServer:
    """Answers over HTTPS with what stands in `pages`, by paths, until `close`."""

    def __init__(self, folder):
        self.certificate = folder / "certificate.pem"
        key = folder / "certificate-key.pem"
        subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt",
                        "ec_paramgen_curve:P-256", "-nodes", "-days", "30", "-subj",
                        "/CN=localhost", "-addext", "subjectAltName=DNS:localhost",
                        "-keyout", key, "-out", self.certificate], check=True, capture_output=True)
        self.pages = {}
        pages = self.pages

        class Answers(http.server.BaseHTTPRequestHandler):
            def do_GET(self):
                page = pages.get(self.path)
                self.send_response(404 if page is None else 200)
                self.send_header("Content-Length", str(len(page or b"")))
                self.end_headers()
                self.wfile.write(page or b"")

            def log_message(self, *words):
                pass

        self._server = http.server.ThreadingHTTPServer(("localhost", 0), Answers)
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(self.certificate, key)
        self._server.socket = context.wrap_socket(self._server.socket, server_side=True)
        threading.Thread(target=self._server.serve_forever, daemon=True).start()

    def url(self, path):
        return f"https://localhost:{self._server.server_port}{path}"

    def announce(self, *items):
        self.pages["/feed.xml"] = (
            f'<?xml version="1.0"?><rss version="2.0" xmlns:feed="{NAMESPACE}"><channel>'
            f'{"".join(items)}</channel></rss>').encode()

    def item(self, version, file, content, signature):
        """With the page that tells of it."""
        self.pages[file] = content
        return (f"<item><feed:version>{version}</feed:version>"
                f"<feed:shortVersionString>{version}.0</feed:shortVersionString>"
                f"<link>{self.url('/notes.html')}</link>"
                f'<enclosure url="{self.url(file)}" length="{len(content)}" '
                f'feed:edSignature="{signature}"/></item>')

    def close(self):
        self._server.shutdown()
        self._server.server_close()
