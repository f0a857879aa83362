#pragma once
// Publishing the properties that the control classes share, by name, in the order each
// class lists them. Internal to the controls layer.

#include "platform/vcl/Controls.h"

#include <initializer_list>
#include <string_view>

template <class C>
void PublishControlProperties(TClassBuilder<C>& c, std::initializer_list<std::string_view> names) {
  for (std::string_view n : names) {
    if (n == "Action") c.Property("Action", &TControl::Action, &TControl::SetAction);
    else if (n == "Align") c.Property("Align", &TControl::Align, &TControl::SetAlign).Default(alNone);
    else if (n == "Anchors") c.Property("Anchors", &TControl::Anchors, &TControl::SetAnchors).Default(TAnchors{akLeft, akTop});
    else if (n == "AutoSize") c.Property("AutoSize", &TControl::AutoSize, &TControl::SetAutoSize).Default(false);
    else if (n == "BiDiMode") c.Property("BiDiMode", &TControl::BiDiMode, &TControl::SetBiDiMode).Stored(&TControl::IsBiDiModeStored);
    else if (n == "Caption") c.Property("Caption", &TControl::Caption, &TControl::SetCaption);
    else if (n == "Color") c.Property("Color", &TControl::Color, &TControl::SetColor).Default(clWindow).Stored(&TControl::IsColorStored);
    else if (n == "Constraints") c.Property("Constraints", &TControl::Constraints, &TControl::SetConstraints);
    else if (n == "DragCursor") c.Property("DragCursor", &TControl::DragCursor, &TControl::SetDragCursor).Default(crDrag);
    else if (n == "DragKind") c.Property("DragKind", &TControl::DragKind, &TControl::SetDragKind).Default(dkDrag);
    else if (n == "DragMode") c.Property("DragMode", &TControl::DragMode, &TControl::SetDragMode).Default(dmManual);
    else if (n == "Enabled") c.Property("Enabled", &TControl::Enabled, &TControl::SetEnabled).Default(true);
    else if (n == "Font") c.Property("Font", &TControl::Font, &TControl::SetFont).Stored(&TControl::IsFontStored);
    else if (n == "ParentBiDiMode") c.Property("ParentBiDiMode", &TControl::ParentBiDiMode, &TControl::SetParentBiDiMode).Default(true);
    else if (n == "ParentColor") c.Property("ParentColor", &TControl::ParentColor, &TControl::SetParentColor).Default(true);
    else if (n == "ParentFont") c.Property("ParentFont", &TControl::ParentFont, &TControl::SetParentFont).Default(true);
    else if (n == "ParentShowHint") c.Property("ParentShowHint", &TControl::ParentShowHint, &TControl::SetParentShowHint).Default(true);
    else if (n == "PopupMenu") c.Property("PopupMenu", &TControl::PopupMenu, &TControl::SetPopupMenu);
    else if (n == "ShowHint") c.Property("ShowHint", &TControl::ShowHint, &TControl::SetShowHint).Stored(&TControl::IsShowHintStored);
    else if (n == "Text") c.Property("Text", &TControl::Text, &TControl::SetText);
    else if (n == "Visible") c.Property("Visible", &TControl::Visible, &TControl::SetVisible).Default(true);
    else if (n == "OnCanResize") c.Property("OnCanResize", &TControl::OnCanResize, &TControl::OnCanResize);
    else if (n == "OnClick") c.Property("OnClick", &TControl::OnClick, &TControl::OnClick);
    else if (n == "OnConstrainedResize") c.Property("OnConstrainedResize", &TControl::OnConstrainedResize, &TControl::OnConstrainedResize);
    else if (n == "OnDblClick") c.Property("OnDblClick", &TControl::OnDblClick, &TControl::OnDblClick);
    else if (n == "OnDragDrop") c.Property("OnDragDrop", &TControl::OnDragDrop, &TControl::OnDragDrop);
    else if (n == "OnDragOver") c.Property("OnDragOver", &TControl::OnDragOver, &TControl::OnDragOver);
    else if (n == "OnEndDock") c.Property("OnEndDock", &TControl::OnEndDock, &TControl::OnEndDock);
    else if (n == "OnEndDrag") c.Property("OnEndDrag", &TControl::OnEndDrag, &TControl::OnEndDrag);
    else if (n == "OnMouseDown") c.Property("OnMouseDown", &TControl::OnMouseDown, &TControl::OnMouseDown);
    else if (n == "OnMouseMove") c.Property("OnMouseMove", &TControl::OnMouseMove, &TControl::OnMouseMove);
    else if (n == "OnMouseUp") c.Property("OnMouseUp", &TControl::OnMouseUp, &TControl::OnMouseUp);
    else if (n == "OnResize") c.Property("OnResize", &TControl::OnResize, &TControl::OnResize);
    else if (n == "OnStartDock") c.Property("OnStartDock", &TControl::OnStartDock, &TControl::OnStartDock);
    else if (n == "OnStartDrag") c.Property("OnStartDrag", &TControl::OnStartDrag, &TControl::OnStartDrag);
    else if constexpr (std::is_base_of_v<TWinControl, C>) {
      if (n == "BorderWidth") c.Property("BorderWidth", &TWinControl::BorderWidth, &TWinControl::SetBorderWidth).Default(0);
      else if (n == "Ctl3D") c.Property("Ctl3D", &TWinControl::Ctl3D, &TWinControl::SetCtl3D).Stored(&TWinControl::IsCtl3DStored);
      else if (n == "DockSite") c.Property("DockSite", &TWinControl::DockSite, &TWinControl::SetDockSite).Default(false);
      else if (n == "ImeMode") c.Property("ImeMode", &TWinControl::ImeMode, &TWinControl::SetImeMode).Default(imDontCare);
      else if (n == "ImeName") c.Property("ImeName", &TWinControl::ImeName, &TWinControl::SetImeName);
      else if (n == "ParentCtl3D") c.Property("ParentCtl3D", &TWinControl::ParentCtl3D, &TWinControl::SetParentCtl3D).Default(true);
      else if (n == "TabOrder") c.Property("TabOrder", &TWinControl::TabOrder, &TWinControl::SetTabOrder).Default(-1);
      else if (n == "TabStop") c.Property("TabStop", &TWinControl::TabStop, &TWinControl::SetTabStop).Default(false);
      else if (n == "UseDockManager") c.Property("UseDockManager", &TWinControl::UseDockManager, &TWinControl::SetUseDockManager).Default(false);
      else if (n == "OnDockDrop") c.Property("OnDockDrop", &TWinControl::OnDockDrop, &TWinControl::OnDockDrop);
      else if (n == "OnDockOver") c.Property("OnDockOver", &TWinControl::OnDockOver, &TWinControl::OnDockOver);
      else if (n == "OnEnter") c.Property("OnEnter", &TWinControl::OnEnter, &TWinControl::OnEnter);
      else if (n == "OnExit") c.Property("OnExit", &TWinControl::OnExit, &TWinControl::OnExit);
      else if (n == "OnGetSiteInfo") c.Property("OnGetSiteInfo", &TWinControl::OnGetSiteInfo, &TWinControl::OnGetSiteInfo);
      else if (n == "OnKeyDown") c.Property("OnKeyDown", &TWinControl::OnKeyDown, &TWinControl::OnKeyDown);
      else if (n == "OnKeyPress") c.Property("OnKeyPress", &TWinControl::OnKeyPress, &TWinControl::OnKeyPress);
      else if (n == "OnKeyUp") c.Property("OnKeyUp", &TWinControl::OnKeyUp, &TWinControl::OnKeyUp);
      else if (n == "OnUnDock") c.Property("OnUnDock", &TWinControl::OnUnDock, &TWinControl::OnUnDock);
      else throw EPropertyError(std::string("no shared property ") + std::string(n));
    } else {
      throw EPropertyError(std::string("no shared property ") + std::string(n));
    }
  }
}

// The properties and events nearly every windowed control publishes, besides its own.
#define LUMORA_STD_WIN_EVENTS "OnClick", "OnDblClick", "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", \
  "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp",      \
  "OnStartDock", "OnStartDrag"
