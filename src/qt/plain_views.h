#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>

#include "qt/control_view.h"
#include "ui/buttons.h"
#include "ui/lookup_field.h"

namespace ledgertree::qt {

class LabelView : public ViewOf<ui::Label> {
 public:
  LabelView(ui::Label& control, QWidget& parent);
  [[nodiscard]] QLabel& widget() override { return *label_; }
  void sync(ui::Change change) override;
  void rescaled(const Scale& scale) override;

 private:
  QLabel* label_;
};

class PushButtonView : public ViewOf<ui::PushButton> {
 public:
  PushButtonView(ui::PushButton& control, QWidget& parent);
  [[nodiscard]] QPushButton& widget() override { return *button_; }
  [[nodiscard]] QWidget* focusWidget() override { return button_; }
  void sync(ui::Change) override {}

 private:
  QPushButton* button_;
};

class RadioButtonView : public ViewOf<ui::RadioButton> {
 public:
  RadioButtonView(ui::RadioButton& control, QWidget& parent);
  [[nodiscard]] QRadioButton& widget() override { return *button_; }
  [[nodiscard]] QWidget* focusWidget() override { return button_; }
  void sync(ui::Change change) override;

 private:
  /// The arrow keys cycle through the group, and choose.
  void chooseNeighbour(int step);
  QRadioButton* button_;
};

class CheckBoxView : public ViewOf<ui::CheckBox> {
 public:
  CheckBoxView(ui::CheckBox& control, QWidget& parent);
  [[nodiscard]] QCheckBox& widget() override { return *box_; }
  [[nodiscard]] QWidget* focusWidget() override { return box_; }
  void sync(ui::Change change) override;

 private:
  QCheckBox* box_;
};

class FrameView : public ViewOf<ui::Frame> {
 public:
  FrameView(ui::Frame& control, QWidget& parent);
  [[nodiscard]] QWidget& widget() override { return *panel_; }
  /// The parent widget of the frame's controls.
  [[nodiscard]] QWidget& content() { return content_ != nullptr ? *content_ : *panel_; }
  void sync(ui::Change) override {}
  void rescaled(const Scale& scale) override;
  void moved() override;

 private:
  QWidget* panel_;
  QScrollArea* scroll_ = nullptr;
  QWidget* content_ = nullptr;
  Scale scale_;
};

class ProgressBarView : public ViewOf<ui::ProgressBar> {
 public:
  ProgressBarView(ui::ProgressBar& control, QWidget& parent);
  [[nodiscard]] QProgressBar& widget() override { return *bar_; }
  void sync(ui::Change change) override;
  /// Text taller than the bar wouldn't be drawn at all.
  void moved() override;

 private:
  QProgressBar* bar_;
};

class DateDisplayView : public ViewOf<ui::DateDisplay> {
 public:
  DateDisplayView(ui::DateDisplay& control, QWidget& parent);
  [[nodiscard]] QLineEdit& widget() override { return *line_; }
  [[nodiscard]] QWidget* focusWidget() override { return line_; }
  void sync(ui::Change change) override;

 private:
  QLineEdit* line_;
};

}  // namespace ledgertree::qt
