#pragma once
// The system menu of a form whose frame the program draws (ClassicFrame.h): the window's
// own commands (Restore, Move, Size, Minimize, Maximize, Close) and whatever the program
// adds below them. Every item is a command that reaches the form as WM_SYSCOMMAND with
// the command in wParam; the form's Dispatch does what the window's own commands say.

#include "platform/vcl/Messages.h"

#include <QObject>
#include <QPoint>
#include <QPointer>

#include <string>
#include <vector>

class QMenu;
class TCustomForm;

struct TSystemMenuItem {
  WPARAM Command = 0;
  // '&' marks the accelerator; what follows a tab stands at the right (a shortcut's text).
  std::string Text;
  bool Separator = false;
  bool Enabled = true;
  // With Radio, the radio mark; otherwise a check mark.
  bool Checked = false;
  bool Radio = false;
  // Shown bold: what a double click on the icon does.
  bool Default = false;
};

class TSystemMenu : public QObject {
  Q_OBJECT
public:
  explicit TSystemMenu(TCustomForm* form, QObject* parent);

  int Count() const { return static_cast<int>(FItems.size()); }
  const TSystemMenuItem& Items(int index) const { return FItems.at(static_cast<size_t>(index)); }
  // The position of the item with this command, or -1.
  int IndexOf(WPARAM command) const;
  // Inserts before `position`; a negative position or one past the end appends.
  void Insert(int position, const TSystemMenuItem& item);
  void Append(const TSystemMenuItem& item) { Insert(-1, item); }
  // False when no item has this command.
  bool SetItemText(WPARAM command, const std::string& text);
  std::string ItemText(WPARAM command) const;
  bool EnableItem(WPARAM command, bool enabled);
  // Gives `check` the radio mark and takes the mark from every other item whose command
  // lies between `first` and `last`. False when `check` is not in the menu (the others
  // are cleared all the same).
  bool CheckRadioItem(WPARAM first, WPARAM last, WPARAM check);
  // The command that holds the radio mark among `first` .. `last`, or 0.
  WPARAM RadioChecked(WPARAM first, WPARAM last) const;

  // Enables the window's commands as the form's border, icons and state allow.
  void UpdateWindowCommands();
  // Opens the menu at a screen point; the chosen command is posted to the form. Returns
  // the menu that shows (named "SystemMenu"), open until the user chooses or leaves it.
  QMenu* Popup(QPoint globalPos);
  // The menu while it shows, else none.
  QMenu* ShownMenu() const;

private:
  TCustomForm* FForm;
  std::vector<TSystemMenuItem> FItems;
  QPointer<QMenu> FMenu;
};

// The form's system menu, made with the window's commands on first use; none for a form
// without a window.
TSystemMenu* GetSystemMenu(TCustomForm* form);
