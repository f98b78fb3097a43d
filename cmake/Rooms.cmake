# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT

# The rooms, lowest first: a room includes, and links, only those before it (.ci/check reads this
# list and fails otherwise). CONTRIBUTING.md tells what lives in each.
set(LOGBOOK_ROOMS
  resources
  base
  text
  catalogue
  snapshot
  reports
  state
  placement
  help
  archive
  upload
  printing
  loglist
  records
  viewer
  shell
  qt
)
