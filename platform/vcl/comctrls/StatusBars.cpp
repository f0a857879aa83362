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
// TStatusPanel, TStatusPanels

LUMORA_CLASS_IMPL(TStatusPanel) {
  c.Property("Alignment", &TStatusPanel::Alignment, &TStatusPanel::SetAlignment).Default(taLeftJustify);
  c.Property("Bevel", &TStatusPanel::Bevel, &TStatusPanel::SetBevel).Default(pbLowered);
  c.Property("BiDiMode", &TStatusPanel::BiDiMode, &TStatusPanel::SetBiDiMode).Stored(&TStatusPanel::IsBiDiModeStored);
  c.Property("ParentBiDiMode", &TStatusPanel::ParentBiDiMode, &TStatusPanel::SetParentBiDiMode).Default(true);
  c.Property("Style", &TStatusPanel::Style, &TStatusPanel::SetStyle).Default(psText);
  c.Property("Text", &TStatusPanel::Text, &TStatusPanel::SetText);
  c.Property("Width", &TStatusPanel::Width, &TStatusPanel::SetWidth);
}

// The panel joins its collection once its own fields exist: joining repaints the bar.
TStatusPanel::TStatusPanel(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void TStatusPanel::Assign(TPersistent* source) {
  if (auto* p = dynamic_cast<TStatusPanel*>(source)) {
    FAlignment = p->FAlignment;
    FBevel = p->FBevel;
    FBiDiMode = p->FBiDiMode;
    FParentBiDiMode = p->FParentBiDiMode;
    FStyle = p->FStyle;
    FText = p->FText;
    FWidth = p->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string TStatusPanel::GetDisplayName() const {
  return FText.empty() ? TCollectionItem::GetDisplayName() : FText;
}

void TStatusPanel::SetAlignment(TAlignment value) {
  if (FAlignment == value) return;
  FAlignment = value;
  Changed(false);
}

void TStatusPanel::SetBevel(TStatusPanelBevel value) {
  if (FBevel == value) return;
  FBevel = value;
  Changed(false);
}

void TStatusPanel::SetBiDiMode(TBiDiMode value) {
  FBiDiMode = value;
  FParentBiDiMode = false;
  Changed(false);
}

void TStatusPanel::SetParentBiDiMode(bool value) {
  FParentBiDiMode = value;
  Changed(false);
}

void TStatusPanel::SetStyle(TStatusPanelStyle value) {
  if (FStyle == value) return;
  FStyle = value;
  Changed(false);
}

void TStatusPanel::SetText(const std::string& value) {
  if (FText == value) return;
  FText = value;
  Changed(false);
}

void TStatusPanel::SetWidth(int value) {
  if (FWidth == value) return;
  FWidth = value;
  Changed(true);
}

LUMORA_CLASS_IMPL(TStatusPanels) {}

TStatusPanels::TStatusPanels(TStatusBar* statusBar) : TCollection(TStatusPanel::StaticClass()), FStatusBar(statusBar) {}

TPersistent* TStatusPanels::GetOwner() { return FStatusBar; }

void TStatusPanels::Update(TCollectionItem*) { FStatusBar->PanelsChanged(); }

// ---------------------------------------------------------------------------------------
// TStatusBar

LUMORA_CLASS_IMPL(TStatusBar) {
  PublishControlProperties(c, {"Action"});
  c.Property("AutoHint", &TStatusBar::AutoHint, &TStatusBar::SetAutoHint).Default(false);
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "BorderWidth", "Color", "DragCursor", "DragKind",
                               "DragMode", "Enabled", "Font", "Constraints"});
  c.Property("Panels", &TStatusBar::Panels, &TStatusBar::SetPanels);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentFont", "ParentShowHint", "PopupMenu",
                               "ShowHint"});
  c.Property("SimplePanel", &TStatusBar::SimplePanel, &TStatusBar::SetSimplePanel).NoDefault();
  c.Property("SimpleText", &TStatusBar::SimpleText, &TStatusBar::SetSimpleText);
  c.Property("SizeGrip", &TStatusBar::SizeGrip, &TStatusBar::SetSizeGrip).Default(true);
  c.Property("UseSystemFont", &TStatusBar::UseSystemFont, &TStatusBar::SetUseSystemFont).Default(true);
  PublishControlProperties(c, {"Visible", "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock",
                               "OnEndDrag"});
  c.Property("OnHint", &TStatusBar::OnHint, &TStatusBar::OnHint);
  PublishControlProperties(c, {"OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnDrawPanel", &TStatusBar::OnDrawPanel, &TStatusBar::OnDrawPanel);
  PublishControlProperties(c, {"OnResize", "OnStartDock", "OnStartDrag"});
  c.Property("Align").Default(alBottom);
  c.Property("Color").Default(clBtnFace);
  c.Property("ParentColor").Default(false);
}

