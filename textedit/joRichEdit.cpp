#include "textedit/joRichEdit.h"

#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/Charsets.h"
#include "platform/vcl/Clipbrd.h"
#include "platform/vcl/Keys.h"
#include "platform/vcl/MessageLoop.h"
#include "resources/ResStrings.h"

#include <Qsci/qsciscintillabase.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMenuBar>
#include <QFocusEvent>
#include <QFrame>

#include <algorithm>
#include <climits>
#include <cstring>

using QSci = QsciScintillaBase;

namespace {

// The style of bold text (style 0 is the plain text).
constexpr int BoldStyle = 1;
// The indicator that colours the marked line.
constexpr int MarkIndicator = QSci::INDIC_CONTAINER;
// How far one search looks, in characters from where it starts.
constexpr int SearchReach = 999999;

// The dialogs shared by every rich edit, and what they remember.
TFindDialog* GFindDialog = nullptr;
TReplaceDialog* GReplaceDialog = nullptr;
std::string GSearchText;
bool GSavedHideSelection = true;

bool IsAscii(std::string_view Bytes) {
  const char* P = Bytes.data();
  std::size_t N = Bytes.size();
  while (N >= 8) {
    std::uint64_t Word;
    std::memcpy(&Word, P, 8);
    if (Word & 0x8080808080808080ull) return false;
    P += 8;
    N -= 8;
  }
  while (N-- > 0) {
    if (static_cast<unsigned char>(*P++) >= 0x80) return false;
  }
  return true;
}

// Blank: empty or made only of characters with codes up to 32.
bool IsBlank(std::string_view S) {
  return std::all_of(S.begin(), S.end(), [](char C) { return static_cast<unsigned char>(C) <= 32; });
}

bool IsWordByte(unsigned char C) {
  return (C >= '0' && C <= '9') || (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') || C == '_' || C >= 0x80;
}

unsigned char AsciiLower(unsigned char C) { return C >= 'A' && C <= 'Z' ? static_cast<unsigned char>(C + 32) : C; }

// Line ends of any kind become LF.
std::string WithLfLineEnds(std::string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  for (std::size_t I = 0; I < Text.size(); ++I) {
    const char C = Text[I];
    if (C == '\r') {
      Out += '\n';
      if (I + 1 < Text.size() && Text[I + 1] == '\n') ++I;
    } else {
      Out += C;
    }
  }
  return Out;
}

// Lifts the read-only state of a document while the program itself changes the text:
// read-only stops the user, not the program.
class TWritable {
public:
  explicit TWritable(QSci* S) : FSci(S), FWas(S->SendScintilla(QSci::SCI_GETREADONLY) != 0) {
    if (FWas) FSci->SendScintilla(QSci::SCI_SETREADONLY, 0UL);
  }
  ~TWritable() {
    if (FWas) FSci->SendScintilla(QSci::SCI_SETREADONLY, 1UL);
  }
  TWritable(const TWritable&) = delete;
  TWritable& operator=(const TWritable&) = delete;

private:
  QSci* FSci;
  bool FWas;
};

}  // namespace

// ---------------------------------------------------------------------------------------
// The widget: a view of the control's document that reports moved carets once the input
// that moved them has been handled (the component itself reports them only when it paints).

class TjoScintillaView : public QsciScintillaBase {
  // A class name of its own, so that the accessibility factory below is the one asked.
  Q_OBJECT
public:
  explicit TjoScintillaView(TjoRichEdit* Owner) : FOwner(Owner) {}
  // The control stops using the view before the component goes (a widget going away
  // still reports its focus leaving).
  ~TjoScintillaView() override {
    if (FOwner && FOwner->FView == this) FOwner->FView = nullptr;
  }
  void Detach() { FOwner = nullptr; }

protected:
  bool event(QEvent* E) override {
    const bool Result = QsciScintillaBase::event(E);
    After(E);
    return Result;
  }
  bool viewportEvent(QEvent* E) override {
    const bool Result = QsciScintillaBase::viewportEvent(E);
    After(E);
    return Result;
  }
  // The control's own menu opens through the control; the component's never does.
  void contextMenuEvent(QContextMenuEvent* E) override { E->ignore(); }

private:
  void After(QEvent* E) {
    if (!FOwner) return;
    switch (E->type()) {
      case QEvent::KeyPress:
      case QEvent::InputMethod:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::MouseMove:
      case QEvent::Drop: {
        TjoRichEdit* Owner = FOwner;
        Guard([Owner] { Owner->CheckSelection(); });
        break;
      }
      default: break;
    }
  }
  TjoRichEdit* FOwner;
};

namespace {

// The component's own accessibility layer counts the caret's place in characters from
// the start of the text on every caret move and every paint, which makes a large form
// slow to type in. This one answers assistive tools when they ask (offsets in UTF-16
// code units, as Qt counts them), and the control tells them of a moved caret only
// while one is listening.
class TjoViewAccessible : public QAccessibleWidget, public QAccessibleTextInterface {
public:
  explicit TjoViewAccessible(QWidget* W) : QAccessibleWidget(W, QAccessible::EditableText) {}
  void* interface_cast(QAccessible::InterfaceType Type) override {
    if (Type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(Type);
  }
  QString text(QAccessible::Text T) const override {
    if (T == QAccessible::Value) return text(0, characterCount());
    return QAccessibleWidget::text(T);
  }
  void selection(int Index, int* StartOffset, int* EndOffset) const override {
    *StartOffset = *EndOffset = 0;
    if (Index != 0 || selectionCount() == 0) return;
    *StartOffset = Offset(Send(QSci::SCI_GETSELECTIONSTART));
    *EndOffset = Offset(Send(QSci::SCI_GETSELECTIONEND));
  }
  int selectionCount() const override {
    return Send(QSci::SCI_GETSELECTIONEND) > Send(QSci::SCI_GETSELECTIONSTART) ? 1 : 0;
  }
  void addSelection(int StartOffset, int EndOffset) override { setSelection(0, StartOffset, EndOffset); }
  void removeSelection(int) override { Send(QSci::SCI_SETEMPTYSELECTION, static_cast<unsigned long>(Send(QSci::SCI_GETCURRENTPOS))); }
  void setSelection(int, int StartOffset, int EndOffset) override {
    Send(QSci::SCI_SETSEL, static_cast<unsigned long>(Position(StartOffset)), Position(EndOffset));
  }
  int cursorPosition() const override { return Offset(Send(QSci::SCI_GETCURRENTPOS)); }
  void setCursorPosition(int Pos) override { Send(QSci::SCI_GOTOPOS, static_cast<unsigned long>(Position(Pos))); }
  QString text(int StartOffset, int EndOffset) const override {
    const long Start = Position(StartOffset);
    const long End = Position(EndOffset);
    if (End <= Start) return {};
    const auto* P = reinterpret_cast<const char*>(
        Send(QSci::SCI_GETRANGEPOINTER, static_cast<unsigned long>(Start), End - Start));
    return QString::fromUtf8(P, static_cast<qsizetype>(End - Start));
  }
  int characterCount() const override { return Offset(Send(QSci::SCI_GETLENGTH)); }
  QRect characterRect(int Pos) const override {
    const unsigned long At = static_cast<unsigned long>(Position(Pos));
    const int X = static_cast<int>(Send(QSci::SCI_POINTXFROMPOSITION, 0UL, static_cast<long>(At)));
    const int Y = static_cast<int>(Send(QSci::SCI_POINTYFROMPOSITION, 0UL, static_cast<long>(At)));
    const int H = static_cast<int>(Send(QSci::SCI_TEXTHEIGHT, static_cast<unsigned long>(Send(QSci::SCI_LINEFROMPOSITION, At))));
    const QPoint Origin = View()->viewport()->mapToGlobal(QPoint(X, Y));
    return QRect(Origin, QSize(std::max(1, H / 2), H));
  }
  int offsetAtPoint(const QPoint& Point) const override {
    const QPoint Local = View()->viewport()->mapFromGlobal(Point);
    const long Pos = Send(QSci::SCI_POSITIONFROMPOINTCLOSE, static_cast<unsigned long>(Local.x()), Local.y());
    return Pos < 0 ? -1 : Offset(Pos);
  }
  void scrollToSubstring(int StartIndex, int EndIndex) override {
    Send(QSci::SCI_SCROLLRANGE, static_cast<unsigned long>(Position(EndIndex)), Position(StartIndex));
  }
  QString attributes(int Pos, int* StartOffset, int* EndOffset) const override {
    *StartOffset = *EndOffset = Pos;
    return {};
  }

private:
  QsciScintillaBase* View() const { return static_cast<QsciScintillaBase*>(widget()); }
  long Send(unsigned int Message, unsigned long W = 0, long L = 0) const { return View()->SendScintilla(Message, W, L); }
  int Offset(long Pos) const { return static_cast<int>(Send(QSci::SCI_COUNTCODEUNITS, 0UL, Pos)); }
  long Position(int Offset) const {
    return Send(QSci::SCI_POSITIONRELATIVECODEUNITS, 0UL, static_cast<long>(std::max(Offset, 0)));
  }
};

QAccessibleInterface* ViewAccessible(const QString& ClassName, QObject* Object) {
  if (ClassName != QLatin1String("TjoScintillaView")) return nullptr;
  auto* W = qobject_cast<QWidget*>(Object);
  return W ? new TjoViewAccessible(W) : nullptr;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// The lines: one per line of the document. A line end after the last line starts no line
// of its own, so that lines added one by one each end with a line end.

class TjoRichEditStrings : public TStrings {
  LUMORA_CLASS(TjoRichEditStrings, TStrings)
public:
  explicit TjoRichEditStrings(TjoRichEdit* Edit) : FEdit(Edit) {}

  void Insert(int Index, const std::string& S) override {
    const int Count = GetCount();
    if (Index < 0 || Index > Count) Error("List index out of bounds (%d)", Index);
    const std::string Line = FEdit->ToDocument(S);
    if (Index < Count) {
      const int At = FEdit->LineIndex(Index);
      FEdit->ReplaceRange(At, At, Line + "\n");
      return;
    }
    const std::string_view Doc = FEdit->DocumentText();
    if (Doc.empty() || Doc.back() == '\n') {
      FEdit->ReplaceRange(static_cast<int>(Doc.size()), static_cast<int>(Doc.size()), Line + "\n");
    } else {
      FEdit->ReplaceRange(static_cast<int>(Doc.size()), static_cast<int>(Doc.size()), "\n" + Line);
    }
  }

  void Delete(int Index) override {
    const int Count = GetCount();
    if (Index < 0 || Index >= Count) Error("List index out of bounds (%d)", Index);
    const int Start = FEdit->LineIndex(Index);
    const int Next = FEdit->LineIndex(Index + 1);
    if (Next >= 0 && Index + 1 < FEdit->Sci()->SendScintilla(QSci::SCI_GETLINECOUNT)) {
      FEdit->ReplaceRange(Start, Next, {});
    } else if (Index > 0) {
      // The last line has no line end of its own: the one before it goes with it.
      FEdit->ReplaceRange(Start - 1, FEdit->GetTextLen(), {});
    } else {
      FEdit->ReplaceRange(0, FEdit->GetTextLen(), {});
    }
  }

  void Clear() override { FEdit->SetDocumentText(std::string()); }

  void AddStrings(TStrings* Strings) override {
    if (!Strings || Strings->Count() == 0) return;
    std::string Block;
    for (int I = 0; I < Strings->Count(); ++I) {
      Block += Strings->Strings(I);
      Block += '\n';
    }
    const std::string Text = FEdit->ToDocument(Block);
    const std::string_view Doc = FEdit->DocumentText();
    const int End = static_cast<int>(Doc.size());
    FEdit->ReplaceRange(End, End, Doc.empty() || Doc.back() == '\n' ? Text : "\n" + Text);
  }

  void Assign(TPersistent* Source) override {
    if (auto* Strings = dynamic_cast<TStrings*>(Source)) {
      if (Strings == this) return;
      std::string Text;
      for (int I = 0; I < Strings->Count(); ++I) {
        Text += Strings->Strings(I);
        Text += '\n';
      }
      FEdit->SetDocumentText(FEdit->ToDocument(Text));
      return;
    }
    TStrings::Assign(Source);
  }

  void SaveToStream(TStream& Stream) const override { Stream.WriteBuffer(Saved()); }
  void SaveToFile(const std::string& FileName) const override { SaveFile(FileName, Saved()); }

protected:
  std::string Get(int Index) const override {
    if (Index < 0 || Index >= GetCount()) Error("List index out of bounds (%d)", Index);
    std::string Buffer;
    const std::string_view Line = FEdit->LineBytes(Index, Buffer);
    return std::string(Line);
  }

  int GetCount() const override { return FEdit->LineCount(); }

  void Put(int Index, const std::string& S) override {
    if (Index < 0 || Index >= GetCount()) Error("List index out of bounds (%d)", Index);
    const int Start = FEdit->LineIndex(Index);
    const int End = static_cast<int>(FEdit->Sci()->SendScintilla(QSci::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(Index)));
    FEdit->ReplaceRange(Start, End, FEdit->ToDocument(S));
  }

  std::string GetTextStr() const override {
    std::string Text = FEdit->Text();
    if (!Text.empty() && Text.back() != '\n') Text += "\r\n";
    return Text;
  }

  void SetTextStr(std::string_view Text) override { FEdit->SetDocumentText(FEdit->ToDocument(WithLfLineEnds(Text))); }

  void SetUpdateState(bool Updating) override {
    if (QWidget* W = FEdit->Widget()) W->setUpdatesEnabled(!Updating);
  }

private:
  // What saving writes: plain text, or rich text while PlainText is false.
  std::string Saved() const { return FEdit->PlainText() ? GetTextStr() : FEdit->RichText(); }

  TjoRichEdit* FEdit;
};

LUMORA_CLASS_IMPL(TjoRichEditStrings) {}

// ---------------------------------------------------------------------------------------
// TjoRichEdit

LUMORA_CLASS_IMPL(TjoRichEdit) {
  c.Property("Align", &TjoRichEdit::Align, &TjoRichEdit::SetAlign).Default(alNone);
  c.Property("BorderStyle", &TjoRichEdit::BorderStyle, &TjoRichEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  c.Property("Color", &TjoRichEdit::Color, &TjoRichEdit::SetColor).Default(clWindow);
  c.Property("Enabled", &TjoRichEdit::Enabled, &TjoRichEdit::SetEnabled).Default(true);
  c.Property("Font", &TjoRichEdit::Font, &TjoRichEdit::SetFont);
  c.Property("HideSelection", &TjoRichEdit::HideSelection, &TjoRichEdit::SetHideSelection).Default(true);
  c.Property("Lines", &TjoRichEdit::Lines, &TjoRichEdit::SetLines);
  c.Property("ParentFont", &TjoRichEdit::ParentFont, &TjoRichEdit::SetParentFont).Default(true);
  c.Property("PlainText", &TjoRichEdit::PlainText, &TjoRichEdit::SetPlainText).Default(false);
  c.Property("ReadOnly", &TjoRichEdit::ReadOnly, &TjoRichEdit::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TjoRichEdit::ScrollBars, &TjoRichEdit::SetScrollBars).Default(ssNone);
  c.Property("TabOrder", &TjoRichEdit::TabOrder, &TjoRichEdit::SetTabOrder).Default(-1);
  c.Property("TabStop", &TjoRichEdit::TabStop, &TjoRichEdit::SetTabStop).Default(true);
  c.Property("Visible", &TjoRichEdit::Visible, &TjoRichEdit::SetVisible).Default(true);
  c.Property("WordWrap", &TjoRichEdit::WordWrap, &TjoRichEdit::SetWordWrap).Default(true);
  c.Property("OnChange", &TjoRichEdit::OnChange, &TjoRichEdit::OnChange);
  c.Property("OnSelectionChange", &TjoRichEdit::OnSelectionChange, &TjoRichEdit::OnSelectionChange);
  c.Property("OnEnter", &TjoRichEdit::OnEnter, &TjoRichEdit::OnEnter);
  c.Property("OnExit", &TjoRichEdit::OnExit, &TjoRichEdit::OnExit);
}

TjoRichEdit::TjoRichEdit(TComponent* AOwner) : TWinControl(AOwner) {
  FWidth = 185;
  FHeight = 89;
  FTabStop = true;
  FParentColor = false;
  FColor = clWindow;
  FCharset = FFont->Charset();
  static const bool Installed = [] {
    QAccessible::installFactory(ViewAccessible);
    return true;
  }();
  (void)Installed;
  FDocument = new QsciScintillaBase();
  FDocument->setObjectName(QStringLiteral("TjoRichEditDocument"));
  ConfigureView(FDocument);
  QObject::connect(FDocument, &QsciScintillaBase::SCN_MODIFIED, FDocument,
                   [this](int, int Type, const char*, int, int, int, int, int, int, int) {
                     if (Type & (QSci::SC_MOD_BEFOREINSERT | QSci::SC_MOD_BEFOREDELETE)) FChangePending = true;
                   });
  FLines = new TjoRichEditStrings(this);
  CreateMenu();
}

TjoRichEdit::~TjoRichEdit() {
  if (FView) {
    FView->Detach();
    FView = nullptr;
  }
  DestroyWidget();
  QObject::disconnect(FDocument, nullptr, nullptr, nullptr);
  delete FLines;
  FLines = nullptr;
  delete FDocument;
  FDocument = nullptr;
  // The shared dialogs go with any rich edit; the next use makes them again.
  delete GFindDialog;
  GFindDialog = nullptr;
  delete GReplaceDialog;
  GReplaceDialog = nullptr;
}

QsciScintillaBase* TjoRichEdit::Sci() const {
  if (FView) return FView.data();
  return FDocument;
}

void TjoRichEdit::ConfigureView(QsciScintillaBase* View) const {
  View->SendScintilla(QSci::SCI_SETCODEPAGE, static_cast<unsigned long>(QSci::SC_CP_UTF8));
  View->SendScintilla(QSci::SCI_SETEOLMODE, static_cast<unsigned long>(QSci::SC_EOL_LF));
  View->SendScintilla(QSci::SCI_SETPASTECONVERTENDINGS, 1UL);
  // Changes are heard before they are made, and reported once the operation that made
  // them is over (CheckSelection). The component's own report after a change also tells
  // its accessibility layer the change's place in characters from the start of the text,
  // counted afresh each time: a keystroke at the end of a large form would cost tens of
  // milliseconds.
  View->SendScintilla(QSci::SCI_SETMODEVENTMASK,
                      static_cast<unsigned long>(QSci::SC_MOD_BEFOREINSERT | QSci::SC_MOD_BEFOREDELETE));
  View->SendScintilla(QSci::SCI_SETLEXER, static_cast<unsigned long>(QSci::SCLEX_CONTAINER));
  View->SendScintilla(QSci::SCI_USEPOPUP, static_cast<unsigned long>(QSci::SC_POPUP_NEVER));
  for (unsigned long Margin = 0; Margin < 5; ++Margin) View->SendScintilla(QSci::SCI_SETMARGINWIDTHN, Margin, 0L);
  View->SendScintilla(QSci::SCI_SETMARGINLEFT, 0UL, 2L);
  View->SendScintilla(QSci::SCI_SETSCROLLWIDTH, 1UL);
  View->SendScintilla(QSci::SCI_SETSCROLLWIDTHTRACKING, 1UL);
  View->SendScintilla(QSci::SCI_INDICSETSTYLE, static_cast<unsigned long>(MarkIndicator),
                      static_cast<long>(QSci::INDIC_TEXTFORE));
  View->SendScintilla(QSci::SCI_INDICSETFORE, static_cast<unsigned long>(MarkIndicator), ColorToQColor(clRed));
  // Keys of the component that a rich edit does not have: duplicating, cutting and
  // swapping lines, changing case. Ctrl+Insert is the control's own (KeyDown).
  const int Ctrl = QSci::SCMOD_CTRL << 16;
  const int CtrlShift = (QSci::SCMOD_CTRL | QSci::SCMOD_SHIFT) << 16;
  for (const int Key : {QSci::SCK_INSERT + Ctrl, 'D' + Ctrl, 'L' + Ctrl, 'L' + CtrlShift, 'T' + Ctrl, 'T' + CtrlShift,
                        'U' + Ctrl, 'U' + CtrlShift})
    View->SendScintilla(QSci::SCI_CLEARCMDKEY, static_cast<unsigned long>(Key));
}

void TjoRichEdit::ApplyFont(QsciScintillaBase* View) const {
  const QFont& F = FFont->Handle();
  const QByteArray Family = F.family().toUtf8();
  double Points = F.pointSizeF();
  if (F.pixelSize() > 0) Points = F.pixelSize() * 72.0 / std::max(1, View->logicalDpiY());
  View->SendScintilla(QSci::SCI_STYLESETFONT, static_cast<uintptr_t>(QSci::STYLE_DEFAULT), Family.constData());
  View->SendScintilla(QSci::SCI_STYLESETSIZEFRACTIONAL, static_cast<unsigned long>(QSci::STYLE_DEFAULT),
                      static_cast<long>(Points * static_cast<double>(QSci::SC_FONT_SIZE_MULTIPLIER) + 0.5));
  const TFontStyles Style = FFont->Style();
  View->SendScintilla(QSci::SCI_STYLESETBOLD, static_cast<unsigned long>(QSci::STYLE_DEFAULT),
                      static_cast<long>(Style.Contains(fsBold)));
  View->SendScintilla(QSci::SCI_STYLESETITALIC, static_cast<unsigned long>(QSci::STYLE_DEFAULT),
                      static_cast<long>(Style.Contains(fsItalic)));
  View->SendScintilla(QSci::SCI_STYLESETUNDERLINE, static_cast<unsigned long>(QSci::STYLE_DEFAULT),
                      static_cast<long>(Style.Contains(fsUnderline)));
  View->SendScintilla(QSci::SCI_STYLESETFORE, static_cast<unsigned long>(QSci::STYLE_DEFAULT),
                      ColorToQColor(FFont->Color()));
  View->SendScintilla(QSci::SCI_STYLESETBACK, static_cast<unsigned long>(QSci::STYLE_DEFAULT), ColorToQColor(FColor));
  View->SendScintilla(QSci::SCI_STYLECLEARALL);
  View->SendScintilla(QSci::SCI_STYLESETBOLD, static_cast<unsigned long>(BoldStyle), 1L);
  View->SendScintilla(QSci::SCI_SETSELBACK, 1UL, ColorToQColor(clHighlight));
  View->SendScintilla(QSci::SCI_SETSELFORE, 1UL, ColorToQColor(clHighlightText));
  View->SendScintilla(QSci::SCI_SETCARETFORE, ColorToQColor(FFont->Color()));
}

void TjoRichEdit::CreateWidget() {
  auto* View = new TjoScintillaView(this);
  void* Doc = FDocument->SendScintillaPtrResult(QSci::SCI_GETDOCPOINTER);
  View->SendScintilla(QSci::SCI_SETDOCPOINTER, 0UL, Doc);
  ConfigureView(View);
  View->setFocusPolicy(Qt::StrongFocus);
  View->SendScintilla(QSci::SCI_SETSEL, static_cast<unsigned long>(FDocument->SendScintilla(QSci::SCI_GETANCHOR)),
                      FDocument->SendScintilla(QSci::SCI_GETCURRENTPOS));
  QObject::connect(View, &QsciScintillaBase::SCN_UPDATEUI, View, [this](int) { Guard([this] { CheckSelection(); }); });
  FView = View;
  AdoptWidget(View);
}

void TjoRichEdit::UpdateWidgetText() {
  FDocument->SendScintilla(QSci::SCI_SETREADONLY, static_cast<unsigned long>(FReadOnly));
  TjoScintillaView* View = FView.data();
  if (!View) return;
  const bool Wrap = FWordWrap;
  View->SendScintilla(QSci::SCI_SETWRAPMODE, static_cast<unsigned long>(Wrap ? QSci::SC_WRAP_WORD : QSci::SC_WRAP_NONE));
  const bool Vert = FScrollBars == ssVertical || FScrollBars == ssBoth;
  const bool Horz = (FScrollBars == ssHorizontal || FScrollBars == ssBoth) && !Wrap;
  View->SendScintilla(QSci::SCI_SETVSCROLLBAR, static_cast<unsigned long>(Vert));
  View->SendScintilla(QSci::SCI_SETHSCROLLBAR, static_cast<unsigned long>(Horz));
  View->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
}

void TjoRichEdit::UpdateWidgetFont() {
  TWinControl::UpdateWidgetFont();
  ApplyFont(FDocument);
  if (FView) ApplyFont(FView.data());
}

void TjoRichEdit::UpdateWidgetColors() {
  TWinControl::UpdateWidgetColors();
  if (FView) ApplyFont(FView.data());
}

void TjoRichEdit::FontChanged() {
  if (FFont->Charset() != FCharset) {
    // The text keeps its bytes: they are read again in the new code page.
    const std::string_view Doc = DocumentText();
    if (!IsAscii(Doc)) {
      const std::string Bytes = FromDocument(Doc);
      FCharset = FFont->Charset();
      SetDocumentText(ToDocument(Bytes));
    }
    FCharset = FFont->Charset();
  }
  TWinControl::FontChanged();
}

void TjoRichEdit::ColorChanged() {
  TWinControl::ColorChanged();
  UpdateWidgetColors();
}

// ---- Properties

void TjoRichEdit::SetReadOnly(bool Value) {
  FReadOnly = Value;
  UpdateWidgetText();
}

void TjoRichEdit::SetHideSelection(bool Value) {
  FHideSelection = Value;
  if (FView) {
    const bool Hidden = Value && !FView->hasFocus();
    FView->SendScintilla(QSci::SCI_HIDESELECTION, static_cast<unsigned long>(Hidden));
  }
}

void TjoRichEdit::SetScrollBars(TScrollStyle Value) {
  FScrollBars = Value;
  UpdateWidgetText();
}

void TjoRichEdit::SetWordWrap(bool Value) {
  FWordWrap = Value;
  UpdateWidgetText();
}

void TjoRichEdit::SetBorderStyle(TBorderStyle Value) {
  FBorderStyle = Value;
  UpdateWidgetText();
}

// ---- Code pages

std::string TjoRichEdit::ToDocument(std::string_view Bytes) const {
  if (IsAscii(Bytes)) return std::string(Bytes);
  return AnsiToUnicode(Bytes, FCharset).toUtf8().toStdString();
}

std::string TjoRichEdit::FromDocument(std::string_view Utf8) const {
  if (IsAscii(Utf8)) return std::string(Utf8);
  return UnicodeToAnsi(QString::fromUtf8(Utf8.data(), static_cast<qsizetype>(Utf8.size())), FCharset);
}

// ---- The text

TStrings* TjoRichEdit::Lines() const { return FLines; }

void TjoRichEdit::SetLines(TStrings* Value) { FLines->Assign(Value); }

std::string_view TjoRichEdit::DocumentText() const {
  QSci* S = Sci();
  const long Length = S->SendScintilla(QSci::SCI_GETLENGTH);
  if (Length <= 0) return {};
  const char* P = static_cast<const char*>(S->SendScintillaPtrResult(QSci::SCI_GETCHARACTERPOINTER));
  return {P, static_cast<std::size_t>(Length)};
}

bool TjoRichEdit::DocumentIsAscii() const { return IsAscii(DocumentText()); }

std::string TjoRichEdit::Text() const {
  const std::string Bytes = FromDocument(DocumentText());
  std::string Out;
  Out.reserve(Bytes.size() + Bytes.size() / 16);
  for (const char C : Bytes) {
    if (C == '\n') Out += '\r';
    Out += C;
  }
  return Out;
}

void TjoRichEdit::SetText(const std::string& Value) { SetDocumentText(ToDocument(WithLfLineEnds(Value))); }

int TjoRichEdit::GetTextLen() const { return static_cast<int>(Sci()->SendScintilla(QSci::SCI_GETLENGTH)); }

int TjoRichEdit::LineCount() const {
  QSci* S = Sci();
  const int Lines = static_cast<int>(S->SendScintilla(QSci::SCI_GETLINECOUNT));
  const long LastStart = S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Lines - 1));
  return LastStart >= S->SendScintilla(QSci::SCI_GETLENGTH) ? Lines - 1 : Lines;
}

void TjoRichEdit::Clear() { SetDocumentText(std::string()); }

std::string_view TjoRichEdit::LineBytes(int Index, std::string& Buffer) const {
  QSci* S = Sci();
  const long Start = S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Index));
  const long End = S->SendScintilla(QSci::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(Index));
  if (Start < 0 || End <= Start) return {};
  const auto* P = reinterpret_cast<const char*>(
      S->SendScintilla(QSci::SCI_GETRANGEPOINTER, static_cast<unsigned long>(Start), End - Start));
  const std::string_view Line(P, static_cast<std::size_t>(End - Start));
  if (IsAscii(Line)) return Line;
  Buffer = FromDocument(Line);
  return Buffer;
}

void TjoRichEdit::SetDocumentText(const std::string& Utf8) {
  QSci* S = Sci();
  {
    TWritable Writable(S);
    S->SendScintilla(QSci::SCI_CLEARALL);
    if (!Utf8.empty()) S->SendScintilla(QSci::SCI_APPENDTEXT, static_cast<uintptr_t>(Utf8.size()), Utf8.data());
  }
  S->SendScintilla(QSci::SCI_EMPTYUNDOBUFFER);
  S->SendScintilla(QSci::SCI_SETEMPTYSELECTION, 0UL);
  if (FView) {
    FView->SendScintilla(QSci::SCI_SETFIRSTVISIBLELINE, 0UL);
    FView->SendScintilla(QSci::SCI_SETXOFFSET, 0UL);
  }
  CheckSelection();
}

void TjoRichEdit::ReplaceRange(int Start, int End, std::string_view Utf8) {
  QSci* S = Sci();
  {
    TWritable Writable(S);
    S->SendScintilla(QSci::SCI_SETTARGETRANGE, static_cast<unsigned long>(Start), static_cast<long>(End));
    S->SendScintilla(QSci::SCI_REPLACETARGET, static_cast<uintptr_t>(Utf8.size()), Utf8.empty() ? "" : Utf8.data());
  }
  CheckSelection();
}

void TjoRichEdit::ReplaceLines(const std::vector<std::pair<int, std::string>>& NewLines) {
  // The lines in order, each once (the last text given for it wins).
  std::vector<std::pair<int, std::string>> Sorted;
  const int Count = LineCount();
  for (const auto& Line : NewLines) {
    if (Line.first < 0 || Line.first >= Count) continue;
    const auto It = std::find_if(Sorted.begin(), Sorted.end(), [&](const auto& L) { return L.first == Line.first; });
    if (It != Sorted.end()) {
      It->second = Line.second;
    } else {
      Sorted.push_back(Line);
    }
  }
  if (Sorted.empty()) return;
  std::stable_sort(Sorted.begin(), Sorted.end(), [](const auto& A, const auto& B) { return A.first < B.first; });
  // One replacement from the first line to the last; what lies between stays as it is.
  QSci* S = Sci();
  const std::string_view Doc = DocumentText();
  std::string Middle;
  long First = -1;
  long PreviousEnd = -1;
  for (const auto& [Index, Text] : Sorted) {
    const long Start = S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Index));
    const long End = S->SendScintilla(QSci::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(Index));
    if (PreviousEnd < 0) {
      First = Start;
    } else {
      Middle.append(Doc.substr(static_cast<std::size_t>(PreviousEnd), static_cast<std::size_t>(Start - PreviousEnd)));
    }
    Middle += ToDocument(Text);
    PreviousEnd = End;
  }
  ReplaceRange(static_cast<int>(First), static_cast<int>(PreviousEnd), Middle);
}

