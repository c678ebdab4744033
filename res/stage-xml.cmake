# Copies a layout and names the directory of the images in it:
#     cmake -D INPUT=FILE -D OUTPUT=FILE -D IMAGES=DIRECTORY -P stage-xml.cmake
# Escaped, because a directory may be called anything.
string(REPLACE "&" "&amp;" IMAGES "${IMAGES}")
string(REPLACE "<" "&lt;" IMAGES "${IMAGES}")
string(REPLACE "\"" "&quot;" IMAGES "${IMAGES}")
file(READ ${INPUT} TEXT)
if(TEXT MATCHES "basedir=\"[^\"]*\"")
    string(REPLACE "${CMAKE_MATCH_0}" "basedir=\"${IMAGES}\"" TEXT "${TEXT}")
endif()
file(WRITE ${OUTPUT} "${TEXT}")
