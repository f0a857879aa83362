#pragma once
// A gauge: how far Progress stands between MinValue and MaxValue, drawn as a bar across
// or up, a pie, a needle, or only the percentage; the percentage is written over it.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"

LUMORA_ENUM(TGaugeKind, gkText, gkHorizontalBar, gkVerticalBar, gkPie, gkNeedle)

class TGauge : public TGraphicControl {
  LUMORA_CLASS(TGauge, TGraphicControl)
public:
  explicit TGauge(TComponent* owner);

  TGaugeKind Kind() const { return FKind; }
  void SetKind(TGaugeKind value);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);
  TColor ForeColor() const { return FForeColor; }
  void SetForeColor(TColor value);
  TColor BackColor() const { return FBackColor; }
  void SetBackColor(TColor value);
  int MinValue() const { return FMinValue; }
  void SetMinValue(int value);
  int MaxValue() const { return FMaxValue; }
  void SetMaxValue(int value);
  int Progress() const { return FProgress; }
  void SetProgress(int value);
  bool ShowText() const { return FShowText; }
  void SetShowText(bool value);
  void AddProgress(int value) { SetProgress(FProgress + value); }
  // Progress as a whole percentage of the range (0 when the range is empty).
  int PercentDone() const;

  void Paint(QPainter& painter) override;

private:
  TGaugeKind FKind = gkHorizontalBar;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  TColor FForeColor = clBlack;
  TColor FBackColor = clWhite;
  int FMinValue = 0;
  int FMaxValue = 100;
  int FProgress = 0;
  bool FShowText = true;
};
