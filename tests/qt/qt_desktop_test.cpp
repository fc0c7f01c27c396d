#include "qt/qt_desktop.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <QClipboard>
#include <QContextMenuEvent>
#include <QCursor>
#include <QFile>
#include <QImage>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QVBoxLayout>
#include <thread>

#include "qt/appearance.h"
#include "qt/notice_dialog.h"
#include "screen.h"
#include "shell/outside_components.h"

namespace ledgertree::test {
namespace {

using namespace std::chrono_literals;

/// A dialog with two buttons.
class Dialog : public ui::Form {
 public:
  explicit Dialog(ui::Surroundings surroundings)
      : Form(std::move(surroundings), "dialog", "پرسش", {4000, 1500}) {
    setFirstFocus(cmdOk);
  }
  ui::PushButton cmdOk{*this, "cmdOk", {2100, 900, 1500, 420}, "تاييد"};
  ui::PushButton cmdNo{*this, "cmdNo", {300, 900, 1500, 420}, "انصراف"};
};

/// Runs a procedure inside the next event loop.
void soon(std::function<void()> procedure) { QTimer::singleShot(0, qApp, std::move(procedure)); }

TEST(QtDesktop, AModalFormHoldsItsCallerUntilItHides) {
  Screen screen;
  screen.show();
  screen.form->txtTitle.focus();
  Dialog dialog(screen.surroundings());
  std::vector<std::string> said;
  dialog.cmdOk.onClick = [&] {
    said.emplace_back("ok");
    dialog.hide();
    said.emplace_back("still here");
  };
  dialog.cmdOk.onGotFocus = [&] { said.emplace_back("focus"); };
  soon([&] {
    const QWidget& window = *screen.desktop.windowOf(dialog);
    EXPECT_TRUE(window.isModal() && !window.windowFlags().testFlag(Qt::WindowMaximizeButtonHint));
    EXPECT_LT((window.geometry().center() - screen.window().geometry().center()).manhattanLength(), 9);
    // A program that moves the focus meanwhile doesn't move the user.
    screen.form->txtTitle.setEnabled(false);
    Screen::settle();
    screen.form->txtTitle.setEnabled(true);
    screen.click(dialog.cmdOk);
  });
  screen.desktop.showModal(dialog);
  EXPECT_EQ(said, (std::vector<std::string>{"focus", "ok", "still here"}));
  EXPECT_FALSE(dialog.isShown());
  Screen::settle();
  EXPECT_EQ(screen.form->focused(), &screen.form->txtTitle);
  EXPECT_EQ(QApplication::focusWidget(), &screen.widget(screen.form->txtTitle));
  // An application that ends closes the form.
  soon([&] {
    soon([] { QCoreApplication::exit(); });
    screen.desktop.showModal(dialog);
    EXPECT_FALSE(dialog.isShown());
  });
  QCoreApplication::exec();
  // Again, this time closed with its title bar.
  soon([&] { screen.desktop.windowOf(dialog)->close(); });
  screen.desktop.showModal(dialog);
  EXPECT_EQ(screen.desktop.windowOf(dialog), nullptr);
}

constexpr std::size_t kEvents = 12;

/// Runs an action on one kind of event, given by its number.
void onEvent(Screen::Form& form, std::size_t event, const std::function<void()>& act) {
  std::function<void()>* const plain[] = {
      &form.cmdNew.onClick,         &form.txtTitle.onChange,  &form.txtNotes.onKeyUp,
      &form.sltParent.onPicked,     &form.lstPeriod.onSelect, &form.optAll.onClick,
      &form.grid.onSelectionChange, &form.txtCode.onGotFocus, &form.mnuNew.onClick};
  static_assert(std::size(plain) + 3 == kEvents);
  if (event < std::size(plain)) *plain[event] = act;
  if (event == kEvents - 3) form.txtTitle.onKeyPress = [act](ui::KeyPress&) { act(); };
  if (event == kEvents - 2) form.sltParent.onKeyDown = [act](int) { act(); };
  if (event == kEvents - 1) form.tree.onExpand = [act](ui::NodeId) { act(); };
}

/// Raises all kinds of events until something has happened.
void raiseAll(Screen& screen, Screen::Form& form, const bool& happened) {
  form.tree.add(form.tree.add(ui::kNoNode, "r", "r"), "c", "c");
  form.tree.select(form.tree.find("r"));
  for (const char* step :
       {"cmdNew <click>", "txtTitle a", "txtNotes a", "sltParent <focus>", "sltParent 105<Return>",
        "lstPeriod <Down>", "optPeriodic <Down>", "grid <Down>", "tree <Left>"})
    if (!happened) screen.act(form, step);
  if (!happened) screen.desktop.moveFocus(form.txtCode);
  if (!happened) screen.entry("mnuNew", form)->trigger();
}

TEST(QtDesktop, AFormMayEndInAnyOfItsOwnEvents) {
  Screen screen;
  screen.show();
  // Each kind of event closes the form or destroys it, alone or inside a nested loop.
  for (std::size_t way = 0; way < 4 * kEvents; ++way) {
    SCOPED_TRACE(way);
    const bool byOwner = way % 2 == 0;
    const bool inLoop = way / 2 % 2 == 0;
    auto form = std::make_unique<Screen::Form>(screen.surroundings());
    bool ended = false;
    onEvent(*form, way / 4, [&] {
      if (ended) return;
      ended = true;
      Dialog dialog(screen.surroundings());
      const auto finish = [&] {
        byOwner ? form.reset() : form->close();
        dialog.hide();
      };
      if (!inLoop) return finish();
      soon(finish);
      screen.desktop.showModal(dialog);
    });
    screen.desktop.show(*form);
    raiseAll(screen, *form, ended);
    Screen::settle();
    EXPECT_TRUE(ended);
    EXPECT_TRUE(form == nullptr || screen.desktop.windowOf(*form) == nullptr);
  }
  EXPECT_TRUE(screen.failures.empty());
}

TEST(QtDesktop, AHostMayTakeNoModelessFormOrGiveItsOwnPlace) {
  Screen screen;
  screen.desktop.setModelessAllowed(false);
  try {
    screen.desktop.show(*screen.form);
    FAIL() << "the host takes no modeless form";
  } catch (const ui::DesktopError& refusal) {
    EXPECT_EQ(refusal.number(), 406);
  }
  EXPECT_FALSE(screen.form->isShown());
  soon([&] {
    screen.desktop.show(*screen.form);  // brings it to the front, as it is already shown
    screen.form->close();
  });
  screen.desktop.showModal(*screen.form);

  screen.desktop.setModelessAllowed(true);
  auto host = std::make_unique<QWidget>();
  host->resize(1200, 600);
  auto* places = new QVBoxLayout(host.get());
  QWidget *before = new QPushButton, *place = new QWidget, *after = new QPushButton;
  for (QWidget* below : {before, place, after}) places->addWidget(below);
  host->show();
  screen.desktop.embed("FormTest", place);
  screen.show();
  EXPECT_EQ(screen.window().window(), host.get());
  EXPECT_GT(screen.form->size().width, screen.form->designSize().width);
  // Tab goes through the embedded screen.
  screen.form->hide();
  screen.show();
  QString way;
  before->setFocus();
  do {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    way += QApplication::focusWidget()->objectName() + " ";
  } while (!before->hasFocus() && way.size() < 300);
  EXPECT_EQ(way.toStdString(),
            "cmdNew cmdSave cmdExit optAll optPeriodic tree txtTitle txtCode txtMother  txtNotes lstBranches "
            "chkDeep lstPeriod grid   ");
  QWidget another;
  another.show();
  another.activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return another.isActiveWindow(); }, 30000));
  screen.show();
  EXPECT_TRUE(another.isActiveWindow()) << "which of its windows is in front is the host's to say";
  // The host deletes its container: the form is hidden, stays loaded, and can be shown again.
  host.reset();
  EXPECT_FALSE(screen.form->isShown());
  screen.show();
  EXPECT_TRUE(screen.window().isWindow() && screen.form->isShown());
  screen.window().showMinimized();
  screen.show();
  EXPECT_FALSE(screen.window().isMinimized());
  screen.form->setWantsMaximised(true);
  screen.form->hide();
  screen.show();
  EXPECT_FALSE(screen.window().isMaximized()) << "only as it first comes up";
  // None of its colours shows through.
  const QPalette own = qt::screenPalette(Qt::white);
  const QPalette colours = QApplication::palette();
  QApplication::setPalette(Qt::black);
  EXPECT_EQ(qt::screenPalette(Qt::white), own);
  QApplication::setPalette(colours);
}

