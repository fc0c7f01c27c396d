#include <gtest/gtest.h>

#include <QtWidgets>
#include <map>
#include <tuple>

#include "qt/appearance.h"
#include "qt/guide/guide_window.h"
#include "qt/notice_dialog.h"
#include "qt/wait_panel.h"
#include "screen.h"

namespace ledgertree::test {
namespace {

using qt::fromQt;

/// A widget of a class as the toolkit makes it.
const QWidget& asMade(const QWidget& widget) {
  static const auto known =
      []<typename... Widgets>(std::tuple<Widgets...>*) {
        std::map<std::string, std::unique_ptr<QWidget>> made;
        (made.emplace(Widgets::staticMetaObject.className(), std::make_unique<Widgets>()), ...);
        made["QHeaderView"] = std::make_unique<QHeaderView>(Qt::Horizontal);
        return made;
      }(static_cast<
          std::tuple<QWidget, QFrame, QLabel, QLineEdit, QTextEdit, QTextBrowser, QPushButton, QToolButton,
                     QRadioButton, QCheckBox, QGroupBox, QComboBox, QListView, QListWidget, QTreeView,
                     QTableView, QScrollArea, QProgressBar, QMenuBar, QMenu, QSplitter, QDialog>*>(nullptr));
  const auto found = known.find(widget.metaObject()->className());
  return found == known.end() ? *known.at("QWidget") : *found->second;
}

/// All but what depends on the fonts and sizes of a machine, or is covered elsewhere.
QString written(const QMetaProperty& property, const QVariant& value) {
  static const QRegularExpression left(
      "^(x|y|(min.*|max.*|line|frame|)([wW]idth|[hH]eight)|.*SectionSize|indentation|objectName|enabled|"
      "visible|"
      "cursorPosition|focus|html|markdown|isActiveWindow|font|layoutDirection|windowTitle|plainText|count)$");
  if (left.match(property.name()).hasMatch()) return {};
  if (value.metaType().id() == QMetaType::QCursor) return QString::number(value.value<QCursor>().shape());
  if (!property.isEnumType()) return value.toString().simplified().left(60);
  const QMetaEnum names = property.enumerator();
  return QString::fromLatin1(names.isFlag() ? names.valueToKeys(value.toInt())
                                            : QByteArray(names.valueToKey(value.toInt())));
}

/// What the form changed about a widget: each property that differs from the toolkit's default, its columns,
/// and colours that differ from its parent's.
QString looksOf(const QWidget& widget) {
  const QWidget& made = asMade(widget);
  const QWidget* around = widget.parentWidget();
  QString words;
  const auto add = [&words](bool tells, const QString& word) { words += tells ? " " + word : QString(); };
  const QMetaObject& kind = *made.metaObject();
  for (int number = 0; number < kind.propertyCount(); ++number) {
    const QMetaProperty property = kind.property(number);
    const QString value = written(property, property.read(&widget));
    add(value != written(property, property.read(&made)), property.name() + ("=" + value));
  }
  for (const auto attribute : {Qt::WA_ShowWithoutActivating, Qt::WA_WindowPropagation, Qt::WA_DeleteOnClose,
                               Qt::WA_QuitOnClose, Qt::WA_InputMethodEnabled})
    add(widget.testAttribute(attribute) != made.testAttribute(attribute),
        QMetaEnum::fromType<Qt::WidgetAttribute>().valueToKey(attribute));
  add(!widget.isEnabled(), "disabled");
  add(!widget.isVisible(), "hidden");
  add(widget.font().bold(), "bold");
  add(widget.minimumSize() == widget.maximumSize(), "fixed");
  add(widget.style() == QApplication::style(), "undressed");
  add(around == nullptr || widget.layoutDirection() != around->layoutDirection(),
      widget.layoutDirection() == Qt::RightToLeft ? "rightToLeft" : "leftToRight");
  const bool bar = widget.inherits("QProgressBar");
  add(!bar && around != nullptr && widget.fontInfo().pixelSize() < around->fontInfo().pixelSize(), "small");
  add(bar && widget.fontMetrics().height() > widget.height() - 3, "cut");
  const auto* label = qobject_cast<const QLabel*>(&widget);
  const int margin = label != nullptr             ? label->contentsMargins().left()
                     : widget.layout() != nullptr ? widget.layout()->contentsMargins().left()
                                                  : 9;
  add(margin < 9 && (label == nullptr || margin > 0), QString("margins=%1").arg(margin));
  add(widget.isWindow(),
      QString::number(widget.windowFlags().toInt(), 16) + " «" + widget.windowTitle() + "»");
  for (const QAction* action : widget.actions())
    add(!action->text().isEmpty(), "- " + action->text().section('\t', 0, 0));
  const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
  add(area != nullptr && !area->viewport()->autoFillBackground(), "seeThrough");
  const auto* header = qobject_cast<const QHeaderView*>(&widget);
  add(header != nullptr && header->isVisible() && header->sectionsClickable(), "clickable");
  const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
  const auto* tree = qobject_cast<const QTreeView*>(&widget);
  for (int column = 0; view != nullptr && column < view->model()->columnCount(); ++column)
    add(true, view->model()->index(0, column).data(Qt::TextAlignmentRole).toString() + "," +
                  QString::number(tree == nullptr ? -1 : tree->header()->sectionResizeMode(column)));
  const auto roles = QMetaEnum::fromType<QPalette::ColorRole>();
  add(widget.backgroundRole() != made.backgroundRole(), roles.valueToKey(widget.backgroundRole()));
  for (int number = 0; number < QPalette::NoRole; ++number) {
    const QColor own = widget.palette().color(static_cast<QPalette::ColorRole>(number));
    add(around == nullptr || own != around->palette().color(static_cast<QPalette::ColorRole>(number)),
        roles.valueToKey(number) + (":" + own.name()));
  }
  return words;
}

/// A line for each widget that was changed and isn't `known`, after the names of its parents.
std::string looksOf(const QWidget& widget, const std::string& place, const std::string& known = "") {
  const QString name =
      widget.objectName().isEmpty() ? widget.metaObject()->className() + 1 : widget.objectName();
  const bool own =
      (!name.startsWith("qt_") || name == "qt_edit_menu") && !name.contains("Private") && name != "Widget";
  const std::string path = own ? place + "/" + fromQt(name) : place;
  std::string lines = path + fromQt(looksOf(widget)) + "\n";
  if (!own || lines == path + "\n" || known.find("\n" + lines) != std::string::npos) lines.clear();
  for (const QObject* below : widget.children())
    if (const auto* inner = qobject_cast<const QWidget*>(below);
        inner != nullptr && !inner->inherits("QScrollBar"))
      lines += looksOf(*inner, path, known);
  return lines;
}

TEST(ScreenLooks, AreWhatTheViewsMadeOfTheToolkit) {
  Screen screen;
  auto& form = *screen.form;
  screen.show();
  form.setCaption("سرفصل حسابها - مشاهده");
  form.progress.setProgress(1, 2, "");
  form.cmdSave.setHint("ثبت حساب & <b>");
  form.sltParent.setHint("حساب مادر");
  std::string looks = "\n" + looksOf(screen.window(), "");
  const auto look = [&](const char* state) { looks += state + looksOf(screen.window(), "", looks); };
  form.sltParent.focus();
  screen.desktop.chooseKeyboardLayout("00000429");
  look("== Persian\n");
  screen.press(form.sltParent, Qt::Key_F8);
  screen.type(form.sltParent, "105");
  look("== searching\n");
  form.cmdNew.focus();
  look("== left unchosen\n");
  form.sltParent.focus();
  screen.type(form.sltParent, "2\r");
  form.sltParent.lookCloser();
  look("== picked\n");
  QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5}, screen.window().pos());
  QApplication::sendEvent(&screen.widget(form.txtTitle), &menu);
  look("== a menu\n");
  QApplication::activePopupWidget()->close();
  form.txtTitle.setLocked(true);
  form.sltParent.setActive(false);
  form.views.setEnabled(false);
  look("== out of reach\n");
  using Kind = qt::NoticeDialog::Kind;
  for (const auto& [kind, title] : {std::pair(Kind::Question, "پرسش"),
                                    {Kind::Notice, "اشکال"},
                                    {Kind::Notice, "اطلاع"},
                                    {Kind::Notice, "اتمام عمليات"}}) {
    qt::NoticeDialog notice;
    notice.title = title;
    notice.message = "؟";
    notice.kind = kind;
    QTimer::singleShot(0, &screen.window(), [&] {
      QWidget& dialog = *QApplication::activeModalWidget();
      looks += "== notice\n" + looksOf(dialog, "", looks);
      // The middle of the symbol: an upper stroke, a curve, or for good news a tick.
      auto& sign = *dialog.findChild<QWidget*>("Sign");
      const int side = sign.width() * 3 / 5;
      const QImage middle = painted(sign, {sign.width() / 5, sign.width() / 5, side, side});
      const QRect drawn = ink(middle, middle.rect());
      looks += drawn.width() > drawn.height()       ? "a tick\n"
               : drawn.width() * 3 > drawn.height() ? "a bow\n"
                                                    : "a line\n";
      dialog.close();
    });
    notice.ask();
  }
  // A wait before the first screen.
  qt::WaitPanel wait(nullptr);
  wait.tell("در انتظار", "انصراف");
  looks += "== wait\n" + looksOf(wait, "");
  wait.close();
  qt::GuideWindow::open(screen.window(), {}, {});
  QTest::keyClicks(qt::GuideWindow::current()->findChild<QLineEdit*>(), "zz");
  looks += "== guide\n" + looksOf(*qt::GuideWindow::current(), "");
  qt::GuideWindow::current()->close();
  expectTable("looks", looks.substr(1));
}

