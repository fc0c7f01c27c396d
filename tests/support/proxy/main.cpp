// The tests' proxy for manual use: ledgertree_proxy HOST PORT prints the port to connect to, and reads
// commands for the connection: "delay 20" (milliseconds), "open", "silent", "swallowing", "cut", "count".
#include <iostream>
#include <map>

#include "support/tcp_proxy.h"

int main(int count, char** words) {
  using Road = ledgertree::testing::TcpProxy::Road;
  if (count != 3) {
    std::cerr << "ledgertree_proxy HOST PORT\n";
    return 2;
  }
  const std::map<std::string, Road> roads{
      {"open", Road::Open}, {"silent", Road::Silent}, {"swallowing", Road::Swallowing}, {"cut", Road::Cut}};
  ledgertree::testing::TcpProxy proxy(words[1], static_cast<std::uint16_t>(std::stoi(words[2])));
  std::cout << proxy.port() << std::endl;
  for (std::string word; std::cin >> word;) {
    if (const auto road = roads.find(word); road != roads.end()) proxy.set(road->second);
    int delay = 0;
    if (word == "delay" && std::cin >> delay) proxy.setDelay(std::chrono::milliseconds(delay));
    if (word == "count")
      std::cout << proxy.bytes() << " bytes, " << proxy.roundTrips() << " round trips" << std::endl;
  }
}
