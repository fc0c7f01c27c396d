#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ui/desktop.h"

class QTimer;

namespace ledgertree::qt {

class FormWindow;
class WaitPanel;

/// The desktop on Qt 6 Widgets. Create it after the QApplication; everything but `whenIdle` belongs to the
/// application's thread. When either is destroyed, forms that are still shown are closed; a desktop without
/// an application draws nothing any more.
///
/// It changes nothing of the application itself (style, palette, direction), so that a host keeps its looks.
class QtDesktop : public QObject, public ui::Desktop {
 public:
  QtDesktop();
  ~QtDesktop() override;

  /// False for a host that accepts no modeless forms: `show` then throws DesktopError 406.
  void setModelessAllowed(bool allowed) { modelessAllowed_ = allowed; }
  /// Makes a form, by its name, fill this widget of the host instead of a window of its own when it is shown
  /// modelessly; null reverts that. Takes effect the next time the form is shown.
  void embed(const std::string& formName, QWidget* container);

  void show(ui::Form& form) override;
  void showModal(ui::Form& form) override;
  void close(ui::Form& form) override;
  void hide(ui::Form& form) override;
  void popUpMenu(ui::Form& form, ui::MenuEntry& menu, ui::Twips left, ui::Twips top) override;
  void openGuide(ui::Form& form) override;
  void copyText(std::string_view text) override;
  void setCursor(ui::CursorShape shape) override;
  void moveFocus(ui::Control& control) override;
  void repaint(ui::Form& form) override;
  [[nodiscard]] bool repaintAndHearEscape(ui::Form& form) override;
  void chooseKeyboardLayout(std::string_view layout) override;
  /// 5: the version whose layout is Persian. The screens use it for nothing else, and Persian is what this
  /// desktop can write on every platform.
  [[nodiscard]] int operatingSystemVersion() const override { return 5; }
  void whenIdle(std::function<void()> procedure) override;

  /// The window of a form; null if it has none.
  [[nodiscard]] FormWindow* windowOf(const ui::Form& form) const;
  /// Writes a picture of a form that is shown. If given, the window first gets `size`, in pixels. Throws
  /// std::runtime_error if the form isn't shown or the file can't be written.
  void renderToPng(ui::Form& form, const std::string& path, QSize size = {});

  // Called by the windows.
  /// Whether a repaint in the middle of long work is running, in which no window may be closed. The desktops
  /// of plug-ins count too.
  [[nodiscard]] bool repainting() const;
  void setKeyboardTarget(FormWindow* window);
  void forget(const FormWindow& window);
  /// Closes all windows at once: the application is ending.
  void endWindows();

 protected:
  bool showWait(std::string_view text, std::string_view wayOut) override;
  void hideWait() override;

 private:
  [[nodiscard]] FormWindow* frontWindow() const;
  FormWindow& windowFor(ui::Form& form);
  void endLater(FormWindow& window);
  void endWaiting();
  void runIdle();

  std::unordered_map<ui::Form*, QPointer<FormWindow>> windows_;
  std::unordered_map<std::string, QPointer<QWidget>> containers_;
  std::vector<QPointer<FormWindow>> ended_;
  QPointer<FormWindow> keyboardTarget_;
  QPointer<WaitPanel> waitPanel_;
  std::mutex idleMutex_;
  std::deque<std::function<void()>> idle_;
  QTimer* idleTimer_;
  int repainting_ = 0;
  bool modelessAllowed_ = true;
};

}  // namespace ledgertree::qt
