// The file controls linked together browse a real folder: files listed by mask, folders
// entered by a double click, filters chosen from their box.
#include "platform/vcl/FileCtrl.h"

#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"
#include "tests/platform/vcl/FormFixture.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/support/TempDir.h"

#include <QApplication>
#include <QComboBox>
#include <QListWidget>
#include <QTest>

#include <filesystem>
#include <gtest/gtest.h>

namespace {

class FileCtrlTest : public lumora::test::TFormFixture {
protected:
  void SetUp() override {
    TFormFixture::SetUp();
    std::filesystem::create_directory(dir.Path() / "Forms");
    std::filesystem::create_directory(dir.Path() / "archive");
    lumora::test::WriteBytes(dir / "Main.dfm", "object");
    lumora::test::WriteBytes(dir / "notes.txt", "text");
    lumora::test::WriteBytes(dir / "About.DFM", "object");
    lumora::test::WriteBytes(dir / ".hidden.dfm", "object");
    lumora::test::WriteBytes((dir.Path() / "Forms" / "Login.dfm").string(), "object");
  }
  static std::vector<std::string> Shown(TWinControl* list) {
    std::vector<std::string> items;
    auto* widget = qobject_cast<QListWidget*>(list->Widget());
    for (int i = 0; widget && i < widget->count(); ++i) items.push_back(widget->item(i)->text().toStdString());
    return items;
  }
  static void ClickItem(TWinControl* list, int index, bool twice = false) {
    auto* widget = qobject_cast<QListWidget*>(list->Widget());
    const QPoint at = widget->visualItemRect(widget->item(index)).center();
    // A double click is a click, then a second press the system calls a double click.
    QTest::mouseClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, at);
    if (twice) QTest::mouseDClick(widget->viewport(), Qt::LeftButton, Qt::NoModifier, at);
  }
  lumora::test::TTempDir dir;
};

}  // namespace

TEST_F(FileCtrlTest, AFileListShowsTheFilesItsMaskMatches) {
  auto* files = Make<TFileListBox>("FileListBox1", form, 8, 8, 150, 120);
  files->SetMask("*.dfm");
  files->SetDirectory(dir.Path().string());
  ShowForm();
  EXPECT_EQ(Shown(files), (std::vector<std::string>{"About.DFM", "Main.dfm"}));
  // Hidden files and folders come only when asked for.
  files->SetFileType(TFileType{ftNormal, ftDirectory, ftHidden});
  const std::vector<std::string> all = Shown(files);
  EXPECT_NE(std::find(all.begin(), all.end(), ".hidden.dfm"), all.end());
  EXPECT_NE(std::find(all.begin(), all.end(), "[Forms]"), all.end());
  EXPECT_EQ(std::find(all.begin(), all.end(), "notes.txt"), all.end());
  files->SetMask("*.txt;*.dfm");
  files->SetFileType(TFileType{ftNormal});
  EXPECT_EQ(Shown(files).size(), 3u);
}

TEST_F(FileCtrlTest, ClickingAFileNamesItInItsEditAndGivesItsPath) {
  auto* edit = Make<TEdit>("Edit1", form, 8, 140, 150, 21);
  auto* files = Make<TFileListBox>("FileListBox1", form, 8, 8, 150, 120);
  files->SetMask("*.dfm");
  files->SetFileEdit(edit);
  EXPECT_EQ(edit->Text(), "*.dfm");
  files->SetDirectory(dir.Path().string());
  ShowForm();
  ClickItem(files, 1);
  EXPECT_EQ(edit->Text(), "Main.dfm");
  EXPECT_EQ(files->FileName(), dir / "Main.dfm");
}

TEST_F(FileCtrlTest, ADoubleClickOnAFolderEntersItAndTheLinkedControlsFollow) {
  auto* label = Make<TLabel>(form, 8, 200, 200, 13);
  auto* files = Make<TFileListBox>("FileListBox1", form, 170, 8, 150, 120);
  auto* folders = Make<TDirectoryListBox>("DirectoryListBox1", form, 8, 8, 150, 180);
  folders->SetDirLabel(label);
  folders->SetFileList(files);
  int changes = 0;
  folders->OnChange = [&](TObject*) { ++changes; };
  folders->SetDirectory(dir.Path().string());
  ShowForm();
  EXPECT_EQ(label->Caption(), dir.Path().string());
  EXPECT_EQ(files->Directory(), dir.Path().string());
  // The path from the root, then the sub folders by name, case aside.
  const std::vector<std::string> shown = Shown(folders);
  ASSERT_GE(shown.size(), 3u);
  EXPECT_EQ(shown[shown.size() - 2], "archive");
  EXPECT_EQ(shown.back(), "Forms");
  ClickItem(folders, static_cast<int>(shown.size()) - 1, true);
  const std::string forms = (dir.Path() / "Forms").string();
  EXPECT_EQ(folders->Directory(), forms);
  EXPECT_EQ(label->Caption(), forms);
  EXPECT_EQ(Shown(files), (std::vector<std::string>{"Login.dfm"}));
  EXPECT_GE(changes, 2);
  // Back up to the folder above through its line in the path.
  const int parent = static_cast<int>(Shown(folders).size()) - 2;
  ClickItem(folders, parent, true);
  EXPECT_EQ(folders->Directory(), dir.Path().string());
}

TEST_F(FileCtrlTest, AFilterChosenInItsBoxMasksTheFileList) {
  auto* files = Make<TFileListBox>("FileListBox1", form, 8, 8, 150, 120);
  files->SetDirectory(dir.Path().string());
  auto* filter = Make<TFilterComboBox>("FilterComboBox1", form, 8, 140, 150, 21);
  filter->SetFilter("Forms (*.dfm)|*.dfm|Text (*.txt)|*.txt|All files (*.*)|*.*");
  filter->SetFileList(files);
  ShowForm();
  auto* combo = qobject_cast<QComboBox*>(filter->Widget());
  ASSERT_NE(combo, nullptr);
  ASSERT_EQ(combo->count(), 3);
  EXPECT_EQ(combo->itemText(0).toStdString(), "Forms (*.dfm)");
  filter->SetFocus();
  QTest::keyClick(combo, Qt::Key_Down);
  EXPECT_EQ(filter->Mask(), "*.txt");
  EXPECT_EQ(Shown(files), (std::vector<std::string>{"notes.txt"}));
}

TEST_F(FileCtrlTest, TheDriveBoxOffersTheRootAndLeadsItsFolderList) {
  auto* folders = Make<TDirectoryListBox>("DirectoryListBox1", form, 8, 8, 150, 180);
  folders->SetDirectory(dir.Path().string());
  auto* drives = Make<TDriveComboBox>("DriveComboBox1", form, 8, 200, 150, 21);
  drives->SetDirList(folders);
  ShowForm();
  auto* combo = qobject_cast<QComboBox*>(drives->Widget());
  ASSERT_NE(combo, nullptr);
  ASSERT_GE(combo->count(), 1);
  EXPECT_NE(combo->itemText(0).indexOf('/'), -1) << combo->itemText(0).toStdString();
  EXPECT_EQ(Shown(folders).front(), "/");
}

TEST_F(FileCtrlTest, AMissingFolderListsNothingAndRaisesNoError) {
  auto* files = Make<TFileListBox>("FileListBox1", form, 8, 8, 150, 120);
  files->SetDirectory(dir / "gone");
  ShowForm();
  EXPECT_TRUE(Shown(files).empty());
}
