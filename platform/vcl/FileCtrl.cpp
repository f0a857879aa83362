#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/FileCtrl.h"

#include "platform/vcl/Publish.h"

#include <QComboBox>
#include <QListWidget>
#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>
#include <QPixmap>

#include "platform/vcl/Menus.h"

#include <algorithm>
#include <cctype>
#include <filesystem>

namespace fs = std::filesystem;

namespace {


std::string CurrentFolder() {
  std::error_code ec;
  const fs::path p = fs::current_path(ec);
  return ec ? std::string("/") : p.string();
}

bool MatchOne(const char* n, const char* m) {
  // '*' any run, '?' one character, the rest ignoring case.
  if (*m == '\0') return *n == '\0';
  if (*m == '*') {
    for (const char* s = n;; ++s) {
      if (MatchOne(s, m + 1)) return true;
      if (*s == '\0') return false;
    }
  }
  if (*n == '\0') return false;
  if (*m != '?' && std::tolower(static_cast<unsigned char>(*m)) != std::tolower(static_cast<unsigned char>(*n)))
    return false;
  return MatchOne(n + 1, m + 1);
}

}  // namespace

QPixmap FileGlyph(TFileGlyph kind, int indent, int width) {
  QPixmap pm(std::max(width, indent + 16), 16);
  pm.fill(Qt::transparent);
  QPainter p(&pm);
  p.translate(indent, 0);
  const QColor yellow(255, 255, 0), darkYellow(128, 128, 0), black(0, 0, 0), white(255, 255, 255),
      gray(128, 128, 128), silver(192, 192, 192);
  switch (kind) {
    case TFileGlyph::ClosedFolder:
    case TFileGlyph::OpenFolder:
      p.fillRect(QRect(1, 4, 14, 10), kind == TFileGlyph::OpenFolder ? darkYellow : yellow);
      p.fillRect(QRect(2, 2, 5, 2), yellow);
      p.setPen(black);
      p.drawLine(1, 3, 1, 13);
      p.drawLine(1, 13, 14, 13);
      p.drawLine(14, 4, 14, 13);
      p.drawLine(2, 2, 6, 2);
      p.drawLine(7, 3, 14, 3);
      if (kind == TFileGlyph::OpenFolder) {
        // The open flap, in front.
        p.setBrush(yellow);
        p.drawPolygon(QPolygon({QPoint(3, 7), QPoint(15, 7), QPoint(13, 13), QPoint(1, 13)}));
      } else {
        p.setPen(white);
        p.drawLine(2, 4, 13, 4);
      }
      break;
    case TFileGlyph::File:
      p.fillRect(QRect(3, 1, 9, 14), white);
      p.setPen(black);
      p.drawRect(QRect(3, 1, 9, 14));
      p.setPen(gray);
      for (int y = 4; y < 14; y += 2) p.drawLine(5, y, 10, y);
      break;
    case TFileGlyph::Drive:
      p.fillRect(QRect(1, 6, 14, 6), silver);
      p.setPen(black);
      p.drawRect(QRect(1, 6, 13, 5));
      p.fillRect(QRect(11, 8, 2, 2), QColor(0, 255, 0));
      break;
  }
  return pm;
}

bool MatchesFileMask(const std::string& name, const std::string& masks) {
  std::size_t start = 0;
  while (start <= masks.size()) {
    std::size_t end = masks.find(';', start);
    if (end == std::string::npos) end = masks.size();
    const std::string mask = Trim(masks.substr(start, end - start));
    if (mask == "*.*" || mask == "*") return true;
    if (!mask.empty() && MatchOne(name.c_str(), mask.c_str())) return true;
    start = end + 1;
  }
  return false;
}

// ---------------------------------------------------------------------------------------
// TFileListBox

