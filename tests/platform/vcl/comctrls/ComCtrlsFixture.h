#pragma once
// The fixture of the common controls' tests, and the forms that several families read.

#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace lumora::test {

class ComCtrlsTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    Application->Initialize();
    RegisterVclClasses();
    RegisterComCtrlsClasses();
  }
  void SetUp() override { form = new TForm(Application); }
  void TearDown() override { delete form; }
  void Read(std::string_view text) {
    const std::vector<std::string> errors = ReadFormText(form, text);
    for (const std::string& e : errors) ADD_FAILURE() << e;
  }
  void ShowForm() {
    form->Show();
    QApplication::processEvents();
  }
  template <class T>
  T* Find(const char* name) {
    auto* c = dynamic_cast<T*>(form->FindComponent(name));
    EXPECT_NE(c, nullptr) << name;
    return c;
  }
  TForm* form = nullptr;
};

inline const char* const PagesForm = R"(object Form1: TForm1
  Left = 200
  Top = 100
  BorderStyle = bsDialog
  ClientHeight = 273
  ClientWidth = 392
  object PageControl1: TPageControl
    Left = 8
    Top = 8
    Width = 300
    Height = 200
    ActivePage = TabSheet2
    TabOrder = 0
    object TabSheet1: TTabSheet
      Caption = 'First'
      object Edit1: TEdit
        Left = 8
        Top = 8
        Width = 121
        Height = 21
        TabOrder = 0
      end
    end
    object TabSheet2: TTabSheet
      Caption = '&Second'
      ImageIndex = 1
    end
    object TabSheet3: TTabSheet
      Caption = 'Hidden'
      ImageIndex = 2
      TabVisible = False
    end
  end
  object StatusBar1: TStatusBar
    Left = 0
    Top = 254
    Width = 392
    Height = 19
    Panels = <
      item
        Text = 'Ready'
        Width = 100
      end
      item
        Alignment = taCenter
        Text = 'Line 1'
        Width = 60
      end
      item
        Width = 50
      end>
    SimplePanel = False
  end
end
)";


inline const char* const MiscForm = R"(object Form1: TForm1
  Left = 300
  Top = 300
  Width = 600
  Height = 400
  object ProgressBar1: TProgressBar
    Left = 8
    Top = 8
    Width = 204
    Height = 16
    Min = 0
    Max = 200
    Position = 50
    Step = 1
    TabOrder = 0
  end
  object TrackBar1: TTrackBar
    Left = 8
    Top = 32
    Width = 150
    Height = 45
    Max = 100
    Orientation = trHorizontal
    Frequency = 10
    Position = 20
    SelEnd = 0
    SelStart = 0
    TabOrder = 1
    TickMarks = tmBoth
    TickStyle = tsAuto
  end
  object Edit1: TEdit
    Left = 8
    Top = 88
    Width = 50
    Height = 21
    TabOrder = 2
    Text = '3'
  end
  object UpDown1: TUpDown
    Left = 58
    Top = 88
    Width = 15
    Height = 21
    Associate = Edit1
    Min = 0
    Max = 1200
    Position = 3
    TabOrder = 3
    Wrap = False
  end
  object HotKey1: THotKey
    Left = 8
    Top = 120
    Width = 121
    Height = 19
    HotKey = 16449
    InvalidKeys = [hcNone, hcShift]
    Modifiers = [hkAlt]
    TabOrder = 4
  end
  object HeaderControl1: THeaderControl
    Left = 0
    Top = 0
    Width = 592
    Height = 17
    DragReorder = False
    Sections = <
      item
        ImageIndex = -1
        Text = 'Name'
        Width = 120
      end
      item
        Alignment = taRightJustify
        ImageIndex = -1
        Text = 'Size'
        Width = 80
      end>
  end
  object DateTimePicker1: TDateTimePicker
    Left = 8
    Top = 150
    Width = 186
    Height = 21
    CalAlignment = dtaLeft
    Date = 36161.75
    Time = 36161.75
    DateFormat = dfShort
    DateMode = dmComboBox
    Kind = dtkDate
    ParseInput = False
    TabOrder = 5
  end
  object Animate1: TAnimate
    Left = 300
    Top = 40
    Width = 80
    Height = 50
    Active = False
    CommonAVI = aviFindFile
    StopFrame = 8
  end
end
)";

}  // namespace lumora::test
