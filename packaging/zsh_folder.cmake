# SPDX-FileCopyrightText: The Maintenance LogBook authors
# SPDX-License-Identifier: MIT

# Sets zsh_folder to the folder, below the prefix's data folder, in which zsh looks for completions.
# Debian's zsh has one for packages below /usr, and the usual one below any other prefix. As a script
# ("cmake -DPREFIX=/usr -P zsh_folder.cmake") it prints the folder.
if(NOT DEFINED PREFIX)
  set(PREFIX ${CMAKE_INSTALL_PREFIX})
endif()
if(PREFIX STREQUAL "/usr")
  set(zsh_folder zsh/vendor-completions)
else()
  set(zsh_folder zsh/site-functions)
endif()
if(CMAKE_SCRIPT_MODE_FILE)
  execute_process(COMMAND ${CMAKE_COMMAND} -E echo ${zsh_folder})
endif()
