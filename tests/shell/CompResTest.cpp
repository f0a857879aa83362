#include "shell/CompRes.h"

#include "foundation/ApEvent.h"
#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/PeImage.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/Values.h"
#include "tests/support/Corpus.h"
#include "tests/support/PeBuilder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <set>
#include <unistd.h>

namespace fs = std::filesystem;
using lumora::test::CorpusDir;
using lumora::test::CorpusFiles;
using lumora::test::ReadFileBytes;

namespace {

// A small form of our own: a caption, a button in a published field and a label that
// only the registry knows, each with a click event.
class TDocButton : public TComponent {
  LUMORA_CLASS(TDocButton, TComponent)
public:
  explicit TDocButton(TComponent* owner) : TComponent(owner) {}
  std::string FCaption;
  int FWidth = 75;
  TNotifyEvent OnClick;
};

class TDocLabel : public TComponent {
  LUMORA_CLASS(TDocLabel, TComponent)
public:
  explicit TDocLabel(TComponent* owner) : TComponent(owner) {}
  std::string FCaption;
};

class TDocForm : public TComponent {
  LUMORA_CLASS(TDocForm, TComponent)
public:
  explicit TDocForm(TComponent* owner) : TComponent(owner) {}
  void GetChildren(const TGetChildProc& proc, TComponent* root) override {
    if (root != this) return;
    for (int i = 0; i < ComponentCount(); ++i) proc(Components(i));
  }
  void Button1Click(TObject*) { ++Clicks; }
  std::string FCaption;
  TDocButton* Button1 = nullptr;
  int Clicks = 0;
};

// Counts the change events of a document.
struct TChangeCounter {
  int Count = 0;
  TObject* LastSender = nullptr;
  void Attach(TjoComponentResource& doc) {
    doc.OnChange = [this](TObject* sender) {
      ++Count;
      LastSender = sender;
    };
  }
};

std::string TempFile(const std::string& name, const std::string& bytes) {
  fs::path p = fs::temp_directory_path() / ("lumora-compres-" + std::to_string(::getpid()) + "-" + name);
  std::ofstream(p, std::ios::binary) << bytes;
  return p.string();
}

const char* const SmallFormText =
    "object Form1: TDocForm\r\n"
    "  Caption = 'Hello'\r\n"
    "  object Button1: TDocButton\r\n"
    "    Caption = 'OK'\r\n"
    "    Width = 90\r\n"
    "    OnClick = Button1Click\r\n"
    "  end\r\n"
    "  object Label1: TDocLabel\r\n"
    "    Caption = 'Name'\r\n"
    "  end\r\n"
    "end\r\n";

std::string SmallFormResource() {
  return ObjectTextToResource(SmallFormText);
}

class CompResTest : public ::testing::Test {
protected:
  void SetUp() override {
    FinalizeApEvent();
    RegisterClass(TDocLabel::StaticClass());
  }
  void TearDown() override {
    UnRegisterClass(TDocLabel::StaticClass());
    FinalizeApEvent();
    for (const std::string& f : FFiles) std::remove(f.c_str());
  }
  std::string File(const std::string& name, const std::string& bytes) {
    FFiles.push_back(TempFile(name, bytes));
    return FFiles.back();
  }
  std::vector<std::string> Deferred() const {
    std::vector<std::string> lines;
    if (TStringList* errors = DeferredErrors())
      for (int i = 0; i < errors->Count(); ++i) lines.push_back(errors->Strings(i));
    return lines;
  }

private:
  std::vector<std::string> FFiles;
};

}  // namespace

LUMORA_CLASS_IMPL(TDocButton) {
  c.Property("Caption", &TDocButton::FCaption, &TDocButton::FCaption);
  c.Property("Width", &TDocButton::FWidth, &TDocButton::FWidth).Default(75);
  c.Property("OnClick", &TDocButton::OnClick, &TDocButton::OnClick);
}

LUMORA_CLASS_IMPL(TDocLabel) {
  c.Property("Caption", &TDocLabel::FCaption, &TDocLabel::FCaption);
}

