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

constexpr const char* kSuffix = ".xlsx";

/// In the user's documents folder, or the home folder if there is none, named by the day: "1405-09-01 سرفصل
/// حسابها.xlsx". The day comes first: after right-to-left letters, it would be displayed in reverse order.
QString proposedFile(const char* name) {
  const QDate today = QDate::currentDate();
  const QString day =
      qt::toQt(data::toPersianDate({.year = today.year(), .month = today.month(), .day = today.day()}))
          .replace('/', '-');
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QDir(QDir(folder).exists() && !folder.isEmpty() ? folder : QDir::homePath())
      .filePath(day + " " + QString::fromUtf8(name) + kSuffix);
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
QString askForFile(const char* title, const char* name) {
  const qt::HourglassPause pause;
  const PersianWords words;
  QFileDialog dialog(QApplication::activeWindow(), QString::fromUtf8(title), proposedFile(name),
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
void tellWritten(std::int64_t rows, const char* unit, const QString& file) {
  qt::NoticeDialog notice;
  notice.title = QString::fromUtf8("اتمام عمليات");
  notice.message = QString::fromUtf8("%1 %2 در اين فايل نوشته شد:\n").arg(rows).arg(QString::fromUtf8(unit)) +
                   QDir::toNativeSeparators(file);
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
  static constexpr Said kChart{"انتقال ساختار حسابها به اکسل", "سرفصل حسابها", "حساب"};
  static constexpr Said kRows{"انتقال سابقه حسابها به اکسل", "سابقه حسابها", "رديف"};
  if (member == "AddRow") return rows_.push_back(arguments);
  const bool given = member == "ExportRows" && arguments.empty();
  if (!given && (member != "ExportToExcel" || arguments.size() != 1)) components::refuseMember(member);
  try {
    if (given) return exportFrom([this](const auto& show) { showRows(show); }, kRows);
    const auto connection = components::engines().open(given_.OLEConnectionString);
    const std::string statement = arguments.front().toText();
    exportFrom([&](const auto& show) { connection->walk(statement, show); }, kChart);
  } catch (const std::exception& failure) {
    tell(qt::toQt(failure.what()));
  }
}

void SheetWriter::showRows(const std::function<bool(const data::Rows& row)>& show) const {
  data::Rows row;
  if (!rows_.empty())
    for (const data::Value& heading : rows_.front()) row.addColumn(heading.toText());
  bool goesOn = true;
  for (std::size_t place = 1; goesOn && place < rows_.size(); ++place) {
    row.clearRows();
    for (std::size_t column = 0; column < row.columns().size(); ++column)
      row.addText(column < rows_[place].size() ? rows_[place][column].toText() : std::string());
    goesOn = show(row);
  }
}

void SheetWriter::exportFrom(const Source& source, const Said& said) {
  const QString file = askForFile(said.title, said.file);
  if (file.isEmpty()) return;
  // A cancelled export needs no message.
  if (const std::int64_t rows = writeShowingProgress(source, said, file); rows > 0)
    tellWritten(rows, said.unit, file);
}

std::int64_t SheetWriter::writeShowingProgress(const Source& source, const Said& said, const QString& file) {
  const QString title = QString::fromUtf8(said.title);
  QProgressDialog dialog(title, QString::fromUtf8("انصراف"), 0, 0, QApplication::activeWindow());
  dialog.setWindowTitle(title);
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
  const std::string name = qt::fromQt(file);
  const QString unit = QString::fromUtf8(said.unit);
  const auto show = [&](std::int64_t done, std::int64_t all) {
    if (all > 0)
      dialog.setLabelText(done < all ? QString::fromUtf8("%1 %3 از %2").arg(done).arg(all).arg(unit)
                                     : QString::fromUtf8("فايل در حال بسته شدن است..."));
    dialog.setMaximum(static_cast<int>(all));
    dialog.setValue(static_cast<int>(done));  // paints
    return !dialog.wasCanceled();
  };
  return writeSheet(source, std::filesystem::path(std::u8string(name.begin(), name.end())), show);
}

}  // namespace ledgertree::sheetkit
