#include "office_window.h"

#include <ledgertree/screen_in_host.h>

#include <QCloseEvent>
#include <QInputDialog>
#include <QMenuBar>
#include <QStatusBar>
#include <QTabWidget>
#include <QTextEdit>
#include <limits>
#include <utility>

OfficeWindow::OfficeWindow(QString connectionText, const Identity& identity)
    : connectionText_(std::move(connectionText)), identity_(identity), documents_(new QTabWidget(this)) {
  setWindowTitle(tr("Ledger Office"));
  resize(1180, 760);
  fillMenus();
  documents_->setTabsClosable(true);
  documents_->setDocumentMode(true);
  documents_->addTab(new QTextEdit(documents_), tr("Notes"));
  connect(documents_, &QTabWidget::tabCloseRequested, this, &OfficeWindow::closeTab);
  setCentralWidget(documents_);
  statusBar()->showMessage(tr("Signed in: user %1").arg(identity_.user));
  // The user left the screen by its own button, Escape or menu: its tab closes too.
  ledgertree::onScreenLeft([this] { removePage(); });
}

void OfficeWindow::fillMenus() {
  QMenu& file = *menuBar()->addMenu(tr("&File"));
  file.addAction(tr("&New note"), QKeySequence::New, this,
                 [this] { documents_->addTab(new QTextEdit(documents_), tr("Notes")); });
  file.addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
  QMenu& books = *menuBar()->addMenu(tr("&Books"));
  books.addAction(tr("&Chart of accounts"), QKeySequence(tr("Ctrl+Shift+C")), this, &OfficeWindow::showChart);
  books.addAction(tr("&Account…"), this, &OfficeWindow::askForAccount);
}

void OfficeWindow::showChart() { settle(bringUpPage().open()); }

void OfficeWindow::showAccount(int accountID) { settle(bringUpPage().openAccount(accountID)); }

void OfficeWindow::askForAccount() {
  bool chosen = false;
  const int accountID = QInputDialog::getInt(this, tr("Account"), tr("ID of the account"), 1, 1,
                                             std::numeric_limits<int>::max(), 1, &chosen);
  if (chosen) showAccount(accountID);
}

ChartPage& OfficeWindow::bringUpPage() {
  if (page_ == nullptr) {
    page_ = new ChartPage(connectionText_, identity_, documents_);
    documents_->addTab(page_, tr("Chart of accounts"));
  }
  documents_->setCurrentWidget(page_);
  return *page_;
}

void OfficeWindow::settle(bool open) {
  if (!open) removePage();
}

void OfficeWindow::removePage() {
  if (page_ == nullptr) return;
  documents_->removeTab(documents_->indexOf(page_));
  delete std::exchange(page_, nullptr);
}

void OfficeWindow::closeTab(int index) {
  QWidget* document = documents_->widget(index);
  if (document != page_) {
    documents_->removeTab(index);
    delete document;
  } else if (ledgertree::leaveScreen()) {
    removePage();
  }
}

void OfficeWindow::closeEvent(QCloseEvent* event) {
  // Unsaved changes aren't dropped without asking.
  if (page_ != nullptr) documents_->setCurrentWidget(page_);
  event->setAccepted(ledgertree::leaveScreen());
}
