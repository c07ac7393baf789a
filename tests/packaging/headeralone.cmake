# Writes a source that includes one public header alone and needs the types whole that the header's functions and
# records have by value or by reference. A type that is only pointed to may stay declared.
# Usage: cmake -DHEADER=FILE -DNAME=ITS-NAME-IN-AN-INCLUDE -DSOURCE=FILE-TO-WRITE -P headeralone.cmake

file(READ "${HEADER}" text)
string(REGEX REPLACE "//[^\n]*" "" text "${text}")
set(source "#include \"${NAME}\"\n")
foreach(type QByteArray QString QStringList LinkValue RegisterValueChange)
  if(text MATCHES "(^|[^A-Za-z0-9_])${type}( const)?( [^*]|[^A-Za-z0-9_ ;])")
    string(APPEND source "static_assert(sizeof(${type}) > 0, \"\");\n")
  endif()
endforeach()
file(WRITE "${SOURCE}" "${source}")
