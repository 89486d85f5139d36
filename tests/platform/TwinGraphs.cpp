// SPDX-License-Identifier: MIT
// The scripted filter graphs of the twin.
#include <algorithm>

#include "tests/platform/Twin.h"
#include "tests/platform/TwinDevices.h"

namespace {

std::vector<std::shared_ptr<twin::GraphRecord>> records;
bool renderAtOnce = true;
constexpr std::size_t kMostRecords = 4096;  // a bot's games would keep too many

class TwinGraph : public platform::FilterGraph {
 public:
  TwinGraph() : record_(std::make_shared<twin::GraphRecord>()) {
    record_->rendered = renderAtOnce;
    if (records.size() < kMostRecords) records.push_back(record_);
  }
  TwinGraph(const TwinGraph&) = delete;
  TwinGraph& operator=(const TwinGraph&) = delete;
  ~TwinGraph() override {
    record_->alive = false;
    record_->running = false;
  }

  bool RenderFile(const std::string& path) override {
    record_->path = path;
    return !twin::IsBroken(twin::FileName(path));
  }
  void Run() override { Switch("Run", true); }
  void Pause() override { Switch("Pause", false); }
  void Stop() override { Switch("Stop", false); }
  void SetVolume(std::int32_t hundredths) override {
    record_->volume = std::clamp(hundredths, -10000, 0);
    record_->calls.push_back("SetVolume " + std::to_string(hundredths));
  }
  std::int32_t GetVolume() const override { return record_->volume; }
  bool IsRendered() override { return record_->rendered; }
  platform::GraphEvent WaitForCompletion() override { return record_->event; }

 private:
  void Switch(const char* call, bool running) {
    record_->running = running;
    record_->calls.emplace_back(call);
  }

  std::shared_ptr<twin::GraphRecord> record_;
};

}  // namespace

namespace twin {

std::vector<GraphRecord*> Graphs() {
  std::vector<GraphRecord*> all;
  all.reserve(records.size());
  for (const auto& record : records)
    all.push_back(record.get());
  return all;
}

void RenderAtOnce(bool atOnce) {
  renderAtOnce = atOnce;
}

void ResetGraphs() {
  records.clear();
  renderAtOnce = true;
}

}  // namespace twin

namespace platform {

std::shared_ptr<FilterGraph> CreateFilterGraph() {
  return std::make_shared<TwinGraph>();
}

}  // namespace platform
