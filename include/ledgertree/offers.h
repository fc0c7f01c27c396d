#pragma once

#include <set>

#include "ledgertree/export.h"

namespace ledgertree {

/// Optional extensions of the screens, off by default. An offer adds controls,
/// menu items and keys; it moves and renames nothing.
enum class Offer {
  /// Commands that work but are hidden otherwise: the menu "مشاهده" with its button (details shown or not,
  /// whole codes or short ones in the tree), and the numbering of the second level.
  HiddenCommands,
  /// The export of the chart to a spreadsheet, by the component SheetKit.SheetWriter.
  Export,
  /// The tree keeps its state when it is read again (after a save, a deletion, F5 and everything else that
  /// would collapse it): what was open stays open, and the record's account stays highlighted and visible.
  KeptPlace,
  /// A divider between the record and the tree, moved with the mouse or, after a Tab, the arrow keys: the
  /// record scrolls by as much as the tree gains. Its position lasts until the process ends.
  Divider,
  /// The menu "راهنما", which opens the same guide as F1.
  Guide,
  /// Changes by others become visible: an idle screen checks every few seconds, and rereads what it shows;
  /// during an edit, a line tells that somebody else has changed the account.
  OthersChanges,
  /// A context menu on an account of the tree, by right click or the menu key: a new account below it, edit,
  /// delete, its periods, copy its code. And on the title's picker: find the account in the tree.
  ContextMenu,
  /// Enter moves to the next field, Shift+Enter back, where Enter has no other meaning.
  EnterAsTab,
  /// Before a recoding or a batch deletion, a preview of what it would do, account by account, and from there
  /// the work itself; before the copying and hiding of a period, how many accounts come, go and stay; after a
  /// refused deletion, what prevents it.
  Preview,
  /// The screen "سابقه": who changed what of an account or of the chart, when, and what was there before;
  /// what an account was called on a day; an operation is taken back from there. Needs a database that keeps
  /// a
  /// history (docs/history.md); of another one the screen says so.
  History,
  /// Ctrl+Z takes back what the user did last since the screen was opened, after a question.
  TakeBack,
};

/// Turns on exactly these; none are on by default. A host that withholds one from some of its users calls
/// this before the ClearShow of each.
///
/// Applies to all controls, and takes effect when the screen is next opened; an open screen stays as it is.
/// Call it after a desktop is installed (see qt_desktop.h), on the user-interface thread. Throws
/// std::logic_error without a desktop.
LEDGERTREE_API void offer(const std::set<Offer>& offers);

/// All offers.
LEDGERTREE_API std::set<Offer> everyOffer();

}  // namespace ledgertree
