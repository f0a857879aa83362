#include "tests/platform/rtti/TestClasses.h"

#include "platform/streaming/Streams.h"

#include <algorithm>

namespace {
struct TColorName {
  long Value;
  const char* Name;
};
const TColorName ColorNames[] = {{255, "clRed"}, {0, "clBlack"}, {-16777201, "clBtnFace"}};

bool ColorIdentToInt(std::string_view ident, long& value) {
  for (const auto& c : ColorNames)
    if (SameText(c.Name, ident)) {
      value = c.Value;
      return true;
    }
  return false;
}

bool ColorIntToIdent(long value, std::string& ident) {
  for (const auto& c : ColorNames)
    if (c.Value == value) {
      ident = c.Name;
      return true;
    }
  return false;
}
}  // namespace

void RegisterTestColorNames() { RegisterIntegerConsts(TypeInfo<TTestColor>(), &ColorIdentToInt, &ColorIntToIdent); }

LUMORA_CLASS_IMPL(TTestFont) {
  c.Property("Color", &TTestFont::FColor, &TTestFont::FColor).Default(0);
  c.Property("Name", &TTestFont::FName, &TTestFont::SetName);
  c.Property("Size", &TTestFont::FSize, &TTestFont::FSize).Default(8);
  c.Property("Style", &TTestFont::FStyle, &TTestFont::FStyle).Default(TTestFontStyles{});
}

void TTestFont::Assign(TPersistent* source) {
  if (auto* f = dynamic_cast<TTestFont*>(source)) {
    FName = f->FName;
    FSize = f->FSize;
    FColor = f->FColor;
    FStyle = f->FStyle;
    ++Changes;
    return;
  }
  TPersistent::Assign(source);
}

LUMORA_CLASS_IMPL(TTestPicture) {}

void TTestPicture::DefineProperties(TFiler& filer) {
  filer.DefineBinaryProperty(
      "Data", [this](TStream& s) { Bytes = s.ReadRest(); }, [this](TStream& s) { s.WriteBuffer(Bytes); }, !Bytes.empty());
}

LUMORA_CLASS_IMPL(TTestColumn) {
  c.Property("Caption", &TTestColumn::FCaption, &TTestColumn::FCaption);
  c.Property("Width", &TTestColumn::FWidth, &TTestColumn::FWidth).Default(64);
}

void TTestColumn::Assign(TPersistent* source) {
  if (auto* col = dynamic_cast<TTestColumn*>(source)) {
    FCaption = col->FCaption;
    FWidth = col->FWidth;
    return;
  }
  TCollectionItem::Assign(source);
}

LUMORA_CLASS_IMPL(TTestColumns) {}

TTestColumns::TTestColumns(TTestControl* owner) : TOwnedCollection(owner, TTestColumn::StaticClass()) {}

void TTestColumns::Update(TCollectionItem*) { ++Updates; }

LUMORA_CLASS_IMPL(TTestControl) {
  c.Property("Left", &TTestControl::FLeft, &TTestControl::FLeft);
  c.Property("Top", &TTestControl::Top, &TTestControl::SetTop);
  c.Property("Width", &TTestControl::FWidth, &TTestControl::FWidth).Default(100);
  c.Property("Height", &TTestControl::FHeight, &TTestControl::FHeight).Default(0);
  c.Property("Align", &TTestControl::FAlign, &TTestControl::FAlign).Default(taNone);
  c.Property("Visible", &TTestControl::FVisible, &TTestControl::FVisible).Default(true);
  c.Property("Anchors", &TTestControl::FAnchors, &TTestControl::FAnchors).Default(TTestAnchors{akLeft, akTop});
  c.Property("Letter", &TTestControl::FLetter, &TTestControl::FLetter).Default(0);
  c.Property("WideLetter", &TTestControl::FWideLetter, &TTestControl::FWideLetter).Default(0);
  c.Property("Small", &TTestControl::FSmall, &TTestControl::FSmall).Default(0);
  c.Property("Color", &TTestControl::FColor, &TTestControl::FColor).Default(TTestColor(-16777201));
  c.Property("Ratio", &TTestControl::FRatio, &TTestControl::FRatio);
  c.Property("Scale", &TTestControl::FScale, &TTestControl::FScale);
  c.Property("Precise", &TTestControl::FPrecise, &TTestControl::FPrecise);
  c.Property("Price", &TTestControl::FPrice, &TTestControl::FPrice);
  c.Property("Stamp", &TTestControl::FStamp, &TTestControl::FStamp);
  c.Property("Big", &TTestControl::FBig, &TTestControl::FBig);
  c.Property("Caption", &TTestControl::FCaption, &TTestControl::FCaption).Stored(&TTestControl::IsCaptionStored);
  c.Property("Short", &TTestControl::FShort, &TTestControl::FShort);
  c.Property("Count64", &TTestControl::FCount64, &TTestControl::FCount64);
  c.Property("Data", &TTestControl::FData, &TTestControl::FData);
  c.Property("Hidden", &TTestControl::FHidden, &TTestControl::FHidden).Stored(false);
  c.Property("ReadOnlyValue", &TTestControl::ReadOnlyValue);
  c.Property("Font", &TTestControl::Font, &TTestControl::SetFont);
  c.Property("Items", &TTestControl::Items, &TTestControl::SetItems);
  c.Property("Columns", &TTestControl::Columns, &TTestControl::SetColumns);
  c.Property("Picture", &TTestControl::Picture, &TTestControl::SetPicture);
  c.Property("Buddy", &TTestControl::Buddy, &TTestControl::SetBuddy);
  c.Property("OnClick", &TTestControl::OnClick, &TTestControl::OnClick);
  c.Property("OnKeyDown", &TTestControl::OnKeyDown, &TTestControl::OnKeyDown);
}

