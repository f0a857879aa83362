#include "platform/rtti/Classes.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/Values.h"
#include "tests/platform/rtti/TestClasses.h"

#include "tests/support/Errors.h"

#include <gtest/gtest.h>

#include <memory>

using lumora::test::MessageOf;

namespace {

// Form text with CR LF line ends from lines joined by '\n'.
std::string Binary(const std::string& text) { return ObjectTextToBinary(text); }

// Reads `text` into `root`, collecting the errors the reader offers and accepting them.
std::vector<std::string> ReadCollecting(TComponent* root, const std::string& text) {
  std::vector<std::string> errors;
  ReadComponentFromText(root, text, [&](TReader& r) {
    r.OnError = [&](TReader*, const std::string& message, bool& handled) {
      errors.push_back(message);
      handled = true;
    };
  });
  return errors;
}

const char* const FullForm = R"(object Form1: TTestForm
  Left = 10
  Top = 20
  Width = 300
  Align = taClient
  Visible = False
  Anchors = [akRight, akBottom]
  Letter = 'x'
  WideLetter = 'y'
  Small = 200
  Color = clRed
  Ratio = 2.5s
  Scale = 0.5
  Precise = 0.333333333333333333
  Price = 125000c
  Stamp = 36526.5d
  Big = 1000000
  Caption = 'Hello'
  Short = 'short'
  Count64 = 9000000000
  Data = 'variant text'
  Font.Name = 'Arial'
  Font.Style = [tfsBold, tfsItalic]
  Items.Strings = (
    'one'
    'two')
  Columns = <
    item
      Caption = 'Name'
      Width = 120
    end
    item
    end>
  Buddy = Label1
  OnClick = Button1Click
  OnKeyDown = FormKeyDown
  object Button1: TTestButton
    Left = 8
    Top = 0
    Caption = 'OK'
    Columns = <>
    OnClick = Button1Click
  end
  object Label1: TTestControl
    Left = 0
    Top = 40
    Columns = <>
    Buddy = Button1
  end
  object Timer1: TTestTimer
    Interval = 500
    OnTimer = TimerFired
    Left = 16
    Top = 32
  end
end
)";

struct ReaderTest : ::testing::Test {
  static void SetUpTestSuite() { RegisterTestColorNames(); }
  void TearDown() override {
    for (TClass c : RegisteredClasses()) UnRegisterClass(c);
  }
  std::unique_ptr<TTestForm> form = std::make_unique<TTestForm>(nullptr);
};

}  // namespace