TStatusBar::TStatusBar(TComponent* owner) : TWinControl(owner) {
  FControlStyle = TControlStyle{csCaptureMouse, csClickEvents, csDoubleClicks, csOpaque};
  FWidth = 150;
  FHeight = 19;
  FAlign = alBottom;
  FColor = clBtnFace;
  FParentColor = false;
  FPanels = new TStatusPanels(this);
}

TStatusBar::~TStatusBar() {
  DestroyWidget();
  delete FPanels;
  FPanels = nullptr;
}

void TStatusBar::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void TStatusBar::PanelsChanged() {
  if (FPanels) Invalidate();
}

void TStatusBar::SetSimplePanel(bool value) {
  if (FSimplePanel == value) return;
  FSimplePanel = value;
  Invalidate();
}

void TStatusBar::SetSimpleText(const std::string& value) {
  if (FSimpleText == value) return;
  FSimpleText = value;
  Invalidate();
}

void TStatusBar::SetSizeGrip(bool value) {
  if (FSizeGrip == value) return;
  FSizeGrip = value;
  Invalidate();
}

bool TStatusBar::GripShowing() const {
  if (!FSizeGrip) return false;
  auto* form = dynamic_cast<TCustomForm*>(FParent);
  if (!form) return false;
  const TFormBorderStyle style = form->BorderStyle();
  return style == bsSizeable || style == bsSizeToolWin;
}

TRect TStatusBar::PanelRect(int index) const {
  const int count = FPanels->Count();
  if (index < 0 || index >= count) return TRect{};
  int left = 0;
  for (int i = 0; i < index; ++i) left += FPanels->Items(i)->Width();
  // Panels are two pixels apart; the last one reaches the end of the bar.
  const int start = index == 0 ? 0 : left + 2;
  const int right = index == count - 1 ? FWidth : left + FPanels->Items(index)->Width();
  return Rect(start, 2, std::max(start, right), FHeight);
}

void TStatusBar::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  const QColor text = Sys(FFont->Color());
  const QColor hi = Sys(clBtnHighlight);
  const QColor shadow = Sys(clBtnShadow);
  const bool grip = GripShowing();
  auto drawPanel = [&](QRect r, TStatusPanelBevel bevel, const std::string& s, TAlignment alignment) {
    if (bevel != pbNone) {
      QRect edge = r;
      if (bevel == pbLowered) {
        Frame3D(painter, edge, shadow, hi);
      } else {
        Frame3D(painter, edge, hi, shadow);
      }
    }
    TCaptionLayout layout;
    layout.HAlign = alignment == taCenter ? TTextHAlign::Center
                    : alignment == taRightJustify ? TTextHAlign::Right
                                                  : TTextHAlign::Left;
    layout.VAlign = TTextVAlign::Center;
    layout.ShowAccelChar = false;
    painter.save();
    const QRect area = r.adjusted(3, 1, -3, -1);
    painter.setClipRect(area);
    DrawCaption(painter, area, FFont->Handle(), FFont->ToUnicode(s), layout, text);
    painter.restore();
  };
  if (FSimplePanel) {
    drawPanel(QRect(0, 2, FWidth, FHeight - 2), pbLowered, FSimpleText, taLeftJustify);
  } else {
    for (int i = 0; i < FPanels->Count(); ++i) {
      TStatusPanel* panel = FPanels->Items(i);
      QRect r = ToQRect(PanelRect(i));
      if (grip && i == FPanels->Count() - 1) r.setRight(std::max(r.left(), FWidth - 1));
      if (panel->Style() == psOwnerDraw) {
        if (OnDrawPanel) OnDrawPanel(this, panel, PanelRect(i));
        continue;
      }
      drawPanel(r, panel->Bevel(), panel->Text(), panel->Alignment());
    }
  }
  if (grip) {
    // Three pairs of diagonal lines in the corner.
    const int right = FWidth - 1;
    const int bottom = FHeight - 1;
    painter.save();
    for (int k = 0; k < 3; ++k) {
      const int d = 4 * k;
      painter.setPen(hi);
      painter.drawLine(right - 11 + d, bottom, right, bottom - 11 + d);
      painter.setPen(shadow);
      painter.drawLine(right - 10 + d, bottom, right, bottom - 10 + d);
      painter.drawLine(right - 9 + d, bottom, right, bottom - 9 + d);
    }
    painter.restore();
  }
}

