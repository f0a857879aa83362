#pragma once
// The media player: a row of buttons (play, pause, stop, next, previous, step, back,
// record, eject) that drive a media device. No device is opened on this system: the
// buttons show, greyed while the program runs, in their colours while designing.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"

// Scoped: the up-down control's buttons are named btNext and btPrev too.
enum class TMPBtnType { btPlay, btPause, btStop, btNext, btPrev, btStep, btBack, btRecord, btEject };
LUMORA_ENUM_INFO(TMPBtnType, btPlay, btPause, btStop, btNext, btPrev, btStep, btBack, btRecord, btEject)
LUMORA_SET(TButtonSet, TMPBtnType)
LUMORA_ENUM(TMPDeviceTypes, dtAutoSelect, dtAVIVideo, dtCDAudio, dtDAT, dtDigitalVideo, dtMMMovie, dtOther,
            dtOverlay, dtScanner, dtSequencer, dtVCR, dtVideodisc, dtWaveAudio)
LUMORA_EVENT(EMPNotify, void(TObject* Sender, TMPBtnType Button, bool& DoDefault))
LUMORA_EVENT(EMPPostNotify, void(TObject* Sender, TMPBtnType Button))

class TMediaPlayer : public TCustomControl {
  LUMORA_CLASS(TMediaPlayer, TCustomControl)
public:
  explicit TMediaPlayer(TComponent* owner);

  TButtonSet ColoredButtons() const { return FColoredButtons; }
  void SetColoredButtons(TButtonSet value);
  TButtonSet EnabledButtons() const { return FEnabledButtons; }
  void SetEnabledButtons(TButtonSet value);
  TButtonSet VisibleButtons() const { return FVisibleButtons; }
  void SetVisibleButtons(TButtonSet value);
  bool AutoEnable() const { return FAutoEnable; }
  void SetAutoEnable(bool value);
  bool AutoOpen() const { return FAutoOpen; }
  void SetAutoOpen(bool value) { FAutoOpen = value; }
  bool AutoRewind() const { return FAutoRewind; }
  void SetAutoRewind(bool value) { FAutoRewind = value; }
  TMPDeviceTypes DeviceType() const { return FDeviceType; }
  void SetDeviceType(TMPDeviceTypes value) { FDeviceType = value; }
  TWinControl* Display() const { return FDisplay; }
  void SetDisplay(TWinControl* value);
  const std::string& FileName() const { return FFileName; }
  void SetFileName(const std::string& value) { FFileName = value; }
  bool Shareable() const { return FShareable; }
  void SetShareable(bool value) { FShareable = value; }
  // Whether a button shows enabled: while designing, as its EnabledButtons say; while
  // running, only with an open device (there is none here).
  bool ButtonEnabled(TMPBtnType button) const;
  // The button under a point, or -1.
  int ButtonAt(int x) const;

  EMPNotify OnClick;
  TNotifyEvent OnNotify;
  EMPPostNotify OnPostClick;

  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  void Notification(TComponent* component, TOperation operation) override;

private:
  std::vector<TMPBtnType> Shown() const;
  TButtonSet FColoredButtons;
  TButtonSet FEnabledButtons;
  TButtonSet FVisibleButtons;
  bool FAutoEnable = true;
  bool FAutoOpen = false;
  bool FAutoRewind = true;
  TMPDeviceTypes FDeviceType = dtAutoSelect;
  TWinControl* FDisplay = nullptr;
  std::string FFileName;
  bool FShareable = false;
  int FPressed = -1;
};
