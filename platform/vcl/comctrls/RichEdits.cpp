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

#include <QAbstractTextDocumentLayout>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextList>

#include <algorithm>
#include <cmath>

// ---------------------------------------------------------------------------------------
// Rich edits

// The lines of a rich edit: the paragraphs of its document. A trailing empty paragraph is
// not a line, so that lines added one by one each end with a line break.
class TRichEditStrings : public TStrings {
  LUMORA_CLASS(TRichEditStrings, TStrings)
public:
  explicit TRichEditStrings(TCustomRichEdit* richEdit) : FRichEdit(richEdit) {}

  void Insert(int index, const std::string& s) override {
    const int count = GetCount();
    if (index < 0 || index > count) Error("List index out of bounds (%d)", index);
    QTextDocument* doc = FRichEdit->Document();
    const QString text = FRichEdit->Font()->ToUnicode(s);
    if (index < count) {
      QTextCursor c(doc->findBlockByNumber(index));
      c.insertText(text);
      c.insertBlock();
      return;
    }
    QTextBlock last = doc->lastBlock();
    QTextCursor c(last);
    if (last.text().isEmpty()) {
      c.insertText(text);
      c.insertBlock();
    } else {
      c.movePosition(QTextCursor::End);
      c.insertBlock();
      c.insertText(text);
    }
  }

  void Delete(int index) override {
    const int count = GetCount();
    if (index < 0 || index >= count) Error("List index out of bounds (%d)", index);
    QTextDocument* doc = FRichEdit->Document();
    QTextBlock block = doc->findBlockByNumber(index);
    QTextCursor c(block);
    if (block.next().isValid()) {
      c.setPosition(block.next().position(), QTextCursor::KeepAnchor);
    } else if (block.previous().isValid()) {
      c.setPosition(block.previous().position() + block.previous().length() - 1);
      c.setPosition(block.position() + block.length() - 1, QTextCursor::KeepAnchor);
    } else {
      c.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    }
    c.removeSelectedText();
  }

  void Clear() override { FRichEdit->ReplaceText(QString()); }

  void AddStrings(TStrings* strings) override {
    if (!strings || strings->Count() == 0) return;
    QString text;
    for (int i = 0; i < strings->Count(); ++i) {
      text += FRichEdit->Font()->ToUnicode(strings->Strings(i));
      text += QLatin1Char('\n');
    }
    AppendText(text);
  }

  void Assign(TPersistent* source) override {
    if (auto* strings = dynamic_cast<TStrings*>(source)) {
      if (strings == this) return;
      QString text;
      for (int i = 0; i < strings->Count(); ++i) {
        text += FRichEdit->Font()->ToUnicode(strings->Strings(i));
        text += QLatin1Char('\n');
      }
      FRichEdit->ReplaceText(text);
      return;
    }
    TStrings::Assign(source);
  }

protected:
  std::string Get(int index) const override {
    if (index < 0 || index >= GetCount()) Error("List index out of bounds (%d)", index);
    return FRichEdit->Font()->FromUnicode(FRichEdit->Document()->findBlockByNumber(index).text());
  }

  int GetCount() const override {
    QTextDocument* doc = FRichEdit->Document();
    int count = doc->blockCount();
    if (doc->lastBlock().length() <= 1) --count;
    return std::max(count, 0);
  }

  void Put(int index, const std::string& s) override {
    if (index < 0 || index >= GetCount()) Error("List index out of bounds (%d)", index);
    QTextCursor c(FRichEdit->Document()->findBlockByNumber(index));
    c.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    c.insertText(FRichEdit->Font()->ToUnicode(s));
  }

  std::string GetTextStr() const override {
    std::string out;
    const int count = GetCount();
    QTextBlock block = FRichEdit->Document()->firstBlock();
    for (int i = 0; i < count && block.isValid(); ++i, block = block.next()) {
      out += FRichEdit->Font()->FromUnicode(block.text());
      out += "\r\n";
    }
    return out;
  }

  void SetTextStr(std::string_view text) override {
    QString s = FRichEdit->Font()->ToUnicode(text);
    s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    FRichEdit->ReplaceText(s);
  }

