#include "platform/vcl/FormRender.h"

#include "platform/rtti/Reader.h"
#include "platform/streaming/FormFile.h"
#include "platform/streaming/SaveFile.h"
#include "platform/streaming/SysUtils.h"
#include "platform/vcl/ClassicDraw.h"

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

namespace {

// The classic caption buttons: minimise, maximise, close; a button the window does not
// have beside one it has is drawn greyed.
void DrawCaptionButton(QPainter& p, const QRect& r, int kind, bool enabled = true) {
  QRect edge = r;
  DrawRaisedEdge(p, edge);
  p.fillRect(edge, ColorToQColor(clBtnFace));
  if (!enabled) {
    // Embossed: the glyph in white one pixel down and right, then in grey.
    p.save();
    p.translate(1, 1);
    p.setPen(ColorToQColor(clBtnHighlight));
    if (kind == 0) {
      p.fillRect(QRect(r.left() + 4, r.bottom() - 4, 6, 2), ColorToQColor(clBtnHighlight));
    } else {
      p.drawRect(QRect(r.left() + 3, r.top() + 2, 8, 8));
      p.drawLine(r.left() + 3, r.top() + 3, r.left() + 11, r.top() + 3);
    }
    p.restore();
  }
  const QColor glyph = ColorToQColor(enabled ? clBtnText : clGrayText);
  p.setPen(glyph);
  const int cx = r.center().x(), cy = r.center().y();
  switch (kind) {
    case 0:  // minimise: a bar at the bottom
      p.fillRect(QRect(r.left() + 4, r.bottom() - 4, 6, 2), glyph);
      break;
    case 1:  // maximise: a window outline with a thick top
      p.drawRect(QRect(r.left() + 3, r.top() + 2, 8, 8));
      p.drawLine(r.left() + 3, r.top() + 3, r.left() + 11, r.top() + 3);
      break;
    default:  // close: a cross
      for (int d = 0; d < 2; ++d) {
        p.drawLine(cx - 3 + d, cy - 3, cx + 3 + d, cy + 3);
        p.drawLine(cx - 3 + d, cy + 3, cx + 3 + d, cy - 3);
      }
      break;
  }
}

}  // namespace

QImage RenderForm(TCustomForm* form) {
  QWidget* window = form->Handle();
  if (!window) return {};
  const bool wasVisible = form->Visible();
  // No pointer hovers over the picture.
  QCursor::setPos(-1000, -1000);
  if (!wasVisible) form->Show();
  QApplication::processEvents();
  const QPixmap inside = window->grab();
  const int fw = form->FrameWidth();
  const int caption = form->CaptionHeight();
  QImage image(std::max(1, form->Width()), std::max(1, form->Height()), QImage::Format_RGB32);
  image.fill(ColorToQColor(clBtnFace));
  QPainter p(&image);
  if (fw > 0) {
    QRect frame(0, 0, image.width(), image.height());
    DrawRaisedEdge(p, frame);
  }
  if (caption > 0) {
    const QRect bar(fw, fw, image.width() - 2 * fw, caption - 1);
    QLinearGradient gradient(bar.topLeft(), bar.topRight());
    gradient.setColorAt(0, ColorToQColor(clActiveCaption));
    gradient.setColorAt(1, ColorToQColor(clGradientActiveCaption));
    p.fillRect(bar, gradient);
    const bool small = caption < 19;
    int textLeft = bar.left() + 3;
    TIcon* icon = form->Icon();
    const bool hasSystemMenu = form->BorderIcons().Contains(biSystemMenu) && form->BorderStyle() != bsDialog && !small;
    if (hasSystemMenu) {
      const int size = 16;
      const QRect iconRect(bar.left() + 1, bar.top() + (bar.height() - size) / 2, size, size);
      if (icon && !icon->Empty() && !icon->Image().isNull()) {
        p.drawImage(iconRect, icon->Image());
      } else {
        // The default application icon: a small window.
        p.fillRect(iconRect.adjusted(1, 2, -1, -2), Qt::white);
        p.setPen(Qt::black);
        p.drawRect(iconRect.adjusted(1, 2, -2, -3));
        p.fillRect(QRect(iconRect.left() + 2, iconRect.top() + 3, iconRect.width() - 4, 2), ColorToQColor(clActiveCaption));
      }
      textLeft = iconRect.right() + 3;
    }
    // Buttons from the right: close, then maximise and minimise with a gap.
    const int bw = small ? 12 : 16, bh = small ? 10 : 14;
    int right = bar.right() - 1;
    int buttonsLeft = right + 1;
    if (form->BorderIcons().Contains(biSystemMenu)) {
      QRect close(right - bw + 1, bar.top() + (bar.height() - bh) / 2, bw, bh);
      DrawCaptionButton(p, close, 2);
      buttonsLeft = close.left();
      const bool minMax = !small && form->BorderStyle() != bsDialog &&
                          (form->BorderIcons().Contains(biMinimize) || form->BorderIcons().Contains(biMaximize));
      if (minMax) {
        QRect max(close.left() - 2 - bw, close.top(), bw, bh);
        QRect min(max.left() - bw, close.top(), bw, bh);
        DrawCaptionButton(p, max, 1, form->BorderIcons().Contains(biMaximize) && form->BorderStyle() == bsSizeable);
        DrawCaptionButton(p, min, 0, form->BorderIcons().Contains(biMinimize));
        buttonsLeft = min.left();
      }
    }
    TFontRequest request;
    request.Name = "Tahoma";
    request.Height = -11;
    request.Bold = true;
    TCaptionLayout layout;
    layout.ShowAccelChar = false;
    layout.VAlign = TTextVAlign::Center;
    DrawCaption(p, QRect(textLeft, bar.top(), std::max(0, buttonsLeft - textLeft - 2), bar.height()), ResolveFont(request),
                form->UnicodeText(), layout, ColorToQColor(clCaptionText));
  }
  p.drawPixmap(fw, fw + caption, inside);
  p.end();
  if (!wasVisible) form->Hide();
  return image;
}

bool RenderFormFileToPng(const std::string& formFile, const std::string& pngFile, std::vector<std::string>& errors) {
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
