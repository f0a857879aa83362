// Image lists: images of one size, added, deleted and drawn by index.
#include "platform/vcl/ImgList.h"

#include "platform/rtti/Writer.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

QImage Filled(int width, int height, QColor color) {
  QImage image(width, height, QImage::Format_ARGB32);
  image.fill(color);
  return image;
}

TEST(ImgList, ImagesTakeTheSizeOfTheList) {
  TImageList list(nullptr);
  EXPECT_EQ(list.Width(), 16);
  EXPECT_EQ(list.Height(), 16);
  int changes = 0;
  list.OnChange = [&](TObject*) { ++changes; };
  EXPECT_EQ(list.Add(Filled(16, 16, Qt::red)), 0);
  EXPECT_EQ(list.Add(Filled(32, 8, Qt::blue)), 1);
  EXPECT_EQ(list.Count(), 2);
  EXPECT_EQ(list.Image(1).size(), QSize(16, 16));
  EXPECT_EQ(list.Image(1).pixelColor(5, 5), QColor(Qt::blue));
  EXPECT_TRUE(list.Image(2).isNull());
  EXPECT_TRUE(list.Image(-1).isNull());
  EXPECT_EQ(changes, 2);
  // A new size empties the list: its images no longer fit.
  list.SetWidth(24);
  EXPECT_EQ(list.Count(), 0);
  EXPECT_EQ(changes, 3);
  list.SetHeight(0);
  EXPECT_EQ(list.Height(), 16);
}

TEST(ImgList, DeletingOutsideTheListIsAnError) {
  TImageList list(nullptr);
  list.Add(Filled(16, 16, Qt::red));
  list.Add(Filled(16, 16, Qt::green));
  list.Delete(0);
  ASSERT_EQ(list.Count(), 1);
  EXPECT_EQ(list.Image(0).pixelColor(0, 0), QColor(Qt::green));
  try {
    list.Delete(1);
    FAIL() << "no error";
  } catch (const EInvalidOperation& e) {
    EXPECT_EQ(e.Message(), "Invalid ImageList Index");
  }
  list.Clear();
  EXPECT_EQ(list.Count(), 0);
}

TEST(ImgList, ImagesAreDrawnWhereAskedAndGreyedWhenDisabled) {
  TImageList list(nullptr);
  list.Add(Filled(16, 16, Qt::red));
  QImage canvas = Filled(40, 20, Qt::white);
  {
    QPainter p(&canvas);
    list.Draw(p, 2, 2, 0);
    list.Draw(p, 20, 2, 0, false);
    list.Draw(p, 0, 0, 5);  // outside the list: nothing
  }
  EXPECT_EQ(canvas.pixelColor(0, 0), QColor(Qt::white));
  EXPECT_EQ(canvas.pixelColor(2, 2), QColor(Qt::red));
  EXPECT_EQ(canvas.pixelColor(17, 17), QColor(Qt::red));
  EXPECT_EQ(canvas.pixelColor(18, 18), QColor(Qt::white));
  // Disabled: the shape in the shadow colour, its highlight one pixel lower right.
  EXPECT_EQ(canvas.pixelColor(20, 2), ColorToQColor(clBtnShadow));
  EXPECT_EQ(canvas.pixelColor(36, 18), ColorToQColor(clBtnHighlight));
}

TEST(ImgList, AssignCopiesImagesAndSettings) {
  TImageList a(nullptr);
  a.SetWidth(8);
  a.SetHeight(8);
  a.SetBkColor(clRed);
  a.Add(Filled(8, 8, Qt::blue));
  TImageList b(nullptr);
  b.Assign(&a);
  EXPECT_EQ(b.Width(), 8);
  EXPECT_EQ(b.BkColor(), clRed);
  ASSERT_EQ(b.Count(), 1);
  EXPECT_EQ(b.Image(0), a.Image(0));
}

TEST(ImgList, ImagesAddedInCodeComeBackThroughTheStream) {
  RegisterImgListClasses();
  TForm form(nullptr);
  form.SetName("Form1");
  auto* list = new TImageList(&form);
  list->SetName("ImageList1");
  list->Add(Filled(16, 16, Qt::red));
  list->Add(Filled(16, 16, Qt::blue));
  const std::string stream = WriteComponentToBinary(&form);
  TForm back(nullptr);
  ReadComponentFromBinary(&back, stream);
  auto* read = dynamic_cast<TImageList*>(back.FindComponent("ImageList1"));
  ASSERT_NE(read, nullptr);
  ASSERT_EQ(read->Count(), 2);
  EXPECT_EQ(read->Image(0).pixelColor(8, 8), QColor(Qt::red));
  EXPECT_EQ(read->Image(1).pixelColor(8, 8), QColor(Qt::blue));
  // Read and written again unchanged, the data stays byte for byte.
  EXPECT_EQ(WriteComponentToBinary(&back), stream);
}

}  // namespace
