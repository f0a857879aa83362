// The options dialog driven through its widgets: pages, check boxes, the form style, the
// hot key of each action, the packages page, and applying what changed.
#include "foundation/Options.h"

#include "platform/vcl/CheckLst.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Keys.h"

#include <QApplication>
#include <QComboBox>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <functional>

namespace {

struct THost : IjoOptionsHost {
  TjoOptionValues Values;
  int Applies = 0;
  TjoOptionValues Applied;
  TjoOptionValues GetOptionValues() override { return Values; }
  void ApplyOptionValues(const TjoOptionValues& v) override {
    ++Applies;
    Applied = v;
    Values = v;
  }
};

class OptionsTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    host.Values.KeyClose = MakeShortCut(VK_ESCAPE, 0);
    host.Values.KeyToggle = MakeShortCut(VK_F12, 0);
    host.Values.KeyOI = MakeShortCut(VK_F11, 0);
  }
  void TearDown() override { SetPackagesPageFactory(nullptr); }
  static void TearDownTestSuite() { delete OptionsDialog(); }

  // Shows the dialog on `page` and runs `during` inside it; whether anything changed.
  bool Run(int page, const std::function<void(TFrm_Options*)>& during) {
    bool ran = false;
    QTimer::singleShot(0, [&] {
      TFrm_Options* d = OptionsDialog();
      QApplication::setActiveWindow(d->Widget());
      QApplication::processEvents();
      during(d);
      ran = true;
      // Whatever the test left open is closed as a user would: Esc.
      if (d->Modal() && d->ModalResult() == mrNone) QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : d->Widget(), Qt::Key_Escape);
    });
    const bool changed = ShowOptions(page, &host);
    EXPECT_TRUE(ran);
    return changed;
  }
  static void Click(TControl* c) { QTest::mouseClick(c->Widget(), Qt::LeftButton); }
  // Chooses a line of a drop-down list with the keyboard, as a user does.
  static void Choose(TComboBox* combo, const std::string& text) {
    const int target = combo->Items()->IndexOf(text);
    ASSERT_GE(target, 0) << text;
    combo->SetFocus();
    auto* w = combo->Widget();
    for (int guard = 0; combo->ItemIndex() != target && guard < 200; ++guard)
      QTest::keyClick(w, combo->ItemIndex() < target ? Qt::Key_Down : Qt::Key_Up);
    ASSERT_EQ(combo->ItemIndex(), target);
  }
  static std::string Shown(TComboBox* combo) {
    return combo->ItemIndex() >= 0 ? combo->Items()->Strings(combo->ItemIndex()) : std::string("<none>");
  }
  static void ClickTab(TPageControl* pages, int index) {
    const TRect r = pages->TabRect(index);
    QTest::mouseClick(pages->Widget(), Qt::LeftButton, Qt::NoModifier,
                      QPoint((r.Left + r.Right) / 2, (r.Top + r.Bottom) / 2));
  }
  THost host;
};

}  // namespace

TEST_F(OptionsTest, TheDialogIsMadeOnceWithItsPagesAndControls) {
  Run(1, [](TFrm_Options* d) {
    EXPECT_EQ(d->Caption(), "Lumora properties");
    EXPECT_EQ(d->ClientWidth(), 355);
    EXPECT_EQ(d->ClientHeight(), 245);
    EXPECT_EQ(d->BorderStyle(), bsToolWindow);
    ASSERT_EQ(d->PageControl->PageCount(), 3);
    EXPECT_EQ(d->ts_General->Caption(), "General");
    EXPECT_EQ(d->ts_FormStyle->Caption(), "Form Style");
    EXPECT_EQ(d->ts_Packages->Caption(), "Packages");
    EXPECT_EQ(d->cb_Top->Caption(), "&Stay on top main form");
    EXPECT_EQ(d->cb_AsForm->Caption(), "Open file as &Form by default");
    EXPECT_EQ(d->cb_ReadOnly->Caption(), "Open files \"&Read Only\" by default");
    EXPECT_EQ(d->cb_Only1VF->Caption(), "Only &1 visible form");
    EXPECT_FALSE(d->cb_RemLWP->Visible());
    EXPECT_EQ(d->rg_FormStyle->Caption(), " &Style ");
    EXPECT_EQ(d->gb_HotKeys->Caption(), " &Hot Keys ");
    EXPECT_EQ(d->btn_OK->Caption(), "&OK");
    EXPECT_EQ(d->btn_Cancel->Caption(), "&Cancel");
    EXPECT_EQ(d->Owner(), static_cast<TComponent*>(Application));
  });
  TFrm_Options* first = OptionsDialog();
  Run(1, [](TFrm_Options*) {});
  EXPECT_EQ(OptionsDialog(), first);
}

