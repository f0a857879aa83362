#pragma once
// Classes for the component model's tests: a control that publishes a property of
// every kind, a font sub-object, a collection, a button that changes an inherited
// default, a panel with children, a non-visual component and a form with fields and
// event handlers.

#include "platform/rtti/Classes.h"

#include <string>
#include <vector>

LUMORA_ENUM(TTestAlign, taNone, taTop, taBottom, taLeft, taRight, taClient)
LUMORA_ENUM(TTestAnchorKind, akLeft, akTop, akRight, akBottom)
LUMORA_SET(TTestAnchors, TTestAnchorKind)
LUMORA_ENUM(TTestFontStyle, tfsBold, tfsItalic, tfsUnderline, tfsStrikeOut)
LUMORA_SET(TTestFontStyles, TTestFontStyle)

// An integer type of its own, written by name where it has one (Color = clRed).
enum TTestColor : int {};
inline const TTypeInfo* TypeInfoOf(TTestColor*) {
  static const TTypeInfo info = [] {
    TTypeInfo t;
    t.Kind = tkInteger;
    t.Name = "TTestColor";
    t.OrdType = otSLong;
    t.MinValue = -2147483647 - 1;
    t.MaxValue = 2147483647;
    return t;
  }();
  return &info;
}
// Registers the names clRed (255), clBlack (0) and clBtnFace (-16777201) for TTestColor.
void RegisterTestColorNames();

class TTestFont : public TPersistent {
  LUMORA_CLASS(TTestFont, TPersistent)
public:
  TTestFont() = default;
  void Assign(TPersistent* source) override;

  std::string FName = "MS Sans Serif";
  int FSize = 8;
  int FColor = 0;
  TTestFontStyles FStyle;
  int Changes = 0;
  void SetName(const std::string& value) {
    FName = value;
    ++Changes;
  }
};

// Streams its bytes itself, as a picture does: "Picture.Data = {...}".
class TTestPicture : public TPersistent {
  LUMORA_CLASS(TTestPicture, TPersistent)
public:
  TTestPicture() = default;
  void DefineProperties(TFiler& filer) override;
  std::string Bytes;
};

class TTestColumn : public TCollectionItem {
  LUMORA_CLASS(TTestColumn, TCollectionItem)
public:
  explicit TTestColumn(TCollection* collection) : TCollectionItem(collection) {}
  void Assign(TPersistent* source) override;

  std::string FCaption;
  int FWidth = 64;
};

class TTestControl;

class TTestColumns : public TOwnedCollection {
  LUMORA_CLASS(TTestColumns, TOwnedCollection)
public:
  explicit TTestColumns(TTestControl* owner);
  TTestColumn* Column(int index) const { return static_cast<TTestColumn*>(Items(index)); }
  int Updates = 0;

protected:
  void Update(TCollectionItem* item) override;
};

class TTestControl : public TComponent {
  LUMORA_CLASS(TTestControl, TComponent)
public:
  explicit TTestControl(TComponent* owner);
  ~TTestControl() override;

  int Top() const { return FTop; }
  void SetTop(int value) {
    FTop = value;
    ++TopWrites;
  }
  TTestFont* Font() const { return FFont; }
  void SetFont(TTestFont* value) { FFont->Assign(value); }
  TStrings* Items() const { return FItems; }
  void SetItems(TStrings* value) { FItems->Assign(value); }
  TTestColumns* Columns() const { return FColumns; }
  TTestPicture* Picture() const { return FPicture; }
  void SetPicture(TTestPicture* value) { FPicture->Bytes = value ? value->Bytes : std::string(); }
  void SetColumns(TTestColumns* value) { FColumns->Assign(value); }
  TTestControl* Buddy() const { return FBuddy; }
  void SetBuddy(TTestControl* value);
  bool IsCaptionStored() const { return FCaption != Name(); }
  int ReadOnlyValue() const { return 42; }

  // Parent hooks: a control is written as a child of its parent.
  TTestControl* Parent() const { return FParent; }
  void SetParent(TTestControl* value);
  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override { return FParent; }
  void SetParentComponent(TComponent* value) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

  int FLeft = 0;
  int FTop = 0;
  int FWidth = 100;
  int FHeight = 0;
  TTestAlign FAlign = taNone;
  bool FVisible = true;
  TTestAnchors FAnchors{akLeft, akTop};
  char FLetter = 0;
  char16_t FWideLetter = 0;
  float FRatio = 0;
  double FScale = 0;
  long double FPrecise = 0;
  Currency FPrice;
  TDateTime FStamp;
  Comp FBig;
  std::string FCaption;
  ShortString FShort;
  std::int64_t FCount64 = 0;
  Variant FData;
  int FHidden = 0;
  unsigned char FSmall = 0;
  TTestColor FColor = TTestColor(-16777201);
  TNotifyEvent OnClick;
  TKeyEvent OnKeyDown;

  int TopWrites = 0;
  int LoadedCalls = 0;
  std::string StateAtLoaded;
  std::vector<TTestControl*> Controls;

private:
  TTestFont* FFont;
  TStringList* FItems;
  TTestColumns* FColumns;
  TTestPicture* FPicture;
  TTestControl* FBuddy = nullptr;
  TTestControl* FParent = nullptr;
};

class TTestButton : public TTestControl {
  LUMORA_CLASS(TTestButton, TTestControl)
public:
  explicit TTestButton(TComponent* owner) : TTestControl(owner) { FWidth = 75; }
  bool FDefault = false;
};

// A non-visual component: kept at the designer position Left/Top.
class TTestTimer : public TComponent {
  LUMORA_CLASS(TTestTimer, TComponent)
public:
  explicit TTestTimer(TComponent* owner) : TComponent(owner) {}
  int FInterval = 1000;
  bool FEnabled = true;
  TNotifyEvent OnTimer;
};

// A form of the program: its fields get the components of the same name, its handlers
// are bound by name. It writes its own children (controls without a parent, then the
// non-visual components).
class TTestForm : public TTestControl {
  LUMORA_CLASS(TTestForm, TTestControl)
public:
  explicit TTestForm(TComponent* owner) : TTestControl(owner) {}
  ~TTestForm() override;
  void Button1Click(TObject* sender);
  void FormKeyDown(TObject* sender, Word& key, TShiftState shift);
  void TimerFired(TObject* sender);
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;

  TTestButton* Button1 = nullptr;
  TTestControl* Label1 = nullptr;
  TTestTimer* Timer1 = nullptr;
  std::vector<std::string> Log;
};

// Every test class, for registering them all at once.
std::vector<TClass> TestClasses();
