#pragma once
// Rich edits: the lines, the character and paragraph attributes, the control.
// Callers include platform/vcl/ComCtrls.h.

#include "platform/rtti/Classes.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/ImgList.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <string>

class QTextDocument;
class QTextEdit;

LUMORA_ENUM(TNumberingStyle, nsNone, nsBullet)
LUMORA_ENUM(TAttributeType, atSelected, atDefaultText)
LUMORA_ENUM(TSearchType, stWholeWord, stMatchCase)
LUMORA_SET(TSearchTypes, TSearchType)
LUMORA_EVENT(TRichEditResizeEvent, void(TObject* Sender, TRect Rect))
LUMORA_EVENT(TRichEditProtectChange, void(TObject* Sender, int StartPos, int EndPos, bool& AllowChange))
// (Sender, NumObjects, NumChars, SaveClipboard): the shape of TRichEditProtectChange.
using TRichEditSaveClipboard = TRichEditProtectChange;

class TCustomRichEdit;

// The character formatting of a rich edit's selection (SelAttributes) or of its text
// by default (DefAttributes).
class TTextAttributes : public TPersistent {
  LUMORA_CLASS(TTextAttributes, TPersistent)
public:
  TTextAttributes(TCustomRichEdit* richEdit, TAttributeType type);
  void Assign(TPersistent* source) override;

  TFontCharset Charset() const;
  void SetCharset(TFontCharset value);
  TColor Color() const;
  void SetColor(TColor value);
  TFontName Name() const;
  void SetName(const TFontName& value);
  TFontPitch Pitch() const;
  void SetPitch(TFontPitch value);
  // Points.
  int Size() const;
  void SetSize(int value);
  // Pixels at the screen's resolution.
  int Height() const;
  void SetHeight(int value);
  TFontStyles Style() const;
  void SetStyle(TFontStyles value);
  bool Protected() const { return false; }

private:
  TCustomRichEdit* FRichEdit;
  TAttributeType FType;
};

// The paragraph formatting of the paragraphs the selection touches.
class TParaAttributes : public TPersistent {
  LUMORA_CLASS(TParaAttributes, TPersistent)
public:
  explicit TParaAttributes(TCustomRichEdit* richEdit) : FRichEdit(richEdit) {}
  void Assign(TPersistent* source) override;
  TAlignment Alignment() const;
  void SetAlignment(TAlignment value);
  int FirstIndent() const;
  void SetFirstIndent(int value);
  int LeftIndent() const;
  void SetLeftIndent(int value);
  int RightIndent() const;
  void SetRightIndent(int value);
  TNumberingStyle Numbering() const;
  void SetNumbering(TNumberingStyle value);

private:
  TCustomRichEdit* FRichEdit;
};

// A memo of formatted text. Its lines are the paragraphs of its document, which lives
// as long as the control (the widget shows it while it exists). Positions count one
// character per paragraph break.
class TCustomRichEdit : public TCustomMemo {
  LUMORA_CLASS(TCustomRichEdit, TCustomMemo)
public:
  explicit TCustomRichEdit(TComponent* owner);
  ~TCustomRichEdit() override;

  TStrings* Lines() const { return FLines; }
  void SetLines(TStrings* value) { FLines->Assign(value); }
  TTextAttributes* SelAttributes() const { return FSelAttributes; }
  void SetSelAttributes(TTextAttributes* value) { FSelAttributes->Assign(value); }
  TTextAttributes* DefAttributes() const { return FDefAttributes; }
  void SetDefAttributes(TTextAttributes* value) { FDefAttributes->Assign(value); }
  TParaAttributes* Paragraph() const { return FParagraph; }

  bool HideScrollBars() const { return FHideScrollBars; }
  void SetHideScrollBars(bool value);
  bool PlainText() const { return FPlainText; }
  void SetPlainText(bool value) { FPlainText = value; }

  std::string Text() const override;
  void SetText(const std::string& value) override;
  int GetTextLen() const;
  int SelStart() const;
  void SetSelStart(int value);
  int SelLength() const;
  void SetSelLength(int value);
  std::string SelText() const;
  void SetSelText(const std::string& value);
  void SelectAll();
  void ClearSelection();
  void CopyToClipboard();
  void CutToClipboard();
  void PasteFromClipboard();
  // Where `text` occurs from `startPos` within `length` characters, or -1.
  int FindText(const std::string& text, int startPos, int length, TSearchTypes options) const;
  bool Modified() const;
  void SetModified(bool value);
  bool CanUndo() const;
  void Undo();
  // Forgets what could be undone.
  void ClearUndo();

  // ---- What the edit control's messages answer
  // The line (paragraph) of a character position.
  int LineFromChar(int pos) const;
  // The first character of a line; -1 for the caret's line; -1 past the last line.
  int LineIndex(int line) const;
  int LineLength(int line) const;
  // The first line that shows at the top.
  int FirstVisibleLine() const;
  // Scrolls by whole lines (up for negative counts).
  void LineScroll(int lines);
  // The character nearest to a point of the client area.
  int CharFromPos(TPoint point) const;

  TNotifyEvent OnSelectionChange;
  TRichEditProtectChange OnProtectChange;
  TRichEditResizeEvent OnResizeRequest;
  TRichEditSaveClipboard OnSaveClipboard;

  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetColors() override;

  // ---- For the layer's own use
  QTextDocument* Document() const { return FDocument; }
  QTextEdit* TextEdit() const;

protected:
  friend class TTextAttributes;
  friend class TParaAttributes;
  friend class TRichEditStrings;
  virtual void SelectionChange();
  void FontChanged() override;
  // The document's text changed (by the user or in code).
  void DocumentChanged();
  // Replaces the whole text; the caret goes to its start.
  void ReplaceText(const QString& text);

private:
  QTextDocument* FDocument;
  TStrings* FLines;
  TTextAttributes* FSelAttributes;
  TTextAttributes* FDefAttributes;
  TParaAttributes* FParagraph;
  bool FHideScrollBars = true;
  bool FPlainText = false;
  int FSelStart = 0;   // the selection while there is no widget
  int FSelLength = 0;
  bool FChanging = false;
};

class TRichEdit : public TCustomRichEdit {
  LUMORA_CLASS(TRichEdit, TCustomRichEdit)
public:
  explicit TRichEdit(TComponent* owner) : TCustomRichEdit(owner) {}
};