bool TjoRichEdit::CanUndo() const { return Sci()->SendScintilla(QSci::SCI_CANUNDO) != 0; }

void TjoRichEdit::Undo() {
  Sci()->SendScintilla(QSci::SCI_UNDO);
  CheckSelection();
}

// ---- Selection and clipboard

int TjoRichEdit::SelStart() const { return static_cast<int>(Sci()->SendScintilla(QSci::SCI_GETSELECTIONSTART)); }

int TjoRichEdit::SelLength() const {
  QSci* S = Sci();
  return static_cast<int>(S->SendScintilla(QSci::SCI_GETSELECTIONEND) - S->SendScintilla(QSci::SCI_GETSELECTIONSTART));
}

void TjoRichEdit::SetSelStart(int Value) {
  Value = std::clamp(Value, 0, GetTextLen());
  Sci()->SendScintilla(QSci::SCI_GOTOPOS, static_cast<unsigned long>(Value));
  CheckSelection();
}

void TjoRichEdit::SetSelLength(int Value) { SetSelection(SelStart(), Value); }

void TjoRichEdit::SetSelection(int Start, int Length) {
  const int TextLen = GetTextLen();
  Start = std::clamp(Start, 0, TextLen);
  const int End = std::clamp(Start + std::max(Length, 0), Start, TextLen);
  Sci()->SendScintilla(QSci::SCI_SETSEL, static_cast<unsigned long>(Start), static_cast<long>(End));
  CheckSelection();
}

