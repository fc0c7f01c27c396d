#pragma once

#include <QAbstractTableModel>
#include <QFrame>
#include <QLabel>
#include <QToolButton>
#include <QTreeView>
#include <functional>
#include <vector>

#include "qt/control_view.h"
#include "qt/text_view.h"
#include "ui/lookup_field.h"

namespace ledgertree::qt {

/// The rows that a look-up found; then "..." while it is still searching, or a line that says that there are
/// none.
class LookupModel : public QAbstractTableModel {
 public:
  enum Column { kText, kCode, kColumns };

  explicit LookupModel(const ui::LookupField& field) : field_(&field) {}
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : kColumns;
  }
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
  /// The rows of the field changed. Adding rows keeps the scroll position.
  void follow();
  void detach();

 private:
  [[nodiscard]] bool begins(const std::vector<ui::LookupRow>& rows) const;
  const ui::LookupField* field_;
  std::vector<std::int32_t> shown_;
  bool searching_ = false;
};

/// The list that opens under the field, in a window of its own that never takes the focus.
class LookupPopup : public QFrame {
 public:
  LookupPopup(QWidget& line, LookupModel& model);
  std::function<void(int)> onPick;
  std::function<void()> onEnd;

  /// The title is above the rows, the count below them; either may be empty.
  void open(const QString& title, const QString& count);
  void place();
  void highlight(int row);
  [[nodiscard]] QTreeView& list() { return *list_; }

 private:
  QWidget& line_;
  QLabel* title_;
  QTreeView* list_;
  QLabel* count_;
};

class LookupView : public ViewOf<ui::LookupField> {
 public:
  LookupView(ui::LookupField& control, QWidget& parent, std::function<KeyboardLayout()> layout);
  [[nodiscard]] QWidget& widget() override { return *box_; }
  [[nodiscard]] QWidget* focusWidget() override { return line_; }
  void name(const QString& spoken) override;
  void sync(ui::Change change) override;
  void showLanguage(std::optional<KeyboardLayout> layout) override;
  void moved() override;
  void detach() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool key(QKeyEvent& event);
  [[nodiscard]] bool opensList(const QMouseEvent& click);
  void focusCame();
  void focusLeft(Qt::FocusReason reason);
  void syncList();
  void toggleList();
  void addEntry(QMenu& menu);
  /// Marks a field with a text that isn't a choice, and one that takes no typing.
  void colour();

  std::function<KeyboardLayout()> layout_;
  QWidget* box_;
  LineEditor* line_;
  QToolButton* arrow_;
  LanguageTag* tag_;
  LookupModel model_;
  LookupPopup* popup_;
  int echo_ = 0;
};

}  // namespace ledgertree::qt
