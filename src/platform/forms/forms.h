// The abstract form controls that dialogs are written against.
// A dialog's logic finds its controls by name; the widget side shows them and decides nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "platform/signal.h"
#include "platform/value.h"

namespace orvane::platform {

class FormControl {
 public:
  FormControl() = default;
  FormControl(const FormControl&) = delete;
  FormControl& operator=(const FormControl&) = delete;
  virtual ~FormControl() = default;

  virtual Boolean Enabled() const = 0;
  virtual void Enabled(Boolean bEnabled) = 0;
  virtual void SetFocus() = 0;
};

/// A label or a frame's title; an "&" marks the access key.
class Caption : public FormControl {
 public:
  virtual Text Label() const = 0;
  virtual void Label(const Text& sLabel) = 0;
};

struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Color&, const Color&) = default;
};

class TextBox : public FormControl {
 public:
  virtual platform::Text Text() const = 0;
  /// Raises the change event, also when the text is the same as before.
  virtual void Text(const platform::Text& sText) = 0;
  virtual Boolean Locked() const = 0;
  virtual void Locked(Boolean bLocked) = 0;
  virtual Color ForeColor() const = 0;
  virtual void ForeColor(Color color) = 0;
  [[nodiscard]] virtual Subscription OnChange(std::function<void()> handler) = 0;
};

class Button : public Caption {
 public:
  [[nodiscard]] virtual Subscription OnClick(std::function<void()> handler) = 0;
};

class CheckBox : public Caption {
 public:
  virtual Boolean Checked() const = 0;
  /// Raises the click event when the state changes.
  virtual void Checked(Boolean bChecked) = 0;
  [[nodiscard]] virtual Subscription OnClick(std::function<void()> handler) = 0;
};

/// Positions from 0; -1 is no selection.
class DropDownList : public FormControl {
 public:
  virtual void Clear() = 0;
  virtual void Add(const Text& sText, Long lItemData) = 0;
  virtual Long Count() const = 0;
  virtual Text Item(Long lIndex) const = 0;
  virtual Long ItemData(Long lIndex) const = 0;
  virtual Long ListIndex() const = 0;
  virtual void ListIndex(Long lIndex) = 0;
};

/// Positions from 1.
class FormListView : public FormControl {
 public:
  virtual void Clear() = 0;
  virtual void Add(const Text& sText) = 0;
  virtual void Remove(Long lIndex) = 0;
  virtual Long Count() const = 0;
  virtual Text Item(Long lIndex) const = 0;
  virtual Boolean Selected(Long lIndex) const = 0;
  virtual void Selected(Long lIndex, Boolean bSelected) = 0;
  [[nodiscard]] virtual Subscription OnClick(std::function<void()> handler) = 0;
  [[nodiscard]] virtual Subscription OnDblClick(std::function<void()> handler) = 0;
};

/// A dialog's form. Controls are found by their member names and fail with
/// failure::kItemNotFound when the form has none of that name and kind; they live as long as it.
class Form {
 public:
  Form() = default;
  Form(const Form&) = delete;
  Form& operator=(const Form&) = delete;
  virtual ~Form() = default;

  virtual Text Title() const = 0;
  virtual void Title(const Text& sTitle) = 0;
  virtual platform::Caption& Caption(const Text& sName) = 0;
  virtual platform::TextBox& TextBox(const Text& sName) = 0;
  virtual platform::Button& Button(const Text& sName) = 0;
  virtual platform::CheckBox& CheckBox(const Text& sName) = 0;
  virtual platform::DropDownList& DropDownList(const Text& sName) = 0;
  virtual FormListView& ListView(const Text& sName) = 0;
  /// The button that Enter presses while it is enabled and no other button has the focus; none when
  /// never called.
  virtual void DefaultButton(const Text& sButton) = 0;
  /// The button that Escape presses; none when never called.
  virtual void CancelButton(const Text& sButton) = 0;
  /// Shows the form until Hide is called.
  virtual void ShowModal() = 0;
  virtual void Hide() = 0;
};

class Forms {
 public:
  Forms() = default;
  Forms(const Forms&) = delete;
  Forms& operator=(const Forms&) = delete;
  virtual ~Forms() = default;

  /// A new form with the controls laid out for the dialog of that name.
  virtual std::shared_ptr<Form> Load(const Text& sFormName) = 0;
};

}  // namespace orvane::platform
