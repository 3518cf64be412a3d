# Sets the manual page PAGE as the plain text TEXT for Windows, with the program GROFF.
execute_process(COMMAND ${GROFF} -man -Tascii -P-cbou ${PAGE}
    OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
file(CONFIGURE OUTPUT ${TEXT} CONTENT "${text}" @ONLY NEWLINE_STYLE CRLF)
