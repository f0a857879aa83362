#include "platform/vcl/Outline.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/FileCtrl.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr int kBoxSize = 9;

// Every other pixel, as the classic tree lines are drawn.
void DottedLine(QPainter& p, int x1, int y1, int x2, int y2, const QColor& color) {
  if (x1 == x2) {
    for (int y = std::min(y1, y2); y <= std::max(y1, y2); ++y)
      if ((x1 + y) % 2 == 0) p.fillRect(QRect(x1, y, 1, 1), color);
  } else {
    for (int x = std::min(x1, x2); x <= std::max(x1, x2); ++x)
      if ((x + y1) % 2 == 0) p.fillRect(QRect(x, y1, 1, 1), color);
  }
}

bool HasPlusMinus(TOutlineStyle s) {
  return s == osPlusMinusText || s == osPlusMinusPictureText || s == osTreeText || s == osTreePictureText;
}
bool HasPicture(TOutlineStyle s) { return s == osPictureText || s == osPlusMinusPictureText || s == osTreePictureText; }
bool HasTree(TOutlineStyle s) { return s == osTreeText || s == osTreePictureText; }

template <class C>
void PublishOutlineStart(TClassBuilder<C>& c) {
  c.Property("Lines", &C::Lines, &C::SetLines).Stored(false);
  c.Property("OutlineStyle", &C::OutlineStyle, &C::SetOutlineStyle).Default(osTreePictureText);
  c.Property("OnExpand", &C::OnExpand, &C::OnExpand);
  c.Property("OnCollapse", &C::OnCollapse, &C::OnCollapse);
  c.Property("Options", &C::Options, &C::SetOptions).Default(TOutlineOptions{ooDrawTreeRoot, ooDrawFocusRect});
  c.Property("Style", &C::Style, &C::SetStyle).Default(otStandard);
  c.Property("ItemHeight", &C::ItemHeight, &C::SetItemHeight).NoDefault();
  c.Property("OnDrawItem", &C::OnDrawItem, &C::OnDrawItem);
}

template <class C>
void PublishPictures(TClassBuilder<C>& c) {
  c.Property("PicturePlus", &C::PicturePlus, &C::SetPicturePlus);
  c.Property("PictureMinus", &C::PictureMinus, &C::SetPictureMinus);
  c.Property("PictureOpen", &C::PictureOpen, &C::SetPictureOpen);
  c.Property("PictureClosed", &C::PictureClosed, &C::SetPictureClosed);
  c.Property("PictureLeaf", &C::PictureLeaf, &C::SetPictureLeaf);
}

}  // namespace

LUMORA_CLASS_IMPL(TCustomOutline) {}

