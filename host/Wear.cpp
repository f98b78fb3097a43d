// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "host/Wear.h"

#include <cstddef>
#include <string_view>

namespace logbook::host {
namespace {

// One job of the maintenance plan: due at every log whose number the period divides.
struct PlanRow {
  int item;
  int period;
  Wear renews;
  std::string_view remark;  // for the comment; of several jobs the rarest is written down
};

// clang-format off
//   item period  renews                remark
constexpr auto kPlan = std::to_array<PlanRow>({
    {  0,     2,  Wear::kNone,          "" },
    {  1,     4,  Wear::kNone,          "Sampler and skimmer cone cleaned with 2% acid." },
    {  2,    12,  Wear::kCones,         "Cones changed, sensitivity back to normal." },
    {  3,     8,  Wear::kNone,          "Nebulizer rinsed, back pressure checked." },
    {  4,    16,  Wear::kNone,          "New nebulizer fitted, carrier gas readjusted." },
    {  5,     6,  Wear::kTubing,        "Peristaltic pump tube replaced." },
    {  6,     7,  Wear::kNone,          "" },
    {  7,    60,  Wear::kNone,          "Torch for organic solvents changed." },
    {  8,     5,  Wear::kNone,          "" },
    {  9,    20,  Wear::kTorch,         "Torch devitrified, new one fitted and aligned." },
    { 10,    10,  Wear::kNone,          "Water filter checked." },
    { 11,    40,  Wear::kFilter,        "Water filter changed, flow back to normal." },
    { 12,     5,  Wear::kNone,          "" },
    { 13,    26,  Wear::kOil,           "Rotary pump oil changed." },
    { 14,    13,  Wear::kNone,          "Mist filter checked." },
    { 15,    52,  Wear::kNone,          "Mist filter of the rotary pump changed." },
    { 16,    30,  Wear::kNone,          "Lens stack taken out and cleaned." },
    { 17,   120,  Wear::kMultiplier,    "Electron multiplier changed, detector voltages tuned." },
});
// clang-format on
static_assert(kPlan.size() == kMaintenanceItems);

// The row whose remark the operator repeats in the local language.
constexpr int kConesChanged = 2;

// The season's whole turn in logs: at five days a log, a year.
constexpr int kSeasonPeriod = 73;

// The operator's own words when the cones were changed.
struct LocalRemark {
  int code_page;
  std::string_view text;
};
constexpr auto kLocalRemarks = std::to_array<LocalRemark>({
    {932, "コーンを交換し、感度を確認しました。"},
    {936, "已更换锥，灵敏度正常。"},
    {949, "콘을 교체하고 감도를 확인했습니다."},
    {950, "已更換錐，靈敏度正常。"},
    {1250, "Vyměněny kužely, citlivost v pořádku."},
    {1251, "Конусы заменены, чувствительность в норме."},
    {1252, "Konen getauscht, Gerät läuft wieder gut."},
});

std::uint64_t Mix(std::uint64_t x) {
  x += 0x9e3779b97f4a7c15u;
  x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
  x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
  return x ^ (x >> 31);
}

std::uint64_t Draw(std::uint64_t seed, int log_number, std::uint32_t quantity, int row) {
  std::uint64_t x = Mix(seed);
  x = Mix(x ^ static_cast<std::uint32_t>(log_number));
  x = Mix(x ^ quantity);
  return Mix(x ^ static_cast<std::uint32_t>(row));
}

double SeasonAt(int log_number) {
  const int place = log_number % kSeasonPeriod;
  const double rising = 4.0 * place / kSeasonPeriod - 1.0;
  return rising <= 1.0 ? rising : 2.0 - rising;
}

bool IsDue(const PlanRow& job, int log_number) {
  return log_number > 0 && log_number % job.period == 0;
}

}  // namespace

double WearAt(int log_number, Wear part) {
  if (part == Wear::kNone) return 0.0;
  if (part == Wear::kSeason) return SeasonAt(log_number);
  for (const PlanRow& job : kPlan) {
    if (job.renews == part) {
      return static_cast<double>(log_number % job.period) / job.period;
    }
  }
  return 0.0;
}

std::array<bool, kMaintenanceItems> JobsDoneAt(int log_number) {
  std::array<bool, kMaintenanceItems> done{};
  for (const PlanRow& job : kPlan) {
    done[static_cast<std::size_t>(job.item)] = IsDue(job, log_number);
  }
  return done;
}

std::string CommentAt(int log_number, int code_page) {
  if (log_number == 0) return "First record after installation.";
  const PlanRow* rarest = nullptr;
  for (const PlanRow& job : kPlan) {
    if (!IsDue(job, log_number) || job.remark.empty()) continue;
    if (rarest == nullptr || job.period > rarest->period) rarest = &job;
  }
  if (rarest == nullptr) return log_number % 3 == 0 ? "" : "Daily check, all readings normal.";
  std::string comment(rarest->remark);
  if (!IsDue(kPlan[kConesChanged], log_number)) return comment;
  for (const LocalRemark& remark : kLocalRemarks) {
    if (remark.code_page == code_page) comment.append("\r\n").append(remark.text);
  }
  return comment;
}

double Scatter(std::uint64_t seed, int log_number, std::uint32_t quantity, int row) {
  constexpr double kSteps = 1 << 30;
  const auto step = static_cast<double>(Draw(seed, log_number, quantity, row) >> 33);
  return step / kSteps - 1.0;
}

int Pick(std::uint64_t seed, int log_number, std::uint32_t quantity, int row, int limit) {
  return static_cast<int>(Draw(seed, log_number, quantity, row) %
                          static_cast<std::uint64_t>(limit));
}

}  // namespace logbook::host
