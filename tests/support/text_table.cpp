#include "support/text_table.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace ledgertree::testing {

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

std::vector<std::string> linesOf(const std::string& file, const std::string& section) {
  std::ifstream stream(LEDGERTREE_TESTS "/" + file);
  std::vector<std::string> lines;
  bool inside = false;
  for (std::string line; std::getline(stream, line);) {
    if (line.starts_with("== ")) {
      inside = line == "== " + section;
    } else if (inside && line.starts_with(' ')) {
      lines.back() += " " + trimmed(line);
    } else if (inside && !line.empty() && !line.starts_with('#')) {
      lines.push_back(line);
    }
  }
  if (lines.empty()) throw std::runtime_error("tests/" + file + " tells nothing of " + section);
  return lines;
}

std::vector<std::vector<std::string>> tableOf(const std::string& file, const std::string& section) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& line : linesOf(file, section)) {
    auto& cells = rows.emplace_back();
    for (std::size_t begin = 0; begin <= line.size();) {
      const std::size_t end = std::min(line.find('|', begin), line.size());
      cells.push_back(trimmed(line.substr(begin, end - begin)));
      begin = end + 1;
    }
  }
  return rows;
}

}  // namespace ledgertree::testing
