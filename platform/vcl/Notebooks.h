#pragma once
// The older page controls: notebooks (pages without tabs, one shown at a time), tabbed
// notebooks (pages under rows of tabs of equal width) and tab sets (tabs hanging under
// a line, without pages). A notebook's and a tabbed notebook's pages are theirs: they
// are streamed inside them without names; the controls on a page belong to the form.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/StdCtrls.h"

#include <string>
#include <vector>

class TNotebook;
class TTabbedNotebook;

// One page of a notebook; its Caption names it in the notebook's Pages.
class TPage : public TCustomControl {
  LUMORA_CLASS(TPage, TCustomControl)
public:
  explicit TPage(TComponent* owner);
  ~TPage() override;
  TNotebook* Notebook() const { return FNotebook; }
  void SetParent(TWinControl* parent) override;
  void Paint(QPainter& painter) override;

protected:
  void TextChanged() override;

private:
  friend class TNotebook;
  TNotebook* FNotebook = nullptr;
};

LUMORA_EVENT(TPageChangeEvent, void(TObject* Sender, int NewTab, bool& AllowChange))

class TNotebook : public TCustomControl {
  LUMORA_CLASS(TNotebook, TCustomControl)
public:
  // A new notebook has one page, "Default".
  explicit TNotebook(TComponent* owner);
  ~TNotebook() override;

  // The pages' captions; setting them makes or removes pages.
  TStrings* Pages() const;
  void SetPages(TStrings* value);
  int PageCount() const { return static_cast<int>(FPages.size()); }
  TPage* PageAt(int index) const;
  // The page that shows (-1 for none).
  int PageIndex() const { return FPageIndex; }
  void SetPageIndex(int value);
  const std::string& ActivePage() const;
  void SetActivePage(const std::string& caption);

  TNotifyEvent OnPageChanged;

  void ReadState(TReader& reader) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  TComponent* GetChildOwner() override { return this; }
  void Loaded() override;
  void Paint(QPainter& painter) override;

private:
  friend class TPage;
  void AddPage(TPage* page);
  void RemovePage(TPage* page);
  void ShowActive();
  void PagesEdited();

  std::vector<TPage*> FPages;
  TStringList* FPageNames;
  int FPageIndex = -1;
  mutable bool FSyncing = false;
};

// One page of a tabbed notebook; its Caption is its tab's text.
class TTabPage : public TWinControl {
  LUMORA_CLASS(TTabPage, TWinControl)
public:
  explicit TTabPage(TComponent* owner);
  ~TTabPage() override;
  void SetParent(TWinControl* parent) override;
  void CreateWidget() override;
  void Paint(QPainter& painter) override;

protected:
  void TextChanged() override;

private:
  friend class TTabbedNotebook;
  TTabbedNotebook* FNotebook = nullptr;
};

class TTabbedNotebook : public TCustomTabControl {
  LUMORA_CLASS(TTabbedNotebook, TCustomTabControl)
public:
  // A new tabbed notebook has one page, "Default".
  explicit TTabbedNotebook(TComponent* owner);
  ~TTabbedNotebook() override;

  TStrings* Pages() const;
  void SetPages(TStrings* value);
  int PageCount() const { return static_cast<int>(FPages.size()); }
  TTabPage* PageAt(int index) const;
  int PageIndex() const { return FTabIndex; }
  void SetPageIndex(int value);
  std::string ActivePage() const;
  void SetActivePage(const std::string& caption);
  // Tabs per row: every tab is the control's width divided by this.
  int TabsPerRow() const { return FTabsPerRow; }
  void SetTabsPerRow(int value);
  TFont* TabFont() const { return FTabFont; }
  void SetTabFont(TFont* value) { FTabFont->Assign(value); }

  // Asked before another page shows; AllowChange false keeps the current one.
  TPageChangeEvent OnChange;

  void SetTabIndex(int value) override;
  void ReadState(TReader& reader) override;
  void GetChildren(const TGetChildProc& proc, TComponent* root) override;
  TComponent* GetChildOwner() override { return this; }
  void Loaded() override;

protected:
  bool CanChange() override;
  void Change() override;
  void Resize() override;

private:
  friend class TTabPage;
  void AddPage(TTabPage* page);
  void RemovePage(TTabPage* page);
  void UpdateTabs();
  void ShowActive();
  void PagesEdited();
  int FTabsPerRow = 3;
  TFont* FTabFont;
  std::vector<TTabPage*> FPages;
  TStringList* FPageNames;
  int FPendingTab = -1;
  mutable bool FSyncing = false;
};

// A tab set's Style: its type keeps the name the tab set's unit gives it.
enum TTabStyle31 { tsStandard, tsOwnerDraw };
inline const TTypeInfo* TypeInfoOf(TTabStyle31*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo("TTabStyle", "tsStandard, tsOwnerDraw");
  return &info;
}
// (Sender, NewTab, AllowChange): the shape of a notebook's page change.
using TTabChangeEvent = TPageChangeEvent;
LUMORA_EVENT(TDrawTabSetEvent, void(TObject* Sender, void* TabCanvas, TRect R, int Index, bool Selected))
// (Sender, Index, TabWidth): the shape of a tab control's image index event.
using TMeasureTabEvent = TTabGetImageEvent;

// Tabs hanging under a line, as under the pages of a notebook; the selected one joins
// the line. It has no pages of its own: OnChange tells the program.
class TTabSet : public TCustomControl {
  LUMORA_CLASS(TTabSet, TCustomControl)
public:
  explicit TTabSet(TComponent* owner);
  ~TTabSet() override;
  TStrings* Tabs() const { return FTabs; }
  void SetTabs(TStrings* value) { FTabs->Assign(value); }
  int TabIndex() const { return FTabIndex; }
  void SetTabIndex(int value);
  bool AutoScroll() const { return FAutoScroll; }
  void SetAutoScroll(bool value);
  TColor BackgroundColor() const { return FBackgroundColor; }
  void SetBackgroundColor(TColor value);
  bool DitherBackground() const { return FDitherBackground; }
  void SetDitherBackground(bool value);
  int EndMargin() const { return FEndMargin; }
  void SetEndMargin(int value);
  int StartMargin() const { return FStartMargin; }
  void SetStartMargin(int value);
  TColor SelectedColor() const { return FSelectedColor; }
  void SetSelectedColor(TColor value);
  TColor UnselectedColor() const { return FUnselectedColor; }
  void SetUnselectedColor(TColor value);
  TTabStyle31 Style() const { return FStyle; }
  void SetStyle(TTabStyle31 value);
  int TabHeight() const { return FTabHeight; }
  void SetTabHeight(int value);
  int FirstIndex() const { return FFirstIndex; }
  void SetFirstIndex(int value);
  // The tab under a point, or -1.
  int ItemAtPos(int x, int y) const;

  TTabChangeEvent OnChange;
  TDrawTabSetEvent OnDrawTab;
  TMeasureTabEvent OnMeasureTab;

  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;

private:
  // Left and right of each tab shown, from FirstIndex on.
  std::vector<std::pair<int, int>> TabSpans() const;
  TStringList* FTabs;
  int FTabIndex = -1;
  bool FAutoScroll = true;
  TColor FBackgroundColor = clBtnFace;
  bool FDitherBackground = true;
  int FEndMargin = 5;
  int FStartMargin = 5;
  TColor FSelectedColor = clBtnFace;
  TColor FUnselectedColor = clWindow;
  TTabStyle31 FStyle = tsStandard;
  int FTabHeight = 20;
  int FFirstIndex = 0;
};
