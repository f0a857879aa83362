// The real form files: every one reads into a form with this layer's classes and is
// drawn offscreen; the properties that stay unknown are those later versions added;
// and the controls stand where their streams put them.
#include "platform/vcl/FormRender.h"

#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/support/StandardPackage.h"
#include "tests/support/Corpus.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <regex>
#include <set>
#include <sstream>

namespace {

// Published by later versions of these classes, not by the ones this layer follows: a
// stream that has them gets "Property ... does not exist", as it would have then.
const std::set<std::string> kLaterProperties = {
    "AlignWithMargins", "AutoCheck", "AutoComplete", "Customizable", "AutoHotkeys", "AutoLineReduction", "BevelEdges", "BevelKind",
    "CustomHint", "DesignSize", "DoubleBuffered", "ExplicitHeight", "ExplicitLeft", "ExplicitTop", "ExplicitWidth",
    "HelpKeyword", "HelpType", "Margins", "MenuAnimation", "NumbersOnly", "OnContextPopup", "OnMouseEnter",
    "OnMouseLeave", "Padding", "ParentBackground", "ParentCustomHint", "ParentDoubleBuffered", "Proportional",
    "ShortCutText", "ShowCaption", "StyleElements", "TextHint", "Touch",
    // Names other classes here publish, added later to these ones.
    "TAction.GroupIndex", "TButton.ImageIndex", "TButton.Images", "TButton.WordWrap", "TCheckBox.WordWrap",
    "TComboBox.ItemIndex", "TRichEdit.Zoom", "TOpenDialog.Height", "TOpenDialog.Width", "TSaveDialog.Height", "TSaveDialog.Width",
    "TCoolBar.BandMaximize", "TDateTimePicker.Format", "TToolBar.Menu",
};

std::string ReadAll(const std::filesystem::path& path) { return lumora::test::ReadFileBytes(path); }

// "Error reading Button1.Margins.Left: Property Margins does not exist" -> Button1, Margins.
bool SplitReadError(const std::string& message, std::string& component, std::string& property) {
  static const std::regex re(R"(^Error reading ([A-Za-z0-9_]+)\.([A-Za-z0-9_]+)[^:]*: Property .* does not exist$)");
  std::smatch m;
  if (!std::regex_match(message, m, re)) return false;
  component = m[1];
  property = m[2];
  return true;
}

class CorpusFormsTest : public ::testing::Test {
protected:
  void SetUp() override {
    Application->Initialize();
    RegisterVclClasses();
  }
};

}  // namespace

TEST_F(CorpusFormsTest, EveryBinaryFormReadsAndIsDrawn) {
  LUMORA_REQUIRE_CORPUS();
  auto files = lumora::test::CorpusFiles("bin", ".dfm");
  const auto pairs = lumora::test::CorpusFiles("pairs", ".bin.dfm");
  files.insert(files.end(), pairs.begin(), pairs.end());
  ASSERT_GT(files.size(), 2000u);
  int drawn = 0;
  std::map<std::string, int> unknown;  // Class.Property -> forms
  for (const auto& path : files) {
    SCOPED_TRACE(path.string());
    auto* form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, ReadAll(path));
    EXPECT_TRUE(result.Read) << (result.Errors.empty() ? std::string() : result.Errors.back());
    for (const std::string& e : result.Errors) {
      std::string name, prop;
      if (!SplitReadError(e, name, prop)) continue;
      // The root's class is the user's form, frame, report or data module; its own
      // properties are not this layer's.
      if (SameText(name, form->Name())) continue;
      TComponent* c = form->FindComponent(name);
      if (!c) continue;
      ++unknown[c->ClassName() + "." + prop];
    }
    const QImage image = RenderForm(form);
    if (!image.isNull() && image.width() == std::max(1, form->Width())) ++drawn;
    delete form;
  }
  EXPECT_EQ(drawn, static_cast<int>(files.size()));
  int later = 0;
  for (const auto& [what, count] : unknown) {
    const std::string prop = what.substr(what.find('.') + 1);
    if (kLaterProperties.count(prop) || kLaterProperties.count(what)) {
      later += count;
    } else {
      ADD_FAILURE() << what << " does not exist (" << count << " times)";
    }
  }
  std::printf("  %zu binary forms read and drawn; %d unknown properties, all of later versions:", files.size(), later);
  for (const auto& [what, count] : unknown) std::printf(" %s(%d)", what.c_str(), count);
  std::printf("\n");
}