std::string TjoRichEdit::SelText() const {
  const int Start = SelStart();
  const std::string_view Doc = DocumentText();
  const std::string Bytes =
      FromDocument(Doc.substr(static_cast<std::size_t>(Start), static_cast<std::size_t>(SelLength())));
  std::string Out;
  for (const char C : Bytes) {
    if (C == '\n') Out += '\r';
    Out += C;
  }
  return Out;
}

void TjoRichEdit::SetSelText(const std::string& Value) {
  const int Start = SelStart();
  const std::string Text = ToDocument(WithLfLineEnds(Value));
  ReplaceRange(Start, Start + SelLength(), Text);
  Sci()->SendScintilla(QSci::SCI_GOTOPOS, static_cast<unsigned long>(Start + static_cast<int>(Text.size())));
  CheckSelection();
}

void TjoRichEdit::SelectAll() {
  Sci()->SendScintilla(QSci::SCI_SELECTALL);
  CheckSelection();
}

void TjoRichEdit::ClearSelection() {
  Sci()->SendScintilla(QSci::SCI_REPLACESEL, static_cast<uintptr_t>(0), "");
  CheckSelection();
}

void TjoRichEdit::CopyToClipboard() { Sci()->SendScintilla(QSci::SCI_COPY); }

void TjoRichEdit::CutToClipboard() {
  if (FReadOnly) return;
  Sci()->SendScintilla(QSci::SCI_CUT);
  CheckSelection();
}

