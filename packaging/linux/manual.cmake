# Makes the console program's manual page of what it prints about itself.
# Run: cmake -DPROGRAM=... -DVERSION=... -DDATE=... -DOUTPUT=... -P manual.cmake
execute_process(COMMAND "${PROGRAM}" --help OUTPUT_VARIABLE help COMMAND_ERROR_IS_FATAL ANY)
string(REPLACE "\\" "\\\\" help "${help}")
string(REPLACE "-" "\\-" help "${help}")
string(REGEX REPLACE "\n([.'])" "\n\\\\&\\1" help "${help}")
string(REGEX MATCH "^usage: ([^\n]*(\n +\\[[^\n]*)*)\n" usage "${help}")
string(LENGTH "${usage}" length)
string(SUBSTRING "${help}" ${length} -1 help)
string(REGEX REPLACE "^usage: " "" usage "${usage}")
string(REGEX REPLACE "\n {7}" "\n" usage "${usage}")
string(FIND "${help}" "NAME and its values:\n" names)
if(names LESS 0 OR usage STREQUAL "")
    message(FATAL_ERROR "${PROGRAM} --help prints something else than expected")
endif()
string(SUBSTRING "${help}" 0 ${names} options)
string(SUBSTRING "${help}" ${names} -1 inputs)
string(REGEX REPLACE "^[^\n]*\n" "" inputs "${inputs}")
file(WRITE "${OUTPUT}" ".TH LADDERWISE\\-CLI 1 \"${DATE}\" \"Ladderwise ${VERSION}\" \"User Commands\"
.SH NAME
ladderwise\\-cli \\- design and simulate radio\\-frequency LC filters on the console
.SH SYNOPSIS
.nf
${usage}.fi
.SH DESCRIPTION
Sets the inputs of
.BR ladderwise (1)
by name, calculates the filter as its window does and writes tables, JSON, pictures and files for
other programs.
.SH OPTIONS
.nf
${options}.fi
.SH INPUTS
Names for \\-\\-set; a default stands in brackets or after the bounds.
.PP
.nf
${inputs}.fi
.SH EXIT STATUS
0 if all was written, 1 if something could not be written, 2 if the command line or a file named
there is unusable. Remarks go to standard error.
.SH SEE ALSO
.BR ladderwise (1)
")
