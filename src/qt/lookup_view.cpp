#include "qt/lookup_view.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QScrollBar>
#include <QVBoxLayout>
#include <algorithm>

#include "qt/found_row.h"
#include "qt/keys.h"
#include "qt/text.h"

namespace ledgertree::qt {
namespace {

Stretches typedIn(const ui::LookupField& field, const std::string& text) {
  Stretches units;
  for (const auto& stretch : field.typedIn(text))
    units.push_back({toQt(text.substr(0, stretch.begin)).size(), toQt(text.substr(0, stretch.end)).size()});
  return units;
}

}  // namespace

int LookupModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size()) + (searching_ || shown_.empty() ? 1 : 0);
}

QVariant LookupModel::data(const QModelIndex& index, int role) const {
  if (field_ == nullptr) return {};
  if (role == Qt::TextAlignmentRole)
    return QVariant::fromValue(
        int((index.column() == kCode ? Qt::AlignTrailing : Qt::AlignLeading) | Qt::AlignVCenter));
  if (role != Qt::DisplayRole && role != Qt::ToolTipRole && role != kTypedRole && role != kPlaceRole)
    return {};
  const auto row = static_cast<std::size_t>(index.row());
  if (row >= shown_.size() || row >= field_->rows().size())
    return index.column() != kText || role >= kTypedRole ? QString()
           : searching_                                  ? QStringLiteral("...")
                                                         : QString::fromUtf8("موردي پيدا نشد");
  const ui::LookupRow& found = field_->rows()[row];
  if (role == kPlaceRole) return index.column() == kText ? toQt(found.place) : QString();
  const std::string& cell = index.column() == kCode ? found.code : found.text;
  if (role == kTypedRole) return QVariant::fromValue(typedIn(*field_, cell));
  const QString text = toQt(cell);
  return role == Qt::ToolTipRole ? literalTip(text) : text;
}

Qt::ItemFlags LookupModel::flags(const QModelIndex& index) const {
  const bool row = static_cast<std::size_t>(index.row()) < shown_.size();
  return row ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
}

bool LookupModel::begins(const std::vector<ui::LookupRow>& rows) const {
  return rows.size() >= shown_.size() &&
         std::equal(shown_.begin(), shown_.end(), rows.begin(),
                    [](std::int32_t id, const ui::LookupRow& row) { return id == row.id; });
}

void LookupModel::follow() {
  const auto& rows = field_->rows();
  const bool searching = field_->searching();
  if (shown_.empty() || !begins(rows)) {
    beginResetModel();
    shown_.clear();
    for (const auto& row : rows) shown_.push_back(row.id);
    searching_ = searching;
    endResetModel();
    return;
  }
  const int before = static_cast<int>(shown_.size());
  if (searching_) {
    beginRemoveRows({}, before, before);
    searching_ = false;
    endRemoveRows();
  }
  const int after = static_cast<int>(rows.size()) + (searching ? 1 : 0);
  if (after > before) {
    beginInsertRows({}, before, after - 1);
    for (std::size_t row = shown_.size(); row < rows.size(); ++row) shown_.push_back(rows[row].id);
    searching_ = searching;
    endInsertRows();
  }
  emit dataChanged(index(0, 0), index(before - 1, kColumns - 1));
}

void LookupModel::detach() {
  field_ = nullptr;
  beginResetModel();
  shown_.clear();
  searching_ = false;
  endResetModel();
}

