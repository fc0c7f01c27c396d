#include "engines/odbc/driver_text.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "data/connection.h"
#include "data/data_error.h"
#include "text/characters.h"

namespace ledgertree::engines::odbc {
namespace {

using Names = std::initializer_list<std::string_view>;

constexpr std::string_view kFreeTds = "FreeTDS";
constexpr std::string_view kMicrosoft = "ODBC Driver ";
constexpr int kDefaultPort = 1433;
constexpr int kLongestLogin = 600;

[[noreturn]] void refuse(const std::string& message) {
  throw data::DataError(data::DataError::Reason::Connection, 0, message);
}

[[noreturn]] void refuseValue(std::string_view key) {
  refuse("مقدار «" + std::string(key) + "» در متن اتصال پذيرفتني نيست. آن را اصلاح کنيد.");
}

/// The first value found under the spellings of a key; nothing if all are empty.
std::optional<std::string> find(const data::ConnectionText& text, Names keys) {
  for (const std::string_view key : keys) {
    auto value = text.find(key);
    if (!value || value->empty()) continue;
    const bool controls = std::any_of(value->begin(), value->end(), [](char letter) {
      return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
    });
    if (controls) refuseValue(key);
    return value;
  }
  return std::nullopt;
}

bool isOneOf(std::string_view value, Names names) {
  return std::any_of(names.begin(), names.end(),
                     [value](std::string_view name) { return text::equalsIgnoringCase(value, name); });
}

/// A switch as OLE DB and ODBC texts write it; nothing if it is absent.
std::optional<bool> findSwitch(const data::ConnectionText& text, Names keys) {
  const auto value = find(text, keys);
  if (!value) return std::nullopt;
  if (isOneOf(*value, {"true", "yes", "1", "-1", "sspi", "mandatory", "strict"})) return true;
  if (isOneOf(*value, {"false", "no", "0", "optional"})) return false;
  refuseValue(*keys.begin());
}

std::optional<int> number(std::string_view digits, int greatest) {
  int value = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (read.ec != std::errc{} || read.ptr != digits.data() + digits.size()) return std::nullopt;
  if (value < 0 || value > greatest) return std::nullopt;
  return value;
}

/// The parts of "tcp:server\instance,port".
struct Server {
  std::string host;
  std::string instance;
  int port = 0;  ///< 0: none given

