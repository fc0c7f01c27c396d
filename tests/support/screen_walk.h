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

/// A user at the topmost screen, whatever it is. The user's actions are steps separated by ";
/// ".
///
/// A step names a key of the form ("Ctrl+S"), or a control or menu item and the action: nothing for a click,
/// a key, "focus"; the number of a list line; the text to paste; the text whose first hit is picked in a
/// look-up, the row's ID ("#5", "#-1" for none), or what is only typed ("type x"); "click", "tick", "expand",
/// "collapse" or "menu" and the key of a node. "at txtCode" goes to a text field; from then on "type x" or a
/// key returns the text, "^" at its caret, while "text x" and "caret 3" act as the program. "yes", "no" and
/// "neither" in front answer the next question. "frame" closes the form by its frame, "pass" lets time pass;
/// after "fail", statements containing the text fail until "heal", and after "deny" for a missing right.
/// Blanks at the ends of a text are written in apostrophes.
class ScreenWalk {
 public:
  /// The action of a story's step; its result is what is seen.
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

  /// Runs a section, as walk() does. "Seen" is what the steps return, and what the story looks at;
  /// "closed" for a form that is gone. "Told" are unused keys, the notices as "title<message>",
  /// the hourglasses shown, and what the story adds.
  void go(
      const std::string& file, const std::string& section, const Look& seen = [] { return std::string(); },
      const Look& told = [] { return std::string(); });

  /// Runs single steps; returns their results.
  std::string act(const std::string& steps);

  /// The story's own steps, by their first word.
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
