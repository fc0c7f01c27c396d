#pragma once

#include <QColor>
#include <QString>
#include <cstdint>

namespace ledgertree::shell {
class OutsideComponents;
}

namespace ledgertree::qt {

/// A message with one button or two, or a yes-or-no question, in the caller's colours.
class NoticeDialog {
 public:
  enum class Kind { Notice, Question };
  /// None: the dialog was closed with its title bar, or hasn't been shown yet.
  enum class Answer { None = -1, No = 0, Yes = 1, Second = 2 };

  QString title;
  QString message;
  Kind kind = Kind::Notice;
  /// What a notice offers besides "تاييد"; empty for nothing.
  QString secondButton;
  QColor background = QColor(216, 190, 196);
  QColor button = QColor(125, 89, 99);
  QColor frame = QColor(225, 219, 219);

  /// Shows the dialog in front of everything, and returns when the user has answered. Escape means no, and
  /// the focus starts on the answer that changes nothing. The hourglass is hidden meanwhile, and afterwards
  /// the focus returns to where it was.
  Answer ask();
};

/// A colour from a number with red in the low byte, as third-party components pass colours.
[[nodiscard]] QColor colourOf(std::int32_t number);

/// Registers the dialog as the outside component NoticeKit.NoticeDialog, with its members FormTitle,
/// FormMessage, FormType (0 notice, 1 question), FormBackColor, BtmBackColor, FrameBackColor, the call
/// ClearShow, and Resualt: 1 yes, 0 no, -1 without an answer.
void registerNoticeDialog(shell::OutsideComponents& components);

}  // namespace ledgertree::qt
