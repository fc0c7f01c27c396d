#include <gtest/gtest.h>

#include <QtWidgets>
#include <map>
#include <tuple>

#include "qt/guide/guide_window.h"
#include "qt/notice_dialog.h"
#include "screen.h"

namespace ledgertree::test {
namespace {

using qt::fromQt;

/// How the toolkit makes a widget of a class.
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

/// All but what hangs on the fonts and the sizes of a machine, or is told in another way.
QString written(const QMetaProperty& property, const QVariant& value) {
  static const QRegularExpression left(
      "^(x|y|(min.*|max.*|line|)([wW]idth|[hH]eight)|.*SectionSize|indentation|objectName|enabled|visible|"
      "cursorPosition|focus|html|markdown|isActiveWindow|font|layoutDirection|windowTitle|plainText|count)$");
  if (left.match(property.name()).hasMatch()) return {};
  if (value.metaType().id() == QMetaType::QCursor) return QString::number(value.value<QCursor>().shape());
  if (!property.isEnumType()) return value.toString().simplified().left(60);
  const QMetaEnum names = property.enumerator();
  return QString::fromLatin1(names.isFlag() ? names.valueToKeys(value.toInt())
                                            : QByteArray(names.valueToKey(value.toInt())));
}

/// What the form made of a widget: each property that isn't as the toolkit made it, its columns, and its
/// colours that aren't those of the widget around it.
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
  add(around != nullptr && widget.fontInfo().pixelSize() < around->fontInfo().pixelSize(), "small");
  add(widget.contentsMargins() != made.contentsMargins(),
      QString("margins=%1").arg(widget.contentsMargins().left()));
  add(widget.isWindow(),
      QString::number(widget.windowFlags().toInt(), 16) + " «" + widget.windowTitle() + "»");
  for (const QAction* action : widget.actions())
    add(!action->text().isEmpty(), "- " + action->text().section('\t', 0, 0));
  const auto* area = qobject_cast<const QAbstractScrollArea*>(&widget);
  add(area != nullptr && !area->viewport()->autoFillBackground(), "seeThrough");
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

/// A line for each widget that something was made of and that isn't `known`, behind the names of those
/// around it.
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
  form.cmdSave.setHint("ثبت حساب & <b>");
  form.sltParent.setHint("حساب مادر");
  std::string looks = "\n" + looksOf(screen.window(), "");
  const auto look = [&](const char* state) { looks += state + looksOf(screen.window(), "", looks); };
  form.sltParent.focus();
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
  qt::NoticeDialog notice;
  notice.title = "پرسش";
  notice.message = "؟";
  notice.kind = qt::NoticeDialog::Kind::Question;
  QTimer::singleShot(0, &screen.window(), [&] {
    QWidget& dialog = *QApplication::activeModalWidget();
    looks += "== notice\n" + looksOf(dialog, "");
    dialog.close();
  });
  notice.ask();
  const auto signOf = [&](const char* title) {
    QImage sign;
    notice = {};
    notice.title = title;
    QTimer::singleShot(0, &screen.window(), [&] {
      QWidget& dialog = *QApplication::activeModalWidget();
      sign = dialog.findChild<QWidget*>("Sign")->grab().toImage();
      dialog.close();
    });
    notice.ask();
    return sign;
  };
  EXPECT_EQ(signOf("اتمام عمليات"), signOf("اطلاع")) << "good news bear a tick";
  EXPECT_NE(signOf("اشکال"), signOf("اطلاع"));
  qt::GuideWindow::open(screen.window(), {}, {});
  QTest::keyClicks(qt::GuideWindow::standing()->findChild<QLineEdit*>(), "zz");
  looks += "== guide\n" + looksOf(*qt::GuideWindow::standing(), "");
  qt::GuideWindow::standing()->close();
  expectTable("looks", looks.substr(1));
}

}  // namespace
}  // namespace ledgertree::test
