// Data modules: roots of non-visual components, read from form text and written back
// with where their designer's window stood.
#include "platform/vcl/DataModule.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"

#include <gtest/gtest.h>

namespace {

class DataModuleTest : public lumora::test::TFormFixture {};

std::string Crlf(const std::string& text) {
  std::string out;
  for (char c : text) {
    if (c == '\n') out += '\r';
    out += c;
  }
  return out;
}

const char* const kModule =
    "object DataModule1: TDataModule\n"
    "  OldCreateOrder = False\n"
    "  Left = 176\n"
    "  Top = 119\n"
    "  Height = 479\n"
    "  Width = 741\n"
    "  object OpenDialog1: TOpenDialog\n"
    "    Filter = 'Forms|*.dfm'\n"
    "    Left = 48\n"
    "    Top = 24\n"
    "  end\n"
    "  object Timer1: TTimer\n"
    "    Interval = 250\n"
    "    Left = 120\n"
    "    Top = 24\n"
    "  end\n"
    "end\n";

}  // namespace

TEST_F(DataModuleTest, AModuleReadsItsComponentsAndItsDesignWindow) {
  auto* module = new TDataModule(form);
  ReadComponentFromText(module, kModule);
  EXPECT_EQ(module->Name(), "DataModule1");
  EXPECT_EQ(module->DesignOffset(), Point(176, 119));
  EXPECT_EQ(module->DesignSize(), Point(741, 479));
  auto* dialog = dynamic_cast<TOpenDialog*>(module->FindComponent("OpenDialog1"));
  ASSERT_NE(dialog, nullptr);
  EXPECT_EQ(dialog->Filter(), "Forms|*.dfm");
  auto* timer = dynamic_cast<TTimer*>(module->FindComponent("Timer1"));
  ASSERT_NE(timer, nullptr);
  EXPECT_EQ(timer->Interval(), 250);
  EXPECT_EQ(module->ComponentCount(), 2);
}

TEST_F(DataModuleTest, AModuleIsWrittenBackAsItWasRead) {
  auto* module = new TDataModule(form);
  ReadComponentFromText(module, kModule);
  EXPECT_EQ(WriteComponentToText(module), Crlf(kModule));
}

TEST_F(DataModuleTest, ANewModuleHasTheDesignersDefaultSizeAndRunsOnCreateOnce) {
  auto* module = new TDataModule(form);
  module->SetName("DataModule2");
  EXPECT_EQ(module->DesignSize(), Point(215, 150));
  int created = 0;
  module->OnCreate = [&](TObject*) { ++created; };
  module->DoCreate();
  EXPECT_EQ(created, 1);
  const std::string written = WriteComponentToText(module);
  EXPECT_NE(written.find("  Height = 150\r\n  Width = 215\r\n"), std::string::npos) << written;
}

TEST_F(DataModuleTest, AValueOfTheWrongKindIsAnErrorThatNamesTheProperty) {
  auto* module = new TDataModule(form);
  try {
    ReadComponentFromText(module, "object DataModule1: TDataModule\n  Left = \nend\n");
    ADD_FAILURE() << "no error";
  } catch (const Exception& e) {
    EXPECT_NE(std::string(e.Message()).find("DataModule1.Left"), std::string::npos) << e.Message();
  }
}
