// The components as a user sees them: their dialogs, on the desktop of a QApplication.

#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QTableView>
#include <QTextBrowser>
#include <QTextEdit>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <filesystem>
#include <functional>

#include "data/persian_calendar.h"
#include "pactkit/pact_editor.h"
#include "sheetkit/sheet_writer.h"
#include "support/test_house.h"

namespace ledgertree::testing {
namespace {

class Dialogs : public TestHouse {
 protected:
  static void SetUpTestSuite() {
    static int count = 1;
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    application = new QApplication(count, arguments);
  }
  /// Before the process ends and takes what the toolkit still needs.
  static void TearDownTestSuite() { delete application; }
  Dialogs() {
    useDemoChart();
    introduce(writer, database.connectionText());
    introduce(editor, database.connectionText());
  }
  static void introduce(shell::OutsideComponent& component, const std::string& connection) {
    component.set("UserID", 1);
    component.set("OLEConnectionString", connection);
  }
  /// Runs `act`, and passes each dialog that appears meanwhile, in order, to the user.
  static int answering(const std::function<void()>& act, const std::function<void(QWidget&)>& person) {
    int met = 0;
    QTimer watch;
    watch.callOnTimeout([&] {
      QWidget* dialog = QApplication::activeModalWidget();
      if (dialog == nullptr || !dialog->isVisible()) return;
      if (dialog->inherits("QProgressDialog")) return;  // comes up where the disk is slow, and asks nothing
      ++met;
      person(*dialog);
    });
    watch.start(5);
    act();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    return met;
  }
  static void answer(QWidget& question, const std::filesystem::path& file, const char* decision) {
    // selectFile() leaves the name alone where the keyboard is in it.
    auto* const name = dynamic_cast<QFileDialog&>(question).findChild<QLineEdit*>();
    name->setText(QString::fromStdString(file.string()));
    QMetaObject::invokeMethod(&question, decision);
  }
  void expectTold(const std::function<void()>& act, const std::string& words) {
    EXPECT_EQ(answering(act,
                        [&](QWidget& notice) {
                          EXPECT_EQ(notice.windowTitle().toStdString(), "خطا");
                          const std::string text =
                              notice.findChild<QTextEdit*>()->toPlainText().toStdString();
                          EXPECT_NE(text.find(words), std::string::npos) << text;
                          notice.close();
                        }),
              1);
  }

  /// Cancels an operation before its first step.
  class Impatient : public QObject {
    bool eventFilter(QObject* watched, QEvent* event) override {
      auto* const dialog = qobject_cast<QProgressDialog*>(watched);
      if (dialog != nullptr && event->type() == QEvent::WindowTitleChange) dialog->cancel();
      return false;
    }
  };

