#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "shell/outside_components.h"

namespace ledgertree::testing {

/// A notice as shown to the user.
struct Notice {
  std::string title;
  std::string message;
  bool question = false;
  bool operator==(const Notice&) const = default;
};

/// Replaces the notice component: records every notice, and answers questions as scripted.
class ScriptedNotices {
 public:
  explicit ScriptedNotices(shell::OutsideComponents& components);

  /// The answers to the next questions: 1 yes, 0 no, anything else none. Without one, no.
  void answer(int answer) { answers_.push_back(answer); }
  /// Drops unused answers, and the notices.
  void forget();
  /// The notices since the last call.
  std::vector<Notice> take();
  /// The notices since the last call as "title|message", a line each.
  std::string taken();

  /// Every member used, in order: "set FormTitle", "call ClearShow", "get Resualt".
  std::vector<std::string> members;
  /// Called while a notice is shown.
  std::function<void(const Notice&)> onShow;

 private:
  friend class ScriptedNotice;
  std::vector<Notice> notices_;
  std::deque<int> answers_;
};

}  // namespace ledgertree::testing