LookupPopup::LookupPopup(QWidget& line, LookupModel& model)
    : QFrame(&line, Qt::ToolTip | Qt::FramelessWindowHint), line_(line) {
  setAttribute(Qt::WA_ShowWithoutActivating);
  setAttribute(Qt::WA_WindowPropagation);
  setFocusPolicy(Qt::NoFocus);
  setLayoutDirection(Qt::RightToLeft);
  setFrameShape(QFrame::Box);
  title_ = new QLabel(this);
  title_->setTextFormat(Qt::PlainText);
  title_->setAutoFillBackground(true);
  title_->setBackgroundRole(QPalette::AlternateBase);
  title_->setContentsMargins(4, 2, 4, 2);
  list_ = new QTreeView(this);
  list_->setModel(&model);
  list_->setFocusPolicy(Qt::NoFocus);
  list_->setFrameShape(QFrame::NoFrame);
  list_->setHeaderHidden(true);
  // As high as its rows: by default a list reserves room for several.
  list_->setMinimumSize(1, 1);
  list_->setRootIsDecorated(false);
  list_->setUniformRowHeights(true);
  list_->setItemDelegate(new FoundRowDelegate(list_));
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->header()->setStretchLastSection(false);
  list_->header()->setSectionResizeMode(LookupModel::kText, QHeaderView::Stretch);
  list_->header()->setSectionResizeMode(LookupModel::kCode, QHeaderView::ResizeToContents);
  count_ = new QLabel(this);
  count_->setTextFormat(Qt::PlainText);
  count_->setContentsMargins(4, 1, 4, 1);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(1, 1, 1, 1);
  layout->setSpacing(0);
  layout->addWidget(title_);
  layout->addWidget(list_);
  layout->addWidget(count_);
  connect(list_, &QTreeView::clicked, this, [this](const QModelIndex& index) {
    if (onPick) onPick(index.row());
  });
  connect(list_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this](int value) {
    if (value == list_->verticalScrollBar()->maximum() && isVisible() && onEnd) onEnd();
  });
}

void LookupPopup::open(const QString& title, const QString& count) {
  title_->setText(title);
  title_->setVisible(!title.isEmpty());
  count_->setText(count);
  count_->setVisible(!count.isEmpty());
  place();
  if (!isVisible()) show();
}

void LookupPopup::place() {
  constexpr int kMostRows = 10;
  constexpr int kLeastWidthInLetters = 36;
  const int line = list_->sizeHintForRow(0) > 0 ? list_->sizeHintForRow(0) : fontMetrics().height() + 4;
  const int rows = std::clamp(list_->model()->rowCount(), 1, kMostRows);
  const auto heightOf = [](const QLabel& label) {
    return label.text().isEmpty() ? 0 : label.sizeHint().height();
  };
  const int height = rows * line + 4 + heightOf(*title_) + heightOf(*count_);
  const int width = std::max(line_.width(), fontMetrics().averageCharWidth() * kLeastWidthInLetters);
  const QRect below(line_.mapToGlobal(QPoint(0, line_.height())), QSize(line_.width(), 0));
  const QRect room = line_.screen()->availableGeometry();
  QRect place(below.left() + below.width() - width, below.top(), width, height);
  if (place.top() + height > room.top() + room.height()) place.moveTop(below.top() - line_.height() - height);
  if (place.left() < room.left()) place.moveLeft(room.left());
  if (place.top() < room.top()) place.moveTop(room.top());
  setGeometry(place);
}

