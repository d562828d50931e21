# Toolchain: 32-bit Linux objects on a 64-bit Debian machine, for the ODBC driver that Wine's programs load.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)
set(CMAKE_C_FLAGS_INIT -m32)
set(CMAKE_CXX_FLAGS_INIT -m32)
set(CMAKE_SHARED_LINKER_FLAGS_INIT -L/usr/lib/i386-linux-gnu)