TEST_F(ReaderTest, EveryPropertyKindSubObjectsListsCollectionsAndChildren) {
  EXPECT_EQ(ReadCollecting(form.get(), FullForm), std::vector<std::string>{});
  TTestForm& f = *form;
  EXPECT_EQ(f.Name(), "Form1");
  EXPECT_EQ(f.FLeft, 10);
  EXPECT_EQ(f.FTop, 20);
  EXPECT_EQ(f.TopWrites, 1);
  EXPECT_EQ(f.FWidth, 300);
  EXPECT_EQ(f.FAlign, taClient);
  EXPECT_FALSE(f.FVisible);
  EXPECT_EQ(f.FAnchors, (TTestAnchors{akRight, akBottom}));
  EXPECT_EQ(f.FLetter, 'x');
  EXPECT_EQ(f.FWideLetter, u'y');
  EXPECT_EQ(f.FSmall, 200);
  EXPECT_EQ(f.FColor, 255);
  EXPECT_EQ(f.FRatio, 2.5f);
  EXPECT_EQ(f.FScale, 0.5);
  EXPECT_EQ(f.FPrecise, 0.333333333333333333L);
  EXPECT_EQ(f.FPrice.Scaled, 125000);
  EXPECT_EQ(f.FStamp.Value, 36526.5);
  EXPECT_EQ(f.FBig.Value, 1000000);
  EXPECT_EQ(f.FCaption, "Hello");
  EXPECT_EQ(f.FShort.Value, "short");
  EXPECT_EQ(f.FCount64, 9000000000LL);
  EXPECT_EQ(f.FData, Variant("variant text"));
  EXPECT_EQ(f.Font()->FName, "Arial");
  EXPECT_EQ(f.Font()->FStyle, (TTestFontStyles{tfsBold, tfsItalic}));
  ASSERT_EQ(f.Items()->Count(), 2);
  EXPECT_EQ(f.Items()->Strings(1), "two");
  ASSERT_EQ(f.Columns()->Count(), 2);
  EXPECT_EQ(f.Columns()->Column(0)->FCaption, "Name");
  EXPECT_EQ(f.Columns()->Column(0)->FWidth, 120);
  EXPECT_EQ(f.Columns()->Column(1)->FWidth, 64);

  // Children: created by class, stored in the form's fields, parented, their properties set.
  ASSERT_NE(f.Button1, nullptr);
  ASSERT_NE(f.Label1, nullptr);
  ASSERT_NE(f.Timer1, nullptr);
  EXPECT_EQ(f.ComponentCount(), 3);
  EXPECT_EQ(f.Button1->Owner(), &f);
  EXPECT_EQ(f.Button1->FCaption, "OK");
  EXPECT_EQ(f.Button1->FWidth, 75);  // the button's own default
  EXPECT_EQ(f.Button1->Parent(), &f);
  EXPECT_EQ(f.Label1->Parent(), &f);
  EXPECT_EQ(f.Controls, (std::vector<TTestControl*>{f.Button1, f.Label1}));
  EXPECT_EQ(f.Timer1->FInterval, 500);
  EXPECT_EQ(f.Timer1->DesignInfo() & 0xFFFF, 16);
  EXPECT_EQ(f.Timer1->DesignInfo() >> 16, 32);

  // References, forward ones included.
  EXPECT_EQ(f.Buddy(), f.Label1);
  EXPECT_EQ(f.Label1->Buddy(), f.Button1);

  // Events bound to the form's published methods.
  EXPECT_EQ(f.OnClick, MakeMethod<&TTestForm::Button1Click>(form.get()));
  EXPECT_EQ(f.Button1->OnClick, MakeMethod<&TTestForm::Button1Click>(form.get()));
  EXPECT_EQ(f.Timer1->OnTimer, MakeMethod<&TTestForm::TimerFired>(form.get()));
  f.Button1->OnClick(f.Button1);
  Word key = 13;
  f.OnKeyDown(&f, key, TShiftState{});
  EXPECT_EQ(f.Log, (std::vector<std::string>{"click Button1", "key 13"}));

  // Loaded once each, after the references were set; the reading flags are gone.
  EXPECT_EQ(f.LoadedCalls, 1);
  EXPECT_EQ(f.StateAtLoaded, "buddy=Label1");
  EXPECT_EQ(f.Label1->LoadedCalls, 1);
  EXPECT_EQ(f.Label1->StateAtLoaded, "buddy=Button1");
  for (TComponent* c : {static_cast<TComponent*>(&f), static_cast<TComponent*>(f.Button1), static_cast<TComponent*>(f.Timer1)}) {
    EXPECT_FALSE(c->ComponentState().Contains(csLoading)) << c->Name();
    EXPECT_FALSE(c->ComponentState().Contains(csReading)) << c->Name();
  }
  // The reader's own watch on the components is gone (the timer refers to nobody).
  EXPECT_FALSE(f.Timer1->ComponentState().Contains(csFreeNotification));
}

TEST_F(ReaderTest, TheRootIsTheComponentGivenAndTakesItsNameFromTheStream) {
  const std::string text = "object Other: TSomethingElse\n  Caption = 'x'\nend\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{});
  EXPECT_EQ(form->Name(), "Other");
  EXPECT_EQ(form->FCaption, "x");
}