void TjoRichEdit::PasteFromClipboard() {
  if (FReadOnly) return;
  Sci()->SendScintilla(QSci::SCI_PASTE);
  CheckSelection();
}

int TjoRichEdit::PositionAfter(int Pos) const {
  return static_cast<int>(Sci()->SendScintilla(QSci::SCI_POSITIONAFTER, static_cast<unsigned long>(Pos)));
}

int TjoRichEdit::FindText(const std::string& Text, int StartPos, int Length, TSearchTypes Options) const {
  if (Text.empty() || Length <= 0) return -1;
  const int TextLen = GetTextLen();
  const int Start = std::clamp(StartPos, 0, TextLen);
  const std::string Needle = ToDocument(Text);
  const int Found = FindInDocument(Needle, Start, TextLen, Options);
  if (Found < 0) return -1;
  // The match must end within reach. Characters are at least one byte each, so only a
  // match further away in bytes than the reach needs its characters counted.
  const long long End = static_cast<long long>(Found) + static_cast<long long>(Needle.size());
  if (End - Start <= Length) return Found;
  const long Characters =
      Sci()->SendScintilla(QSci::SCI_COUNTCHARACTERS, static_cast<unsigned long>(Start), static_cast<long>(End));
  return Characters <= Length ? Found : -1;
}

