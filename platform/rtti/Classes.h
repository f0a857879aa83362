#pragma once
// The component model: classes with run-time type information, components with owners
// and names, string lists, collections, variants, the class registry, and the reader
// and writer of form streams (Reader.h, Writer.h). Include this header; everything is
// global, with the runtime's names.
//
// ---- Declaring a class with published properties -----------------------------------
//
//   // MyButton.h
//   LUMORA_ENUM(TButtonKind, bkCustom, bkOK, bkCancel)   // enum + its names
//   LUMORA_SET(TButtonKinds, TButtonKind)                 // a named set type
//
//   class TMyButton : public TComponent {
//     LUMORA_CLASS(TMyButton, TComponent)                 // first in the body
//   public:
//     explicit TMyButton(TComponent* owner) : TComponent(owner) {}
//     void SetCaption(const std::string& value);
//     TFont* Font() const { return FFont; }
//     void SetFont(TFont* value) { FFont->Assign(value); }
//     bool IsCaptionStored() const { return FCaption != Name(); }
//     TNotifyEvent OnClick;                               // events are public fields
//   private:
//     std::string FCaption;
//     int FWidth = 75;
//     bool FDefault = false;
//     TButtonKind FKind = bkCustom;
//     TFont* FFont;
//   };
//
//   // MyButton.cpp
//   LUMORA_CLASS_IMPL(TMyButton) {                        // `c` is the class builder
//     c.Property("Caption", &TMyButton::FCaption, &TMyButton::SetCaption).Stored(&TMyButton::IsCaptionStored);
//     c.Property("Default", &TMyButton::FDefault, &TMyButton::FDefault).Default(false);
//     c.Property("Font", &TMyButton::Font, &TMyButton::SetFont);
//     c.Property("Kind", &TMyButton::FKind, &TMyButton::FKind).Default(bkCustom);
//     c.Property("Width", &TMyButton::FWidth, &TMyButton::FWidth).NoDefault();
//     c.Property("OnClick", &TMyButton::OnClick, &TMyButton::OnClick);
//   }
//
// A getter is a field pointer (`read FCaption`), a member function or a callable taking
// the object; a setter is a field pointer, a member function or a callable taking the
// object and the value; leave it out for a read-only property. Property kinds follow the
// C++ type: int/short/unsigned.. tkInteger, char tkChar, char16_t tkWChar, bool and
// LUMORA_ENUM enumerations tkEnumeration, TSet<E> tkSet, float/double/long double/
// TDateTime/Currency/Comp tkFloat, std::string tkLString, ShortString tkString,
// int64_t tkInt64, Variant tkVariant, T* (T derived from TObject) tkClass, events
// (TEvent<...>, LUMORA_EVENT) tkMethod. An ordinal property without .Default(...) is
// always written, as in Delphi. A derived class inherits its parent's properties;
// `c.Property("Width").Default(50)` re-publishes one with a new default.
//
// A form of the program publishes its fields and event handlers too:
//   c.Field("Label1", &TForm1::Label1);                      // set when Label1 is created
//   c.Method<&TForm1::Button1Click>("Button1Click");         // bound by name from the stream
//
// ---- Binding events --------------------------------------------------------------------
//
//   Button1->OnClick = MakeMethod<&TForm1::Button1Click>(this);
//   Button1->OnClick = [this](TObject* sender) { ... };     // a lambda, where convenient
//   if (OnClick) OnClick(this);                              // unset events do nothing
//
// Two events are equal when their Code and Data are; the method bound by name from a
// stream equals the one made with MakeMethod for the same handler and object.
//
// ---- Registering classes -----------------------------------------------------------------
//
//   RegisterClasses({TMyButton::StaticClass(), TMyLabel::StaticClass()});
//   TClass c = GetClass("TMyButton");                       // none when unknown
//   TModuleScope scope(packageHandle);                      // a package's registrations
//   ...  UnRegisterModuleClasses(packageHandle);
//
// ---- Reading a root from a stream or from form text, writing it back -----------------------
//
//   ReadComponentFromText(form, formText);             // text -> binary -> reader
//   ReadComponentFromBinary(form, streamBytes, [](TReader& r) {
//     r.OnError = [](TReader*, const std::string& message, bool& handled) { handled = true; };
//   });
//   TReader reader(streamBytes);                        // or a reader of your own
//   reader.OnFindMethod = ...;  reader.ReadRootComponent(form);
//   std::string bytes = WriteComponentToBinary(form);   // WriteComponentToText for form text
//
// The reader creates each child with its class's factory (owner: the root), names it
// (which stores it in the root's published field of that name), hands it its parent
// (SetParentComponent), sets its properties, and calls Loaded on everything once the
// references between components are set. Without OnError the first problem is raised.

// ---- Type information at run time ---------------------------------------------------------
//
//   SetStrProp(button, "Caption", "OK");  GetOrdProp(button, "Width");
//   SetEnumProp(button, "Kind", "bkOK");   SetSetProp(font, "Style", "[fsBold,fsItalic]");
//   SetPropValue(button, "Default", Variant("1"));   // text converts to the property's type
//
// An integer type of its own (an enum with a fixed underlying type whose TypeInfoOf says
// tkInteger, as the controls declare TColor) is written by name once its table is known:
//   RegisterIntegerConsts(TypeInfo<TColor>(), &IdentToColor, &ColorToIdent);
// then the reader takes `Color = clBtnFace` and the writer writes it.

#include "platform/rtti/ClassBuilder.h"
#include "platform/rtti/Collection.h"
#include "platform/rtti/Component.h"
#include "platform/rtti/Events.h"
#include "platform/rtti/Filer.h"
#include "platform/rtti/Methods.h"
#include "platform/rtti/Persistent.h"
#include "platform/rtti/Reader.h"
#include "platform/rtti/Registry.h"
#include "platform/rtti/Sets.h"
#include "platform/rtti/Strings.h"
#include "platform/rtti/SystemTypes.h"
#include "platform/rtti/TypInfo.h"
#include "platform/rtti/Variants.h"
#include "platform/rtti/Writer.h"
