#pragma once

#include <QFrame>
#include <string_view>

class QLabel;
class QPushButton;

namespace ledgertree::qt {

/// What lies over a window, or in the middle of the screen where there is none, while something is waited
/// for: a line of text and a way out. It takes no focus, so that what the person was at stays what it was.
class WaitPanel : public QFrame {
 public:
  /// Over `window`; null for one of its own.
  explicit WaitPanel(QWidget* window);

  /// An empty way out isn't offered.
  void tell(std::string_view text, std::string_view wayOut);
  /// Paints what changed and takes what came meanwhile: everything that a person does but for the way out is
  /// dropped, since it was meant for another moment. Gives whether the way out was taken, by Escape too.
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
