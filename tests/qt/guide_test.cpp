#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <QTimer>
#include <set>

#include "db/history.h"
#include "demo_chart_screen.h"
#include "entities/rel_classes.h"
#include "entities/rel_objects.h"
#include "history/screen/form_history.h"
#include "pactkit/cost_centers.h"
#include "qt/guide/guide_window.h"
#include "qt/notice_dialog.h"

namespace ledgertree::test {
namespace {

using qt::GuideWindow;

QString textOf(const QString& path) {
  QFile file(path);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
  return QString::fromUtf8(file.readAll());
}

/// Walks through all screens, presses F1 in each, and saves a picture of each if a folder is given.
class Guide : public DemoChartScreen {
 protected:
  Guide() : DemoChartScreen({1100, 620}) {
    qt::installGuide();
    qt::registerNoticeDialog(shell.components);
  }

  [[nodiscard]] std::int32_t idOf(const std::string& code) {
    return std::stoi(database.rows("select ID from tblAccount where Code = '" + code + "'"));
  }
  void openBelow(const std::vector<std::size_t>& places) const {
    ui::NodeId node = form->treeAccount.roots().front();
    for (const std::size_t place : places) {
      node = form->treeAccount.children(node)[place];
      form->treeAccount.expand(node);
    }
  }

  /// F1 opens the guide at a section, in front and receiving keys; Escape gives the focus back.
  static void helpAt(QWidget& front, const QString& section, const QString& selected = {}) {
    QWidget* focus = front.focusWidget() != nullptr ? front.focusWidget() : &front;
    QTest::keyClick(focus, Qt::Key_F1);
    const QPointer<GuideWindow> guide = GuideWindow::current();
    ASSERT_NE(guide, nullptr) << section.toStdString();
    EXPECT_EQ(guide->section().toStdString(), section.toStdString());
    EXPECT_EQ(guide->text().textCursor().selectedText().toStdString(), selected.toStdString());
    EXPECT_TRUE(QTest::qWaitFor([&] { return guide->isActiveWindow(); }, 30000));
    // Through the windowing system, which sends no key to a window blocked by a modal one.
    QTest::keyClick(guide->windowHandle(), Qt::Key_Escape);
    EXPECT_TRUE(QTest::qWaitFor([&] { return guide.isNull(); }, 30000)) << section.toStdString();
    EXPECT_EQ(QApplication::focusWidget(), focus) << section.toStdString();
  }

  /// Opens a modal screen, checks it, and closes it with its title bar.
  static void inFront(const std::function<void()>& open, const std::function<void(QWidget&)>& look) {
    const QWidget* before = QApplication::activeModalWidget();
    bool looked = false;
    QTimer watch;
    watch.callOnTimeout([&] {
      QWidget* front = QApplication::activeModalWidget();
      if (front == nullptr || front == before) return;
      watch.stop();
      looked = true;
      QTest::qWait(50);
      look(*front);
      front->close();
    });
    watch.start(10);
    open();
    EXPECT_TRUE(looked);
  }

  /// A screen with what is open above it.
  void picture(const QString& name, QWidget& screen, QRect part = {}) {
    drawn.insert(name);
    const QString folder = qEnvironmentVariable("LEDGERTREE_GUIDE_PICTURES");
    if (folder.isEmpty()) return;
    QPixmap pixmap = screen.grab();
    QPainter painter(&pixmap);
    for (QWidget* above : QApplication::topLevelWidgets()) {
      if (above != &screen && above->isVisible() && (above->windowFlags() & Qt::ToolTip) == Qt::ToolTip)
        painter.drawPixmap(screen.mapFromGlobal(above->pos()), above->grab());
    }
    painter.end();
    ASSERT_TRUE(pixmap.copy(part).save(folder + "/" + name + ".png"));
  }

  /// The distances between columns from the left in hundredths of a table, with one line between them.
  static void expectRoomForTables(const qt::GuideBrowser& text) {
    for (QTextFrame* frame : text.document()->rootFrame()->childFrames()) {
      const auto& table = dynamic_cast<const QTextTable&>(*frame);
      const auto cell = [&](int column) {
        const QTextBlock block = table.cellAt(0, column).firstCursorPosition().block();
        return text.document()->documentLayout()->blockBoundingRect(block);
      };
      const QRectF first = cell(0), second = cell(1);
      const double whole = text.document()->documentLayout()->frameBoundingRect(frame).width();
      EXPECT_NEAR((second.left() - first.left()) / whole, table.columns() == 2 ? 0.7 : 0.3, 0.02);
      EXPECT_NEAR(second.left() - first.right(), 2 * table.format().cellPadding() + 1, 1);
      EXPECT_EQ(table.format().borderStyle(), QTextFrameFormat::BorderStyle_Solid);
    }
  }

