#pragma once

#include <set>

#include "ledgertree/export.h"

namespace ledgertree {

/// What goes beyond the screens as they are without a word from the host. An offer adds controls, entries and
/// keys; it moves and renames nothing.
enum class Offer {
  /// Commands that work and stand hidden otherwise: the menu "مشاهده" with its button (details shown or not,
  /// whole codes or short ones in the tree), and the numbering of the second level.
  HiddenCommands,
  /// The export of the chart to a spreadsheet, by the component SheetKit.SheetWriter.
  Export,
  /// The tree keeps its place where it is read again (behind a save, a deletion, F5 and all else that closes
  /// it otherwise): what was open is open, and the account on the record is highlighted and in sight.
  KeptPlace,
  /// A divider between the record and the tree, moved with the mouse or, behind a Tab, by the arrow keys:
  /// what the tree gets by it the record scrolls over. Where it was put counts for the life of the process.
  Divider,
  /// The menu "راهنما", which opens what F1 opens.
  Guide,
  /// What others change becomes visible: a screen that rests asks every few seconds, and reads again what it
  /// shows; while something is typed, a line tells that somebody else has changed the account.
  OthersChanges,
  /// A menu on an account of the tree, by the right button or the menu key: a new account below it, edit,
  /// delete, its periods, copy its code. And on the title's picker: the account in the tree.
  ContextMenu,
  /// Enter goes to the next field, and with Shift back, where it has no other meaning.
  EnterAsTab,
  /// The screen "سابقه": who changed what of an account or of the chart, when, and what was there before;
  /// what
  /// an account was called on a day; an operation is taken back from there. Of a database that keeps a memory
  /// (docs/history.md); of another one the screen says so.
  History,
  /// Ctrl+Z takes back what the person did last since the screen was opened, after a question.
  TakeBack,
};

/// Offers these, and nothing else. At first nothing is offered. A host that keeps one from some of its users
/// calls this ahead of the ClearShow of each.
///
/// It holds for all controls and takes effect when the screen is next opened; a screen that is open stays as
/// it is. Call it after a desktop was installed (see qt_desktop.h), on the user-interface thread. Throws
/// std::logic_error without a desktop.
LEDGERTREE_API void offer(const std::set<Offer>& offers);

/// Everything that there is to offer.
LEDGERTREE_API std::set<Offer> everyOffer();

}  // namespace ledgertree