/// The contrast of a widget's letters by its pixels: the background is the most frequent colour, and the ink
/// the one furthest from it.
double contrastOf(QWidget& widget) {
  const auto light = [](QRgb colour) {
    const auto linear = [](int part) {
      return part <= 10 ? part / 255.0 / 12.92 : std::pow((part / 255.0 + 0.055) / 1.055, 2.4);
    };
    return 0.05 + 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
  };
  // The toolkit's corners and borders are ignored.
  const QImage picture = painted(widget, widget.rect().adjusted(6, 3, -6, -3));
  std::map<QRgb, int> colours;
  for (int at = 0; at < picture.width() * picture.height(); ++at)
    ++colours[picture.pixel(at % picture.width(), at / picture.width())];
  const auto less = [](const auto& one, const auto& other) { return one.second < other.second; };
  const double ground = light(std::max_element(colours.begin(), colours.end(), less)->first);
  double best = 1;
  for (const auto& [colour, count] : colours)
    best = std::max({best, ground / light(colour), light(colour) / ground});
  return best;
}

TEST(ScreenLooks, WhatIsReadStandsOutOfItsGround) {
  Screen screen;
  auto& form = *screen.form;
  screen.show();
  screen.type(form.txtCode, "105");
  form.lstPeriod.choose(1);
  for (const bool enabled : {true, false}) {
    for (ui::Control* control : std::initializer_list<ui::Control*>{
             &form.optAll, &form.chkDeep, &form.txtCode, &form.cmdNew, &form.lblCode, &form.lstPeriod}) {
      control->setEnabled(enabled);
      EXPECT_GE(contrastOf(screen.widget(*control)), 4.5) << control->name() << enabled;
    }
  }
  qt::NoticeDialog notice;
  notice.kind = qt::NoticeDialog::Kind::Question;
  QTimer::singleShot(0, &screen.window(), [&] {
    QWidget& dialog = *QApplication::activeModalWidget();
    EXPECT_FALSE(dialog.windowIcon().isNull());
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
      EXPECT_GE(contrastOf(*button), 4.5) << fromQt(button->text());
    dialog.close();
  });
  notice.ask();
}

