#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <list>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace ledgertree::testing {

/// An unreliable connection to a server: a TCP proxy on this machine, with its own thread. Settings apply to
/// existing and new connections.
class TcpProxy {
 public:
  enum class Road {
    Open,
    Silent,      ///< nothing passes in either direction; no error is reported, and pending data is kept
    Swallowing,  ///< requests pass, answers are lost
    Cut,         ///< connections end at once, new ones too
  };

  /// A proxy for the server of a connection text ("Data Source=host,port"), or of a host and a port.
  explicit TcpProxy(std::string_view connectionText);
  TcpProxy(const std::string& host, std::uint16_t port);
  TcpProxy(const TcpProxy&) = delete;
  TcpProxy& operator=(const TcpProxy&) = delete;
  ~TcpProxy();

  [[nodiscard]] std::uint16_t port() const { return port_; }
  /// The same connection text, routed through the proxy.
  [[nodiscard]] static std::string through(const TcpProxy& proxy, std::string_view connectionText);

  void set(Road road) { road_ = road; }
  /// Switches to `next` as soon as these bytes have been passed to the server, which still gets them: "answer
  /// lost after the write" is a statement and Swallowing, or Cut. SQL Server reads text as UTF-16.
  void setBehind(const std::u16string& words, Road next);
  /// The added delay of each answer, in milliseconds per round trip.
  void setDelay(std::chrono::milliseconds delay) { delay_ = delay; }
  /// The bytes sent to the server and back, and the answers: the number of turns of direction.
  [[nodiscard]] std::uint64_t bytes() const { return bytes_; }
  [[nodiscard]] std::uint64_t roundTrips() const { return roundTrips_; }

 private:
  using Clock = std::chrono::steady_clock;
  struct Piece {
    Clock::time_point due;
    std::string bytes;
  };
  struct Way {
    int from = -1;
    int to = -1;
    bool back = false;  ///< from the server
    std::list<Piece> pieces;
    std::string tail;  ///< the end of what was sent, to find words split between two pieces
  };
  struct Pair {
    Way there;
    Way back;
    bool asked = false;  ///< and not yet answered
  };

  void work();
  void take();
  [[nodiscard]] bool pass(Pair& pair, Way& way, bool readable);
  void heard(Way& way, std::string_view bytes);
  static void end(const Pair& pair);

  std::string host_;
  std::uint16_t serverPort_;
  std::uint16_t port_ = 0;
  int listener_ = -1;
  std::atomic<Road> road_ = Road::Open;
  std::atomic<std::chrono::milliseconds> delay_{};
  std::atomic<std::uint64_t> bytes_ = 0;
  std::atomic<std::uint64_t> roundTrips_ = 0;
  std::mutex lock_;
  std::string words_;
  Road next_ = Road::Open;
  std::list<Pair> pairs_;
  std::atomic<bool> over_ = false;
  std::thread thread_;
};

}  // namespace ledgertree::testing