LUMORA_CLASS_IMPL(TDocForm) {
  c.Property("Caption", &TDocForm::FCaption, &TDocForm::FCaption);
  c.Field("Button1", &TDocForm::Button1);
  c.Method<&TDocForm::Button1Click>("Button1Click");
}

// ---- loading ----------------------------------------------------------------------

TEST_F(CompResTest, ANewDocumentIsEmpty) {
  TjoComponentResource doc(nullptr);
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_TRUE(doc.Data().empty());
  EXPECT_TRUE(static_cast<bool>(doc.OnReadError()));
  EXPECT_TRUE(static_cast<bool>(doc.OnFindMethod()));
  TStringList list;
  list.Add("stale");
  doc.AssignTo(&list);
  EXPECT_EQ(list.Count(), 0);
  EXPECT_TRUE(doc.IsEmpty());
}

TEST_F(CompResTest, ABinaryFormFileLoadsWithoutItsHeader) {
  std::string resource = SmallFormResource();
  std::string name = File("small.dfm", resource);
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  EXPECT_TRUE(doc.LoadFromFile(name));
  EXPECT_EQ(doc.Data(), resource.substr(ReadResHeader(resource)));
  EXPECT_EQ(changes.Count, 1);
  EXPECT_EQ(changes.LastSender, &doc);
  TStringList list;
  doc.AssignTo(&list);
  EXPECT_EQ(list.Text(), SmallFormText);
  // Loading the same file again raises the event again: the document was not empty.
  EXPECT_TRUE(doc.LoadFromFile(name));
  EXPECT_EQ(changes.Count, 2);
  EXPECT_EQ(list.Text(), SmallFormText);
}

TEST_F(CompResTest, AMissingFileChangesNothing) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  ASSERT_TRUE(doc.LoadFromFile(File("a.dfm", SmallFormResource())));
  std::string before(doc.Data());
  EXPECT_FALSE(doc.LoadFromFile(fs::temp_directory_path() / "lumora-no-such-file.dfm"));
  EXPECT_FALSE(doc.LoadFromFile(""));
  EXPECT_FALSE(doc.LoadFromFile(fs::temp_directory_path().string()));
  EXPECT_EQ(doc.Data(), before);
  EXPECT_EQ(changes.Count, 1);
}

TEST_F(CompResTest, ATextFormFileIsRefusedWithTheInvalidStreamFormatError) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  std::string name = File("text.dfm", SmallFormText);
  try {
    doc.LoadFromFile(name);
    FAIL() << "a text file was accepted";
  } catch (const EInvalidImage& e) {
    EXPECT_EQ(e.Message(), "Invalid stream format");
  }
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(changes.Count, 0);
  // A loaded document is emptied before the header is read, without an event.
  ASSERT_TRUE(doc.LoadFromFile(File("b.dfm", SmallFormResource())));
  EXPECT_THROW(doc.LoadFromFile(name), EInvalidImage);
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(changes.Count, 1);
}

TEST_F(CompResTest, AFormInsideAProgramLoadsByItsResourceName) {
  const std::string stream = ObjectTextToBinary(SmallFormText);
  std::string program = File("app.exe", lumora::test::BuildPeImage({{"#10", "TFORM1", 0, stream}}).Bytes);
  TjoComponentResource doc(nullptr);
  EXPECT_TRUE(doc.LoadFromFile(program + ":TForm1"));
  EXPECT_EQ(doc.Data(), stream);
  TStringList list;
  doc.AssignTo(&list);
  EXPECT_EQ(list.Text(), SmallFormText);
  // The program itself is untouched.
  EXPECT_EQ(ReadFileBytes(program), lumora::test::BuildPeImage({{"#10", "TFORM1", 0, stream}}).Bytes);
  // A form the program lacks is named with the program; the document keeps its form.
  try {
    doc.LoadFromFile(program + ":TOther");
    FAIL() << "a missing form was loaded";
  } catch (const EPeImageError& e) {
    EXPECT_EQ(e.Message(), program + ": No form named TOther in the program; its forms are TFORM1");
  }
  EXPECT_EQ(doc.Data(), stream);
}

