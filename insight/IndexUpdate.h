// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// Brings an index up to date with its log root: logs that are new or changed are read, those that
// are gone are removed. The work is done in small changes, each of which lasts; so it can be
// interrupted at any point and goes on with the next update, and several programs can do it at
// once, each taking what the others have not done.
#pragma once

#include <cstddef>
#include <functional>

#include "base/CodePage.h"
#include "catalogue/ItemRecord.h"
#include "insight/IndexStore.h"
#include "insight/LogRootWalk.h"

namespace logbook::insight {

// How far an update has come.
struct UpdateProgress {
  enum class Step { kLooking, kReading };  // at the folders' stamps; at changed logs
  Step Where = Step::kLooking;
  std::size_t Done = 0;
  std::size_t Total = 0;
};
using ProgressSink = std::function<void(const UpdateProgress&)>;

// Brings the index up to date. Raises IndexError, and what LogRootWalk::Names raises; what was done
// until then lasts.
void UpdateIndex(IndexStore& store, const CodePage& code_page, const Catalogues& catalogues,
                 const LogRootWalk& walk, const ProgressSink& progress);

// True if so much of the index stands for removed logs that it had better be made anew.
bool IsMostlyWaste(IndexStore& store);

}  // namespace logbook::insight
