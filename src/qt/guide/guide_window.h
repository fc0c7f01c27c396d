#pragma once

#include <QImage>
#include <QPointer>
#include <QTextBlock>
#include <QTextBrowser>
#include <QUrl>
#include <QWidget>
#include <vector>

class QLineEdit;
class QListWidget;
class QTextTable;

namespace ledgertree::qt {

/// From now on F1 opens the guide in every screen of the process that offers it (see help_offer.h). Call it
/// when the QApplication is made; a second call does nothing.
void installGuide();

/// The guide, drawn from right to left. Its pictures are as wide as fits.
class GuideBrowser : public QTextBrowser {
 public:
  explicit GuideBrowser(QWidget& parent);
  /// A heading of the guide, and the names by which a screen or a link finds it.
  struct Heading {
    QStringList names;
    QString title;
    int level;
    int position;
  };

  [[nodiscard]] const std::vector<Heading>& headings() const { return headings_; }
  [[nodiscard]] const Heading* find(const QString& name) const;
  void scrollTo(int position);
  /// Goes on to the next place of a text (or the one before), behind the end from the beginning. The letters
  /// that are written in two ways (ي and ی, ك and ک) are the same, and joiners don't count.
  bool search(const QString& text, bool backwards = false);

  QVariant loadResource(int type, const QUrl& name) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void readGuide();
  void layOut();
  void layOut(QTextTable& table);
  [[nodiscard]] QImage picture(const QUrl& name) const;
  void scrollTo(const QTextBlock& block);

  std::vector<Heading> headings_;
  QList<QUrl> pictures_;
};

/// The window of the guide: the contents on the right, a line to search (Ctrl+F), the text. It is modeless,
/// and usable also above a modal screen: it stands above whatever window asks or comes up, and when that one
/// goes, above the one below it. Escape closes it, and the focus is where it was.
class GuideWindow : public QWidget {
 public:
  /// Opens it, or brings it to the front, at the first of the sections that there is, or at the beginning;
  /// and at the line of a message, if that is there.
  static void open(QWidget& asker, const QStringList& sections, const QString& message);
  /// The guide that is open; null where none is.
  [[nodiscard]] static GuideWindow* standing();
  [[nodiscard]] QString section() const { return section_; }
  [[nodiscard]] GuideBrowser& text() { return *text_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  GuideWindow();
  void makeSearchLine();
  void fillContents();
  void layOut();
  void showSection(const QStringList& names);
  /// Shows the next place of a text, and its section in the contents; false where there is none.
  bool find(const QString& text, bool backwards = false);
  /// The section of a place becomes the current one of the contents.
  void markContents(int position);
  void searchOn(bool backwards);
  void standAbove(QWidget& window);
  void standAboveNext();

  GuideBrowser* text_;
  QListWidget* contents_;
  QLineEdit* search_;
  QString section_;
  QPointer<QWidget> above_;
  QPointer<QWidget> focus_;  ///< what had the focus before the guide
};

}  // namespace ledgertree::qt