int TjoRichEdit::FindInDocument(std::string_view Needle, int Start, int End, TSearchTypes Options) const {
  if (Needle.empty() || End - Start < static_cast<int>(Needle.size())) return -1;
  const bool MatchCase = Options.Contains(stMatchCase);
  const bool WholeWord = Options.Contains(stWholeWord);
  if (!MatchCase && !IsAscii(Needle)) {
    // Letters beyond ASCII: the component knows their cases.
    QSci* S = Sci();
    S->SendScintilla(QSci::SCI_SETTARGETRANGE, static_cast<unsigned long>(Start), static_cast<long>(End));
    S->SendScintilla(QSci::SCI_SETSEARCHFLAGS, static_cast<unsigned long>(WholeWord ? QSci::SCFIND_WHOLEWORD : 0));
    const long Found =
        S->SendScintilla(QSci::SCI_SEARCHINTARGET, static_cast<uintptr_t>(Needle.size()), std::string(Needle).c_str());
    return Found < 0 ? -1 : static_cast<int>(Found);
  }
  const std::string_view Doc = DocumentText();
  const std::size_t Last = static_cast<std::size_t>(End) - Needle.size();  // the last place a match may start
  auto IsWholeWord = [&](std::size_t At) {
    const bool Before = At > 0 && IsWordByte(static_cast<unsigned char>(Doc[At - 1]));
    const std::size_t After = At + Needle.size();
    return !Before && !(After < Doc.size() && IsWordByte(static_cast<unsigned char>(Doc[After])));
  };
  std::size_t From = static_cast<std::size_t>(Start);
  if (MatchCase) {
    while (From <= Last) {
      const std::size_t At = Doc.substr(0, static_cast<std::size_t>(End)).find(Needle, From);
      if (At == std::string_view::npos) return -1;
      if (!WholeWord || IsWholeWord(At)) return static_cast<int>(At);
      From = At + 1;
    }
    return -1;
  }
  // Any case: candidates are found by the first byte in both cases, then compared. Each
  // case keeps its own next candidate, so that no stretch is scanned twice.
  const unsigned char First = AsciiLower(static_cast<unsigned char>(Needle[0]));
  const unsigned char FirstUpper = First >= 'a' && First <= 'z' ? static_cast<unsigned char>(First - 32) : First;
  const char* Base = Doc.data();
  constexpr std::size_t None = std::string_view::npos;
  auto Next = [&](unsigned char C, std::size_t At) -> std::size_t {
    if (At > Last) return None;
    const void* Hit = std::memchr(Base + At, C, Last - At + 1);
    return Hit ? static_cast<std::size_t>(static_cast<const char*>(Hit) - Base) : None;
  };
  std::size_t Lower = Next(First, From);
  std::size_t Upper = FirstUpper != First ? Next(FirstUpper, From) : None;
  for (;;) {
    const std::size_t At = std::min(Lower, Upper);
    if (At == None) return -1;
    bool Same = true;
    for (std::size_t I = 1; I < Needle.size() && Same; ++I)
      Same = AsciiLower(static_cast<unsigned char>(Base[At + I])) == AsciiLower(static_cast<unsigned char>(Needle[I]));
    if (Same && (!WholeWord || IsWholeWord(At))) return static_cast<int>(At);
    if (At == Lower) {
      Lower = Next(First, At + 1);
    } else {
      Upper = Next(FirstUpper, At + 1);
    }
  }
}

