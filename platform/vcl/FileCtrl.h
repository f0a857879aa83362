#pragma once
// The file controls: a list of the files of a folder, a list of a folder's path and sub
// folders, a combo box of drives, and a combo box of file filters. Linked together (the
// drive box to a folder list, the folder list to a file list and a label, the filter box
// to a file list) they browse the file system as one. On this system the only drive is
// the root of the file system.

#include "platform/rtti/Classes.h"
#include "platform/vcl/StdCtrls.h"

#include <QPixmap>

#include <string>

class TDirectoryListBox;
class TFileListBox;

LUMORA_ENUM(TFileAttr, ftReadOnly, ftHidden, ftSystem, ftVolumeID, ftDirectory, ftArchive, ftNormal)
LUMORA_SET(TFileType, TFileAttr)
LUMORA_ENUM(TTextCase, tcLowerCase, tcUpperCase)

// Whether a file name matches a mask of the system's file dialogs ("*.txt", "a?c.*";
// several separated by ';'), ignoring case; "*.*" matches every name.
bool MatchesFileMask(const std::string& name, const std::string& masks);

// The glyphs the file controls and outlines show, drawn small in the classic colours,
// `indent` pixels from the left of an image `width` wide.
enum class TFileGlyph { OpenFolder, ClosedFolder, File, Drive };
QPixmap FileGlyph(TFileGlyph kind, int indent, int width);

class TFileListBox : public TCustomListBox {
  LUMORA_CLASS(TFileListBox, TCustomListBox)
public:
  explicit TFileListBox(TComponent* owner);
  // The folder listed (the current folder at first).
  const std::string& Directory() const { return FDirectory; }
  void SetDirectory(const std::string& value);
  // The selected file with its folder, or ''.
  std::string FileName() const;
  void SetFileName(const std::string& value);
  TEdit* FileEdit() const { return FFileEdit; }
  void SetFileEdit(TEdit* value);
  TFileType FileType() const { return FFileType; }
  void SetFileType(TFileType value);
  const std::string& Mask() const { return FMask; }
  void SetMask(const std::string& value);
  bool ShowGlyphs() const { return FShowGlyphs; }
  void SetShowGlyphs(bool value);
  // Reads the folder again.
  void Update();

  TNotifyEvent OnChange;

  void Loaded() override;
  void Notification(TComponent* component, TOperation operation) override;
  void Click() override;

protected:
  void FillWidget() override;

private:
  std::string FDirectory;
  TEdit* FFileEdit = nullptr;
  TFileType FFileType = TFileType{ftNormal};
  std::string FMask = "*.*";
  bool FShowGlyphs = false;
};

class TDirectoryListBox : public TCustomListBox {
  LUMORA_CLASS(TDirectoryListBox, TCustomListBox)
public:
  explicit TDirectoryListBox(TComponent* owner);
  const std::string& Directory() const { return FDirectory; }
  void SetDirectory(const std::string& value);
  TLabel* DirLabel() const { return FDirLabel; }
  void SetDirLabel(TLabel* value);
  TFileListBox* FileList() const { return FFileList; }
  void SetFileList(TFileListBox* value);
  // The folder of item `index`: the path up to it, or a sub folder of the current one.
  std::string GetItemPath(int index) const;
  // Reads the folder again.
  void Update();

  TNotifyEvent OnChange;

  void Loaded() override;
  void Notification(TComponent* component, TOperation operation) override;
  void DblClick() override;

protected:
  void FillWidget() override;

private:
  void Changed();
  std::string FDirectory;
  TLabel* FDirLabel = nullptr;
  TFileListBox* FFileList = nullptr;
  int FPathItems = 0;  // the items that are the path, root first; the sub folders follow
};

class TDriveComboBox : public TCustomComboBox {
  LUMORA_CLASS(TDriveComboBox, TCustomComboBox)
public:
  explicit TDriveComboBox(TComponent* owner);
  char Drive() const { return FDrive; }
  void SetDrive(char value);
  TDirectoryListBox* DirList() const { return FDirList; }
  void SetDirList(TDirectoryListBox* value);
  TTextCase TextCase() const { return FTextCase; }
  void SetTextCase(TTextCase value);

  void Notification(TComponent* component, TOperation operation) override;
  void UpdateWidgetText() override;

private:
  void FillDrives();
  char FDrive = '/';
  TDirectoryListBox* FDirList = nullptr;
  TTextCase FTextCase = tcLowerCase;
};

class TFilterComboBox : public TCustomComboBox {
  LUMORA_CLASS(TFilterComboBox, TCustomComboBox)
public:
  explicit TFilterComboBox(TComponent* owner);
  // "Text files (*.txt)|*.txt|All files (*.*)|*.*": descriptions and masks by pairs.
  const std::string& Filter() const { return FFilter; }
  void SetFilter(const std::string& value);
  // The mask of the chosen description.
  std::string Mask() const;
  TFileListBox* FileList() const { return FFileList; }
  void SetFileList(TFileListBox* value);

  void Notification(TComponent* component, TOperation operation) override;
  void Loaded() override;

protected:
  void Change() override;

private:
  void FillFilters();
  std::string FFilter = "All files (*.*)|*.*";
  std::vector<std::string> FMasks;
  TFileListBox* FFileList = nullptr;
};