  void SetUpdateState(bool updating) override {
    if (QTextEdit* e = FRichEdit->TextEdit()) e->setUpdatesEnabled(!updating);
  }

private:
  void AppendText(const QString& text) {
    QTextDocument* doc = FRichEdit->Document();
    QTextBlock last = doc->lastBlock();
    QTextCursor c(last);
    c.movePosition(QTextCursor::End);
    if (!last.text().isEmpty()) c.insertBlock();
    c.insertText(text.left(text.size() - 1));
    c.insertBlock();
  }

  TCustomRichEdit* FRichEdit;
};

LUMORA_CLASS_IMPL(TRichEditStrings) {}

namespace {

// Where the Windows name and height of a font are kept in a character format.
constexpr int FontNameProperty = QTextFormat::UserProperty + 1;
constexpr int FontHeightProperty = QTextFormat::UserProperty + 2;
constexpr int FontCharsetProperty = QTextFormat::UserProperty + 3;

int ScreenPixelsPerInch() { return 96; }

}  // namespace

// ---- TTextAttributes

LUMORA_CLASS_IMPL(TTextAttributes) {
  c.Property("Charset", &TTextAttributes::Charset, &TTextAttributes::SetCharset);
  c.Property("Color", &TTextAttributes::Color, &TTextAttributes::SetColor);
  c.Property("Name", &TTextAttributes::Name, &TTextAttributes::SetName);
  c.Property("Pitch", &TTextAttributes::Pitch, &TTextAttributes::SetPitch);
  c.Property("Size", &TTextAttributes::Size, &TTextAttributes::SetSize);
  c.Property("Style", &TTextAttributes::Style, &TTextAttributes::SetStyle);
  c.Property("Height", &TTextAttributes::Height, &TTextAttributes::SetHeight);
}

TTextAttributes::TTextAttributes(TCustomRichEdit* richEdit, TAttributeType type) : FRichEdit(richEdit), FType(type) {}

namespace {

// The format the attributes read: at the selection's start (or before the caret), or the
// text's default.
QTextCharFormat ReadFormat(TCustomRichEdit* re, TAttributeType type) {
  if (type == atDefaultText) {
    QTextCharFormat f;
    f.setFont(re->Document()->defaultFont());
    return f;
  }
  QTextCursor c = re->TextEdit() ? re->TextEdit()->textCursor() : QTextCursor(re->Document());
  if (!re->TextEdit()) {
    c.setPosition(std::clamp(re->SelStart(), 0, std::max(0, re->Document()->characterCount() - 1)));
  }
  if (c.hasSelection()) {
    QTextCursor start(re->Document());
    start.setPosition(c.selectionStart() + 1);
    return start.charFormat();
  }
  return re->TextEdit() ? re->TextEdit()->currentCharFormat() : c.charFormat();
}

}  // namespace

// Applies a change of the character format to the selection (with nothing selected: to
// what is typed next), or to the whole text for the default attributes.
static void ApplyFormat(TCustomRichEdit* re, TAttributeType type, const QTextCharFormat& format) {
  QTextDocument* doc = re->Document();
  if (type == atDefaultText) {
    if (format.hasProperty(QTextFormat::FontFamilies) || format.hasProperty(QTextFormat::FontPixelSize) ||
        format.hasProperty(QTextFormat::FontWeight) || format.hasProperty(QTextFormat::FontItalic)) {
      QFont font = doc->defaultFont();
      font = format.font().resolve(font);
      doc->setDefaultFont(font);
    }
    QTextCursor all(doc);
    all.select(QTextCursor::Document);
    all.mergeCharFormat(format);
    if (QTextEdit* e = re->TextEdit()) e->mergeCurrentCharFormat(format);
    return;
  }
  if (QTextEdit* e = re->TextEdit()) {
    e->mergeCurrentCharFormat(format);
    return;
  }
  QTextCursor c(doc);
  const int start = std::clamp(re->SelStart(), 0, std::max(0, doc->characterCount() - 1));
  c.setPosition(start);
  c.setPosition(std::clamp(start + re->SelLength(), 0, std::max(0, doc->characterCount() - 1)), QTextCursor::KeepAnchor);
  c.mergeCharFormat(format);
}