// ---------------------------------------------------------------------------------------
// THeaderSection, THeaderSections, THeaderControl

LUMORA_CLASS_IMPL(THeaderSection) {
  c.Property("AllowClick", &THeaderSection::AllowClick, &THeaderSection::SetAllowClick).Default(true);
  c.Property("Alignment", &THeaderSection::Alignment, &THeaderSection::SetAlignment).Default(taLeftJustify);
  c.Property("AutoSize", &THeaderSection::AutoSize, &THeaderSection::SetAutoSize).Default(false);
  c.Property("BiDiMode", &THeaderSection::BiDiMode, &THeaderSection::SetBiDiMode).Stored(&THeaderSection::IsBiDiModeStored);
  c.Property("ImageIndex", &THeaderSection::ImageIndex, &THeaderSection::SetImageIndex).NoDefault();
  c.Property("MaxWidth", &THeaderSection::MaxWidth, &THeaderSection::SetMaxWidth).Default(10000);
  c.Property("MinWidth", &THeaderSection::MinWidth, &THeaderSection::SetMinWidth).Default(0);
  c.Property("ParentBiDiMode", &THeaderSection::ParentBiDiMode, &THeaderSection::SetParentBiDiMode).Default(true);
  c.Property("Style", &THeaderSection::Style, &THeaderSection::SetStyle).Default(hsText);
  c.Property("Text", &THeaderSection::Text, &THeaderSection::SetText);
  c.Property("Width", &THeaderSection::Width, &THeaderSection::SetWidth);
}

// The section joins its collection once its own fields exist: joining repaints the header.
THeaderSection::THeaderSection(TCollection* collection) : TCollectionItem(nullptr) { SetCollection(collection); }

void THeaderSection::Assign(TPersistent* source) {
  if (auto* s = dynamic_cast<THeaderSection*>(source)) {
    FAllowClick = s->FAllowClick;
    FAlignment = s->FAlignment;
    FAutoSize = s->FAutoSize;
    FBiDiMode = s->FBiDiMode;
    FParentBiDiMode = s->FParentBiDiMode;
    FImageIndex = s->FImageIndex;
    FMaxWidth = s->FMaxWidth;
    FMinWidth = s->FMinWidth;
    FStyle = s->FStyle;
    FText = s->FText;
    FWidth = s->FWidth;
    Changed(false);
    return;
  }
  TCollectionItem::Assign(source);
}

std::string THeaderSection::GetDisplayName() const {
  return FText.empty() ? TCollectionItem::GetDisplayName() : FText;
}

void THeaderSection::SetAlignment(TAlignment value) {
  FAlignment = value;
  Changed(false);
}

void THeaderSection::SetAutoSize(bool value) {
  FAutoSize = value;
  Changed(true);
}

void THeaderSection::SetBiDiMode(TBiDiMode value) {
  FBiDiMode = value;
  FParentBiDiMode = false;
  Changed(false);
}

void THeaderSection::SetImageIndex(int value) {
  FImageIndex = value;
  Changed(false);
}

void THeaderSection::SetMaxWidth(int value) {
  FMaxWidth = value;
  Changed(true);
}

void THeaderSection::SetMinWidth(int value) {
  FMinWidth = value;
  Changed(true);
}

void THeaderSection::SetStyle(THeaderSectionStyle value) {
  FStyle = value;
  Changed(false);
}

