#include "support/scripted_notices.h"

#include <utility>

namespace ledgertree::testing {

class ScriptedNotice : public shell::OutsideComponent {
 public:
  explicit ScriptedNotice(ScriptedNotices& book) : book_(book) {}

  void set(std::string_view member, const data::Value& value) override {
    book_.members.push_back("set " + std::string(member));
    if (member == "FormTitle") notice_.title = value.toText();
    if (member == "FormMessage") notice_.message = value.toText();
    if (member == "FormType") notice_.question = value.toInt32() == 1;
  }

  data::Value get(std::string_view member) override {
    book_.members.push_back("get " + std::string(member));
    if (book_.answers_.empty()) return 0;
    const int answer = book_.answers_.front();
    book_.answers_.pop_front();
    return answer;
  }

  void call(std::string_view member, const std::vector<data::Value>&) override {
    book_.members.push_back("call " + std::string(member));
    book_.notices_.push_back(notice_);
    if (book_.onShow) book_.onShow(notice_);
  }

 private:
  ScriptedNotices& book_;
  Notice notice_;
};

ScriptedNotices::ScriptedNotices(shell::OutsideComponents& components) {
  components.add("NoticeKit.NoticeDialog", [this] { return std::make_unique<ScriptedNotice>(*this); });
}

std::vector<Notice> ScriptedNotices::take() { return std::exchange(notices_, {}); }

void ScriptedNotices::forget() {
  answers_.clear();
  notices_.clear();
}

std::string ScriptedNotices::taken() {
  std::string text;
  for (const Notice& notice : take()) {
    if (!text.empty()) text += "\n";
    text += notice.title + "|" + notice.message;
  }
  return text;
}

}  // namespace ledgertree::testing
