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
#include <QTimer>

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

namespace {
constexpr int FramesPerSecond = 15;
constexpr int StandInFrames = 16;
}  // namespace

TAnimate::TAnimate(TComponent* owner) : TWinControl(owner) {
  FWidth = 100;
  FHeight = 80;
  FAutoSize = true;
  FColor = clBtnFace;
}

TAnimate::~TAnimate() {
  FClock.reset();
  DestroyWidget();
}

void TAnimate::CreateWidget() { AdoptWidget(new TPaintedWidget(this, false)); }

void TAnimate::SetActive(bool value) {
  if (FActive == value) return;
  FActive = value;
  if (!Loading(this)) {
    if (value) StartClock();
    if (!value && FClock) FClock->stop();
    if (value && OnStart) OnStart(this);
    if (!value && OnStop) OnStop(this);
  }
  Invalidate();
}

int TAnimate::LastFrame() const {
  const int first = std::max(FStartFrame, 1);
  return FStopFrame > 0 ? std::max(FStopFrame, first) : std::max(StandInFrames, first);
}

void TAnimate::StartClock() {
  FFrame = std::max(FStartFrame, 1);
  FPass = 0;
  if (!FClock) {
    FClock = std::make_unique<QTimer>();
    FClock->setInterval(1000 / FramesPerSecond);
    QObject::connect(FClock.get(), &QTimer::timeout, [this] { TMessageLoop::Instance().Guarded([this] { NextFrame(); }); });
  }
  FClock->start();
}

void TAnimate::NextFrame() {
  if (!FActive) return;
  if (FFrame < LastFrame()) {
    ++FFrame;
  } else if (FRepetitions > 0 && ++FPass >= FRepetitions) {
    SetActive(false);
    return;
  } else {
    FFrame = std::max(FStartFrame, 1);
  }
  Invalidate();
}

QRect TAnimate::MarkRect() const {
  const int first = std::max(FStartFrame, 1);
  const int steps = LastFrame() - first + 1;
  const int inner = std::max(FWidth - 4, 1);
  const int width = std::max(inner / steps, 4);
  const int x = 2 + (inner - width) * (FFrame - first) / std::max(steps - 1, 1);
  return QRect(x, std::max(FHeight - 8, 2), width, 5);
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

void TAnimate::Loaded() {
  TWinControl::Loaded();
  // An animation that was active in the stream plays once the form is read.
  if (FActive) StartClock();
}

void TAnimate::Paint(QPainter& painter) {
  if (!FTransparent) painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  DrawEtchedRect(painter, QRect(0, 0, FWidth, FHeight));
  if (FActive) {
    QRect mark = MarkRect();
    painter.fillRect(mark, Sys(clBtnFace));
    Frame3D(painter, mark, Sys(clBtnHighlight), Sys(clBtnShadow));
  }
  if (Designing()) DrawDesignFrame(painter, FWidth, FHeight);
}
