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

/// The road to a server, as bad as a story wants it: a TCP proxy on this machine, with a thread of its own.
/// What it is told counts for the connections that stand and for those that come.
class TcpProxy {
 public:
  enum class Road {
    Open,
    Silent,      ///< nothing comes through in either direction; nobody is told, and what came is kept
    Swallowing,  ///< what is asked comes through, and the answers are lost
    Cut,         ///< connections end at once, new ones too
  };

  /// In front of the server of a connection text ("Data Source=host,port"), or of a host and a port.
  explicit TcpProxy(std::string_view connectionText);
  TcpProxy(const std::string& host, std::uint16_t port);
  TcpProxy(const TcpProxy&) = delete;
  TcpProxy& operator=(const TcpProxy&) = delete;
  ~TcpProxy();

  [[nodiscard]] std::uint16_t port() const { return port_; }
  /// The same connection text by this road.
  [[nodiscard]] static std::string through(const TcpProxy& proxy, std::string_view connectionText);

  void set(Road road) { road_ = road; }
  /// The road becomes `next` as soon as these bytes went to the server, which still gets them: "answer lost
  /// behind the write" is a statement and Swallowing, or Cut. Text goes as UTF-16 in what SQL Server reads.
  void setBehind(const std::u16string& words, Road next);
  /// How long an answer takes longer, on each way back: a round trip of that many milliseconds.
  void setDelay(std::chrono::milliseconds delay) { delay_ = delay; }
  /// The bytes that have gone to the server and come back, and the answers: how often the direction turned.
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
    std::string tail;  ///< of what went there, to find words that came in two pieces
  };
  struct Pair {
    Way there;
    Way back;
    bool asked = false;  ///< and not answered yet
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