TEST_F(CompResTest, AHeaderFollowedByAnythingButTPF0IsRefused) {
  std::string resource = SmallFormResource();
  std::size_t at = ReadResHeader(resource);
  for (const char* wrong : {"TPF1", "tpf0", "XXXX", "TPF"}) {
    std::string bad = resource.substr(0, at) + wrong;
    if (std::string(wrong).size() == 4) bad += resource.substr(at + 4);
    TjoComponentResource doc(nullptr);
    TChangeCounter changes;
    changes.Attach(doc);
    TStringStream empty(bad);
    EXPECT_FALSE(doc.LoadFromStream(empty, true)) << wrong;
    EXPECT_TRUE(doc.IsEmpty());
    EXPECT_EQ(changes.Count, 0);  // empty before, empty after
    TStringStream good(resource);
    ASSERT_TRUE(doc.LoadFromStream(good, true));
    TStringStream again(bad);
    EXPECT_FALSE(doc.LoadFromStream(again, true));
    EXPECT_TRUE(doc.IsEmpty());
    EXPECT_EQ(changes.Count, 2);  // loaded, then emptied
  }
}

TEST_F(CompResTest, AStreamLoadsFromItsPositionWithOrWithoutHeader) {
  std::string stream = ObjectTextToBinary(SmallFormText);
  TStringStream bare("junk" + stream);
  bare.SetPosition(4);
  TjoComponentResource doc(nullptr);
  EXPECT_TRUE(doc.LoadFromStream(bare, false));
  EXPECT_EQ(doc.Data(), stream);
  TStringStream withHeader(SmallFormResource());
  EXPECT_TRUE(doc.LoadFromStream(withHeader, true));
  EXPECT_EQ(doc.Data(), stream);
  TStringStream nothing("");
  EXPECT_FALSE(doc.LoadFromStream(nothing, false));
  EXPECT_TRUE(doc.IsEmpty());
}

TEST_F(CompResTest, ClearRaisesTheEventOnlyWhenSomethingGoes) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  doc.Clear();
  EXPECT_EQ(changes.Count, 0);
  TStringStream s(SmallFormResource());
  doc.LoadFromStream(s, true);
  doc.Clear();
  EXPECT_EQ(changes.Count, 2);
  EXPECT_TRUE(doc.IsEmpty());
}

TEST_F(CompResTest, DestroyingALoadedDocumentRaisesTheEvent) {
  TChangeCounter changes;
  {
    TjoComponentResource doc(nullptr);
    changes.Attach(doc);
    TStringStream s(SmallFormResource());
    doc.LoadFromStream(s, true);
  }
  EXPECT_EQ(changes.Count, 2);
  {
    TjoComponentResource doc(nullptr);
    changes.Attach(doc);
  }
  EXPECT_EQ(changes.Count, 2);
}

// ---- text -------------------------------------------------------------------------

TEST_F(CompResTest, AssigningFormTextCompilesItWithOneEvent) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  TStringStream s(SmallFormResource());
  doc.LoadFromStream(s, true);
  TStringList text;
  text.SetText(std::string(SmallFormText).replace(std::string(SmallFormText).find("'Hello'"), 7, "'Changed'"));
  doc.Assign(&text);
  EXPECT_EQ(changes.Count, 2);  // the load, then the assignment (not the clear inside it)
  TStringList back;
  doc.AssignTo(&back);
  EXPECT_EQ(back.Text(), text.Text());
  EXPECT_EQ(doc.Data(), ObjectTextToBinary(text.Text()));
}

// A stream whose values are stored in ways the text cannot tell apart from the usual
// ones: a small integer in 16 bits, a float that reads as an integer, an empty wide string.
std::string LooselyTypedStream() {
  std::string out;
  TValueWriter w(out);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TDocForm", "Form1");
  w.WriteShortString("Left");
  w.WriteValue(vaInt16);
  w.WriteInt16Raw(5);
  w.WriteShortString("Scale");
  w.WriteExtended(1.0L);
  w.WriteShortString("Caption");
  w.WriteWideString(u"");
  w.WriteShortString("Tag");
  w.WriteValue(vaInt32);
  w.WriteInt32Raw(7);
  w.WriteListEnd();
  w.WriteListEnd();
  return out;
}

