#pragma once

#include <openssl/ssl.h>

#include <chrono>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <unistd.h>

namespace http_test {

struct Request
{
    std::string method;
    std::string target;                         // with its query
    std::map<std::string, std::string> headers; // names in lower case
    std::string body;
};

struct Response
{
    int status = 200;
    std::string body = {};
    std::map<std::string, std::string> headers = {};
    std::function<std::string()> next = {}; // pieces in place of `body`, until an empty one; no length is told

    std::optional<size_t> claimedLength = {}; // told in place of the real one
    std::optional<size_t> cutAfter = {};      // bytes of the body after which the line is cut
    std::chrono::milliseconds pause{0};       // before each piece
    size_t pieceSize = 16384;
};

enum class Security
{
    Plain,
    Tls
};
enum class Login
{
    None,
    Basic,
    Digest
};

// A small HTTP/1.1 server on a loopback port of its own, with a thread a connection; it ends with the object. Handlers
// run on the connection's thread, after the whole body has come. Any thread may call.
class HttpServer
{
public:
    using Handler = std::function<Response(const Request&)>;
    using BodyHandler = std::function<void(std::string_view piece)>;

    explicit HttpServer(Security security = Security::Plain);
    ~HttpServer();

    // Paths without a handler answer 404.
    void on(const std::string& path, Handler handler) { set(path, &Route::handler, std::move(handler)); }
    void on(const std::string& path, const Response& always)
    {
        on(path, [always](const Request&) { return always; });
    }
    // Pieces of a request's body as they come, for bodies without an end.
    void onBody(const std::string& path, BodyHandler handler) { set(path, &Route::bodyHandler, std::move(handler)); }
    void protect(const std::string& path, Login login, const std::string& user, const std::string& password)
    {
        set(path, &Route::account, {login, user, password});
    }

    std::string url(const std::string& path) const;
    std::vector<Request> requests(const std::string& path = {}) const; // that were answered by a handler or refused
    std::string certificate() const { return certificate_; } // PEM; self-signed for 127.0.0.1, made at the start

private:
    struct Account
    {
        Login login = Login::None;
        std::string user;
        std::string password;
    };
    struct Route
    {
        Handler handler;
        BodyHandler bodyHandler;
        Account account;
    };
    class Line;

    template <class Value> void set(const std::string& path, Value Route::*what, Value value)
    {
        const std::lock_guard lock(lock_);
        routes_[path].*what = std::move(value);
    }
    void acceptLines();
    void serve(int socket);
    bool readBody(Line& line, Request& request, const BodyHandler& handler) const;
    static std::optional<Response> refuse(const Request& request, const Account& account);

    const Security security_;
    std::string certificate_;
    std::shared_ptr<SSL_CTX> tls_;
    int listener_ = -1;
    int port_ = 0;
    mutable std::mutex lock_; // guards what follows
    std::map<std::string, Route> routes_;
    std::vector<Request> requests_;
    std::list<int> sockets_;
    std::list<std::thread> threads_;
    bool isEnding_ = false;
    std::thread acceptor_;
};

// `content`, or the part of it that a Range header asks for.
Response rangeOf(const Request& request, const std::string& content);

} // namespace http_test