TEST_F(ReaderTest, ASecondRootOfTheSameNameBesideTheFirstIsNumbered) {
  TComponent owner(nullptr);
  auto* first = new TTestForm(&owner);
  auto* second = new TTestForm(&owner);
  auto* third = new TTestForm(&owner);
  const std::string text = "object Form1: TTestForm\nend\n";
  EXPECT_EQ(ReadCollecting(first, text), std::vector<std::string>{});
  EXPECT_EQ(ReadCollecting(second, text), std::vector<std::string>{});
  EXPECT_EQ(ReadCollecting(third, text), std::vector<std::string>{});
  EXPECT_EQ(first->Name(), "Form1");
  EXPECT_EQ(second->Name(), "Form1_1");
  EXPECT_EQ(third->Name(), "Form1_2");
  // Read again, a root keeps the name it has.
  EXPECT_EQ(ReadCollecting(second, "object Form1_1: TTestForm\nend\n"), std::vector<std::string>{});
  EXPECT_EQ(second->Name(), "Form1_1");
  EXPECT_EQ(ReadCollecting(first, text), std::vector<std::string>{});
  EXPECT_EQ(first->Name(), "Form1");
}

TEST_F(ReaderTest, WithoutARootTheStreamsClassIsCreated) {
  RegisterClass(TTestForm::StaticClass());
  TReader reader(Binary("object MyForm: TTestForm\n  Width = 5\nend\n"));
  std::unique_ptr<TComponent> made(reader.ReadRootComponent(nullptr));
  auto* f = dynamic_cast<TTestForm*>(made.get());
  ASSERT_NE(f, nullptr);
  EXPECT_EQ(f->Name(), "MyForm");
  EXPECT_EQ(f->FWidth, 5);
  UnRegisterClass(TTestForm::StaticClass());
  TReader again(Binary("object MyForm: TTestForm\nend\n"));
  EXPECT_EQ(MessageOf<EClassNotFound>([&] { again.ReadRootComponent(nullptr); }), "Class TTestForm not found");
}

TEST_F(ReaderTest, ChildClassesComeFromTheFormsFieldsThenTheRegistry) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  object Panel1: TTestControl\n"       // a field class (Label1 is a TTestControl)
      "  end\n"
      "  object Other1: TTestOther\n"          // neither: unknown
      "  end\n"
      "end\n";
  auto errors = ReadCollecting(form.get(), text);
  EXPECT_EQ(errors, std::vector<std::string>{"Class TTestOther not found"});
  EXPECT_NE(form->FindComponent("Panel1"), nullptr);

  // The hook may name a class for a name nobody knows.
  TTestForm second(nullptr);
  ReadComponentFromText(&second, text, [](TReader& r) {
    r.OnFindComponentClass = [](TReader*, const std::string& className, TClass& cls) {
      if (className == "TTestOther") cls = TTestTimer::StaticClass();
    };
  });
  ASSERT_NE(second.FindComponent("Other1"), nullptr);
  EXPECT_EQ(second.FindComponent("Other1")->ClassName(), "TTestTimer");

  // A live form of a user's file has no fields: only the registry counts.
  TComponent plain(nullptr);
  errors = ReadCollecting(&plain, text);
  EXPECT_EQ(errors, (std::vector<std::string>{"Class TTestControl not found", "Class TTestOther not found"}));
  RegisterClass(TTestControl::StaticClass());
  TComponent plain2(nullptr);
  errors = ReadCollecting(&plain2, text);
  EXPECT_EQ(errors, std::vector<std::string>{"Class TTestOther not found"});
}