TEST_F(CompResTest, TextGivenBackUnchangedGivesTheSameStream) {
  const std::string stream = LooselyTypedStream();
  ASSERT_NE(ObjectTextToBinary(ObjectBinaryToText(stream)), stream);  // the text alone loses the types
  TjoComponentResource doc(nullptr);
  TStringStream s(stream);
  ASSERT_TRUE(doc.LoadFromStream(s, false));
  TStringList text;
  doc.AssignTo(&text);
  doc.Assign(&text);
  EXPECT_EQ(doc.Data(), stream);
}

TEST_F(CompResTest, AnEditChangesOnlyItsOwnBytes) {
  const std::string stream = LooselyTypedStream();
  TjoComponentResource doc(nullptr);
  TStringStream s(stream);
  ASSERT_TRUE(doc.LoadFromStream(s, false));
  TStringList text;
  doc.AssignTo(&text);
  const int tag = text.IndexOf("  Tag = 7");
  ASSERT_GE(tag, 0);
  text.SetStrings(tag, "  Tag = 8");
  doc.Assign(&text);
  std::string expected = stream;
  // Tag was 32 bits and is written as the text writes a new value: 8 bits.
  const std::size_t at = expected.find(std::string("\x03Tag", 4));
  ASSERT_NE(at, std::string::npos);
  expected.replace(at + 4, 5, std::string("\x02\x08", 2));
  EXPECT_EQ(doc.Data(), expected);
}

TEST_F(CompResTest, TextThatDoesNotParseLeavesAnEmptyDocumentAndTheParserError) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  TStringStream s(SmallFormResource());
  doc.LoadFromStream(s, true);
  TStringList text;
  text.SetText("object Form1: TDocForm\r\n  Caption = 'unterminated\r\nend\r\n");
  try {
    doc.Assign(&text);
    FAIL() << "bad text was accepted";
  } catch (const EParserError& e) {
    EXPECT_NE(e.Message().find("line"), std::string::npos) << e.Message();
  }
  EXPECT_TRUE(doc.IsEmpty());
  EXPECT_EQ(changes.Count, 1);
  // The document works on afterwards.
  text.SetText(SmallFormText);
  doc.Assign(&text);
  EXPECT_FALSE(doc.IsEmpty());
  EXPECT_EQ(changes.Count, 2);
}

TEST_F(CompResTest, AssigningAnythingElseIsIgnored) {
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  TStringStream s(SmallFormResource());
  doc.LoadFromStream(s, true);
  std::string before(doc.Data());
  TCollection collection(TCollectionItem::StaticClass());
  doc.Assign(&collection);
  doc.Assign(nullptr);
  EXPECT_EQ(doc.Data(), before);
  EXPECT_EQ(changes.Count, 1);
}

TEST_F(CompResTest, AssigningToAnythingElseIsTheCannotAssignError) {
  TjoComponentResource doc(nullptr);
  TCollection collection(TCollectionItem::StaticClass());
  try {
    doc.AssignTo(&collection);
    FAIL();
  } catch (const EConvertError& e) {
    EXPECT_EQ(e.Message(), "Cannot assign a TjoComponentResource to a TCollection");
  }
}

// ---- components -------------------------------------------------------------------

TEST_F(CompResTest, AComponentTreeGoesInAndComesOut) {
  TDocForm source(nullptr);
  source.SetName("Form1");
  source.FCaption = "Built";
  auto* button = new TDocButton(&source);
  button->SetName("Button1");
  button->FCaption = "Go";
  button->FWidth = 120;
  auto* label = new TDocLabel(&source);
  label->SetName("Label1");
  label->FCaption = "Here";
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  doc.Assign(&source);
  EXPECT_EQ(changes.Count, 1);
  EXPECT_EQ(doc.Data(), WriteComponentToBinary(&source));

  TDocForm target(nullptr);
  auto* stale = new TDocLabel(&target);
  stale->SetName("Stale");
  doc.AssignTo(&target);
  EXPECT_EQ(target.FindComponent("Stale"), nullptr);
  EXPECT_EQ(target.Name(), "Form1");
  EXPECT_EQ(target.FCaption, "Built");
  ASSERT_NE(target.Button1, nullptr);
  EXPECT_EQ(target.Button1->FCaption, "Go");
  EXPECT_EQ(target.Button1->FWidth, 120);
  auto* label1 = dynamic_cast<TDocLabel*>(target.FindComponent("Label1"));
  ASSERT_NE(label1, nullptr);
  EXPECT_EQ(label1->FCaption, "Here");
  EXPECT_TRUE(Deferred().empty());
  // Twice: the first tree is replaced, not doubled.
  doc.AssignTo(&target);
  EXPECT_EQ(target.ComponentCount(), 2);
  // An empty document strips the destination of its components.
  doc.Clear();
  doc.AssignTo(&target);
  EXPECT_EQ(target.ComponentCount(), 0);
  EXPECT_EQ(target.Button1, nullptr);
}

