// The real form files with the data and report packages: every form that uses one of
// their classes reads it without an unknown property that the Delphi 4 class publishes
// (properties of later versions are printed by name), and how many of all the component
// instances the corpus holds get built with the controls and these packages.
#include "packages/dcldb/DclDb.h"
#include "packages/dclqrt/DclQrt.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "tests/packages/PackageTestUtil.h"
#include "tests/support/Corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

namespace fs = std::filesystem;

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

// Every corpus form: binary files, the binary side of the pairs, text files.
std::vector<fs::path> AllForms() {
  auto files = lumora::test::CorpusFiles("bin", ".dfm");
  for (const auto& more : {lumora::test::CorpusFiles("pairs", ".bin.dfm"), lumora::test::CorpusFiles("text", ".dfm")})
    files.insert(files.end(), more.begin(), more.end());
  return files;
}

// The form as text, or '' when it does not convert.
std::string FormText(const std::string& data) {
  try {
    switch (DetectFormFileFormat(data)) {
      case TFormFileFormat::Resource: return ObjectBinaryToText(std::string_view(data).substr(ReadResHeader(data)));
      case TFormFileFormat::Stream: return ObjectBinaryToText(data);
      case TFormFileFormat::Text: return data;
      default: return std::string();
    }
  } catch (const Exception&) {
    return std::string();
  }
}

class PackagesCorpusTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() { lumora::test::RegisterPackageClassesForTest(true); }
};

TEST_F(PackagesCorpusTest, FormsUsingThePackagesClassesReadAllTheirDelphi4Properties) {
  LUMORA_REQUIRE_CORPUS();
  const std::set<std::string> ours = PackageClassNames();
  const auto files = AllForms();
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

TEST_F(PackagesCorpusTest, ShareOfTheCorpusComponentsBuilt) {
  LUMORA_REQUIRE_CORPUS();
  const std::set<std::string> ours = PackageClassNames();
  const auto files = AllForms();
  static const std::regex objectLine(R"(^(\s*)(object|inherited|inline)\s+(?:[A-Za-z0-9_]+\s*:\s*)?([A-Za-z0-9_]+))");
  // Counted with the controls alone and with the packages too: by class (the class is
  // known) and as the reader builds them (it skips a component of an unknown class with
  // everything inside it). The root is the user's own class, not counted.
  struct TCount {
    long ByClass = 0;
    long Built = 0;
  } controls, packages;
  long total = 0;
  std::map<std::string, long> notBuilt;
  for (const auto& path : files) {
    const std::string text = FormText(lumora::test::ReadFileBytes(path));
    if (text.empty()) continue;
    struct TAround {
      std::size_t Indent;
      bool Controls, Packages;
    };
    std::vector<TAround> around;
    std::istringstream in(text);
    std::string line;
    bool root = true;
    while (std::getline(in, line)) {
      std::smatch m;
      if (!std::regex_search(line, m, objectLine)) continue;
      const std::size_t indent = m[1].length();
      while (!around.empty() && around.back().Indent >= indent) around.pop_back();
      if (root) {
        root = false;
        around.push_back({indent, true, true});
        continue;
      }
      const std::string cls = m[3];
      const bool known = GetClass(cls) != nullptr;
      const bool knownToControls = known && !ours.count(cls);
      const bool controlsBuilt = knownToControls && (around.empty() || around.back().Controls);
      const bool packagesBuilt = known && (around.empty() || around.back().Packages);
      ++total;
      controls.ByClass += knownToControls;
      controls.Built += controlsBuilt;
      packages.ByClass += known;
      packages.Built += packagesBuilt;
      if (!known) ++notBuilt[cls];
      around.push_back({indent, controlsBuilt, packagesBuilt});
    }
  }
  ASSERT_GT(total, 80000);
  auto percent = [total](long n) { return 100.0 * static_cast<double>(n) / static_cast<double>(total); };
  std::printf("  %ld component instances (roots aside)\n", total);
  std::printf("  controls alone: %.1f%% of the classes known, %.1f%% built\n", percent(controls.ByClass),
              percent(controls.Built));
  std::printf("  with the data and report packages: %.1f%% of the classes known, %.1f%% built\n",
              percent(packages.ByClass), percent(packages.Built));
  std::vector<std::pair<long, std::string>> top;
  for (const auto& [cls, n] : notBuilt) top.push_back({n, cls});
  std::sort(top.begin(), top.end(),
            [](const auto& a, const auto& b) { return a.first > b.first || (a.first == b.first && a.second < b.second); });
  std::printf("  the 20 most frequent classes still missing:");
  for (std::size_t i = 0; i < top.size() && i < 20; ++i) std::printf(" %s(%ld)", top[i].second.c_str(), top[i].first);
  std::printf("\n");
  // The packages' classes are a quarter of the corpus's components; with them, four
  // components in five have a class.
  EXPECT_GT(percent(packages.ByClass) - percent(controls.ByClass), 24.0);
  EXPECT_GT(percent(packages.ByClass), 81.5);
  EXPECT_GT(percent(packages.Built) - percent(controls.Built), 20.0);
}

}  // namespace
