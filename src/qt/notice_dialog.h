#pragma once

#include <QColor>
#include <QString>
#include <cstdint>

namespace ledgertree::shell {
class OutsideComponents;
}

namespace ledgertree::qt {

/// A message with one button or two, or a question with yes and no, in the colours that its caller gives.
class NoticeDialog {
 public:
  enum class Kind { Notice, Question };
  /// None: the dialog was closed by its frame, or isn't asked yet.
  enum class Answer { None = -1, No = 0, Yes = 1, Second = 2 };

  QString title;
  QString message;
  Kind kind = Kind::Notice;
  /// What else a notice offers, beside "تاييد"; empty for nothing.
  QString secondButton;
  QColor background = QColor(216, 190, 196);
  QColor button = QColor(125, 89, 99);
  QColor frame = QColor(225, 219, 219);

  /// Shows the dialog in front of everything, and returns when the person has answered. Escape is no; the
  /// focus starts on the answer that changes nothing. The hourglass is off the screen meanwhile, and
  /// afterwards the focus is where it was.
  Answer ask();
};

/// The colour of a number whose low byte is red, as outside components take colours.
[[nodiscard]] QColor colourOf(std::int32_t number);

/// Makes the dialog known as the outside component NoticeKit.NoticeDialog, with its members FormTitle,
/// FormMessage, FormType (0 notice, 1 question), FormBackColor, BtmBackColor, FrameBackColor, the call
/// ClearShow, and Resualt: 1 yes, 0 no, -1 without an answer.
void registerNoticeDialog(shell::OutsideComponents& components);

}  // namespace ledgertree::qt