TFontCharset TTextAttributes::Charset() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontCharsetProperty)) return static_cast<TFontCharset>(f.intProperty(FontCharsetProperty));
  return FRichEdit->Font()->Charset();
}

void TTextAttributes::SetCharset(TFontCharset value) {
  QTextCharFormat f;
  f.setProperty(FontCharsetProperty, static_cast<int>(value));
  ApplyFormat(FRichEdit, FType, f);
}

TColor TTextAttributes::Color() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(QTextFormat::ForegroundBrush)) return QColorToColor(f.foreground().color());
  return FRichEdit->Font()->Color();
}

void TTextAttributes::SetColor(TColor value) {
  QTextCharFormat f;
  f.setForeground(ColorToQColor(value));
  ApplyFormat(FRichEdit, FType, f);
}

TFontName TTextAttributes::Name() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontNameProperty)) return f.stringProperty(FontNameProperty).toStdString();
  return FRichEdit->Font()->Name();
}

namespace {
QTextCharFormat FontFormat(const std::string& name, int height, TFontStyles style, TFontCharset charset) {
  TFontRequest request;
  request.Name = name;
  request.Height = -std::abs(height);
  request.Bold = style.Contains(fsBold);
  request.Italic = style.Contains(fsItalic);
  request.Underline = style.Contains(fsUnderline);
  request.StrikeOut = style.Contains(fsStrikeOut);
  request.Charset = charset;
  QTextCharFormat f;
  f.setFont(ResolveFont(request), QTextCharFormat::FontPropertiesAll);
  f.setProperty(FontNameProperty, QString::fromStdString(name));
  f.setProperty(FontHeightProperty, std::abs(height));
  return f;
}
}  // namespace

void TTextAttributes::SetName(const TFontName& value) {
  ApplyFormat(FRichEdit, FType, FontFormat(value, Height(), Style(), Charset()));
}

TFontPitch TTextAttributes::Pitch() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  return f.font().fixedPitch() ? fpFixed : fpDefault;
}

void TTextAttributes::SetPitch(TFontPitch value) {
  QTextCharFormat f;
  f.setFontFixedPitch(value == fpFixed);
  ApplyFormat(FRichEdit, FType, f);
}

int TTextAttributes::Height() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  if (f.hasProperty(FontHeightProperty)) return f.intProperty(FontHeightProperty);
  return std::abs(MulDiv(FRichEdit->Font()->Size(), ScreenPixelsPerInch(), 72));
}

void TTextAttributes::SetHeight(int value) {
  ApplyFormat(FRichEdit, FType, FontFormat(Name(), value, Style(), Charset()));
}

int TTextAttributes::Size() const { return MulDiv(Height(), 72, ScreenPixelsPerInch()); }

void TTextAttributes::SetSize(int value) { SetHeight(MulDiv(value, ScreenPixelsPerInch(), 72)); }

TFontStyles TTextAttributes::Style() const {
  const QTextCharFormat f = ReadFormat(FRichEdit, FType);
  TFontStyles s;
  const QFont font = f.font();
  if (f.hasProperty(QTextFormat::FontWeight) ? f.fontWeight() >= QFont::Bold : FRichEdit->Font()->Style().Contains(fsBold)) {
    s.Include(fsBold);
  }
  if (f.hasProperty(QTextFormat::FontItalic) ? f.fontItalic() : FRichEdit->Font()->Style().Contains(fsItalic)) {
    s.Include(fsItalic);
  }
  if (f.hasProperty(QTextFormat::TextUnderlineStyle) ? f.fontUnderline()
                                                     : FRichEdit->Font()->Style().Contains(fsUnderline)) {
    s.Include(fsUnderline);
  }
  if (f.hasProperty(QTextFormat::FontStrikeOut) ? f.fontStrikeOut() : FRichEdit->Font()->Style().Contains(fsStrikeOut)) {
    s.Include(fsStrikeOut);
  }
  (void)font;
  return s;
}

