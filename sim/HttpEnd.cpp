#include "sim/HttpEnd.h"

#include <httplib.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace sim {

namespace {

constexpr char kHost[] = "127.0.0.1";
constexpr size_t kThreads = 12;
constexpr size_t kChunk = 65536;

void onlyReuseAddress(socket_t sock)
{
    // The library's default also shares the port, which would let two simulators answer by turns.
    const int yes = 1;
    setsockopt(sock, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

bool isPort(const sockaddr_in& address, int port)
{
    return address.sin_family == AF_INET && ntohs(address.sin_port) == port;
}

/// The library keeps the descriptor to itself, so the connection is found by its two ports.
void cutConnection(int localPort, int remotePort)
{
    constexpr int kHighest = 4096;
    for (int fd = 3; fd < kHighest; ++fd) {
        sockaddr_in local{};
        sockaddr_in remote{};
        socklen_t localSize = sizeof local;
        socklen_t remoteSize = sizeof remote;
        if (getpeername(fd, reinterpret_cast<sockaddr*>(&remote), &remoteSize) != 0 ||
            getsockname(fd, reinterpret_cast<sockaddr*>(&local), &localSize) != 0)
            continue;
        if (isPort(local, localPort) && isPort(remote, remotePort)) {
            shutdown(fd, SHUT_RDWR);
            return;
        }
    }
}

/// The library puts the addresses of the connection among the headers.
bool isFromLibrary(const QByteArray& name)
{
    return name == "remote_addr" || name == "remote_port" || name == "local_addr" ||
           name == "local_port";
}

HttpCall toCall(const httplib::Request& request)
{
    HttpCall call;
    call.method = QByteArray::fromStdString(request.method);
    call.target = QByteArray::fromStdString(request.target);
    call.body = QByteArray::fromStdString(request.body);
    for (const auto& [name, value] : request.headers) {
        const QByteArray lowerCase = QByteArray::fromStdString(name).toLower();
        if (!isFromLibrary(lowerCase))
            call.headers.append({lowerCase, QByteArray::fromStdString(value)});
    }
    return call;
}

/// Waits, no longer than the client stays; false when it has gone.
bool awaitTurn(httplib::DataSink& sink, int milliseconds)
{
    constexpr int kLook = 10;
    for (int waited = 0; waited < milliseconds; waited += kLook) {
        if (!sink.is_writable())
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(kLook));
    }
    return sink.is_writable();
}

/// Sent through a provider: the library would compress a plain body, and the time and the bytes of
/// a reply should be those that the scenario asked for.
void setBody(httplib::Response& response, const HttpReply& reply)
{
    const std::string type = reply.contentType.toStdString();
    if (reply.fillerBytes > 0) {
        response.set_content_provider(static_cast<size_t>(reply.fillerBytes), type,
                                      [](size_t, size_t length, httplib::DataSink& sink) {
                                          static const std::string filler(kChunk, 'x');
                                          return sink.write(filler.data(),
                                                            std::min(length, filler.size()));
                                      });
    } else if (reply.body.isEmpty()) {
        response.set_content(std::string(), type);
    } else {
        response.set_content_provider(
            static_cast<size_t>(reply.body.size()), type,
            [body = reply.body, trickle = reply.trickleMs](size_t offset, size_t length,
                                                           httplib::DataSink& sink) {
                if (trickle > 0)
                    return awaitTurn(sink, trickle) && sink.write(body.constData() + offset, 1);
                return sink.write(body.constData() + offset, std::min(length, kChunk));
            });
    }
}

} // namespace

QByteArray HttpCall::path() const
{
    const int mark = target.indexOf('?');
    return mark < 0 ? target : target.left(mark);
}

QByteArray HttpCall::query() const
{
    const int mark = target.indexOf('?');
    return mark < 0 ? QByteArray() : target.mid(mark + 1);
}

QByteArray HttpCall::header(const QByteArray& lowerCaseName) const
{
    for (const auto& [name, value] : headers) {
        if (name == lowerCaseName)
            return value.isNull() ? QByteArray("") : value;
    }
    return {};
}

struct HttpEnd::Private
{
    std::unique_ptr<httplib::Server> server;
    std::thread thread;
    int port = 0;

    void configure(const Handler& handler)
    {
        server = std::make_unique<httplib::Server>();
        server->set_tcp_nodelay(true);
        server->set_socket_options(onlyReuseAddress);
        server->set_keep_alive_max_count(1);
        server->new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
        const auto serve = [handler](const httplib::Request& request, httplib::Response& response) {
            const HttpReply reply = handler(toCall(request));
            if (reply.drop) {
                cutConnection(request.local_port, request.remote_port);
                return;
            }
            response.status = reply.status;
            for (const auto& [name, value] : reply.headers)
                response.set_header(name.toStdString(), value.toStdString());
            setBody(response, reply);
        };
        const std::string everything = ".*";
        server->Get(everything, serve);
        server->Post(everything, httplib::Server::Handler(serve));
        server->Put(everything, httplib::Server::Handler(serve));
        server->Patch(everything, httplib::Server::Handler(serve));
        server->Delete(everything, httplib::Server::Handler(serve));
    }
};

HttpEnd::HttpEnd() : d(std::make_unique<Private>()) {}

HttpEnd::~HttpEnd()
{
    stop();
}

bool HttpEnd::start(int port, const Handler& handler)
{
    stop();
    d->configure(handler);
    const int bound = port == 0 ? d->server->bind_to_any_port(kHost)
                                : (d->server->bind_to_port(kHost, port) ? port : -1);
    if (bound <= 0) {
        d->server.reset();
        return false;
    }
    d->port = bound;
    d->thread = std::thread([server = d->server.get()] { server->listen_after_bind(); });
    // A stop before the accept loop has begun would be lost.
    while (!d->server->is_running())
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return true;
}

void HttpEnd::stop()
{
    if (!d->server)
        return;
    d->server->stop();
    d->thread.join();
    d->server.reset();
}

bool HttpEnd::running() const
{
    return d->server != nullptr;
}

int HttpEnd::port() const
{
    return d->port;
}

} // namespace sim
