# usage: cmake -D PROGRAM=FILE -D FOLDER=FOLDER -P DeepLinkHandler.cmake
# Writes into FOLDER the hidden desktop entry by which the desktop opens sign-in links (quorvix://...) with PROGRAM, an
# absolute path.
set(exec "${PROGRAM}")
# A word is quoted only where it must be: not every reader of these files knows quotes. (Desktop Entry Specification,
# "The Exec key"; the second escaping is the one of all texts in such a file.)
if(exec MATCHES "[^-+,./:=@^_%A-Za-z0-9]")
    string(REGEX REPLACE "([\"`$\\\\])" "\\\\\\1" exec "${exec}")
    string(REPLACE "\\" "\\\\" exec "\"${exec}\"")
endif()
string(REPLACE "%" "%%" exec "${exec}")
configure_file("${CMAKE_CURRENT_LIST_DIR}/org.quorvix.Quorvix.SignIn.desktop.in"
    "${FOLDER}/org.quorvix.Quorvix.SignIn.desktop" @ONLY)