TEST(QtDesktop, TheHourglassIsShownOnceAndNeverOverADialog) {
  Screen screen;
  shell::OutsideComponents components;
  qt::registerNoticeDialog(components);
  const auto notice = components.create("noticekit.noticedialog");
  notice->set("FormTitle", "خطا");
  notice->set("FormMessage", std::string(10'000, 'x') + '\0' + " آيا مطمئن هستيد؟");
  notice->set("FormType", 1);
  for (int number = 12893912; const char* colour : {"FormBackColor", "BtmBackColor", "FrameBackColor"})
    notice->set(colour, number++);
  EXPECT_EQ(qt::colourOf(12893912), QColor(216, 190, 196));
  EXPECT_THROW(notice->set("Colour", 1), shell::ComponentError);

  screen.show();
  screen.form->txtTitle.focus();
  QApplication::setOverrideCursor(Qt::CrossCursor);  // the host's own
  screen.desktop.setCursor(ui::CursorShape::Hourglass);
  screen.desktop.setCursor(ui::CursorShape::Hourglass);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  const auto answer = [&](std::function<void(QWidget&)> act) {
    soon([&screen, act] {
      QWidget& dialog = *QApplication::activeModalWidget();
      EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
      EXPECT_LE(dialog.height(), dialog.screen()->geometry().height());
      EXPECT_LT((dialog.geometry().center() - screen.window().geometry().center()).manhattanLength(), 9);
      act(dialog);
    });
    notice->call("ClearShow", {});
    Screen::settle();
    EXPECT_EQ(QApplication::focusWidget(), &screen.widget(screen.form->txtTitle));
    return notice->get("Resualt").toInt32();
  };
  // Enter gives the answer that changes nothing.
  using Keys = std::vector<Qt::Key>;
  for (const auto& [keys, given] :
       {std::pair(Keys{Qt::Key_Return}, 0), {{Qt::Key_Tab, Qt::Key_Return}, 1}, {{Qt::Key_Escape}, 0}}) {
    const auto press = [&](QWidget& dialog) {
      EXPECT_EQ(dialog.focusWidget()->palette().color(QPalette::Button), qt::colourOf(12893913));
      QTest::keyClick(dialog.focusWidget(), Qt::Key_C, Qt::ControlModifier);
      EXPECT_EQ(QApplication::clipboard()->text().size(), 10'018);
      QTest::keyClick(dialog.focusWidget(), Qt::Key_PageDown);
      EXPECT_GT(dialog.findChild<QTextEdit*>()->verticalScrollBar()->value(), 0);
      for (const Qt::Key key : keys) QTest::keyClick(dialog.focusWidget(), key);
    };
    EXPECT_EQ(answer(press), given);
  }
  const auto close = [](QWidget& dialog) { dialog.grab(), dialog.close(); };
  EXPECT_EQ(answer(close), -1);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  // A hundred of them leak next to nothing.
  notice->set("FormMessage", "آيا مطمئن هستيد؟");
  const std::size_t used = mallinfo2().uordblks;
  for (int count = 0; count < 100; ++count) answer(close);
  EXPECT_LT(mallinfo2().uordblks, used + 200'000);
  // An event procedure that fails meanwhile resets the cursor.
  soon([&] {
    screen.desktop.setCursor(ui::CursorShape::Default);
    QApplication::activeModalWidget()->close();
  });
  notice->call("ClearShow", {});
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
  QApplication::restoreOverrideCursor();
  EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST(QtDesktop, TimersTickAndIdleWorkRunsBetweenEvents) {
  Screen screen;
  ui::Timer timer(*screen.form, "Timer1", 5ms);
  ui::Timer rest(*screen.form, "TreeRest", 1s);
  int ticks = 0;
  timer.onTick = [&] { ++ticks; };
  QTest::qWait(20);
  EXPECT_EQ(ticks, 0);
  screen.show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks >= 2; }, 30000));
  const auto left = [&] { return screen.window().findChildren<QTimer*>().back()->remainingTime(); };
  QTest::qSleep(400);
  const int before = left();
  rest.restart();
  EXPECT_GT(left(), before) << "the interval begins anew";
  ticks = 0;
  for (int step = 0; step < 5; ++step) {
    QTest::qSleep(6);
    screen.desktop.repaint(*screen.form);
    static_cast<void>(screen.desktop.repaintAndHearEscape(*screen.form));
  }
  EXPECT_EQ(ticks, 0) << "in the middle of long work";
  screen.form->hide();
  ticks = 0;
  QTest::qWait(20);
  EXPECT_EQ(ticks, 0);

  std::vector<std::string> ran;
  std::thread worker([&] { screen.desktop.whenIdle([&] { ran.emplace_back("from a thread"); }); });
  worker.join();
  screen.desktop.whenIdle([&] {
    ran.emplace_back("first");
    screen.desktop.whenIdle([&] { ran.emplace_back("a slice later"); });
    QMetaObject::invokeMethod(
        qApp, [&] { ran.emplace_back("an event"); }, Qt::QueuedConnection);
  });
  screen.desktop.repaint(*screen.form);
  EXPECT_TRUE(ran.empty());
  EXPECT_TRUE(QTest::qWaitFor([&] { return ran.size() == 4; }, 30000));
  EXPECT_EQ(ran, (std::vector<std::string>{"from a thread", "first", "an event", "a slice later"}));
}

TEST(QtDesktop, LongWorkHearsEscapeAloneAndDropsTheRest) {
  Screen screen;
  screen.show();
  const auto press = [&](Qt::Key key, const QString& text) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
      QCoreApplication::postEvent(&screen.widget(screen.form->txtTitle),
                                  new QKeyEvent(type, key, Qt::NoModifier, text));
  };
  press(Qt::Key_A, "a");
  const QPointF place(9, 9);
  QCoreApplication::postEvent(
      screen.widget<QTableView>(screen.form->grid).viewport(),
      new QMouseEvent(QEvent::MouseButtonPress, place, place, Qt::LeftButton, Qt::LeftButton, {}));
  QWidget& bar = *screen.widget<QTableView>(screen.form->grid).verticalScrollBar();
  QCoreApplication::postEvent(&bar,
                              new QWheelEvent(place, place, {}, {0, -120}, {}, {}, Qt::NoScrollPhase, false));
  QCoreApplication::postEvent(&screen.widget(screen.form->txtCode),
                              new QContextMenuEvent(QContextMenuEvent::Keyboard, {9, 9}, {9, 9}));
  EXPECT_FALSE(screen.desktop.repaintAndHearEscape(*screen.form));
  EXPECT_EQ(bar.property("value").toInt(), 0);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  press(Qt::Key_Escape, "");
  EXPECT_TRUE(screen.desktop.repaintAndHearEscape(*screen.form));
  EXPECT_FALSE(screen.desktop.repaintAndHearEscape(*screen.form));
  // A wait has a button, too, and prevents what a repaint might bring back.
  bool idle = false;
  screen.desktop.whenIdle([&idle] { idle = true; });
  const auto waits = [&] { return screen.desktop.keepWaiting("در انتظار", "انصراف"); };
  press(Qt::Key_A, "a");
  QCoreApplication::postEvent(&screen.window(), new QCloseEvent);
  EXPECT_FALSE(waits());
  auto* const button = screen.window().findChild<QFrame*>("WaitPanel")->findChild<QPushButton*>();
  EXPECT_TRUE(button->isVisible() && screen.window().rect().contains(button->parentWidget()->geometry()));
  for (const QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(
        button, new QMouseEvent(type, place, button->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton, {}));
  EXPECT_TRUE(waits());
  press(Qt::Key_Escape, "");
  EXPECT_TRUE(waits());
  EXPECT_FALSE(idle);
  screen.desktop.endWait();
  EXPECT_EQ(screen.window().findChild<QFrame*>("WaitPanel"), nullptr);
  QCoreApplication::processEvents();
  EXPECT_TRUE(idle);
  EXPECT_EQ(screen.form->txtTitle.text(), "");
  EXPECT_TRUE(screen.form->isShown() && screen.form->said.empty());
}

TEST(QtDesktop, APictureOfTheScreenIsWrittenOrTheCallFails) {
  Screen screen;
  const QTemporaryDir folder;
  const std::string path = folder.filePath("screen.png").toStdString();
  EXPECT_THROW(screen.desktop.renderToPng(*screen.form, path), std::runtime_error) << "nothing is shown";
  screen.show();
  screen.desktop.renderToPng(*screen.form, path, {1100, 500});
  EXPECT_EQ(QImage(QString::fromStdString(path)).size(),
            QSize(1100, 500) * screen.window().devicePixelRatio());
  // A maximised window ignores sizes set by a program, until a picture asks for one.
  screen.window().showMaximized();
  const QSize whole = screen.window().size();
  screen.form->resize({9000, 3000});
  EXPECT_EQ(screen.window().size(), whole);
  screen.desktop.renderToPng(*screen.form, path, {900, 400});
  EXPECT_FALSE(screen.window().isMaximized());
  EXPECT_THROW(screen.desktop.renderToPng(*screen.form, path + "/no/such/folder.png"), std::runtime_error);
}

}  // namespace
}  // namespace ledgertree::test