  void drawMainScreen();
  void drawSecondaryScreens();

  std::set<QString> drawn;
};

void Guide::drawMainScreen() {
  openBelow({0, 0});
  form->View(idOf("10101"));
  form->treeAccount.focus();
  picture("FormMain", window());
  helpAt(window(), "FormMain.treeAccount");

  form->optPeriodic.click();
  openBelow({0, 0});
  picture("FormMain-periods", window());
  form->optPeriodAll.click();
  openBelow({0, 0});

  form->sltAccount.focus();
  QTest::keyClicks(window().widgetOf(form->sltAccount), "101");
  ASSERT_TRUE(QTest::qWaitFor([&] { return form->sltAccount.rows().size() > 3; }, 30000));
  QTest::qWait(50);
  picture("picker", window(), {0, 60, window().width() * 57 / 100, 370});
  // What is being typed is still there after the guide.
  helpAt(window(), "FormMain.sltAccount");
  EXPECT_EQ(form->sltAccount.text(), "101");
  form->sltAccount.press(ui::Key::Escape);

  form->cmdNew.click();
  helpAt(window(), "FormMain.frameMain");
  // A message is above the screen, and the guide above both, at that message.
  inFront([&] { form->cmdSave.click(); },
          [&](QWidget& notice) {
            picture("notice", notice);
            helpAt(notice, "NoticeDialog", QString::fromUtf8("کد وارد نشده است!"));
          });
  // The server's own words on a second line aren't in the guide.
  inFront([&] { shell.showErrorNotice("خطا", "کد وارد نشده است!\n(2627)"); },
          [&](QWidget& notice) { helpAt(notice, "NoticeDialog", QString::fromUtf8("کد وارد نشده است!")); });
  form->sltParent.focus();
  QTest::keyClicks(window().widgetOf(form->sltParent), "101");
  ASSERT_TRUE(QTest::qWaitFor([&] { return form->sltParent.rows().size() > 3; }, 30000));
  QTest::keyClick(window().widgetOf(form->sltParent), Qt::Key_Return);
  form->txtTitle.setText("تنخواه فروشگاه شيراز");
  form->txtTitle.focus();
  picture("FormMain-new", window());
  form->View(idOf("10101"));
}

void Guide::drawSecondaryScreens() {
  const auto drawAndHelp = [this](QWidget& screen) {
    picture(screen.objectName(), screen);
    helpAt(screen, screen.objectName());
  };
  for (ui::PushButton* command : {&form->cmdPeriodBranch, &form->cmdCopyPeriod, &form->cmdDeletePeriod})
    inFront([&] { command->click(); }, drawAndHelp);
  for (ui::MenuEntry* command : {&form->mnuSameCoding, &form->mnuAccountBatch})
    inFront([&] { command->click(); }, drawAndHelp);
  inFront([&] { entities::showRelClasses(shell, idOf("20302")); }, drawAndHelp);
  inFront([&] { entities::showRelObjects(shell, idOf("10105")); },
          [&](QWidget& objects) {
            QTest::keyClick(objects.findChild<QComboBox*>("cmbClass"), Qt::Key_Down);
            drawAndHelp(objects);
          });
  if (!::ledgertree::testing::onServer()) db::switchHistory(database.other(), true);
  for (const char* title : {"صندوق ارزي", "صندوق"}) {
    form->View(idOf("10101"));
    form->cmdEdit.click();
    form->txtTitle.setText(title);
    form->cmdSave.click();
  }
  inFront([&] { static_cast<void>(history::showHistory(shell, -1, {})); }, drawAndHelp);
  pactkit::CostCenters centers(shell);
  centers.open();
  inFront([&] { desktop.showModal(centers); }, drawAndHelp);
}

TEST_F(Guide, OpensInEveryScreenAtWhatThePersonIsDoing) {
  drawMainScreen();
  drawSecondaryScreens();
  ASSERT_EQ(GuideWindow::current(), nullptr);

  // It stays usable next to a screen that is opened later, and after that one closes.
  window().activateWindow();
  ASSERT_TRUE(QTest::qWaitFor([&] { return window().isActiveWindow(); }, 30000));
  form->treeAccount.focus();
  QTest::keyClick(window().widgetOf(form->treeAccount), Qt::Key_F1);
  const QPointer<GuideWindow> guide = GuideWindow::current();
  ASSERT_FALSE(guide.isNull());
  EXPECT_EQ(guide->size(), guide->size().boundedTo(guide->screen()->availableSize()))
      << "no part is out of sight";
  EXPECT_EQ(guide->findChild<QListWidget*>()->currentItem()->text().trimmed().toStdString(),
            "درخت حساب‌ها");
  inFront([&] { form->cmdCopyPeriod.click(); },
          [&](QWidget&) {
            ASSERT_FALSE(guide.isNull());
            const QScrollBar& bar = *guide->text().verticalScrollBar();
            const int before = bar.value();
            guide->activateWindow();
            guide->text().setFocus();
            QTest::keyClick(guide->windowHandle(), Qt::Key_PageDown);
            EXPECT_GT(bar.value(), before);
          });
  ASSERT_FALSE(guide.isNull());
  // It finds the same letter in both forms, and closes with the screen.
  EXPECT_TRUE(guide->text().search(QString::fromUtf8("سرفصل‌هاي بدون سند")));
  EXPECT_TRUE(guide->text().search(QString::fromUtf8("پنهان كردن سرفصلهای")));
  EXPECT_TRUE(guide->text().search(QString::fromUtf8("شمارهگذاری")));
  EXPECT_FALSE(guide->text().search("no such words"));
  guide->findChild<QLineEdit*>()->setText(QString::fromUtf8("حساب"));
  const auto place = [&] { return guide->text().textCursor().position(); };
  const int before = place();
  QTest::keyClick(guide.data(), Qt::Key_F3);
  const int after = place();
  EXPECT_GT(after, before);
  QTest::keyClick(guide.data(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_LT(place(), after);
  // A search continues from the other end after the last hit.
  guide->text().scrollTo(0);
  QTest::keyClick(guide.data(), Qt::Key_F3, Qt::ShiftModifier);
  EXPECT_GT(place(), after);
  QTest::keyClick(guide.data(), Qt::Key_F, Qt::ControlModifier);
  auto& line = *guide->findChild<QLineEdit*>();
  EXPECT_TRUE(line.hasFocus() && line.selectedText() == line.text());
  // A key held down opens it once, and clicking an entry returns to it.
  QKeyEvent held(QEvent::KeyPress, Qt::Key_F1, Qt::NoModifier, {}, true);
  QApplication::sendEvent(&window(), &held);
  EXPECT_TRUE(line.hasFocus());
  QScrollBar& bar = *guide->text().verticalScrollBar();
  auto& contents = *guide->findChild<QListWidget*>();
  for (int time = 0; time < 2; ++time) {
    bar.setValue(0);
    QTest::mouseClick(contents.viewport(), Qt::LeftButton, {},
                      contents.visualItemRect(contents.item(5)).center());
    EXPECT_GT(bar.value(), 0);
  }
  guide->findChild<QListWidget*>()->setFocus();
  QTest::keyClick(guide->windowHandle(), Qt::Key_Tab);
  EXPECT_EQ(guide->focusWidget(), guide->findChild<QLineEdit*>());
  expectRoomForTables(guide->text());
  const auto first = [&] { return guide->text().cursorForPosition({200, 2}).block(); };
  const QTextBlock read = first();
  guide->resize(600, 500);
  Screen::settle();
  EXPECT_EQ(first(), read) << "in another width one reads on at the same place";
  const QUrl picture("pictures/guide/FormMain.png");
  const auto shown = guide->text().document()->resource(QTextDocument::ImageResource, picture);
  EXPECT_LE(shown.value<QImage>().width(), guide->text().viewport()->width()) << "nothing of it is cut off";
  // The menu entry opens the same place as the key.
  form->mnuHelp.setVisible(true);
  form->cmdDeletePeriod.focus();
  form->mnuGuide.click();
  EXPECT_EQ(guide->section().toStdString(), "FormMain.cmdDeletePeriod");
  window().close();
  EXPECT_TRUE(QTest::qWaitFor([&] { return guide.isNull(); }, 30000));

  // Every picture that it refers to was made just now and is compiled in.
  const QString text = textOf(":/ledgertree/guide/guide-fa.md");
  static const QRegularExpression image("\\]\\(pictures/guide/([\\w-]+)\\.png\\)");
  std::set<QString> named;
  for (const auto& match : image.globalMatch(text)) {
    named.insert(match.captured(1));
    EXPECT_FALSE(QImage(":/ledgertree/guide/pictures/guide/" + match.captured(1) + ".png").isNull())
        << match.captured(1).toStdString();
  }
  EXPECT_EQ(named, drawn);
}

}  // namespace
}  // namespace ledgertree::test