  static inline QApplication* application = nullptr;
  TemporaryFolder folder;
  sheetkit::SheetWriter writer;
  pactkit::PactEditor editor;
};

TEST_F(Dialogs, TheExportAsksWhereAndWritesThereOrNowhere) {
  const std::filesystem::path file = folder.path() / "chart.xlsx";
  const auto today = QDate::currentDate();
  std::string day = data::toPersianDate({.year = today.year(), .month = today.month(), .day = today.day()});
  std::replace(day.begin(), day.end(), '/', '-');
  // Handles the opening of a folder.
  QTextBrowser browser;
  QDesktopServices::setUrlHandler("file", &browser, "setSource");
  std::string message;
  for (const bool wanted : {false, true}) {
    const auto choose = [&](QWidget& question) {
      if (auto* const told = question.findChild<QTextEdit*>(); told != nullptr) {
        for (const QWidget* window : QApplication::topLevelWidgets())
          EXPECT_FALSE(window->inherits("QProgressDialog")) << "it would come up over the notice";
        message = question.windowTitle().toStdString() + "|" + told->toPlainText().toStdString();
        auto* const button = question.findChildren<QPushButton*>().last();
        EXPECT_EQ(button->text().toStdString(), "باز کردن پوشه");
        return button->click();
      }
      auto& dialog = dynamic_cast<QFileDialog&>(question);
      EXPECT_EQ(dialog.windowTitle().toStdString(), "انتقال ساختار حسابها به اکسل");
      EXPECT_EQ(dialog.acceptMode(), QFileDialog::AcceptSave);
      EXPECT_EQ(dialog.layoutDirection(), Qt::RightToLeft);
      EXPECT_EQ(QFileInfo(dialog.selectedFiles().front()).fileName().toStdString(),
                day + " سرفصل حسابها.xlsx");
      EXPECT_EQ(dialog.labelText(QFileDialog::FileName).toStdString(), "نام فايل:");
      EXPECT_EQ(dialog.labelText(QFileDialog::Accept).toStdString(), "ثبت");
      EXPECT_EQ(dialog.labelText(QFileDialog::Reject).toStdString(), "انصراف");
      answer(question, folder.path() / "chart", wanted ? "accept" : "reject");
    };
    EXPECT_EQ(answering([&] { writer.call("ExportToExcel", {"Select Code, Title From vwAccount"}); }, choose),
              wanted ? 2 : 1);
    EXPECT_EQ(std::filesystem::exists(file), wanted);
  }
  EXPECT_GT(std::filesystem::file_size(file), 8000U);
  EXPECT_EQ(message, "اتمام عمليات|" + std::to_string(database.number("select count(*) from tblAccount")) +
                         " حساب در اين فايل نوشته شد:\n" + file.string());
  QDesktopServices::unsetUrlHandler("file");
  EXPECT_EQ(browser.source().toLocalFile().toStdString(), folder.path().string());
  // A failure is reported, and leaves the existing file.
  const auto intoOther = [&](QWidget& dialog) { answer(dialog, folder.path() / "other", "accept"); };
  int step = 0;
  EXPECT_EQ(answering([&] { writer.call("ExportToExcel", {"Select Nothing From vwAccount"}); },
                      [&](QWidget& dialog) {
                        if (step++ == 0) return intoOther(dialog);
                        EXPECT_NE(dialog.findChild<QTextEdit*>()->toPlainText().indexOf("Nothing"), -1);
                        dialog.close();
                      }),
            2);
  for (const std::vector<data::Value>& row : {std::vector<data::Value>{"زمان", "کد"}, {"1405/09/02", "11"}})
    writer.call("AddRow", row);
  EXPECT_EQ(answering([&] { writer.call("ExportRows", {}); },
                      [&](QWidget& dialog) {
                        auto* const told = dialog.findChild<QTextEdit*>();
                        if (told == nullptr) return answer(dialog, folder.path() / "rows", "accept");
                        EXPECT_TRUE(told->toPlainText().startsWith(QString::fromUtf8("1 رديف در اين فايل")));
                        dialog.close();
                      }),
            2);
  EXPECT_TRUE(std::filesystem::exists(folder.path() / "rows.xlsx"));
  Impatient person;
  application->installEventFilter(&person);
  EXPECT_EQ(answering([&] { writer.call("ExportToExcel", {"Select Code From vwAccount"}); }, intoOther), 1);
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "other.xlsx"));
}

TEST_F(Dialogs, TheComponentsKnowTheirMembersAndNoOthers) {
  using shell::ComponentError;
  for (const std::vector<data::Value>& arguments : {std::vector<data::Value>(), {"a", "b"}})
    EXPECT_THROW(writer.call("ExportToExcel", arguments), ComponentError);
  EXPECT_THROW(writer.call("ClearShow", {}), ComponentError);
  EXPECT_THROW(editor.call("ClearShow", {1}), ComponentError);
  EXPECT_THROW(editor.call("Show", {}), ComponentError);
  EXPECT_THROW(writer.set("Form", 1), ComponentError);
  EXPECT_THROW(editor.set("FormTypeID", 301), ComponentError);
  EXPECT_THROW(static_cast<void>(writer.get("UserID")), ComponentError);
  EXPECT_THROW(static_cast<void>(editor.get("UserID")), ComponentError);
  EXPECT_NO_THROW(writer.set("FormTypeID", 301));
  EXPECT_THROW(writer.set("FormTypeID", "a"), std::invalid_argument);
}

TEST_F(Dialogs, TheCostCentresComeUpAndGo) {
  EXPECT_EQ(answering([&] { editor.call("ClearShow", {}); },
                      [&](QWidget& screen) {
                        EXPECT_EQ(screen.objectName().toStdString(), "frmCostCenters");
                        EXPECT_EQ(screen.windowTitle().toStdString(), "مراكز هزينه");
                        EXPECT_EQ(screen.findChild<QTableView*>()->model()->rowCount(),
                                  database.number("select count(*) from tblAccCostCenter"));
                        screen.close();
                      }),
            1);
  introduce(editor, "Provider=SQLite;Data Source=/nowhere/chart.db");
  expectTold([&] { editor.call("ClearShow", {}); }, "پوشه فايل پايگاه داده وجود ندارد");
}

}  // namespace
}  // namespace ledgertree::testing
