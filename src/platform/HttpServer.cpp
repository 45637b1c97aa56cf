#include "platform/HttpServer.h"

#include <utility>

#include "platform/HttpText.h"

#if !defined(_WIN32)
#include <algorithm>
#include <arpa/inet.h>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <list>
#include <mutex>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#endif

namespace zth::platform {

#if defined(_WIN32)

Listening HttpHost::Listen(const std::string& /*address*/, std::uint16_t /*port*/) {
  return {nullptr, "Not on this system", 0};
}

#else

namespace {

using SteadyClock = std::chrono::steady_clock;

SteadyClock::time_point After(double seconds) {
  return SteadyClock::now() + std::chrono::duration_cast<SteadyClock::duration>(std::chrono::duration<double>(seconds));
}

/// A file descriptor of its own.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  int Number() const { return number_; }

 private:
  int number_;
};

constexpr double kDrainSeconds = 1;
constexpr double kAcceptAgainSeconds = 0.1;

/// The pages of the moment. Both threads use it.
class Shelf {
 public:
  using Shown = std::shared_ptr<const std::vector<Page>>;

  void Put(std::vector<Page> pages, std::vector<Page> late, double seconds) {
    auto now = std::make_shared<const std::vector<Page>>(std::move(pages));
    auto then = std::make_shared<const std::vector<Page>>(std::move(late));
    const std::lock_guard lock(mutex_);
    now_ = std::move(now);
    late_ = std::move(then);
    lateAt_ = After(seconds);
  }
  Shown Take() const {
    const std::lock_guard lock(mutex_);
    return SteadyClock::now() < lateAt_ ? now_ : late_;
  }

 private:
  mutable std::mutex mutex_;
  Shown now_ = std::make_shared<const std::vector<Page>>();
  Shown late_ = now_;
  SteadyClock::time_point lateAt_;
};

/// One connection.
class Client {
 public:
  explicit Client(Descriptor socket) : socket_(std::move(socket)) {}

  int Number() const { return socket_.Number(); }
  short Wants() const { return out_.empty() ? POLLIN : POLLOUT; }
  SteadyClock::time_point Deadline() const { return deadline_; }

  /// Goes on after a poll. False when the connection is over.
  bool GoOn(const Shelf& shelf) {
    if (out_.empty() && !Receive()) return false;
    while (!out_.empty() || TakeRequest(shelf)) {
      if (!Send()) return false;
      if (!out_.empty()) return true;
    }
    return true;
  }

 private:
  bool Receive() {
    std::array<char, 4096> bytes{};
    const auto count = ::recv(Number(), bytes.data(), bytes.size(), 0);
    if (count < 0) return errno == EAGAIN || errno == EINTR;
    if (count == 0) return false;
    if (drains_) return true;
    if (in_.empty()) deadline_ = After(kRequestSeconds);
    in_.append(bytes.data(), static_cast<std::size_t>(count));
    return true;
  }

  /// Has the answer to the next request ready; false if there is none that is complete.
  bool TakeRequest(const Shelf& shelf) {
    if (drains_) return false;
    const HttpHead head = ReadHttpHead(in_);
    if (head.size == 0) return false;
    in_.erase(0, head.size);
    const bool isAllowed = head.request.method == "GET" || head.request.method == "HEAD";
    stays_ = head.fault == 0 && isAllowed && head.request.keepsAlive;
    out_ = head.fault != 0 ? HttpRefusal(head.fault) : HttpAnswer(head.request, *shelf.Take(), stays_);
    sent_ = 0;
    deadline_ = After(kAnswerSeconds);
    return true;
  }

  bool Send() {
    const auto count = ::send(Number(), out_.data() + sent_, out_.size() - sent_, MSG_NOSIGNAL);
    if (count < 0) return errno == EAGAIN || errno == EINTR;
    sent_ += static_cast<std::size_t>(count);
    if (sent_ < out_.size()) return true;
    out_.clear();
    if (stays_) {
      deadline_ = After(in_.empty() ? kIdleSeconds : kRequestSeconds);
      return true;
    }
    // Not closed at once: what the client is still sending would reset the connection, and with it the answer.
    ::shutdown(Number(), SHUT_WR);
    drains_ = true;
    deadline_ = After(kDrainSeconds);
    return true;
  }

  Descriptor socket_;
  std::string in_;
  std::string out_;
  std::size_t sent_ = 0;
  bool stays_ = true;
  bool drains_ = false;
  SteadyClock::time_point deadline_ = After(kRequestSeconds);
};

class HttpServer final : public PageServer {
 public:
  HttpServer(Descriptor listener, Descriptor wakes, Descriptor woken)
      : listener_(std::move(listener)), wakes_(std::move(wakes)), woken_(std::move(woken)) {
    // The signals that end the program are for its main thread.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { Run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
  }
  ~HttpServer() override {
    wakes_ = Descriptor(-1);  // the other end then reads its end
    thread_.join();
  }
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  void Show(std::vector<Page> pages, std::vector<Page> late, double seconds) override {
    shelf_.Put(std::move(pages), std::move(late), seconds);
  }

