#include "sheetkit/sheet_writer.h"

#include <QApplication>
#include <QDate>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QProgressBar>
#include <QProgressDialog>
#include <QPushButton>
#include <QStandardPaths>
#include <QTranslator>
#include <QUrl>
#include <exception>
#include <string>
#include <utility>

#include "data/persian_calendar.h"
#include "qt/appearance.h"
#include "qt/hourglass.h"
#include "qt/notice_dialog.h"
#include "qt/text.h"
#include "sheetkit/sheet_file.h"
#include "support/plugin_entry.h"

namespace ledgertree::sheetkit {

namespace {

constexpr const char* kTitle = "انتقال ساختار حسابها به اکسل";
constexpr const char* kSuffix = ".xlsx";

/// In the user's documents folder, or the home folder if there is none, named by the day: "1405-09-01 سرفصل
/// حسابها.xlsx". The day comes first: after right-to-left letters, it would be displayed in reverse order.
QString proposedFile() {
  const QDate today = QDate::currentDate();
  const QString day =
      qt::toQt(data::toPersianDate({.year = today.year(), .month = today.month(), .day = today.day()}))
          .replace('/', '-');
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QDir(QDir(folder).exists() && !folder.isEmpty() ? folder : QDir::homePath())
      .filePath(day + QString::fromUtf8(" سرفصل حسابها") + kSuffix);
}

/// Puts the toolkit's own texts, such as the overwrite question, into Persian for the object's lifetime.
class PersianWords {
 public:
  PersianWords() {
    if (words_.load("qtbase_fa", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
      QCoreApplication::installTranslator(&words_);
  }
  PersianWords(const PersianWords&) = delete;
  PersianWords& operator=(const PersianWords&) = delete;
  ~PersianWords() { QCoreApplication::removeTranslator(&words_); }

 private:
  QTranslator words_;
};

/// Empty if the user cancels.
QString askForFile() {
  const qt::HourglassPause pause;
  const PersianWords words;
  QFileDialog dialog(QApplication::activeWindow(), QString::fromUtf8(kTitle), proposedFile(),
                     QString::fromUtf8("صفحه گسترده (*.xlsx)"));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix("xlsx");
  dialog.setLayoutDirection(Qt::RightToLeft);
  const std::pair<QFileDialog::DialogLabel, const char*> labels[] = {{QFileDialog::LookIn, "پوشه:"},
                                                                     {QFileDialog::FileName, "نام فايل:"},
                                                                     {QFileDialog::FileType, "نوع فايل:"},
                                                                     {QFileDialog::Accept, "ثبت"},
                                                                     {QFileDialog::Reject, "انصراف"}};
  for (const auto& [label, text] : labels) dialog.setLabelText(label, QString::fromUtf8(text));
  // From right to left the toolkit lets a caption beside a picture run into the border.
  for (QPushButton* button : dialog.findChildren<QPushButton*>()) button->setIcon({});
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().front();
}

void tell(const QString& message) {
  qt::NoticeDialog notice;
  notice.title = QString::fromUtf8("خطا");
  notice.message = message;
  notice.ask();
}

/// Tells what was written and where; opens the folder if the user wants it.
void tellWritten(std::int64_t accounts, const QString& file) {
  qt::NoticeDialog notice;
  notice.title = QString::fromUtf8("اتمام عمليات");
  notice.message =
      QString::fromUtf8("%1 حساب در اين فايل نوشته شد:\n").arg(accounts) + QDir::toNativeSeparators(file);
  notice.secondButton = QString::fromUtf8("باز کردن پوشه");
  if (notice.ask() == qt::NoticeDialog::Answer::Second)
    QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).path()));
}

}  // namespace

void SheetWriter::set(std::string_view member, const data::Value& value) {
  if (given_.set(member, value)) return;
  if (member != "FormTypeID") components::refuseMember(member);
  // A sheet doesn't depend on the calling screen.
  static_cast<void>(value.toInt32());
}

data::Value SheetWriter::get(std::string_view member) { components::refuseMember(member); }

void SheetWriter::call(std::string_view member, const std::vector<data::Value>& arguments) {
  if (member != "ExportToExcel" || arguments.size() != 1) components::refuseMember(member);
  try {
    exportToExcel(arguments.front().toText());
  } catch (const std::exception& failure) {
    tell(qt::toQt(failure.what()));
  }
}

void SheetWriter::exportToExcel(std::string_view statement) const {
  const QString file = askForFile();
  if (file.isEmpty()) return;
  // A cancelled export needs no message.
  if (const std::int64_t accounts = write(statement, qt::fromQt(file)); accounts > 0)
    tellWritten(accounts, file);
}

std::int64_t SheetWriter::write(std::string_view statement, const std::string& file) const {
  QProgressDialog dialog(QString::fromUtf8(kTitle), QString::fromUtf8("انصراف"), 0, 0,
                         QApplication::activeWindow());
  dialog.setWindowTitle(QString::fromUtf8(kTitle));
  dialog.setLayoutDirection(Qt::RightToLeft);
  qt::dress(dialog);
  dialog.setFont(qt::screenFont());
  dialog.setPalette(qt::screenPalette(qt::toQt(ui::kScreenBackground)));
  // The label tells how far it is.
  if (auto* const bar = dialog.findChild<QProgressBar*>()) bar->setTextVisible(false);
  // Wide enough for the whole title.
  dialog.setMinimumWidth(dialog.fontMetrics().averageCharWidth() * 60);
  dialog.setWindowModality(Qt::ApplicationModal);
  dialog.setMinimumDuration(500);
  // Stays open after the last row, while the file is put together.
  dialog.setAutoReset(false);
  dialog.setAutoClose(false);
  const auto connection = components::engines().open(given_.OLEConnectionString);
  return writeSheet(*connection, statement, std::filesystem::path(std::u8string(file.begin(), file.end())),
                    [&](std::int64_t done, std::int64_t all) {
                      if (all > 0)
                        dialog.setLabelText(done < all ? QString::fromUtf8("%1 حساب از %2").arg(done).arg(all)
                                                       : QString::fromUtf8("فايل در حال بسته شدن است..."));
                      dialog.setMaximum(static_cast<int>(all));
                      dialog.setValue(static_cast<int>(done));  // paints
                      return !dialog.wasCanceled();
                    });
}

}  // namespace ledgertree::sheetkit
