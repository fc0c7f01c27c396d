#pragma once

#include "mainform/main_screen.h"

namespace ledgertree::mainform {

/// Enables, locks and shows the controls and menu entries as the screen's mode allows, and says in
/// `lblMessage` what it is doing.
void applyMode(MainScreen& screen);

/// In ModeView, enables the commands that change or delete an account only while one is on the screen.
void followRecord(MainScreen& screen);

}  // namespace ledgertree::mainform
