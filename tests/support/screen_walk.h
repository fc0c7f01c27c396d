#pragma once

#include <functional>
#include <map>
#include <string>
#include <type_traits>
#include <utility>

#include "support/faulty_connection.h"
#include "support/scripted_desktop.h"
#include "support/scripted_notices.h"
#include "ui/text_field.h"

namespace ledgertree::testing {

/// A person at the screen that lies on top, whatever it is. What the person does is some steps with "; "
/// between them.
///
/// A step names a key of the form ("Ctrl+S"), or a control or an entry of a menu and what is done to it:
/// nothing more for a click, a key, "focus"; the number of a line of a list; the text to paste; the text
/// whose first hit is picked in a look-up, the row's ID ("#5", "#-1" for none), or what is only typed ("type
/// x"); "click", "tick", "expand", "collapse" or "menu" and the key of a node. "at txtCode" goes to a field
/// of text; from then on "type x" or a key answers with the text, "^" at its caret, while "text x" and "caret
/// 3" are the program's. "yes", "no" and "neither" in front answer the question that comes up. "frame" closes
/// the form by its frame, "pass" lets time pass, and statements with the text behind "fail" fail until
/// "heal", and behind "deny" for a missing right. Blanks at the ends of a text stand between apostrophes.
class ScreenWalk {
 public:
  /// What a step of a story does; what it answers is seen.
  class Act {
   public:
    Act() = default;
    template <typename Does>
    requires std::is_invocable_v<Does, const std::string&> Act(Does does)
        : does_([does = std::move(does)](const std::string& about) -> std::string {
            if constexpr (std::is_void_v<std::invoke_result_t<Does, const std::string&>>)
              return does(about), "";
            else
              return does(about);
          }) {}
    std::string operator()(const std::string& about) const { return does_(about); }

   private:
    std::function<std::string(const std::string&)> does_;
  };
  using Look = std::function<std::string()>;

  ScreenWalk(ScriptedDesktop& desktop, ScriptedNotices& notices, Faults& faults);

  /// Goes through a section, as walk() does. Seen is what the steps answer, and what the story looks at; of a
  /// form that is gone it is "closed". Told are keys without a use, the notices as "title<message>", the
  /// hourglasses that came up, and what the story adds.
  void go(
      const std::string& file, const std::string& section, const Look& seen = [] { return std::string(); },
      const Look& told = [] { return std::string(); });

  /// Some steps alone; gives what they answer.
  std::string act(const std::string& steps);

  /// What a step begins with, where the story adds something.
  std::map<std::string, Act> acts;

 private:
  [[nodiscard]] std::string actOne(const std::string& step);
  [[nodiscard]] ui::MenuEntry* poppedUp(const std::string& name) const;
  [[nodiscard]] std::string shown() const;
  [[nodiscard]] std::string told(const std::string& ofStory);

  ScriptedDesktop& desktop_;
  ScriptedNotices& notices_;
  ui::TextField* field_ = nullptr;
  int hourglasses_ = 0;
  std::string unused_;
};

}  // namespace ledgertree::testing
