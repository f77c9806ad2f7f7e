#include "tests/support/HttpServer.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QRegularExpression>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <csignal>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

namespace http_test {

namespace {

constexpr const char* kNonce = "5ca1ab1e";
constexpr const char* kRealm = "camera";
constexpr long kDay = 24 * 3600;

std::string pathOf(const std::string& target)
{
    return target.substr(0, target.find('?'));
}

std::string md5(const std::string& text)
{
    return QCryptographicHash::hash(QByteArray::fromStdString(text), QCryptographicHash::Md5).toHex().toStdString();
}

// One field of an Authorization header, with or without quotes.
std::string digestField(const std::string& header, const std::string& name)
{
    const QRegularExpression field("\\b" + QString::fromStdString(name) + R"re(=(?:"([^"]*)"|([^", ]+)))re");
    const QRegularExpressionMatch match = field.match(QString::fromStdString(header));
    return (match.captured(1) + match.captured(2)).toStdString();
}

bool isDigestRight(const Request& request, const std::string& header, const std::string& user,
                   const std::string& password)
{
    const std::string ha1 = md5(user + ":" + kRealm + ":" + password);
    const std::string ha2 = md5(request.method + ":" + request.target);
    const std::string middle = ":" + digestField(header, "nonce") + ":" + digestField(header, "nc") + ":" +
                               digestField(header, "cnonce") + ":" + digestField(header, "qop") + ":";
    return digestField(header, "username") == user && digestField(header, "nonce") == kNonce &&
           digestField(header, "response") == md5(ha1 + middle + ha2);
}

std::shared_ptr<SSL_CTX> throwAwayContext(std::string& pem)
{
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_EC_gen("P-256"), EVP_PKEY_free);
    std::unique_ptr<X509, decltype(&X509_free)> certificate(X509_new(), X509_free);
    X509_set_version(certificate.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(certificate.get()), -kDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate.get()), kDay);
    X509_set_pubkey(certificate.get(), key.get());
    X509_NAME* name = X509_get_subject_name(certificate.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, reinterpret_cast<const unsigned char*>("test"), -1, -1, 0);
    X509_set_issuer_name(certificate.get(), name);
    X509_EXTENSION* addresses = X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, "IP:127.0.0.1");
    X509_add_ext(certificate.get(), addresses, -1);
    X509_EXTENSION_free(addresses);
    X509_sign(certificate.get(), key.get(), EVP_sha256());

    std::unique_ptr<BIO, decltype(&BIO_free)> memory(BIO_new(BIO_s_mem()), BIO_free);
    PEM_write_bio_X509(memory.get(), certificate.get());
    char* text = nullptr;
    const long length = BIO_get_mem_data(memory.get(), &text);
    pem.assign(text, static_cast<size_t>(length));

    std::shared_ptr<SSL_CTX> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    SSL_CTX_use_certificate(context.get(), certificate.get());
    SSL_CTX_use_PrivateKey(context.get(), key.get());
    return context;
}

} // namespace

class HttpServer::Line
{
public:
    Line(int socket, SSL_CTX* tls)
        : ends_(BIO_new(BIO_f_buffer()), BIO_free_all)
    {
        BIO* const end = BIO_new_socket(socket, BIO_NOCLOSE);
        BIO_push(ends_.get(), tls ? BIO_push(BIO_new_ssl(tls, 0), end) : end);
    }

    bool write(const std::string& text)
    {
        const auto length = static_cast<int>(text.size());
        return BIO_write(ends_.get(), text.data(), length) == length && BIO_flush(ends_.get()) == 1;
    }

    bool readLine(std::string& line)
    {
        line.resize(1 << 16);
        const int length = BIO_gets(ends_.get(), line.data(), static_cast<int>(line.size()));
        line.resize(static_cast<size_t>(std::max(length, 2) - 2));
        return length >= 2;
    }

    // Hands on `length` bytes in the pieces that they come in.
    bool read(size_t length, const BodyHandler& handler)
    {
        char piece[16384];
        while (length > 0) {
            const int got = BIO_read(ends_.get(), piece, static_cast<int>(std::min(length, sizeof piece)));
            if (got <= 0)
                return false;
            handler({piece, static_cast<size_t>(got)});
            length -= static_cast<size_t>(got);
        }
        return true;
    }

