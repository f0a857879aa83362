// What the common controls share: an image list serving several of them.
#include "platform/vcl/ComCtrls.h"

#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/StdCtrls.h"
#include "platform/vcl/VclClasses.h"
#include "tests/platform/vcl/ComCtrlsTestUtil.h"
#include "tests/platform/vcl/VclTestUtil.h"
#include "tests/platform/vcl/comctrls/ComCtrlsFixture.h"

#include <gtest/gtest.h>

using namespace lumora::test;

TEST_F(ComCtrlsTest, AnImageListServingInSeveralRolesIsForgottenInAllWhenDestroyed) {
  auto* images = new TImageList(form);
  QImage red(16, 16, QImage::Format_ARGB32);
  red.fill(Qt::red);
  images->Add(red);
  auto* lv = new TListView(form);
  lv->SetParent(form);
  lv->SetLargeImages(images);
  lv->SetSmallImages(images);
  lv->SetStateImages(images);
  lv->Items()->Add()->SetCaption("a");
  auto* tree = new TTreeView(form);
  tree->SetParent(form);
  tree->SetImages(images);
  tree->SetStateImages(images);
  tree->Items()->Add(nullptr, "node");
  auto* bar = new TToolBar(form);
  bar->SetParent(form);
  bar->SetImages(images);
  bar->SetHotImages(images);
  bar->SetDisabledImages(images);
  ShowForm();
  delete images;
  EXPECT_EQ(lv->LargeImages(), nullptr);
  EXPECT_EQ(lv->SmallImages(), nullptr);
  EXPECT_EQ(lv->StateImages(), nullptr);
  EXPECT_EQ(tree->Images(), nullptr);
  EXPECT_EQ(tree->StateImages(), nullptr);
  EXPECT_EQ(bar->Images(), nullptr);
  EXPECT_EQ(bar->HotImages(), nullptr);
  EXPECT_EQ(bar->DisabledImages(), nullptr);
  // They still draw, without the pictures.
  EXPECT_FALSE(Grab(lv->Widget()).isNull());
  EXPECT_FALSE(Grab(tree->Widget()).isNull());
}
