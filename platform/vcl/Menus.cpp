#include "platform/vcl/Menus.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/MessageLoop.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>

#include <algorithm>

// ---------------------------------------------------------------------------------------
// TMenuItem

LUMORA_CLASS_IMPL(TMenuItem) {
  c.Property("Action", &TMenuItem::Action, &TMenuItem::SetAction);
  c.Property("Bitmap", &TMenuItem::Bitmap, &TMenuItem::SetBitmap);
  c.Property("Break", &TMenuItem::Break, &TMenuItem::SetBreak).Default(mbNone);
  c.Property("Caption", &TMenuItem::Caption, &TMenuItem::SetCaption).Stored(&TMenuItem::IsCaptionStored);
  c.Property("Checked", &TMenuItem::Checked, &TMenuItem::SetChecked).Default(false);
  c.Property("SubMenuImages", &TMenuItem::SubMenuImages, &TMenuItem::SetSubMenuImages);
  c.Property("Default", &TMenuItem::Default, &TMenuItem::SetDefault).Default(false);
  c.Property("Enabled", &TMenuItem::Enabled, &TMenuItem::SetEnabled).Default(true);
  c.Property("GroupIndex", &TMenuItem::GroupIndex, &TMenuItem::SetGroupIndex).Default(0);
  c.Property("HelpContext", &TMenuItem::HelpContext, &TMenuItem::SetHelpContext).Default(0);
  c.Property("Hint", &TMenuItem::Hint, &TMenuItem::SetHint);
  c.Property("ImageIndex", &TMenuItem::ImageIndex, &TMenuItem::SetImageIndex).Default(-1);
  c.Property("RadioItem", &TMenuItem::RadioItem, &TMenuItem::SetRadioItem).Default(false);
  c.Property("ShortCut", &TMenuItem::ShortCut, &TMenuItem::SetShortCut).Default(0);
  c.Property("Visible", &TMenuItem::Visible, &TMenuItem::SetVisible).Default(true);
  c.Property("OnClick", &TMenuItem::OnClick, &TMenuItem::OnClick);
  c.Property("OnDrawItem", &TMenuItem::OnDrawItem, &TMenuItem::OnDrawItem);
  c.Property("OnMeasureItem", &TMenuItem::OnMeasureItem, &TMenuItem::OnMeasureItem);
}

TMenuItem::TMenuItem(TComponent* owner) : TComponent(owner) { FBitmap = new TBitmap(); }

TMenuItem::~TMenuItem() {
  if (FAction) FAction->UnRegisterClient(this);
  if (FParent) FParent->Remove(this);
  while (!FItems.empty()) delete FItems.back();
  if (FQtAction) FQtAction->setMenu(nullptr);
  delete FQtAction;
  delete FQtMenu;
  delete FBitmap;
}

TMenuItem* TMenuItem::Items(int index) const {
  if (index < 0 || index >= Count()) throw EMenuError(Format("Menu index out of range"));
  return FItems[index];
}

void TMenuItem::Add(TMenuItem* item) { Insert(Count(), item); }

void TMenuItem::Insert(int index, TMenuItem* item) {
  if (!item) return;
  if (item->FParent) throw EMenuError("Menu inserted twice");
  index = std::clamp(index, 0, Count());
  // Group indexes never go down along a menu. An item being read is placed at the end
  // before its own group index and its position are read: it is left alone.
  if (!item->ComponentState().Contains(csLoading)) {
    if (index > 0 && item->FGroupIndex < FItems[index - 1]->FGroupIndex) item->FGroupIndex = FItems[index - 1]->FGroupIndex;
    for (int i = index; i < Count(); ++i) {
      if (FItems[i]->FGroupIndex < item->FGroupIndex) FItems[i]->FGroupIndex = item->FGroupIndex;
    }
  }
  FItems.insert(FItems.begin() + index, item);
  item->FParent = this;
  Changed(true);
}

void TMenuItem::Delete(int index) {
  if (index < 0 || index >= Count()) throw EMenuError("Menu index out of range");
  TMenuItem* item = FItems[index];
  FItems.erase(FItems.begin() + index);
  item->FParent = nullptr;
  Changed(true);
}

void TMenuItem::Remove(TMenuItem* item) {
  const int i = IndexOf(item);
  if (i < 0) throw EMenuError("Sub-menu is not in menu");
  Delete(i);
}