TEST_F(ReaderTest, AnUnknownClassSkipsItsSubtreeReportedOnce) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  object Mystery1: TMystery\n"
      "    Caption = 'inside'\n"
      "    Items.Strings = ('a' 'b')\n"
      "    object Button1: TTestButton\n"      // below the unknown one: skipped too
      "    end\n"
      "    object Inner: TAlsoUnknown\n"
      "    end\n"
      "  end\n"
      "  object Label1: TTestControl\n"
      "    Caption = 'after'\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{"Class TMystery not found"});
  EXPECT_EQ(form->Button1, nullptr);
  ASSERT_NE(form->Label1, nullptr);
  EXPECT_EQ(form->Label1->FCaption, "after");
  EXPECT_EQ(form->ComponentCount(), 1);

  TTestForm strict(nullptr);
  try {
    ReadComponentFromText(&strict, text);
    FAIL() << "no error raised";
  } catch (const EClassNotFound& e) {
    EXPECT_EQ(e.Message(), "Class TMystery not found");
  }
  EXPECT_EQ(strict.Label1, nullptr);  // reading stopped at the first error
  EXPECT_EQ(strict.Name(), "Form1");
}

TEST_F(ReaderTest, AnUnknownPropertySkipsItsValueWhateverItHolds) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Foo = 1\n"
      "  FooList = (\n    'a'\n    1\n    (\n      2)\n    <>)\n"
      "  FooItems = <\n    item\n      Caption = 'x'\n    end>\n"
      "  FooData = {0102030405}\n"
      "  FooSet = [a, b]\n"
      "  Font.Foo = 'x'\n"
      "  Items.Foo = 1\n"
      "  Nothing.Name = 'x'\n"
      "  Left.Name = 'x'\n"
      "  Width = 33\n"
      "end\n";
  const auto errors = ReadCollecting(form.get(), text);
  EXPECT_EQ(errors, (std::vector<std::string>{
                        "Error reading Form1.Foo: Property Foo does not exist",
                        "Error reading Form1.FooList: Property FooList does not exist",
                        "Error reading Form1.FooItems: Property FooItems does not exist",
                        "Error reading Form1.FooData: Property FooData does not exist",
                        "Error reading Form1.FooSet: Property FooSet does not exist",
                        "Error reading Form1.Font.Foo: Property Foo does not exist",
                        "Error reading Form1.Items.Foo: Property Foo does not exist",
                        "Error reading Form1.Nothing.Name: Property Nothing does not exist",
                        "Error reading Form1.Left.Name: Invalid property path",
                    }));
  EXPECT_EQ(form->FWidth, 33);

  TTestForm strict(nullptr);
  try {
    ReadComponentFromText(&strict, text);
    FAIL() << "no error raised";
  } catch (const EReadError& e) {
    EXPECT_EQ(e.Message(), "Error reading Form1.Foo: Property Foo does not exist");
  }
  EXPECT_EQ(strict.FWidth, 100);
}

TEST_F(ReaderTest, ValuesOfTheWrongTypeAreRefused) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Width = 'wide'\n"
      "  Align = taMiddle\n"
      "  Align = 3\n"
      "  Anchors = [akLeft, akNowhere]\n"
      "  Small = 300\n"
      "  Visible = 1\n"
      "  Caption = 12\n"
      "  Letter = 'xy'\n"
      "  Scale = 'x'\n"
      "  Color = clPurple\n"
      "  Font = 'Arial'\n"
      "  Columns = 3\n"
      "  Items = <>\n"
      "  ReadOnlyValue = 5\n"
      "  OnClick = 5\n"
      "  Height = 7\n"
      "end\n";
  const auto errors = ReadCollecting(form.get(), text);
  EXPECT_EQ(errors, (std::vector<std::string>{
                        "Error reading Form1.Width: Invalid property value",
                        "Error reading Form1.Align: Invalid property value",
                        "Error reading Form1.Align: Invalid property value",
                        "Error reading Form1.Anchors: Invalid property value",
                        "Error reading Form1.Small: Invalid property value",
                        "Error reading Form1.Visible: Invalid property value",
                        "Error reading Form1.Caption: Invalid property value",
                        "Error reading Form1.Letter: Invalid property value",
                        "Error reading Form1.Scale: Invalid property value",
                        "Error reading Form1.Color: Invalid property value",
                        "Error reading Form1.Font: Invalid property value",
                        "Error reading Form1.Columns: Invalid property value",
                        "Error reading Form1.Items: Invalid property value",
                        "Error reading Form1.ReadOnlyValue: Property is read-only",
                        "Error reading Form1.OnClick: Invalid property value",
                    }));
  EXPECT_EQ(form->FWidth, 100);
  EXPECT_EQ(form->FAlign, taNone);
  EXPECT_EQ(form->FAnchors, (TTestAnchors{akLeft, akTop}));
  EXPECT_EQ(form->FHeight, 7);
}

