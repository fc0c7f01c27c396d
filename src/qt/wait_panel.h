#pragma once

#include <QFrame>
#include <string_view>

class QLabel;
class QPushButton;

namespace ledgertree::qt {

/// Covers a window, or the middle of the screen if there is none, while something is being waited for: a line
/// of text and a way to cancel. It takes no focus, so that the user's place isn't lost.
class WaitPanel : public QFrame {
 public:
  /// Covers `window`; null for one of its own.
  explicit WaitPanel(QWidget* window);

  /// If `wayOut` is empty, the wait can't be cancelled.
  void tell(std::string_view text, std::string_view wayOut);
  /// Paints changes and handles pending events: user actions other than cancelling are dropped, since they
  /// were meant for a different moment. Returns whether the user cancelled, with Escape too.
  [[nodiscard]] bool takeEvents();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool isOurs(const QObject* watched) const;

  QLabel* label_;
  QPushButton* button_;
  bool left_ = false;
};

}  // namespace ledgertree::qt