TEST_F(CompResTest, EventBindingsAreDroppedByDefault) {
  TStringStream s(SmallFormResource());
  TjoComponentResource doc(nullptr);
  ASSERT_TRUE(doc.LoadFromStream(s, true));
  TDocForm form(nullptr);
  doc.AssignTo(&form);
  ASSERT_NE(form.Button1, nullptr);
  EXPECT_FALSE(form.Button1->OnClick.Assigned());
  EXPECT_TRUE(Deferred().empty());
  // A handler of our own binds them; an empty one brings the default back.
  doc.SetOnFindMethod([](TReader*, const std::string&, TMethod&, bool& error) { error = false; });
  doc.AssignTo(&form);
  ASSERT_TRUE(form.Button1->OnClick.Assigned());
  form.Button1->OnClick(form.Button1);
  EXPECT_EQ(form.Clicks, 1);
  doc.SetOnFindMethod(nullptr);
  doc.AssignTo(&form);
  EXPECT_FALSE(form.Button1->OnClick.Assigned());
}

TEST_F(CompResTest, ReadErrorsAreDeferredOnceEachAndReadingGoesOn) {
  const std::string text =
      "object Form1: TDocForm\r\n"
      "  Caption = 'Still read'\r\n"
      "  Unknown = 1\r\n"
      "  object Thing1: TNoSuchThing\r\n"
      "    Caption = 'x'\r\n"
      "  end\r\n"
      "  object Thing2: TNoSuchThing\r\n"
      "  end\r\n"
      "  object Button1: TDocButton\r\n"
      "    Caption = 'After'\r\n"
      "  end\r\n"
      "end\r\n";
  TjoComponentResource doc(nullptr);
  TStringList list;
  list.SetText(text);
  doc.Assign(&list);
  TDocForm form(nullptr);
  doc.AssignTo(&form);
  EXPECT_EQ(form.FCaption, "Still read");
  ASSERT_NE(form.Button1, nullptr);
  EXPECT_EQ(form.Button1->FCaption, "After");
  std::vector<std::string> errors = Deferred();
  ASSERT_EQ(errors.size(), 2u);
  EXPECT_NE(errors[0].find("Unknown"), std::string::npos) << errors[0];
  EXPECT_EQ(errors[1], "Class TNoSuchThing not found");
  // An empty handler given later restores the same default.
  std::vector<std::string> seen;
  doc.SetOnReadError([&](TReader*, const std::string& message, bool& handled) {
    seen.push_back(message);
    handled = false;
  });
  EXPECT_THROW(doc.AssignTo(&form), EFilerError);
  EXPECT_EQ(seen.size(), 1u);
  doc.SetOnReadError(nullptr);
  FinalizeApEvent();
  doc.AssignTo(&form);
  EXPECT_EQ(Deferred().size(), 2u);
  EXPECT_EQ(form.Button1->FCaption, "After");
}

TEST_F(CompResTest, TheScratchStreamComesBackAfterADocumentIsFreed) {
  TStringStream s1(SmallFormResource()), s2(SmallFormResource());
  TjoComponentResource kept(nullptr);
  kept.LoadFromStream(s1, true);
  {
    TjoComponentResource other(nullptr);
    other.LoadFromStream(s2, true);
    TStringList list;
    other.AssignTo(&list);
  }
  TStringList list;
  kept.AssignTo(&list);
  EXPECT_EQ(list.Text(), SmallFormText);
}

