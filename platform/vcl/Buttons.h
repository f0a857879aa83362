#pragma once
// Buttons with glyphs: TBitBtn (a push button with a picture and a kind that sets its
// caption and modal result) and TSpeedButton (a tool button painted on its parent,
// grouped buttons staying down). A glyph is a bitmap holding NumGlyphs images side by
// side (up, disabled, clicked, down); its bottom-left pixel's colour is transparent.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/StdCtrls.h"

#include <QImage>
#include <QRect>

LUMORA_ENUM(TButtonLayout, blGlyphLeft, blGlyphRight, blGlyphTop, blGlyphBottom)
LUMORA_ENUM(TButtonState, bsUp, bsDisabled, bsDown, bsExclusive)
LUMORA_ENUM(TButtonStyle, bsAutoDetect, bsWin31, bsNew)
LUMORA_ENUM(TBitBtnKind, bkCustom, bkOK, bkCancel, bkHelp, bkYes, bkNo, bkClose, bkAbort, bkRetry, bkIgnore, bkAll)

// Where the glyph and the caption of a button go inside `client`.
struct TGlyphLayout {
  QRect Glyph;
  QRect Text;
};
TGlyphLayout CalcButtonLayout(const QRect& client, QSize glyph, QSize text, TButtonLayout layout, int margin,
                              int spacing);

// The image of one state of a glyph, with its transparent colour taken out; a disabled
// image is made when the glyph has none.
QImage GlyphImage(TBitmap* glyph, int numGlyphs, TButtonState state);

class TBitBtn : public TButton {
  LUMORA_CLASS(TBitBtn, TButton)
public:
  explicit TBitBtn(TComponent* owner);
  ~TBitBtn() override;
  TBitmap* Glyph() const { return FGlyph; }
  void SetGlyph(TBitmap* value) { FGlyph->Assign(value); }
  TBitBtnKind Kind() const { return FKind; }
  // A kind other than bkCustom gives the button its caption, glyph and modal result.
  void SetKind(TBitBtnKind value);
  TButtonLayout Layout() const { return FLayout; }
  void SetLayout(TButtonLayout value);
  int Margin() const { return FMargin; }
  void SetMargin(int value);
  int NumGlyphs() const { return FNumGlyphs; }
  void SetNumGlyphs(int value);
  int Spacing() const { return FSpacing; }
  void SetSpacing(int value);
  TButtonStyle Style() const { return FStyle; }
  void SetStyle(TButtonStyle value) { FStyle = value; }
  bool IsCustomCaption() const;
  bool IsCustomGlyph() const { return FKind == bkCustom || FGlyphChanged; }
  void Click() override;
  void CreateWidget() override;
  void UpdateWidgetText() override;
  void Paint(QPainter& painter) override;

private:
  TBitmap* FGlyph;
  TBitBtnKind FKind = bkCustom;
  TButtonLayout FLayout = blGlyphLeft;
  int FMargin = -1;
  int FNumGlyphs = 1;
  int FSpacing = 4;
  TButtonStyle FStyle = bsAutoDetect;
  bool FGlyphChanged = false;
  bool FSettingKind = false;
};

class TSpeedButton : public TGraphicControl {
  LUMORA_CLASS(TSpeedButton, TGraphicControl)
public:
  explicit TSpeedButton(TComponent* owner);
  ~TSpeedButton() override;
  bool AllowAllUp() const { return FAllowAllUp; }
  void SetAllowAllUp(bool value);
  bool Down() const { return FDown; }
  // Down in a group puts the other buttons of the group up.
  void SetDown(bool value);
  bool Flat() const { return FFlat; }
  void SetFlat(bool value);
  TBitmap* Glyph() const { return FGlyph; }
  void SetGlyph(TBitmap* value) { FGlyph->Assign(value); }
  int GroupIndex() const { return FGroupIndex; }
  void SetGroupIndex(int value);
  TButtonLayout Layout() const { return FLayout; }
  void SetLayout(TButtonLayout value);
  int Margin() const { return FMargin; }
  void SetMargin(int value);
  int NumGlyphs() const { return FNumGlyphs; }
  void SetNumGlyphs(int value);
  int Spacing() const { return FSpacing; }
  void SetSpacing(int value);
  bool Transparent() const { return FTransparent; }
  void SetTransparent(bool value);
  void Click() override;
  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;
  bool WidgetEvent(QObject* watched, QEvent* event) override;

protected:
  bool ClicksFromMouse() const override { return false; }

private:
  void UpdateExclusive();
  bool FAllowAllUp = false;
  bool FDown = false;
  bool FFlat = false;
  TBitmap* FGlyph;
  int FGroupIndex = 0;
  TButtonLayout FLayout = blGlyphLeft;
  int FMargin = -1;
  int FNumGlyphs = 1;
  int FSpacing = 4;
  bool FTransparent = true;
  bool FPressed = false;  // the mouse holds it down
  bool FMouseInside = false;
  bool FDragging = false;
};
