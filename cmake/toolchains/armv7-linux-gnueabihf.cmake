# 32-bit ARM (version 7, hard float, with NEON) with Debian's cross compiler.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_C_FLAGS_INIT "-march=armv7-a+neon -mfpu=auto")
set(CMAKE_CXX_FLAGS_INIT "-march=armv7-a+neon -mfpu=auto")
