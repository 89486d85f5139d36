// SPDX-License-Identifier: MIT
// The windows as they stand, told by themselves, and the events in whose midst one of them works.
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFontInfo>
#include <QMenu>
#include <QMenuBar>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <sstream>

#include "rules/basInitializingGameBoard.h"
#include "rules/state/basGameState.h"
#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "scores/frmHSName.h"
#include "scores/frmHighScores.h"
#include "sound/DXAudio.h"
#include "tests/platform/Twin.h"
#include "tests/ui/WindowFixture.h"
#include "ui/frmAbout.h"
#include "ui/frmLearn.h"
#include "ui/frmOptions.h"
#include "ui/frmWelcome.h"

namespace glimmerfall {
namespace {

constexpr int kCentred = 3;  // pixels; the frame counts

// Properties of the toolkit; those without a text of their own, or that are off, are not told.
constexpr auto kProperties = {
    "text",
    "accessibleName",
    "toolTip",
    "alignment",
    "wordWrap",
    "textFormat",
    "checked",
    "minimum",
    "maximum",
    "value",
    "singleStep",
    "pageStep",
    "tickPosition",
    "tickInterval",
    "focusPolicy",
    "styleSheet",
    "invertedAppearance",
    "invertedControls",
};

std::string Place(const QRect& place) {
  return std::to_string(place.x()) + ',' + std::to_string(place.y()) + ' ' +
         std::to_string(place.width()) + 'x' + std::to_string(place.height());
}

std::string Colours(const QWidget& widget) {
  std::string told;
  for (const auto role : {QPalette::Window, QPalette::WindowText, QPalette::Base, QPalette::Text,
                          QPalette::Highlight})
    if (widget.palette().isBrushSet(QPalette::Active, role))
      told += ' ' + widget.palette().color(role).name().toStdString();
  return told;
}

std::string Font(const QWidget& widget) {
  if (!widget.testAttribute(Qt::WA_SetFont)) return "";
  const QFontInfo font(widget.font());
  return ' ' + font.family().toStdString() + ' ' + std::to_string(font.pixelSize()) +
         (font.bold() ? " bold" : "") + (font.italic() ? " italic" : "");
}

std::string Properties(const QWidget& widget) {
  QStringList told;
  for (const QString name : kProperties) {
    const QMetaObject& type = *widget.metaObject();
    const QMetaProperty property = type.property(type.indexOfProperty(name.toUtf8()));
    const QVariant value = property.read(&widget);
    const QString text = value.toString().replace('\n', '/');
    if (property.isEnumType())
      told << property.enumerator().valueToKeys(value.toInt());
    else if (value.userType() == QMetaType::Bool && value.toBool())
      told << name;
    else if (value.userType() == QMetaType::Int)
      told << name + ' ' + text;
    else if (value.userType() == QMetaType::QString && !text.isEmpty() && !told.contains(text))
      told << text;
  }
  return told.join("; ").toStdString();
}

bool TextFits(const QWidget& widget) {
  if (!widget.window()->rect().contains(widget.geometry())) return false;
  const QString text = widget.property("text").toString();
  const auto* const label = qobject_cast<const QLabel*>(&widget);
  if (label == nullptr) return widget.fontMetrics().horizontalAdvance(text) <= widget.width() - 4;
  const int wrap = label->wordWrap() ? static_cast<int>(Qt::TextWordWrap) : 0;
  const QRect room = label->contentsRect();
  return room.contains(
      label->fontMetrics().boundingRect(room, static_cast<int>(label->alignment()) | wrap, text));
}

bool IsCentred(const QWidget& window) {
  const QRect screen = window.screen()->availableGeometry();
  const QPoint off = window.geometry().center() - screen.center();
  // One that is larger than the screen begins where the screen does.
  const QSize room = screen.size() - window.size();
  return (std::abs(off.x()) <= kCentred || (room.width() <= 2 * kCentred && window.x() == 0)) &&
         (std::abs(off.y()) <= kCentred || (room.height() <= 2 * kCentred && window.y() == 0));
}

void TellSmallWindow(const QWidget& window, std::ostream& told) {
  const bool fixed = window.minimumSize() == window.maximumSize();
  told << window.objectName().toStdString() << " \"" << window.windowTitle().toStdString() << '"'
       << (IsCentred(window) ? " centred" : "") << (fixed ? " fixed " : " ") << window.width()
       << 'x' << window.height() << Colours(window) << '\n';
  for (const auto* const control :
       window.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
    told << "  " << control->objectName().toStdString() << ' ' << Place(control->geometry())
         << Font(*control) << Colours(*control) << (TextFits(*control) ? ": " : " CUT OFF: ")
         << Properties(*control) << '\n';
}

void TellMenu(const QWidget& menu, const std::string& indent, std::ostream& told) {
  for (const QAction* const entry : menu.actions()) {
    told << indent << (entry->isSeparator() ? "-" : entry->text().toStdString()) << ' '
         << entry->shortcut().toString().toStdString() << (entry->isCheckable() ? " marks" : "")
         << (entry->isChecked() ? " marked" : "") << '\n';
    if (entry->menu() != nullptr) TellMenu(*entry->menu(), indent + "  ", told);
  }
}

// What a screen reader finds, with a word where the tree does not hold together.
void TellTree(QAccessibleInterface& part, const std::string& indent, std::ostream& told) {
  const QAccessible::State state = part.state();
  told << indent << QMetaEnum::fromType<QAccessible::Role>().valueToKey(part.role()) << ' '
       << part.text(QAccessible::Name).toStdString() << (state.focused ? ", focused" : "")
       << (state.selected ? ", selected" : "");
  QAccessibleInterface* const parent = part.parent();
  const QRect place = part.rect();
  if (part.role() == QAccessible::ListItem)
    told << ", " << Place(place.translated(-parent->rect().topLeft()))
         << (parent->childAt(place.right(), place.bottom()) == &part ? "" : " NOT FOUND");
  told << '\n';
  for (int i = 0; i < part.childCount(); ++i) {
    QAccessibleInterface* const child = part.child(i);
    if (child->parent() != &part || part.indexOfChild(child) != i) told << "LOST: ";
    TellTree(*child, indent + "  ", told);
  }
}

class Windows : public WindowTest {
 protected:
  static void OpenAll() {
    ShowHighScores(nullptr);
    ShowOptions(nullptr);
    ShowLearn(nullptr);
    ShowAbout(nullptr);
    ShowNameEntry(nullptr);
    QTimer::singleShot(0, [] { FindWindow("frmWelcome")->close(); });
    ChooseMode(nullptr);
  }

  void SavePicture(const QString& name, QSize size, Qt::GlobalColor colour) const {
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(QString::fromStdString(folder_.Path("images/")) + name));
  }
};

TEST_F(Windows, EachWindowStandsAsItIsRecorded) {
  std::ostringstream told;
  OpenAll();
  for (const char* const name :
       {"frmWelcome", "frmOptions", "frmLearn", "frmAbout", "frmHighScores", "frmHSName"})
    TellSmallWindow(*FindWindow(name), told);
  InitGameBoard();
  main_ = std::make_unique<frmMain>();
  main_->show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(main_.get()));
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
  told << '"' << main_->windowTitle().toStdString() << "\" " << main_->windowFlags() << ' '
       << Place(main_->centralWidget()->rect()) << Font(*main_->menuBar()) << '\n';
  TellMenu(*main_->menuBar(), "  ", told);
  TellTree(*QAccessible::queryAccessibleInterface(main_.get()), "  ", told);
  EXPECT_EQ(told.str(), RecordedText("layout.txt"));
  Record("layout.txt", told.str());
}

TEST_F(Windows, PicturesTakeThePlaceOfTheWords) {
  std::filesystem::create_directory(folder_.Path("images"));
  SavePicture("chooser.png", {512, 300}, Qt::red);
  SavePicture("chooser@2x.png", {1024, 600}, Qt::green);
  SavePicture("buttonstart.png", {120, 30}, Qt::yellow);
  SavePicture("learn.png", {512, 511}, Qt::red);
  std::ofstream(folder_.Path("images/buttonlearn.png")) << "no picture";
  OpenAll();
  const QColor sharp = qApp->devicePixelRatio() > 1 ? Qt::green : Qt::red;
  const auto pixel = [](const char* window, QPoint place) {
    const QImage image = FindWindow(window)->grab().toImage();
    return image.pixelColor(place * image.devicePixelRatio());
  };
  EXPECT_EQ(pixel("frmWelcome", {360, 78}), sharp) << "where a word stands without a picture";
  EXPECT_EQ(pixel("frmWelcome", {420, 292}), QColor(Qt::yellow));
  EXPECT_EQ(pixel("frmLearn", {256, 256}), QColor(Qt::red));
  const auto* const lesson = FindWindow("frmWelcome")->findChild<QAbstractButton*>("Command2");
  EXPECT_EQ(lesson->text(), "Learn to Play") << "a damaged picture";
}

}  // namespace
}  // namespace glimmerfall