  static Server parse(std::string_view text) {
    Server server;
    if (text.size() > 4 && text::equalsIgnoringCase(text.substr(0, 4), "tcp:")) text.remove_prefix(4);
    const std::size_t comma = text.find(',');
    if (comma != std::string_view::npos) {
      const auto port = number(text::trimmed(text.substr(comma + 1)), 65535);
      if (!port || *port == 0) refuseValue("Data Source");
      server.port = *port;
      text = text.substr(0, comma);
    }
    const std::size_t slash = text.find('\\');
    if (slash != std::string_view::npos) {
      server.instance = text::trimmed(text.substr(slash + 1));
      if (server.instance.empty()) refuseValue("Data Source");
      text = text.substr(0, slash);
    }
    server.host = text::trimmed(text);
    if (isOneOf(server.host, {".", "(local)"})) server.host = "localhost";
    // Pipes, shared memory and single-user databases aren't reached over a network.
    const bool protocol = isOneOf(text.substr(0, text.find(':')), {"np", "lpc", "admin"});
    if (server.host.empty() || protocol || server.host.front() == '(') refuseValue("Data Source");
    return server;
  }
};

/// The version of Microsoft's driver for SQL Server; nothing for any other driver.
std::optional<int> microsoftVersion(std::string_view driver) {
  if (!text::equalsIgnoringCase(driver.substr(0, kMicrosoft.size()), kMicrosoft)) return std::nullopt;
  driver.remove_prefix(kMicrosoft.size());
  const std::size_t blank = std::min(driver.find(' '), driver.size());
  if (!text::equalsIgnoringCase(driver.substr(blank), " for SQL Server")) return std::nullopt;
  return number(driver.substr(0, blank), 1000);
}

std::string chosenDriver(const data::ConnectionText& text, const std::vector<std::string>& installed) {
  if (auto named = find(text, {"ODBC Driver"})) return *std::move(named);
  std::string newest;
  int version = -1;
  bool freeTds = false;
  for (const std::string& driver : installed) {
    freeTds = freeTds || text::equalsIgnoringCase(driver, kFreeTds);
    const auto its = microsoftVersion(driver);
    if (!its || *its <= version) continue;
    version = *its;
    newest = driver;
  }
  if (!newest.empty()) return newest;
  if (freeTds) return std::string(kFreeTds);
  refuse(
      "راه انداز ODBC براي SQL Server نصب نيست. FreeTDS يا راه انداز مايکروسافت را نصب کنيد، يا نام راه "
      "انداز را با کليد «ODBC Driver» در متن اتصال بنويسيد.");
}

Dialect dialectOf(std::string_view driver) {
  if (text::equalsIgnoringCase(driver, kFreeTds)) return Dialect::FreeTds;
  const bool microsoft =
      microsoftVersion(driver) || isOneOf(driver, {"SQL Server", "SQL Server Native Client 11.0"});
  return microsoft ? Dialect::Microsoft : Dialect::Other;
}

/// Builds a driver's connection string. A value that could be taken for syntax is put in braces, and a brace
/// in it is doubled, except for FreeTDS, which takes everything up to "};" literally.
class Writer {
 public:
  Writer(Secret<char>& text, Dialect dialect) : text_(text), doubles_(dialect != Dialect::FreeTds) {}

  void add(std::string_view word, std::string_view value) {
    text_ += word;
    text_ += '=';
    const bool plain = value.find_first_of("[]{}(),;?*=!@ \"'\\") == std::string_view::npos;
    if (plain) {
      text_ += value;
    } else {
      if (!doubles_ && value.find("};") != std::string_view::npos) refuseValue(word);
      text_ += '{';
      for (const char letter : value) {
        text_ += letter;
        if (letter == '}' && doubles_) text_ += '}';
      }
      text_ += '}';
    }
    text_ += ';';
  }
  void addGiven(std::string_view word, const std::optional<std::string>& value) {
    if (value) add(word, *value);
  }