void TTextAttributes::SetStyle(TFontStyles value) {
  QTextCharFormat f;
  f.setFontWeight(value.Contains(fsBold) ? QFont::Bold : QFont::Normal);
  f.setFontItalic(value.Contains(fsItalic));
  f.setFontUnderline(value.Contains(fsUnderline));
  f.setFontStrikeOut(value.Contains(fsStrikeOut));
  ApplyFormat(FRichEdit, FType, f);
}

void TTextAttributes::Assign(TPersistent* source) {
  if (auto* font = dynamic_cast<TFont*>(source)) {
    QTextCharFormat f = FontFormat(font->Name(), MulDiv(font->Size(), ScreenPixelsPerInch(), 72), font->Style(),
                                   font->Charset());
    f.setProperty(FontCharsetProperty, static_cast<int>(font->Charset()));
    f.setForeground(ColorToQColor(font->Color()));
    f.setFontWeight(font->Style().Contains(fsBold) ? QFont::Bold : QFont::Normal);
    f.setFontItalic(font->Style().Contains(fsItalic));
    f.setFontUnderline(font->Style().Contains(fsUnderline));
    f.setFontStrikeOut(font->Style().Contains(fsStrikeOut));
    ApplyFormat(FRichEdit, FType, f);
    return;
  }
  if (auto* attributes = dynamic_cast<TTextAttributes*>(source)) {
    QTextCharFormat f = FontFormat(attributes->Name(), attributes->Height(), attributes->Style(), attributes->Charset());
    f.setProperty(FontCharsetProperty, static_cast<int>(attributes->Charset()));
    f.setForeground(ColorToQColor(attributes->Color()));
    const TFontStyles style = attributes->Style();
    f.setFontWeight(style.Contains(fsBold) ? QFont::Bold : QFont::Normal);
    f.setFontItalic(style.Contains(fsItalic));
    f.setFontUnderline(style.Contains(fsUnderline));
    f.setFontStrikeOut(style.Contains(fsStrikeOut));
    ApplyFormat(FRichEdit, FType, f);
    return;
  }
  TPersistent::Assign(source);
}

// ---- TParaAttributes

LUMORA_CLASS_IMPL(TParaAttributes) {}

namespace {

QTextCursor SelectionCursor(TCustomRichEdit* re) {
  if (QTextEdit* e = re->TextEdit()) return e->textCursor();
  QTextCursor c(re->Document());
  const int last = std::max(0, re->Document()->characterCount() - 1);
  c.setPosition(std::clamp(re->SelStart(), 0, last));
  c.setPosition(std::clamp(re->SelStart() + re->SelLength(), 0, last), QTextCursor::KeepAnchor);
  return c;
}

int PointsToPixels(int points) { return MulDiv(points, ScreenPixelsPerInch(), 72); }
int PixelsToPoints(double pixels) { return MulDiv(static_cast<int>(std::lround(pixels)), 72, ScreenPixelsPerInch()); }

}  // namespace

void TParaAttributes::Assign(TPersistent* source) {
  if (auto* p = dynamic_cast<TParaAttributes*>(source)) {
    SetAlignment(p->Alignment());
    SetFirstIndent(p->FirstIndent());
    SetLeftIndent(p->LeftIndent());
    SetRightIndent(p->RightIndent());
    SetNumbering(p->Numbering());
    return;
  }
  TPersistent::Assign(source);
}

TAlignment TParaAttributes::Alignment() const {
  const Qt::Alignment a = SelectionCursor(FRichEdit).blockFormat().alignment();
  if (a & Qt::AlignRight) return taRightJustify;
  if (a & Qt::AlignHCenter) return taCenter;
  return taLeftJustify;
}

void TParaAttributes::SetAlignment(TAlignment value) {
  QTextBlockFormat f;
  f.setAlignment(value == taRightJustify ? Qt::AlignRight : value == taCenter ? Qt::AlignHCenter : Qt::AlignLeft);
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::FirstIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().textIndent()); }

