// Every class the data and report packages register, also those no corpus form uses: a
// form holding one of each reads without an error, draws (run and designed), and is
// written back and read again to the same text.
#include "packages/dcldb/DB.h"
#include "packages/dcldb/DclDb.h"
#include "packages/dclqrt/DclQrt.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Forms.h"
#include "tests/packages/PackageTestUtil.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<TClass> PackageClasses() {
  std::vector<TClass> classes;
  for (const auto& pages : {DbPalette(), QrPalette()})
    for (const TPalettePage& page : pages) classes.insert(classes.end(), page.Classes.begin(), page.Classes.end());
  return classes;
}

// One component of each class, each as the designer drops it (no properties but its
// place): fields inside a table and data set actions inside an action list, where forms
// have them; the rest side by side.
std::string FormWithOneOfEach(const std::vector<TClass>& classes) {
  std::string top, fields, actions;
  int i = 0;
  for (TClass cls : classes) {
    const std::string object = "object " + cls->ClassName().substr(1) + "1: " + cls->ClassName() + "\n";
    if (cls->InheritsFrom(TField::StaticClass())) {
      fields += "    " + object + "      FieldName = '" + cls->ClassName().substr(1) + "'\n    end\n";
    } else if (cls->InheritsFrom(TContainedAction::StaticClass())) {
      actions += "    " + object + "    end\n";
    } else {
      top += "  " + object;
      top += "    Left = " + std::to_string(8 + (i % 8) * 110) + "\n";
      top += "    Top = " + std::to_string(8 + (i / 8) * 70) + "\n";
      top += "  end\n";
      ++i;
    }
  }
  return "object Form1: TForm\n  Left = 0\n  Top = 0\n  Width = 900\n  Height = 700\n" + top +
         "  object FieldHolder: TTable\n" + fields + "  end\n" + "  object ActionList1: TActionList\n" + actions +
         "  end\nend\n";
}

class PaletteClassesTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { lumora::test::RegisterPackageClassesForTest(true); }
};

}  // namespace

TEST_F(PaletteClassesTest, OneOfEachClassReadsDrawsAndWritesBackAsRead) {
  const std::vector<TClass> classes = PackageClasses();
  ASSERT_GE(classes.size(), 80u);
  const std::string text = FormWithOneOfEach(classes);

  auto* form = new TForm(Application);
  TFormLoadResult result = LoadFormFile(form, text);
  ASSERT_TRUE(result.Read);
  for (const std::string& e : result.Errors) ADD_FAILURE() << e;
  ASSERT_EQ(form->ComponentCount(), static_cast<int>(classes.size()) + 2);
  for (TClass cls : classes) {
    TComponent* c = form->FindComponent(cls->ClassName().substr(1) + "1");
    ASSERT_NE(c, nullptr) << cls->ClassName();
    EXPECT_EQ(c->ClassType(), cls);
  }
  form->Show();
  QApplication::processEvents();
  const QImage running = RenderForm(form);
  ASSERT_FALSE(running.isNull());
  form->SetDesignState(true);
  const QImage designed = RenderForm(form);
  ASSERT_FALSE(designed.isNull());
  // While designed, the data controls show their names: the picture changes.
  EXPECT_NE(running, designed);

  const std::string written = WriteComponentToText(form);
  for (TClass cls : classes) {
    const std::string declared = ": " + cls->ClassName();
    const auto at = written.find(declared + "\r\n");
    EXPECT_NE(at, std::string::npos) << cls->ClassName();
  }
  delete form;

  form = new TForm(Application);
  result = LoadFormFile(form, written);
  for (const std::string& e : result.Errors) ADD_FAILURE() << e;
  EXPECT_EQ(WriteComponentToText(form), written);
  delete form;
}
