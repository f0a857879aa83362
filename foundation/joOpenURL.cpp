#include "foundation/joOpenURL.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

bool OpenURL(const std::string& Text) {
  const QUrl url(QString::fromStdString(Text));
  if (!url.isValid() || url.isEmpty()) return false;
  return QDesktopServices::openUrl(url);
}

bool MailTo(const std::string& Address) {
  return OpenURL("mailto:" + Address);
}