/// The position and size of everything in a window.
std::string measuresOf(const QWidget& window) {
  QString words;
  QDebug out(&words);
  out << window.size();
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if (!widget->isVisible()) continue;
    out << "\n"
        << widget->objectName() << widget->metaObject()->className() << widget->font() << widget->geometry();
    for (const char* size : {"iconSize", "indentation", "defaultSectionSize"}) out << widget->property(size);
  }
  return fromQt(words);
}

TEST(ScreenLooks, AWindowThatGrewWithTheFontIsAsOneThatWasMadeSo) {
  const QFont before = QApplication::font();
  const auto measures = [&](int made, int grown, bool resizable) {
    QFont font = before;
    font.setPixelSize(made);
    QApplication::setFont(font);
    Screen screen;
    screen.form->setResizable(resizable);
    screen.form->setFirstFocus(screen.form->sltParent);
    screen.show();
    screen.desktop.chooseKeyboardLayout("00000429");
    font.setPixelSize(grown);
    QApplication::setFont(font);
    if (resizable) screen.window().resize(520, 400);
    const auto& ground = *screen.window().findChild<QScrollArea*>();
    const auto settled = [&] {
      return ground.font().pixelSize() == grown && ground.viewport()->size() == ground.widget()->size();
    };
    EXPECT_TRUE(QTest::qWaitFor(settled, 30000)) << "all of it is seen";
    return measuresOf(screen.window());
  };
  for (const bool resizable : {false, true}) EXPECT_EQ(measures(4, 6, resizable), measures(6, 6, resizable));
  QApplication::setFont(before);
}