 private:
  void Run() {
    for (;;) {
      const bool accepts = SteadyClock::now() >= acceptsAt_;
      std::vector<pollfd> polled{{woken_.Number(), POLLIN, 0}};
      polled.push_back({accepts ? listener_.Number() : -1, POLLIN, 0});
      for (const Client& client : clients_) polled.push_back({client.Number(), client.Wants(), 0});
      if (::poll(polled.data(), polled.size(), Wait()) < 0) continue;
      if (polled[0].revents != 0) return;
      Serve(polled);
      // Last, so that `polled` keeps the order of the clients.
      if (polled[1].revents != 0) Accept();
    }
  }

  /// Milliseconds until the next deadline.
  int Wait() const {
    auto next = After(kIdleSeconds);
    for (const Client& client : clients_) next = std::min(next, client.Deadline());
    if (SteadyClock::now() < acceptsAt_) next = std::min(next, acceptsAt_);
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(next - SteadyClock::now());
    return std::max(0, static_cast<int>(wait.count()));
  }

  void Serve(const std::vector<pollfd>& polled) {
    std::size_t index = 2;
    const auto now = SteadyClock::now();
    for (auto client = clients_.begin(); client != clients_.end();) {
      const bool isReady = polled[index++].revents != 0;
      const bool stays = client->Deadline() > now && (!isReady || client->GoOn(shelf_));
      client = stays ? std::next(client) : clients_.erase(client);
    }
  }

  void Accept() {
    for (std::size_t i = 0; i < kMostClients; ++i) {
      Descriptor socket(::accept4(listener_.Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
      if (socket.Number() < 0) {
        if (errno != EAGAIN && errno != EINTR && errno != ECONNABORTED) acceptsAt_ = After(kAcceptAgainSeconds);
        return;
      }
      if (clients_.size() >= kMostClients) clients_.erase(std::ranges::min_element(clients_, {}, &Client::Deadline));
      clients_.emplace_back(std::move(socket));
    }
  }

  Descriptor listener_;
  Descriptor wakes_;
  Descriptor woken_;
  Shelf shelf_;
  std::list<Client> clients_;
  SteadyClock::time_point acceptsAt_;
  std::thread thread_;
};

/// A socket's address, of either family.
struct Address {
  sockaddr_storage storage{};
  socklen_t size = 0;

  sockaddr* Get() { return reinterpret_cast<sockaddr*>(&storage); }
};

bool Fill(Address& address, const std::string& text, std::uint16_t port) {
  auto* const four = reinterpret_cast<sockaddr_in*>(&address.storage);
  auto* const six = reinterpret_cast<sockaddr_in6*>(&address.storage);
  if (::inet_pton(AF_INET, text.c_str(), &four->sin_addr) == 1) {
    four->sin_family = AF_INET;
    four->sin_port = htons(port);
    address.size = sizeof(sockaddr_in);
    return true;
  }
  if (::inet_pton(AF_INET6, text.c_str(), &six->sin6_addr) != 1) return false;
  six->sin6_family = AF_INET6;
  six->sin6_port = htons(port);
  address.size = sizeof(sockaddr_in6);
  return true;
}

Listening Failed() {
  return {nullptr, std::strerror(errno), 0};
}

}  // namespace

Listening HttpHost::Listen(const std::string& address, std::uint16_t port) {
  Address wanted;
  if (!Fill(wanted, address, port)) return {nullptr, "No IP address", 0};
  Descriptor socket(::socket(wanted.storage.ss_family, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (socket.Number() < 0) return Failed();
  const int on = 1;
  // A port whose last connections are just ending is free.
  ::setsockopt(socket.Number(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  if (::bind(socket.Number(), wanted.Get(), wanted.size) != 0) return Failed();
  if (::listen(socket.Number(), SOMAXCONN) != 0) return Failed();
  Address taken;
  taken.size = sizeof taken.storage;
  if (::getsockname(socket.Number(), taken.Get(), &taken.size) != 0) return Failed();
  // The port has the same place in both families.
  const std::uint16_t inUse = ntohs(reinterpret_cast<sockaddr_in*>(&taken.storage)->sin_port);
  std::array<int, 2> pipe{};
  if (::pipe2(pipe.data(), O_CLOEXEC) != 0) return Failed();
  return {std::make_unique<HttpServer>(std::move(socket), Descriptor(pipe[1]), Descriptor(pipe[0])), "", inUse};
}

#endif

}  // namespace zth::platform
