// SPDX-License-Identifier: MIT
// The small windows on real widgets without a screen: what stands where, what a player's mouse and
// keys do, and what the windows ask of the rest of the game. The platform beneath is the scripted
// one; where it lets events run, the toolkit's run.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <fstream>

#include "platform/desktop/Layout.h"
#include "rules/state/basGameState.h"
#include "scores/basMiscelFunctions.h"
#include "scores/basScoreTables.h"
#include "scores/frmHSName.h"
#include "scores/frmHighScores.h"
#include "sound/DXAudio.h"
#include "tests/platform/Twin.h"
#include "ui/frmAbout.h"
#include "ui/frmLearn.h"
#include "ui/frmOptions.h"
#include "ui/frmWelcome.h"

namespace glimmerfall {
namespace {

QWidget* FindWindow(const QString& name) {
  for (QWidget* const window : QApplication::topLevelWidgets())
    if (window->objectName() == name) return window;
  return nullptr;
}

void LetToolkitRun() {
  for (int i = 0; i < 3; ++i)
    QApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QWidget& Window(const QString& name) {
  QWidget* const window = FindWindow(name);
  if (window == nullptr) throw std::runtime_error("no window " + name.toStdString());
  return *window;
}

template <typename Widget = QWidget>
Widget& Find(const QString& window, const QString& name) {
  auto* const widget = Window(window).findChild<Widget*>(name);
  if (widget == nullptr) throw std::runtime_error("no control " + name.toStdString());
  return *widget;
}

std::string TextOf(const QWidget& widget) {
  return widget.property("text").toString().toStdString();
}

std::string Line(const QString& name) {
  return TextOf(Find("frmHighScores", name));
}

void Click(const QString& window, const QString& name) {
  QTest::mouseClick(&Find(window, name), Qt::LeftButton);
  LetToolkitRun();
}

void PressKey(Qt::Key key) {
  LetToolkitRun();
  if (QApplication::focusWidget() == nullptr) throw std::runtime_error("nothing has the focus");
  QTest::keyClick(QApplication::focusWidget(), key);
  LetToolkitRun();
}

// Opens the chooser, lets `player` act on it, and answers whether a game was started.
bool Choose(const std::function<void()>& player) {
  QTimer::singleShot(0, [&] {
    LetToolkitRun();
    player();
    if (QWidget& window = Window("frmWelcome"); window.isVisible()) {
      ADD_FAILURE() << "the chooser is still open";
      window.hide();
    }
  });
  return ChooseMode(nullptr);
}

void OpenAll() {
  ShowHighScores(nullptr);
  ShowOptions(nullptr);
  ShowLearn(nullptr);
  ShowAbout(nullptr);
  ShowNameEntry(nullptr);
  Choose([] { PressKey(Qt::Key_Escape); });
}

// In memory where that can be had: each test makes eighty files.
QString ScratchPattern() {
  const QString memory = "/dev/shm";
  return (QDir(memory).exists() ? memory : QDir::tempPath()) + "/glimmerfall-XXXXXX";
}

struct WindowRow {
  const char* name;
  const char* caption;
  QSize size;
};
const std::vector<WindowRow> kWindows = {
    {"frmWelcome", "Norvane Games Presents...", {527, 315}},
    {"frmOptions", "Options Menu", {240, 168}},
    {"frmLearn", "Learn to Play...", {512, 512}},
    {"frmAbout", "About Glimmerfall", {382, 206}},
    {"frmHighScores", "High Scores...", {484, 602}},
    {"frmHSName", "Login", {313, 69}},
};

class WindowsTest : public testing::Test {
 protected:
  WindowsTest() {
    twin::Reset();
    twin::SetProgramFolder(folder_.path().toStdString());
    twin::OnEveryPlace([] { QApplication::processEvents(); });
    ResetGameState();
    ResetScoreTables();
  }
  ~WindowsTest() override {
    for (const WindowRow& row : kWindows)
      delete FindWindow(row.name);
  }

  void StoreName(int place, const std::string& bytes) {
    std::ofstream(NameFile(modeNormal, place), std::ios::binary) << bytes;
  }

  void SavePicture(const QString& name, QSize size, Qt::GlobalColor colour) {
    QDir(folder_.path()).mkdir("images");
    QImage image(size, QImage::Format_RGB32);
    image.fill(colour);
    ASSERT_TRUE(image.save(folder_.filePath("images/" + name)));
  }

  QTemporaryDir folder_{ScratchPattern()};
};

constexpr int kCentred = 3;  // pixels; the frame counts

struct ControlRow {
  const char* window;
  const char* name;
  QRect place;
  const char* text;  // of a label or a button; null where there is none
};
const std::vector<ControlRow> kControls = {
    {"frmWelcome", "Image1", {8, 8, 512, 300}, nullptr},
    {"frmWelcome", "Option1", {328, 64, 17, 25}, ""},
    {"frmWelcome", "Option2", {328, 96, 17, 25}, ""},
    {"frmWelcome", "Option3", {328, 128, 17, 29}, ""},
    {"frmWelcome", "Option4", {328, 168, 17, 25}, ""},
    {"frmWelcome", "Command2", {272, 280, 121, 25}, "Learn to Play"},
    {"frmWelcome", "OKButton", {408, 280, 89, 25}, "Start"},
    {"frmOptions", "Label2", {0, 0, 81, 25}, "Music Volume"},
    {"frmOptions", "VolSlider", {16, 32, 42, 121}, nullptr},
    {"frmOptions", "Label1", {80, 0, 81, 25}, "Sound Effects Volume"},
    {"frmOptions", "fxSlider", {80, 32, 42, 121}, nullptr},
    {"frmOptions", "Label3", {128, 40, 17, 17}, "On"},
    {"frmOptions", "Label4", {128, 128, 25, 17}, "Off"},
    {"frmOptions", "Command1", {152, 48, 81, 25}, "Reset Scores"},
    {"frmOptions", "OKButton", {152, 112, 81, 25}, "OK"},
    {"frmLearn", "Image4", {0, 0, 512, 511}, nullptr},
    {"frmLearn", "OKButton", {400, 480, 81, 25}, "OK"},
    {"frmAbout", "picIcon", {8, 8, 132, 132}, nullptr},
    {"frmAbout", "lblTitle", {160, 40, 187, 64}, "Glimmerfall"},
    {"frmAbout", "lblVersion", {160, 128, 187, 15}, "Version 1.0.0"},
    {"frmAbout", "lblDisclaimer", {17, 175, 258, 23}, "Warning: ... this game is addictive."},
    {"frmAbout", "cmdOK", {283, 175, 84, 23}, "OK"},
    {"frmHighScores", "Label99", {8, 0, 465, 33}, "High Scores:"},
    {"frmHighScores", "Label32", {8, 40, 225, 17}, "Normal:"},
    {"frmHighScores", "Label33", {240, 40, 225, 17}, "Frantic:"},
    {"frmHighScores", "Label34", {8, 304, 225, 17}, "Relaxing:"},
    {"frmHighScores", "Label31", {240, 304, 225, 17}, "Marathon:"},
    {"frmHighScores", "OKButton", {208, 568, 81, 25}, "OK"},
    {"frmHighScores", "Label1", {8, 64, 225, 17}, " 1 -- Norvane Games -- 100"},
    {"frmHighScores", "Label11", {240, 64, 225, 17}, " 1 -- Norvane Games -- 100"},
    {"frmHighScores", "Label21", {8, 328, 225, 17}, " 1 -- Norvane Games -- 100"},
    {"frmHighScores", "m1", {240, 328, 225, 17}, " 1 -- Norvane Games -- 100"},
    {"frmHighScores", "m10", {240, 544, 225, 17}, "10 -- Norvane Games -- 100"},
    {"frmHSName", "lblLabels", {0, 48, 88, 17}, "Enter Your Name:"},
    {"frmHSName", "txtUserName", {88, 40, 155, 23}, nullptr},
    {"frmHSName", "cmdOK", {248, 40, 60, 26}, "OK"},
    {"frmHSName", "Label1", {24, 8, 273, 25}, "You got a HIGH SCORE!!!"},
};

TEST_F(WindowsTest, EveryWindowStandsAsItsTableSays) {
  OpenAll();
  for (const WindowRow& row : kWindows) {
    SCOPED_TRACE(row.name);
    QWidget& window = Window(row.name);
    EXPECT_EQ(window.windowTitle(), row.caption);
    EXPECT_EQ(window.size(), row.size);
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    const QPoint off = window.geometry().center() - window.screen()->availableGeometry().center();
    // A window that is larger than the screen begins where the screen does.
    EXPECT_TRUE(std::abs(off.x()) <= kCentred || window.x() == 0) << off.x();
    EXPECT_TRUE(std::abs(off.y()) <= kCentred || window.y() == 0) << off.y();
  }
  for (const ControlRow& row : kControls) {
    SCOPED_TRACE(std::string(row.window) + ' ' + row.name);
    const auto& control = Find(row.window, row.name);
    EXPECT_EQ(control.geometry(), row.place);
    EXPECT_FALSE(control.accessibleName().isEmpty());
    if (row.text == nullptr) continue;
    EXPECT_EQ(TextOf(control), row.text);
  }
}

TEST_F(WindowsTest, EveryTextFitsItsControl) {
  OpenAll();
  int texts = 0;
  for (const WindowRow& row : kWindows) {
    for (auto* const label : Window(row.name).findChildren<QLabel*>()) {
      const int flags = static_cast<int>(label->alignment()) |
                        (label->wordWrap() ? static_cast<int>(Qt::TextWordWrap) : 0);
      const QRect room = label->contentsRect();
      const QRect text = label->fontMetrics().boundingRect(room, flags, label->text());
      EXPECT_TRUE(room.contains(text)) << TextOf(*label);
      EXPECT_TRUE(Window(row.name).rect().contains(label->geometry())) << TextOf(*label);
      ++texts;
    }
    for (auto* const button : Window(row.name).findChildren<QPushButton*>()) {
      const QSize text = button->fontMetrics().size(Qt::TextSingleLine, button->text());
      EXPECT_EQ(text, text.boundedTo(button->size() - QSize(4, 4))) << TextOf(*button);
      ++texts;
    }
  }
  EXPECT_GE(texts, 60);
}

TEST_F(WindowsTest, AnOptionChoosesItsModeAtOnceAndStaysForTheNextGame) {
  const std::vector<std::tuple<QString, GameMode, const char*, const char*>> options = {
      {"Option2", modeFrantic, "Frantic",
       "Fast matching mode, start with 10 seconds and it goes down from there."},
      {"Option3", modeMarathon, "Marathon", "You will have 3 minutes to score as much as you can."},
      {"Option4", modeRelaxing, "Relaxed", "No time limit, just matching"},
      {"Option1", modeNormal, "Normal", "Match 3 to earn points and time to match more."},
  };
  ASSERT_EQ(options.size(), std::size_t{kModeCount});
  for (const auto& row : options) {
    EXPECT_TRUE(Choose([&row] {
      const auto& [name, mode, word, tooltip] = row;
      auto& option = Find("frmWelcome", name);
      EXPECT_EQ(option.accessibleName(), word);
      EXPECT_EQ(option.toolTip(), tooltip);
      QTest::mouseClick(&option, Qt::LeftButton, {}, QPoint(15, 2));
      EXPECT_EQ(gameMode, mode);
      Click("frmWelcome", "OKButton");
    }));
    EXPECT_EQ(gameMode, std::get<GameMode>(row));
    EXPECT_TRUE(Find<QRadioButton>("frmWelcome", std::get<QString>(row)).isChecked());
  }
  EXPECT_EQ(Find("frmWelcome", "Command2").toolTip(),
            "Learn to play, it only takes a minute or two.");
  EXPECT_EQ(Find("frmWelcome", "OKButton").toolTip(), "");
}

TEST_F(WindowsTest, TheChooserIsUsedByKeyboard) {
  gameMode = modeFrantic;
  EXPECT_TRUE(Choose([] { PressKey(Qt::Key_Return); }));
  EXPECT_EQ(gameMode, modeNormal) << "Start is ready to be pressed, and Normal is selected";
  EXPECT_TRUE(Choose([] {
    QStringList visited;
    for (int i = 0; i < 7; ++i) {
      visited << QApplication::focusWidget()->objectName();
      PressKey(Qt::Key_Tab);
    }
    EXPECT_EQ(visited.join(' '), "OKButton Command2 Option1 Option3 Option2 Option4 OKButton");
    Find("frmWelcome", "Option2").setFocus();
    for (const auto& [key, mode] : {std::pair(Qt::Key_Space, modeFrantic),
                                    {Qt::Key_Down, modeMarathon},
                                    {Qt::Key_Down, modeRelaxing},
                                    {Qt::Key_Up, modeMarathon}}) {
      PressKey(key);
      EXPECT_EQ(gameMode, mode);
    }
    PressKey(Qt::Key_Return);
  }));
  EXPECT_EQ(gameMode, modeMarathon);
  EXPECT_FALSE(Choose([] {
    Click("frmWelcome", "Option4");
    PressKey(Qt::Key_Escape);
  }));
  EXPECT_EQ(gameMode, modeMarathon) << "a closed chooser changes nothing";
  EXPECT_TRUE(Find<QRadioButton>("frmWelcome", "Option3").isChecked());
}

TEST_F(WindowsTest, LearnToPlayHoldsTheChooserUntilItCloses) {
  ShowLearn(nullptr);
  EXPECT_TRUE(Choose([] {
    EXPECT_EQ(QApplication::activeModalWidget(), &Window("frmWelcome"));
    Click("frmWelcome", "Option3");
    QTimer::singleShot(0, [] {
      LetToolkitRun();
      EXPECT_EQ(QApplication::activeModalWidget(), &Window("frmLearn"));
      EXPECT_TRUE(Window("frmWelcome").isVisible());
      Click("frmLearn", "OKButton");
    });
    Click("frmWelcome", "Command2");
    EXPECT_FALSE(Window("frmLearn").isVisible());
    Click("frmWelcome", "OKButton");
  }));
  EXPECT_EQ(gameMode, modeMarathon);
  ShowLearn(nullptr);
  EXPECT_TRUE(Window("frmLearn").isVisible());
  EXPECT_FALSE(Window("frmLearn").isModal());
}

TEST_F(WindowsTest, TheMusicSliderRunsFromTheTopDownAndIsHeardAtOnce) {
  music = std::make_unique<DXAudio>();
  music->InitDXAudio();
  music->PlayBackground("track.wav");
  ShowOptions(nullptr);
  auto& slider = Find<QSlider>("frmOptions", "VolSlider");
  EXPECT_EQ(slider.value(), 10);
  EXPECT_EQ(musicVolume, -900);
  slider.setFocus();
  for (const auto& [key, volume] : {std::pair(Qt::Key_Up, -810),
                                    {Qt::Key_PageDown, -1260},
                                    {Qt::Key_Home, 0},
                                    {Qt::Key_End, -10000},
                                    {Qt::Key_Up, -1710}}) {
    PressKey(key);
    EXPECT_EQ(musicVolume, volume);
    EXPECT_EQ(twin::Graphs().back()->volume, volume);
  }
  music.reset();
  const QPoint handle(slider.width() / 2, slider.height() - 12);
  QTest::mousePress(&slider, Qt::LeftButton, {}, handle);
  QTest::mouseMove(&slider, QPoint(handle.x(), 2));
  EXPECT_EQ(musicVolume, 0) << "while the button is still held, and without music";
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(handle.x(), 2));
}

TEST_F(WindowsTest, TheEffectsSliderAndOkSetTheSwitch) {
  ShowOptions(nullptr);
  auto& slider = Find<QSlider>("frmOptions", "fxSlider");
  slider.setFocus();
  for (const auto& [key, sound] : {std::pair(Qt::Key_Down, kFalse), {Qt::Key_Up, kTrue}}) {
    PressKey(key);
    EXPECT_EQ(soundOn, sound);
  }
  soundOn = kFalse;
  PressKey(Qt::Key_Escape);
  EXPECT_EQ(soundOn, kFalse) << "only OK overrides the menu";
  ShowOptions(nullptr);
  Click("frmOptions", "OKButton");
  EXPECT_EQ(soundOn, kTrue);
  EXPECT_FALSE(Window("frmOptions").isVisible());
  slider.setValue(1);
  ShowOptions(nullptr);
  EXPECT_EQ(Find<QSlider>("frmOptions", "fxSlider").value(), 1) << "kept for the run";
}

TEST_F(WindowsTest, ResetScoresAsksFirst) {
  const std::string file = ScoreFile(modeMarathon, 10);
  Changes changes;
  WriteScore(file, 7, changes);
  platform::ChangeFiles(changes);
  ShowOptions(nullptr);
  twin::AnswerMessages(platform::MessageAnswer::No);
  Click("frmOptions", "Command1");
  ASSERT_EQ(twin::Messages().size(), 2U);
  EXPECT_EQ(twin::Messages()[0].text, "Are you sure you want to reset your high scores?");
  EXPECT_EQ(twin::Messages()[0].title, "Reset Scores");
  EXPECT_EQ(twin::Messages()[0].buttons, platform::MessageButtons::YesNo);
  EXPECT_EQ(twin::Messages()[1].text, "Whew.  That was close.  I didn't reset the scores.");
  EXPECT_EQ(twin::Messages()[1].title, "");
  EXPECT_EQ(twin::Messages()[1].buttons, platform::MessageButtons::Ok);
  EXPECT_EQ(ReadScore(file), 7);
  twin::AnswerMessages(platform::MessageAnswer::Yes);
  Click("frmOptions", "Command1");
  EXPECT_EQ(twin::Messages().size(), 3U);
  EXPECT_EQ(ReadScore(file), 100);
}

TEST_F(WindowsTest, AboutIsBuiltAnewEachTime) {
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    ShowAbout(nullptr);
    QWidget* const first = FindWindow("frmAbout");
    ShowAbout(nullptr);
    EXPECT_EQ(FindWindow("frmAbout"), first);
    PressKey(key);
    EXPECT_EQ(FindWindow("frmAbout"), nullptr);
  }
}

TEST_F(WindowsTest, WindowsAreHiddenAndComeBackAsTheyWere) {
  const std::vector<std::pair<QString, std::function<void()>>> windows = {
      {"frmHighScores", [] { ShowHighScores(nullptr); }},
      {"frmOptions", [] { ShowOptions(nullptr); }},
      {"frmLearn", [] { ShowLearn(nullptr); }},
      {"frmHSName", [] { ShowNameEntry(nullptr); }},
  };
  for (const auto& [name, show] : windows) {
    SCOPED_TRACE(name.toStdString());
    show();
    QWidget* const window = &Window(name);
    window->move(20, 30);
    EXPECT_FALSE(window->isModal());
    QTest::keyClick(window, Qt::Key_Escape);
    EXPECT_FALSE(window->isVisible());
    show();
    window->close();
    show();
    show();
    EXPECT_EQ(FindWindow(name), window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->pos(), QPoint(20, 30));
  }
}

class WithoutActivation : public QObject {
  bool eventFilter(QObject*, QEvent* event) override {
    return event->type() == QEvent::WindowActivate;
  }
};

TEST_F(WindowsTest, HighScoresShowTheirFilesAtEachRefreshingEvent) {
  ShowHighScores(nullptr);
  LetToolkitRun();
  QWidget& window = Window("frmHighScores");
  int round = 0;
  const auto refreshes = [&](const std::function<void()>& event) {
    const std::string name = "<b>&Round</b> " + std::to_string(++round);
    StoreName(1, name + "\r\n");
    event();
    LetToolkitRun();
    return Line("Label1") == " 1 -- " + name + " -- 100";
  };
  EXPECT_EQ(Find<QLabel>("frmHighScores", "Label1").textFormat(), Qt::PlainText);
  EXPECT_FALSE(refreshes([] {}));
  EXPECT_TRUE(
      refreshes([&] { QApplication::postEvent(&window, new QEvent(QEvent::WindowActivate)); }));
  // A button that gains the focus is painted anew, which would refresh as well.
  window.setUpdatesEnabled(false);
  EXPECT_TRUE(refreshes([&] {
    auto& button = Find("frmHighScores", "OKButton");
    button.clearFocus();
    button.setFocus();
  }));
  window.setUpdatesEnabled(true);
  LetToolkitRun();
  EXPECT_TRUE(refreshes([&] { window.update(); }));
  EXPECT_TRUE(refreshes([&] { Click("frmHighScores", "OKButton"); }));
  EXPECT_FALSE(window.isVisible());
  EXPECT_TRUE(refreshes([] { ShowHighScores(nullptr); }));
  WithoutActivation filter;
  window.installEventFilter(&filter);
  EXPECT_TRUE(refreshes([] { ShowHighScores(nullptr); })) << "an open one that stays behind";
}

TEST_F(WindowsTest, APaintRefreshesOnceAndNotForEver) {
  ShowHighScores(nullptr);
  LetToolkitRun();
  const auto namesReadAfter = [&](const std::function<void()>& event) {
    const long before = twin::PlacesPassed();
    event();
    for (int i = 0; i < 10; ++i)
      LetToolkitRun();
    return twin::PlacesPassed() - before;
  };
  QWidget& window = Window("frmHighScores");
  EXPECT_EQ(namesReadAfter([] {}), 0);
  EXPECT_EQ(namesReadAfter([&] { window.update(); }), 40);
  EXPECT_EQ(namesReadAfter([&] {
              for (int place = 1; place <= kPlaces; ++place)
                StoreName(place, "Changed\r\n");
              window.update();
            }),
            40)
      << "what a refresh repaints must not refresh again";
  EXPECT_EQ(Line("Label10"), "10 -- Changed -- 100");
}

TEST_F(WindowsTest, EventsInsideARefreshDoNoHarmAndAreNotLost) {
  ShowHighScores(nullptr);
  LetToolkitRun();
  QWidget& window = Window("frmHighScores");
  twin::OnEveryPlace(nullptr);
  StoreName(10, "Last\r\n");
  twin::ScheduleAtPlace(3, [] {
    Click("frmHighScores", "OKButton");
    ShowHighScores(nullptr);
    LetToolkitRun();
  });
  window.update();
  LetToolkitRun();
  EXPECT_EQ(Line("Label10"), "10 -- Last -- 100");
  EXPECT_EQ(Line("m10"), "10 -- Norvane Games -- 100");

  twin::ScheduleAtPlace(20, [&] {
    StoreName(1, "Late\r\n");
    window.update();
    LetToolkitRun();
  });
  window.update();
  LetToolkitRun();
  EXPECT_EQ(Line("Label1"), " 1 -- Late -- 100");
}

TEST_F(WindowsTest, AGoodScoreAsksForANameAndShowsInItsTable) {
  gameMode = modeMarathon;
  score = 200;
  CheckHighScore();
  ShowNameEntry(nullptr);
  LetToolkitRun();
  EXPECT_EQ(QApplication::focusWidget(), &Find("frmHSName", "txtUserName"));
  QTest::keyClicks(QApplication::focusWidget(), "An exceedingly long name");
  PressKey(Qt::Key_Escape);
  EXPECT_EQ(ReadScore(ScoreFile(modeMarathon, 1)), 100) << "a closed window stores nothing";
  CheckHighScore();
  ShowNameEntry(nullptr);
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(Window("frmHSName").isVisible());
  ASSERT_TRUE(Window("frmHighScores").isVisible());
  EXPECT_EQ(Line("m1"), " 1 -- An exceedingly  -- 200");
  EXPECT_EQ(Line("m2"), " 2 -- Norvane Games -- 100");

  score = 300;
  CheckHighScore();
  ShowNameEntry(nullptr);
  auto& name = Find<QLineEdit>("frmHSName", "txtUserName");
  EXPECT_EQ(name.text(), "An exceedingly long name");
  name.setText(u"u\u0308ber"_qs);
  Click("frmHSName", "cmdOK");
  EXPECT_EQ(Line("m1"), QString(u" 1 -- \u00FCber -- 300"_qs).toStdString());
}

TEST_F(WindowsTest, ASecondPressOfOkDoesNotEnterTwice) {
  for (int place = 1; place <= kPlaces; ++place)
    StoreName(place, "Player " + std::to_string(place));
  score = 200;
  CheckHighScore();
  ShowNameEntry(nullptr);
  bool pressedAgain = false;
  twin::ScheduleAtPlace(3, [&] {
    pressedAgain = true;
    Click("frmHSName", "cmdOK");
    QTest::keyClick(&Find("frmHSName", "txtUserName"), Qt::Key_Return);
  });
  Click("frmHSName", "cmdOK");
  EXPECT_TRUE(pressedAgain);
  for (int place = 2; place <= kPlaces; ++place)
    EXPECT_EQ(ReadLastLine(NameFile(modeNormal, place)), "Player " + std::to_string(place - 1));
  EXPECT_TRUE(Find("frmHSName", "cmdOK").isEnabled());
}

TEST_F(WindowsTest, PicturesTakeThePlaceOfTheWords) {
  SavePicture("chooser.png", {512, 300}, Qt::red);
  SavePicture("chooser@2x.png", {1024, 600}, Qt::green);
  SavePicture("buttonstart.png", {120, 30}, Qt::yellow);
  SavePicture("learn.png", {512, 511}, Qt::red);
  std::ofstream(folder_.filePath("images/buttonlearn.png").toStdString()) << "no picture";
  OpenAll();
  const QColor sharp = qApp->devicePixelRatio() > 1 ? Qt::green : Qt::red;
  const auto pixel = [](const char* window, QPoint place) {
    const QImage image = Window(window).grab().toImage();
    return image.pixelColor(place * image.devicePixelRatio());
  };
  EXPECT_EQ(pixel("frmWelcome", {360, 78}), sharp) << "where a word stands without a picture";
  EXPECT_EQ(pixel("frmWelcome", {420, 292}), QColor(Qt::yellow));
  EXPECT_EQ(pixel("frmLearn", {256, 256}), QColor(Qt::red));
  EXPECT_EQ(TextOf(Find("frmWelcome", "Command2")), "Learn to Play") << "a damaged picture";
}

TEST_F(WindowsTest, WordsTakeThePlaceOfMissingPictures) {
  OpenAll();
  std::string words;
  for (auto* const label : Window("frmWelcome").findChildren<QLabel*>())
    words += TextOf(*label) + ' ';
  EXPECT_EQ(words, "Glimmerfall Select Game Mode Normal Marathon Frantic Relaxed ");
  EXPECT_TRUE(TextOf(Find("frmLearn", "Image4")).starts_with("The object is to match 3 of a kind"));
}

}  // namespace
}  // namespace glimmerfall

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
