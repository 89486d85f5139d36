// SPDX-License-Identifier: MIT
// What comes of a player's mouse and keys, by rules kept as text: below the name of a rule stands a
// line a step, and behind its bar what the step has changed.
#include <QAbstractButton>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QSlider>
#include <QTest>
#include <QTimer>
#include <deque>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>

#include "platform/Time.h"
#include "rules/basInitializingGameBoard.h"
#include "rules/state/basModes.h"
#include "scores/CodePage.h"
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

namespace {

bool readerListens = false;
std::string spoken;

}  // namespace

// The names are those that the linker gives to wrapped calls: no bus is there to carry them.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {

bool __wrap__ZN11QAccessible8isActiveEv() {
  return readerListens;
}

void __wrap__ZN11QAccessible19updateAccessibilityEP16QAccessibleEvent(QAccessibleEvent* event) {
  spoken += (spoken.empty() ? "" : " / ") +
            event->accessibleInterface()->text(QAccessible::Name).toStdString();
}

}  // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

namespace glimmerfall {
namespace {

constexpr QPoint kMoved(20, 30);
constexpr QPoint kInside(2, 2);     // of a button, at its corner
constexpr int kLongestWait = 1000;  // turns of the event loop; then a pause that holds is ended

// What can be seen and heard, by its name.
using Facts = std::map<std::string, std::string>;

std::string Number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

// Where the player's mouse and keys go; any open window if the toolkit has made none the active
// one.
QWidget& UsedWindow() {
  QWidget* used = QApplication::activeModalWidget();
  if (used == nullptr) used = QApplication::activeWindow();
  for (QWidget* const window : QApplication::topLevelWidgets())
    if (used == nullptr && window->isVisible()) used = window;
  if (used == nullptr) throw std::runtime_error("no window is open");
  return *used;
}

// Handles all that is waiting, and what that brings about.
void LetToolkitRun() {
  for (int i = 0; i < 5; ++i)
    QApplication::processEvents();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// Those that are there, hidden ones in brackets. A star tells the one with the focus, an
// exclamation mark a modal one.
std::string SmallWindows() {
  QStringList names;
  for (const QWidget* const window : QApplication::topLevelWidgets()) {
    const QString name = window->objectName();
    if (!name.startsWith("frm")) continue;
    const QString marks = QString(window->isModal() ? "!" : "") +
                          (window->isActiveWindow() ? "*" : "") +
                          (window->pos() == kMoved ? " moved" : "");
    names << (window->isVisible() ? name + marks : '(' + name + ')');
  }
  names.sort();
  return names.join(' ').toStdString();
}

// The files of the scores, and the lines of their window that are not those of a reset.
void AddScores(Facts& facts) {
  for (const Mode& row : kModes)
    for (int place = 1; place <= kPlaces; ++place) {
      std::string name;
      std::getline(std::ifstream(NameFile(row.mode, place)), name, '\r');
      facts[row.name + (" " + std::to_string(place))] =
          FromCodePage(name) + ' ' + Number(ReadScore(ScoreFile(row.mode, place)));
    }
  const QWidget* const window = FindWindow("frmHighScores");
  if (window == nullptr) return;
  for (const auto* const line : window->findChildren<QLabel*>()) {
    QString told = line->text();
    if (!told.contains(" -- ")) continue;
    if (line->accessibleName() != told) told += ", read as " + line->accessibleName();
    facts[line->objectName().toStdString()] =
        told.endsWith("Norvane Games -- 100") ? "" : told.toStdString();
  }
}

void AddMainWindow(const frmMain& window, Facts& facts) {
  QStringList status;
  for (const auto* const label : window.menuBar()->cornerWidget()->findChildren<QLabel*>())
    status << label->text();
  facts["status"] = status.join(' ').toStdString();
  for (const auto* const entry : window.findChildren<QAction*>())
    if (entry->isCheckable())
      facts[entry->text().toStdString() + " is"] = entry->isChecked() ? "marked" : "not marked";
}

std::string LastMessage() {
  if (twin::devices.messages.empty()) return "";
  const twin::MessageRecord& message = twin::devices.messages.back();
  const bool asks = message.buttons == platform::MessageButtons::YesNo;
  return '"' + message.text + "\" titled \"" + message.title + '"' + (asks ? ", Yes or No" : "");
}

struct Rule {
  std::string name;
  std::vector<std::string> steps;
  std::string told;
};
void PrintTo(const Rule& rule, std::ostream* out) {
  *out << rule.name;
}

std::vector<Rule> ReadRules() {
  std::istringstream text(RecordedText("handling.txt"));
  std::vector<Rule> rules;
  for (std::string line; std::getline(text, line);) {
    const std::size_t bar = line.find(" |");
    if (bar == std::string::npos) {
      if (!line.empty()) rules.push_back({line, {}, ""});
      continue;
    }
    rules.back().steps.push_back(line.substr(0, bar));
    rules.back().told += line + '\n';
  }
  return rules;
}
const std::vector<Rule> kRules = ReadRules();

class Handling : public WindowTest, public testing::WithParamInterface<Rule> {
 protected:
  static void TearDownTestSuite() {
    if (recorded_.size() != kRules.size()) return;
    std::string text;
    for (const Rule& rule : kRules)
      text += rule.name + '\n' + recorded_[rule.name] + '\n';
    Record("handling.txt", text);
  }

  ~Handling() override { readerListens = false; }

  std::string Play() {
    steps_.assign(GetParam().steps.begin(), GetParam().steps.end());
    before_ = Now();
    QTimer::singleShot(0, [this] { Next(); });
    loop_.exec();
    return recorded_[GetParam().name] = told_;
  }

 private:
  using Verb = std::function<void(const std::string&)>;

  // A modal window lets its own loop run inside the step that opened it.
  void Next() {
    const QWidgetList windows = QApplication::topLevelWidgets();
    const auto modal = std::count_if(windows.begin(), windows.end(), [](const QWidget* window) {
      return window->isVisible() && window->isModal();
    });
    if (stepsUnderWay_ != modal) {
      if (++waits_ == kLongestWait) paused = kFalse;
      return QTimer::singleShot(0, [this] { Next(); });
    }
    LetToolkitRun();
    if (!told_.empty()) told_ += " |" + Changes() + '\n';
    if (steps_.empty()) return Finish();
    const std::string step = std::exchange(steps_.front(), "");
    steps_.pop_front();
    told_ += step;
    QTimer::singleShot(0, [this] { Next(); });
    ++stepsUnderWay_;
    Take(step);
    LetToolkitRun();
    --stepsUnderWay_;
  }

  // Nothing may be thrown through the toolkit's loop.
  void Take(const std::string& step) {
    try {
      const std::size_t space = std::min(step.find(' '), step.size());
      verbs_.at(step.substr(0, space))(step.substr(std::min(space + 1, step.size())));
    } catch (const std::exception& error) {
      ADD_FAILURE() << step << ": " << error.what();
    }
  }

  void Finish() {
    for (QWidget* const window : QApplication::topLevelWidgets())
      window->hide();
    loop_.quit();
  }

  Facts Now() {
    Facts facts;
    facts["names read"] = std::to_string(twin::PlacesPassed() - placesPassed_);
    const QWidget* const focus = QApplication::focusWidget();
    facts["windows"] = SmallWindows();
    facts["focus"] = focus != nullptr ? focus->accessibleName().toStdString() : "";
    facts["chosen"] = chosen_;
    facts["mode"] = RowOf(gameMode).name;
    facts["sound"] = soundOn != kFalse ? "on" : "off";
    facts["volume"] = std::to_string(musicVolume);
    facts["heard"] =
        twin::devices.graphs.empty() ? "" : std::to_string(twin::devices.graphs.back()->volume);
    facts["message"] = LastMessage();
    facts["messages"] = std::to_string(twin::devices.messages.size());
    facts["state"] = std::to_string(gameState);
    facts["new board"] = newBoardWanted ? "wanted" : "";
    facts["score"] = Number(score);
    facts["time"] = Number(timeLeft);
    facts["paused at"] = paused != kFalse ? Number(pausedTimeLeft) : "";
    facts["last beep"] = Number(lastBeepTick);
    facts["spoken"] = std::exchange(spoken, "");
    facts["seen meanwhile"] = seenMeanwhile_;
    AddScores(facts);
    if (main_ != nullptr) AddMainWindow(*main_, facts);
    placesPassed_ = twin::PlacesPassed();
    return facts;
  }

  std::string Changes() {
    const Facts now = Now();
    std::string changes;
    for (const auto& [name, fact] : now)
      if (std::exchange(before_[name], fact) != fact)
        changes += ' ' + name + ' ' + (fact.empty() ? "-" : fact) + ';';
    return changes;
  }

  template <typename Widget>
  static Widget& Find(const std::string& name) {
    for (auto* const widget : UsedWindow().findChildren<Widget*>())
      if (widget->accessibleName().toStdString() == name) return *widget;
    throw std::runtime_error("no " + name);
  }

  const std::map<std::string, Verb> verbs_ = {
      {"chooser",
       [this](const auto&) {
         chosen_ = "";
         chosen_ = ChooseMode(main_.get()) ? "a game" : "no game";
       }},
      {"options", [this](const auto&) { ShowOptions(main_.get()); }},
      {"learn", [this](const auto&) { ShowLearn(main_.get()); }},
      {"about", [this](const auto&) { ShowAbout(main_.get()); }},
      {"name", [this](const auto&) { ShowNameEntry(main_.get()); }},
      {"scores", [this](const auto&) { ShowHighScores(main_.get()); }},
      {"main",
       [this](const auto&) {
         InitGameBoard();
         gameState = stateIdle;
         main_ = std::make_unique<frmMain>();
         main_->show();
       }},
      {"tick", [this](const auto&) { main_->Timer1_Timer(); }},
      {"menu",
       [this](const std::string& caption) {
         for (auto* const entry : main_->findChildren<QAction*>())
           if (entry->text().toStdString() == caption) entry->trigger();
       }},
      {"press",
       [](const std::string& name) {
         QTest::mouseClick(&Find<QAbstractButton>(name), Qt::LeftButton, {}, kInside);
       }},
      {"key",
       [](const std::string& name) {
         QWidget* const widget = QApplication::focusWidget();
         if (widget == nullptr) throw std::runtime_error("nothing has the focus");
         QTest::keyClick(widget, QKeySequence(QString::fromStdString(name))[0].key());
       }},
      {"type",
       [](const std::string& text) {
         Find<QLineEdit>("Enter Your Name:").setText(QString::fromStdString(text));
       }},
      {"drag",
       [](const std::string& name) {
         auto& slider = Find<QSlider>(name);
         const QPoint handle(slider.width() / 2, slider.height() - 12);
         QTest::mousePress(&slider, Qt::LeftButton, {}, handle);
         QTest::mouseMove(&slider, QPoint(handle.x(), 2));
       }},
      {"file",
       [](const std::string& name) {
         std::ofstream(NameFile(modeNormal, 1), std::ios::binary) << name << "\r\n";
       }},
      {"activate",
       [](const auto&) {
         QApplication::postEvent(&UsedWindow(), new QEvent(QEvent::WindowActivate));
       }},
      {"paint", [](const auto&) { UsedWindow().update(); }},
      {"focus",
       [](const std::string& name) {
         Find<QAbstractButton>(name).clearFocus();
         Find<QAbstractButton>(name).setFocus();
       }},
      {"meanwhile",
       [this](const std::string& steps) {
         twin::ScheduleAtPlace(1, [this, steps] {
           std::istringstream all(steps);
           for (std::string step; std::getline(all, step, ',');)
             Take(step);
           LetToolkitRun();
         });
       }},
      {"look",
       [this](const auto&) {
         const Facts now = Now();
         for (const auto& [name, fact] : now)
           if (name.ends_with(" is"))
             seenMeanwhile_.append(name).append(" ").append(fact).append(" ");
       }},
      {"close", [](const auto&) { UsedWindow().close(); }},
      {"move", [](const auto&) { UsedWindow().move(kMoved); }},
      {"music",
       [](const auto&) {
         music = std::make_unique<DXAudio>();
         music->InitDXAudio();
         music->PlayBackground("track.wav");
       }},
      {"reader", [](const std::string& listens) { readerListens = listens == "listens"; }},
      {"answer",
       [](const std::string& answer) {
         twin::devices.answer =
             answer == "Yes" ? platform::MessageAnswer::Yes : platform::MessageAnswer::No;
       }},
      {"end",
       [this](const std::string& points) {
         score = std::stod(points);
         CheckHighScore();
       }},
      {"mode", [](const std::string& n) { gameMode = static_cast<GameMode>(std::stoi(n)); }},
      {"state", [](const std::string& n) { gameState = static_cast<GameState>(std::stoi(n)); }},
      {"clock",
       [](const std::string& seconds) {
         clockRunning = kTrue;
         timeLeft = std::stof(seconds);
       }},
  };
  std::deque<std::string> steps_;
  int stepsUnderWay_ = 0;
  int waits_ = 0;
  long placesPassed_ = 0;
  std::string seenMeanwhile_;
  std::string told_;
  std::string chosen_;
  Facts before_;
  QEventLoop loop_;
  static inline std::map<std::string, std::string> recorded_;  // by the name of the rule
};

TEST_P(Handling, GoesByTheRule) {
  EXPECT_EQ(Play(), GetParam().told);
}
INSTANTIATE_TEST_SUITE_P(Rules, Handling, testing::ValuesIn(kRules),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace glimmerfall
