#pragma once
// The text control of the form-text editor: an editing control on QScintilla with the
// face of a rich edit. It adds a ready-made context menu (editing and search commands
// with their shortcuts), a caret-position event, find / replace / search again on
// dialogs shared by every instance, line navigation, a red marking of one line, and a
// switch that keeps formatting from counting as a change of text.
//
// Text comes and goes as 8-bit bytes in the code page of the control's font charset
// (Lines, Text, SelText, search texts): every byte survives. Inside, the component holds
// the text as UTF-8, because its drawing knows no other code page; positions (SelStart,
// LineIndex, FindText, ...) count the bytes of that UTF-8 text, which are the characters
// themselves for ASCII text. The column of OnCursorPosChange counts characters.
//
// The text lives in a document of its own, so that it stays while the control has no
// widget (before it has a parent, or between parents); the widget shows that document.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/Menus.h"
#include "platform/vcl/StdCtrls.h"

#include <QPointer>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

class QsciScintillaBase;
class TjoScintillaView;
class TjoRichEditStrings;

// (Sender, Line, Col): the caret's zero-based line and column. The shape of the list
// view's TLVOwnerDataHintEvent, which is therefore the same type.
using TjoCursorPosChange = TLVOwnerDataHintEvent;

// A stretch of the text: a position and a length, as SelStart and SelLength count them.
struct TjoTextRange {
  int Start = 0;
  int Length = 0;
};

class TjoRichEdit : public TWinControl {
  LUMORA_CLASS(TjoRichEdit, TWinControl)
public:
  explicit TjoRichEdit(TComponent* AOwner);
  ~TjoRichEdit() override;

  // ---- The text
  // One string per line, in the font's code page. Saving them to a stream writes plain
  // text, or rich text (RTF) while PlainText is false.
  TStrings* Lines() const;
  void SetLines(TStrings* Value);
  // The whole text with CR LF line ends.
  std::string Text() const override;
  void SetText(const std::string& Value) override;
  // The text as the component holds it (UTF-8, LF line ends), without copying it; valid
  // until the next change.
  std::string_view DocumentText() const;
  // Whether the text is all ASCII (its bytes are then the same in every code page).
  bool DocumentIsAscii() const;
  // Text in the font's code page as the component holds it (UTF-8), and back.
  std::string ToDocument(std::string_view Bytes) const;
  std::string FromDocument(std::string_view Utf8) const;
  int GetTextLen() const;
  int LineCount() const;
  void Clear();
  // Line Index in the font's code page, in Buffer when it had to be converted; the view
  // is valid until the next change or the next use of Buffer.
  std::string_view LineBytes(int Index, std::string& Buffer) const;
  // Puts new texts into several lines as one change (one step to undo).
  void ReplaceLines(const std::vector<std::pair<int, std::string>>& NewLines);
  // The text as rich text (RTF): the font, the bold runs, every byte of the code page kept.
  std::string RichText() const;

  bool ReadOnly() const { return FReadOnly; }
  void SetReadOnly(bool Value);
  bool HideSelection() const { return FHideSelection; }
  void SetHideSelection(bool Value);
  bool PlainText() const { return FPlainText; }
  void SetPlainText(bool Value) { FPlainText = Value; }
  TScrollStyle ScrollBars() const { return FScrollBars; }
  void SetScrollBars(TScrollStyle Value);
  bool WordWrap() const { return FWordWrap; }
  void SetWordWrap(bool Value);
  TBorderStyle BorderStyle() const { return FBorderStyle; }
  void SetBorderStyle(TBorderStyle Value);
  // Set by every change of the text; cleared only by the program.
  bool Modified() const { return FModified; }
  void SetModified(bool Value) { FModified = Value; }
  bool CanUndo() const;
  void Undo();

  // ---- Selection and clipboard
  int SelStart() const;
  void SetSelStart(int Value);
  int SelLength() const;
  void SetSelLength(int Value);
  // Selects from Start for Length.
  void SetSelection(int Start, int Length);
  std::string SelText() const;
  void SetSelText(const std::string& Value);
  void SelectAll();
  void ClearSelection();
  void CopyToClipboard();
  void CutToClipboard();
  void PasteFromClipboard();
  // Where Text (in the font's code page) first occurs between StartPos and
  // StartPos + Length characters, or -1.
  int FindText(const std::string& Text, int StartPos, int Length, TSearchTypes Options) const;

  // ---- What the edit control's messages answer
  // The line of a position.
  int LineFromChar(int Pos) const;
  // The first position of a line; -1 for the caret's line; -1 past the last line.
  int LineIndex(int Line) const;
  int LineLength(int Line) const;
  int FirstVisibleLine() const;
  // Lines that fit in the view.
  int VisibleLineCount() const;
  // Scrolls by whole lines (up for negative counts), as far as the text allows.
  void LineScroll(int Count);
  // The position nearest to a point of the client area.
  int CharFromPos(TPoint Point) const;

  // ---- Formatting (never a change of the text)
  // Makes the ranges bold and the rest of the text plain, in one pass.
  void SetBoldRanges(const std::vector<TjoTextRange>& Ranges);
  // Makes all text plain.
  void ClearFormatting();
  bool IsBold(int Pos) const;
  // The colour the character at Pos is drawn in.
  TColor TextColorAt(int Pos) const;