void TMenuItem::Clear() {
  while (!FItems.empty()) delete FItems.back();
}

int TMenuItem::IndexOf(TMenuItem* item) const {
  auto it = std::find(FItems.begin(), FItems.end(), item);
  return it == FItems.end() ? -1 : static_cast<int>(it - FItems.begin());
}

void TMenuItem::SetMenuIndex(int value) {
  if (!FParent) return;
  TMenuItem* parent = FParent;
  const int current = MenuIndex();
  value = std::clamp(value, 0, parent->Count() - 1);
  if (value == current) return;
  parent->FItems.erase(parent->FItems.begin() + current);
  parent->FItems.insert(parent->FItems.begin() + value, this);
  parent->Changed(true);
}

TMenuItem* TMenuItem::FindItemByShortCut(TShortCut shortCut) {
  if (shortCut == scNone) return nullptr;
  for (TMenuItem* item : FItems) {
    if (item->FShortCut == shortCut) return item;
    if (TMenuItem* found = item->FindItemByShortCut(shortCut)) return found;
  }
  return nullptr;
}

TMenu* TMenuItem::GetParentMenu() const {
  const TMenuItem* item = this;
  while (item->FParent) item = item->FParent;
  return item->FMenu;
}

TFontCharset TMenuItem::Charset() const {
  if (TMenu* menu = GetParentMenu()) return menu->Charset();
  if (auto* form = dynamic_cast<TCustomForm*>(Owner())) return form->Font()->Charset();
  return DEFAULT_CHARSET;
}

void TMenuItem::SetCaption(const std::string& value) {
  if (FCaption == value) return;
  const bool lineChanged = (FCaption == cLineCaption) != (value == cLineCaption);
  FCaption = value;
  Changed(lineChanged);
}

void TMenuItem::SetChecked(bool value) {
  if (FChecked == value) return;
  FChecked = value;
  // Checking a radio item turns its group off.
  if (value && FRadioItem && FParent) {
    for (TMenuItem* sibling : FParent->FItems) {
      if (sibling != this && sibling->FRadioItem && sibling->FGroupIndex == FGroupIndex && sibling->FChecked) {
        sibling->FChecked = false;
        sibling->UpdateAction();
      }
    }
  }
  Changed(false);
}

void TMenuItem::SetEnabled(bool value) {
  if (FEnabled == value) return;
  FEnabled = value;
  Changed(false);
}

void TMenuItem::SetVisible(bool value) {
  if (FVisible == value) return;
  FVisible = value;
  Changed(false);
}

void TMenuItem::SetDefault(bool value) {
  if (FDefault == value) return;
  if (value && FParent) {
    for (TMenuItem* sibling : FParent->FItems) sibling->FDefault = false;
  }
  FDefault = value;
  Changed(false);
}

void TMenuItem::SetGroupIndex(std::uint8_t value) {
  if (FGroupIndex == value) return;
  // A group index below the one before it is raised to that one (not while the item is
  // read: its position among its siblings comes after its group index).
  if (FParent && !ComponentState().Contains(csLoading)) {
    const int i = MenuIndex();
    if (i > 0 && value < FParent->FItems[i - 1]->FGroupIndex) value = FParent->FItems[i - 1]->FGroupIndex;
    for (int k = i + 1; k < FParent->Count(); ++k) {
      if (FParent->FItems[k]->FGroupIndex < value) FParent->FItems[k]->FGroupIndex = value;
    }
  }
  FGroupIndex = value;
  Changed(false);
}

void TMenuItem::SetRadioItem(bool value) {
  if (FRadioItem == value) return;
  FRadioItem = value;
  if (value && FChecked) {
    FChecked = false;
    SetChecked(true);
  }
  Changed(false);
}

void TMenuItem::SetShortCut(TShortCut value) {
  if (FShortCut == value) return;
  FShortCut = value;
  Changed(false);
}

void TMenuItem::SetImageIndex(int value) {
  if (FImageIndex == value) return;
  FImageIndex = value;
  Changed(false);
}

void TMenuItem::SetSubMenuImages(TCustomImageList* value) {
  FSubMenuImages = value;
  if (value) value->FreeNotification(this);
}

void TMenuItem::SetAction(TBasicAction* value) {
  if (FAction == value) return;
  if (FAction) FAction->UnRegisterClient(this);
  ReplaceComponentLink(this, FAction, value);
  if (value) {
    value->RegisterClient(this);
    ActionChange(value, ComponentState().Contains(csLoading));
  }
}