// ---- Lines and positions

int TjoRichEdit::LineFromChar(int Pos) const {
  return static_cast<int>(Sci()->SendScintilla(QSci::SCI_LINEFROMPOSITION, static_cast<unsigned long>(std::max(Pos, 0))));
}

int TjoRichEdit::LineIndex(int Line) const {
  QSci* S = Sci();
  if (Line < 0) Line = LineFromChar(SelStart());
  if (Line >= S->SendScintilla(QSci::SCI_GETLINECOUNT)) return -1;
  return static_cast<int>(S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Line)));
}

int TjoRichEdit::LineLength(int Line) const {
  QSci* S = Sci();
  if (Line < 0 || Line >= S->SendScintilla(QSci::SCI_GETLINECOUNT)) return 0;
  return static_cast<int>(S->SendScintilla(QSci::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(Line)) -
                          S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Line)));
}

int TjoRichEdit::FirstVisibleLine() const {
  QSci* S = Sci();
  const long Visible = S->SendScintilla(QSci::SCI_GETFIRSTVISIBLELINE);
  return static_cast<int>(S->SendScintilla(QSci::SCI_DOCLINEFROMVISIBLE, static_cast<unsigned long>(Visible)));
}

int TjoRichEdit::VisibleLineCount() const { return static_cast<int>(Sci()->SendScintilla(QSci::SCI_LINESONSCREEN)); }

void TjoRichEdit::LineScroll(int Count) {
  if (Count == 0) return;
  Sci()->SendScintilla(QSci::SCI_LINESCROLL, 0UL, static_cast<long>(Count));
}

int TjoRichEdit::CharFromPos(TPoint Point) const {
  return static_cast<int>(
      Sci()->SendScintilla(QSci::SCI_POSITIONFROMPOINT, static_cast<unsigned long>(std::max(Point.X, 0)),
                           static_cast<long>(std::max(Point.Y, 0))));
}

// ---- Formatting

void TjoRichEdit::SetBoldRanges(const std::vector<TjoTextRange>& Ranges) {
  QSci* S = Sci();
  S->SendScintilla(QSci::SCI_CLEARDOCUMENTSTYLE);
  const int TextLen = GetTextLen();
  for (const TjoTextRange& R : Ranges) {
    if (R.Length <= 0 || R.Start < 0 || R.Start + R.Length > TextLen) continue;
    S->SendScintilla(QSci::SCI_STARTSTYLING, static_cast<unsigned long>(R.Start), 0xFFL);
    S->SendScintilla(QSci::SCI_SETSTYLING, static_cast<unsigned long>(R.Length), static_cast<long>(BoldStyle));
  }
  if (FView) FView->viewport()->update();
}

void TjoRichEdit::ClearFormatting() {
  Sci()->SendScintilla(QSci::SCI_CLEARDOCUMENTSTYLE);
  if (FView) FView->viewport()->update();
}

bool TjoRichEdit::IsBold(int Pos) const {
  return Sci()->SendScintilla(QSci::SCI_GETSTYLEAT, static_cast<unsigned long>(Pos)) == BoldStyle;
}

TColor TjoRichEdit::TextColorAt(int Pos) const {
  const long Marked = Sci()->SendScintilla(QSci::SCI_INDICATORVALUEAT, static_cast<unsigned long>(MarkIndicator),
                                          static_cast<long>(Pos));
  return Marked ? clRed : FFont->Color();
}

// ---- Lines and marking

void TjoRichEdit::GotoLine(int Line) {
  int Pos = LineIndex(Line);
  if (Pos < 0) Pos = GetTextLen();
  Sci()->SendScintilla(QSci::SCI_GOTOPOS, static_cast<unsigned long>(Pos));
  CheckSelection();
}

void TjoRichEdit::ScrollToLine(int Line) {
  LineScroll(Line - FirstVisibleLine());
  GotoLine(Line);
}

void TjoRichEdit::HighlightLine(int Line) {
  if (Line < 0) Line = -1;
  if (Line == FHighlightedLine) return;
  int ColourLine;
  bool Red;
  if (Line >= 0) {
    HighlightLine(-1);
    const int First = FirstVisibleLine();
    const int Last = LineFromChar(CharFromPos(Point(1, Height() - 5)));
    LineScroll((Line - First) - (Last - First) / 2);
    ColourLine = Line;
    Red = true;
  } else {
    ColourLine = FHighlightedLine;
    Red = false;
  }
  const bool SavedHide = FHideSelection;
  SetHideSelection(true);
  LockChange = true;
  try {
    const int Start = LineIndex(ColourLine);
    if (Start >= 0) {
      int End = LineIndex(ColourLine + 1);
      if (End < 0) End = GetTextLen();
      QSci* S = Sci();
      S->SendScintilla(QSci::SCI_SETINDICATORCURRENT, static_cast<unsigned long>(MarkIndicator));
      if (Red) {
        S->SendScintilla(QSci::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(Start), static_cast<long>(End - Start));
      } else {
        S->SendScintilla(QSci::SCI_INDICATORCLEARRANGE, static_cast<unsigned long>(Start), static_cast<long>(End - Start));
      }
      S->SendScintilla(QSci::SCI_SETEMPTYSELECTION, static_cast<unsigned long>(Start));
      CheckSelection();
    }
  } catch (...) {
    SetHideSelection(SavedHide);
    LockChange = false;
    throw;
  }
  SetHideSelection(SavedHide);
  LockChange = false;
  FHighlightedLine = Line;
}

void TjoRichEdit::ResetModified(bool Value) {
  FModified = Value;
  Sci()->SendScintilla(QSci::SCI_EMPTYUNDOBUFFER);
}

// ---- Events

void TjoRichEdit::DocumentChanged() {
  FModified = true;
  if (!LockChange) Change();
}

void TjoRichEdit::Change() {
  if (OnChange) OnChange(this);
}

void TjoRichEdit::CheckSelection() {
  if (FChangePending) {
    FChangePending = false;
    DocumentChanged();
  }
  QSci* S = Sci();
  const int Anchor = static_cast<int>(S->SendScintilla(QSci::SCI_GETANCHOR));
  const int Caret = static_cast<int>(S->SendScintilla(QSci::SCI_GETCURRENTPOS));
  if (Anchor == FLastAnchor && Caret == FLastCaret) return;
  FLastAnchor = Anchor;
  FLastCaret = Caret;
  // The document keeps the selection for a widget made later.
  if (FView) FDocument->SendScintilla(QSci::SCI_SETSEL, static_cast<unsigned long>(Anchor), static_cast<long>(Caret));
  SelectionChange();
}

