// The real form files with the data and report packages: every form that uses one of
// their classes reads it without an unknown property that the Delphi 4 class publishes
// (properties of later versions are printed by name).
#include "packages/dcldb/DclDb.h"
#include "packages/dclqrt/DclQrt.h"
#include "tests/packages/CorpusCount.h"
#include "tests/packages/PackageTestUtil.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <map>
#include <regex>
#include <set>

namespace {

// Published by later versions of these classes, not by the Delphi 4 ones: a stream that
// has them gets "Property ... does not exist", as it would have then.
const std::set<std::string> kLaterProperties = {
    // Of every control in later versions.
    "AlignWithMargins", "BevelEdges", "BevelInner", "BevelKind", "BevelOuter", "BevelWidth", "DoubleBuffered",
    "ExplicitHeight", "ExplicitLeft", "ExplicitTop", "ExplicitWidth", "Margins", "ParentBackground",
    "ParentDoubleBuffered", "StyleElements", "Touch", "OnMouseEnter", "OnMouseLeave", "OnMouseActivate",
    "OnContextPopup",
    // Data sets, fields and grids of later versions.
    "TClientDataSet.BeforeRefresh", "TClientDataSet.AfterRefresh", "TClientDataSet.PersistDataPacket",
    "TClientDataSet.ConnectionBroker", "TQuery.Params", "TDataSetProvider.OnGetDataSetProperties",
    "TDataSetField.UnNamed", "TDBGrid.OnMouseDown", "TDBGrid.OnMouseMove", "TDBGrid.OnMouseUp",
    "TDBGrid.OnMouseWheel", "TDBGrid.OnMouseWheelDown", "TDBGrid.OnMouseWheelUp",
};

// Published by later versions of the report components (any of them).
const std::set<std::string> kLaterReportProperties = {
    "IDReport", "PrevFormStyle", "PreviewInitialState", "PrevInitialZoom", "PreviewDefaultSaveType", "PreviewLeft",
    "PreviewTop", "PreviewWidth", "PreviewHeight", "PrevShowThumbs", "PrevShowSearch", "PageCount",
    "PrinterSettings.UseStandardprinter", "PrinterSettings.UseCustomBinCode", "PrinterSettings.CustomBinCode",
    "PrinterSettings.ExtendedDuplex", "PrinterSettings.UseCustomPaperCode", "PrinterSettings.CustomPaperCode",
    "PrinterSettings.PrintMetaFile", "PrinterSettings.PrintQuality", "PrinterSettings.Collate",
    "PrinterSettings.ColorOption", "PrinterSettings.Orientation", "PrinterSettings.PaperSize", "Page.Continuous",
    "TransparentBand", "KeepOnOnePage", "PreCaluculateBandHeight", "PrintOrder", "XLColumn", "ExportAs", "WrapStyle",
    "FullJustify", "MaxBreakChars", "VertAdjust", "RoundFactor", "BiDiMode", "ParentBiDiMode",
};

// "Error reading Label1.Frame.Width: Property Width does not exist" -> Label1, Frame.Width.
bool SplitReadError(const std::string& message, std::string& component, std::string& path) {
  static const std::regex re(R"(^Error reading ([A-Za-z0-9_]+)\.([A-Za-z0-9_.]+): Property [A-Za-z0-9_]+ does not exist$)");
  std::smatch m;
  if (!std::regex_match(message, m, re)) return false;
  component = m[1];
  path = m[2];
  return true;
}

bool IsLater(const std::string& cls, const std::string& path) {
  const std::string first = path.substr(0, path.find('.'));
  if (kLaterProperties.count(first) || kLaterProperties.count(cls + "." + first)) return true;
  const bool report = cls.rfind("TQR", 0) == 0 || cls == "TQuickRep";
  return report && (kLaterReportProperties.count(first) || kLaterReportProperties.count(path));
}

// The names of the packages' classes.
std::set<std::string> PackageClassNames() {
  std::set<std::string> names;
  for (const auto& pages : {DbPalette(), QrPalette()})
    for (const TPalettePage& page : pages)
      for (TClass cls : page.Classes) names.insert(cls->ClassName());
  return names;
}

class PackagesCorpusTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { lumora::test::RegisterPackageClassesForTest(true); }
};

