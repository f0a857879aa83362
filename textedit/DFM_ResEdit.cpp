#include "textedit/DFM_ResEdit.h"

#include "foundation/ApEvent.h"
#include "platform/rtti/ClassBuilder.h"
#include "platform/streaming/ObjectText.h"
#include "platform/streaming/ResHeader.h"
#include "platform/streaming/RtlConsts.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/Streams.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/MessageLoop.h"
#include "resources/ResStrings.h"

#include <QCoreApplication>
#include <QMenuBar>
#include <QWidget>

#include <cstdint>
#include <cstring>
#include <memory>

namespace {

// The font dialog shared by every editor: made on first use, freed with any editor.
TFontDialog* GFontDialog = nullptr;

bool IsAsciiText(std::string_view Bytes) {
  return std::all_of(Bytes.begin(), Bytes.end(), [](char C) { return static_cast<unsigned char>(C) < 0x80; });
}

// Blank: empty or only characters with codes up to 32.
bool IsBlank(std::string_view S) {
  return std::all_of(S.begin(), S.end(), [](char C) { return static_cast<unsigned char>(C) <= 32; });
}

// StrToIntDef: the leading number of Text (after blanks), else Default.
int StrToIntDef(std::string_view Text, int Default) {
  long long Value = 0;
  return TryStrToInt(Trim(Text), Value) && Value >= INT_MIN && Value <= INT_MAX ? static_cast<int>(Value) : Default;
}

// The keywords of the emphasis, in the order they are tried.
constexpr std::string_view EmphasisKeywords[] = {"object", "end", "item", "inherited"};

// Where the keyword of a line starts and how long it is, by the emphasis rule: the line
// from its first character that is not a space (tabs are not skipped), at most 255
// characters, begins with a lower-case keyword followed by a space, a ">" or nothing.
bool FindEmphasis(std::string_view Line, std::size_t& Offset, std::size_t& Length) {
  const std::size_t First = Line.find_first_not_of(' ');
  if (First == std::string_view::npos) return false;
  const std::string_view S = Line.substr(First, 255);
  for (const std::string_view Keyword : EmphasisKeywords) {
    if (S.substr(0, Keyword.size()) != Keyword) continue;
    if (S.size() == Keyword.size() || S[Keyword.size()] == ' ' || S[Keyword.size()] == '>') {
      Offset = First;
      Length = Keyword.size();
      return true;
    }
  }
  return false;
}

TTreeNode* NodeOfHandle(TFormNodeHandle Handle) { return reinterpret_cast<TTreeNode*>(Handle); }
TFormNodeHandle HandleOfNode(TTreeNode* Node) { return reinterpret_cast<TFormNodeHandle>(Node); }

}  // namespace

// ---------------------------------------------------------------------------------------
// Line sources and the component tree

std::string_view TFormLineStrings::Line(int Index) const {
  FBuffer = FLines->Strings(Index);
  return FBuffer;
}

TRichEditLineSource::TRichEditLineSource(const TjoRichEdit* Edit)
    : FEdit(Edit), FText(Edit->DocumentText()), FCount(Edit->LineCount()) {}

std::string_view TRichEditLineSource::Line(int Index) const {
  std::size_t Start = FNextStart;
  if (Index != FNextIndex) Start = static_cast<std::size_t>(std::max(FEdit->LineIndex(Index), 0));
  Start = std::min(Start, FText.size());
  const void* Break = std::memchr(FText.data() + Start, '\n', FText.size() - Start);
  const std::size_t End = Break ? static_cast<std::size_t>(static_cast<const char*>(Break) - FText.data()) : FText.size();
  FLastStart = Start;
  FNextIndex = Index + 1;
  FNextStart = End + 1;
  const std::string_view Line = FText.substr(Start, End - Start);
  if (IsAsciiText(Line)) return Line;
  FBuffer = FEdit->FromDocument(Line);
  return FBuffer;
}

