#pragma once

#include <functional>
#include <map>
#include <string>

#include "support/faulty_connection.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"

namespace ledgertree::testing {

/// A person at the screen that lies on top, whatever it is. A step names a key of the form ("Ctrl+S"), or a
/// control or an entry of a menu and what is done to it: nothing more for a click, a key, "focus"; the number
/// of a line of a list; the text to paste; the text whose first hit is picked in a look-up, or that is only
/// typed ("type x"); "click", "tick", "expand" or "collapse" and the key of a node. "yes", "no" and "neither"
/// in front answer the question that comes up. "frame" closes the form by its frame, "pass" lets time pass,
/// and statements with the text behind "fail" fail until "heal".
class ScreenWalk {
 public:
  using Act = std::function<void(const std::string& about)>;

  ScreenWalk(ScriptedDesktop& desktop, ScriptedNotices& notices, Faults& faults);

  /// Goes through a section, as walk() does; what is seen of a form that is gone is "closed". Told are keys
  /// without a use, the notices as "title<message>", the hourglasses that came up, and what the story adds.
  void go(
      const std::string& file, const std::string& section, const std::function<std::string()>& seen,
      const std::function<std::string()>& told = [] { return std::string(); });

  /// One step alone.
  void act(const std::string& step);

  /// What a step begins with, where the story adds something.
  std::map<std::string, Act> acts;

 private:
  [[nodiscard]] std::string told(const std::string& ofStory);

  ScriptedDesktop& desktop_;
  ScriptedNotices& notices_;
  int hourglasses_ = 0;
  std::string unused_;
};

}  // namespace ledgertree::testing
