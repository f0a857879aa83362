#include "liveform/joObjInsp.h"

#include "foundation/joLayout.h"
#include "liveform/joDesigner.h"
#include "platform/vcl/Clipbrd.h"
#include "platform/vcl/Keys.h"
#include "textedit/DFM_ResEdit.h"
#include "textedit/DFM_Utils.h"


namespace {

// The list the property text is built in, shared by every inspector.
TStringList& PropertyText() {
  static TStringList list;
  return list;
}

std::string_view TrimLeft(std::string_view s) {
  size_t i = 0;
  while (i < s.size() && static_cast<unsigned char>(s[i]) <= ' ') ++i;
  return s.substr(i);
}

// The kind of a line's first word, as the form text walker sees it.
int LineKind(std::string_view line) {
  int pos = 1, endPos = -1;
  if (!SkipBlanks(line, pos, endPos) || pos >= static_cast<int>(line.size())) return flkNone;
  const int start = pos;
  if (!ScanWord(line, pos, endPos)) return flkNone;
  return FormLineKind(line.substr(static_cast<size_t>(start - 1), static_cast<size_t>(pos - start)));
}

bool StartsWithNoCase(std::string_view text, std::string_view prefix) {
  return text.size() >= prefix.size() && SameText(text.substr(0, prefix.size()), prefix);
}

std::string WithoutKeyword(std::string_view text) {
  const size_t blank = text.find(' ');
  return blank == std::string_view::npos ? std::string() : std::string(TrimLeft(text.substr(blank + 1)));
}

}  // namespace

std::function<void(TFrm_DFM_OI*)> TFrm_DFM_OI::ShowInspectorKeyHandler = [](TFrm_DFM_OI* Window) { Window->Close(); };

LUMORA_CLASS_IMPL(TFrm_DFM_OI) {
  c.Field("Panel1", &TFrm_DFM_OI::Panel1);
  c.Field("Pan_FrmName", &TFrm_DFM_OI::Pan_FrmName);
  c.Field("Label1", &TFrm_DFM_OI::Label1);
  c.Field("CompTree", &TFrm_DFM_OI::CompTree);
  c.Field("Splitter", &TFrm_DFM_OI::Splitter);
  c.Field("Panel2", &TFrm_DFM_OI::Panel2);
  c.Field("Propertyes", &TFrm_DFM_OI::Propertyes);
  c.Method<&TFrm_DFM_OI::CompTreeChange>("CompTreeChange");
  c.Method<&TFrm_DFM_OI::CompTreeKeyDown>("CompTreeKeyDown");
  c.Method<&TFrm_DFM_OI::FormKeyDown>("FormKeyDown");
  c.Method<&TFrm_DFM_OI::FormClose>("FormClose");
}

TFrm_DFM_OI::TFrm_DFM_OI(TComponent* AOwner) : TForm(AOwner) {
  ReadLayouts(this);
  DoCreate();
}

TFrm_DFM_OI::~TFrm_DFM_OI() {
  if (OnFormDestroyed) OnFormDestroyed(this);
}

void TFrm_DFM_OI::Assign(TPersistent* Source) {
  if (!Source) {
    ClearWindow();
  } else if (Source->ClassNameIs("TjoComponentResource")) {
    LoadFromDocument(Source);
  } else {
    TForm::Assign(Source);
  }
}

bool TFrm_DFM_OI::IsEmpty() const { return !FFormText || FFormText->Count() == 0; }

void TFrm_DFM_OI::ClearWindow() {
  FLoading = true;
  FFormText.reset();
  CompTree->Items()->Clear();
  Propertyes->Lines()->Clear();
  FLoading = false;
}