TTestControl::TTestControl(TComponent* owner)
    : TComponent(owner),
      FFont(new TTestFont),
      FItems(new TStringList),
      FColumns(new TTestColumns(this)),
      FPicture(new TTestPicture) {}

TTestControl::~TTestControl() {
  Destroying();
  DestroyComponents();
  SetParent(nullptr);
  for (TTestControl* child : Controls) child->FParent = nullptr;
  if (FBuddy) FBuddy->RemoveFreeNotification(this);
  delete FPicture;
  delete FColumns;
  delete FItems;
  delete FFont;
}

void TTestControl::SetBuddy(TTestControl* value) {
  if (FBuddy == value) return;
  if (FBuddy) FBuddy->RemoveFreeNotification(this);
  FBuddy = value;
  if (FBuddy) FBuddy->FreeNotification(this);
}

void TTestControl::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FBuddy) FBuddy = nullptr;
}

void TTestControl::SetParent(TTestControl* value) {
  if (FParent == value) return;
  if (FParent) {
    auto& siblings = FParent->Controls;
    siblings.erase(std::remove(siblings.begin(), siblings.end(), this), siblings.end());
  }
  FParent = value;
  if (FParent) FParent->Controls.push_back(this);
}

void TTestControl::SetParentComponent(TComponent* value) {
  if (auto* control = dynamic_cast<TTestControl*>(value)) SetParent(control);
}

void TTestControl::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TTestControl* child : Controls)
    if (child->Owner() == root) proc(child);
}

void TTestControl::SetChildOrder(TComponent* child, int order) {
  auto it = std::find(Controls.begin(), Controls.end(), child);
  if (it == Controls.end()) return;
  auto* control = *it;
  Controls.erase(it);
  order = std::clamp(order, 0, static_cast<int>(Controls.size()));
  Controls.insert(Controls.begin() + order, control);
}

void TTestControl::Loaded() {
  TComponent::Loaded();
  ++LoadedCalls;
  StateAtLoaded = FBuddy ? "buddy=" + FBuddy->Name() : "buddy=none";
}

LUMORA_CLASS_IMPL(TTestButton) {
  c.Property("Width").Default(75);
  c.Property("Default", &TTestButton::FDefault, &TTestButton::FDefault).Default(false);
}

LUMORA_CLASS_IMPL(TTestTimer) {
  c.Property("Enabled", &TTestTimer::FEnabled, &TTestTimer::FEnabled).Default(true);
  c.Property("Interval", &TTestTimer::FInterval, &TTestTimer::FInterval).Default(1000);
  c.Property("OnTimer", &TTestTimer::OnTimer, &TTestTimer::OnTimer);
}

LUMORA_CLASS_IMPL(TTestForm) {
  c.Field("Button1", &TTestForm::Button1);
  c.Field("Label1", &TTestForm::Label1);
  c.Field("Timer1", &TTestForm::Timer1);
  c.Method<&TTestForm::Button1Click>("Button1Click");
  c.Method<&TTestForm::FormKeyDown>("FormKeyDown");
  c.Method<&TTestForm::TimerFired>("TimerFired");
}

TTestForm::~TTestForm() {
  Destroying();
  DestroyComponents();
}

void TTestForm::Button1Click(TObject* sender) {
  Log.push_back("click " + (sender ? static_cast<TComponent*>(sender)->Name() : std::string("nil")));
}

void TTestForm::FormKeyDown(TObject*, Word& key, TShiftState shift) {
  Log.push_back("key " + IntToStr(key) + (shift.Contains(ssCtrl) ? " ctrl" : ""));
  key = 0;
}

void TTestForm::TimerFired(TObject*) { Log.push_back("timer"); }

void TTestForm::GetChildren(const TGetChildProc& proc, TComponent* root) {
  TTestControl::GetChildren(proc, root);
  if (root != this) return;
  for (int i = 0; i < ComponentCount(); ++i)
    if (!Components(i)->HasParent()) proc(Components(i));
}

std::vector<TClass> TestClasses() {
  return {TTestControl::StaticClass(), TTestButton::StaticClass(), TTestTimer::StaticClass(), TTestForm::StaticClass()};
}
