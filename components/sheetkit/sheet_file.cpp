#include "sheetkit/sheet_file.h"

#include <algorithm>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#include "sheetkit/sheet_layout.h"
#include "sheetkit/workbook.h"

namespace ledgertree::sheetkit {

namespace {

namespace fs = std::filesystem;

/// A temporary file next to another one; deleted with the object unless it has replaced that file.
class FileInTheMaking {
 public:
  explicit FileInTheMaking(const fs::path& file) : file_(file), own_(file) {
    own_ += "." + std::to_string(std::random_device{}()) + ".part";
    // Reports an unwritable location before the long work.
    if (!std::ofstream(own_, std::ios::binary)) refuseFile();
  }
  FileInTheMaking(const FileInTheMaking&) = delete;
  FileInTheMaking& operator=(const FileInTheMaking&) = delete;
  ~FileInTheMaking() {
    std::error_code ignored;
    fs::remove(own_, ignored);
  }
  [[nodiscard]] const fs::path& path() const { return own_; }
  void takePlace() const {
    std::error_code failure;
    fs::rename(own_, file_, failure);
    if (failure)
      throw std::runtime_error(
          "فايل صفحه گسترده جايگزين فايل پيشين نشد. اگر آن فايل در برنامه ديگري باز است، آن را ببنديد و "
          "دوباره تلاش کنيد.");
  }

 private:
  fs::path file_;
  fs::path own_;
};

/// Rows between two progress calls.
constexpr std::int64_t kRowsAStep = 256;

}  // namespace

std::int64_t writeSheet(data::Connection& connection, std::string_view statement, const fs::path& file,
                        const Progress& progress, std::int64_t mostRows) {
  const Source source = [&](const auto& show) { connection.walk(statement, show); };
  return writeSheet(source, file, progress, mostRows);
}

std::int64_t writeSheet(const Source& source, const fs::path& file, const Progress& progress,
                        std::int64_t mostRows) {
  SheetLayout layout;
  bool goesOn = progress(0, 0);
  if (!goesOn) return 0;
  source([&](const data::Rows& row) {
    layout.measure(row);
    if (layout.rows() % kRowsAStep == 0) goesOn = progress(layout.rows(), 0);
    return goesOn && layout.rows() <= mostRows;
  });
  if (!goesOn) return 0;
  const auto refuseTooMany = [mostRows] {
    throw std::runtime_error("تعداد حسابها از گنجايش صفحه گسترده (" + std::to_string(mostRows) +
                             " رديف) بيشتر است. فايلي نوشته نشد.");
  };
  if (layout.rows() > mostRows) refuseTooMany();
  if (layout.rows() == 0) throw std::runtime_error("حسابي براي انتقال وجود ندارد. فايلي نوشته نشد.");

  const FileInTheMaking made(file);
  std::int64_t done = 0;
  Workbook book(made.path(), layout);
  source([&](const data::Rows& row) {
    // Accounts may have been added since the count.
    if (done == mostRows) refuseTooMany();
    book.add(row);
    if (++done % kRowsAStep == 0) goesOn = progress(done, layout.rows());
    return goesOn;
  });
  if (!goesOn || !progress(done, std::max(done, layout.rows()))) return 0;
  book.close();
  made.takePlace();
  return done;
}

}  // namespace ledgertree::sheetkit