TEST(ScreenLooks, WordsAreReadWhereverTheyStand) {
  Screen screen;
  screen.show();
  // Those of a progress bar over its filled and its empty part.
  QWidget& bar = screen.widget(screen.form->progress);
  const auto half = [&](const char* words, int side) {
    screen.form->progress.setProgress(1, 2, words);
    return painted(bar, {side * bar.width() / 2, 0, bar.width() / 2, bar.height()});
  };
  for (const int side : {0, 1}) {
    const QImage words = half("حساب حساب حساب حساب", side);
    EXPECT_NE(words, half("", side)) << side;
    int darkest = 255;
    for (int x = 0; x < words.width(); ++x)
      for (int y = 2; y < words.height() - 2; ++y) darkest = std::min(darkest, qGray(words.pixel(x, y)));
    EXPECT_EQ(darkest < 60, side == 0)
        << "it fills from the right, dark words are on the empty part: " << darkest;
  }
  screen.form->progress.setProgress(0, 2, "");
  EXPECT_LT(bar.property("value").toInt(), 0) << "at 0 a sliver would be drawn";
  // The border of a frame is interrupted by its title.
  QWidget& frame = screen.widget(screen.form->record);
  const QImage picture = painted(frame);
  const int line = frame.fontMetrics().height();
  const auto ground = picture.pixel(frame.width() / 2, line * 2 / 3);
  EXPECT_EQ(picture.pixel(frame.width() - line / 2 - 1, line / 2), ground);
  EXPECT_NE(picture.pixel(frame.width() / 4, line / 2), ground);
  // A left-to-right host changes nothing.
  auto& menu = *screen.window().findChild<QMenu*>();
  menu.adjustSize();
  const auto drawn = [&] { return std::pair(painted(screen.window()), painted(menu)); };
  const auto own = drawn();
  const Qt::LayoutDirection host = QApplication::layoutDirection();
  QApplication::setLayoutDirection(host == Qt::LeftToRight ? Qt::RightToLeft : Qt::LeftToRight);
  EXPECT_TRUE(drawn() == own);
  QApplication::setLayoutDirection(host);
  // The pictures of a tree, and check boxes, are as large as the letters.
  const QFont font = QApplication::font();
  QApplication::setFont(QFont(font.family(), 40));
  Screen large;
  large.show();
  const auto& tree = large.widget<QTreeView>(large.form->tree);
  EXPECT_GT(tree.iconSize().height() * 2, tree.fontMetrics().height());
  QApplication::setFont(font);
  QCheckBox box;
  box.setFont(QFont("", 40));
  qt::dress(box);
  EXPECT_GE(box.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &box), box.fontInfo().pixelSize());
}

}  // namespace
}  // namespace ledgertree::test
