#include "packages/dcldb/DBLookup.h"

#include "platform/vcl/Publish.h"

const TTypeInfo* TypeInfoOf(TDBLookupComboStyle*) {
  static const TTypeInfo info = ::rtti_detail::MakeEnumInfo("TDBLookupComboStyle", "csDropDown, csDropDownList");
  return &info;
}

namespace {
template <class C>
void PublishOldLookup(TClassBuilder<C>& c) {
  c.Property("LookupDisplay", &C::FLookupDisplay, &C::FLookupDisplay);
  c.Property("LookupField", &C::FLookupField, &C::FLookupField);
  c.Property("LookupSource", &C::ListSource, &C::SetListSource);
}
}  // namespace

LUMORA_CLASS_IMPL(TDBLookupList) {
  PublishControlProperties(c, {"Align"});
  c.Property("BorderStyle", &TDBLookupList::FBorderStyle, &TDBLookupList::FBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Color", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragMode", "Enabled", "Font"});
  PublishOldLookup(c);
  c.Property("Options", &TDBLookupList::FOptions, &TDBLookupList::FOptions).Default(TDBLookupListOptions{});
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ReadOnly", &TDBLookupList::FReadOnly, &TDBLookupList::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick", "OnDragDrop",
                               "OnDragOver", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDrag"});
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBLookupList::TDBLookupList(TComponent* owner) : TDBLookupControl(owner) {
  FWidth = 121;
  FHeight = 97;
}

int TDBLookupList::FrameSize() const {
  if (FBorderStyle != BorderStyleOf(bsSingle)) return 0;
  return FCtl3D ? 2 : 1;
}

LUMORA_CLASS_IMPL(TDBLookupCombo) {
  PublishControlProperties(c, {"Color", "Ctl3D"});
  PublishDataLink(c, "DataField");
  PublishDataLink(c, "DataSource");
  PublishControlProperties(c, {"DragCursor", "DragMode"});
  c.Property("DropDownCount", &TDBLookupCombo::FDropDownCount, &TDBLookupCombo::FDropDownCount).Default(8);
  c.Property("DropDownWidth", &TDBLookupCombo::FDropDownWidth, &TDBLookupCombo::FDropDownWidth).Default(0);
  PublishControlProperties(c, {"Enabled", "Font"});
  PublishOldLookup(c);
  c.Property("Options", &TDBLookupCombo::FOptions, &TDBLookupCombo::FOptions).Default(TDBLookupListOptions{});
  PublishControlProperties(c, {"ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("ReadOnly", &TDBLookupCombo::FReadOnly, &TDBLookupCombo::FReadOnly).Default(false);
  PublishControlProperties(c, {"ShowHint"});
  c.Property("Style", &TDBLookupCombo::FStyle, &TDBLookupCombo::FStyle).Default(TDBLookupComboStyle{});
  PublishControlProperties(c, {"TabOrder", "TabStop", "Visible"});
  c.Property("OnChange", &TDBLookupCombo::OnChange, &TDBLookupCombo::OnChange);
  PublishControlProperties(c, {"OnClick", "OnDblClick", "OnDragDrop", "OnDragOver"});
  c.Property("OnDropDown", &TDBLookupCombo::OnDropDown, &TDBLookupCombo::OnDropDown);
  PublishControlProperties(c, {"OnEndDrag", "OnEnter", "OnExit", "OnKeyDown", "OnKeyPress", "OnKeyUp",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp", "OnStartDrag"});
  c.Property("Color").Default(clWindow);
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}

TDBLookupCombo::TDBLookupCombo(TComponent* owner) : TDBLookupControl(owner) {
  FWidth = 121;
  FHeight = 24;
}
