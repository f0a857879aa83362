#pragma once
// Outlines: a tree of text lines on a one-column grid. Each line of Lines is an item, its
// level given by the tabs or spaces that begin it; an item's children show while it is
// expanded. The plus and minus boxes, a double click, and the +, - and * keys expand and
// collapse. The directory outline fills itself with the folders of the file system.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Graphics.h"
#include "platform/vcl/Grids.h"
#include "platform/vcl/StdCtrls.h"

#include <string>
#include <vector>

LUMORA_ENUM(TOutlineStyle, osText, osPlusMinusText, osPictureText, osPlusMinusPictureText, osTreeText,
            osTreePictureText)
LUMORA_ENUM(TOutlineOption, ooDrawTreeRoot, ooDrawFocusRect, ooStretchBitmaps)
LUMORA_SET(TOutlineOptions, TOutlineOption)
LUMORA_ENUM(TOutlineType, otStandard, otOwnerDraw)
LUMORA_EVENT(EOutlineChange, void(TObject* Sender, long Index))

struct TOutlineItem {
  std::string Text;
  int Level = 1;  // 1 for the items at the top
  bool Expanded = false;
};

class TCustomOutline : public TCustomGrid {
  LUMORA_CLASS(TCustomOutline, TCustomGrid)
public:
  explicit TCustomOutline(TComponent* owner);
  ~TCustomOutline() override;

  TStrings* Lines() const { return FLines; }
  void SetLines(TStrings* value) { FLines->Assign(value); }
  TOutlineStyle OutlineStyle() const { return FOutlineStyle; }
  void SetOutlineStyle(TOutlineStyle value);
  TOutlineOptions Options() const { return FOutlineOptions; }
  void SetOptions(TOutlineOptions value);
  TOutlineType Style() const { return FStyle; }
  void SetStyle(TOutlineType value);
  int ItemHeight() const { return FDefaultRowHeight; }
  void SetItemHeight(int value) { SetDefaultRowHeight(value); }
  const std::string& ItemSeparator() const { return FItemSeparator; }
  void SetItemSeparator(const std::string& value) { FItemSeparator = value; }
  TBitmap* PicturePlus() const { return FPictures[0]; }
  void SetPicturePlus(TBitmap* value) { SetPicture(0, value); }
  TBitmap* PictureMinus() const { return FPictures[1]; }
  void SetPictureMinus(TBitmap* value) { SetPicture(1, value); }
  TBitmap* PictureOpen() const { return FPictures[2]; }
  void SetPictureOpen(TBitmap* value) { SetPicture(2, value); }
  TBitmap* PictureClosed() const { return FPictures[3]; }
  void SetPictureClosed(TBitmap* value) { SetPicture(3, value); }
  TBitmap* PictureLeaf() const { return FPictures[4]; }
  void SetPictureLeaf(TBitmap* value) { SetPicture(4, value); }

  // Items are counted from 1, as the outline counts them.
  int ItemCount() const { return static_cast<int>(FItems.size()); }
  const TOutlineItem& Item(int index) const { return FItems[index - 1]; }
  bool HasItems(int index) const;
  // The item of the current row, 0 when there is none.
  int SelectedItem() const;
  void SetSelectedItem(int index);
  // The item's text with its parents', joined by ItemSeparator.
  std::string FullPath(int index) const;
  void Expand(int index);
  void Collapse(int index);
  void FullExpand();
  void FullCollapse();
  // The rows shown, as item indexes.
  const std::vector<int>& Shown() const { return FShown; }

  EOutlineChange OnExpand;
  EOutlineChange OnCollapse;
  TDrawItemEvent OnDrawItem;

  void DrawCell(QPainter& painter, int aCol, int aRow, const TRect& rect, TGridDrawState state) override;
  void KeyPress(char& key) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void DblClick() override;
  void DefineProperties(TFiler& filer) override;

protected:
  void Resize() override;
  // The lines became items again.
  virtual void LinesChanged();
  void Rebuild();
  // Where the plus or minus box of a row lies, in the cell.
  QRect ButtonRect(const TRect& cell, int level) const;
  int Indent() const;
  TStringList* FLines;
  std::vector<TOutlineItem> FItems;
  std::vector<int> FShown;
  // What the design stream keeps besides the lines; given back as it came.
  std::string FData;
  int FGeneration = 0;  // counts the rebuilds of the items from the lines

private:
  void SetPicture(int which, TBitmap* value);
  void ToggleAt(int index);
  TOutlineStyle FOutlineStyle = osTreePictureText;
  TOutlineOptions FOutlineOptions{ooDrawTreeRoot, ooDrawFocusRect};
  TOutlineType FStyle = otStandard;
  std::string FItemSeparator = "\\";
  TBitmap* FPictures[5];
  bool FUpdating = false;
};

class TOutline : public TCustomOutline {
  LUMORA_CLASS(TOutline, TCustomOutline)
public:
  explicit TOutline(TComponent* owner) : TCustomOutline(owner) {}
};

// The directory outline's TextCase: its type keeps the name the outline's unit gives it.
enum class TOutlineTextCase { tcLowerCase, tcUpperCase, tcAsIs };
inline const TTypeInfo* TypeInfoOf(TOutlineTextCase*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo("TTextCase", "tcLowerCase, tcUpperCase, tcAsIs");
  return &info;
}

class TDirectoryOutline : public TCustomOutline {
  LUMORA_CLASS(TDirectoryOutline, TCustomOutline)
public:
  explicit TDirectoryOutline(TComponent* owner);
  // The folder chosen; the path from the root down to it is expanded.
  const std::string& Directory() const { return FDirectory; }
  void SetDirectory(const std::string& value);
  TOutlineTextCase TextCase() const { return FTextCase; }
  void SetTextCase(TOutlineTextCase value);

  TNotifyEvent OnChange;

  void Click() override;
  void DblClick() override;
  void Loaded() override;

protected:
  void Fill();

private:
  std::string FDirectory;
  TOutlineTextCase FTextCase = TOutlineTextCase::tcLowerCase;
};
