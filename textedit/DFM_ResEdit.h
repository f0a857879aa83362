#pragma once
// The form-text editor: one form shown as text (a rich edit), with an optional tree of
// its components on the left, an optional status bar, and the commands that turn the
// edited text back into a form stream ("Compile"), change the text's font ("&Font") and
// save it as a form file. It works on text only; it never builds live components.
//
// Also here: the builder of the component tree of a form text, shared with the object
// inspector (BuildFormTree), and the reading of a line's string constant for the strings
// editor (FindStringLiteral).

#include "platform/rtti/Classes.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/Controls.h"
#include "platform/vcl/Dialogs.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Menus.h"
#include "textedit/DFM_Utils.h"
#include "textedit/joRichEdit.h"

#include <string>
#include <string_view>

// ---- The component tree of a form text ---------------------------------------------------

// The lines of a string list as a line source.
class TFormLineStrings : public TFormLineSource {
public:
  explicit TFormLineStrings(TStrings* Lines) : FLines(Lines) {}
  int Count() const override { return FLines ? FLines->Count() : 0; }
  std::string_view Line(int Index) const override;

private:
  TStrings* FLines;
  mutable std::string FBuffer;
};

// The lines of a rich edit as a line source, read in place (a line is copied only when
// it holds characters beyond ASCII and has to be put into the font's code page). The
// text must not change while the source is in use.
class TRichEditLineSource : public TFormLineSource {
public:
  explicit TRichEditLineSource(const TjoRichEdit* Edit);
  int Count() const override { return FCount; }
  std::string_view Line(int Index) const override;
  // Where the line returned last starts in the rich edit (a position as SelStart counts).
  int LastLineStart() const { return static_cast<int>(FLastStart); }

private:
  const TjoRichEdit* FEdit;
  std::string_view FText;
  int FCount;
  mutable int FNextIndex = 0;
  mutable std::size_t FNextStart = 0;
  mutable std::size_t FLastStart = 0;
  mutable std::string FBuffer;
};

// Fills Tree with the components of a form text: one node per object, inherited and item
// block, nested as in the text. A node's text is the block's keyword in lower case, then,
// when the heading line has more after the keyword, a blank and that rest
// ("object Button1: TButton", "inherited Form1: TForm1", "item"); its data is the
// zero-based index of the heading line (read it with FormTreeNodeLine). With SkipItems,
// item blocks make no nodes and what they hold hangs on the item's parent. The old nodes
// go first and the new ones are made in the tree's update mode; then the first node, if
// any, is selected (which raises the tree's OnChange) and expanded one level. Returns
// the number of nodes. Works on any tree view.
int BuildFormTree(TCustomTreeView* Tree, const TFormLineSource& Lines, bool SkipItems = false);
int BuildFormTree(TCustomTreeView* Tree, TStrings* Lines, bool SkipItems = false);
// The zero-based heading line of a node made by BuildFormTree; -1 for none.
int FormTreeNodeLine(const TTreeNode* Node);

// The string constant of a line: Start (one-based) is its first apostrophe, else its first
// "#"; it runs over quoted runs ('' is a quote; a run also ends at a line end or the end of
// the line) and #nnn codes, so 'abc'#13#10'def' is one constant. False when there is none.
bool FindStringLiteral(std::string_view Line, int& Start, int& Length);

// ---- The editor ------------------------------------------------------------------------------

class TjoDFM_ResourceEditor : public TWinControl {
  LUMORA_CLASS(TjoDFM_ResourceEditor, TWinControl)
public:
  explicit TjoDFM_ResourceEditor(TComponent* AOwner);
  ~TjoDFM_ResourceEditor() override;

  // ---- Parts
  TjoRichEdit* RichEdit() const { return FRichEdit; }
  // The component tree, the splitter beside it and the status bar; none while hidden.
  TTreeView* Tree() const { return FTree; }
  TSplitter* Splitter() const { return FSplitter; }
  TStatusBar* StatusBar() const { return FStatusBar; }
  // The "Compile" item of the rich edit's context menu, and the "&Font" item.
  TMenuItem* CompileItem() const { return FCompileItem; }
  TMenuItem* FontItem() const { return FFontItem; }