int BuildFormTree(TCustomTreeView* Tree, const TFormLineSource& Lines, bool SkipItems) {
  if (!Tree) return 0;
  TTreeNodes* Nodes = Tree->Items();
  int Added = 0;
  Nodes->BeginUpdate();
  try {
    Nodes->Clear();
    WalkFormText(
        Lines, 0, 0, 0, nullptr,
        [&](int Kind, TFormNodeHandle Parent, int LineIndex, std::intptr_t, std::string_view Rest) -> TFormNodeHandle {
          if (Kind == flkEnd) return Parent;
          if (Kind == flkItem && SkipItems) return Parent;
          std::string Text = Kind == flkObject ? "object" : Kind == flkInherited ? "inherited" : "item";
          if (!Rest.empty()) {
            Text += ' ';
            Text.append(Rest);
          }
          TTreeNode* Node = Nodes->AddChildObject(NodeOfHandle(Parent), Text,
                                                  reinterpret_cast<void*>(static_cast<std::intptr_t>(LineIndex)));
          ++Added;
          return HandleOfNode(Node);
        });
  } catch (...) {
    Nodes->EndUpdate();
    throw;
  }
  Nodes->EndUpdate();
  if (TTreeNode* First = Nodes->GetFirstNode()) {
    Tree->SetSelected(First);
    First->Expand(false);
  }
  return Added;
}

int BuildFormTree(TCustomTreeView* Tree, TStrings* Lines, bool SkipItems) {
  return BuildFormTree(Tree, TFormLineStrings(Lines), SkipItems);
}

int FormTreeNodeLine(const TTreeNode* Node) {
  return Node ? static_cast<int>(reinterpret_cast<std::intptr_t>(Node->Data())) : -1;
}

bool FindStringLiteral(std::string_view Line, int& Start, int& Length) {
  Start = 0;
  Length = 0;
  std::size_t P = Line.find('\'');
  if (P == std::string_view::npos) P = Line.find('#');
  if (P == std::string_view::npos) return false;
  const std::size_t From = P;
  for (;;) {
    if (P < Line.size() && Line[P] == '#') {
      ++P;
      while (P < Line.size() && Line[P] >= '0' && Line[P] <= '9') ++P;
    } else if (P < Line.size() && Line[P] == '\'') {
      ++P;
      for (;;) {
        if (P >= Line.size() || Line[P] == '\r' || Line[P] == '\n') break;
        if (Line[P] == '\'') {
          ++P;
          if (P < Line.size() && Line[P] == '\'') {
            ++P;
            continue;
          }
          break;
        }
        ++P;
      }
    } else {
      break;
    }
  }
  Start = static_cast<int>(From) + 1;
  Length = static_cast<int>(P - From);
  return true;
}

// ---------------------------------------------------------------------------------------
// TjoDFM_ResourceEditor

LUMORA_CLASS_IMPL(TjoDFM_ResourceEditor) {
  c.Property("Align", &TjoDFM_ResourceEditor::Align, &TjoDFM_ResourceEditor::SetAlign).Default(alNone);
  c.Property("Visible", &TjoDFM_ResourceEditor::Visible, &TjoDFM_ResourceEditor::SetVisible).Default(true);
  c.Property("Width", &TjoDFM_ResourceEditor::Width, &TjoDFM_ResourceEditor::SetWidth).Default(300);
  c.Property("Height", &TjoDFM_ResourceEditor::Height, &TjoDFM_ResourceEditor::SetHeight).Default(300);
  c.Property("FontEditor", &TjoDFM_ResourceEditor::FontEditor, &TjoDFM_ResourceEditor::SetFontEditor);
  c.Property("ReadOnly", &TjoDFM_ResourceEditor::ReadOnly, &TjoDFM_ResourceEditor::SetReadOnly).Default(true);
  c.Property("TreeWidth", &TjoDFM_ResourceEditor::TreeWidth, &TjoDFM_ResourceEditor::SetTreeWidth).Default(180);
  c.Property("TreeVisible", &TjoDFM_ResourceEditor::TreeVisible, &TjoDFM_ResourceEditor::SetTreeVisible).Default(false);
  c.Property("StatusBarVisible", &TjoDFM_ResourceEditor::StatusBarVisible,
             &TjoDFM_ResourceEditor::SetStatusBarVisible)
      .Default(false);
  c.Property("Caption", &TjoDFM_ResourceEditor::Caption, &TjoDFM_ResourceEditor::SetCaption);
  c.Property("OnChange", &TjoDFM_ResourceEditor::OnChange, &TjoDFM_ResourceEditor::OnChange);
}

