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

/// Makes F1 open the guide in every screen of the process that offers it (see help_offer.h). Call it once the
/// QApplication exists; a second call does nothing.
void installGuide();

/// The text of the guide, laid out from right to left. Pictures shrink to the available width.
class GuideBrowser : public QTextBrowser {
 public:
  explicit GuideBrowser(QWidget& parent);
  /// A heading of the guide, and the names by which a screen or a link refers to it.
  struct Heading {
    QStringList names;
    QString title;
    int level;
    int position;
  };

  [[nodiscard]] const std::vector<Heading>& headings() const { return headings_; }
  [[nodiscard]] const Heading* find(const QString& name) const;
  void scrollTo(int position);
  /// Goes to the next occurrence of a text (or the previous one), wrapping around at the end. Letters with
  /// two forms (ي and ی, ك and ک) are equal, and joiners are ignored.
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

/// The window of the guide: the contents on the right, a search field (Ctrl+F), the text. It is modeless, and
/// works above a modal screen too: it stays above each window that opens, and above the one below when that
/// closes. Escape closes it and puts the focus back.
class GuideWindow : public QWidget {
 public:
  /// Opens it, or brings it to the front, at the first of the sections that exists, or at the beginning; and
  /// at the line of a message, if there is one.
  static void open(QWidget& asker, const QStringList& sections, const QString& message);
  /// The open guide; null if there is none.
  [[nodiscard]] static GuideWindow* current();
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
  /// Shows the next occurrence of a text, and selects its section in the contents; false if there is none.
  bool find(const QString& text, bool backwards = false);
  /// Selects the section of a position in the contents.
  void markContents(int position);
  void searchOn(bool backwards);
  void standAbove(QWidget& window);
  void standAboveNext();

  GuideBrowser* text_;
  QListWidget* contents_;
  QLineEdit* search_;
  QString section_;
  QPointer<QWidget> above_;
  QPointer<QWidget> focus_;  ///< what had the focus before the guide was opened
};

}  // namespace ledgertree::qt