// ---- the real files -----------------------------------------------------------------

TEST_F(CompResTest, EveryBinaryFileOfTheCorpusLoadsAndGivesTheConvertersText) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<fs::path> files = CorpusFiles("bin");
  for (const fs::path& p : CorpusFiles("pairs", ".bin.dfm")) files.push_back(p);
  ASSERT_GT(files.size(), 2000u);
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  TStringList list;
  int loaded = 0;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    std::string bytes = ReadFileBytes(file);
    ASSERT_TRUE(doc.LoadFromFile(file.string()));
    std::string_view stream = std::string_view(bytes).substr(ReadResHeader(bytes));
    ASSERT_EQ(doc.Data(), stream);
    doc.AssignTo(&list);
    ASSERT_EQ(list.Text(), ObjectBinaryToText(stream));
    ++loaded;
  }
  EXPECT_EQ(loaded, int(files.size()));
  EXPECT_EQ(changes.Count, loaded);
}

TEST_F(CompResTest, EveryBinaryFileComesBackByteForByteThroughItsText) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<fs::path> files = CorpusFiles("bin");
  for (const fs::path& p : CorpusFiles("pairs", ".bin.dfm")) files.push_back(p);
  ASSERT_GT(files.size(), 2000u);
  TjoComponentResource doc(nullptr);
  TStringList list;
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    ASSERT_TRUE(doc.LoadFromFile(file.string()));
    const std::string stream(doc.Data());
    doc.AssignTo(&list);
    doc.Assign(&list);
    ASSERT_EQ(doc.Data(), stream);
  }
}

TEST_F(CompResTest, EveryTextFileOfTheCorpusIsRefused) {
  LUMORA_REQUIRE_CORPUS();
  std::vector<fs::path> files = CorpusFiles("text");
  for (const fs::path& p : CorpusFiles("pairs", ".txt.dfm")) files.push_back(p);
  ASSERT_GT(files.size(), 1000u);
  TjoComponentResource doc(nullptr);
  TChangeCounter changes;
  changes.Attach(doc);
  for (const fs::path& file : files) {
    SCOPED_TRACE(file.string());
    try {
      doc.LoadFromFile(file.string());
      ADD_FAILURE() << "accepted";
    } catch (const EInvalidImage& e) {
      EXPECT_EQ(e.Message(), "Invalid stream format");
    }
    EXPECT_TRUE(doc.IsEmpty());
  }
  EXPECT_EQ(changes.Count, 0);
}

TEST_F(CompResTest, DamagedFilesGiveErrorsAndNeverCrash) {
  LUMORA_REQUIRE_CORPUS();
  TjoComponentResource doc(nullptr);
  TStringList list;
  int refused = 0, unreadable = 0;
  for (const fs::path& file : CorpusFiles("broken")) {
    SCOPED_TRACE(file.string());
    try {
      if (!doc.LoadFromFile(file.string())) {
        ++refused;
        EXPECT_TRUE(doc.IsEmpty());
        continue;
      }
      doc.AssignTo(&list);
    } catch (const Exception& e) {
      EXPECT_FALSE(e.Message().empty());
      ++unreadable;
    }
  }
  EXPECT_GT(refused + unreadable, 0);
}

TEST_F(CompResTest, EveryBinaryFileReadsIntoAComponentWithItsErrorsDeferred) {
  LUMORA_REQUIRE_CORPUS();
  TjoComponentResource doc(nullptr);
  int files = 0;
  for (const fs::path& file : CorpusFiles("bin")) {
    SCOPED_TRACE(file.string());
    ASSERT_TRUE(doc.LoadFromFile(file.string()));
    TComponent root(nullptr);
    doc.AssignTo(&root);  // no form classes are registered: everything unknown is deferred
    ++files;
  }
  EXPECT_GT(files, 2000);
  std::vector<std::string> errors = Deferred();
  EXPECT_FALSE(errors.empty());
  EXPECT_EQ(std::set<std::string>(errors.begin(), errors.end()).size(), errors.size());
}