void THeaderSection::SetText(const std::string& value) {
  FText = value;
  Changed(false);
}

void THeaderSection::SetWidth(int value) {
  if (Collection() && !static_cast<THeaderSections*>(Collection())->GetOwner()) return;
  value = std::max(value, 0);
  if (FMinWidth > 0) value = std::max(value, FMinWidth);
  if (FMaxWidth > 0) value = std::min(value, FMaxWidth);
  FWidth = value;
  Changed(true);
}

int THeaderSection::Left() const {
  int x = 0;
  if (TCollection* c = Collection()) {
    for (int i = 0; i < Index(); ++i) x += static_cast<THeaderSection*>(c->Items(i))->FWidth;
  }
  return x;
}

LUMORA_CLASS_IMPL(THeaderSections) {}

THeaderSections::THeaderSections(THeaderControl* header) : TCollection(THeaderSection::StaticClass()), FHeader(header) {}

TPersistent* THeaderSections::GetOwner() { return FHeader; }

void THeaderSections::Update(TCollectionItem*) {
  if (FHeader) FHeader->SectionsChanged();
}

LUMORA_CLASS_IMPL(THeaderControl) {
  PublishControlProperties(c, {"Align", "Anchors", "BiDiMode", "BorderWidth", "DragCursor", "DragKind", "DragMode"});
  c.Property("DragReorder", &THeaderControl::DragReorder, &THeaderControl::SetDragReorder).NoDefault();
  PublishControlProperties(c, {"Enabled", "Font"});
  c.Property("FullDrag", &THeaderControl::FullDrag, &THeaderControl::SetFullDrag).Default(true);
  c.Property("HotTrack", &THeaderControl::HotTrack, &THeaderControl::SetHotTrack).Default(false);
  c.Property("Images", &THeaderControl::Images, &THeaderControl::SetImages);
  PublishControlProperties(c, {"Constraints"});
  c.Property("Sections", &THeaderControl::Sections, &THeaderControl::SetSections);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &THeaderControl::Style, &THeaderControl::SetStyle).Default(hsButtons);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentFont", "ParentShowHint", "PopupMenu", "Visible"});
  c.Property("OnDrawSection", &THeaderControl::OnDrawSection, &THeaderControl::OnDrawSection);
  PublishControlProperties(c, {"OnEndDock", "OnEndDrag", "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnResize"});
  c.Property("OnSectionClick", &THeaderControl::OnSectionClick, &THeaderControl::OnSectionClick);
  c.Property("OnSectionResize", &THeaderControl::OnSectionResize, &THeaderControl::OnSectionResize);
  c.Property("OnSectionTrack", &THeaderControl::OnSectionTrack, &THeaderControl::OnSectionTrack);
  c.Property("OnSectionDrag", &THeaderControl::OnSectionDrag, &THeaderControl::OnSectionDrag);
  c.Property("OnSectionEndDrag", &THeaderControl::OnSectionEndDrag, &THeaderControl::OnSectionEndDrag);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("Align").Default(alTop);
}

THeaderControl::THeaderControl(TComponent* owner) : TWinControl(owner) {
  FWidth = 150;
  FHeight = 17;
  FAlign = alTop;
  FColor = clBtnFace;
  FSections = new THeaderSections(this);
}

THeaderControl::~THeaderControl() {
  DestroyWidget();
  THeaderSections* sections = FSections;
  FSections = nullptr;
  delete sections;
}

void THeaderControl::CreateWidget() { AdoptWidget(new TPaintedWidget(this, true)); }

void THeaderControl::SectionsChanged() {
  if (FSections) Invalidate();
}

void THeaderControl::SetImages(TCustomImageList* value) {
  if (!ReplaceComponentLink(this, FImages, value)) return;
  Invalidate();
}

void THeaderControl::Notification(TComponent* component, TOperation operation) {
  TWinControl::Notification(component, operation);
  if (operation == opRemove && component == FImages) {
    FImages = nullptr;
    Invalidate();
  }
}

void THeaderControl::SetStyle(THeaderStyle value) {
  FStyle = value;
  Invalidate();
}