void TMenuItem::ActionChange(TBasicAction* sender, bool checkDefaults) {
  auto* action = dynamic_cast<TCustomAction*>(sender);
  if (!action) return;
  if (!checkDefaults || FCaption.empty()) SetCaption(action->Caption());
  if (!checkDefaults || !FChecked) SetChecked(action->Checked());
  if (!checkDefaults || FEnabled) SetEnabled(action->Enabled());
  if (!checkDefaults || FHint.empty()) SetHint(action->Hint());
  if (!checkDefaults || FImageIndex == -1) SetImageIndex(action->ImageIndex());
  if (!checkDefaults || FShortCut == scNone) SetShortCut(action->ShortCut());
  if (!checkDefaults || FVisible) SetVisible(action->Visible());
}

void TMenuItem::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FAction) FAction = nullptr;
  if (component == FSubMenuImages) FSubMenuImages = nullptr;
}

void TMenuItem::Click() {
  if (!FEnabled) return;
  if (OnClick) {
    OnClick(this);
  } else if (FAction) {
    FAction->Execute();
  }
}

TComponent* TMenuItem::GetParentComponent() const {
  if (FParent && FParent->FMenu) return FParent->FMenu;
  return FParent;
}

void TMenuItem::SetParentComponent(TComponent* value) {
  if (FParent) FParent->Remove(this);
  if (!value) return;
  if (auto* menu = dynamic_cast<TMenu*>(value)) {
    menu->Items()->Add(this);
  } else if (auto* item = dynamic_cast<TMenuItem*>(value)) {
    item->Add(this);
  }
}

void TMenuItem::GetChildren(const TGetChildProc& proc, TComponent* root) {
  for (TMenuItem* item : FItems) {
    if (item->Owner() == root) proc(item);
  }
}

void TMenuItem::SetChildOrder(TComponent* child, int order) {
  if (auto* item = dynamic_cast<TMenuItem*>(child); item && item->FParent == this) item->SetMenuIndex(order);
}

void TMenuItem::Changed(bool rebuild) {
  UpdateAction();
  if (rebuild) RebuildQtMenu();
  if (FParent && rebuild) FParent->RebuildQtMenu();
  if (TMenu* menu = GetParentMenu()) menu->MenuChanged(this, rebuild);
}

QString TMenuItem::QtText() const {
  QString text = AnsiToUnicode(FCaption, Charset());
  // Items of a menu bar: Qt would turn their accelerators into shortcuts of its own,
  // taking the keys before the program sees them; the form opens them instead.
  if (FParent && FParent->FMenu && dynamic_cast<TMainMenu*>(FParent->FMenu)) text = StripAccelChars(text);
  if (FShortCut != scNone) {
    const std::string sc = ShortCutToText(FShortCut);
    if (!sc.empty()) text += QLatin1Char('\t') + QString::fromLatin1(sc.c_str());
  }
  return text;
}

QAction* TMenuItem::QtAction() {
  if (!FQtAction) {
    FQtAction = new QAction();
    FQtAction->setObjectName(QString::fromStdString(Name()));
    QObject::connect(FQtAction, &QAction::triggered, [this] { TMessageLoop::Instance().Guarded([this] { Click(); }); });
    UpdateAction();
  }
  return FQtAction;
}

QMenu* TMenuItem::QtMenu() {
  if (!FQtMenu) {
    FQtMenu = new QMenu();
    FQtMenu->setObjectName(QString::fromStdString(Name()));
    RebuildQtMenu();
  }
  return FQtMenu;
}

void TMenuItem::UpdateAction() {
  if (!FQtAction) return;
  FQtAction->setObjectName(QString::fromStdString(Name()));
  FQtAction->setSeparator(IsLine());
  FQtAction->setText(QtText());
  FQtAction->setEnabled(FEnabled);
  FQtAction->setVisible(FVisible);
  FQtAction->setCheckable(FChecked || FRadioItem);
  FQtAction->setChecked(FChecked);
  QFont f = FQtAction->font();
  f.setBold(FDefault);
  FQtAction->setFont(f);
  if (!FItems.empty()) {
    FQtAction->setMenu(QtMenu());
  } else if (FQtAction->menu()) {
    FQtAction->setMenu(nullptr);
  }
  if (!FBitmap->Empty()) {
    FQtAction->setIcon(QIcon(QPixmap::fromImage(FBitmap->TransparentImage())));
  } else if (FImageIndex >= 0) {
    TCustomImageList* images = FParent ? FParent->FSubMenuImages : nullptr;
    if (!images) {
      if (TMenu* menu = GetParentMenu()) images = menu->Images();
    }
    if (images && FImageIndex < images->Count()) FQtAction->setIcon(QIcon(QPixmap::fromImage(images->Image(FImageIndex))));
  }
}

