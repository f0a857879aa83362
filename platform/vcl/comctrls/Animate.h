#pragma once
// Animation areas.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <string>

LUMORA_ENUM(TCommonAVI, aviNone, aviFindFolder, aviFindFile, aviFindComputer, aviCopyFiles, aviCopyFile,
            aviRecycleFile, aviEmptyRecycle, aviDeleteFile)

// An animation area. The clips of the platform's animation control are not available
// here: it shows its frame (and, when active, a moving mark) where the clip would play.
class TAnimate : public TWinControl {
  LUMORA_CLASS(TAnimate, TWinControl)
public:
  explicit TAnimate(TComponent* owner);
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

  TNotifyEvent OnClose;
  TNotifyEvent OnOpen;
  TNotifyEvent OnStart;
  TNotifyEvent OnStop;

  void Paint(QPainter& painter) override;
  void CreateWidget() override;
  void Loaded() override;

private:
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