 private:
  Secret<char>& text_;
  bool doubles_;
};

struct Security {
  bool integrated = false;
  bool encrypt = false;
  std::optional<bool> trust;
};

Security securityOf(const data::ConnectionText& text) {
  return {findSwitch(text, {"Integrated Security", "Trusted_Connection"}).value_or(false),
          findSwitch(text, {"Use Encryption for Data", "Encrypt"}).value_or(false),
          findSwitch(text, {"Trust Server Certificate", "TrustServerCertificate"})};
}

std::optional<std::string> partnerOf(const data::ConnectionText& text) {
  return find(text, {"Failover Partner", "Failover_Partner", "FailoverPartner"});
}

/// "ReadOnly" or "ReadWrite"; nothing if the text has neither.
std::optional<std::string> intentOf(const data::ConnectionText& text, Names keys) {
  const auto given = find(text, keys);
  if (!given) return std::nullopt;
  for (const char* const intent : {"ReadOnly", "ReadWrite"})
    if (text::equalsIgnoringCase(*given, intent)) return intent;
  refuseValue(*(keys.end() - 1));
}

std::optional<std::string> serverOf(const data::ConnectionText& text) {
  return find(text, {"Data Source", "Server", "Address", "Addr", "Network Address"});
}

std::string requireServer(const data::ConnectionText& text) {
  auto server = serverOf(text);
  return server ? *std::move(server) : text.require("Data Source");
}

void writeMicrosoft(const data::ConnectionText& text, const Security& security, Writer& writer) {
  const Server server = Server::parse(requireServer(text));
  std::string place = "tcp:" + server.host;
  if (!server.instance.empty()) place += '\\' + server.instance;
  if (server.port != 0) place += ',' + std::to_string(server.port);
  writer.add("Server", place);
  // Its versions have different defaults.
  writer.add("Encrypt", security.encrypt ? "yes" : "no");
  writer.add("TrustServerCertificate", security.trust.value_or(false) ? "yes" : "no");
  if (security.integrated) writer.add("Trusted_Connection", "yes");
  writer.addGiven("Failover_Partner", partnerOf(text));
  if (const auto several = findSwitch(text, {"MultiSubnetFailover", "Multi Subnet Failover"}))
    writer.add("MultiSubnetFailover", *several ? "yes" : "no");
}

void writeFreeTds(const data::ConnectionText& text, const Security& security, bool partner, Writer& writer) {
  if (security.encrypt && !security.trust.value_or(false)) {
    refuse(
        "راه انداز FreeTDS گواهي سرور را بررسي نميکند. راه انداز مايکروسافت را نصب کنيد، يا در متن اتصال "
        "«Trust Server Certificate=True» بنويسيد.");
  }
  const Server server = Server::parse(partner ? partnerOf(text).value_or("") : requireServer(text));
  // With a port the instance is known; without one, the server's browser service is asked.
  if (server.instance.empty() || server.port != 0) {
    writer.add("Server", server.host);
    writer.add("Port", std::to_string(server.port == 0 ? kDefaultPort : server.port));
  } else {
    writer.add("Server", server.host + '\\' + server.instance);
  }
  writer.add("TDS_Version", "7.4");
  writer.add("ClientCharset", "UTF-8");
  // "request" still encrypts the log-in if the server can.
  writer.add("Encryption", security.encrypt ? "require" : "request");
  if (security.integrated) writer.add("Trusted_Connection", "yes");
}

}  // namespace

DriverText driverText(const data::ConnectionText& text, const std::vector<std::string>& installed,
                      bool partner) {
  DriverText result;
  result.driver = chosenDriver(text, installed);
  result.dialect = dialectOf(result.driver);
  Writer writer(result.text, result.dialect);
  writer.add("Driver", result.driver);
  const Security security = securityOf(text);
  result.encrypts = security.encrypt;
  switch (result.dialect) {
    case Dialect::Microsoft:
      writeMicrosoft(text, security, writer);
      break;
    case Dialect::FreeTds:
      result.hasPartner = partnerOf(text).has_value();
      writeFreeTds(text, security, partner, writer);
      break;
    case Dialect::Other:
      writer.addGiven("Server", serverOf(text));
      break;
  }
  writer.addGiven("Database", find(text, {"Initial Catalog", "Database"}));
  if (!security.integrated) {
    writer.addGiven("UID", find(text, {"User ID", "UID", "User"}));
    std::string password = find(text, {"Password", "PWD"}).value_or("");
    if (!password.empty()) writer.add("PWD", password);
    wipe(password);
  }
  if (result.dialect != Dialect::Other) {
    writer.add("APP", find(text, {"Application Name", "APP"}).value_or("LedgerTree"));
    writer.addGiven("WSID", find(text, {"Workstation ID", "WSID"}));
    writer.addGiven("ApplicationIntent", intentOf(text, {"ApplicationIntent", "Application Intent"}));
    // For a search, it has replaced Application Intent by now.
    static_cast<void>(intentOf(text, {"Search Intent"}));
  }
  result.loginSeconds = static_cast<int>(data::kConnectTimeOut.count());
  if (const auto seconds = find(text, {"Connect Timeout", "Connection Timeout", "Timeout"})) {
    const auto given = number(*seconds, kLongestLogin);
    if (!given) refuseValue("Connect Timeout");
    // 0 would wait forever.
    if (*given != 0) result.loginSeconds = *given;
  }
  return result;
}

}  // namespace ledgertree::engines::odbc
