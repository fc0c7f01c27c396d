#pragma once

namespace ledgertree::ui {

class CheckBox;
class DateDisplay;
class Divider;
class DropDownList;
class Frame;
class Grid;
class Label;
class ListBox;
class LookupField;
class ProgressBar;
class PushButton;
class RadioButton;
class TextField;
class Tree;

/// One member per kind of control: a renderer that lacks one doesn't compile.
class ControlVisitor {
 public:
  virtual ~ControlVisitor() = default;
  virtual void visit(CheckBox& control) = 0;
  virtual void visit(DateDisplay& control) = 0;
  virtual void visit(Divider& control) = 0;
  virtual void visit(DropDownList& control) = 0;
  virtual void visit(Frame& control) = 0;
  virtual void visit(Grid& control) = 0;
  virtual void visit(Label& control) = 0;
  virtual void visit(ListBox& control) = 0;
  virtual void visit(LookupField& control) = 0;
  virtual void visit(ProgressBar& control) = 0;
  virtual void visit(PushButton& control) = 0;
  virtual void visit(RadioButton& control) = 0;
  virtual void visit(TextField& control) = 0;
  virtual void visit(Tree& control) = 0;
};

}  // namespace ledgertree::ui