void TMenuItem::RebuildQtMenu() {
  if (!FQtMenu) {
    if (FQtAction && !FItems.empty()) FQtAction->setMenu(QtMenu());
    return;
  }
  FQtMenu->clear();
  for (TMenuItem* item : FItems) FQtMenu->addAction(item->QtAction());
  if (FQtAction) UpdateAction();
}

// ---------------------------------------------------------------------------------------
// TMenu

LUMORA_CLASS_IMPL(TMenu) {}

TMenu::TMenu(TComponent* owner) : TComponent(owner) {
  FItems = new TMenuItem(nullptr);
  FItems->FMenu = this;
}

TMenu::~TMenu() {
  FItems->FMenu = nullptr;
  delete FItems;
}

void TMenu::SetImages(TCustomImageList* value) {
  FImages = value;
  if (value) value->FreeNotification(this);
}

void TMenu::Notification(TComponent* component, TOperation operation) {
  TComponent::Notification(component, operation);
  if (operation == opRemove && component == FImages) FImages = nullptr;
}

bool TMenu::IsShortCut(TShortCut shortCut) {
  TMenuItem* item = FindItem(shortCut);
  if (!item) return false;
  for (TMenuItem* p = item; p && p != FItems; p = p->Parent()) {
    if (p->FAction) p->FAction->Update();
    if (!p->Enabled()) return false;
  }
  item->Click();
  return true;
}

void TMenu::GetChildren(const TGetChildProc& proc, TComponent* root) { FItems->GetChildren(proc, root); }

void TMenu::SetChildOrder(TComponent* child, int order) { FItems->SetChildOrder(child, order); }

void TMenu::MenuChanged(TMenuItem*, bool) {}

TFontCharset TMenu::Charset() const {
  if (auto* form = dynamic_cast<TCustomForm*>(Owner())) return form->Font()->Charset();
  return DEFAULT_CHARSET;
}

// ---------------------------------------------------------------------------------------
// TMainMenu

LUMORA_CLASS_IMPL(TMainMenu) {
  c.Property("AutoMerge", &TMainMenu::AutoMerge, &TMainMenu::SetAutoMerge).Default(false);
  c.Property("BiDiMode", &TMainMenu::BiDiMode, &TMainMenu::SetBiDiMode).Stored(&TMainMenu::IsBiDiModeStored);
  c.Property("Images", &TMainMenu::Images, &TMainMenu::SetImages);
  c.Property("OwnerDraw", &TMainMenu::OwnerDraw, &TMainMenu::SetOwnerDraw).Default(false);
  c.Property("ParentBiDiMode", &TMainMenu::ParentBiDiMode, &TMainMenu::SetParentBiDiMode).Default(true);
}

TMainMenu::TMainMenu(TComponent* owner) : TMenu(owner) {}

TMainMenu::~TMainMenu() {
  // The bar belongs to the form that shows it; its actions are the items'.
  if (FMenuBar) FMenuBar->clear();
}

std::vector<TMenuItem*> TMainMenu::VisibleItems() const {
  std::vector<TMenuItem*> items;
  for (int i = 0; i < FItems->Count(); ++i) items.push_back(FItems->Items(i));
  for (TMainMenu* merged : FMerged) {
    for (int i = 0; i < merged->Items()->Count(); ++i) {
      TMenuItem* m = merged->Items()->Items(i);
      // A merged group replaces the own items of the same group index.
      items.erase(std::remove_if(items.begin(), items.end(),
                                 [&](TMenuItem* own) {
                                   return own->Parent() == FItems && own->GroupIndex() == m->GroupIndex();
                                 }),
                  items.end());
      auto pos = std::find_if(items.begin(), items.end(), [&](TMenuItem* x) { return x->GroupIndex() > m->GroupIndex(); });
      items.insert(pos, m);
    }
  }
  return items;
}

