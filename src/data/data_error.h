#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace ledgertree::data {

/// What a person hears of a statement that the engine takes amiss; the engine's own words follow behind.
inline constexpr const char* kStatementRefused =
    "پايگاه داده اين دستور را نپذيرفت و آن را انجام نداد. مدير پايگاه داده را آگاه نماييد.";

/// The same of a command that ran out of its time: one that wrote nothing, and one of which nobody knows; and
/// of a reading that the person gave up.
inline constexpr const char* kStopped =
    "پايگاه داده در زمان تعيين شده پاسخ نداد و عمليات متوقف شد. دوباره تلاش نماييد.";
inline constexpr const char* kUnanswered =
    "پايگاه داده در زمان تعيين شده پاسخ نداد و معلوم نيست که عمليات انجام شده باشد. اطلاعات را دوباره "
    "بخوانيد و دوباره تلاش نماييد.";
inline constexpr const char* kGivenUp =
    "به خواست شما انتظار براي پاسخ پايگاه داده پايان يافت. آنچه روي صفحه است شايد کامل نباشد؛ در صورت نياز "
    "دوباره تلاش نماييد.";

/// A failure of the database or of the road to it. It carries no secret: neither the connection text nor a
/// password is ever put into one.
class DataError : public std::runtime_error {
 public:
  /// What a caller may want to tell apart. Most callers don't: an uncaught failure becomes a notice.
  enum class Reason {
    Statement,   ///< the engine refused or failed a statement
    Constraint,  ///< a key, a reference or a rule of the database refused a write
    Denied,      ///< the user has no right to it
    Connection,  ///< the connection can't be opened, or broke
    Busy,        ///< another program holds the data, and the time-out ran out
    TimeOut,     ///< the statement ran past its time-out; see leavesOpen()
    Storage,     ///< the disk is full, read-only or failing
    Misuse,      ///< an operation was called in a state that doesn't allow it
    TooLong,     ///< a text is longer than the parameter it is for
    Cancelled,   ///< a search was given up for a newer one, or a reading by the person
  };

  DataError(Reason reason, int number, const std::string& message, std::string statement = {})
      : std::runtime_error(message), reason_(reason), number_(number), statement_(std::move(statement)) {}

  [[nodiscard]] Reason reason() const { return reason_; }
  /// Of a statement that is known to be over, with nothing done.
  [[nodiscard]] DataError undone() && {
    undone_ = true;
    return std::move(*this);
  }
  /// Whether nobody knows if the statement was carried out, or still will be: its answer never came.
  [[nodiscard]] bool leavesOpen() const {
    return (reason_ == Reason::Connection || reason_ == Reason::TimeOut) && !undone_;
  }
  /// A further failure of an outage that the person has heard of.
  [[nodiscard]] DataError repeated() && {
    repeated_ = true;
    return std::move(*this);
  }
  [[nodiscard]] bool isRepeated() const { return repeated_; }
  /// Whether the failure came at the end of a long wait, which a command that follows at once would share.
  [[nodiscard]] bool cameLate() const {
    return reason_ == Reason::Busy || reason_ == Reason::TimeOut || reason_ == Reason::Connection;
  }
  /// The engine's own number of the failure; 0 where it has none.
  [[nodiscard]] int number() const { return number_; }
  /// The statement or procedure that failed; empty where there is none.
  [[nodiscard]] const std::string& statement() const { return statement_; }

 private:
  Reason reason_;
  int number_;
  std::string statement_;
  bool undone_ = false;
  bool repeated_ = false;
};

}  // namespace ledgertree::data