TjoDFM_ResourceEditor::TjoDFM_ResourceEditor(TComponent* AOwner) : TWinControl(AOwner) {
  FUpdating = true;
  FWidth = 300;
  FHeight = 300;
  FRichEdit = new TjoRichEdit(this);
  FRichEdit->SetName("RichEdit");
  FRichEdit->SetParent(this);
  FRichEdit->SetLeft(FWidth - 5);
  FRichEdit->SetAlign(alClient);
  FRichEdit->SetReadOnly(true);
  FRichEdit->SetPlainText(true);
  FRichEdit->SetScrollBars(ssBoth);
  FRichEdit->SetWordWrap(false);
  FRichEdit->SetParentFont(false);
  FRichEdit->Font()->SetCharset(DEFAULT_CHARSET);
  FRichEdit->Font()->SetName("Courier New");
  FRichEdit->Font()->SetSize(11);
  FRichEdit->OnChange = MakeMethod<&TjoDFM_ResourceEditor::RichEditChange>(this);
  FRichEdit->OnEnter = MakeMethod<&TjoDFM_ResourceEditor::ConnectCursorPos>(this);
  FRichEdit->OnExit = MakeMethod<&TjoDFM_ResourceEditor::DisconnectCursorPos>(this);

  TMenuItem* Items = FRichEdit->Menu()->Items();
  auto Add = [Items](const std::string& Caption, const char* ShortCut, const TNotifyEvent& OnClick) {
    auto* Item = new TMenuItem(nullptr);
    Item->SetCaption(Caption);
    if (ShortCut) Item->SetShortCut(TextToShortCut(ShortCut));
    Item->OnClick = OnClick;
    Items->Add(Item);
    return Item;
  };
  Add(cLineCaption, nullptr, {});
  FCompileItem =
      Add(std::string(ResStr::SEditorCompile), "Ctrl+F9", MakeMethod<&TjoDFM_ResourceEditor::CompileClick>(this));
  FCompileItem->SetEnabled(false);
  FCompiled = true;
  Add(cLineCaption, nullptr, {});
  FFontItem = Add(std::string(ResStr::SEditorFont), nullptr, MakeMethod<&TjoDFM_ResourceEditor::FontCommand>(this));
  MarkModified(false);
  FUpdating = false;
}

TjoDFM_ResourceEditor::~TjoDFM_ResourceEditor() {
  delete GFontDialog;
  GFontDialog = nullptr;
  // The rich edit's events point here; the children go after this body.
  FRichEdit->OnChange = nullptr;
  FRichEdit->OnEnter = nullptr;
  FRichEdit->OnExit = nullptr;
  FRichEdit->SetOnCursorPosChange(nullptr);
  if (FTree) FTree->OnChange = nullptr;
}

TFontDialog* TjoDFM_ResourceEditor::SharedFontDialog() { return GFontDialog; }

// ---- Bulk updates

void TjoDFM_ResourceEditor::BeginUpdate() {
  if (++FUpdateCount == 1) BeginUIUpdate();
}

void TjoDFM_ResourceEditor::EndUpdate() {
  if (FUpdateCount > 1) {
    --FUpdateCount;
    return;
  }
  try {
    if (FModified) {
      RefreshText();
      if (OnChange) OnChange(this);
      MarkModified(false);
    }
  } catch (...) {
    EndUIUpdate();
    FUpdateCount = 0;
    throw;
  }
  EndUIUpdate();
  FUpdateCount = 0;
}

void TjoDFM_ResourceEditor::BeginUIUpdate() {
  FUpdating = true;
  if (FStatusBar) {
    SetPanelText(0, std::string(ResStr::SEditorProcessing));
    // Once, so that the bar shows it before the work starts.
    if (QCoreApplication::instance()) QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
  }
  FRichEdit->Lines()->BeginUpdate();
  if (FTree) FTree->Items()->BeginUpdate();
}

void TjoDFM_ResourceEditor::EndUIUpdate() {
  FRichEdit->Lines()->EndUpdate();
  if (FTree) FTree->Items()->EndUpdate();
  SetPanelText(0, std::string());
  FUpdating = false;
}

void TjoDFM_ResourceEditor::RefreshText() {
  BeginUIUpdate();
  try {
    RebuildTree();
    HighlightKeywords();
    SetModified(false);
    SetPanelText(1, std::string());
    if (FRichEdit->Focused()) ConnectCursorPos(this);
  } catch (...) {
    EndUIUpdate();
    throw;
  }
  EndUIUpdate();
}

// ---- Modified

void TjoDFM_ResourceEditor::RichEditChange(TObject*) { MarkModified(true); }