void TjoRichEdit::SelectionChange() {
  if (FView && QAccessible::isActive()) {
    const int Offset = static_cast<int>(
        FView->SendScintilla(QSci::SCI_COUNTCODEUNITS, 0UL, FView->SendScintilla(QSci::SCI_GETCURRENTPOS)));
    QAccessibleTextCursorEvent Event(FView.data(), Offset);
    QAccessible::updateAccessibility(&Event);
  }
  if (OnSelectionChange) OnSelectionChange(this);
  if (!FOnCursorPosChange) return;
  QSci* S = Sci();
  const int Start = SelStart();
  const int Line = LineFromChar(Start);
  const long LineStart = S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Line));
  const int Col = static_cast<int>(
      S->SendScintilla(QSci::SCI_COUNTCHARACTERS, static_cast<unsigned long>(LineStart), static_cast<long>(Start)));
  FOnCursorPosChange(this, Line, Col);
}

void TjoRichEdit::SetOnCursorPosChange(const TjoCursorPosChange& Value) {
  FOnCursorPosChange = Value;
  if (FView) SelectionChange();
}

bool TjoRichEdit::WidgetEvent(QObject* Watched, QEvent* Event) {
  // A rich edit elsewhere guards against switching keyboard layouts by itself; neither
  // Qt nor this component ever changes the input method on its own, so there is nothing
  // to guard here.
  // A view on its way out still reports its focus leaving: nothing to do then.
  if (!FView) return TWinControl::WidgetEvent(Watched, Event);
  switch (Event->type()) {
    case QEvent::FocusIn:
      if (FHideSelection) FView->SendScintilla(QSci::SCI_HIDESELECTION, 0UL);
      DoEnter();
      break;
    case QEvent::FocusOut: {
      const Qt::FocusReason Reason = static_cast<QFocusEvent*>(Event)->reason();
      // A menu opening keeps the focus where it is.
      if (Reason == Qt::PopupFocusReason) break;
      if (FHideSelection) FView->SendScintilla(QSci::SCI_HIDESELECTION, 1UL);
      // Another window taking over leaves the focus with this control in its own window.
      if (Reason == Qt::ActiveWindowFocusReason) break;
      DoExit();
      break;
    }
    default: break;
  }
  return TWinControl::WidgetEvent(Watched, Event);
}

void TjoRichEdit::KeyDown(Word& Key, TShiftState Shift) {
  // Replaces the inherited handling: no OnKeyDown; the key still reaches the text.
  if (Key == VK_INSERT && Shift == TShiftState{ssCtrl} && SelLength() > 0) CopyToClipboard();
}

// The controls layer tells focus moves too: each is told once.
void TjoRichEdit::DoEnter() {
  if (FEntered) return;
  FEntered = true;
  TWinControl::DoEnter();
}

void TjoRichEdit::DoExit() {
  if (!FEntered) return;
  FEntered = false;
  if (GReplaceDialog && GReplaceDialog->Dialog() && GReplaceDialog->Dialog()->isVisible()) GReplaceDialog->CloseDialog();
  TWinControl::DoExit();
}

// ---- The context menu

TMenuItem* TjoRichEdit::AddItem(const std::string& Caption, const char* ShortCut, const TNotifyEvent& OnClick) {
  auto* Item = new TMenuItem(nullptr);
  Item->SetCaption(Caption);
  if (ShortCut) Item->SetShortCut(TextToShortCut(ShortCut));
  Item->OnClick = OnClick;
  FMenu->Items()->Add(Item);
  return Item;
}

void TjoRichEdit::CreateMenu() {
  FMenu = new TPopupMenu(this);
  FMenu->OnPopup = MakeMethod<&TjoRichEdit::UpdateMenu>(this);
  UndoItem = AddItem(std::string(ResStr::SRichEditUndo), "Ctrl+Z", MakeMethod<&TjoRichEdit::MenuUndo>(this));
  AddItem(cLineCaption, nullptr, {});
  CutItem = AddItem(std::string(ResStr::SRichEditCut), "Ctrl+X", MakeMethod<&TjoRichEdit::MenuCut>(this));
  CopyItem = AddItem(std::string(ResStr::SRichEditCopy), "Ctrl+C", MakeMethod<&TjoRichEdit::MenuCopy>(this));
  PasteItem = AddItem(std::string(ResStr::SRichEditPaste), "Ctrl+V", MakeMethod<&TjoRichEdit::MenuPaste>(this));
  DeleteItem = AddItem(std::string(ResStr::SRichEditDelete), "Ctrl+Del", MakeMethod<&TjoRichEdit::MenuDelete>(this));
  AddItem(cLineCaption, nullptr, {});
  SelectAllItem =
      AddItem(std::string(ResStr::SRichEditSelectAll), "Ctrl+A", MakeMethod<&TjoRichEdit::MenuSelectAll>(this));
  AddItem(cLineCaption, nullptr, {});
  FindItem = AddItem(std::string(ResStr::SRichEditFind), "Ctrl+F", MakeMethod<&TjoRichEdit::MenuFind>(this));
  ReplaceItem = AddItem(std::string(ResStr::SRichEditReplace), "Ctrl+R", MakeMethod<&TjoRichEdit::MenuReplace>(this));
  SearchAgainItem =
      AddItem(std::string(ResStr::SRichEditSearchAgain), "F3", MakeMethod<&TjoRichEdit::MenuSearchAgain>(this));
  SetPopupMenu(FMenu);
}

void TjoRichEdit::UpdateMenu(TObject*) {
  const bool Editable = !FReadOnly;
  const bool HasSelection = SelLength() > 0;
  PasteItem->SetEnabled(Editable && Clipboard()->HasText());
  CutItem->SetEnabled(Editable && HasSelection);
  DeleteItem->SetEnabled(Editable && HasSelection);
  CopyItem->SetEnabled(HasSelection);
  ReplaceItem->SetEnabled(Editable);
  SearchAgainItem->SetEnabled(GFindDialog && !IsBlank(GFindDialog->FindText()));
  UndoItem->SetEnabled(CanUndo());
  SelectAllItem->SetEnabled(true);
  FindItem->SetEnabled(true);
}

void TjoRichEdit::MenuUndo(TObject*) { Undo(); }
void TjoRichEdit::MenuCut(TObject*) { CutToClipboard(); }
void TjoRichEdit::MenuCopy(TObject*) { CopyToClipboard(); }
void TjoRichEdit::MenuPaste(TObject*) { PasteFromClipboard(); }

void TjoRichEdit::MenuDelete(TObject*) {
  if (FReadOnly || SelLength() == 0) return;
  ClearSelection();
}

void TjoRichEdit::MenuSelectAll(TObject*) { SelectAll(); }
void TjoRichEdit::MenuFind(TObject*) { Find(); }
void TjoRichEdit::MenuReplace(TObject*) { Replace(); }
void TjoRichEdit::MenuSearchAgain(TObject*) {
  if (!GFindDialog) {
    GFindDialog = new TFindDialog(nullptr);
    GFindDialog->SetOptions(GFindDialog->Options() + frHideUpDown);
  }
  SearchAgain(GFindDialog);
}

// ---- Search

TFindDialog* TjoRichEdit::SharedFindDialog() { return GFindDialog; }
TReplaceDialog* TjoRichEdit::SharedReplaceDialog() { return GReplaceDialog; }
const std::string& TjoRichEdit::SearchText() { return GSearchText; }

void TjoRichEdit::Find() {
  if (!GFindDialog) {
    GFindDialog = new TFindDialog(nullptr);
    GFindDialog->SetOptions(GFindDialog->Options() + frHideUpDown);
  }
  GFindDialog->OnFind = MakeMethod<&TjoRichEdit::FindFound>(this);
  GFindDialog->Execute();
}

void TjoRichEdit::FindFound(TObject* Sender) {
  auto* Dialog = dynamic_cast<TFindDialog*>(Sender);
  if (!Dialog) return;
  Dialog->CloseDialog();
  SearchAgain(Dialog);
}

