#pragma once
// The older header: a row of sections, each a caption with a width, that the user may
// widen or narrow by dragging the line between two sections.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Controls.h"

// Its handlers take (Sender, section, width): the signature list views' data hints have.
using TSectionEvent = TLVOwnerDataHintEvent;

class THeader : public TCustomControl {
  LUMORA_CLASS(THeader, TCustomControl)
public:
  explicit THeader(TComponent* owner);
  ~THeader() override;

  // The sections' captions; each keeps its width beside it.
  TStrings* Sections() const { return FSections; }
  void SetSections(TStrings* value);
  int SectionWidth(int index) const;
  void SetSectionWidth(int index, int value);
  bool AllowResize() const { return FAllowResize; }
  void SetAllowResize(bool value) { FAllowResize = value; }
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle value);

  TSectionEvent OnSizing;
  TSectionEvent OnSized;

  void Paint(QPainter& painter) override;
  void MouseDown(TMouseButton button, TShiftState shift, int x, int y) override;
  void MouseMove(TShiftState shift, int x, int y) override;
  void MouseUp(TMouseButton button, TShiftState shift, int x, int y) override;

private:
  // The section whose right edge lies under x (within two pixels), or -1.
  int DividerAt(int x) const;
  TStringList* FSections;
  bool FAllowResize = true;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  int FSizing = -1;
  int FSizingOrigin = 0;
  int FSizingStart = 0;
};