THeaderSection* THeaderControl::SectionAt(int x) const {
  for (int i = 0; i < FSections->Count(); ++i) {
    THeaderSection* s = FSections->Items(i);
    if (x >= s->Left() && x < s->Right()) return s;
  }
  return nullptr;
}

void THeaderControl::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  if (button == mbLeft && !Designing() && FEnabled) {
    // Near a section's right edge: resize it; elsewhere: press it.
    for (int i = 0; i < FSections->Count(); ++i) {
      THeaderSection* s = FSections->Items(i);
      if (std::abs(x - s->Right()) <= 3) {
        FTracking = s;
        FTrackOrigin = x;
        FTrackStart = s->Width();
        if (OnSectionTrack) OnSectionTrack(this, s, s->Width(), tsTrackBegin);
        break;
      }
    }
    if (!FTracking) {
      FPressed = SectionAt(x);
      if (FPressed && !FPressed->AllowClick()) FPressed = nullptr;
      Invalidate();
    }
  }
  TWinControl::MouseDown(button, shift, x, y);
}

void THeaderControl::MouseMove(TShiftState shift, int x, int y) {
  if (FTracking) {
    FTracking->SetWidth(FTrackStart + x - FTrackOrigin);
    if (OnSectionTrack) OnSectionTrack(this, FTracking, FTracking->Width(), tsTrackMove);
  }
  TWinControl::MouseMove(shift, x, y);
}

void THeaderControl::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  if (FTracking) {
    THeaderSection* s = FTracking;
    FTracking = nullptr;
    if (OnSectionTrack) OnSectionTrack(this, s, s->Width(), tsTrackEnd);
    if (OnSectionResize) OnSectionResize(this, s);
  } else if (FPressed) {
    THeaderSection* s = FPressed;
    FPressed = nullptr;
    Invalidate();
    if (SectionAt(x) == s && OnSectionClick) OnSectionClick(this, s);
  }
  TWinControl::MouseUp(button, shift, x, y);
}

void THeaderControl::Paint(QPainter& painter) {
  painter.fillRect(QRect(0, 0, FWidth, FHeight), Sys(FColor));
  auto drawButton = [&](QRect r, bool pressed) {
    QRect edge = r;
    if (pressed) {
      Frame3D(painter, edge, Sys(clBtnShadow), Sys(clBtnShadow));
    } else if (FStyle == hsFlat) {
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(clBtnShadow));
    } else {
      Frame3D(painter, edge, Sys(clBtnHighlight), Sys(cl3DDkShadow));
      Frame3D(painter, edge, Sys(cl3DLight), Sys(clBtnShadow));
    }
  };
  int x = 0;
  for (int i = 0; i < FSections->Count(); ++i) {
    THeaderSection* s = FSections->Items(i);
    const QRect r(x, 0, s->Width(), FHeight);
    const bool pressed = s == FPressed;
    if (s->Style() == hsOwnerDraw && OnDrawSection) {
      OnDrawSection(this, s, Rect(r.left(), r.top(), r.right() + 1, r.bottom() + 1), pressed);
    } else {
      drawButton(r, pressed);
      QRect area = r.adjusted(4, 1, -4, -1);
      if (pressed) area.translate(1, 1);
      if (FImages && s->ImageIndex() >= 0 && s->ImageIndex() < FImages->Count()) {
        FImages->Draw(painter, area.left(), area.top() + (area.height() - FImages->Height()) / 2, s->ImageIndex(), FEnabled);
        area.setLeft(area.left() + FImages->Width() + 2);
      }
      TCaptionLayout layout;
      layout.HAlign = s->Alignment() == taCenter         ? TTextHAlign::Center
                      : s->Alignment() == taRightJustify ? TTextHAlign::Right
                                                         : TTextHAlign::Left;
      layout.VAlign = TTextVAlign::Center;
      layout.ShowAccelChar = false;
      layout.Disabled = !FEnabled;
      painter.save();
      painter.setClipRect(area);
      DrawCaption(painter, area, FFont->Handle(), FFont->ToUnicode(s->Text()), layout, Sys(FFont->Color()));
      painter.restore();
    }
    x += s->Width();
  }
  // What lies beyond the last section is an empty button.
  if (x < FWidth) drawButton(QRect(x, 0, FWidth - x, FHeight), false);
}