void TParaAttributes::SetFirstIndent(int value) {
  QTextBlockFormat f;
  f.setTextIndent(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::LeftIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().leftMargin()); }

void TParaAttributes::SetLeftIndent(int value) {
  QTextBlockFormat f;
  f.setLeftMargin(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

int TParaAttributes::RightIndent() const { return PixelsToPoints(SelectionCursor(FRichEdit).blockFormat().rightMargin()); }

void TParaAttributes::SetRightIndent(int value) {
  QTextBlockFormat f;
  f.setRightMargin(PointsToPixels(value));
  SelectionCursor(FRichEdit).mergeBlockFormat(f);
}

TNumberingStyle TParaAttributes::Numbering() const {
  return SelectionCursor(FRichEdit).currentList() ? nsBullet : nsNone;
}

void TParaAttributes::SetNumbering(TNumberingStyle value) {
  QTextCursor c = SelectionCursor(FRichEdit);
  if (value == nsBullet) {
    if (!c.currentList()) c.createList(QTextListFormat::ListDisc);
  } else if (QTextList* list = c.currentList()) {
    for (int i = list->count() - 1; i >= 0; --i) list->removeItem(i);
    QTextBlockFormat f;
    f.setIndent(0);
    c.mergeBlockFormat(f);
  }
}

// ---- TCustomRichEdit

LUMORA_CLASS_IMPL(TCustomRichEdit) {}

TCustomRichEdit::TCustomRichEdit(TComponent* owner) : TCustomMemo(owner) {
  FDocument = new QTextDocument();
  FDocument->setDocumentMargin(1);
  FDocument->setDefaultFont(FFont->Handle());
  FDocument->setUndoRedoEnabled(true);
  FLines = new TRichEditStrings(this);
  FSelAttributes = new TTextAttributes(this, atSelected);
  FDefAttributes = new TTextAttributes(this, atDefaultText);
  FParagraph = new TParaAttributes(this);
  QObject::connect(FDocument, &QTextDocument::contentsChanged, FDocument,
                   [this] { TMessageLoop::Instance().Guarded([this] { DocumentChanged(); }); });
}

TCustomRichEdit::~TCustomRichEdit() {
  QObject::disconnect(FDocument, nullptr, nullptr, nullptr);
  DestroyWidget();
  delete FParagraph;
  delete FDefAttributes;
  delete FSelAttributes;
  delete FLines;
  delete FDocument;
}

QTextEdit* TCustomRichEdit::TextEdit() const { return qobject_cast<QTextEdit*>(Widget()); }

void TCustomRichEdit::CreateWidget() {
  auto* e = new QTextEdit();
  e->setDocument(FDocument);
  e->setFocusPolicy(Qt::StrongFocus);
  e->setAcceptRichText(!FPlainText);
  QTextCursor c(FDocument);
  const int last = std::max(0, FDocument->characterCount() - 1);
  c.setPosition(std::clamp(FSelStart, 0, last));
  c.setPosition(std::clamp(FSelStart + FSelLength, 0, last), QTextCursor::KeepAnchor);
  e->setTextCursor(c);
  QObject::connect(e, &QTextEdit::cursorPositionChanged, e,
                   [this] { TMessageLoop::Instance().Guarded([this] { SelectionChange(); }); });
  QObject::connect(e, &QTextEdit::selectionChanged, e,
                   [this] { TMessageLoop::Instance().Guarded([this] { SelectionChange(); }); });
  AdoptWidget(e);
}

void TCustomRichEdit::UpdateWidgetText() {
  QTextEdit* e = TextEdit();
  if (!e) return;
  e->setReadOnly(FReadOnly);
  e->setFrameShape(FBorderStyle == BorderStyleOf(bsSingle) ? QFrame::StyledPanel : QFrame::NoFrame);
  e->setLineWrapMode(WordWrap() ? QTextEdit::WidgetWidth : QTextEdit::NoWrap);
  const TScrollStyle bars = ScrollBars();
  const bool vert = bars == ssVertical || bars == ssBoth;
  const bool horz = (bars == ssHorizontal || bars == ssBoth) && !WordWrap();
  const Qt::ScrollBarPolicy shown = FHideScrollBars ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOn;
  e->setVerticalScrollBarPolicy(vert ? shown : Qt::ScrollBarAlwaysOff);
  e->setHorizontalScrollBarPolicy(horz ? shown : Qt::ScrollBarAlwaysOff);
  e->setTabChangesFocus(!WantTabs());
  e->setAcceptRichText(!FPlainText);
  QTextOption option = FDocument->defaultTextOption();
  const TAlignment alignment = Alignment();
  option.setAlignment(alignment == taRightJustify ? Qt::AlignRight
                      : alignment == taCenter     ? Qt::AlignHCenter
                                                  : Qt::AlignLeft);
  if (option.alignment() != FDocument->defaultTextOption().alignment()) FDocument->setDefaultTextOption(option);
}

void TCustomRichEdit::UpdateWidgetColors() {
  TCustomMemo::UpdateWidgetColors();
  QTextEdit* e = TextEdit();
  if (!e) return;
  QPalette pal = e->palette();
  pal.setColor(QPalette::Active, QPalette::Highlight, ColorToQColor(clHighlight));
  pal.setColor(QPalette::Active, QPalette::HighlightedText, ColorToQColor(clHighlightText));
  // A hidden selection is drawn in the text's own colours while the edit has no focus.
  pal.setColor(QPalette::Inactive, QPalette::Highlight,
               FHideSelection ? pal.color(QPalette::Base) : ColorToQColor(clHighlight));
  pal.setColor(QPalette::Inactive, QPalette::HighlightedText,
               FHideSelection ? pal.color(QPalette::Text) : ColorToQColor(clHighlightText));
  e->setPalette(pal);
}

void TCustomRichEdit::FontChanged() {
  TCustomMemo::FontChanged();
  FDocument->setDefaultFont(FFont->Handle());
}

void TCustomRichEdit::SetHideScrollBars(bool value) {
  FHideScrollBars = value;
  UpdateWidgetText();
}

void TCustomRichEdit::DocumentChanged() {
  if (FChanging) return;
  Change();
}

void TCustomRichEdit::SelectionChange() {
  if (QTextEdit* e = TextEdit()) {
    const QTextCursor c = e->textCursor();
    FSelStart = c.selectionStart();
    FSelLength = c.selectionEnd() - c.selectionStart();
  }
  if (OnSelectionChange && !Loading(this)) OnSelectionChange(this);
}

std::string TCustomRichEdit::Text() const {
  QString text = FDocument->toPlainText();
  text.replace(QLatin1Char('\n'), QLatin1String("\r\n"));
  return FFont->FromUnicode(text);
}

void TCustomRichEdit::SetText(const std::string& value) {
  QString s = FFont->ToUnicode(value);
  s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  ReplaceText(s);
}

void TCustomRichEdit::ReplaceText(const QString& text) {
  FDocument->setPlainText(text);
  // A new text puts the caret at its start, scrolled to the top.
  FSelStart = 0;
  FSelLength = 0;
  if (QTextEdit* e = TextEdit()) {
    e->setTextCursor(QTextCursor(FDocument));
    e->verticalScrollBar()->setValue(0);
    e->horizontalScrollBar()->setValue(0);
  }
}

int TCustomRichEdit::GetTextLen() const { return std::max(0, FDocument->characterCount() - 1); }

int TCustomRichEdit::SelStart() const {
  if (QTextEdit* e = TextEdit()) return e->textCursor().selectionStart();
  return std::clamp(FSelStart, 0, GetTextLen());
}

void TCustomRichEdit::SetSelStart(int value) {
  value = std::clamp(value, 0, GetTextLen());
  FSelStart = value;
  FSelLength = 0;
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.setPosition(value);
    e->setTextCursor(c);
  }
}

int TCustomRichEdit::SelLength() const {
  if (QTextEdit* e = TextEdit()) {
    const QTextCursor c = e->textCursor();
    return c.selectionEnd() - c.selectionStart();
  }
  return std::clamp(FSelLength, 0, GetTextLen() - SelStart());
}

void TCustomRichEdit::SetSelLength(int value) {
  const int start = SelStart();
  value = std::clamp(value, 0, GetTextLen() - start);
  FSelLength = value;
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.setPosition(start);
    c.setPosition(start + value, QTextCursor::KeepAnchor);
    e->setTextCursor(c);
  }
}