  // ---- State
  // The text differs from what was last loaded or compiled.
  bool Modified() const { return FModified; }
  // Modified := Value, the rich edit's own flag too, nothing left to undo.
  void SetModified(bool Value);
  // True when the text needs no compiling ("Compile" is enabled exactly when it is false).
  bool Compiled() const { return FCompiled; }
  // True during bulk work on the text: edits do not mark the text modified then.
  bool Updating() const { return FUpdating; }
  int UpdateCount() const { return FUpdateCount; }

  // ---- Text
  // Shows Source (none: an empty text): tree built, keywords bold, not modified, "Compile"
  // disabled, OnChange raised once. The binary stream of an earlier text is forgotten.
  void LoadLines(TStrings* Source);
  // The same for a text made from the binary form stream SourceStream (the document's
  // current stream): Compile and SaveToResourceFile keep the bytes of every value of
  // that stream that the text still has.
  void LoadLines(TStrings* Source, std::string_view SourceStream);
  // The binary form stream the text came from, and after each successful Compile the
  // stream compiled; empty when the text came from elsewhere.
  const std::string& SourceStream() const { return FSourceStream; }
  void SetSourceStream(std::string_view Value) { FSourceStream = std::string(Value); }
  void Clear();
  void GetLines(TStrings* Dest);
  // Bulk work: edits are not marked until the outermost EndUpdate, which refreshes the
  // tree and the keywords when the text changed.
  void BeginUpdate();
  void EndUpdate();

  // ---- Commands
  // Turns the text into a form stream and shows it as the converter writes it; false never
  // (an error is raised instead, with the caret on the line the parser names). True at
  // once when the text needs no compiling.
  bool Compile();
  // Compiles and writes the form as a binary form file. False when the text does not
  // compile or the file cannot be written (the reason goes to the deferred error report);
  // the file is then left as it was.
  bool SaveToResourceFile(const std::string& FileName);
  // The "&Font" command: the shared font dialog, then all text in the chosen font.
  void FontCommand(TObject* Sender);
  static TFontDialog* SharedFontDialog();

  // ---- Strings of the form (the strings editor)
  // Adds every line's string constant, decoded, with the line index as its object;
  // returns the number of items in List.
  int CollectStrings(TStrings* List);
  // Writes each item back into its line (by the line index in its object), unless read-only.
  void ApplyStrings(TStrings* List);

  // ---- Published
  TFont* FontEditor() const { return FRichEdit->Font(); }
  void SetFontEditor(TFont* Value) { FRichEdit->Font()->Assign(Value); }
  bool ReadOnly() const { return FRichEdit->ReadOnly(); }
  void SetReadOnly(bool Value);
  int TreeWidth() const;
  void SetTreeWidth(int Value);
  bool TreeVisible() const;
  void SetTreeVisible(bool Value);
  bool StatusBarVisible() const { return FStatusBar != nullptr; }
  void SetStatusBarVisible(bool Value);
  // Shown in the fourth status panel, which exists only while it is not blank.
  void SetText(const std::string& Value) override;
  TNotifyEvent OnChange;

protected:
  // The step of Compile and SaveToResourceFile that turns the text (in the font's code
  // page) into a binary form stream, keeping the bytes of the stream the text came from.
  virtual std::string TextToBinary(const std::string& Text) const;

private:
  void BeginUIUpdate();
  void EndUIUpdate();
  void RefreshText();
  void MarkModified(bool Value);
  void RebuildTree();
  void HighlightKeywords();
  void UpdateStatusBar();
  void SetPanelText(int Index, const std::string& Text);
  void ConnectCursorPos(TObject* Sender);
  void DisconnectCursorPos(TObject* Sender);
  void ShowCursorPos(TObject* Sender, int Line, int Col);
  void RichEditChange(TObject* Sender);
  void TreeChange(TObject* Sender, TTreeNode* Node);
  void CompileClick(TObject* Sender);
  // The text in the font's code page.
  std::string TextBytes() const;

  TjoRichEdit* FRichEdit;
  TTreeView* FTree = nullptr;
  int FTreeWidth = 180;
  TSplitter* FSplitter = nullptr;
  bool FUpdating = true;
  TStatusBar* FStatusBar = nullptr;
  bool FModified = false;
  int FUpdateCount = 0;
  bool FCompiled = true;
  TMenuItem* FCompileItem = nullptr;
  TMenuItem* FFontItem = nullptr;
  std::string FSourceStream;
};

void RegisterResourceEditorClasses();