TEST_F(ReaderTest, ReferencesToMissingComponents) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Buddy = Nobody\n"
      "  object Label1: TTestControl\n"
      "    Buddy = Form2.Edit1\n"   // another form: stays unresolved, no error
      "  end\n"
      "  object Button1: TTestButton\n"
      "    Buddy = Owner\n"         // the root
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{"Error reading Form1.Buddy: Component Nobody not found"});
  EXPECT_EQ(form->Buddy(), nullptr);
  EXPECT_EQ(form->Label1->Buddy(), nullptr);
  EXPECT_EQ(form->Button1->Buddy(), form.get());
  EXPECT_EQ(form->LoadedCalls, 1);

  TTestForm strict(nullptr);
  EXPECT_EQ(MessageOf<EReadError>([&] { ReadComponentFromText(&strict, text); }),
            "Error reading Form1.Buddy: Component Nobody not found");
}

TEST_F(ReaderTest, ReferencesOfAWrongClass) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Buddy = Timer1\n"
      "  object Timer1: TTestTimer\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{"Error reading Form1.Buddy: Invalid property value"});
  EXPECT_EQ(form->Buddy(), nullptr);
}

TEST_F(ReaderTest, ADuplicateNameLeavesTheSecondComponentUnnamed) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  object Button1: TTestButton\n"
      "    Caption = 'first'\n"
      "  end\n"
      "  object Button1: TTestButton\n"
      "    Caption = 'second'\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{"A component named Button1 already exists"});
  ASSERT_EQ(form->ComponentCount(), 2);
  EXPECT_EQ(form->Button1->FCaption, "first");
  EXPECT_EQ(form->Components(1)->Name(), "");
  EXPECT_EQ(static_cast<TTestButton*>(form->Components(1))->FCaption, "second");

  TTestForm strict(nullptr);
  EXPECT_EQ(MessageOf<EComponentError>([&] { ReadComponentFromText(&strict, text); }),
            "A component named Button1 already exists");
}

TEST_F(ReaderTest, EventsNeedAHandlerOfTheRightSignature) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  OnClick = NoSuchHandler\n"
      "  OnKeyDown = Button1Click\n"
      "  object Timer1: TTestTimer\n"
      "    OnTimer = Button1Click\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text),
            (std::vector<std::string>{"Error reading Form1.OnClick: Method NoSuchHandler not found",
                                      "Error reading Form1.OnKeyDown: Method Button1Click does not fit event TKeyEvent"}));
  EXPECT_FALSE(form->OnClick.Assigned());
  EXPECT_FALSE(form->OnKeyDown.Assigned());
  EXPECT_TRUE(form->Timer1->OnTimer.Assigned());

  // The live view drops every binding without a word.
  TTestForm live(nullptr);
  std::vector<std::string> asked;
  ReadComponentFromText(&live, text, [&](TReader& r) {
    r.OnFindMethod = [&](TReader*, const std::string& name, TMethod& method, bool& error) {
      asked.push_back(name);
      method = TMethod{};
      error = false;
    };
  });
  EXPECT_EQ(asked, (std::vector<std::string>{"NoSuchHandler", "Button1Click", "Button1Click"}));
  EXPECT_FALSE(live.Timer1->OnTimer.Assigned());

  // Or binds them to something else.
  int calls = 0;
  TNotifyEvent counter = [&](TObject*) { ++calls; };
  TTestForm custom(nullptr);
  ReadComponentFromText(&custom, "object F: TTestForm\n  OnClick = Anything\nend\n", [&](TReader& r) {
    r.OnFindMethod = [&](TReader*, const std::string&, TMethod& method, bool& error) {
      method = counter.Method();
      error = false;
    };
  });
  custom.OnClick(&custom);
  EXPECT_EQ(calls, 1);
}