  // ---- Lines and marking
  // Caret to the first character of Line (-1: the caret's line), nothing selected.
  void GotoLine(int Line);
  // Scrolls Line to the top as far as the text allows, then as GotoLine.
  void ScrollToLine(int Line);
  // Colours Line red and centres it (the caret goes to its start); -1 takes the marking away.
  void HighlightLine(int Line);
  int HighlightedLine() const { return FHighlightedLine; }
  // The modified flag := Value, and nothing is left to undo.
  void ResetModified(bool Value);

  // ---- Search (the shared dialogs)
  // Shows the find dialog; Find Next closes it and searches.
  void Find();
  // Shows the replace dialog.
  void Replace();
  // Searches forward from one character after the selection start for the dialog's text;
  // selects the match. False when there is no dialog, no text or no match.
  bool SearchNext(TFindDialog* Dialog);
  // SearchNext, telling the user when nothing was found.
  bool SearchAgain(TFindDialog* Dialog);
  // The dialogs shared by every rich edit (none until first used, none again after any
  // rich edit is destroyed), and the text searched for last.
  static TFindDialog* SharedFindDialog();
  static TReplaceDialog* SharedReplaceDialog();
  static const std::string& SearchText();

  // ---- Events
  // While true, text changes raise no OnChange.
  bool LockChange = false;
  TNotifyEvent OnChange;
  TNotifyEvent OnSelectionChange;
  const TjoCursorPosChange& OnCursorPosChange() const { return FOnCursorPosChange; }
  // A listener set while the widget exists hears the current position at once.
  void SetOnCursorPosChange(const TjoCursorPosChange& Value);

  // ---- The context menu
  TPopupMenu* Menu() const { return FMenu; }
  TMenuItem* UndoItem = nullptr;
  TMenuItem* CutItem = nullptr;
  TMenuItem* CopyItem = nullptr;
  TMenuItem* PasteItem = nullptr;
  TMenuItem* DeleteItem = nullptr;
  TMenuItem* SelectAllItem = nullptr;
  TMenuItem* FindItem = nullptr;
  TMenuItem* ReplaceItem = nullptr;
  TMenuItem* SearchAgainItem = nullptr;
  // Sets the items' enabled states (when the menu opens).
  void UpdateMenu(TObject* Sender);

  // ---- Controls
  void CreateWidget() override;
  void UpdateWidgetText() override;
  void UpdateWidgetFont() override;
  void UpdateWidgetColors() override;
  bool WidgetEvent(QObject* Watched, QEvent* Event) override;
  // Ctrl+Insert copies the selection; no OnKeyDown.
  void KeyDown(Word& Key, TShiftState Shift) override;
  void DoEnter() override;
  void DoExit() override;

  // ---- For the control's own parts
  // The component that holds the text: the widget when there is one.
  QsciScintillaBase* Sci() const;
  // Reports a change of the text, then a moved caret or selection (after input and
  // after each operation that changes the text).
  void CheckSelection();
  // The document's text changed.
  void DocumentChanged();

protected:
  friend class TjoRichEditStrings;
  friend class TjoScintillaView;
  virtual void Change();
  virtual void SelectionChange();
  void FontChanged() override;
  void ColorChanged() override;

private:
  // Replaces the whole text (UTF-8, LF): nothing to undo, caret at the start.
  void SetDocumentText(const std::string& Utf8);
  // Replaces a stretch of the text, whatever ReadOnly says.
  void ReplaceRange(int Start, int End, std::string_view Utf8);
  void ConfigureView(QsciScintillaBase* View) const;
  void ApplyFont(QsciScintillaBase* View) const;
  void CreateMenu();
  TMenuItem* AddItem(const std::string& Caption, const char* ShortCut, const TNotifyEvent& OnClick);
  void MenuUndo(TObject*);
  void MenuCut(TObject*);
  void MenuCopy(TObject*);
  void MenuPaste(TObject*);
  void MenuDelete(TObject*);
  void MenuSelectAll(TObject*);
  void MenuFind(TObject*);
  void MenuReplace(TObject*);
  void MenuSearchAgain(TObject*);
  void FindFound(TObject* Sender);
  void ReplaceFound(TObject* Sender);
  void ReplaceDialogClose(TObject* Sender);
  void ReplaceAll(TReplaceDialog* Dialog);
  // Where the next search starts: one character after Pos.
  int PositionAfter(int Pos) const;
  int FindInDocument(std::string_view Needle, int Start, int End, TSearchTypes Options) const;

  QsciScintillaBase* FDocument;      // holds the text while there is no widget
  QPointer<TjoScintillaView> FView;  // the widget
  TjoRichEditStrings* FLines;
  TPopupMenu* FMenu = nullptr;
  TjoCursorPosChange FOnCursorPosChange;
  TFontCharset FCharset;  // the code page the held text came from
  bool FReadOnly = false;
  bool FHideSelection = true;
  bool FPlainText = false;
  TScrollStyle FScrollBars = ssNone;
  bool FWordWrap = true;
  TBorderStyle FBorderStyle = BorderStyleOf(bsSingle);
  bool FModified = false;
  bool FEntered = false;
  int FHighlightedLine = -1;
  int FLastAnchor = -1;
  int FLastCaret = -1;
  int FChanging = 0;
  bool FChangePending = false;  // the text changed; OnChange is yet to be raised  // changes made by the control itself that are no edit of the text
};

void RegisterRichEditClasses();