void TMainMenu::Merge(TMainMenu* menu) {
  if (!menu || menu == this || std::find(FMerged.begin(), FMerged.end(), menu) != FMerged.end()) return;
  FMerged.push_back(menu);
  menu->FreeNotification(this);
  RebuildBar();
}

void TMainMenu::Unmerge(TMainMenu* menu) {
  auto it = std::find(FMerged.begin(), FMerged.end(), menu);
  if (it == FMerged.end()) return;
  FMerged.erase(it);
  RebuildBar();
}

QMenuBar* TMainMenu::CreateMenuBar(QWidget* parent) {
  if (!FMenuBar) {
    FMenuBar = new QMenuBar(parent);
    FMenuBar->setObjectName(QString::fromStdString(Name()));
    FMenuBar->setNativeMenuBar(false);
  } else if (FMenuBar->parentWidget() != parent) {
    FMenuBar->setParent(parent);
  }
  RebuildBar();
  return FMenuBar;
}

void TMainMenu::RebuildBar() {
  if (!FMenuBar) return;
  FMenuBar->clear();
  for (TMenuItem* item : VisibleItems()) FMenuBar->addAction(item->QtAction());
}

void TMainMenu::MenuChanged(TMenuItem* item, bool rebuild) {
  if (rebuild && (item == FItems || item->Parent() == FItems)) RebuildBar();
  if (auto* form = dynamic_cast<TCustomForm*>(Owner())) form->MenuChanged(this);
}

// ---------------------------------------------------------------------------------------
// TPopupMenu

LUMORA_CLASS_IMPL(TPopupMenu) {
  c.Property("Alignment", &TPopupMenu::Alignment, &TPopupMenu::SetAlignment).Default(paLeft);
  c.Property("AutoPopup", &TPopupMenu::AutoPopup, &TPopupMenu::SetAutoPopup).Default(true);
  c.Property("BiDiMode", &TPopupMenu::BiDiMode, &TPopupMenu::SetBiDiMode).Stored(&TPopupMenu::IsBiDiModeStored);
  c.Property("HelpContext", &TPopupMenu::HelpContext, &TPopupMenu::SetHelpContext).Default(0);
  c.Property("Images", &TPopupMenu::Images, &TPopupMenu::SetImages);
  c.Property("OwnerDraw", &TPopupMenu::OwnerDraw, &TPopupMenu::SetOwnerDraw).Default(false);
  c.Property("ParentBiDiMode", &TPopupMenu::ParentBiDiMode, &TPopupMenu::SetParentBiDiMode).Default(true);
  c.Property("TrackButton", &TPopupMenu::TrackButton, &TPopupMenu::SetTrackButton).Default(tbRightButton);
  c.Property("OnPopup", &TPopupMenu::OnPopup, &TPopupMenu::OnPopup);
}

TPopupMenu::TPopupMenu(TComponent* owner) : TMenu(owner) {}

void TPopupMenu::Popup(int x, int y) {
  if (OnPopup) OnPopup(this);
  QMenu* menu = FItems->QtMenu();
  menu->exec(QPoint(x, y));
}

// ---------------------------------------------------------------------------------------

TShortCut ShortCut(Word key, TShiftState shift) {
  int bits = 0;
  if (shift.Contains(ssShift)) bits |= scShift;
  if (shift.Contains(ssCtrl)) bits |= scCtrl;
  if (shift.Contains(ssAlt)) bits |= scAlt;
  return MakeShortCut(key, bits);
}

void ShortCutToKey(TShortCut shortCut, Word& key, TShiftState& shift) {
  key = static_cast<Word>(shortCut & 0xFF);
  shift = TShiftState();
  if (shortCut & scShift) shift += ssShift;
  if (shortCut & scCtrl) shift += ssCtrl;
  if (shortCut & scAlt) shift += ssAlt;
}

TMenuItem* NewItem(const std::string& caption, TShortCut shortCut, bool checked, bool enabled, TNotifyEvent onClick,
                   int helpContext, const std::string& name) {
  auto* item = new TMenuItem(nullptr);
  item->SetName(name);
  item->SetCaption(caption);
  item->SetShortCut(shortCut);
  item->SetChecked(checked);
  item->SetEnabled(enabled);
  item->OnClick = onClick;
  item->SetHelpContext(helpContext);
  return item;
}

TMenuItem* NewLine() {
  auto* item = new TMenuItem(nullptr);
  item->SetCaption(cLineCaption);
  return item;
}
