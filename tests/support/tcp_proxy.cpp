#include "support/tcp_proxy.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <utility>
#include <vector>

#include "data/connection_text.h"

namespace ledgertree::testing {
namespace {

std::pair<std::string, std::uint16_t> serverOf(std::string_view text) {
  const std::string source = data::ConnectionText(text).require("Data Source");
  const std::size_t comma = source.find(',');
  const int port = comma == std::string::npos ? 1433 : std::stoi(source.substr(comma + 1));
  return {source.substr(0, comma), static_cast<std::uint16_t>(port)};
}

int connected(const std::string& host, std::uint16_t port) {
  addrinfo* found = nullptr;
  if (getaddrinfo(host.c_str(), std::to_string(port).c_str(), nullptr, &found) != 0) return -1;
  const int made = socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int result = connect(made, found->ai_addr, found->ai_addrlen);
  freeaddrinfo(found);
  if (result == 0) return made;
  close(made);
  return -1;
}

}  // namespace

TcpProxy::TcpProxy(std::string_view text) : TcpProxy(serverOf(text).first, serverOf(text).second) {}

TcpProxy::TcpProxy(const std::string& host, std::uint16_t port) : host_(host), serverPort_(port) {
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* const place = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener_, place, size) != 0 || listen(listener_, 64) != 0)
    throw std::runtime_error("no port for a proxy");
  getsockname(listener_, place, &size);
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { work(); });
}

TcpProxy::~TcpProxy() {
  over_ = true;
  thread_.join();
  for (const Pair& pair : pairs_) end(pair);
  close(listener_);
}

std::string TcpProxy::through(const TcpProxy& proxy, std::string_view text) {
  return std::string(text) + ";Data Source=127.0.0.1," + std::to_string(proxy.port());
}

void TcpProxy::setBehind(const std::u16string& words, Road next) {
  const std::lock_guard guard(lock_);
  words_.assign(reinterpret_cast<const char*>(words.data()), words.size() * sizeof(char16_t));
  next_ = next;
}

void TcpProxy::work() {
  while (!over_) {
    const bool silent = road_ == Road::Silent;
    // New clients meanwhile wait in the port's queue, which the system manages.
    std::vector<pollfd> watched{{silent ? -1 : listener_, POLLIN, 0}};
    for (const Pair& pair : pairs_)
      for (const Way* way : {&pair.there, &pair.back})
        watched.push_back({silent ? -1 : way->from, POLLIN, 0});
    poll(watched.data(), watched.size(), 1);
    auto seen = watched.begin() + 1;
    for (auto pair = pairs_.begin(); pair != pairs_.end();) {
      const bool asks = (seen++)->revents != 0;
      const bool answers = (seen++)->revents != 0;
      const bool goesOn = road_ != Road::Cut && pass(*pair, pair->there, asks) && road_ != Road::Cut &&
                          pass(*pair, pair->back, answers);
      if (!goesOn) end(*pair);
      pair = goesOn ? std::next(pair) : pairs_.erase(pair);
    }
    if (watched[0].revents != 0) take();
  }
}

void TcpProxy::take() {
  const int asking = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
  const int server = road_ == Road::Cut ? -1 : connected(host_, serverPort_);
  if (server < 0) {
    close(asking);
    return;
  }
  const int atOnce = 1;
  for (const int side : {asking, server}) setsockopt(side, IPPROTO_TCP, TCP_NODELAY, &atOnce, sizeof atOnce);
  pairs_.push_back({.there = {.from = asking, .to = server, .back = false, .pieces = {}, .tail = {}},
                    .back = {.from = server, .to = asking, .back = true, .pieces = {}, .tail = {}}});
}

bool TcpProxy::pass(Pair& pair, Way& way, bool readable) {
  if (road_ == Road::Silent) return true;
  std::array<char, 65536> room{};
  if (readable) {
    const ssize_t count = recv(way.from, room.data(), room.size(), MSG_DONTWAIT);
    if (count <= 0) return false;
    const std::string_view bytes(room.data(), static_cast<std::size_t>(count));
    bytes_ += bytes.size();
    if (std::exchange(pair.asked, !way.back) && way.back) ++roundTrips_;
    if (!way.back || road_ != Road::Swallowing) {
      const auto due = Clock::now() + (way.back ? delay_.load() : std::chrono::milliseconds(0));
      way.pieces.push_back({due, std::string(bytes)});
    }
  }
  while (!way.pieces.empty() && way.pieces.front().due <= Clock::now()) {
    const std::string bytes = std::move(way.pieces.front().bytes);
    way.pieces.pop_front();
    if (send(way.to, bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) return false;
    if (!way.back) heard(way, bytes);
  }
  return true;
}

void TcpProxy::heard(Way& way, std::string_view bytes) {
  const std::lock_guard guard(lock_);
  if (words_.empty()) return;
  way.tail += bytes;
  if (way.tail.find(words_) != std::string::npos) {
    // The server should receive everything before the connection ends.
    if (next_ == Road::Cut) std::this_thread::sleep_for(std::chrono::milliseconds(300));
    road_ = next_;
    words_.clear();
    way.tail.clear();
  }
  if (way.tail.size() > words_.size()) way.tail.erase(0, way.tail.size() - words_.size());
}

void TcpProxy::end(const Pair& pair) {
  close(pair.there.from);
  close(pair.back.from);
}

}  // namespace ledgertree::testing
