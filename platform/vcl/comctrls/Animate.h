#pragma once
// Animation areas.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <memory>
#include <string>

class QTimer;

LUMORA_ENUM(TCommonAVI, aviNone, aviFindFolder, aviFindFile, aviFindComputer, aviCopyFiles, aviCopyFile,
            aviRecycleFile, aviEmptyRecycle, aviDeleteFile)

// An animation area. The clips of the platform's animation control (CommonAVI, and AVI
// files) are not played here; the area shows where the clip plays: an etched frame,
// filled with Color unless Transparent. While Active a raised mark walks along its
// bottom edge, one step a frame from StartFrame to StopFrame at 15 frames a second (a
// clip of 16 frames stands in for the unknown clip when StopFrame is 0), for Repetitions
// passes (0: until stopped); then Active goes False and OnStop follows.
class TAnimate : public TWinControl {
  LUMORA_CLASS(TAnimate, TWinControl)
public:
  explicit TAnimate(TComponent* owner);
  ~TAnimate() override;
  bool Active() const { return FActive; }
  void SetActive(bool value);
  bool Center() const { return FCenter; }
  void SetCenter(bool value) { FCenter = value; }
  TCommonAVI CommonAVI() const { return FCommonAVI; }
  void SetCommonAVI(TCommonAVI value);
  const std::string& FileName() const { return FFileName; }
  void SetFileName(const std::string& value);
  bool Open() const { return FOpen; }
  void SetOpen(bool value);
  int Repetitions() const { return FRepetitions; }
  void SetRepetitions(int value) { FRepetitions = value; }
  int StartFrame() const { return FStartFrame; }
  void SetStartFrame(int value) { FStartFrame = value; }
  int StopFrame() const { return FStopFrame; }
  void SetStopFrame(int value) { FStopFrame = value; }
  bool Timers() const { return FTimers; }
  void SetTimers(bool value) { FTimers = value; }
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  void Play(int fromFrame, int toFrame, int count);
  void Stop();
  // The frame shown (StartFrame when playing starts).
  int Frame() const { return FFrame; }
  // The frames of a pass: StartFrame to StopFrame, or to the stand-in clip's end.
  int LastFrame() const;

  TNotifyEvent OnClose;
  TNotifyEvent OnOpen;
  TNotifyEvent OnStart;
  TNotifyEvent OnStop;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void Loaded() override;

private:
  void StartClock();
  void NextFrame();
  // Where the mark stands for the frame shown, in the client area.
  QRect MarkRect() const;

  std::unique_ptr<QTimer> FClock;
  int FFrame = 1;
  int FPass = 0;
  bool FActive = false;
  bool FCenter = true;
  TCommonAVI FCommonAVI = aviNone;
  std::string FFileName;
  bool FOpen = false;
  int FRepetitions = 0;
  int FStartFrame = 1;
  int FStopFrame = 0;
  bool FTimers = false;
  bool FTransparent = true;
};
