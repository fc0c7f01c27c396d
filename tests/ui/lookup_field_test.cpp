#include "ui/lookup_field.h"

#include <functional>

#include "small_form.h"

namespace ledgertree::testing {
namespace {

using ui::Key;

class LookupFieldStory : public FormStory {
 protected:
  /// What the person sees: "held: line", behind it the open list with the row that Enter picks in brackets.
  [[nodiscard]] std::string seen() const {
    const WishingField& field = form->field;
    std::string text = std::to_string(field.id()) + ": " + field.text() + (field.typing() ? "_" : "");
    if (!field.listOpen()) return text;
    text += field.text().empty() && !field.typing() ? "/" : " /";
    for (int row = 0; row < static_cast<int>(field.rows().size()); ++row) {
      const std::string name = field.rows()[static_cast<std::size_t>(row)].text;
      text += row == field.highlighted() ? " [" + name + "]" : " " + name;
    }
    return text + (field.searching() ? " ..." : "") + (field.hasMore() ? " more" : "");
  }
  struct Step {
    std::function<void()> act;
    const char* wishes;
    const char* seen;
  };
  void go(const std::vector<Step>& steps) {
    for (const Step& step : steps) {
      form->field.wishes.clear();
      step.act();
      EXPECT_EQ(form->field.wishes, step.wishes) << "step " << &step - steps.data();
      EXPECT_EQ(seen(), step.seen) << "step " << &step - steps.data();
    }
  }
  /// A key, and whether the field has a use for it.
  std::function<void()> key(Key key, bool used = true) {
    return [=, this] { EXPECT_EQ(form->field.press(key), used); };
  }
  std::function<void()> rows(std::vector<ui::LookupRow> rows, bool more = false, bool searching = false,
                             bool append = false) {
    return [=, this] { form->field.showRows(rows, append, more, searching); };
  }
  std::function<void()> type(const char* text) {
    return [=, this] { form->field.type(text); };
  }