TEST_F(OptionsTest, ClosingWithoutAChangeReturnsFalseAndChangesNothing) {
  const bool changed = Run(1, [](TFrm_Options* d) {
    EXPECT_FALSE(d->btn_OK->Enabled());
    EXPECT_FALSE(d->Modified());
    Click(d->btn_Cancel);
  });
  EXPECT_FALSE(changed);
  EXPECT_EQ(host.Applies, 0);
}

TEST_F(OptionsTest, TheControlsShowTheCurrentSettings) {
  host.Values.StayOnTop = true;
  host.Values.ViewAsForm = false;
  host.Values.ReadOnly = true;
  host.Values.Only1VF = true;
  host.Values.VV_Style = 1;
  Run(2, [](TFrm_Options* d) {
    EXPECT_TRUE(d->cb_Top->Checked());
    EXPECT_FALSE(d->cb_AsForm->Checked());
    EXPECT_TRUE(d->cb_ReadOnly->Checked());
    EXPECT_TRUE(d->cb_Only1VF->Checked());
    EXPECT_EQ(d->rg_FormStyle->ItemIndex(), 1);
    EXPECT_EQ(d->PageControl->ActivePage(), d->ts_FormStyle);
    EXPECT_EQ(Shown(d->cb_HC_Type), "Close form/file");
    EXPECT_EQ(Shown(d->cb_HotKeys), "Esc");
    EXPECT_FALSE(d->btn_OK->Enabled());
  });
}

TEST_F(OptionsTest, ACheckBoxClickedEnablesOkAndOkAppliesIt) {
  const bool changed = Run(1, [](TFrm_Options* d) {
    Click(d->cb_Only1VF);
    EXPECT_TRUE(d->btn_OK->Enabled());
    Click(d->btn_OK);
  });
  EXPECT_TRUE(changed);
  ASSERT_EQ(host.Applies, 1);
  EXPECT_TRUE(host.Applied.Only1VF);
  EXPECT_FALSE(host.Applied.StayOnTop);
}

TEST_F(OptionsTest, AChangeIsAppliedEvenAfterCancel) {
  const bool changed = Run(1, [](TFrm_Options* d) {
    Click(d->cb_Top);
    Click(d->cb_AsForm);
    Click(d->btn_Cancel);
  });
  EXPECT_TRUE(changed);
  ASSERT_EQ(host.Applies, 1);
  EXPECT_TRUE(host.Applied.StayOnTop);
  EXPECT_FALSE(host.Applied.ViewAsForm);
}

TEST_F(OptionsTest, TheFormStyleIsChosenWithTheRadioGroup) {
  Run(2, [](TFrm_Options* d) {
    ASSERT_GE(d->rg_FormStyle->ButtonCount(), 2);
    Click(d->rg_FormStyle->Buttons(1));
    EXPECT_EQ(d->rg_FormStyle->ItemIndex(), 1);
    Click(d->btn_OK);
  });
  EXPECT_EQ(host.Applied.VV_Style, 1);
}

