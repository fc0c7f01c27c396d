#pragma once

#include "mainform/main_screen.h"

namespace ledgertree::mainform {

/// Enables, locks and shows the controls and entries of the screen as its mode allows, and says in
/// `lblMessage` what it is doing.
void applyMode(MainScreen& screen);

/// In ModeView, keeps the commands that change or delete an account in step with whether one is on the
/// screen.
void followRecord(MainScreen& screen);

}  // namespace ledgertree::mainform