void TjoDFM_ResourceEditor::MarkModified(bool Value) {
  if (Value) {
    if (FUpdating || FUpdateCount != 0) return;
    FCompileItem->SetEnabled(true);
    FCompiled = false;
    if (!FModified) {
      FModified = true;
      SetPanelText(1, std::string(ResStr::SEditorModified));
      if (OnChange) OnChange(this);
    }
    return;
  }
  FModified = false;
  FCompileItem->SetEnabled(false);
  FCompiled = true;
  SetPanelText(1, std::string());
}

void TjoDFM_ResourceEditor::SetModified(bool Value) {
  FModified = Value;
  FRichEdit->ResetModified(Value);
  UpdateStatusBar();
}

// ---- Text

void TjoDFM_ResourceEditor::LoadLines(TStrings* Source) { LoadLines(Source, {}); }

void TjoDFM_ResourceEditor::LoadLines(TStrings* Source, std::string_view SourceStream) {
  FSourceStream = std::string(SourceStream);
  BeginUpdate();
  try {
    Clear();
    if (Source) {
      FRichEdit->Lines()->Assign(Source);
      FModified = true;
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TjoDFM_ResourceEditor::Clear() {
  BeginUIUpdate();
  try {
    FRichEdit->Lines()->Clear();
    FRichEdit->ClearFormatting();
    if (FTree) FTree->Items()->Clear();
  } catch (...) {
    EndUIUpdate();
    throw;
  }
  EndUIUpdate();
  MarkModified(false);
}

void TjoDFM_ResourceEditor::GetLines(TStrings* Dest) {
  if (Dest) Dest->Assign(FRichEdit->Lines());
}

std::string TjoDFM_ResourceEditor::TextBytes() const {
  const std::string_view Doc = FRichEdit->DocumentText();
  if (FRichEdit->DocumentIsAscii()) return std::string(Doc);
  return FRichEdit->FromDocument(Doc);
}

// ---- The tree

void TjoDFM_ResourceEditor::RebuildTree() {
  if (!FTree) return;
  if (FTree->Font()->Charset() != FRichEdit->Font()->Charset()) FTree->Font()->SetCharset(FRichEdit->Font()->Charset());
  BuildFormTree(FTree, TRichEditLineSource(FRichEdit));
}

void TjoDFM_ResourceEditor::TreeChange(TObject*, TTreeNode* Node) {
  if (Node) FRichEdit->ScrollToLine(FormTreeNodeLine(Node));
}

int TjoDFM_ResourceEditor::TreeWidth() const { return FTree ? FTree->Width() : FTreeWidth; }

void TjoDFM_ResourceEditor::SetTreeWidth(int Value) {
  if (FTree) {
    FTree->SetWidth(Value);
  } else {
    FTreeWidth = Value;
  }
}

bool TjoDFM_ResourceEditor::TreeVisible() const { return FTree && FTree->Visible(); }

void TjoDFM_ResourceEditor::SetTreeVisible(bool Value) {
  if (Value == TreeVisible()) return;
  // Nothing is painted until tree and splitter stand where they belong.
  QWidget* W = Widget();
  const bool Painting = W && W->updatesEnabled();
  if (Painting) W->setUpdatesEnabled(false);
  try {
    if (Value) {
      if (!FTree) {
        FTree = new TTreeView(this);
        FTree->SetName("Tree");
        FTree->SetVisible(false);
        FTree->SetParent(this);
        FTree->SetAlign(alLeft);
        FTree->SetWidth(FTreeWidth);
        FTree->SetReadOnly(true);
        FTree->SetHideSelection(false);
        FTree->OnChange = MakeMethod<&TjoDFM_ResourceEditor::TreeChange>(this);
        RebuildTree();
      }
      // The tree takes its place at the left first, then the splitter goes right of it.
      FTree->SetVisible(true);
      if (!FSplitter) {
        FSplitter = new TSplitter(this);
        FSplitter->SetName("Splitter");
        FSplitter->SetWidth(5);
        FSplitter->SetLeft(Width() - 5);
        FSplitter->SetParent(this);
        FSplitter->SetAlign(alLeft);
        FSplitter->SetBeveled(false);
      }
    } else {
      FTreeWidth = FTree->Width();
      delete FSplitter;
      FSplitter = nullptr;
      FTree->OnChange = nullptr;
      delete FTree;
      FTree = nullptr;
    }
  } catch (...) {
    if (Painting) W->setUpdatesEnabled(true);
    throw;
  }
  if (Painting) W->setUpdatesEnabled(true);
}

// ---- Keywords

void TjoDFM_ResourceEditor::HighlightKeywords() {
  FRichEdit->Lines()->BeginUpdate();
  std::vector<TjoTextRange> Ranges;
  {
    const TRichEditLineSource Lines(FRichEdit);
    const int Count = Lines.Count();
    for (int I = 0; I < Count; ++I) {
      const std::string_view Line = Lines.Line(I);
      std::size_t Offset = 0;
      std::size_t Length = 0;
      // Only spaces come before the keyword, so its offset is the same in the rich edit.
      if (FindEmphasis(Line, Offset, Length))
        Ranges.push_back({Lines.LastLineStart() + static_cast<int>(Offset), static_cast<int>(Length)});
    }
  }
  FRichEdit->SetBoldRanges(Ranges);
  FRichEdit->SetSelection(FRichEdit->SelStart(), 0);
  FRichEdit->ResetModified(false);
  FRichEdit->Lines()->EndUpdate();
}

// ---- Status bar

void TjoDFM_ResourceEditor::SetStatusBarVisible(bool Value) {
  if (Value == StatusBarVisible()) return;
  if (Value) {
    FStatusBar = new TStatusBar(this);
    FStatusBar->SetName("StatusBar");
    FStatusBar->SetSizeGrip(false);
    FStatusBar->SetParent(this);
    for (const int W : {60, 60, 70}) FStatusBar->Panels()->Add()->SetWidth(W);
    UpdateStatusBar();
  } else {
    FRichEdit->SetOnCursorPosChange(nullptr);
    delete FStatusBar;
    FStatusBar = nullptr;
  }
}

void TjoDFM_ResourceEditor::SetPanelText(int Index, const std::string& Text) {
  if (!FStatusBar || Index >= FStatusBar->Panels()->Count()) return;
  FStatusBar->Panels()->Items(Index)->SetText(Text);
}

void TjoDFM_ResourceEditor::UpdateStatusBar() {
  if (!FStatusBar) return;
  if (FRichEdit->Focused()) {
    ConnectCursorPos(this);
  } else {
    SetPanelText(0, std::string());
  }
  SetPanelText(1, FModified ? std::string(ResStr::SEditorModified) : std::string());
  SetPanelText(2, FRichEdit->ReadOnly() ? std::string(ResStr::SEditorReadOnly) : std::string());
  TStatusPanels* Panels = FStatusBar->Panels();
  if (!IsBlank(Caption())) {
    if (Panels->Count() < 4) Panels->Add();
    Panels->Items(3)->SetText(Caption());
  } else if (Panels->Count() > 3) {
    Panels->Delete(3);
  }
}

void TjoDFM_ResourceEditor::SetText(const std::string& Value) {
  if (Value == FText) return;
  FText = Value;
  UpdateStatusBar();
}

void TjoDFM_ResourceEditor::SetReadOnly(bool Value) {
  FRichEdit->SetReadOnly(Value);
  UpdateStatusBar();
}

void TjoDFM_ResourceEditor::ConnectCursorPos(TObject*) {
  FRichEdit->SetOnCursorPosChange(nullptr);
  if (FStatusBar) FRichEdit->SetOnCursorPosChange(MakeMethod<&TjoDFM_ResourceEditor::ShowCursorPos>(this));
}

void TjoDFM_ResourceEditor::DisconnectCursorPos(TObject*) {
  FRichEdit->SetOnCursorPosChange(nullptr);
  SetPanelText(0, std::string());
}

void TjoDFM_ResourceEditor::ShowCursorPos(TObject*, int Line, int Col) {
  if (FUpdating || !FStatusBar) return;
  SetPanelText(0, Format(ResStr::SEditorCursorPos, Line + 1, Col + 1));
}

// ---- Compile

void TjoDFM_ResourceEditor::CompileClick(TObject*) { Compile(); }

std::string TjoDFM_ResourceEditor::TextToBinary(const std::string& Text) const {
  return FSourceStream.empty() ? ObjectTextToBinary(Text) : ObjectTextToBinary(Text, FSourceStream);
}

bool TjoDFM_ResourceEditor::Compile() {
  if (FCompiled) return true;
  int ErrorLine = -1;
  bool Result = false;
  auto Finish = [&] {
    EndUpdate();
    if (ErrorLine != -1) FRichEdit->GotoLine(ErrorLine - 1);
    MarkModified(true);
  };
  try {
    std::string Binary;
    try {
      Binary = TextToBinary(TextBytes());
    } catch (const Exception& E) {
      const std::string& Message = E.Message();
      const std::size_t At = Message.find("line ");
      if (At != std::string::npos) ErrorLine = StrToIntDef(std::string_view(Message).substr(At + 5, 255), 0);
      throw;
    }
    const std::string NewText = ObjectBinaryToText(Binary);
    TFont FontCopy;
    FontCopy.Assign(FRichEdit->Font());
    BeginUpdate();
    Clear();
    FRichEdit->Font()->Assign(&FontCopy);
    FModified = true;
    FRichEdit->Lines()->SetText(NewText);
    FSourceStream = std::move(Binary);
    Result = true;
  } catch (...) {
    Finish();
    throw;
  }
  Finish();
  if (Result) {
    FCompileItem->SetEnabled(false);
    FCompiled = true;
  }
  return Result;
}

bool TjoDFM_ResourceEditor::SaveToResourceFile(const std::string& FileName) {
  try {
    if (!Compile()) return false;
    const std::string Binary = TextToBinary(TextBytes());
    std::string File = MakeResHeader(StreamRootClassName(Binary), static_cast<std::uint32_t>(Binary.size()));
    File += Binary;
    SaveFile(FileName, File);
    return true;
  } catch (const Exception& E) {
    DeferError(E.Message());
  } catch (const std::exception& E) {
    DeferError(E.what());
  }
  return false;
}

// ---- Font

void TjoDFM_ResourceEditor::FontCommand(TObject*) {
  if (!GFontDialog) GFontDialog = new TFontDialog(nullptr);
  GFontDialog->Font()->Assign(FRichEdit->Font());
  if (!GFontDialog->Execute()) return;
  FRichEdit->Lines()->BeginUpdate();
  FUpdating = true;
  try {
    // The text goes out and comes back, so that all of it takes the new font.
    const std::string Text = FRichEdit->Lines()->Text();
    FRichEdit->Clear();
    FRichEdit->Font()->Assign(GFontDialog->Font());
    FRichEdit->Lines()->SetText(Text);
    HighlightKeywords();
  } catch (...) {
    FRichEdit->Lines()->EndUpdate();
    FUpdating = false;
    throw;
  }
  FRichEdit->Lines()->EndUpdate();
  FUpdating = false;
}

// ---- Strings

int TjoDFM_ResourceEditor::CollectStrings(TStrings* List) {
  const TRichEditLineSource Lines(FRichEdit);
  const int Count = Lines.Count();
  for (int I = 0; I < Count; ++I) {
    int Start = 0;
    int Length = 0;
    std::string Value;
    if (DecodeStringLiteral(Lines.Line(I), Start, Length, Value)) {
      List->AddObject(Value, reinterpret_cast<TObject*>(static_cast<std::intptr_t>(I)));
    } else if (Start > 0) {
      FRichEdit->GotoLine(I);
      throw EParserError(RtlConsts::SInvalidString);
    }
  }
  return List->Count();
}

void TjoDFM_ResourceEditor::ApplyStrings(TStrings* List) {
  if (!List || FRichEdit->ReadOnly()) return;
  std::vector<std::pair<int, std::string>> Changes;
  const int LineCount = FRichEdit->LineCount();
  for (int I = 0; I < List->Count(); ++I) {
    const int Line = static_cast<int>(reinterpret_cast<std::intptr_t>(List->Objects(I)));
    if (Line <= 0 || Line >= LineCount) continue;
    std::string Buffer;
    const std::string Text(FRichEdit->LineBytes(Line, Buffer));
    int Start = 0;
    int Length = 0;
    if (!FindStringLiteral(Text, Start, Length)) continue;
    std::string NewLine = Text.substr(0, static_cast<std::size_t>(Start - 1));
    NewLine += EncodeStringLiteral(List->Strings(I));
    const std::size_t After = static_cast<std::size_t>(Start - 1 + Length);
    if (After < Text.size()) NewLine += Text.substr(After, 255);
    Changes.emplace_back(Line, std::move(NewLine));
  }
  FRichEdit->ReplaceLines(Changes);
}

void RegisterResourceEditorClasses() { RegisterClasses({TjoDFM_ResourceEditor::StaticClass()}); }