TEST_F(OptionsTest, EachActionShowsItsOwnHotKey) {
  const bool changed = Run(2, [](TFrm_Options* d) {
    Choose(d->cb_HC_Type, "Toggle Form/Text");
    EXPECT_EQ(Shown(d->cb_HotKeys), "F12");
    Choose(d->cb_HotKeys, "F9");
    EXPECT_TRUE(d->btn_OK->Enabled());
    Choose(d->cb_HC_Type, "Close form/file");
    EXPECT_EQ(Shown(d->cb_HotKeys), "Esc");
    Choose(d->cb_HC_Type, "Toggle Form/Text");
    EXPECT_EQ(Shown(d->cb_HotKeys), "F9");
    Choose(d->cb_HC_Type, "View Object Inspector");
    EXPECT_EQ(Shown(d->cb_HotKeys), "F11");
    Click(d->btn_OK);
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(host.Applied.KeyToggle, MakeShortCut(VK_F9, 0));
  EXPECT_EQ(host.Applied.KeyClose, MakeShortCut(VK_ESCAPE, 0));
  EXPECT_EQ(host.Applied.KeyOI, MakeShortCut(VK_F11, 0));
}

TEST_F(OptionsTest, AHotKeyThatIsNotInTheListShowsAsNoneUntilChanged) {
  host.Values.KeyClose = MakeShortCut(VK_F5, scCtrl);
  host.Values.KeyOI = static_cast<TShortCut>(200);
  const bool changed = Run(2, [](TFrm_Options* d) {
    EXPECT_EQ(Shown(d->cb_HotKeys), "(None)");
    Choose(d->cb_HC_Type, "View Object Inspector");
    EXPECT_EQ(Shown(d->cb_HotKeys), "(None)");
    EXPECT_FALSE(d->btn_OK->Enabled());
  });
  EXPECT_FALSE(changed);
  EXPECT_EQ(host.Applies, 0);
  EXPECT_EQ(host.Values.KeyClose, MakeShortCut(VK_F5, scCtrl));
}

TEST_F(OptionsTest, TheKeysOfferedAreCodes8To123WithoutModifiers) {
  Run(2, [](TFrm_Options* d) {
    TStrings* keys = d->cb_HotKeys->Items();
    ASSERT_GT(keys->Count(), 60);
    EXPECT_EQ(keys->Strings(0), "(None)");
    EXPECT_EQ(reinterpret_cast<std::intptr_t>(keys->Objects(0)), 0);
    int last = 0;
    for (int i = 1; i < keys->Count(); ++i) {
      const int code = static_cast<int>(reinterpret_cast<std::intptr_t>(keys->Objects(i)));
      EXPECT_GE(code, 8);
      EXPECT_LE(code, 123);
      EXPECT_GT(code, last);
      last = code;
      EXPECT_EQ(keys->Strings(i), ShortCutToText(static_cast<TShortCut>(code)));
      for (const char* modifier : {"Shift+", "Ctrl+", "Alt+"})
        EXPECT_NE(keys->Strings(i).rfind(modifier, 0), 0u) << keys->Strings(i);
    }
    EXPECT_GE(keys->IndexOf("F1"), 0);
    EXPECT_GE(keys->IndexOf("F12"), 0);
    EXPECT_GE(keys->IndexOf("A"), 0);
    EXPECT_GE(keys->IndexOf("0"), 0);
    EXPECT_GE(keys->IndexOf("Esc"), 0);
    EXPECT_EQ(keys->IndexOf("F13"), -1);
  });
}

TEST_F(OptionsTest, PageZeroIsTheFirstPage) {
  Run(0, [](TFrm_Options* d) { EXPECT_EQ(d->PageControl->ActivePage(), d->ts_General); });
  Run(3, [](TFrm_Options* d) { EXPECT_EQ(d->PageControl->ActivePage(), d->ts_Packages); });
  Run(1, [](TFrm_Options* d) { EXPECT_EQ(d->PageControl->ActivePage(), d->ts_General); });
}

TEST_F(OptionsTest, PageThreeHoldsThePackagesListAndItsChangesEnableOk) {
  std::function<void()> packagesChanged;
  int made = 0;
  SetPackagesPageFactory([&](TComponent* owner, std::function<void()> onChange) -> TCustomForm* {
    ++made;
    packagesChanged = onChange;
    auto* page = new TForm(owner);
    page->SetName("Frm_PackCfg");
    page->SetBorderStyle(bsNone);
    auto* list = new TCheckListBox(page);
    list->SetName("CheckListBox");
    list->SetParent(page);
    list->SetBounds(4, 4, 200, 120);
    list->Items()->Add("Standard controls");
    return page;
  });
  // The page, when not chosen, makes nothing.
  Run(1, [](TFrm_Options* d) { EXPECT_EQ(d->PackagesPage(), nullptr); });
  EXPECT_EQ(made, 0);
  const bool changed = Run(3, [&](TFrm_Options* d) {
    EXPECT_EQ(d->PageControl->ActivePage(), d->ts_Packages);
    TCustomForm* page = d->PackagesPage();
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->Parent(), d->ts_Packages);
    EXPECT_EQ(page->Owner(), d);
    EXPECT_TRUE(page->Visible());
    EXPECT_EQ(page->Width(), d->ts_Packages->ClientWidth());
    EXPECT_EQ(page->Height(), d->ts_Packages->ClientHeight());
    auto* list = dynamic_cast<TCheckListBox*>(page->FindComponent("CheckListBox"));
    ASSERT_NE(list, nullptr);
    EXPECT_TRUE(list->Widget()->isVisible());
    EXPECT_EQ(Screen->ActiveControl(), list);
    EXPECT_FALSE(d->btn_OK->Enabled());
    packagesChanged();
    EXPECT_TRUE(d->btn_OK->Enabled());
    // Back to a page and again to the packages: the same contents, focused again.
    ClickTab(d->PageControl, 0);
    EXPECT_EQ(d->PageControl->ActivePage(), d->ts_General);
    ClickTab(d->PageControl, 2);
    EXPECT_EQ(d->PageControl->ActivePage(), d->ts_Packages);
    EXPECT_EQ(d->PackagesPage(), page);
    EXPECT_EQ(Screen->ActiveControl(), list);
    Click(d->btn_OK);
  });
  EXPECT_TRUE(changed);
  EXPECT_EQ(made, 1);
  EXPECT_EQ(host.Applies, 1);
}
