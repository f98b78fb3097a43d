// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

// One file of a log as the zip library reads it: opened when its turn comes, from the opened log
// folder and through no link, and closed before the next one.
#pragma once

#include <zip.h>

#include <memory>

#include "archive/SourceTree.h"

namespace logbook {

// A source over the file, or null with the archive's error set. It keeps the tree as long as it
// lives.
zip_source_t* MakeFileSource(zip_t* archive, std::shared_ptr<const SourceTree> tree,
                             const SourceTree::Child& file);

}  // namespace logbook
