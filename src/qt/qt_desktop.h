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

/// The desktop on Qt 6 Widgets. It is made after the QApplication, and all of it but `whenIdle` belongs to
/// the application's thread. When either of them ends, the forms that are still shown are taken off the
/// screen; a desktop that is left without an application draws nothing any more.
///
/// It sets nothing of the application itself (style, palette, direction), so that a host keeps its looks.
class QtDesktop : public QObject, public ui::Desktop {
 public:
  QtDesktop();
  ~QtDesktop() override;

  /// A host that takes no modeless forms says so here; `show` then throws DesktopError 406.
  void setModelessAllowed(bool allowed) { modelessAllowed_ = allowed; }
  /// Where the form of a name is shown modelessly it fills this widget of the host instead of a window of its
  /// own; null gives it its own window again. It counts from the next showing on.
  void embed(const std::string& formName, QWidget* container);

  void show(ui::Form& form) override;
  void showModal(ui::Form& form) override;
  void close(ui::Form& form) override;
  void hide(ui::Form& form) override;
  void popUpMenu(ui::Form& form, ui::MenuEntry& menu, ui::Twips left, ui::Twips top) override;
  void openGuide(ui::Form& form) override;
  void copyText(std::string_view text) override;
  void setCursor(ui::CursorShape pointer) override;
  void moveFocus(ui::Control& control) override;
  void repaint(ui::Form& form) override;
  [[nodiscard]] bool repaintAndHearEscape(ui::Form& form) override;
  void chooseKeyboardLayout(std::string_view layout) override;
  /// 5: the version whose layout is Persian. The screens ask it for nothing else, and Persian is what this
  /// desktop can write on every platform.
  [[nodiscard]] int operatingSystemVersion() const override { return 5; }
  void whenIdle(std::function<void()> procedure) override;

  /// The window of a form that is known; null otherwise. For tests, and for hosts that place it.
  [[nodiscard]] FormWindow* windowOf(const ui::Form& form) const;
  /// Writes a picture of a form that is shown. `size` in pixels is the window's first; empty leaves it.
  /// Throws std::runtime_error where the form isn't shown or the file can't be written.
  void renderToPng(ui::Form& form, const std::string& path, QSize size = {});

  // For the windows.
  /// Whether what runs is a repaint in the middle of long work, in which no window may be closed.
  /// The plug-ins' desktops count too.
  [[nodiscard]] bool repainting() const;
  void setKeyboardTarget(FormWindow* window);
  void forget(const FormWindow& window);
  /// Ends all windows at once: the application is ending.
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
