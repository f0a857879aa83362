#pragma once
// Menus: items with captions, shortcuts, group indexes, check marks, radio groups,
// separators ("-") and sub-menus; the main menu of a form and popup menus. Items show
// as Qt actions in a Qt menu bar or menu; their shortcuts are the form's to handle (a
// key goes through the application's message hook first), so Qt only shows their text.

#include "platform/rtti/Classes.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/ShortCuts.h"

#include <QMenuBar>
#include <QPointer>

#include <string>
#include <vector>

LUMORA_DECLARE_EXCEPTION(EMenuError, Exception)

class QAction;
class QMenu;
class QWidget;
class TMenu;
class TCustomImageList;

LUMORA_ENUM(TMenuBreak, mbNone, mbBreak, mbBarBreak)
LUMORA_ENUM(TPopupAlignment, paLeft, paRight, paCenter)
LUMORA_ENUM(TTrackButton, tbRightButton, tbLeftButton)

class TMenuItem;
LUMORA_EVENT(TMenuDrawItemEvent, void(TObject* Sender, void* ACanvas, TRect ARect, bool Selected))
LUMORA_EVENT(TMenuMeasureItemEvent, void(TObject* Sender, void* ACanvas, int& Width, int& Height))

// The caption of separator items.
inline constexpr const char* cLineCaption = "-";

class TMenuItem : public TComponent {
  LUMORA_CLASS(TMenuItem, TComponent)
public:
  explicit TMenuItem(TComponent* owner);
  ~TMenuItem() override;

  // ---- Sub-items
  int Count() const { return static_cast<int>(FItems.size()); }
  TMenuItem* Items(int index) const;
  void Add(TMenuItem* item);
  // Inserts at `index`; group indexes after it are raised so that they never go down.
  void Insert(int index, TMenuItem* item);
  void Delete(int index);
  void Remove(TMenuItem* item);
  void Clear();
  int IndexOf(TMenuItem* item) const;
  TMenuItem* Parent() const { return FParent; }
  int MenuIndex() const { return FParent ? FParent->IndexOf(const_cast<TMenuItem*>(this)) : -1; }
  void SetMenuIndex(int value);
  // The item of this tree whose shortcut is `shortCut`, or none.
  TMenuItem* FindItemByShortCut(TShortCut shortCut);
  // The menu this item is in (through its parents), or none.
  TMenu* GetParentMenu() const;

  // ---- Values
  const std::string& Caption() const { return FCaption; }
  void SetCaption(const std::string& value);
  bool IsLine() const { return FCaption == cLineCaption; }
  bool Checked() const { return FChecked; }
  void SetChecked(bool value);
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool value);
  bool Visible() const { return FVisible; }
  void SetVisible(bool value);
  bool Default() const { return FDefault; }
  void SetDefault(bool value);
  std::uint8_t GroupIndex() const { return FGroupIndex; }
  void SetGroupIndex(std::uint8_t value);
  bool RadioItem() const { return FRadioItem; }
  void SetRadioItem(bool value);
  TShortCut ShortCut() const { return FShortCut; }
  void SetShortCut(TShortCut value);
  TMenuBreak Break() const { return FBreak; }
  void SetBreak(TMenuBreak value) { FBreak = value; }
  const std::string& Hint() const { return FHint; }
  void SetHint(const std::string& value) { FHint = value; }
  int HelpContext() const { return FHelpContext; }
  void SetHelpContext(int value) { FHelpContext = value; }
  int ImageIndex() const { return FImageIndex; }
  void SetImageIndex(int value);
  TBitmap* Bitmap() const { return FBitmap; }
  void SetBitmap(TBitmap* value) { FBitmap->Assign(value); }
  TCustomImageList* SubMenuImages() const { return FSubMenuImages; }
  void SetSubMenuImages(TCustomImageList* value);
  TBasicAction* Action() const { return FAction; }
  void SetAction(TBasicAction* value);
  void ActionChange(TBasicAction* sender, bool checkDefaults);
  bool IsCaptionStored() const { return FAction == nullptr; }

  // Runs OnClick, or the action when there is no OnClick; nothing when disabled.
  virtual void Click();

  TNotifyEvent OnClick;
  TMenuDrawItemEvent OnDrawItem;
  TMenuMeasureItemEvent OnMeasureItem;

  // ---- Streaming
  bool HasParent() const override { return true; }
  TComponent* GetParentComponent() const override;
  void SetParentComponent(TComponent* value) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Notification(TComponent* component, TOperation operation) override;

  // ---- Qt
  // The Qt action that shows this item (made on first use, kept up to date).
  QAction* QtAction();
  // The Qt menu of the sub-items (made on first use), or none for an item without any.
  QMenu* QtMenu();
  // The text Qt shows: the caption in the menu's code page, a tab and the shortcut.
  QString QtText() const;

