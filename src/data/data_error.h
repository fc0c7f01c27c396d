#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace ledgertree::data {

/// What the user is told of a statement that the engine refuses; the engine's own message follows.
inline constexpr const char* kStatementRefused =
    "پايگاه داده اين دستور را نپذيرفت و آن را انجام نداد. مدير پايگاه داده را آگاه نماييد.";

/// The same for a command that timed out: one that wrote nothing, and one whose outcome is unknown; and for a
/// read that the user cancelled.
inline constexpr const char* kStopped =
    "پايگاه داده در زمان تعيين شده پاسخ نداد و عمليات متوقف شد. دوباره تلاش نماييد.";
inline constexpr const char* kUnanswered =
    "پايگاه داده در زمان تعيين شده پاسخ نداد و معلوم نيست که عمليات انجام شده باشد. اطلاعات را دوباره "
    "بخوانيد و دوباره تلاش نماييد.";
inline constexpr const char* kGivenUp =
    "به خواست شما انتظار براي پاسخ پايگاه داده پايان يافت. آنچه روي صفحه است شايد کامل نباشد؛ در صورت نياز "
    "دوباره تلاش نماييد.";

/// A failure of the database or of the connection to it. It contains no
/// secrets: neither the connection text nor a password.
class DataError : public std::runtime_error {
 public:
  /// For callers that distinguish failures. Most don't: an uncaught failure becomes a notice.
  enum class Reason {
    Statement,   ///< the engine refused or failed a statement
    Constraint,  ///< a key, a reference or a rule of the database refused a write
    Denied,      ///< the user lacks the right
    Connection,  ///< the connection couldn't be opened, or was lost
    Busy,        ///< timed out waiting for another program's lock
    TimeOut,     ///< the statement timed out; see leavesOpen()
    Storage,     ///< the disk is full, read-only or failing
    Misuse,      ///< an operation called in the wrong state
    TooLong,     ///< a text is too long for its parameter
    Cancelled,   ///< a search was superseded by a newer one, or the user cancelled a read
  };

  DataError(Reason reason, int number, const std::string& message, std::string statement = {})
      : std::runtime_error(message), reason_(reason), number_(number), statement_(std::move(statement)) {}

  [[nodiscard]] Reason reason() const { return reason_; }
  /// Marks the statement as known to have ended with nothing done.
  [[nodiscard]] DataError undone() && {
    undone_ = true;
    return std::move(*this);
  }
  /// Whether it is unknown if the statement was carried out, or still will be: its answer never came.
  [[nodiscard]] bool leavesOpen() const {
    return (reason_ == Reason::Connection || reason_ == Reason::TimeOut) && !undone_;
  }
  /// Marks a further failure of an outage that the user has been told of.
  [[nodiscard]] DataError repeated() && {
    repeated_ = true;
    return std::move(*this);
  }
  [[nodiscard]] bool isRepeated() const { return repeated_; }
  /// Whether the failure came after a long wait, which an immediate next command would repeat.
  [[nodiscard]] bool cameLate() const {
    return reason_ == Reason::Busy || reason_ == Reason::TimeOut || reason_ == Reason::Connection;
  }
  /// The engine's own error number; 0 if it has none.
  [[nodiscard]] int number() const { return number_; }
  /// The statement or procedure that failed; empty if there is none.
  [[nodiscard]] const std::string& statement() const { return statement_; }

 private:
  Reason reason_;
  int number_;
  std::string statement_;
  bool undone_ = false;
  bool repeated_ = false;
};

}  // namespace ledgertree::data