LUMORA_CLASS_IMPL(TFileListBox) {
  PublishControlProperties(c, {"Align", "Anchors", "Color", "Constraints", "Ctl3D", "DragCursor", "DragMode",
                               "Enabled"});
  c.Property("ExtendedSelect", &TFileListBox::ExtendedSelect, &TFileListBox::SetExtendedSelect).Default(true);
  c.Property("FileEdit", &TFileListBox::FileEdit, &TFileListBox::SetFileEdit);
  c.Property("FileName", &TFileListBox::FileName, &TFileListBox::SetFileName).Stored(false);
  c.Property("FileType", &TFileListBox::FileType, &TFileListBox::SetFileType).Default(TFileType{ftNormal});
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("IntegralHeight", &TFileListBox::IntegralHeight, &TFileListBox::SetIntegralHeight).Default(false);
  c.Property("ItemHeight", &TFileListBox::ItemHeight, &TFileListBox::SetItemHeight).Default(16);
  c.Property("Mask", &TFileListBox::Mask, &TFileListBox::SetMask);
  c.Property("MultiSelect", &TFileListBox::MultiSelect, &TFileListBox::SetMultiSelect).Default(false);
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ShowGlyphs", &TFileListBox::ShowGlyphs, &TFileListBox::SetShowGlyphs).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TFileListBox::OnChange, &TFileListBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnEnter", "OnExit",
                               "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",
                               "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TFileListBox::TFileListBox(TComponent* owner) : TCustomListBox(owner) {
  FWidth = 145;
  FHeight = 97;
  FSorted = true;
  FItems->SetSorted(true);
  FDirectory = CurrentFolder();
  Update();
}

void TFileListBox::SetDirectory(const std::string& value) {
  std::error_code ec;
  const std::string folder = fs::absolute(value.empty() ? fs::path(".") : fs::path(value), ec).lexically_normal().string();
  if (folder == FDirectory) return;
  FDirectory = folder.size() > 1 && folder.back() == '/' ? folder.substr(0, folder.size() - 1) : folder;
  Update();
  if (!Loading(this) && OnChange) OnChange(this);
}

std::string TFileListBox::FileName() const {
  const int index = ItemIndex();
  if (index < 0 || index >= FItems->Count()) return {};
  return (fs::path(FDirectory) / FItems->Strings(index)).string();
}

void TFileListBox::SetFileName(const std::string& value) {
  const fs::path p(value);
  if (p.has_parent_path()) SetDirectory(p.parent_path().string());
  SetItemIndex(FItems->IndexOf(p.filename().string()));
}

void TFileListBox::SetFileEdit(TEdit* value) {
  if (FFileEdit) FFileEdit->RemoveFreeNotification(this);
  FFileEdit = value;
  if (value) {
    value->FreeNotification(this);
    value->SetText(FMask);
  }
}

void TFileListBox::SetFileType(TFileType value) {
  FFileType = value;
  Update();
}

void TFileListBox::SetMask(const std::string& value) {
  FMask = value.empty() ? std::string("*.*") : value;
  if (FFileEdit) FFileEdit->SetText(FMask);
  Update();
}

void TFileListBox::SetShowGlyphs(bool value) {
  FShowGlyphs = value;
  UpdateWidgetText();
}

void TFileListBox::Update() {
  FItems->BeginUpdate();
  FItems->Clear();
  std::error_code ec;
  for (fs::directory_iterator it(FDirectory, fs::directory_options::skip_permission_denied, ec), end; !ec && it != end;
       it.increment(ec)) {
    const std::string name = it->path().filename().string();
    const bool hidden = !name.empty() && name[0] == '.';
    if (hidden && !FFileType.Contains(ftHidden)) continue;
    std::error_code kindError;
    if (it->is_directory(kindError)) {
      if (FFileType.Contains(ftDirectory)) FItems->Add("[" + name + "]");
      continue;
    }
    if (!FFileType.Contains(ftNormal) && !(hidden && FFileType.Contains(ftHidden))) continue;
    if (MatchesFileMask(name, FMask)) FItems->Add(name);
  }
  FItems->EndUpdate();
}

