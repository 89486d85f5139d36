// SPDX-License-Identifier: MIT
// The scripted clock, events, random numbers and program of the twin.
#include <algorithm>
#include <deque>
#include <map>

#include "platform/Events.h"
#include "platform/Program.h"
#include "platform/Random.h"
#include "platform/Time.h"
#include "tests/platform/Twin.h"

namespace {

constexpr double kNoon = 43200;
constexpr double kSecondsPerDay = 86400;
constexpr float kTimerStep = 0.1F;

struct Script {
  std::int32_t tick = 0;
  double midnightOffset = kNoon;
  std::multimap<std::int32_t, std::function<void()>> events;
  std::multimap<long, std::function<void()>> placeEvents;
  std::function<void()> everyPlace;
  bool insideEveryPlace = false;
  long places = 0;
  void (*timerEvent)() = nullptr;
  bool insideTimer = false;
  float lastTimer = 0;
  std::deque<double> rnd;
  platform::RandomGenerator generator{0};
};

Script script;

bool TimerIsDue() {
  return script.timerEvent != nullptr && !script.insideTimer &&
         platform::SecondsSince(script.lastTimer, platform::Timer()) >= kTimerStep;
}

void RunTimer() {
  script.insideTimer = true;
  script.timerEvent();
  script.insideTimer = false;
  script.lastTimer = platform::Timer();
}

// Takes the events up to `now`, which may move on meanwhile; answers whether any ran.
template <typename Moment>
bool RunUpTo(const Moment& now, std::multimap<Moment, std::function<void()>>& events) {
  bool ran = false;
  while (!events.empty() && events.begin()->first <= now) {
    const auto event = events.extract(events.begin()).mapped();
    event();
    ran = true;
  }
  return ran;
}

// Answers whether an event of this very place ran.
bool RunPlaceEvents() {
  ++script.places;
  const bool ran = RunUpTo(script.places, script.placeEvents);
  if (!script.everyPlace || script.insideEveryPlace) return ran;
  script.insideEveryPlace = true;
  script.everyPlace();
  script.insideEveryPlace = false;
  return ran;
}

// Answers whether anything ran.
bool RunDueEvents() {
  const bool ran = RunUpTo(script.tick, script.events);
  if (!TimerIsDue()) return ran;
  RunTimer();
  return true;
}

}  // namespace

namespace twin {

void Reset(std::uint64_t seed) {
  script = Script{};
  script.generator = platform::RandomGenerator(seed);
  const auto sounds = devices.sounds;
  devices = {};
  devices.sounds = sounds;
}

void SetTimer(double secondsSinceMidnight) {
  script.midnightOffset = secondsSinceMidnight - script.tick / 1000.0;
  script.lastTimer = platform::Timer();
}

void AdvanceTo(std::int32_t tick) {
  script.tick = std::max(script.tick, tick);
}

void ScheduleAt(std::int32_t tick, std::function<void()> event) {
  script.events.emplace(tick, std::move(event));
}

void ScheduleAtPlace(int n, std::function<void()> event) {
  script.placeEvents.emplace(script.places + n, std::move(event));
}

void OnEveryPlace(std::function<void()> event) {
  script.everyPlace = std::move(event);
}

long PlacesPassed() {
  return script.places;
}

void ScriptRnd(const std::vector<double>& values) {
  script.rnd.insert(script.rnd.end(), values.begin(), values.end());
}

void ScriptNumbers(const std::vector<int>& numbers, int count) {
  for (const int number : numbers)
    script.rnd.push_back((number + 0.5) / count);
}

std::size_t ScriptedRndLeft() {
  return script.rnd.size();
}

}  // namespace twin

namespace platform {

std::int32_t TickCount() {
  return script.tick;
}

float Timer() {
  const double seconds = script.midnightOffset + script.tick / 1000.0;
  return static_cast<float>(seconds >= kSecondsPerDay ? seconds - kSecondsPerDay : seconds);
}

void LetEventsRun() {
  RunPlaceEvents();
  RunDueEvents();
}

// Time passes in milliseconds, as it does for the game.
void LetEventsRunUntil(std::int32_t tick) {
  const bool ran = RunPlaceEvents();
  while (!RunDueEvents() && !ran && TicksSince(script.tick, tick) > 0) {
    if (script.timerEvent == nullptr && script.events.empty()) {
      script.tick = tick;
    } else {
      script.tick = TickAfter(script.tick, 1);
    }
  }
}

void StartTimer(void (*event)()) {
  script.timerEvent = event;
  script.lastTimer = Timer();
}

void Randomize(float seconds) {
  script.generator.Stir(seconds);
}

double Rnd() {
  if (script.rnd.empty()) return script.generator.Next();
  const double value = script.rnd.front();
  script.rnd.pop_front();
  return value;
}

std::string ProgramFolder() {
  return twin::devices.folder;
}

void EndProgram(int exitCode) {
  throw twin::ProgramEnded{exitCode};
}

}  // namespace platform
