# SPDX-License-Identifier: GPL-3.0-or-later
# Run by every build: writes the current commit into OUTPUT, and leaves the file alone when it is the same,
# so that nothing is compiled again.
execute_process(COMMAND git describe --always --dirty --abbrev=12
    WORKING_DIRECTORY ${CMAKE_CURRENT_LIST_DIR}
    OUTPUT_VARIABLE revision OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE result)
if(NOT result EQUAL 0)
    set(revision unknown)
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT
    "#include \"app/commands/Revision.h\"\n\nconst char* const orvane::revision = \"${revision}\";\n")
