#pragma once
// The object inspector of a live form: a small read-only tool window that lists the form's
// components as a tree and shows the selected one's properties as the form text has them.
// One per live form, opened with "Show Object Inspector"; a click on a control of the form
// selects its component here.

#include "platform/rtti/Classes.h"
#include "platform/vcl/ComCtrls.h"
#include "platform/vcl/ExtCtrls.h"
#include "platform/vcl/Forms.h"
#include "platform/vcl/StdCtrls.h"

#include <functional>
#include <memory>
#include <string>

// (Sender, component name, class name)
LUMORA_EVENT(TjoSelectComponentEvent, void(TObject* Sender, const std::string& Name, const std::string& ClassName))

class TFrm_DFM_OI : public TForm {
  LUMORA_CLASS(TFrm_DFM_OI, TForm)
public:
  explicit TFrm_DFM_OI(TComponent* AOwner);
  ~TFrm_DFM_OI() override;

  // ---- Components of the layout
  TPanel* Panel1 = nullptr;
  TPanel* Pan_FrmName = nullptr;
  TLabel* Label1 = nullptr;
  TTreeView* CompTree = nullptr;
  TSplitter* Splitter = nullptr;
  TPanel* Panel2 = nullptr;
  TMemo* Propertyes = nullptr;

  // Called when the selection in the tree changes.
  TjoSelectComponentEvent OnSelectComponent;
  // Tells the designer that this window is gone.
  TNotifyEvent OnFormDestroyed;

  // None clears the window; a form document loads it; anything else is refused with the
  // usual cannot-assign error.
  void Assign(TPersistent* Source) override;
  // True when there is no form text or it has no lines.
  bool IsEmpty() const;
  // Selects the first node whose component has this name (or, failing that, this name and
  // class, or this class alone when the name is empty). False when there is none.
  bool SelectComponent(const std::string& Name, const std::string& ClassName);
  // The form text the window shows, binary values suppressed (none before loading).
  const TStringList* FormText() const { return FFormText.get(); }

  // ---- Handlers of the layout
  void CompTreeChange(TObject* Sender, TTreeNode* Node);
  void CompTreeKeyDown(TObject* Sender, Word& Key, TShiftState Shift);
  void FormKeyDown(TObject* Sender, Word& Key, TShiftState Shift);
  void FormClose(TObject* Sender, TCloseAction& Action);

  // What the show-inspector key does on an inspector; the default hides it, so that the
  // same key shows and hides the inspector. The application may put its own in place.
  static std::function<void(TFrm_DFM_OI*)> ShowInspectorKeyHandler;

private:
  void LoadFromDocument(TPersistent* Document);
  void ClearWindow();
  // The property text of the block that starts at line `HeadingLine`.
  void BuildPropertyText(int HeadingLine, TStrings& Out) const;

  std::unique_ptr<TStringList> FFormText;
  bool FLoading = false;
};