TEST_F(PackagesCorpusTest, FormsUsingThePackagesClassesReadAllTheirDelphi4Properties) {
  LUMORA_REQUIRE_CORPUS();
  const std::set<std::string> ours = PackageClassNames();
  const auto files = lumora::test::CorpusForms();
  ASSERT_GT(files.size(), 3000u);
  std::map<std::string, int> later, missing, otherErrors;
  std::map<std::string, int> instances;  // of our classes, read
  int forms = 0;
  for (const auto& path : files) {
    const std::string data = lumora::test::ReadFileBytes(path);
    // Only forms naming one of the classes (a cheap look at the bytes first).
    if (data.find("TQR") == std::string::npos && data.find("TDB") == std::string::npos &&
        data.find("Field") == std::string::npos && data.find("TDataS") == std::string::npos &&
        data.find("TTable") == std::string::npos && data.find("TQu") == std::string::npos &&
        data.find("TClientDataSet") == std::string::npos && data.find("TSession") == std::string::npos &&
        data.find("TDatabase") == std::string::npos && data.find("Provider") == std::string::npos)
      continue;
    TFormLoadResult result;
    TCustomForm* form = lumora::test::ReadCorpusForm(path, &result);
    bool uses = false;
    for (int i = 0; i < form->ComponentCount(); ++i) {
      const std::string& cls = form->Components(i)->ClassName();
      if (ours.count(cls)) {
        uses = true;
        ++instances[cls];
      }
    }
    if (uses) ++forms;
    for (const std::string& e : result.Errors) {
      std::string name, prop;
      TComponent* c = nullptr;
      if (SplitReadError(e, name, prop)) {
        c = form->FindComponent(name);
        if (!c || !ours.count(c->ClassName())) continue;
        const std::string what = c->ClassName() + "." + prop;
        if (IsLater(c->ClassName(), prop)) ++later[what];
        else ++missing[what];
        continue;
      }
      // Other problems with our components (a value of a later version's enumeration).
      static const std::regex other(R"(^Error reading ([A-Za-z0-9_]+)\.([A-Za-z0-9_.]+): (.*)$)");
      std::smatch m;
      // (References to components of other libraries' classes, which were not built, aside.)
      if (std::regex_match(e, m, other) && (c = form->FindComponent(std::string(m[1]))) && ours.count(c->ClassName()) &&
          std::string(m[3]).find(" not found") == std::string::npos)
        ++otherErrors[c->ClassName() + "." + std::string(m[2]) + ": " + std::string(m[3])];
    }
    delete form;
  }
  EXPECT_GT(forms, 500);
  // Every class of the corpus that the issue names was met.
  for (const char* cls : {"TQRLabel", "TQRShape", "TQRDBText", "TQRBand", "TQuickRep", "TStringField", "TDataSource",
                          "TDBGrid", "TDBEdit", "TDBNavigator", "TTable", "TQuery", "TClientDataSet"})
    EXPECT_GT(instances[cls], 0) << cls;
  for (const auto& [what, count] : missing) ADD_FAILURE() << what << " does not exist (" << count << " times)";
  std::printf("  %d forms use the packages' classes (%d classes met)\n", forms, static_cast<int>(instances.size()));
  std::printf("  properties of later versions, by name:");
  for (const auto& [what, count] : later) std::printf(" %s(%d)", what.c_str(), count);
  std::printf("\n  values of later versions:");
  for (const auto& [what, count] : otherErrors) std::printf(" [%s](%d)", what.c_str(), count);
  std::printf("\n");
}

}  // namespace