    // The end is not told to the other side.
    void cut()
    {
        SSL* tls = nullptr;
        BIO_get_ssl(ends_.get(), &tls);
        if (tls)
            SSL_set_quiet_shutdown(tls, 1);
    }

private:
    const std::unique_ptr<BIO, decltype(&BIO_free_all)> ends_;
};

HttpServer::HttpServer(Security security)
    : security_(security)
{
    if (security == Security::Tls)
        tls_ = throwAwayContext(certificate_);
    listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (bind(listener_, reinterpret_cast<sockaddr*>(&address), length) == 0 && listen(listener_, SOMAXCONN) == 0 &&
        getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port_ = ntohs(address.sin_port);
    acceptor_ = std::thread([this] { acceptLines(); });
}

HttpServer::~HttpServer()
{
    {
        const std::lock_guard lock(lock_);
        isEnding_ = true;
        for (const int socket : sockets_)
            shutdown(socket, SHUT_RDWR);
    }
    shutdown(listener_, SHUT_RDWR);
    acceptor_.join();
    for (std::thread& thread : threads_)
        thread.join();
    close(listener_);
}

std::string HttpServer::url(const std::string& path) const
{
    return (security_ == Security::Tls ? "https://127.0.0.1:" : "http://127.0.0.1:") + std::to_string(port_) + path;
}

std::vector<Request> HttpServer::requests(const std::string& path) const
{
    const std::lock_guard lock(lock_);
    std::vector<Request> found;
    std::copy_if(requests_.begin(), requests_.end(), std::back_inserter(found),
                 [&](const Request& request) { return path.empty() || pathOf(request.target) == path; });
    return found;
}

// Writes to a line that the other side has closed would end the process, so these threads take no SIGPIPE.
void HttpServer::acceptLines()
{
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    for (;;) {
        const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard lock(lock_);
        if (isEnding_)
            close(socket);
        if (socket < 0 || isEnding_)
            return;
        sockets_.push_back(socket);
        threads_.emplace_back([this, socket] {
            serve(socket);
            const std::lock_guard closing(lock_);
            sockets_.remove(socket);
            close(socket);
        });
    }
}

bool HttpServer::readBody(Line& line, Request& request, const BodyHandler& handler) const
{
    const BodyHandler take = [&](std::string_view piece) {
        if (handler)
            handler(piece);
        else
            request.body += piece;
    };
    if (request.headers["transfer-encoding"] != "chunked") {
        const std::string& length = request.headers["content-length"];
        return line.read(length.empty() ? 0 : std::stoul(length), take);
    }
    std::string size;
    while (line.readLine(size)) {
        const size_t length = std::stoul(size, nullptr, 16);
        if (!line.read(length, take) || !line.readLine(size))
            return false;
        if (length == 0)
            return true;
    }
    return false;
}

std::optional<Response> HttpServer::refuse(const Request& request, const Account& account)
{
    const auto header = request.headers.find("authorization");
    const std::string given = header != request.headers.end() ? header->second : "";
    const std::string realm = std::string(" realm=\"") + kRealm + "\"";
    const QByteArray words = QByteArray::fromStdString(account.user + ":" + account.password);
    if (account.login == Login::Basic && given != "Basic " + words.toBase64().toStdString())
        return Response{401, "Who are you?", {{"WWW-Authenticate", "Basic" + realm}}};
    const std::string challenge = "Digest" + realm + ", qop=\"auth\", nonce=\"" + kNonce + "\"";
    if (account.login == Login::Digest && !isDigestRight(request, given, account.user, account.password))
        return Response{401, "Who are you?", {{"WWW-Authenticate", challenge}}};
    return std::nullopt;
}

namespace {

std::string headOf(const Response& response)
{
    std::string head = "HTTP/1.1 " + std::to_string(response.status) + " Status\r\nConnection: close\r\n";
    for (const auto& [name, value] : response.headers)
        head += name + ": " + value + "\r\n";
    if (!response.next)
        head += "Content-Length: " + std::to_string(response.claimedLength.value_or(response.body.size())) + "\r\n";
    return head + "\r\n";
}

std::function<std::string()> piecesOf(const Response& response)
{
    if (response.next)
        return response.next;
    return [&response, sent = size_t(0)]() mutable {
        const size_t end = std::min(response.body.size(), response.cutAfter.value_or(response.body.size()));
        const std::string piece = response.body.substr(sent, std::min(response.pieceSize, end - sent));
        sent += piece.size();
        return piece;
    };
}

} // namespace

void HttpServer::serve(int socket)
{
    Line line(socket, tls_.get());
    std::string text;
    if (!line.readLine(text))
        return;
    Request request;
    const size_t gap = text.find(' ');
    request.method = text.substr(0, gap);
    request.target = text.substr(gap + 1, text.rfind(' ') - gap - 1);
    while (line.readLine(text) && !text.empty())
        request.headers[QString::fromStdString(text.substr(0, text.find(':'))).toLower().toStdString()] =
            text.substr(std::min(text.size(), text.find(": ") + 2));
    const Route route = [&] {
        const std::lock_guard lock(lock_);
        return routes_[pathOf(request.target)];
    }();
    if (request.headers.count("expect") != 0)
        line.write("HTTP/1.1 100 Continue\r\n\r\n");
    // A body without an end is not waited for before a stranger is refused.
    std::optional<Response> refusal = refuse(request, route.account);
    const bool isEndless = request.headers["transfer-encoding"] == "chunked";
    if (!(refusal && isEndless) && !readBody(line, request, route.bodyHandler))
        return;
    const Response response = refusal         ? *refusal
                              : route.handler ? route.handler(request)
                                              : Response{404, "No such page here."};
    {
        const std::lock_guard lock(lock_);
        requests_.push_back(request);
    }
    bool isOpen = line.write(headOf(response));
    const auto next = piecesOf(response);
    for (std::string piece = next(); isOpen && !piece.empty() && request.method != "HEAD"; piece = next()) {
        std::this_thread::sleep_for(response.pause);
        isOpen = line.write(piece);
    }
    if (response.cutAfter)
        line.cut();
}

Response rangeOf(const Request& request, const std::string& content)
{
    const auto range = request.headers.find("range");
    if (range == request.headers.end())
        return {200, content, {{"Accept-Ranges", "bytes"}}};
    const size_t begin = std::stoul(range->second.substr(range->second.find('=') + 1));
    if (begin >= content.size())
        return {416, "", {{"Content-Range", "bytes */" + std::to_string(content.size())}}};
    const std::string last = std::to_string(content.size() - 1);
    return {206,
            content.substr(begin),
            {{"Content-Range", "bytes " + std::to_string(begin) + "-" + last + "/" + std::to_string(content.size())}}};
}

} // namespace http_test
