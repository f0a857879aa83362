#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/comctrls/ComCtrlsShared.h"

#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ActnList.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/ControlWidgets.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "platform/vcl/Publish.h"
#include "platform/rtti/Writer.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// TAnimate

LUMORA_CLASS_IMPL(TAnimate) {
  PublishControlProperties(c, {"Align"});
  c.Property("Active", &TAnimate::Active, &TAnimate::SetActive).NoDefault();
  PublishControlProperties(c, {"Anchors", "AutoSize", "BorderWidth"});
  c.Property("Center", &TAnimate::Center, &TAnimate::SetCenter).Default(true);
  PublishControlProperties(c, {"Color"});
  c.Property("CommonAVI", &TAnimate::CommonAVI, &TAnimate::SetCommonAVI).Default(aviNone);
  PublishControlProperties(c, {"Constraints"});
  c.Property("FileName", &TAnimate::FileName, &TAnimate::SetFileName);
  c.Property("Open", &TAnimate::Open, &TAnimate::SetOpen).Default(false);
  PublishControlProperties(c, {"ParentColor", "ParentShowHint"});
  c.Property("Repetitions", &TAnimate::Repetitions, &TAnimate::SetRepetitions).Default(0);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("StartFrame", &TAnimate::StartFrame, &TAnimate::SetStartFrame).Default(1);
  c.Property("StopFrame", &TAnimate::StopFrame, &TAnimate::SetStopFrame).Default(0);
  c.Property("Timers", &TAnimate::Timers, &TAnimate::SetTimers).Default(false);
  c.Property("Transparent", &TAnimate::Transparent, &TAnimate::SetTransparent).Default(true);
  PublishControlProperties(c, {"Visible"});
  c.Property("OnOpen", &TAnimate::OnOpen, &TAnimate::OnOpen);
  c.Property("OnClose", &TAnimate::OnClose, &TAnimate::OnClose);
  c.Property("OnStart", &TAnimate::OnStart, &TAnimate::OnStart);
  c.Property("OnStop", &TAnimate::OnStop, &TAnimate::OnStop);
  c.Property("AutoSize").Default(true);
}

TAnimate::TAnimate(TComponent* owner) : TWinControl(owner) {
  FWidth = 100;
  FHeight = 80;
  FAutoSize = true;
  FColor = clBtnFace;
}

void TAnimate::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TAnimate::SetActive(bool value) {
  if (FActive == value) return;
  FActive = value;
  if (!Loading(this)) {
    if (value && OnStart) OnStart(this);
    if (!value && OnStop) OnStop(this);
  }
  Invalidate();
}

void TAnimate::SetCommonAVI(TCommonAVI value) {
  FCommonAVI = value;
  if (value != aviNone) FFileName.clear();
  Invalidate();
}

void TAnimate::SetFileName(const std::string& value) {
  FFileName = value;
  if (!value.empty()) FCommonAVI = aviNone;
  Invalidate();
}

void TAnimate::SetOpen(bool value) {
  if (FOpen == value) return;
  FOpen = value;
  if (!Loading(this)) {
    if (value && OnOpen) OnOpen(this);
    if (!value && OnClose) OnClose(this);
  }
}

void TAnimate::SetTransparent(bool value) {
  FTransparent = value;
  Invalidate();
}

void TAnimate::Play(int fromFrame, int toFrame, int count) {
  FStartFrame = fromFrame;
  FStopFrame = toFrame;
  FRepetitions = count;
  SetActive(true);
}

void TAnimate::Stop() { SetActive(false); }

void TAnimate::Loaded() { TWinControl::Loaded(); }

void TAnimate::Paint(QPainter& painter) {
  if (!FTransparent) painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  if (Designing()) DrawFocusRect(painter, QRect(0, 0, FWidth, FHeight));
}