TEST_F(CorpusFormsTest, TextFormsAndDamagedFilesReadWithoutCrashing) {
  LUMORA_REQUIRE_CORPUS();
  int read = 0;
  const auto text = lumora::test::CorpusFiles("text", ".dfm");
  for (const auto& path : text) {
    auto* form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, ReadAll(path));
    if (result.Read) {
      ++read;
    } else {
      // Not a form at all (a template with placeholders for names): a clear message.
      EXPECT_FALSE(result.Errors.empty()) << path;
      std::printf("  %s: %s\n", path.filename().c_str(), result.Errors.empty() ? "" : result.Errors.back().c_str());
    }
    delete form;
  }
  EXPECT_GE(read, static_cast<int>(text.size()) - 1);
  int reported = 0;
  const auto broken = lumora::test::CorpusFiles("broken");
  for (const auto& path : broken) {
    auto* form = new TForm(Application);
    const TFormLoadResult result = LoadFormFile(form, ReadAll(path));
    if (!result.Read) {
      EXPECT_FALSE(result.Errors.empty()) << path;
      ++reported;
    }
    delete form;
  }
  std::printf("  %d text forms read; %d of %zu damaged files reported an error\n", read, reported, broken.size());
  EXPECT_GT(reported, static_cast<int>(broken.size()) / 2);
}