void TFrm_DFM_OI::LoadFromDocument(TPersistent* Document) {
  if (!FFormText) FFormText = std::make_unique<TStringList>();
  Pan_FrmName->SetCaption("");
  Document->AssignTo(FFormText.get());
  TFormLines lines;
  lines.reserve(static_cast<size_t>(FFormText->Count()));
  for (int i = 0; i < FFormText->Count(); ++i) lines.push_back(FFormText->Strings(i));
  SuppressBinaryData(lines);
  FFormText->BeginUpdate();
  FFormText->Clear();
  for (const std::string& line : lines) FFormText->Add(line);
  FFormText->EndUpdate();

  FLoading = true;
  Propertyes->Lines()->Clear();
  BuildFormTree(CompTree, FFormText.get(), true);
  // A node names its component alone ("Button1: TButton"), without the block's keyword.
  for (TTreeNode* node = CompTree->Items()->GetFirstNode(); node; node = node->GetNext()) {
    node->SetText(WithoutKeyword(node->Text()));
  }
  FLoading = false;

  if (FFormText->Count() > 0) {
    Pan_FrmName->SetCaption(FFormText->Strings(0));
    if (TTreeNode* first = CompTree->Items()->GetFirstNode()) {
      if (CompTree->Selected() == first) {
        CompTreeChange(CompTree, first);
      } else {
        CompTree->SetSelected(first);
      }
      first->Expand(false);
    }
  }
}

void TFrm_DFM_OI::BuildPropertyText(int HeadingLine, TStrings& Out) const {
  const TStringList& text = *FFormText;
  Out.Add(std::string(TrimLeft(text.Strings(HeadingLine))));
  int depth = 0;
  for (int i = HeadingLine + 1; i < text.Count(); ++i) {
    const std::string& line = text.Strings(i);
    const int kind = LineKind(line);
    if (kind == flkEnd) {
      if (depth == 0) {
        Out.Add(std::string(TrimLeft(line)));
        return;
      }
      --depth;
    } else if (kind != flkNone) {
      ++depth;
    } else {
      Out.Add("  " + std::string(TrimLeft(line)));
    }
  }
}

void TFrm_DFM_OI::CompTreeChange(TObject*, TTreeNode* Node) {
  if (FLoading || !Node || !FFormText) return;
  TStringList& list = PropertyText();
  BuildPropertyText(FormTreeNodeLine(Node), list);
  Propertyes->Lines()->Assign(&list);
  list.Clear();
  if (OnSelectComponent) {
    const std::string text = Trim(Node->Text());
    const size_t colon = text.find(':');
    std::string name = text, className;
    if (colon != std::string::npos) {
      name = text.substr(0, colon);
      for (char ch : text.substr(colon + 1)) {
        if (ch != ' ') className += ch;
      }
    }
    OnSelectComponent(this, name, className);
  }
}

bool TFrm_DFM_OI::SelectComponent(const std::string& Name, const std::string& ClassName) {
  auto find = [this](const std::string& prefix) -> TTreeNode* {
    for (TTreeNode* node = CompTree->Items()->GetFirstNode(); node; node = node->GetNext()) {
      if (StartsWithNoCase(TrimLeft(node->Text()), prefix)) return node;
    }
    return nullptr;
  };
  TTreeNode* node = nullptr;
  if (!Name.empty()) node = find(Name + ":");
  if (!node && !ClassName.empty()) node = find(Name.empty() ? ClassName : Name + ": " + ClassName);
  if (!node) return false;
  node->MakeVisible();
  CompTree->SetSelected(node);
  return true;
}

void TFrm_DFM_OI::CompTreeKeyDown(TObject*, Word& Key, TShiftState Shift) {
  if ((Key == VK_INSERT || Key == 'C') && Shift == TShiftState{ssCtrl}) {
    if (TTreeNode* node = CompTree->Selected()) Clipboard()->SetAsText(node->Text());
  }
}

void TFrm_DFM_OI::FormKeyDown(TObject*, Word& Key, TShiftState Shift) {
  const TShortCut key = ShortCut(Key, Shift);
  if (key == scNone) return;
  if (key == TjoDesigner::CloseShortCut()) {
    Key = 0;
    Close();
  } else if (key == TjoDesigner::ShowInspectorShortCut()) {
    Key = 0;
    if (ShowInspectorKeyHandler) ShowInspectorKeyHandler(this);
  }
}

void TFrm_DFM_OI::FormClose(TObject*, TCloseAction& Action) { Action = caHide; }