std::string TCustomRichEdit::SelText() const {
  QTextCursor c = SelectionCursor(const_cast<TCustomRichEdit*>(this));
  QString text = c.selectedText();
  text.replace(QChar::ParagraphSeparator, QLatin1String("\r\n"));
  text.replace(QChar::LineSeparator, QLatin1String("\r\n"));
  return FFont->FromUnicode(text);
}

void TCustomRichEdit::SetSelText(const std::string& value) {
  QString s = FFont->ToUnicode(value);
  s.replace(QLatin1String("\r\n"), QLatin1String("\n"));
  s.replace(QLatin1Char('\r'), QLatin1Char('\n'));
  if (QTextEdit* e = TextEdit()) {
    QTextCursor c = e->textCursor();
    c.insertText(s);
    e->setTextCursor(c);
    return;
  }
  QTextCursor c = SelectionCursor(this);
  c.insertText(s);
  FSelStart = c.position();
  FSelLength = 0;
}

void TCustomRichEdit::SelectAll() {
  SetSelStart(0);
  SetSelLength(GetTextLen());
}

void TCustomRichEdit::ClearSelection() { SetSelText(std::string()); }

void TCustomRichEdit::CopyToClipboard() {
  if (QTextEdit* e = TextEdit()) e->copy();
}

