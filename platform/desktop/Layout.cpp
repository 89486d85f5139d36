// SPDX-License-Identifier: MIT
#include "platform/desktop/Layout.h"

#include <QApplication>
#include <QFont>
#include <QFontMetrics>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <algorithm>
#include <cmath>

#include "platform/Program.h"

namespace platform::desktop {

namespace {

constexpr double kPixelsPerPoint = 96.0 / 72;
constexpr int kLeastPixels = 7;  // of a font that is made smaller to fit
constexpr int kButtonBorder = 2;
constexpr int kWordMargin = 8;  // around words in a picture's place

// Shades of a button's colour, in percent.
constexpr int kBorderShade = 180;
constexpr int kHoverShade = 106;
constexpr int kPressedShade = 115;

int PixelsOf(double points) {
  return static_cast<int>(std::lround(points * kPixelsPerPoint));
}

QFont FontOf(const TextLook& look, int pixels) {
  QFont font;
  font.setFamilies(look.family == FontFamily::Arial ? QStringList{"Arial", "Liberation Sans"}
                                                    : QStringList{"Verdana", "DejaVu Sans"});
  font.setPixelSize(pixels);
  font.setBold(look.bold);
  font.setItalic(look.italic);
  return font;
}

// The largest font up to the size of `look` in which `text` fits into `room`.
QFont FittingFont(const QString& text, QSize room, const TextLook& look, int leastPixels) {
  for (int pixels = PixelsOf(look.points);; --pixels) {
    QFont font = FontOf(look, pixels);
    const QRect bounds =
        QFontMetrics(font).boundingRect(QRect(QPoint(), room), look.alignment, text);
    if (pixels <= leastPixels ||
        (bounds.width() <= room.width() && bounds.height() <= room.height()))
      return font;
  }
}

QString ButtonStyle(const QColor& colour) {
  const QString style =
      "QPushButton { background: %1; color: black; border: 1px solid %2; border-radius: 3px; }"
      "QPushButton:hover { background: %3; }"
      "QPushButton:focus { border: 2px solid %2; }"
      "QPushButton:pressed { background: %4; }"
      "QPushButton:disabled { color: gray; }";
  return style.arg(colour.name(), colour.darker(kBorderShade).name(),
                   colour.lighter(kHoverShade).name(), colour.darker(kPressedShade).name());
}

void SetUp(QLabel& label, const Control& control, const TextLook& look) {
  Put(label, control);
  label.setTextFormat(Qt::PlainText);
  label.setText(control.text);
  label.setAlignment(Qt::Alignment(look.alignment & ~Qt::TextWordWrap));
  label.setWordWrap((look.alignment & Qt::TextWordWrap) != 0);
  QPalette colours = label.palette();
  colours.setColor(QPalette::WindowText, QColor(look.colour));
  label.setPalette(colours);
  FitFont(label, look, kLeastPixels);
}

class PictureLabel : public QLabel {
 public:
  PictureLabel(QWidget* window, const QIcon& picture, QSize size)
      : QLabel(window), picture_(picture), size_(size) {}

 protected:
  void paintEvent(QPaintEvent* event) override {
    if (picture_.isNull()) {
      QLabel::paintEvent(event);
    } else {
      PaintPicture(*this, picture_, size_);
    }
  }

 private:
  QIcon picture_;
  QSize size_;
};

}  // namespace

SmallWindow::SmallWindow(const WindowLook& look) {
  setObjectName(look.name);
  setWindowTitle(look.caption);
  setFixedSize(look.width, look.height);
  setPalette(QPalette(QColor(kPlainGrey), QColor(look.background)));
  const QRect screenRoom = screen()->availableGeometry();
  move(std::max(screenRoom.left(), screenRoom.center().x() - width() / 2),
       std::max(screenRoom.top(), screenRoom.center().y() - height() / 2));
}

void Put(QWidget& widget, const Control& control) {
  widget.setObjectName(control.name);
  widget.setAccessibleName(control.text);
  widget.setGeometry(control.place.left, control.place.top, control.place.width,
                     control.place.height);
}

QLabel* AddLabel(QWidget& window, const Control& control, const TextLook& look) {
  auto* const label = new QLabel(&window);
  SetUp(*label, control, look);
  return label;
}

QPushButton* AddButton(QWidget& window, const Control& control, QRgb colour) {
  auto* const button = new QPushButton(control.text, &window);
  Put(*button, control);
  button->setStyleSheet(ButtonStyle(colour));
  const QSize room = button->size() - QSize(2 * kButtonBorder, 2 * kButtonBorder);
  button->setFont(FittingFont(control.text, room, kPlainText, kLeastPixels));
  return button;
}

void FitFont(QLabel& label, const TextLook& look, int leastPixels) {
  label.setFont(FittingFont(label.text(), label.contentsRect().size(), look, leastPixels));
}

QIcon LoadPicture(std::initializer_list<const char*> files) {
  const QString folder = QString::fromStdString(ProgramFolder()) + "/images/";
  QIcon picture;
  for (const char* const file : files) {
    if (!picture.isNull() && qApp->devicePixelRatio() <= 1) break;
    QPixmap pixmap(folder + file);
    // QIcon serves a pixmap with a device pixel ratio of 2, which the name "@2x" gives it, to
    // screens of that ratio alone. With 1 it chooses by the size in dots, at every ratio.
    pixmap.setDevicePixelRatio(1);
    if (!pixmap.isNull()) picture.addPixmap(pixmap);
  }
  return picture;
}

void PaintPicture(QWidget& widget, const QIcon& picture, QSize size) {
  const QPoint middle((widget.width() - size.width()) / 2, (widget.height() - size.height()) / 2);
  QPainter painter(&widget);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  picture.paint(&painter, QRect(middle, size));
}

QLabel* AddPicture(QWidget& window, const Control& control, const QIcon& picture, QSize size,
                   const TextLook& look) {
  auto* const label = new PictureLabel(&window, picture, size);
  label->setContentsMargins(kWordMargin, kWordMargin, kWordMargin, kWordMargin);
  SetUp(*label, control, look);
  return label;
}

void SetOwner(QWidget& window, QWidget* parent) {
  if (window.parentWidget() == parent) return;
  const QPoint place = window.pos();
  window.setParent(parent, window.windowFlags());
  window.move(place);
}

void Present(QWidget& window, QWidget* parent) {
  if (!window.isVisible()) SetOwner(window, parent);
  window.setWindowState(window.windowState() & ~Qt::WindowMinimized);
  window.show();
  window.raise();
  window.activateWindow();
}

}  // namespace platform::desktop
