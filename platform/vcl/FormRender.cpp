#include "platform/vcl/FormRender.h"

#include "platform/rtti/Reader.h"
#include "platform/streaming/FormFile.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicFrame.h"
#include "platform/vcl/VclClasses.h"

#include <QApplication>
#include <QBuffer>
#include <QCursor>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

TFormLoadResult LoadFormFile(TCustomForm* form, std::string_view data) {
  TFormFile file{std::string(data)};
  return LoadFormFile(form, file);
}

TFormLoadResult LoadFormFile(TCustomForm* form, TFormFile& file) {
  TFormLoadResult result;
  auto note = [&](const std::string& message) {
    if (std::find(result.Errors.begin(), result.Errors.end(), message) == result.Errors.end()) {
      result.Errors.push_back(message);
    }
  };
  auto prepare = [&](TReader& reader) {
    reader.OnError = [&](TReader*, const std::string& message, bool& handled) {
      note(message);
      handled = true;
    };
    reader.OnFindMethod = [](TReader*, const std::string&, TMethod& method, bool& error) {
      method = TMethod();
      error = false;
    };
  };
  try {
    ReadComponentFromBinary(form, file.Stream(), prepare);
    result.Read = true;
  } catch (const Exception& e) {
    note(e.Message());
  } catch (const std::exception& e) {
    note(e.what());
  }
  return result;
}

QImage RenderForm(TCustomForm* form) {
  QWidget* window = form->Handle();
  if (!window) return {};
  const bool wasVisible = form->Visible();
  // No pointer hovers over the picture.
  QCursor::setPos(-1000, -1000);
  if (!wasVisible) form->Show();
  QApplication::processEvents();
  // Only what lies inside the frame: a window whose frame the program draws has it too.
  const QPixmap inside = window->grab(QRect(form->WindowInsideOffset(), form->WindowInsideSize(window->size())));
  const int fw = form->FrameWidth();
  const int caption = form->CaptionHeight();
  QImage image(std::max(1, form->Width()), std::max(1, form->Height()), QImage::Format_RGB32);
  image.fill(ColorToQColor(clBtnFace));
  QPainter p(&image);
  DrawClassicFrame(p, form, image.size(), true);
  p.drawPixmap(fw, fw + caption, inside);
  p.end();
  if (!wasVisible) form->Hide();
  return image;
}

bool RenderFormFileToPng(const std::string& formFile, const std::string& pngFile, std::vector<std::string>& errors) {
  RegisterVclClasses();
  TFormFile file;
  try {
    file = TFormFile::Read(formFile);
  } catch (const Exception& e) {
    errors.push_back(e.Message());
    return false;
  }
  auto* form = new TForm(Application);
  const TFormLoadResult loaded = LoadFormFile(form, file);
  errors.insert(errors.end(), loaded.Errors.begin(), loaded.Errors.end());
  bool ok = loaded.Read;
  if (ok) {
    const QImage image = RenderForm(form);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG")) {
      errors.push_back(Format("Cannot create file %s: the picture cannot be encoded", pngFile));
      ok = false;
    } else {
      try {
        SaveFile(pngFile, std::string_view(png.constData(), static_cast<std::size_t>(png.size())));
      } catch (const ESaveError& e) {
        errors.push_back(e.Message());
        ok = false;
      }
    }
  }
  delete form;
  return ok;
}