void TjoRichEdit::Replace() {
  GSavedHideSelection = FHideSelection;
  SetHideSelection(false);
  if (!GReplaceDialog) {
    GReplaceDialog = new TReplaceDialog(nullptr);
    GReplaceDialog->SetOptions(GReplaceDialog->Options() + frHideUpDown);
  }
  GReplaceDialog->OnClose = MakeMethod<&TjoRichEdit::ReplaceDialogClose>(this);
  GReplaceDialog->OnFind = [this](TObject* Sender) { SearchAgain(dynamic_cast<TFindDialog*>(Sender)); };
  GReplaceDialog->OnReplace = MakeMethod<&TjoRichEdit::ReplaceFound>(this);
  GReplaceDialog->SetFindText(GSearchText);
  GReplaceDialog->Execute();
}

void TjoRichEdit::ReplaceDialogClose(TObject*) { SetHideSelection(GSavedHideSelection); }

bool TjoRichEdit::SearchNext(TFindDialog* Dialog) {
  if (!Dialog) return false;
  TSearchTypes Options;
  if (Dialog->Options().Contains(frWholeWord)) Options += stWholeWord;
  if (Dialog->Options().Contains(frMatchCase)) Options += stMatchCase;
  GSearchText = Dialog->FindText();
  if (IsBlank(GSearchText)) return false;
  // One character after the selection start, so that a repeated search moves on.
  const int Found = FindText(GSearchText, PositionAfter(SelStart()), SearchReach, Options);
  if (Found < 0) return false;
  SetSelection(Found, static_cast<int>(ToDocument(GSearchText).size()));
  return true;
}

bool TjoRichEdit::SearchAgain(TFindDialog* Dialog) {
  if (SearchNext(Dialog)) return true;
  MessageDlg(Format(ResStr::SSearchNotFound, GSearchText), mtInformation, MsgDlgButton(mbOK));
  return false;
}

void TjoRichEdit::ReplaceFound(TObject* Sender) {
  auto* Dialog = dynamic_cast<TReplaceDialog*>(Sender);
  if (!Dialog) return;
  if (Dialog->Options().Contains(frReplaceAll)) {
    ReplaceAll(Dialog);
    return;
  }
  if (!Dialog->Options().Contains(frReplace)) return;
  // The selection is compared exactly, whatever the match-case option says.
  if (SelText() == Dialog->FindText() || SearchAgain(Dialog)) SetSelText(Dialog->ReplaceText());
}

void TjoRichEdit::ReplaceAll(TReplaceDialog* Dialog) {
  Dialog->CloseDialog();
  // Replacing match by match and searching on one character after each replacement
  // comes to this: every match from the selection on, none starting right where the one
  // before ended; all of it is made as one change.
  const std::string& What = Dialog->FindText();
  const std::string Needle = ToDocument(What);
  const std::string With = ToDocument(WithLfLineEnds(Dialog->ReplaceText()));
  TSearchTypes Options;
  if (Dialog->Options().Contains(frWholeWord)) Options += stWholeWord;
  if (Dialog->Options().Contains(frMatchCase)) Options += stMatchCase;
  std::vector<int> Matches;
  const int Start = SelStart();
  int From;
  if (!What.empty() && SelText() == What) {
    Matches.push_back(Start);
    From = PositionAfter(Start + static_cast<int>(Needle.size()));
  } else {
    From = PositionAfter(Start);
  }
  GSearchText = What;
  if (!IsBlank(What)) {
    for (;;) {
      const int Found = FindText(What, From, SearchReach, Options);
      if (Found < 0) break;
      Matches.push_back(Found);
      From = PositionAfter(Found + static_cast<int>(Needle.size()));
    }
  }
  if (Matches.empty()) return;
  const std::string_view Doc = DocumentText();
  const int First = Matches.front();
  const int Last = Matches.back() + static_cast<int>(Needle.size());
  std::string Middle;
  Middle.reserve(static_cast<std::size_t>(Last - First) + Matches.size() * With.size());
  int At = First;
  for (const int M : Matches) {
    Middle.append(Doc.substr(static_cast<std::size_t>(At), static_cast<std::size_t>(M - At)));
    Middle += With;
    At = M + static_cast<int>(Needle.size());
  }
  ReplaceRange(First, Last, Middle);
  Sci()->SendScintilla(QSci::SCI_GOTOPOS, static_cast<unsigned long>(First + static_cast<int>(Middle.size())));
  CheckSelection();
}

// ---- Rich text

std::string TjoRichEdit::RichText() const {
  std::string Out;
  const int CodePage = CharsetToCodePage(FFont->Charset());
  const int Charset = FFont->Charset() == DEFAULT_CHARSET ? 0 : static_cast<int>(FFont->Charset());
  auto AppendEscaped = [&Out](std::string_view Bytes) {
    static const char Hex[] = "0123456789abcdef";
    for (const char Ch : Bytes) {
      const unsigned char C = static_cast<unsigned char>(Ch);
      if (C == '\\' || C == '{' || C == '}') {
        Out += '\\';
        Out += Ch;
      } else if (C == '\t') {
        Out += "\\tab ";
      } else if (C < 0x20 || C >= 0x80) {
        Out += "\\'";
        Out += Hex[C >> 4];
        Out += Hex[C & 15];
      } else {
        Out += Ch;
      }
    }
  };
  Out += "{\\rtf1\\ansi\\ansicpg" + std::to_string(CodePage) + "\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset" +
         std::to_string(Charset) + " ";
  AppendEscaped(FFont->Name());
  Out += ";}}\r\n\\viewkind4\\uc1\\pard\\f0\\fs" + std::to_string(std::max(1, FFont->Size()) * 2);
  const TFontStyles Style = FFont->Style();
  if (Style.Contains(fsItalic)) Out += "\\i";
  if (Style.Contains(fsUnderline)) Out += "\\ul";
  Out += ' ';
  const bool BoldFont = Style.Contains(fsBold);
  if (BoldFont) Out += "\\b ";
  QSci* S = Sci();
  const int Count = LineCount();
  bool Bold = BoldFont;
  std::string Styled;
  for (int Line = 0; Line < Count; ++Line) {
    const long Start = S->SendScintilla(QSci::SCI_POSITIONFROMLINE, static_cast<unsigned long>(Line));
    const long End = S->SendScintilla(QSci::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(Line));
    if (End > Start) {
      // Characters and their styles, in pairs.
      Styled.assign(static_cast<std::size_t>(End - Start) * 2 + 2, '\0');
      S->SendScintilla(QSci::SCI_GETSTYLEDTEXT, Start, End, Styled.data());
      const std::size_t N = static_cast<std::size_t>(End - Start);
      std::size_t RunStart = 0;
      std::string Run;
      while (RunStart < N) {
        const bool RunBold = BoldFont || Styled[RunStart * 2 + 1] == BoldStyle;
        std::size_t RunEnd = RunStart;
        Run.clear();
        while (RunEnd < N && (BoldFont || Styled[RunEnd * 2 + 1] == BoldStyle) == RunBold) {
          Run += Styled[RunEnd * 2];
          ++RunEnd;
        }
        // A run never ends inside a character: the styles of its bytes are the same.
        if (RunBold != Bold) {
          Out += RunBold ? "\\b " : "\\b0 ";
          Bold = RunBold;
        }
        AppendEscaped(FromDocument(Run));
        RunStart = RunEnd;
      }
    }
    // Each line closes its own bold run, as readers expect.
    if (Bold != BoldFont) {
      Out += "\\b0";
      Bold = BoldFont;
    }
    Out += "\\par\r\n";
  }
  Out += "}\r\n";
  return Out;
}

void RegisterRichEditClasses() { RegisterClasses({TjoRichEdit::StaticClass()}); }

#include "joRichEdit.moc"