TEST_F(ReaderTest, NoHandlerRaisesTheFirstErrorAndKeepsWhatWasRead) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Width = 1\n"
      "  object Label1: TTestControl\n"
      "    Caption = 'kept'\n"
      "    Bad = 1\n"
      "    Width = 2\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(MessageOf<EReadError>([&] { ReadComponentFromText(form.get(), text); }),
            "Error reading Label1.Bad: Property Bad does not exist");
  EXPECT_EQ(form->FWidth, 1);
  ASSERT_NE(form->Label1, nullptr);
  EXPECT_EQ(form->Label1->FCaption, "kept");
  EXPECT_EQ(form->Label1->FWidth, 100);
  EXPECT_FALSE(form->ComponentState().Contains(csLoading));
  EXPECT_FALSE(form->Label1->ComponentState().Contains(csReading));
}

TEST_F(ReaderTest, PrefixesInheritedInlineAndChildPosition) {
  auto* existing = new TTestButton(form.get());
  existing->SetName("Button1");
  existing->FCaption = "from the ancestor";
  existing->SetParent(form.get());
  const std::string text =
      "inherited Form1: TTestForm\n"
      "  inherited Button1: TTestButton\n"
      "    Width = 10\n"
      "  end\n"
      "  inherited Label1: TTestControl\n"   // no ancestor here: made afresh
      "  end\n"
      "  inline Frame1: TTestControl\n"
      "  end\n"
      "  object Panel1: TTestControl [0]\n"
      "  end\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text), std::vector<std::string>{});
  EXPECT_EQ(form->ComponentCount(), 4);
  EXPECT_EQ(form->Button1, existing);
  EXPECT_EQ(existing->FCaption, "from the ancestor");
  EXPECT_EQ(existing->FWidth, 10);
  EXPECT_TRUE(existing->ComponentState().Contains(csAncestor));
  ASSERT_NE(form->Label1, nullptr);
  auto* frame = static_cast<TTestControl*>(form->FindComponent("Frame1"));
  ASSERT_NE(frame, nullptr);
  EXPECT_TRUE(frame->ComponentState().Contains(csInline));
  auto* panel = form->FindComponent("Panel1");
  ASSERT_EQ(form->Controls.size(), 4u);
  EXPECT_EQ(form->Controls[0], panel);  // moved to position 0 among the children
}

TEST_F(ReaderTest, CollectionItemsWithOrderIndexesAndErrorsInItems) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Columns = <\n"
      "    item [3]\n"
      "      Caption = 'a'\n"
      "    end\n"
      "    item [1]\n"
      "      Bogus = 1\n"
      "      Width = 5\n"
      "    end>\n"
      "end\n";
  form->Columns()->Add();  // replaced by what the stream holds
  EXPECT_EQ(ReadCollecting(form.get(), text),
            std::vector<std::string>{"Error reading Form1.Columns[1].Bogus: Property Bogus does not exist"});
  ASSERT_EQ(form->Columns()->Count(), 2);
  EXPECT_EQ(form->Columns()->Column(0)->FCaption, "a");
  EXPECT_EQ(form->Columns()->Column(1)->FWidth, 5);
  EXPECT_EQ(form->Columns()->Updates, 2);  // one for the Add above, one for the whole read
}

