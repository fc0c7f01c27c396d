#include "shell/components/component_plugins.h"

#include <algorithm>
#include <system_error>

#include "text/characters.h"

namespace ledgertree::shell {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kProgram = "Regsvr32";
constexpr std::string_view kSilently = "/s";
constexpr std::string_view kFolder = "System";
constexpr std::string_view kFileEnd = ".ocx";
constexpr std::size_t kLongestName = 64;

std::string_view withoutBlanksAhead(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

bool isPlainName(std::string_view name) {
  const auto isPlain = [](char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_';
  };
  return !name.empty() && name.size() <= kLongestName && std::all_of(name.begin(), name.end(), isPlain);
}

/// The file between the quotation marks; nothing if the command isn't the expected one.
std::optional<std::string> fileOf(std::string_view commandLine) {
  if (!text::equalsIgnoringCase(commandLine.substr(0, kProgram.size()), kProgram)) return std::nullopt;
  commandLine.remove_prefix(kProgram.size());
  std::string_view rest = withoutBlanksAhead(commandLine);
  if (rest.size() == commandLine.size() || !rest.starts_with('"')) return std::nullopt;
  rest.remove_prefix(1);
  const std::size_t end = rest.find('"');
  if (end == std::string_view::npos) return std::nullopt;
  const std::string_view behind = rest.substr(end + 1);
  if (!behind.starts_with(' ') || !text::equalsIgnoringCase(text::trimmed(behind), kSilently))
    return std::nullopt;
  return std::string(rest.substr(0, end));
}

/// Whether the path leads elsewhere by "." or "..".
bool strays(std::string_view path) {
  while (!path.empty()) {
    const std::size_t end = std::min(path.find('/'), path.size());
    const std::string_view folder = path.substr(0, end);
    if (folder == "." || folder == "..") return true;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return false;
}

/// Whether a path without links is below a folder.
bool isBelow(const fs::path& file, const fs::path& folder) {
  std::error_code failure;
  const fs::path real = fs::canonical(folder, failure);
  return !failure && std::mismatch(real.begin(), real.end(), file.begin(), file.end()).first == real.end();
}

}  // namespace

std::optional<Registration> readRegistration(std::string_view commandLine) {
  const auto isControl = [](char letter) { return static_cast<unsigned char>(letter) < 0x20; };
  if (!text::isCleanText(commandLine) || std::any_of(commandLine.begin(), commandLine.end(), isControl))
    return std::nullopt;
  auto file = fileOf(commandLine);
  if (!file) return std::nullopt;
  std::replace(file->begin(), file->end(), '\\', '/');
  const std::size_t separator = file->rfind('/');
  if (separator == std::string::npos || strays(*file)) return std::nullopt;
  const std::string_view folder = std::string_view(*file).substr(0, separator);
  const std::string_view name = std::string_view(*file).substr(separator + 1);
  if (folder != kFolder && !folder.ends_with("/" + std::string(kFolder))) return std::nullopt;
  if (name.size() <= kFileEnd.size() ||
      !text::equalsIgnoringCase(name.substr(name.size() - kFileEnd.size()), kFileEnd))
    return std::nullopt;
  const std::string_view plugin = name.substr(0, name.size() - kFileEnd.size());
  if (!isPlainName(plugin)) return std::nullopt;
  // UTF-8 regardless of the platform's own path encoding.
  return Registration{.system = fs::path(std::u8string(folder.begin(), folder.end())),
                      .plugin = std::string(plugin)};
}

void ComponentPlugins::carryOut(std::string_view commandLine) const {
  const auto registration = readRegistration(commandLine);
  if (!registration) return;
  Refusals refused;
  if (!loadFrom(registration->system, registration->plugin, refused) && !installed_.empty())
    static_cast<void>(loadFrom(installed_, registration->plugin, refused));
  if (!refused_) return;
  for (const RefusedPlugin& one : refused) refused_(one);
}

bool ComponentPlugins::loadFrom(const fs::path& folder, const std::string& plugin, Refusals& refused) const {
  for (const std::string& name : platform_.fileNames(plugin)) {
    std::error_code failure;
    const fs::path file = fs::canonical(folder / name, failure);
    if (failure || !fs::is_regular_file(file, failure)) continue;
    if (std::string reason = distrust(folder, file); !reason.empty()) {
      refused.push_back({folder / name, std::move(reason)});
      continue;
    }
    const RegisterComponents entry = platform_.load(file);
    if (entry != nullptr && registerPlugin(components_, entry)) return true;
  }
  return false;
}

std::string ComponentPlugins::distrust(const fs::path& folder, const fs::path& file) const {
  if (!folder.is_absolute()) return "نشاني آن کامل نيست و از پوشه جاري چيزي بارگذاري نميشود";
  std::error_code failure;
  if (file.parent_path() != fs::canonical(folder, failure)) return "پيوندي به بيرون از پوشه خود است";
  const auto holds = [&file](const fs::path& trusted) { return isBelow(file, trusted); };
  if (holds(installed_) || std::any_of(trusted_.begin(), trusted_.end(), holds)) return {};
  return platform_.distrust(file);
}

}  // namespace ledgertree::shell