void TFileListBox::FillWidget() {
  TCustomListBox::FillWidget();
  QListWidget* l = List();
  if (!l || !FShowGlyphs) return;
  l->setIconSize(QSize(16, 16));
  for (int i = 0; i < l->count(); ++i) {
    const std::string& s = FItems->Strings(i);
    const bool folder = s.size() > 1 && s.front() == '[' && s.back() == ']';
    l->item(i)->setIcon(QIcon(FileGlyph(folder ? TFileGlyph::ClosedFolder : TFileGlyph::File, 0, 16)));
  }
}

void TFileListBox::Click() {
  if (FFileEdit && ItemIndex() >= 0) FFileEdit->SetText(FItems->Strings(ItemIndex()));
  TCustomListBox::Click();
}

void TFileListBox::Loaded() {
  TCustomListBox::Loaded();
  Update();
}

void TFileListBox::Notification(TComponent* component, TOperation operation) {
  TCustomListBox::Notification(component, operation);
  if (operation == opRemove && component == FFileEdit) FFileEdit = nullptr;
}

// ---------------------------------------------------------------------------------------
// TDirectoryListBox

LUMORA_CLASS_IMPL(TDirectoryListBox) {
  PublishControlProperties(c, {"Align", "Anchors", "Color"});
  c.Property("Columns", &TDirectoryListBox::Columns, &TDirectoryListBox::SetColumns).Default(0);
  PublishControlProperties(c, {"Constraints", "Ctl3D"});
  c.Property("Directory", &TDirectoryListBox::Directory, &TDirectoryListBox::SetDirectory).Stored(false);
  c.Property("DirLabel", &TDirectoryListBox::DirLabel, &TDirectoryListBox::SetDirLabel);
  PublishControlProperties(c, {"DragCursor", "DragMode", "Enabled"});
  c.Property("FileList", &TDirectoryListBox::FileList, &TDirectoryListBox::SetFileList);
  PublishControlProperties(c, {"Font", "ImeMode", "ImeName"});
  c.Property("IntegralHeight", &TDirectoryListBox::IntegralHeight, &TDirectoryListBox::SetIntegralHeight).Default(false);
  c.Property("ItemHeight", &TDirectoryListBox::ItemHeight, &TDirectoryListBox::SetItemHeight).Default(16);
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TDirectoryListBox::OnChange, &TDirectoryListBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDrag", "OnEnter",
                               "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove",
                               "OnMouseUp", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDirectoryListBox::TDirectoryListBox(TComponent* owner) : TCustomListBox(owner) {
  FWidth = 145;
  FHeight = 97;
  FDirectory = CurrentFolder();
  Update();
}

void TDirectoryListBox::SetDirectory(const std::string& value) {
  std::error_code ec;
  std::string folder = fs::absolute(value.empty() ? fs::path("/") : fs::path(value), ec).lexically_normal().string();
  if (folder.size() > 1 && folder.back() == '/') folder.pop_back();
  if (folder == FDirectory) return;
  FDirectory = folder;
  Update();
  Changed();
}

void TDirectoryListBox::Changed() {
  if (FDirLabel) FDirLabel->SetCaption(FDirectory);
  if (FFileList) FFileList->SetDirectory(FDirectory);
  if (!Loading(this) && OnChange) OnChange(this);
}

void TDirectoryListBox::SetDirLabel(TLabel* value) {
  if (FDirLabel) FDirLabel->RemoveFreeNotification(this);
  FDirLabel = value;
  if (value) {
    value->FreeNotification(this);
    value->SetCaption(FDirectory);
  }
}

void TDirectoryListBox::SetFileList(TFileListBox* value) {
  if (FFileList) FFileList->RemoveFreeNotification(this);
  FFileList = value;
  if (value) {
    value->FreeNotification(this);
    value->SetDirectory(FDirectory);
  }
}

std::string TDirectoryListBox::GetItemPath(int index) const {
  if (index < 0 || index >= FItems->Count()) return {};
  if (index < FPathItems) {
    fs::path p("/");
    for (int i = 1; i <= index; ++i) p /= FItems->Strings(i);
    return p.string();
  }
  return (fs::path(FDirectory) / FItems->Strings(index)).string();
}

void TDirectoryListBox::Update() {
  FItems->BeginUpdate();
  FItems->Clear();
  // The path from the root, then the sub folders in order of name.
  FItems->Add("/");
  for (const auto& part : fs::path(FDirectory).relative_path()) FItems->Add(part.string());
  FPathItems = FItems->Count();
  std::vector<std::string> subs;
  std::error_code ec;
  for (fs::directory_iterator it(FDirectory, fs::directory_options::skip_permission_denied, ec), end; !ec && it != end;
       it.increment(ec)) {
    std::error_code kindError;
    const std::string name = it->path().filename().string();
    if (it->is_directory(kindError) && !name.empty() && name[0] != '.') subs.push_back(name);
  }
  std::sort(subs.begin(), subs.end(), [](const std::string& a, const std::string& b) { return CompareText(a, b) < 0; });
  for (const auto& s : subs) FItems->Add(s);
  FItems->EndUpdate();
  SetItemIndex(FPathItems - 1);
}

void TDirectoryListBox::FillWidget() {
  TCustomListBox::FillWidget();
  QListWidget* l = List();
  if (!l) return;
  // Each level of the path indented a step further, the sub folders one step below.
  constexpr int kStep = 10;
  const int width = FPathItems * kStep + 16;
  l->setIconSize(QSize(width, 16));
  for (int i = 0; i < l->count(); ++i) {
    const bool path = i < FPathItems;
    const int indent = (path ? i : FPathItems) * kStep;
    l->item(i)->setIcon(QIcon(FileGlyph(path ? TFileGlyph::OpenFolder : TFileGlyph::ClosedFolder, indent, width)));
  }
}

void TDirectoryListBox::DblClick() {
  const std::string path = GetItemPath(ItemIndex());
  if (!path.empty()) SetDirectory(path);
  TCustomListBox::DblClick();
}

void TDirectoryListBox::Loaded() {
  TCustomListBox::Loaded();
  Update();
  Changed();
}

void TDirectoryListBox::Notification(TComponent* component, TOperation operation) {
  TCustomListBox::Notification(component, operation);
  if (operation != opRemove) return;
  if (component == FDirLabel) FDirLabel = nullptr;
  if (component == FFileList) FFileList = nullptr;
}

// ---------------------------------------------------------------------------------------
// TDriveComboBox

LUMORA_CLASS_IMPL(TDriveComboBox) {
  PublishControlProperties(c, {"Anchors", "Color", "Constraints", "Ctl3D"});
  c.Property("DirList", &TDriveComboBox::DirList, &TDriveComboBox::SetDirList);
  PublishControlProperties(c, {"DragMode", "DragCursor"});
  c.Property("Drive", &TDriveComboBox::Drive, &TDriveComboBox::SetDrive).Stored(false);
  PublishControlProperties(c, {"Enabled", "Font", "ImeMode", "ImeName", "ParentColor", "ParentCtl3D", "ParentFont",
                               "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop"});
  c.Property("TextCase", &TDriveComboBox::TextCase, &TDriveComboBox::SetTextCase).Default(tcLowerCase);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnChange", &TDriveComboBox::OnChange, &TDriveComboBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDropDown", &TDriveComboBox::OnDropDown, &TDriveComboBox::OnDropDown);
  PublishControlProperties(c, {"OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDriveComboBox::TDriveComboBox(TComponent* owner) : TCustomComboBox(owner) {
  FWidth = 145;
  FStyle = csOwnerDrawFixed;
  FillDrives();
}

void TDriveComboBox::FillDrives() {
  FItems->BeginUpdate();
  FItems->Clear();
  FItems->Add("/");
  FItems->EndUpdate();
  SetItemIndex(0);
}

void TDriveComboBox::SetDrive(char value) {
  // The root is the only drive.
  if (value == '/') FDrive = value;
}

void TDriveComboBox::SetDirList(TDirectoryListBox* value) {
  if (FDirList) FDirList->RemoveFreeNotification(this);
  FDirList = value;
  if (value) value->FreeNotification(this);
}

void TDriveComboBox::SetTextCase(TTextCase value) {
  FTextCase = value;
  UpdateWidgetText();
}

void TDriveComboBox::UpdateWidgetText() {
  TCustomComboBox::UpdateWidgetText();
  if (QComboBox* box = Combo()) {
    box->setIconSize(QSize(16, 16));
    for (int i = 0; i < box->count(); ++i) box->setItemIcon(i, QIcon(FileGlyph(TFileGlyph::Drive, 0, 16)));
  }
}

void TDriveComboBox::Notification(TComponent* component, TOperation operation) {
  TCustomComboBox::Notification(component, operation);
  if (operation == opRemove && component == FDirList) FDirList = nullptr;
}

// ---------------------------------------------------------------------------------------
// TFilterComboBox

LUMORA_CLASS_IMPL(TFilterComboBox) {
  PublishControlProperties(c, {"Anchors", "Color", "Constraints", "Ctl3D", "DragMode", "DragCursor", "Enabled"});
  c.Property("FileList", &TFilterComboBox::FileList, &TFilterComboBox::SetFileList);
  c.Property("Filter", &TFilterComboBox::Filter, &TFilterComboBox::SetFilter);
  PublishControlProperties(c, {"Font", "ImeName", "ImeMode", "ParentColor", "ParentCtl3D", "ParentFont",
                               "ParentShowHint", "PopupMenu", "ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TFilterComboBox::OnChange, &TFilterComboBox::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDropDown", &TFilterComboBox::OnDropDown, &TFilterComboBox::OnDropDown);
  PublishControlProperties(c, {"OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TFilterComboBox::TFilterComboBox(TComponent* owner) : TCustomComboBox(owner) {
  FWidth = 145;
  FStyle = csDropDownList;
  FillFilters();
}

void TFilterComboBox::SetFilter(const std::string& value) {
  FFilter = value;
  FillFilters();
}

void TFilterComboBox::FillFilters() {
  FMasks.clear();
  FItems->BeginUpdate();
  FItems->Clear();
  std::vector<std::string> parts;
  std::size_t start = 0;
  while (start <= FFilter.size()) {
    std::size_t end = FFilter.find('|', start);
    if (end == std::string::npos) end = FFilter.size();
    parts.push_back(FFilter.substr(start, end - start));
    start = end + 1;
  }
  for (std::size_t i = 0; i + 1 < parts.size(); i += 2) {
    FItems->Add(parts[i]);
    FMasks.push_back(parts[i + 1]);
  }
  FItems->EndUpdate();
  SetItemIndex(FItems->Count() > 0 ? 0 : -1);
}

std::string TFilterComboBox::Mask() const {
  const int index = ItemIndex();
  return index >= 0 && index < static_cast<int>(FMasks.size()) ? FMasks[index] : std::string("*.*");
}

void TFilterComboBox::SetFileList(TFileListBox* value) {
  if (FFileList) FFileList->RemoveFreeNotification(this);
  FFileList = value;
  if (value) {
    value->FreeNotification(this);
    if (!Loading(this)) value->SetMask(Mask());
  }
}

void TFilterComboBox::Change() {
  if (FFileList) FFileList->SetMask(Mask());
  TCustomComboBox::Change();
}

void TFilterComboBox::Loaded() {
  TCustomComboBox::Loaded();
  if (FFileList) FFileList->SetMask(Mask());
}

void TFilterComboBox::Notification(TComponent* component, TOperation operation) {
  TCustomComboBox::Notification(component, operation);
  if (operation == opRemove && component == FFileList) FFileList = nullptr;
}
