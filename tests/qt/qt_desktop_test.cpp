#include "qt/qt_desktop.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <QCursor>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QVBoxLayout>
#include <thread>

#include "qt/notice_dialog.h"
#include "screen.h"
#include "shell/outside_components.h"

namespace ledgertree::test {
namespace {

using namespace std::chrono_literals;

/// A dialog of two buttons.
class Dialog : public ui::Form {
 public:
  explicit Dialog(ui::Surroundings surroundings)
      : Form(std::move(surroundings), "dialog", "پرسش", {4000, 1500}) {
    setFirstFocus(cmdOk);
  }
  ui::PushButton cmdOk{*this, "cmdOk", {2100, 900, 1500, 420}, "تاييد"};
  ui::PushButton cmdNo{*this, "cmdNo", {300, 900, 1500, 420}, "انصراف"};
};

/// Runs a procedure inside the next loop of events.
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
    EXPECT_TRUE(screen.desktop.windowOf(dialog)->isModal());
    screen.click(dialog.cmdOk);
  });
  screen.desktop.showModal(dialog);
  EXPECT_EQ(said, (std::vector<std::string>{"focus", "ok", "still here"}));
  EXPECT_FALSE(dialog.isShown());
  EXPECT_EQ(screen.form->focused(), &screen.form->txtTitle);
  Screen::settle();
  EXPECT_EQ(QApplication::focusWidget(), &screen.widget(screen.form->txtTitle));
  // Once more, and this time it is left by the frame of its window.
  soon([&] { screen.desktop.windowOf(dialog)->close(); });
  screen.desktop.showModal(dialog);
  EXPECT_EQ(screen.desktop.windowOf(dialog), nullptr);
}

TEST(QtDesktop, AFormMayEndInAnyOfItsOwnEvents) {
  Screen screen;
  screen.show();
  // Each kind of event ends the form, by its close or by its owner, alone or inside a loop of its own.
  const std::vector<std::function<void(Screen::Form&, std::function<void()>)>> acts = {
      [&](Screen::Form& form, auto end) {
        form.cmdNew.onClick = end;
        screen.click(form.cmdNew);
      },
      [&](Screen::Form& form, auto end) {
        form.txtTitle.onKeyPress = [end](ui::KeyPress&) { end(); };
        screen.type(form.txtTitle, "a");
      },
      [&](Screen::Form& form, auto end) {
        form.txtTitle.onChange = end;
        screen.type(form.txtTitle, "a");
      },
      [&](Screen::Form& form, auto end) {
        form.txtNotes.onKeyUp = end;
        screen.type(form.txtNotes, "a");
      },
      [&](Screen::Form& form, auto end) {
        form.sltParent.onPicked = end;
        form.sltParent.focus();
        screen.type(form.sltParent, "105\r");
      },
      [&](Screen::Form& form, auto end) {
        form.sltParent.onKeyDown = [end](int) { end(); };
        screen.press(form.sltParent, Qt::Key_Return);
      },
      [&](Screen::Form& form, auto end) {
        form.tree.add(form.tree.add(ui::kNoNode, "r", "r"), "c", "c");
        form.tree.onExpand = [end](ui::NodeId) { end(); };
        form.tree.select(form.tree.find("r"));
        screen.press(form.tree, Qt::Key_Left);
      },
      [&](Screen::Form& form, auto end) {
        form.grid.onSelectionChange = end;
        screen.press(form.grid, Qt::Key_Down);
      },
      [&](Screen::Form& form, auto end) {
        form.lstPeriod.onSelect = end;
        screen.press(form.lstPeriod, Qt::Key_Down);
      },
      [&](Screen::Form& form, auto end) {
        form.optAll.onClick = end;
        screen.press(form.optPeriodic, Qt::Key_Down);
      },
      [&](Screen::Form& form, auto end) {
        form.txtCode.onGotFocus = end;
        screen.desktop.moveFocus(form.txtCode);
      },
      [&](Screen::Form& form, auto end) {
        form.mnuNew.onClick = end;
        screen.desktop.windowOf(form)->findChild<QAction*>(QStringLiteral("mnuNew"))->trigger();
      },
  };
  for (std::size_t act = 0; act < acts.size(); ++act) {
    for (const bool byOwner : {true, false}) {
      for (const bool inLoop : {true, false}) {
        SCOPED_TRACE(act);
        auto form = std::make_unique<Screen::Form>(screen.surroundings());
        bool ended = false;
        const auto end = [&] {
          if (ended) return;
          ended = true;
          Dialog dialog(screen.surroundings());
          const auto finish = [&] {
            if (byOwner) {
              form.reset();
            } else {
              form->close();
            }
            dialog.hide();
          };
          if (!inLoop) return finish();
          soon(finish);
          screen.desktop.showModal(dialog);
        };
        screen.desktop.show(*form);
        acts[act](*form, end);
        Screen::settle();
        EXPECT_TRUE(ended);
        EXPECT_TRUE(form == nullptr || screen.desktop.windowOf(*form) == nullptr);
      }
    }
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
    screen.desktop.show(*screen.form);  // brings it up, as it is shown already
    screen.form->close();
  });
  screen.desktop.showModal(*screen.form);

  screen.desktop.setModelessAllowed(true);
  auto host = std::make_unique<QWidget>();
  host->resize(1200, 600);
  auto* place = new QWidget(host.get());
  (new QVBoxLayout(host.get()))->addWidget(place);
  host->show();
  screen.desktop.embed("FormTest", place);
  screen.show();
  EXPECT_EQ(screen.window().window(), host.get());
  EXPECT_GT(screen.form->size().width, screen.form->designSize().width);
  // The host drops its window: the form goes off the screen, stays loaded, and can be shown again.
  host.reset();
  EXPECT_FALSE(screen.form->isShown());
  screen.show();
  EXPECT_TRUE(screen.window().isWindow() && screen.form->isShown());
}