void TCustomRichEdit::CutToClipboard() {
  if (QTextEdit* e = TextEdit(); e && !FReadOnly) e->cut();
}

void TCustomRichEdit::PasteFromClipboard() {
  if (QTextEdit* e = TextEdit(); e && !FReadOnly) e->paste();
}

int TCustomRichEdit::FindText(const std::string& text, int startPos, int length, TSearchTypes options) const {
  if (text.empty()) return -1;
  QTextDocument::FindFlags flags;
  if (options.Contains(stMatchCase)) flags |= QTextDocument::FindCaseSensitively;
  if (options.Contains(stWholeWord)) flags |= QTextDocument::FindWholeWords;
  QString needle = FFont->ToUnicode(text);
  QTextCursor from(FDocument);
  from.setPosition(std::clamp(startPos, 0, GetTextLen()));
  const QTextCursor found = FDocument->find(needle, from, flags);
  if (found.isNull()) return -1;
  const long long limit = static_cast<long long>(startPos) + length;
  if (found.selectionEnd() > limit) return -1;
  return found.selectionStart();
}

bool TCustomRichEdit::Modified() const { return FDocument->isModified(); }

void TCustomRichEdit::SetModified(bool value) { FDocument->setModified(value); }

bool TCustomRichEdit::CanUndo() const { return FDocument->isUndoAvailable(); }

void TCustomRichEdit::Undo() { FDocument->undo(); }

void TCustomRichEdit::ClearUndo() { FDocument->clearUndoRedoStacks(); }

int TCustomRichEdit::LineFromChar(int pos) const {
  pos = std::clamp(pos, 0, GetTextLen());
  return FDocument->findBlock(pos).blockNumber();
}

int TCustomRichEdit::LineIndex(int line) const {
  if (line < 0) line = LineFromChar(SelStart());
  if (line >= FDocument->blockCount()) return -1;
  return FDocument->findBlockByNumber(line).position();
}

int TCustomRichEdit::LineLength(int line) const {
  if (line < 0 || line >= FDocument->blockCount()) return 0;
  return FDocument->findBlockByNumber(line).length() - 1;
}

int TCustomRichEdit::FirstVisibleLine() const {
  QTextEdit* e = TextEdit();
  if (!e) return 0;
  return e->cursorForPosition(QPoint(1, 1)).blockNumber();
}