void LookupPopup::highlight(int row) {
  const QModelIndex index = list_->model()->index(row, 0);
  if (!index.isValid()) {
    list_->selectionModel()->clear();
  } else if (list_->currentIndex().row() != row || !list_->selectionModel()->isSelected(index)) {
    list_->selectionModel()->setCurrentIndex(index,
                                             QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
  }
}

LookupView::LookupView(ui::LookupField& control, QWidget& parent, std::function<KeyboardLayout()> layout)
    : ViewOf(control),
      layout_(std::move(layout)),
      box_(new QWidget(&parent)),
      line_(new LineEditor(*box_)),
      arrow_(new QToolButton(line_)),
      tag_(new LanguageTag(*line_)),
      model_(control),
      popup_(new LookupPopup(*line_, model_)) {
  line_->setAlignment(Qt::AlignRight | Qt::AlignAbsolute | Qt::AlignVCenter);
  arrow_->setArrowType(Qt::DownArrow);
  arrow_->setAutoRaise(true);
  arrow_->setFocusPolicy(Qt::NoFocus);
  arrow_->setCursor(Qt::ArrowCursor);
  line_->typist = {.characters = [this](const QKeyEvent& event) { return typedCharacters(event, layout_()); },
                   .filter =
                       [this](char32_t character) {
                         // Typing replaces the text of a held row.
                         if (attached() && character >= U' ' && !this->control().typing()) line_->selectAll();
                         return attached() ? character : char32_t{0};
                       },
                   .key = [this](QKeyEvent& event) { return key(event); },
                   .keyUp = {},
                   .menu = [this](QMenu& menu) { addEntry(menu); }};
  connect(line_, &QLineEdit::textEdited, this, [this](const QString& text) {
    if (echo_ == 0 && attached()) this->control().edited(fromQt(text));
  });
  connect(arrow_, &QToolButton::clicked, this, [this] { toggleList(); });
  popup_->onPick = [this](int row) {
    if (attached()) this->control().pick(row);
  };
  popup_->onEnd = [this] {
    if (echo_ == 0 && attached()) this->control().reachedEnd();
  };
  line_->installEventFilter(this);
  sync(ui::Change::Text);
  sync(ui::Change::Enabled);
}

void LookupView::name(const QString& spoken) {
  line_->setAccessibleName(spoken);
  arrow_->setAccessibleName(QString::fromUtf8("فهرست ") + spoken);
  popup_->list().setAccessibleName(arrow_->accessibleName());
}

void LookupView::addEntry(QMenu& menu) {
  if (!attached() || control().entry() == nullptr) return;
  control().askMenu();
  if (!attached() || !control().entry()->visible()) return;
  const ui::MenuEntry& entry = *control().entry();
  menu.addSeparator();
  QAction* action = menu.addAction(literalCaption(entry.caption()));
  action->setObjectName(toQt(entry.name()));
  action->setEnabled(entry.enabled());
  connect(action, &QAction::triggered, this, [this] {
    if (attached()) control().entry()->click();
  });
}

void LookupView::toggleList() {
  if (!attached()) return;
  const ui::Form::Act act(control().form());
  if (!line_->hasFocus()) control().focus();
  if (!act.formAlive() || !attached()) return;
  static_cast<void>(control().press(ui::Key::F4));
}

void LookupView::colour() {
  QPalette colours = box_->parentWidget()->palette();
  if (!control().isActive())
    colours.setColor(QPalette::Base, colours.color(QPalette::Disabled, QPalette::Base));
  if (control().unchosen()) {
    colours.setColor(QPalette::Base, QColor(0xFD, 0xE7, 0xE4));
    colours.setColor(QPalette::Text, QColor(0x9C, 0x1C, 0x1C));
  }
  line_->setPalette(colours);
  line_->setAccessibleDescription(control().unchosen() ? QString::fromUtf8("انتخاب نشده است")
                                                       : toQt(control().hint()));
}

/// A click opens the list, as in a drop-down; during typing it moves the caret.
bool LookupView::opensList(const QMouseEvent& click) {
  return attached() && !control().typing() && !control().listOpen() && line_->hasFocus() &&
         click.button() == Qt::LeftButton;
}

bool LookupView::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Resize:
    case QEvent::Move:
    case QEvent::LayoutDirectionChange:
      moved();
      break;
    case QEvent::Hide:
    case QEvent::WindowDeactivate:
      popup_->hide();
      break;
    case QEvent::FocusIn:
      if (attached()) focusCame();
      break;
    case QEvent::ToolTip:
      if (attached()) control().lookCloser();
      break;
    case QEvent::KeyPress:
      // Before the focus moves, so that the form can first ask about the picked row.
      if (watched == line_ && attached() && keyOf(*static_cast<QKeyEvent*>(event)) == ui::Key::Tab) {
        static_cast<void>(control().press(ui::Key::Tab));
        if (!attached()) return true;
      }
      break;
    case QEvent::FocusOut:
      focusLeft(static_cast<QFocusEvent*>(event)->reason());
      break;
    case QEvent::MouseButtonPress:
      if (watched == line_ && opensList(*static_cast<QMouseEvent*>(event))) {
        line_->selectAll();
        control().openList();
        return true;
      }
      break;
    default:
      break;
  }
  return ControlView::eventFilter(watched, event);
}