TEST(QtDesktop, TheHourglassIsShownOnceAndNeverOverADialog) {
  Screen screen;
  shell::OutsideComponents components;
  qt::registerNoticeDialog(components);
  const auto notice = components.create("noticekit.noticedialog");
  notice->set("FormTitle", "خطا");
  notice->set("FormMessage", std::string(10'000, 'x') + '\0' + " آيا مطمئن هستيد؟");
  notice->set("FormType", 1);
  for (const char* colour : {"FormBackColor", "BtmBackColor", "FrameBackColor"})
    notice->set(colour, 12893912);
  EXPECT_EQ(qt::colourOf(12893912), QColor(216, 190, 196));
  EXPECT_THROW(notice->set("Colour", 1), shell::ComponentError);

  screen.show();
  screen.form->txtTitle.focus();
  QApplication::setOverrideCursor(Qt::CrossCursor);  // the host's own
  screen.desktop.setPointer(ui::Pointer::Hourglass);
  screen.desktop.setPointer(ui::Pointer::Hourglass);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  const auto answer = [&](std::function<void(QWidget&)> act) {
    soon([act] {
      QWidget& dialog = *QApplication::activeModalWidget();
      EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::CrossCursor);
      EXPECT_LE(dialog.height(), dialog.screen()->geometry().height());
      act(dialog);
    });
    notice->call("ClearShow", {});
    Screen::settle();
    EXPECT_EQ(QApplication::focusWidget(), &screen.widget(screen.form->txtTitle));
    return notice->get("Resualt").toInt32();
  };
  EXPECT_EQ(answer([](QWidget& dialog) { QTest::keyClick(dialog.focusWidget(), Qt::Key_Return); }), 0)
      << "Enter gives the answer that changes nothing";
  EXPECT_EQ(answer([](QWidget& dialog) {
              QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
              QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
            }),
            1);
  EXPECT_EQ(answer([](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }), 0);
  const auto close = [](QWidget& dialog) { dialog.grab(), dialog.close(); };
  EXPECT_EQ(answer(close), -1);
  EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
  // A hundred of them leave next to nothing behind.
  notice->set("FormMessage", "آيا مطمئن هستيد؟");
  const std::size_t used = mallinfo2().uordblks;
  for (int count = 0; count < 100; ++count) answer(close);
  EXPECT_LT(mallinfo2().uordblks, used + 200'000);
  // An event procedure that fails meanwhile gives the pointer back.
  soon([&] {
    screen.desktop.setPointer(ui::Pointer::Default);
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
  int ticks = 0;
  timer.onTick = [&] { ++ticks; };
  QTest::qWait(20);
  EXPECT_EQ(ticks, 0);
  screen.show();
  EXPECT_TRUE(QTest::qWaitFor([&] { return ticks >= 2; }, 30000));
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

TEST(QtDesktop, APictureOfTheScreenIsWrittenOrTheCallFails) {
  Screen screen;
  const QTemporaryDir folder;
  const std::string path = folder.filePath("screen.png").toStdString();
  EXPECT_THROW(screen.desktop.renderToPng(*screen.form, path), std::runtime_error) << "nothing is shown";
  screen.show();
  screen.desktop.renderToPng(*screen.form, path, {1100, 500});
  EXPECT_EQ(QImage(QString::fromStdString(path)).size(), QSize(1100, 500));
  EXPECT_THROW(screen.desktop.renderToPng(*screen.form, path + "/no/such/folder.png"), std::runtime_error);
}

}  // namespace
}  // namespace ledgertree::test