void TCustomRichEdit::LineScroll(int lines) {
  QTextEdit* e = TextEdit();
  if (!e || lines == 0) return;
  const int target = std::clamp(FirstVisibleLine() + lines, 0, FDocument->blockCount() - 1);
  const QTextBlock block = FDocument->findBlockByNumber(target);
  const QRectF r = FDocument->documentLayout()->blockBoundingRect(block);
  QScrollBar* bar = e->verticalScrollBar();
  bar->setValue(std::clamp(static_cast<int>(r.top()), bar->minimum(), bar->maximum()));
}

int TCustomRichEdit::CharFromPos(TPoint point) const {
  QTextEdit* e = TextEdit();
  if (!e) return 0;
  return e->cursorForPosition(QPoint(point.X, point.Y)).position();
}

LUMORA_CLASS_IMPL(TRichEdit) {
  PublishControlProperties(c, {"Align"});
  c.Property("Alignment", &TRichEdit::Alignment, &TRichEdit::SetAlignment).Default(taLeftJustify);
  PublishControlProperties(c, {"Anchors", "BiDiMode"});
  c.Property("BorderStyle", &TRichEdit::BorderStyle, &TRichEdit::SetBorderStyle).Default(BorderStyleOf(bsSingle));
  PublishControlProperties(c, {"BorderWidth", "Color", "Ctl3D", "DragCursor", "DragKind", "Constraints", "DragMode",
                               "Enabled", "Font"});
  c.Property("HideSelection", &TRichEdit::HideSelection, &TRichEdit::SetHideSelection).Default(true);
  c.Property("HideScrollBars", &TRichEdit::HideScrollBars, &TRichEdit::SetHideScrollBars).Default(true);
  PublishControlProperties(c, {"ImeMode", "ImeName"});
  c.Property("Lines", &TRichEdit::Lines, &TRichEdit::SetLines);
  c.Property("MaxLength", &TRichEdit::MaxLength, &TRichEdit::SetMaxLength).Default(0);
  PublishControlProperties(c, {"ParentBiDiMode", "ParentColor", "ParentCtl3D", "ParentFont", "ParentShowHint"});
  c.Property("PlainText", &TRichEdit::PlainText, &TRichEdit::SetPlainText).Default(false);
  PublishControlProperties(c, {"PopupMenu"});
  c.Property("ReadOnly", &TRichEdit::ReadOnly, &TRichEdit::SetReadOnly).Default(false);
  c.Property("ScrollBars", &TRichEdit::ScrollBars, &TRichEdit::SetScrollBars).Default(ssNone);
  PublishControlProperties(c, {"ShowHint", "TabOrder", "TabStop", "Visible"});
  c.Property("WantTabs", &TRichEdit::WantTabs, &TRichEdit::SetWantTabs).Default(false);
  c.Property("WantReturns", &TRichEdit::WantReturns, &TRichEdit::SetWantReturns).Default(true);
  c.Property("WordWrap", &TRichEdit::WordWrap, &TRichEdit::SetWordWrap).Default(true);
  c.Property("OnChange", &TRichEdit::OnChange, &TRichEdit::OnChange);
  PublishControlProperties(c, {"OnDragDrop", "OnDragOver", "OnEndDock", "OnEndDrag", "OnEnter", "OnExit", "OnKeyDown",
                               "OnKeyPress", "OnKeyUp", "OnMouseDown", "OnMouseMove", "OnMouseUp"});
  c.Property("OnProtectChange", &TRichEdit::OnProtectChange, &TRichEdit::OnProtectChange);
  c.Property("OnResizeRequest", &TRichEdit::OnResizeRequest, &TRichEdit::OnResizeRequest);
  c.Property("OnSaveClipboard", &TRichEdit::OnSaveClipboard, &TRichEdit::OnSaveClipboard);
  c.Property("OnSelectionChange", &TRichEdit::OnSelectionChange, &TRichEdit::OnSelectionChange);
  PublishControlProperties(c, {"OnStartDock", "OnStartDrag"});
  c.Property("ParentColor").Default(false);
  c.Property("TabStop").Default(true);
}