TEST_F(ReaderTest, BinaryDefinedProperties) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Picture.Data = {\n"
      "    00FF10}\n"
      "  Picture.Other = {01}\n"
      "  Caption = 'after'\n"
      "end\n";
  EXPECT_EQ(ReadCollecting(form.get(), text),
            std::vector<std::string>{"Error reading Form1.Picture.Other: Property Other does not exist"});
  EXPECT_EQ(form->Picture()->Bytes, std::string("\x00\xFF\x10", 3));
  EXPECT_EQ(form->FCaption, "after");
  TTestForm wrong(nullptr);
  EXPECT_EQ(ReadCollecting(&wrong, "object F: TTestForm\n  Picture.Data = 'text'\nend\n"),
            std::vector<std::string>{"Error reading F.Picture.Data: Invalid property value"});
  EXPECT_EQ(wrong.Picture()->Bytes, "");
}

TEST_F(ReaderTest, HooksForNamesAndReferences) {
  const std::string text =
      "object Form1: TTestForm\n"
      "  Buddy = OldName\n"
      "  object Label1: TTestControl\n"
      "  end\n"
      "end\n";
  std::vector<std::string> named;
  ReadComponentFromText(form.get(), text, [&](TReader& r) {
    r.OnSetName = [&](TReader*, TComponent* c, std::string& name) {
      named.push_back(c->ClassName() + " " + name);
      if (name == "Form1") name = "Renamed";
    };
    r.OnReferenceName = [](TReader*, std::string& name) {
      if (name == "OldName") name = "Label1";
    };
  });
  EXPECT_EQ(named, (std::vector<std::string>{"TTestForm Form1", "TTestControl Label1"}));
  EXPECT_EQ(form->Name(), "Renamed");
  EXPECT_EQ(form->Buddy(), form->Label1);
}

TEST_F(ReaderTest, CreatingComponentsThroughTheHook) {
  std::vector<TComponent*> made;
  ReadComponentFromText(form.get(), "object F: TTestForm\n  object Label1: TTestControl\n  end\nend\n", [&](TReader& r) {
    r.OnCreateComponent = [&](TReader* reader, TClass cls, TComponent*& component) {
      component = cls->CreateComponent(reader->Owner());
      made.push_back(component);
    };
  });
  ASSERT_EQ(made.size(), 1u);
  EXPECT_EQ(form->Label1, made[0]);
}

TEST_F(ReaderTest, BinaryOnlyValueTypes) {
  // vaDouble, vaUTF8String, vaWString, vaInt64 and vaNull/vaNil variants come only from
  // binary streams of later versions or other writers.
  std::string stream;
  TValueWriter w(stream);
  w.WriteSignature();
  w.WriteComponentHeader(0, -1, "TTestForm", "Form1");
  w.WriteShortString("Scale");
  w.WriteDouble(0.1);
  w.WriteShortString("Caption");
  w.WriteUTF8String("caf\xC3\xA9");
  w.WriteShortString("Short");
  w.WriteWideString(u"wide");
  w.WriteShortString("WideLetter");
  w.WriteWideString(u"\u263A");
  w.WriteShortString("Count64");
  w.WriteValue(vaInt64);
  w.WriteInt64Raw(5);
  w.WriteShortString("Data");
  w.WriteValue(vaNull);
  w.WriteShortString("Left");
  w.WriteValue(vaInt64);
  w.WriteInt64Raw(1LL << 40);
  w.WriteShortString("Precise");
  w.WriteCurrency(15000);
  w.WriteListEnd();
  w.WriteListEnd();
  std::vector<std::string> errors;
  ReadComponentFromBinary(form.get(), stream, [&](TReader& r) {
    r.OnError = [&](TReader*, const std::string& message, bool& handled) {
      errors.push_back(message);
      handled = true;
    };
  });
  EXPECT_EQ(errors, std::vector<std::string>{"Error reading Form1.Left: Invalid property value"});
  EXPECT_EQ(form->FScale, 0.1);
  EXPECT_EQ(form->FCaption, "caf\xC3\xA9");
  EXPECT_EQ(form->FShort.Value, "wide");
  EXPECT_EQ(form->FWideLetter, u'\u263A');
  EXPECT_EQ(form->FCount64, 5);
  EXPECT_TRUE(form->FData.IsNull());
  EXPECT_EQ(form->FPrecise, 1.5L);
}

