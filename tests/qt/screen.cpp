#include "screen.h"

namespace ledgertree::test {

Screen::Form::Form(ui::Surroundings surroundings)
    : ui::Form(std::move(surroundings), "FormTest", "سرفصل حسابها", {13620, 4560}) {
  setResizable(true);
  txtCode.setMaximumLength(20);
  txtCode.setLeftToRight(true);
  txtCode.setLatinDigits(true);
  txtMother.setLeftToRight(true);
  txtMother.setLocked(true);
  txtNotes.setMultiline(true);
  lblMessage.setStrong(true);
  cmdSave.setShortcut(ui::KeyChord::ctrlAnd('S'));
  cmdSave.setHint("ثبت حساب");
  addShortcut(ui::KeyChord::ctrlAnd('F'), [this] { sltParent.focus(); });
  setCancelButton(cmdExit);
  for (int id = 1; id <= 60; ++id)
    sltParent.all.push_back({id, "حساب " + std::to_string(id), std::to_string(1000 + id)});
  addMenu(mnuFile.add(mnuNew).add(mnuLine).add(mnuMark).add(mnuHidden));
  for (const char* period : {"1402", "1403", "1404"}) lstPeriod.addItem(period);
  for (const char* branch : {"مركزي", "شيراز", "تبريز"}) lstBranches.addItem(branch);
  grid.setColumns({{"شناسه", 0}, {"كلاس", 3000}, {"سطح", 900}});
  for (int row = 1; row <= 8; ++row) grid.addRow({std::to_string(row), "كلاس " + std::to_string(row), "1"});
}

}  // namespace ledgertree::test