LUMORA_CLASS_IMPL(TOutline) {
  PublishOutlineStart(c);
  PublishControlProperties(c, {"Align", "Enabled", "Font", "Color", "ParentColor", "ParentCtl3D", "Ctl3D",
                               "TabOrder", "TabStop", "Visible", "OnClick", "DragMode", "DragCursor", "OnDragDrop",
                               "OnDragOver", "OnEndDrag", "OnStartDrag", "OnEnter", "OnExit", "OnMouseDown",
                               "OnMouseMove", "OnMouseUp", "OnDblClick", "OnKeyDown", "OnKeyPress", "OnKeyUp"});
  c.Property("BorderStyle", &TOutline::BorderStyle, &TOutline::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("ItemSeparator", &TOutline::ItemSeparator, &TOutline::SetItemSeparator).NoDefault();
  PublishPictures(c);
  PublishControlProperties(c, {"ParentFont", "ParentShowHint", "ShowHint", "PopupMenu"});
  c.Property("ScrollBars", &TOutline::ScrollBars, &TOutline::SetScrollBars).Default(ssBoth);
  PublishControlProperties(c, {"Anchors", "Constraints", "DragKind", "OnStartDock", "OnEndDock"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TCustomOutline::TCustomOutline(TComponent* owner) : TCustomGrid(owner) {
  FColCount = 1;
  FRowCount = 1;
  FFixedCols = 0;
  FFixedRows = 0;
  FOptions = TGridOptions{};
  FCurrent = {0, 0};
  FAnchor = FCurrent;
  FTopLeft = FCurrent;
  FWidth = 121;
  FHeight = 97;
  FDefaultRowHeight = 13;
  for (TBitmap*& b : FPictures) b = new TBitmap();
  FLines = new TStringList();
  FLines->OnChange = [this](TObject*) { LinesChanged(); };
  FDefaultColWidth = std::max(0, FWidth - 4);
}

TCustomOutline::~TCustomOutline() {
  for (TBitmap* b : FPictures) delete b;
  delete FLines;
}

void TCustomOutline::SetPicture(int which, TBitmap* value) {
  FPictures[which]->Assign(value);
  InvalidateGrid();
}

void TCustomOutline::SetOutlineStyle(TOutlineStyle value) {
  FOutlineStyle = value;
  InvalidateGrid();
}

void TCustomOutline::SetOptions(TOutlineOptions value) {
  FOutlineOptions = value;
  InvalidateGrid();
}

void TCustomOutline::SetStyle(TOutlineType value) {
  FStyle = value;
  InvalidateGrid();
}

// The design stream keeps the outline's own data as a binary value; it is kept whole so
// that a form written back loses nothing.
void TCustomOutline::DefineProperties(TFiler& filer) {
  TCustomGrid::DefineProperties(filer);
  filer.DefineBinaryProperty(
      "Data",
      [this](TStream& s) {
        const std::int64_t size = std::max<std::int64_t>(0, s.Size() - s.Position());
        FData.assign(static_cast<std::size_t>(size), '\0');
        if (size > 0) s.Read(FData.data(), size);
      },
      [this](TStream& s) {
        if (!FData.empty()) s.Write(FData.data(), static_cast<std::int64_t>(FData.size()));
      },
      !FData.empty());
}

void TCustomOutline::LinesChanged() {
  if (FUpdating) return;
  ++FGeneration;
  FItems.clear();
  for (int i = 0; i < FLines->Count(); ++i) {
    const std::string& line = FLines->Strings(i);
    std::size_t depth = 0;
    while (depth < line.size() && (line[depth] == '\t' || line[depth] == ' ')) ++depth;
    TOutlineItem item;
    item.Text = line.substr(depth);
    // A line can go one level deeper than the one before it, no more.
    const int most = FItems.empty() ? 1 : FItems.back().Level + 1;
    item.Level = std::min(static_cast<int>(depth) + 1, most);
    FItems.push_back(item);
  }
  Rebuild();
}

void TCustomOutline::Rebuild() {
  const int selected = SelectedItem();
  FShown.clear();
  int hiddenBelow = 0;  // items deeper than this level are hidden; 0 for none
  for (int i = 1; i <= ItemCount(); ++i) {
    const TOutlineItem& item = Item(i);
    if (hiddenBelow && item.Level > hiddenBelow) continue;
    hiddenBelow = 0;
    FShown.push_back(i);
    if (!item.Expanded && HasItems(i)) hiddenBelow = item.Level;
  }
  FUpdating = true;
  ChangeSize(1, std::max<int>(1, static_cast<int>(FShown.size())));
  // The selected item stays selected, or its nearest shown parent takes over.
  int row = 0;
  for (int target = selected; target > 0 && row == 0;) {
    const auto it = std::find(FShown.begin(), FShown.end(), target);
    if (it != FShown.end()) {
      row = static_cast<int>(it - FShown.begin());
      break;
    }
    int parent = target - 1;
    while (parent > 0 && Item(parent).Level >= Item(target).Level) --parent;
    target = parent;
  }
  FocusCell(0, row, true);
  FUpdating = false;
  InvalidateGrid();
}

bool TCustomOutline::HasItems(int index) const {
  return index >= 1 && index < ItemCount() && Item(index + 1).Level > Item(index).Level;
}

int TCustomOutline::SelectedItem() const {
  const int row = Row();
  return row >= 0 && row < static_cast<int>(FShown.size()) ? FShown[row] : 0;
}

void TCustomOutline::SetSelectedItem(int index) {
  if (index < 1 || index > ItemCount()) return;
  // Its parents open so that it shows.
  int level = Item(index).Level;
  bool changed = false;
  for (int i = index - 1; i >= 1 && level > 1; --i) {
    if (Item(i).Level < level) {
      if (!FItems[i - 1].Expanded) changed = true;
      FItems[i - 1].Expanded = true;
      level = Item(i).Level;
    }
  }
  if (changed) Rebuild();
  const auto it = std::find(FShown.begin(), FShown.end(), index);
  if (it != FShown.end()) FocusCell(0, static_cast<int>(it - FShown.begin()), true);
}

std::string TCustomOutline::FullPath(int index) const {
  if (index < 1 || index > ItemCount()) return {};
  std::string path = Item(index).Text;
  int level = Item(index).Level;
  for (int i = index - 1; i >= 1 && level > 1; --i) {
    if (Item(i).Level < level) {
      path = Item(i).Text + FItemSeparator + path;
      level = Item(i).Level;
    }
  }
  return path;
}

void TCustomOutline::Expand(int index) {
  if (index < 1 || index > ItemCount() || Item(index).Expanded) return;
  FItems[index - 1].Expanded = true;
  Rebuild();
  if (OnExpand && !Loading(this)) OnExpand(this, index);
}

void TCustomOutline::Collapse(int index) {
  if (index < 1 || index > ItemCount() || !Item(index).Expanded) return;
  FItems[index - 1].Expanded = false;
  Rebuild();
  if (OnCollapse && !Loading(this)) OnCollapse(this, index);
}

void TCustomOutline::FullExpand() {
  for (TOutlineItem& item : FItems) item.Expanded = true;
  Rebuild();
}

void TCustomOutline::FullCollapse() {
  for (TOutlineItem& item : FItems) item.Expanded = false;
  Rebuild();
}

void TCustomOutline::ToggleAt(int index) {
  if (!HasItems(index)) return;
  if (Item(index).Expanded) {
    Collapse(index);
  } else {
    Expand(index);
  }
}

int TCustomOutline::Indent() const { return std::max(kBoxSize + 4, std::min(18, FDefaultRowHeight + 3)); }

QRect TCustomOutline::ButtonRect(const TRect& cell, int level) const {
  const int root = FOutlineOptions.Contains(ooDrawTreeRoot) || !HasTree(FOutlineStyle) ? 1 : 0;
  const int x = cell.Left + (level - 1 + root - 1) * Indent();
  const int top = cell.Top + (cell.Height() - kBoxSize) / 2;
  return QRect(x + (Indent() - kBoxSize) / 2, top, kBoxSize, kBoxSize);
}

void TCustomOutline::DrawCell(QPainter& p, int aCol, int aRow, const TRect& rect, TGridDrawState state) {
  TCustomGrid::DrawCell(p, aCol, aRow, rect, state);
  if (aRow < 0 || aRow >= static_cast<int>(FShown.size())) return;
  const int index = FShown[aRow];
  const TOutlineItem& item = Item(index);
  if (FStyle == otOwnerDraw) {
    if (OnDrawItem) OnDrawItem(this, index, rect, TOwnerDrawState{});
    return;
  }
  const int indent = Indent();
  const int midY = rect.Top + rect.Height() / 2;
  const QColor lines = Sys(clBtnShadow);
  const bool drawRoot = FOutlineOptions.Contains(ooDrawTreeRoot) || !HasTree(FOutlineStyle);
  const int root = drawRoot ? 1 : 0;
  int x = rect.Left + (item.Level - 1) * indent;
  if (HasTree(FOutlineStyle)) {
    // Whether an item at `level` follows below, before the outline climbs above it.
    auto continues = [&](int level) {
      for (int j = index + 1; j <= ItemCount(); ++j) {
        if (Item(j).Level < level) return false;
        if (Item(j).Level == level) return true;
      }
      return false;
    };
    for (int level = 1 + (drawRoot ? 0 : 1); level <= item.Level; ++level) {
      const int cx = rect.Left + (level - 1 + root - 1) * indent + indent / 2;
      if (level < item.Level) {
        if (continues(level)) DottedLine(p, cx, rect.Top, cx, rect.Bottom - 1, lines);
      } else {
        const bool first = index == 1 && level == 1;
        DottedLine(p, cx, first ? midY : rect.Top, cx, continues(level) ? rect.Bottom - 1 : midY, lines);
        DottedLine(p, cx, midY, cx + indent / 2 + 1, midY, lines);
      }
    }
    x = rect.Left + (item.Level - 1 + root) * indent;
  } else if (HasPlusMinus(FOutlineStyle)) {
    x = rect.Left + (item.Level - 1) * indent + indent;
  }
  // Without the root drawn, the top items of a tree have no box either.
  if (HasPlusMinus(FOutlineStyle) && HasItems(index) && (drawRoot || item.Level > 1)) {
    const QRect box = ButtonRect(rect, item.Level);
    TBitmap* picture = item.Expanded ? PictureMinus() : PicturePlus();
    if (!picture->Empty()) {
      const QImage image = picture->TransparentImage();
      p.drawImage(QPoint(box.center().x() - image.width() / 2, midY - image.height() / 2), image);
    } else {
      p.fillRect(box, Sys(clWindow));
      p.setPen(lines);
      p.setBrush(Qt::NoBrush);
      p.drawRect(box.adjusted(0, 0, -1, -1));
      const QColor ink = Sys(clWindowText);
      p.fillRect(QRect(box.left() + 2, box.top() + 4, 5, 1), ink);
      if (!item.Expanded) p.fillRect(QRect(box.left() + 4, box.top() + 2, 1, 5), ink);
    }
  }
  if (HasPicture(FOutlineStyle)) {
    TBitmap* picture = !HasItems(index) ? PictureLeaf() : item.Expanded ? PictureOpen() : PictureClosed();
    if (!picture->Empty()) {
      QImage image = picture->TransparentImage();
      if (FOutlineOptions.Contains(ooStretchBitmaps)) image = image.scaled(indent, rect.Height());
      p.drawImage(QPoint(x + 1, midY - image.height() / 2), image);
      x += std::max(indent, image.width() + 2);
    } else {
      const TFileGlyph kind = !HasItems(index) ? TFileGlyph::File
                              : item.Expanded  ? TFileGlyph::OpenFolder
                                               : TFileGlyph::ClosedFolder;
      p.drawPixmap(QPoint(x, midY - 8), FileGlyph(kind, 0, 16));
      x += 18;
    }
  }
  // The text, highlighted when its row is the current one.
  p.setFont(FFont->Handle());
  const QFontMetrics fm(FFont->Handle());
  const QString text = FFont->ToUnicode(item.Text);
  const QRect textRect(x + 1, rect.Top, fm.horizontalAdvance(text) + 4, rect.Height());
  const bool current = aRow == Row();
  if (current) p.fillRect(textRect, Sys(clHighlight));
  p.setPen(Sys(current ? clHighlightText : FFont->Color()));
  p.drawText(textRect, Qt::AlignCenter, text);
  if (current && FOutlineOptions.Contains(ooDrawFocusRect) && state.Contains(gdFocused))
    DrawFocusRect(p, textRect, Sys(clHighlightText));
}

void TCustomOutline::KeyPress(char& key) {
  TCustomGrid::KeyPress(key);
  const int index = SelectedItem();
  if (index == 0) return;
  switch (key) {
    case '+': Expand(index); break;
    case '-': Collapse(index); break;
    case '*': {
      // The item and everything below it.
      FItems[index - 1].Expanded = true;
      for (int j = index + 1; j <= ItemCount() && Item(j).Level > Item(index).Level; ++j) FItems[j - 1].Expanded = true;
      Rebuild();
      if (OnExpand) OnExpand(this, index);
      break;
    }
    default: return;
  }
  key = 0;
}

void TCustomOutline::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  const int generation = FGeneration;
  TCustomGrid::MouseDown(button, shift, x, y);
  // When choosing the row rebuilt the items (a directory outline does), the rows under
  // the mouse are others now.
  if (generation != FGeneration) return;
  if (button != mbLeft || Designing() || !HasPlusMinus(FOutlineStyle)) return;
  const TGridCoord cell = MouseCoord(x, y);
  if (cell.Y < 0 || cell.Y >= static_cast<int>(FShown.size())) return;
  const int index = FShown[cell.Y];
  if (ButtonRect(CellRect(0, cell.Y), Item(index).Level).adjusted(-2, -2, 2, 2).contains(x, y)) ToggleAt(index);
}

void TCustomOutline::DblClick() {
  TCustomGrid::DblClick();
  if (!Designing()) ToggleAt(SelectedItem());
}

void TCustomOutline::Resize() {
  FDefaultColWidth = std::max(0, ClientRect().Width());
  TCustomGrid::Resize();
}

// ---------------------------------------------------------------------------------------
// TDirectoryOutline

LUMORA_CLASS_IMPL(TDirectoryOutline) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("BorderStyle", &TDirectoryOutline::BorderStyle, &TDirectoryOutline::SetBorderStyle)
      .Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Constraints", "Ctl3D"});
  c.Property("Directory", &TDirectoryOutline::Directory, &TDirectoryOutline::SetDirectory).Stored(false);
  PublishControlProperties(c, {"DragCursor", "DragMode", "Enabled", "Font"});
  c.Property("ItemHeight", &TDirectoryOutline::ItemHeight, &TDirectoryOutline::SetItemHeight).NoDefault();
  c.Property("Options", &TDirectoryOutline::Options, &TDirectoryOutline::SetOptions)
      .Default(TOutlineOptions{ooDrawTreeRoot, ooDrawFocusRect});
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PictureClosed", &TDirectoryOutline::PictureClosed, &TDirectoryOutline::SetPictureClosed);
  c.Property("PictureLeaf", &TDirectoryOutline::PictureLeaf, &TDirectoryOutline::SetPictureLeaf);
  c.Property("PictureOpen", &TDirectoryOutline::PictureOpen, &TDirectoryOutline::SetPictureOpen);
  PublishControlProperties(c, {"PopupMenu", "ShowHint", "TabOrder", "TabStop"});
  c.Property("TextCase", &TDirectoryOutline::TextCase, &TDirectoryOutline::SetTextCase)
      .Default(TOutlineTextCase::tcLowerCase);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TDirectoryOutline::OnChange, &TDirectoryOutline::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDirectoryOutline::TDirectoryOutline(TComponent* owner) : TCustomOutline(owner) {
  SetOutlineStyle(osTreePictureText);
  std::error_code ec;
  FDirectory = fs::current_path(ec).string();
  if (ec) FDirectory = "/";
  Fill();
}

// The root, then the folders of each folder on the way down to Directory, sorted by
// name; the ones on the way are expanded.
void TDirectoryOutline::Fill() {
  std::vector<std::string> lines;
  lines.push_back("/");
  std::vector<std::string> steps;
  for (const auto& part : fs::path(FDirectory).relative_path()) steps.push_back(part.string());
  std::vector<int> onPath{1};  // the items to expand, counted from 1
  fs::path folder("/");
  for (std::size_t depth = 0; depth <= steps.size(); ++depth) {
    std::vector<std::string> subs;
    std::error_code ec;
    for (fs::directory_iterator it(folder, fs::directory_options::skip_permission_denied, ec), end;
         !ec && it != end; it.increment(ec)) {
      std::error_code kind;
      const std::string name = it->path().filename().string();
      if (it->is_directory(kind) && !name.empty() && name[0] != '.') subs.push_back(name);
    }
    std::sort(subs.begin(), subs.end(), [](const std::string& a, const std::string& b) { return CompareText(a, b) < 0; });
    // The folders below the next step go right after it.
    const std::string next = depth < steps.size() ? steps[depth] : std::string();
    const auto insertAt = std::find(lines.begin(), lines.end(), std::string(depth, ' ') + (depth == 0 ? "/" : steps[depth - 1]));
    std::vector<std::string> block;
    int nextIndex = 0;
    for (const std::string& s : subs) {
      block.push_back(std::string(depth + 1, ' ') + s);
      if (s == next) nextIndex = static_cast<int>(block.size());
    }
    const int base = static_cast<int>(insertAt == lines.end() ? lines.size() : (insertAt - lines.begin()) + 1);
    lines.insert(lines.begin() + base, block.begin(), block.end());
    if (depth == steps.size()) break;
    if (nextIndex == 0) {
      // A step that is not listed (a hidden folder): it goes last so the way still shows.
      lines.insert(lines.begin() + base + static_cast<int>(block.size()), std::string(depth + 1, ' ') + next);
      nextIndex = static_cast<int>(block.size()) + 1;
    }
    onPath.push_back(base + nextIndex);
    folder /= next;
  }
  FLines->BeginUpdate();
  FLines->Clear();
  for (std::string& line : lines) {
    std::size_t depth = line.find_first_not_of(' ');
    std::string name = line.substr(depth);
    if (FTextCase == TOutlineTextCase::tcLowerCase)
      std::transform(name.begin(), name.end(), name.begin(), [](unsigned char ch) { return std::tolower(ch); });
    if (FTextCase == TOutlineTextCase::tcUpperCase)
      std::transform(name.begin(), name.end(), name.begin(), [](unsigned char ch) { return std::toupper(ch); });
    FLines->Add(std::string(depth, '\t') + name);
  }
  FLines->EndUpdate();
  for (int index : onPath)
    if (index >= 1 && index <= ItemCount()) FItems[index - 1].Expanded = true;
  Rebuild();
  SetSelectedItem(onPath.back());
}

void TDirectoryOutline::SetDirectory(const std::string& value) {
  std::error_code ec;
  const fs::path p = fs::weakly_canonical(fs::absolute(value, ec), ec);
  if (ec || !fs::is_directory(p, ec)) return;
  const std::string path = p.string();
  if (path == FDirectory) return;
  FDirectory = path;
  Fill();
  if (OnChange && !Loading(this)) OnChange(this);
}

void TDirectoryOutline::SetTextCase(TOutlineTextCase value) {
  FTextCase = value;
  Fill();
}

// The item clicked is the folder: its path is rebuilt from the real names on disk.
void TDirectoryOutline::Click() {
  TCustomOutline::Click();
  const int index = SelectedItem();
  if (index == 0) return;
  std::vector<int> chain;
  int level = Item(index).Level;
  chain.push_back(index);
  for (int i = index - 1; i >= 1 && level > 1; --i) {
    if (Item(i).Level < level) {
      chain.push_back(i);
      level = Item(i).Level;
    }
  }
  // Each step's real name: the folder of its parent whose shown text it is.
  fs::path path("/");
  for (auto it = chain.rbegin() + 1; it != chain.rend(); ++it) {
    const std::string& shown = Item(*it).Text;
    std::string real = shown;
    std::error_code ec;
    for (fs::directory_iterator d(path, fs::directory_options::skip_permission_denied, ec), end; !ec && d != end;
         d.increment(ec)) {
      if (CompareText(d->path().filename().string(), shown) == 0) {
        real = d->path().filename().string();
        if (real == shown) break;
      }
    }
    path /= real;
  }
  SetDirectory(path.string());
}

// A click has already opened the folder: a double click keeps it open.
void TDirectoryOutline::DblClick() { TCustomGrid::DblClick(); }

void TDirectoryOutline::Loaded() {
  TCustomOutline::Loaded();
  Fill();
}
