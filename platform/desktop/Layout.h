// SPDX-License-Identifier: MIT
// What the small windows share: how a control of a layout table is made and placed, and how a
// window is shown. Sizes and places are pixels of the client area; fonts are sized in pixels at 96
// dots an inch, so that no desktop setting changes a layout.
#pragma once

#include <QColor>
#include <QDialog>
#include <QIcon>
#include <QPointer>
#include <initializer_list>

class QLabel;
class QPushButton;

namespace platform::desktop {

struct Place {
  int left;
  int top;
  int width;
  int height;
};

/// A control of a layout table: its name, the words that it shows or, where it shows none, that
/// tell a screen reader what it is, and its place.
struct Control {
  const char* name;
  const char* text;
  Place place;
};

enum class FontFamily { Arial, Verdana };

struct TextLook {
  FontFamily family;
  double points;
  QRgb colour;
  int alignment;  ///< Qt::Alignment, and Qt::TextWordWrap where lines may break
  bool bold = false;
  bool italic = false;
};

struct WindowLook {
  const char* name;
  const char* caption;
  int width;
  int height;
  QRgb background;
};

inline constexpr QRgb kBlack = qRgb(0, 0, 0);
inline constexpr QRgb kWhite = qRgb(255, 255, 255);
inline constexpr QRgb kPlainGrey = qRgb(224, 224, 224);  ///< a button without a colour of its own

/// The look of labels and buttons of which nothing else is said.
inline constexpr TextLook kPlainText = {FontFamily::Arial, 8.25, kBlack,
                                        Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap};

/// A window of a fixed client size in the middle of the screen. It is hidden by its close box and
/// by Esc, and keeps its controls as they are. Its colours do not follow the desktop's.
class SmallWindow : public QDialog {
 public:
  explicit SmallWindow(const WindowLook& look);

  /// What a window does once when it is made, with its controls in place; events may run.
  void Load() {}
};

/// Names `widget`, tells its words to screen readers, and moves it to its place.
void Put(QWidget& widget, const Control& control);

/// A label without a background. Its text is never taken for markup.
QLabel* AddLabel(QWidget& window, const Control& control, const TextLook& look);

/// A push button in `colour` that looks the same in every style of the desktop.
QPushButton* AddButton(QWidget& window, const Control& control, QRgb colour);

/// Sets the largest font of `look`, no smaller than `leastPixels`, in which the label's text fits
/// into it: the free substitutes of the fonts can be wider than those that the layouts were drawn
/// for. Of a text that fits in none the label cuts off the rest.
void FitFont(QLabel& label, const TextLook& look, int leastPixels);

/// The picture that these files in the folder `images` beside the program hold at growing sizes,
/// the first for a screen of one dot a pixel. Null if none can be had: then a window shows words
/// instead.
QIcon LoadPicture(std::initializer_list<const char*> files);

/// Paints `picture`, `size` pixels big, into the middle of `widget`; smooth at every scale of the
/// screen.
void PaintPicture(QWidget& widget, const QIcon& picture, QSize size);

/// A label that shows `picture`, or its words in `look` where the picture is null.
QLabel* AddPicture(QWidget& window, const Control& control, const QIcon& picture, QSize size,
                   const TextLook& look);

/// Shows `window` above `parent`, or on its own without one; raises one that is open.
void Present(QWidget& window, QWidget* parent);

/// Puts a hidden window above `parent`.
void SetOwner(QWidget& window, QWidget* parent);

/// The one window of this class, made on first use and after it was deleted. It is not loaded by
/// its constructor, since events that run while it loads may ask for it again.
template <typename Window>
Window& TheWindow() {
  static QPointer<Window> window;
  if (window.isNull()) {
    window = new Window;
    window->Load();
  }
  return *window;
}

}  // namespace platform::desktop