private:
  friend class TMenu;
  void UpdateAction();
  void RebuildQtMenu();
  void Changed(bool rebuild);
  TFontCharset Charset() const;

  TMenuItem* FParent = nullptr;
  TMenu* FMenu = nullptr;  // set on the root item of a menu
  std::vector<TMenuItem*> FItems;
  std::string FCaption;
  bool FChecked = false;
  bool FEnabled = true;
  bool FVisible = true;
  bool FDefault = false;
  std::uint8_t FGroupIndex = 0;
  bool FRadioItem = false;
  TShortCut FShortCut = scNone;
  TMenuBreak FBreak = mbNone;
  std::string FHint;
  int FHelpContext = 0;
  int FImageIndex = -1;
  TBitmap* FBitmap;
  TCustomImageList* FSubMenuImages = nullptr;
  TBasicAction* FAction = nullptr;
  QAction* FQtAction = nullptr;
  QMenu* FQtMenu = nullptr;
};

class TMenu : public TComponent {
  LUMORA_CLASS(TMenu, TComponent)
public:
  explicit TMenu(TComponent* owner);
  ~TMenu() override;

  // The root item; its sub-items are the menu's items.
  TMenuItem* Items() const { return FItems; }
  TCustomImageList* Images() const { return FImages; }
  void SetImages(TCustomImageList* value);
  bool OwnerDraw() const { return FOwnerDraw; }
  void SetOwnerDraw(bool value) { FOwnerDraw = value; }
  TBiDiMode BiDiMode() const { return FBiDiMode; }
  void SetBiDiMode(TBiDiMode value) {
    FBiDiMode = value;
    FParentBiDiMode = false;
  }
  bool ParentBiDiMode() const { return FParentBiDiMode; }
  void SetParentBiDiMode(bool value) { FParentBiDiMode = value; }
  bool IsBiDiModeStored() const { return !FParentBiDiMode; }

  // Runs the item whose shortcut this is, when it and its parents are enabled and visible.
  bool IsShortCut(TShortCut shortCut);
  // Finds an item by shortcut anywhere in the menu.
  TMenuItem* FindItem(TShortCut shortCut) { return FItems->FindItemByShortCut(shortCut); }

  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  void SetChildOrder(TComponent* child, int order) override;
  void Notification(TComponent* component, TOperation operation) override;

  // Told when an item changed (the form's menu bar follows).
  virtual void MenuChanged(TMenuItem* item, bool rebuild);
  // The code page of captions: the charset of the font of the form that owns the menu.
  TFontCharset Charset() const;

protected:
  TMenuItem* FItems;
  TCustomImageList* FImages = nullptr;
  bool FOwnerDraw = false;
  TBiDiMode FBiDiMode = bdLeftToRight;
  bool FParentBiDiMode = true;
};

class TMainMenu : public TMenu {
  LUMORA_CLASS(TMainMenu, TMenu)
public:
  explicit TMainMenu(TComponent* owner);
  ~TMainMenu() override;
  bool AutoMerge() const { return FAutoMerge; }
  void SetAutoMerge(bool value) { FAutoMerge = value; }
  // Adds the items of `menu`: items of a group index this menu has replace that group,
  // others go in group-index order. Unmerge takes them out again.
  void Merge(TMainMenu* menu);
  void Unmerge(TMainMenu* menu);
  // The Qt menu bar of this menu, made on first use and rebuilt when items change; the
  // form that shows the menu owns the bar.
  QMenuBar* CreateMenuBar(QWidget* parent);
  QMenuBar* MenuBar() const { return FMenuBar.data(); }
  void MenuChanged(TMenuItem* item, bool rebuild) override;
  // The items that show, merged ones included.
  std::vector<TMenuItem*> VisibleItems() const;

private:
  void RebuildBar();
  bool FAutoMerge = false;
  QPointer<QMenuBar> FMenuBar;
  std::vector<TMainMenu*> FMerged;
};

class TPopupMenu : public TMenu {
  LUMORA_CLASS(TPopupMenu, TMenu)
public:
  explicit TPopupMenu(TComponent* owner);
  TPopupAlignment Alignment() const { return FAlignment; }
  void SetAlignment(TPopupAlignment value) { FAlignment = value; }
  bool AutoPopup() const { return FAutoPopup; }
  void SetAutoPopup(bool value) { FAutoPopup = value; }
  int HelpContext() const { return FHelpContext; }
  void SetHelpContext(int value) { FHelpContext = value; }
  TTrackButton TrackButton() const { return FTrackButton; }
  void SetTrackButton(TTrackButton value) { FTrackButton = value; }
  TComponent* PopupComponent() const { return FPopupComponent; }
  void SetPopupComponent(TComponent* value) { FPopupComponent = value; }
  // Shows the menu at a screen position and returns when it is closed.
  virtual void Popup(int x, int y);
  TNotifyEvent OnPopup;

private:
  TPopupAlignment FAlignment = paLeft;
  bool FAutoPopup = true;
  int FHelpContext = 0;
  TTrackButton FTrackButton = tbRightButton;
  TComponent* FPopupComponent = nullptr;
};

// The text of a shortcut and the shortcut of a text (ShortCuts.h has them as well).
TShortCut ShortCut(Word key, TShiftState shift);
void ShortCutToKey(TShortCut shortCut, Word& key, TShiftState& shift);

// Makes a menu item in code, as menus built at run time do.
TMenuItem* NewItem(const std::string& caption, TShortCut shortCut, bool checked, bool enabled, TNotifyEvent onClick,
                   int helpContext, const std::string& name);
TMenuItem* NewLine();

void RegisterMenusClasses();