namespace {

// The bounds each object of a form text gives, by component name (the first object of a
// name only).
std::map<std::string, std::map<std::string, int>> StreamBounds(const std::string& text) {
  std::map<std::string, std::map<std::string, int>> bounds;
  std::vector<std::string> stack;
  std::set<std::string> seen;
  std::istringstream in(text);
  std::string line;
  char skipUntil = 0;
  static const std::regex objectLine(R"(^\s*(object|inherited|inline)\s+([A-Za-z0-9_]+)\s*:.*)");
  static const std::regex propLine(R"(^\s*(Left|Top|Width|Height|AutoSize|Align|Anchors) = (.*)$)");
  static const std::regex otherProp(R"(^\s*[A-Za-z0-9_.]+ = (.*)$)");
  while (std::getline(in, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::string t = line;
    while (!t.empty() && (t.back() == ' ')) t.pop_back();
    if (skipUntil) {
      if ((skipUntil == '}' && t.find('}') != std::string::npos) || (!t.empty() && t.back() == skipUntil)) skipUntil = 0;
      continue;
    }
    std::smatch m;
    if (std::regex_match(t, m, objectLine)) {
      stack.push_back(seen.insert(m[2]).second ? std::string(m[2]) : std::string());
      continue;
    }
    const auto first = t.find_first_not_of(' ');
    if (first != std::string::npos && t.substr(first) == "end") {
      if (!stack.empty()) stack.pop_back();
      continue;
    }
    if (std::regex_match(t, m, propLine)) {
      if (!stack.empty() && !stack.back().empty()) {
        const std::string v = m[2];
        int n = 0;
        if (m[1] == "AutoSize") {
          n = v == "True" ? 1 : 0;
        } else if (m[1] == "Align") {
          n = v == "alNone" ? 0 : 1;
        } else if (m[1] == "Anchors") {
          n = v == "[akLeft, akTop]" ? 0 : 1;
        } else {
          try {
            n = std::stoi(v);
          } catch (...) {
            continue;
          }
        }
        bounds[stack.back()][m[1]] = n;
      }
      continue;
    }
    if (std::regex_match(t, m, otherProp)) {
      const std::string v = m[1];
      if (v == "<" || (v.front() == '<' && v.back() != '>')) skipUntil = '>';
      if (v == "(" || (v.front() == '(' && v.back() != ')')) skipUntil = ')';
      if (v.front() == '{' && v.find('}') == std::string::npos) skipUntil = '}';
    }
  }
  return bounds;
}

}  // namespace

TEST_F(CorpusFormsTest, ControlsStandWhereTheirStreamsPutThem) {
  LUMORA_REQUIRE_CORPUS();
  int compared = 0, equal = 0, commonCompared = 0, commonEqual = 0;
  std::map<std::string, int> differ;  // Class -> values off
  auto files = lumora::test::CorpusFiles("text", ".dfm");
  const auto binary = lumora::test::CorpusFiles("bin", ".dfm");
  files.insert(files.end(), binary.begin(), binary.end());
  for (const auto& path : files) {
    std::string text = ReadAll(path);
    if (DetectFormFileFormat(text) == TFormFileFormat::Resource) {
      try {
        text = ObjectBinaryToText(std::string_view(text).substr(ReadResHeader(text)));
      } catch (const Exception&) {
        continue;
      }
    }
    // Later versions lay out with margins and write the bounds a control had before
    // alignment ("Explicit..."); they also save from desktops with other window frames,
    // noting the client size as DesignSize. Their streams are not this layout's.
    bool later = false;
    for (const char* mark : {"ExplicitWidth", "ExplicitHeight", "ExplicitLeft", "ExplicitTop", "DesignSize",
                             "Margins.", "AlignWithMargins"}) {
      later |= text.find(mark) != std::string::npos;
    }
    if (later) continue;
    // Forms designed at another resolution are scaled to the screen's, as they should be;
    // an inherited form streams only what differs from its ancestor.
    if (text.find("PixelsPerInch = 96") == std::string::npos || text.rfind("inherited", 0) == 0) continue;
    auto* form = new TForm(Application);
    const TFormLoadResult loaded = LoadFormFile(form, text);
    // A control of a class that is not here leaves a gap its aligned neighbours fill.
    const bool classMissing = std::any_of(loaded.Errors.begin(), loaded.Errors.end(), [](const std::string& e) {
      return e.rfind("Class ", 0) == 0 && e.find(" not found") != std::string::npos;
    });
    if (!loaded.Read || classMissing) {
      delete form;
      continue;
    }
    for (const auto& [name, values] : StreamBounds(text)) {
      auto* c = dynamic_cast<TControl*>(form->FindComponent(name));
      if (!c || !c->Parent() || values.count("Left") == 0) continue;
      // Controls placed by the common controls (pages, tool bars, status bars) are
      // counted apart: those classes lay out their children themselves.
      bool inCommon = false;
      for (TControl* p = c; p; p = p->Parent()) {
        const std::string& cls = p->ClassName();
        inCommon |= cls == "TTabSheet" || cls == "TPageControl" || cls == "TTabControl" || cls == "TToolBar" ||
                    cls == "TCoolBar" || cls == "TStatusBar";
      }
      // Sizes that follow the font (autosized labels, edits and combo boxes) come from
      // this program's font metrics, not the stream's.
      const bool autoSize = c->AutoSize() && (values.count("AutoSize") == 0 || values.at("AutoSize") == 1);
      const bool fontSized = dynamic_cast<TCustomComboBox*>(c) || (autoSize && dynamic_cast<TCustomEdit*>(c));
      const bool labelSized = autoSize && (dynamic_cast<TCustomLabel*>(c) || dynamic_cast<TCustomStaticText*>(c));
      auto check = [&](const char* prop, int actual, bool skip) {
        if (skip || values.count(prop) == 0) return;
        if (inCommon) {
          ++commonCompared;
          if (values.at(prop) == actual) ++commonEqual;
          return;
        }
        ++compared;
        if (values.at(prop) == actual) {
          ++equal;
        } else {
          ++differ[c->ClassName()];
          if (std::getenv("LUMORA_SHOW_GEOMETRY")) {
            std::printf("    %s %s.%s (%s in %s): %d, stream %d\n", path.filename().c_str(), name.c_str(), prop,
                        c->ClassName().c_str(), c->Parent()->ClassName().c_str(), actual, values.at(prop));
          }
        }
      };
      // A right-aligned autosized label keeps its right edge, so its left follows its width.
      check("Left", c->Left(), labelSized);
      check("Top", c->Top(), false);
      check("Width", c->Width(), labelSized);
      check("Height", c->Height(), labelSized || fontSized);
    }
    delete form;
  }
  std::printf("  %d of %d positions and sizes as the streams give them (in common controls: %d of %d); off by class:",
              equal, compared, commonEqual, commonCompared);
  for (const auto& [cls, n] : differ) std::printf(" %s(%d)", cls.c_str(), n);
  std::printf("\n");
  EXPECT_GT(compared, 12000);
  EXPECT_GE(static_cast<double>(equal) / compared, 0.99);
}