void LookupView::focusCame() {
  if (!control().typing()) line_->selectAll();
  // Continues an interrupted edit at its end.
  if (control().unchosen()) line_->end(false);
  if (control().listOpen()) popup_->open(toQt(control().title()), toQt(control().count()));
}

void LookupView::focusLeft(Qt::FocusReason reason) {
  popup_->hide();
  // A menu, or another window in front, doesn't end the typing.
  if (reason == Qt::PopupFocusReason || reason == Qt::ActiveWindowFocusReason) return;
  // Without the focus, the field shows the beginning of its text.
  line_->home(false);
  if (attached() && (control().listOpen() || control().typing())) control().leave();
}

bool LookupView::key(QKeyEvent& event) {
  if (!attached() || !control().isActive()) return false;
  const ui::Key key = keyOf(event);
  if ((event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier)) != 0) return false;
  switch (key) {
    case ui::Key::Up:
    case ui::Key::Down:
      // Alt with an arrow opens and closes, as F4 does.
      event.accept();
      static_cast<void>(control().press(event.modifiers().testFlag(Qt::AltModifier) ? ui::Key::F4 : key));
      return true;
    case ui::Key::Backspace:
      // During typing, the editor handles the keys of the caret.
      if (control().typing()) return false;
      break;
    case ui::Key::F4:
    case ui::Key::PageUp:
    case ui::Key::PageDown:
    case ui::Key::Enter:
    case ui::Key::Escape:
    case ui::Key::Delete:
      break;
    default:
      return false;
  }
  if (!control().press(key)) return false;
  event.accept();
  return true;
}

void LookupView::sync(ui::Change change) {
  if (change != ui::Change::Selection) colour();
  switch (change) {
    case ui::Change::Text: {
      const Echo echo(echo_);
      const QString text = toQt(control().text());
      if (text == line_->text()) break;
      line_->setText(text);
      // Shows the beginning of a held row's text. Typing replaces all of it.
      if (control().typing()) break;
      line_->setCursorPosition(0);
      if (line_->hasFocus()) line_->selectAll();
      break;
    }
    case ui::Change::Enabled: {
      const bool active = control().isActive();
      line_->setReadOnly(!active);
      line_->setFocusPolicy(active ? Qt::StrongFocus : Qt::ClickFocus);
      arrow_->setEnabled(active);
      break;
    }
    case ui::Change::List:
    case ui::Change::Selection:
    case ui::Change::Caption:
      syncList();
      break;
    default:
      break;
  }
}

void LookupView::syncList() {
  const Echo echo(echo_);
  model_.follow();
  popup_->highlight(control().highlighted());
  if (!control().listOpen()) return popup_->hide();
  if (line_->window()->isVisible()) popup_->open(toQt(control().title()), toQt(control().count()));
}

void LookupView::showLanguage(std::optional<KeyboardLayout> layout) {
  if (!attached() || !control().isActive()) layout.reset();
  tag_->show(layout);
  moved();
}

void LookupView::moved() {
  line_->setGeometry(box_->rect());
  const int side = std::max(line_->height() - 6, 8);
  const bool rightToLeft = line_->layoutDirection() == Qt::RightToLeft;
  arrow_->setGeometry(rightToLeft ? 3 : line_->width() - 3 - side, 3, side, side);
  const int room = side + 2 + (tag_->isHidden() ? 0 : tag_->sizeHint().width() + 2);
  line_->setTextMargins(rightToLeft ? room : 0, 0, rightToLeft ? 0 : room, 0);
  tag_->place(side);
  if (popup_->isVisible()) popup_->place();
}

void LookupView::detach() {
  model_.detach();
  popup_->hide();
  ControlView::detach();
}

}  // namespace ledgertree::qt
