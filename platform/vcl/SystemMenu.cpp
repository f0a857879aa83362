#include "platform/vcl/SystemMenu.h"

#include "platform/vcl/Charsets.h"
#include "platform/vcl/ClassicFrame.h"
#include "platform/vcl/Forms.h"

#include <QActionGroup>
#include <QMenu>

namespace {

// The window's own commands, as the classic system menu lists them.
std::vector<TSystemMenuItem> WindowCommands() {
  auto item = [](WPARAM command, const char* text) {
    TSystemMenuItem i;
    i.Command = command;
    i.Text = text;
    return i;
  };
  TSystemMenuItem separator;
  separator.Separator = true;
  TSystemMenuItem close = item(SC_CLOSE, "&Close\tAlt+F4");
  close.Default = true;
  return {item(SC_RESTORE, "&Restore"), item(SC_MOVE, "&Move"),         item(SC_SIZE, "&Size"),
          item(SC_MINIMIZE, "Mi&nimize"), item(SC_MAXIMIZE, "Ma&ximize"), separator, close};
}

}  // namespace

TSystemMenu::TSystemMenu(TCustomForm* form, QObject* parent) : QObject(parent), FForm(form), FItems(WindowCommands()) {
  setObjectName(QStringLiteral("SystemMenuItems"));
}

int TSystemMenu::IndexOf(WPARAM command) const {
  for (size_t i = 0; i < FItems.size(); ++i) {
    if (!FItems[i].Separator && FItems[i].Command == command) return static_cast<int>(i);
  }
  return -1;
}

void TSystemMenu::Insert(int position, const TSystemMenuItem& item) {
  if (position < 0 || position > Count()) position = Count();
  FItems.insert(FItems.begin() + position, item);
}

bool TSystemMenu::SetItemText(WPARAM command, const std::string& text) {
  const int i = IndexOf(command);
  if (i < 0) return false;
  FItems[static_cast<size_t>(i)].Text = text;
  return true;
}

std::string TSystemMenu::ItemText(WPARAM command) const {
  const int i = IndexOf(command);
  return i < 0 ? std::string() : FItems[static_cast<size_t>(i)].Text;
}

bool TSystemMenu::EnableItem(WPARAM command, bool enabled) {
  const int i = IndexOf(command);
  if (i < 0) return false;
  FItems[static_cast<size_t>(i)].Enabled = enabled;
  return true;
}

bool TSystemMenu::CheckRadioItem(WPARAM first, WPARAM last, WPARAM check) {
  bool found = false;
  for (TSystemMenuItem& item : FItems) {
    if (item.Separator || item.Command < first || item.Command > last) continue;
    item.Checked = item.Command == check;
    if (item.Checked) {
      item.Radio = true;
      found = true;
    }
  }
  return found;
}

WPARAM TSystemMenu::RadioChecked(WPARAM first, WPARAM last) const {
  for (const TSystemMenuItem& item : FItems) {
    if (!item.Separator && item.Radio && item.Checked && item.Command >= first && item.Command <= last) {
      return item.Command;
    }
  }
  return 0;
}

void TSystemMenu::UpdateWindowCommands() {
  const TWindowState state = FForm->WindowState();
  const TFormBorderStyle border = FForm->BorderStyle();
  const TBorderIcons icons = FForm->BorderIcons();
  const bool sizeable = border == bsSizeable || border == bsSizeToolWin;
  const bool captionButtons = border != bsDialog && border != bsToolWindow && border != bsSizeToolWin;
  EnableItem(SC_RESTORE, state != wsNormal);
  EnableItem(SC_MOVE, state != wsMaximized);
  EnableItem(SC_SIZE, sizeable && state == wsNormal);
  EnableItem(SC_MINIMIZE, captionButtons && icons.Contains(biMinimize) && state != wsMinimized);
  EnableItem(SC_MAXIMIZE, captionButtons && icons.Contains(biMaximize) && border == bsSizeable && state != wsMaximized);
}

QMenu* TSystemMenu::Popup(QPoint globalPos) {
  if (FMenu) FMenu->close();
  UpdateWindowCommands();
  auto* parentWidget = qobject_cast<QWidget*>(parent());
  auto* menu = new QMenu(parentWidget);
  menu->setObjectName(QStringLiteral("SystemMenu"));
  menu->setAttribute(Qt::WA_DeleteOnClose);
  QActionGroup* radios = nullptr;
  TCustomForm* form = FForm;
  for (const TSystemMenuItem& item : FItems) {
    if (item.Separator) {
      menu->addSeparator();
      continue;
    }
    QAction* action = menu->addAction(AnsiToUnicode(item.Text));
    action->setData(QVariant::fromValue(static_cast<qulonglong>(item.Command)));
    action->setEnabled(item.Enabled);
    if (item.Radio || item.Checked) {
      action->setCheckable(true);
      action->setChecked(item.Checked);
      if (item.Radio) {
        if (!radios) {
          radios = new QActionGroup(menu);
          radios->setExclusive(true);
        }
        radios->addAction(action);
      }
    }
    if (item.Default) {
      QFont f = action->font();
      f.setBold(true);
      action->setFont(f);
    }
    const WPARAM command = item.Command;
    QObject::connect(action, &QAction::triggered, menu, [form, command] { PostSysCommand(form, command); });
  }
  FMenu = menu;
  menu->popup(globalPos);
  return menu;
}

QMenu* TSystemMenu::ShownMenu() const { return FMenu && FMenu->isVisible() ? FMenu.data() : nullptr; }

TSystemMenu* GetSystemMenu(TCustomForm* form) {
  QWidget* window = form ? form->Handle() : nullptr;
  if (!window) return nullptr;
  if (auto* menu = window->findChild<TSystemMenu*>(QString(), Qt::FindDirectChildrenOnly)) return menu;
  return new TSystemMenu(form, window);
}