  const std::vector<ui::LookupRow> three{{7, "a", "1"}, {8, "b", "2"}, {9, "c", "3"}};
};

TEST_F(LookupFieldStory, KeysLeadThroughTheList) {
  WishingField& field = form->field;
  const std::vector<ui::LookupRow> many(20, ui::LookupRow{5, "x", ""});
  go({{key(Key::Up, false), "", "-1: "},
      {key(Key::PageDown, false), "", "-1: "},
      {key(Key::PageUp, false), "", "-1: "},
      {key(Key::Enter, false), "", "-1: "},
      {key(Key::Escape, false), "", "-1: "},
      {key(Key::Tab, false), "", "-1: "},
      {key(Key::Backspace, false), "", "-1: "},
      {key(Key::Down), "search<> ", "-1: / ..."},
      {rows(three), "", "-1: / a b c"},
      {key(Key::Down), "", "-1: / [a] b c"},
      {key(Key::Down), "", "-1: / a [b] c"},
      {key(Key::PageDown), "", "-1: / a b [c]"},
      {key(Key::Down), "", "-1: / a b [c]"},
      {key(Key::Up), "", "-1: / a [b] c"},
      {key(Key::PageUp), "", "-1: / [a] b c"},
      {key(Key::Up), "", "-1: / [a] b c"},
      {key(Key::F4), "stop ", "-1: "},
      {key(Key::F4), "search<> ", "-1: / ..."},
      {[&] { field.openList(); }, "", "-1: / ..."},
      {rows(three), "", "-1: / a b c"},
      {[&] { field.pick(3); }, "", "-1: / a b c"},
      {[&] { field.pick(-1); }, "", "-1: / a b c"},
      {[&] { field.pick(2); }, "stop chosen<9> ", "9: c"},
      {[&] { field.pick(0); }, "", "9: c"},
      // The list opens on the row held, Enter takes it again, and Enter on nothing closes the list.
      {key(Key::Down), "search<> ", "9: c / ..."},
      {rows(three), "", "9: c / a b [c]"},
      {key(Key::Enter), "stop chosen<9> ", "9: c"},
      {key(Key::F4), "search<> ", "9: c / ..."},
      {rows({{7, "a", ""}}), "", "9: c / a"},
      {key(Key::Enter), "stop ", "9: c"},
      // Eight rows ahead of the end the next ones come, once.
      {key(Key::F4), "search<> ", "9: c / ..."},
      {rows({}, true), "", "9: c / more"},
      {rows(many, true), "", "9: c / x x x x x x x x x x x x x x x x x x x x more"},
      {key(Key::PageDown), "", "9: c / x x x x x x x [x] x x x x x x x x x x x x more"},
      {[&] {
         for (int down = 0; down < 4; ++down) field.press(Key::Down);
       },
       "", "9: c / x x x x x x x x x x x [x] x x x x x x x x more"},
      {key(Key::Down), "more ", "9: c / x x x x x x x x x x x x [x] x x x x x x x ... more"},
      {key(Key::Down), "", "9: c / x x x x x x x x x x x x x [x] x x x x x x ... more"},
      {rows({{9, "c", ""}}, false, false, true), "", "9: c / x x x x x x x x x x x x x [x] x x x x x x c"},
      {[&] { field.reachedEnd(); }, "", "9: c / x x x x x x x x x x x x x [x] x x x x x x c"},
      {key(Key::Escape), "stop ", "9: c"}});
}

TEST_F(LookupFieldStory, WhatIsTypedIsASearchUntilARowIsPicked) {
  WishingField& field = form->field;
  field.hold({9, "c", "3"});
  go({{type("aب"), "search<a> search<aب> ", "9: aب_ / ..."},
      {[&] { field.edited("aب"); }, "", "9: aب_ / ..."},
      {key(Key::Enter), "", "9: aب_ / ..."},
      {rows({}, true, true), "", "9: aب_ / ... more"},
      {rows(three, false, true), "stop chosen<7> ", "7: a"},
      // Enter ahead of the hits waits for them, unless there are none.
      {type("z"), "search<z> ", "7: z_ / ..."},
      {key(Key::Enter), "", "7: z_ / ..."},
      {rows({}), "", "7: z_ /"},
      {rows(three), "", "7: z_ / [a] b c"},
      {key(Key::Backspace), "search<> ", "7: _ / [a] b c ..."},
      {rows(three), "", "7: _ / a b c"},
      {key(Key::Delete, false), "", "7: _ / a b c"},
      {key(Key::Escape), "stop ", "7: a"},
      {[&] { field.edited("  "); }, "search<  > ", "7:   _ / ..."},
      {key(Key::Enter), "stop chosen<-1> ", "-1: "},
      {[&] { field.edited(" "); }, "search< > ", "-1:  _ / ..."},
      {key(Key::Enter), "stop ", "-1: "},
      // A row held goes as a whole, and comes back with Escape or when the field is left.
      {[&] {
         field.hold({8, "bb", ""});
       },
       "", "8: bb"},
      {key(Key::Backspace), "search<> ", "8: _ / ..."},
      {key(Key::Escape), "stop ", "8: bb"},
      {type("q"), "search<q> ", "8: q_ / ..."},
      {[&] { field.leave(); }, "stop ", "8: bb"},
      {key(Key::Backspace), "search<> ", "8: _ / ..."},
      {[&] { field.leave(); }, "stop chosen<-1> ", "-1: "},
      {key(Key::Delete), "", "-1: "},
      {[&] {
         field.hold({8, "bb", ""});
       },
       "", "8: bb"},
      {key(Key::Delete), "chosen<-1> ", "-1: "},
      // Rows that come for a closed list are nobody's.
      {rows(three), "", "-1: "}});
}

TEST_F(LookupFieldStory, OutOfReachItTakesNothingAndLookingCloserNeedsARowInSight) {
  WishingField& field = form->field;
  field.hold({8, "b", ""});
  std::vector<int> keys;
  field.onKeyDown = [&](int code) { keys.push_back(code); };
  const auto tryAll = [&] {
    field.type("q");
    field.edited("q");
    field.openList();
    field.reachedEnd();
    for (const Key one : {Key::Down, Key::F4, Key::Delete, Key::Backspace, Key::Enter}) field.press(one);
  };
  go({{[&] { field.setActive(false); }, "", "8: b"},
      {tryAll, "", "8: b"},
      {[&] { field.setActive(true); }, "", "8: b"},
      {[&] { form->frame.setEnabled(false); }, "", "8: b"},
      {tryAll, "", "8: b"},
      {[&] { field.lookCloser(); }, "detail ", "8: b"},
      {[&] { form->frame.setEnabled(true); }, "", "8: b"},
      {type("q"), "search<q> ", "8: q_ / ..."},
      {[&] { field.setActive(false); }, "stop ", "8: b"},
      {[&] { field.setActive(true); }, "", "8: b"},
      {type("q"), "search<q> ", "8: q_ / ..."},
      {[&] { form->frame.setEnabled(false); }, "", "8: q_ / ..."},
      {rows(three), "stop ", "8: b"},
      {[&] { form->frame.setVisible(false), field.lookCloser(); }, "", "8: b"},
      {[&] { form->frame.setVisible(true), field.setDetail("x"), field.lookCloser(); }, "", "8: b"},
      {[&] { field.hold({}), field.lookCloser(); }, "", "-1: "}});
  EXPECT_EQ(field.detail(), "") << "another row, another detail";
  EXPECT_TRUE(keys.empty());
  form->frame.setEnabled(true);
  for (const Key one : {Key::Down, Key::Enter, Key::Escape, Key::Delete, Key::Backspace}) field.press(one);
  EXPECT_EQ(keys, (std::vector<int>{13, 46}));
}

}  // namespace
}  // namespace ledgertree::testing