TEST_F(ReaderTest, VariantsOfEveryStoredType) {
  struct Case {
    const char* text;
    Variant expected;
  };
  const Case cases[] = {{"12", Variant(12)},          {"'abc'", Variant("abc")},     {"True", Variant(true)},
                        {"1.5", Variant(1.5)},        {"2.5s", Variant(2.5f)},       {"12500c", Variant(Currency::FromScaled(12500))},
                        {"2.5d", Variant(TDateTime(2.5))}, {"nil", Variant()},       {"5000000000", Variant(5000000000LL)}};
  for (const Case& c : cases) {
    TTestForm f(nullptr);
    f.FData = Variant("before");
    ReadComponentFromText(&f, std::string("object F: TTestForm\n  Data = ") + c.text + "\nend\n");
    EXPECT_EQ(f.FData, c.expected) << c.text;
  }
}

TEST_F(ReaderTest, DamagedStreamsRaiseEvenWithAHandler) {
  const std::string good = Binary(FullForm);
  int errors = 0;
  for (std::size_t cut : {std::size_t{5}, std::size_t{30}, good.size() / 2, good.size() - 3}) {
    TTestForm f(nullptr);
    const std::string truncated = good.substr(0, cut);
    EXPECT_EQ(MessageOf<EReadError>([&] {
                ReadComponentFromBinary(&f, truncated, [&](TReader& r) {
                  r.OnError = [&](TReader*, const std::string&, bool& handled) {
                    ++errors;
                    handled = true;
                  };
                });
              }),
              "Stream read error")
        << cut;
    EXPECT_FALSE(f.ComponentState().Contains(csLoading));
  }
  EXPECT_EQ(errors, 0);
  TTestForm f(nullptr);
  EXPECT_EQ(MessageOf<EInvalidImage>([&] { ReadComponentFromBinary(&f, "TPF1"); }), "Invalid stream format");
  std::string badType = good;
  badType[good.find("Width") + 5] = 40;  // a type byte that does not exist
  EXPECT_NE(MessageOf<EReadError>([&] { ReadComponentFromBinary(&f, badType); }), "(nothing raised)");
}

TEST_F(ReaderTest, NestingIsBounded) {
  std::string text;
  const int depth = MaxReaderNesting + 10;
  for (int i = 0; i < depth; ++i) text += "object C" + IntToStr(i) + ": TTestControl\n";
  for (int i = 0; i < depth; ++i) text += "end\n";
  TTestForm f(nullptr);
  EXPECT_EQ(MessageOf<EReadError>([&] { ReadComponentFromText(&f, text); }),
            "Components nested too deep (more than 256 levels)");
}

TEST_F(ReaderTest, ReadingFromAStream) {
  TStringStream stream("junk" + Binary("object F: TTestForm\n  Width = 9\nend\n"));
  stream.SetPosition(4);
  ReadComponent(stream, form.get());
  EXPECT_EQ(form->FWidth, 9);
}

TEST_F(ReaderTest, ComponentsFreedWhileReadingAreNotTouchedAgain) {
  // A handler frees a component that was read already: its pending reference and its
  // Loaded are dropped.
  const std::string text =
      "object Form1: TTestForm\n"
      "  object Label1: TTestControl\n"
      "    Buddy = Button1\n"
      "  end\n"
      "  object Button1: TTestButton\n"
      "    Bad = 1\n"
      "  end\n"
      "end\n";
  ReadComponentFromText(form.get(), text, [&](TReader& r) {
    r.OnError = [&](TReader*, const std::string&, bool& handled) {
      delete form->Label1;
      handled = true;
    };
  });
  EXPECT_EQ(form->Label1, nullptr);
  ASSERT_NE(form->Button1, nullptr);
  EXPECT_EQ(form->Button1->LoadedCalls, 1);
  EXPECT_EQ(form->ComponentCount(), 1);
}
