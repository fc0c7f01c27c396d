#include "db/scripts.h"

#include <algorithm>

#include "ledgertree_scripts.h"

namespace ledgertree::db {
namespace {

bool isBlank(char letter) { return letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n'; }

bool isSeparator(std::string_view line) {
  while (!line.empty() && isBlank(line.front())) line.remove_prefix(1);
  while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
  return line.size() == 2 && (line[0] == 'G' || line[0] == 'g') && (line[1] == 'O' || line[1] == 'o');
}

/// The lexical context of a position in a script, carried from line to line.
class Reader {
 public:
  /// Reads one line including its end. Comments nest; a doubled closing character stands for itself.
  void read(std::string_view line) {
    for (std::size_t place = 0; place < line.size(); ++place) {
      const std::string_view two = line.substr(place, 2);
      if (closing_ != '\0') {
        if (line[place] != closing_) continue;
        if (two.size() == 2 && two[1] == closing_) {
          ++place;
        } else {
          closing_ = '\0';
        }
      } else if (two == "/*") {
        ++comments_;
        ++place;
      } else if (comments_ > 0) {
        if (two != "*/") continue;
        --comments_;
        ++place;
      } else if (two == "--") {
        return;
      } else if (line[place] == '\'' || line[place] == '"') {
        closing_ = line[place];
      } else if (line[place] == '[') {
        closing_ = ']';
      }
    }
  }
  [[nodiscard]] bool betweenStatements() const { return closing_ == '\0' && comments_ == 0; }

 private:
  char closing_ = '\0';
  int comments_ = 0;
};

}  // namespace

std::vector<std::string_view> scriptsIn(std::string_view folder) {
  std::vector<std::string_view> paths;
  for (const std::string_view path : embeddedPaths()) {
    if (path.starts_with(folder) && path.find('/', folder.size()) == std::string_view::npos) {
      paths.push_back(path);
    }
  }
  return paths;
}

std::vector<std::string_view> scriptsWithOwn(const std::string& folder, std::string_view engine) {
  std::vector<std::string_view> paths = scriptsIn(folder);
  const std::vector<std::string_view> own = scriptsIn(folder + std::string(engine) + "/");
  paths.insert(paths.end(), own.begin(), own.end());
  const auto name = [](std::string_view path) { return path.substr(path.rfind('/') + 1); };
  std::sort(paths.begin(), paths.end(),
            [&name](std::string_view one, std::string_view other) { return name(one) < name(other); });
  return paths;
}

std::vector<Batch> batchesOf(std::string_view script) {
  std::vector<Batch> batches;
  Reader reader;
  std::size_t begin = 0;
  int firstLine = 1;
  int line = 0;
  const auto keep = [&](std::size_t end) {
    const std::string_view text = script.substr(begin, end - begin);
    if (!std::all_of(text.begin(), text.end(), isBlank)) batches.push_back({text, firstLine});
  };
  for (std::size_t place = 0; place < script.size();) {
    const std::size_t feed = script.find('\n', place);
    const std::size_t next = feed == std::string_view::npos ? script.size() : feed + 1;
    const std::string_view text = script.substr(place, next - place);
    ++line;
    if (reader.betweenStatements() && isSeparator(text)) {
      keep(place);
      begin = next;
      firstLine = line + 1;
    } else {
      reader.read(text);
    }
    place = next;
  }
  keep(script.size());
  return batches;
}

}  // namespace ledgertree::db
