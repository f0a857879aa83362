#include "platform/vcl/Header.h"

#include "platform/rtti/Reader.h"
#include "platform/rtti/Writer.h"
#include "platform/vcl/ClassicDraw.h"
#include "platform/vcl/Publish.h"

#include <QMenuBar>  // before Menus.h, which keeps a guarded pointer to one
#include <QPainter>

#include "platform/vcl/Menus.h"

#include <algorithm>

namespace {

constexpr int kDefaultSectionWidth = 64;

TObject* WidthObject(int width) { return reinterpret_cast<TObject*>(static_cast<std::intptr_t>(width) + 1); }
int ObjectWidth(TObject* o) {
  const auto v = reinterpret_cast<std::intptr_t>(o);
  return v == 0 ? kDefaultSectionWidth : static_cast<int>(v - 1);
}

// The sections stream themselves as "Sections": each line a NUL, the width, a NUL and
// the caption.
class THeaderStrings : public TStringList {
public:
  void DefineProperties(TFiler& filer) override {
    filer.DefineProperty(
        "Sections",
        [this](TReader& reader) {
          reader.ReadListBegin();
          BeginUpdate();
          Clear();
          while (!reader.EndOfList()) {
            const std::string line = reader.ReadString();
            int width = kDefaultSectionWidth;
            std::string caption = line;
            if (!line.empty() && line[0] == '\0') {
              const std::size_t second = line.find('\0', 1);
              long long w = 0;
              if (second != std::string::npos && TryStrToInt(line.substr(1, second - 1), w)) width = static_cast<int>(w);
              caption = second == std::string::npos ? std::string() : line.substr(second + 1);
            }
            AddObject(caption, WidthObject(std::max(0, width)));
          }
          EndUpdate();
          reader.ReadListEnd();
        },
        [this](TWriter& writer) {
          writer.WriteListBegin();
          for (int i = 0; i < Count(); ++i)
            writer.WriteString(std::string(1, '\0') + IntToStr(ObjectWidth(Objects(i))) + std::string(1, '\0') + Strings(i));
          writer.WriteListEnd();
        },
        Count() > 0);
  }
};

}  // namespace

LUMORA_CLASS_IMPL(THeader) {
  PublishControlProperties(c, {"Align", "Anchors"});
  c.Property("AllowResize", &THeader::AllowResize, &THeader::SetAllowResize).Default(true);
  c.Property("BorderStyle", &THeader::BorderStyle, &THeader::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"Constraints", "DragCursor", "DragKind", "DragMode", "Enabled", "Font",
                               "ParentFont", "ParentShowHint", "PopupMenu"});
  c.Property("Sections", &THeader::Sections, &THeader::SetSections);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible", "OnClick", "OnDblClick",
                               "OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit",
                               "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnSizing", &THeader::OnSizing, &THeader::OnSizing);
  c.Property("OnSized", &THeader::OnSized, &THeader::OnSized);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
}

THeader::THeader(TComponent* owner) : TCustomControl(owner) {
  FWidth = 250;
  FHeight = 25;
  FSections = new THeaderStrings();
  FSections->OnChange = [this](TObject*) { Invalidate(); };
}

THeader::~THeader() { delete FSections; }

void THeader::SetSections(TStrings* value) {
  FSections->Assign(value);
  // Sections from other lists come without widths.
  for (int i = 0; i < FSections->Count(); ++i)
    if (!FSections->Objects(i)) FSections->SetObjects(i, WidthObject(kDefaultSectionWidth));
}

int THeader::SectionWidth(int index) const {
  if (index < 0 || index >= FSections->Count()) return 0;
  return ObjectWidth(FSections->Objects(index));
}

void THeader::SetSectionWidth(int index, int value) {
  if (index < 0 || index >= FSections->Count()) return;
  FSections->SetObjects(index, WidthObject(std::max(0, value)));
  Invalidate();
}

void THeader::SetBorderStyle(TBorderStyle value) {
  FBorderStyle = value;
  Invalidate();
}

int THeader::DividerAt(int x) const {
  int right = 0;
  for (int i = 0; i < FSections->Count(); ++i) {
    right += SectionWidth(i);
    if (std::abs(x - right) <= 2) return i;
  }
  return -1;
}

void THeader::Paint(QPainter& p) {
  QRect whole(0, 0, FWidth, FHeight);
  p.fillRect(whole, ColorToQColor(clBtnFace));
  if (FBorderStyle == BorderStyleOf(bsSingle)) Frame3D(p, whole, ColorToQColor(clWindowFrame), ColorToQColor(clWindowFrame));
  int x = whole.left();
  TCaptionLayout layout;
  layout.VAlign = TTextVAlign::Center;
  layout.ShowAccelChar = false;
  layout.Disabled = !FEnabled;
  // Each section a raised cell; what is left after the last one is an empty cell.
  const int count = FSections->Count();
  for (int i = 0; i <= count && x <= whole.right(); ++i) {
    const int w = i < count ? SectionWidth(i) : whole.right() + 1 - x;
    QRect cell(x, whole.top(), std::max(0, std::min(w, whole.right() + 1 - x)), whole.height());
    if (cell.width() <= 0) {
      x += w;
      continue;
    }
    QRect inner = cell;
    Frame3D(p, inner, ColorToQColor(clBtnHighlight), ColorToQColor(clBtnShadow));
    if (i < count)
      DrawCaption(p, inner.adjusted(2, 0, -2, 0), FFont->Handle(), FFont->ToUnicode(FSections->Strings(i)), layout,
                  ColorToQColor(FFont->Color()));
    x += w;
  }
}

void THeader::MouseDown(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseDown(button, shift, x, y);
  if (button != mbLeft || !FAllowResize) return;
  FSizing = DividerAt(x);
  FSizingOrigin = x;
  FSizingStart = SectionWidth(FSizing);
}

void THeader::MouseMove(TShiftState shift, int x, int y) {
  TCustomControl::MouseMove(shift, x, y);
  if (QWidget* w = Widget()) {
    if (FSizing >= 0 || (FAllowResize && DividerAt(x) >= 0)) {
      w->setCursor(Qt::SplitHCursor);
    } else {
      w->unsetCursor();
    }
  }
  if (FSizing < 0) return;
  const int width = std::max(0, FSizingStart + x - FSizingOrigin);
  SetSectionWidth(FSizing, width);
  if (OnSizing) OnSizing(this, FSizing, width);
}

void THeader::MouseUp(TMouseButton button, TShiftState shift, int x, int y) {
  TCustomControl::MouseUp(button, shift, x, y);
  if (FSizing < 0) return;
  const int section = FSizing;
  FSizing = -1;
  if (OnSized) OnSized(this, section, SectionWidth(section));
}
