// Services with fake forms and a user interface that counts beeps.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "platform/services.h"
#include "tests/fakes/fake_forms.h"

namespace orvane::dialogs {

class BeepCounter : public platform::UserInterface {
 public:
  platform::MsgBoxResult MsgBox(const platform::Text&, platform::MsgBoxButtons,
                                platform::MsgBoxIcon, const platform::Text&) override {
    ++nBoxes;
    return platform::MsgBoxResult::Ok;
  }
  platform::Long MousePointer() const override { return platform::kMousePointerDefault; }
  void MousePointer(platform::Long) override {}
  void Beep() override { ++nBeeps; }
  void DoEvents() override {}

  int nBeeps = 0;
  int nBoxes = 0;
};

class DialogFixture : public testing::Test {
 protected:
  DialogFixture() {
    services.forms = forms;
    services.ui = ui;
  }

  std::shared_ptr<fakes::FakeForms> forms = std::make_shared<fakes::FakeForms>();
  std::shared_ptr<BeepCounter> ui = std::make_shared<BeepCounter>();
  platform::Services services;
};

}  // namespace orvane::dialogs
