#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QImage>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>
#include <algorithm>
#include <utility>

#include "qt/guide/guide_window.h"

/// The resources of a static library have to be initialised. The macro doesn't work inside a namespace.
static void makeGuideKnown() { Q_INIT_RESOURCE(guide); }

namespace ledgertree::qt {

namespace {

constexpr const char* kFolder = ":/ledgertree/guide/";

/// The pattern that finds a text as the user means it.
QRegularExpression patternOf(const QString& text) {
  QString pattern;
  for (const QChar unit : text.simplified()) {
    if (QString::fromUtf8("یيى").contains(unit)) {
      pattern += QString::fromUtf8("[یيى]");
    } else if (QString::fromUtf8("کك").contains(unit)) {
      pattern += QString::fromUtf8("[کك]");
    } else if (unit == QChar(0x200C)) {
      continue;
    } else if (unit.isSpace()) {
      pattern += "[\\s\\x{200C}]+";
      continue;
    } else {
      pattern += QRegularExpression::escape(QString(unit));
    }
    pattern += "\\x{200C}?";
  }
  return QRegularExpression(pattern, QRegularExpression::CaseInsensitiveOption);
}

}  // namespace

GuideBrowser::GuideBrowser(QWidget& parent) : QTextBrowser(&parent) {
  makeGuideKnown();
  setOpenLinks(false);
  setFrameShape(QFrame::NoFrame);
  // Lines wrap at the width; table borders stick out by a pixel, which isn't worth a scroll bar.
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  document()->setDocumentMargin(fontMetrics().height());
  readGuide();
  layOut();
}

void GuideBrowser::readGuide() {
  QFile file(QString(kFolder) + "guide-fa.md");
  if (!file.open(QIODevice::ReadOnly)) return;
  // Marks for other viewers (the direction, the names of headings) aren't text here.
  static const QRegularExpression name("^<a id=\"([^\"]+)\"></a>$");
  QStringList lines;
  QStringList names;
  std::vector<QStringList> namesOfHeadings;
  for (const QString& line : QString::fromUtf8(file.readAll()).split('\n')) {
    if (const auto match = name.match(line); match.hasMatch()) {
      names += match.captured(1);
    } else if (line.startsWith('|')) {
      // Columns are laid out from left to right, so the first one goes last.
      QStringList cells = line.split('|');
      std::reverse(cells.begin(), cells.end());
      lines += cells.join('|');
    } else if (!line.startsWith("<div") && !line.startsWith("</div")) {
      if (line.startsWith('#')) namesOfHeadings.push_back(std::exchange(names, {}));
      lines += line;
    }
  }
  setMarkdown(lines.join('\n'));

  std::size_t next = 0;
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    const int level = block.blockFormat().headingLevel();
    if (level == 0 || next == namesOfHeadings.size()) continue;
    headings_.push_back({namesOfHeadings[next++], block.text().trimmed(), level, block.position()});
  }
}

void GuideBrowser::layOut() {
  QTextOption option = document()->defaultTextOption();
  option.setTextDirection(Qt::RightToLeft);
  document()->setDefaultTextOption(option);
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    const bool isPicture = block.text() == QString(QChar::ObjectReplacementCharacter);
    QTextBlockFormat lines;
    lines.setLayoutDirection(Qt::RightToLeft);
    if (!isPicture) lines.setLineHeight(130, QTextBlockFormat::ProportionalHeight);
    QTextCursor(block).mergeBlockFormat(lines);
  }
  for (QTextFrame* frame : document()->rootFrame()->childFrames()) {
    if (auto* table = qobject_cast<QTextTable*>(frame); table != nullptr) layOut(*table);
  }
}

void GuideBrowser::layOut(QTextTable& table) {
  QTextTableFormat format = table.format();
  format.setWidth(QTextLength(QTextLength::PercentageLength, 100));
  format.setCellPadding(fontMetrics().height() / 3.0);
  format.setBorderCollapse(true);
  format.setBorder(1);
  format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
  format.setBorderBrush(QColor(0xB8, 0xC6, 0xD8));
  // A short name next to its meaning; or, from the right, a message, its cause and the remedy.
  const QList<int> shares = table.columns() == 2 ? QList{70, 30} : QList{30, 28, 42};
  QList<QTextLength> widths;
  for (const int share : shares) widths += QTextLength(QTextLength::PercentageLength, share);
  format.setColumnWidthConstraints(widths);
  table.setFormat(format);
  for (int column = 0; column < table.columns(); ++column) {
    QTextTableCell cell = table.cellAt(0, column);
    QTextCharFormat head = cell.format();
    head.setBackground(QColor(0xE3, 0xED, 0xFA));
    cell.setFormat(head);
  }
}

const GuideBrowser::Heading* GuideBrowser::find(const QString& name) const {
  const auto found = std::find_if(headings_.begin(), headings_.end(),
                                  [&](const Heading& heading) { return heading.names.contains(name); });
  return found == headings_.end() ? nullptr : &*found;
}

void GuideBrowser::scrollTo(int position) {
  QTextCursor cursor(document());
  cursor.setPosition(position);
  setTextCursor(cursor);
  scrollTo(cursor.block());
}

void GuideBrowser::scrollTo(const QTextBlock& block) {
  // Positions are right only once the entire layout is done.
  static_cast<void>(document()->documentLayout()->documentSize());
  verticalScrollBar()->setValue(
      static_cast<int>(document()->documentLayout()->blockBoundingRect(block).top()));
}

bool GuideBrowser::search(const QString& text, bool backwards) {
  const QRegularExpression pattern = patternOf(text);
  const auto flags = backwards ? QTextDocument::FindBackward : QTextDocument::FindFlags();
  QTextCursor found = document()->find(pattern, textCursor(), flags);
  if (found.isNull()) {
    QTextCursor edge(document());
    edge.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
    found = document()->find(pattern, edge, flags);
  }
  if (found.isNull()) return false;
  setTextCursor(found);
  // With some context, not at the edge of the view.
  QScrollBar& bar = *verticalScrollBar();
  const QRect place = cursorRect();
  if (place.top() < 0 || place.bottom() > viewport()->height() * 2 / 3)
    bar.setValue(bar.value() + place.top() - viewport()->height() / 3);
  return true;
}

QVariant GuideBrowser::loadResource(int type, const QUrl& name) {
  if (type != QTextDocument::ImageResource) return QTextBrowser::loadResource(type, name);
  if (!pictures_.contains(name)) pictures_ += name;
  return picture(name);
}

QImage GuideBrowser::picture(const QUrl& name) const {
  const QImage whole = QImage(QString(kFolder) + name.path()).convertToFormat(QImage::Format_RGB32);
  const int room = std::max(viewport()->width() - 3 * fontMetrics().height(), 200);
  return whole.width() <= room ? whole : whole.scaledToWidth(room, Qt::SmoothTransformation);
}

void GuideBrowser::resizeEvent(QResizeEvent* event) {
  const QTextBlock first = cursorForPosition({viewport()->width() / 2, 2}).block();
  for (const QUrl& name : pictures_)
    document()->addResource(QTextDocument::ImageResource, name, picture(name));
  document()->markContentsDirty(0, document()->characterCount());
  QTextBrowser::resizeEvent(event);
  scrollTo(first);
}

}  // namespace ledgertree::qt
